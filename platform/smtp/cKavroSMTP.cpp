#include "platform/smtp/cKavroSMTP.h"

#include "platform/smtp/MailMessage.h"
#include "platform/smtp/SmtpErrors.h"
#include "platform/smtp/SmtpServer.h"
#include "platform/smtp/SmtpSession.h"

#include <QSysInfo>
#include <QTimer>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

constexpr int kDefaultTimeOut = 20000; // ms

/** libcurl is set up once, before the first handle. */
void prepareCurl()
{
    static const CURLcode done = curl_global_init(CURL_GLOBAL_DEFAULT);
    Q_UNUSED(done)
}

} // namespace

cKavroSMTP::cKavroSMTP(QObject *parent) : QObject(parent) { prepareCurl(); }

cKavroSMTP::~cKavroSMTP() = default;

QString cKavroSMTP::Version()
{
    return u"%1.%2.%3"_s.arg(KAVRO_VERSION_MAJOR).arg(KAVRO_VERSION_MINOR).arg(KAVRO_VERSION_REVISION);
}

void cKavroSMTP::Reset()
{
    ++m_attempt;
    m_busy = false;
    m_session.reset();
    m_message = {};
}

void cKavroSMTP::SetTimeOut(int ms) { m_message.timeOut = ms; }
void cKavroSMTP::SetServer(const QString &server) { m_message.server = server; }
void cKavroSMTP::SetRecipient(const QString &addresses) { m_message.recipient = addresses; }
void cKavroSMTP::SetSender(const QString &address) { m_message.sender = address; }
void cKavroSMTP::SetSubject(const QString &subject) { m_message.subject = subject; }
void cKavroSMTP::SetBody(const QString &body) { m_message.body = body; }
void cKavroSMTP::SetMessageId(const QString &id) { m_message.messageId = id; }

void cKavroSMTP::Send()
{
    if (m_busy)
        return;
    m_busy = true;
    QTimer::singleShot(0, this, [this, attempt = ++m_attempt] {
        if (attempt == m_attempt)
            begin();
    });
}

bool cKavroSMTP::Busy() const { return m_busy; }

QString cKavroSMTP::ShownServer(const QString &server) { return withoutLogin(server); }

void cKavroSMTP::begin()
{
    const std::optional<SmtpServer> server = parseSmtpServer(m_message.server);
    if (!server)
        return finish(u"the name of the mail server is not understood"_s);
    const QStringList recipients = mailAddresses(m_message.recipient);
    if (recipients.isEmpty())
        return finish(u"the recipient is not a mail address"_s);
    const QStringList senders = mailAddresses(m_message.sender);
    if (senders.size() > 1 || (senders.isEmpty() && !m_message.sender.trimmed().isEmpty()))
        return finish(u"the sender is not a mail address"_s);

    MailMessage mail;
    mail.sender = senders.value(0);
    mail.recipients = recipients;
    mail.subject = m_message.subject;
    mail.body = m_message.body;
    mail.date = QDateTime::currentDateTime();
    mail.hostName = QSysInfo::machineHostName();
    mail.messageId = m_message.messageId.isEmpty()
        ? QUuid::createUuid().toString(QUuid::WithoutBraces) + u'@' + mail.hostName
        : m_message.messageId;
    mail.program = "Kavro 2000 "_L1 + Version();
    const SmtpSession::Envelope envelope{ mail.sender, recipients, dotStuffed(mail.bytes()) };
    m_session = std::make_unique<SmtpSession>(*server, envelope,
                                              m_message.timeOut > 0 ? m_message.timeOut : kDefaultTimeOut,
                                              [this](const QString &error) { finish(error); });
    m_session->start();
}

void cKavroSMTP::finish(const QString &error)
{
    if (m_session) {
        // It is on the call stack; as a child it goes away with the control at the latest.
        SmtpSession *session = m_session.release();
        session->setParent(this);
        session->deleteLater();
    }
    m_busy = false;
    if (error.isEmpty())
        emit SendComplete();
    else
        emit Error(error);
}
