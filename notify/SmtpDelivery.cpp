#include "notify/SmtpDelivery.h"

#include "core/Announcer.h"
#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/Trap.h"
#include "core/Waits.h"
#include "notify/vbMSAgent.h"

#include <QCryptographicHash>
#include <QSysInfo>

using namespace Qt::StringLiterals;
using dao::Recordset;

namespace {

constexpr int kPoll = 500; // ms between two looks at the control

/** The same for every attempt to deliver one row of the queue, so that a receiver who has taken the mail in a moment
    in which the line broke can tell the repetition. */
QString messageId(const QString &rowId, const QString &content)
{
    const QByteArray hash = QCryptographicHash::hash((rowId + u'\n' + content).toUtf8(), QCryptographicHash::Sha256);
    const QString host = QSysInfo::machineHostName();
    return u"kavro."_s + rowId + u'.' + QString::fromLatin1(hash.left(12).toHex()) + u'@'
        + (host.isEmpty() ? u"localhost"_s : host);
}

} // namespace

SmtpDelivery::SmtpDelivery()
{
    connect(&cKavroSMTP1, &cKavroSMTP::SendComplete, this, &SmtpDelivery::cKavroSMTP1_SendComplete);
    connect(&cKavroSMTP1, &cKavroSMTP::Error, this, &SmtpDelivery::cKavroSMTP1_Error);
}

Task<void> SmtpDelivery::ProcessMailQue() { return Trap("ProcessMailQue", processQueue()); }

Task<void> SmtpDelivery::processQueue()
{
    const QString servers = GetSetting(u"Mail Options"_s, u"MailServer"_s);
    const int timeOut = GetSettingInt(u"Mail Options"_s, u"MailTimeOut"_s);
    if (servers.isEmpty()) {
        withoutServer();
        co_return;
    }
    // A cycle that was cancelled may have left a mail in flight; its end decides whether the row is still there.
    while (cKavroSMTP1.Busy())
        co_await waits::Pause(kPoll);
    const int generation = vbMain().databaseGeneration;
    for (const QString &element : servers.split(u"::"_s)) {
        const QString server = element.trimmed();
        if (!server.isEmpty())
            co_await offerTo(server, timeOut, generation);
    }
}

void SmtpDelivery::withoutServer()
{
    vbMain().announcer->speak(u"SMTP-NoValidServer"_s);
    WriteLog(u"You did not indicate what SMTP server to use.  SMTP mail notification has been disabled."_s,
             u"SMTP Error"_s, 0, 0);
    SaveSetting(u"Mail Options"_s, u"SendOnFailure"_s, u"0"_s);
}

QList<SmtpDelivery::QueuedMail> SmtpDelivery::queuedMails()
{
    QList<QueuedMail> mails;
    Recordset rows = db().OpenRecordset(u"Select * FROM tblMailQue ORDER BY ID"_s);
    CheckDatabaseErrors();
    for (; !rows.Eof(); rows.MoveNext())
        mails.append({ rows.Field(u"Id"_s).text(),
                       rows.Field(u"Device_Name"_s).text() + " port "_L1 + rows.Field(u"Device_Port"_s).text(),
                       rows.Field(u"Mail_To"_s).text(), rows.Field(u"Mail_Subject"_s).text(),
                       rows.Field(u"Mail_Body"_s).text() });
    return mails;
}

/** The rows are copied first: nothing of the database is held while a mail is on its way. */
Task<void> SmtpDelivery::offerTo(QString server, int timeOut, int generation)
{
    if (vbMain().databaseGeneration != generation)
        co_return;
    const QString shown = cKavroSMTP::ShownServer(server);
    const QList<QueuedMail> mails = queuedMails();
    for (const QueuedMail &mail : mails) {
        if (vbMain().databaseGeneration != generation)
            co_return; // another database was opened, with a queue of its own
        vbMain().window->setStatusText("Sending Email...("_L1 + mail.device + " using "_L1 + shown + u')');
        m_inFlight = { mail.id, mail.device, generation };
        co_await SendMail(mail.body, mail.subject, mail.recipient, server, timeOut);
    }
}

Task<void> SmtpDelivery::SendMail(QString body, QString subject, QString recipient, QString server, int timeOut)
{
    startMail(body, subject, recipient, server, timeOut);
    while (cKavroSMTP1.Busy())
        co_await waits::Pause(kPoll);
}

void SmtpDelivery::startMail(const QString &body, const QString &subject, const QString &recipient,
                             const QString &server, int timeOut)
{
    try {
        cKavroSMTP1.Reset();
        cKavroSMTP1.SetTimeOut(timeOut);
        cKavroSMTP1.SetServer(server);
        cKavroSMTP1.SetRecipient(recipient);
        cKavroSMTP1.SetSender(GetSetting(u"Mail Options"_s, u"MailFrom"_s));
        cKavroSMTP1.SetSubject(subject);
        cKavroSMTP1.SetBody(body);
        cKavroSMTP1.SetMessageId(messageId(m_inFlight.id, recipient + subject + body));
        cKavroSMTP1.Send();
    } catch (const VbError &) {
        // The mail stays in the queue; the next run tries again.
    }
}

void SmtpDelivery::cKavroSMTP1_SendComplete()
{
    Trap("cKavroSMTP1_SendComplete", [this] {
        if (vbMain().databaseGeneration != m_inFlight.generation)
            return; // its row is in a database that is no longer open
        db().Execute("DELETE * FROM tblMailQue WHERE ID = "_L1 + m_inFlight.id);
        CheckDatabaseErrors();
        // Before anything else can happen: a mail that is gone must not come back after a crash.
        db().CommitPending();
    });
}

void SmtpDelivery::cKavroSMTP1_Error(const QString &description)
{
    Trap("cKavroSMTP1_Error", [&] {
        if (GetSettingBool(u"MSAgent"_s, u"AnnounceSMTPErrors"_s)) {
            ResultTable lines = MSAgentSpeak(u"SMTPEmailError"_s);
            ReplaceInText(lines, u"<DEVICE>"_s, m_inFlight.device);
            ReplaceInText(lines, u"<ERROR>"_s, description);
            vbMain().announcer->speakLines(lines);
        }
        WriteLog("The notification email for "_L1 + m_inFlight.device + " was not sent because "_L1
                     + description.toLower() + u'.',
                 u"SMTP Error"_s, 0, 0);
    });
}
