#include "platform/smtp/SmtpSession.h"

#include "platform/smtp/SmtpErrors.h"

#include <QSysInfo>

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/** The name for EHLO: this machine's, when it is fit to be one. */
QByteArray ownName()
{
    const QByteArray name = QSysInfo::machineHostName().toLatin1();
    const auto fit = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '.'; };
    return !name.isEmpty() && std::all_of(name.cbegin(), name.cend(), fit) ? name : QByteArray("localhost");
}

bool isAscii(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c < QChar(128); });
}

constexpr QLatin1StringView kNotUnderstood = "the mail server gave an answer that is not understood"_L1;

} // namespace

SmtpSession::SmtpSession(const SmtpServer &server, const Envelope &envelope, int timeOutMs,
                         std::function<void(const QString &)> finished)
    : m_server(server),
      m_envelope(envelope),
      m_timeOut(timeOutMs),
      m_finished(std::move(finished)),
      m_easy(curl_easy_init()),
      m_loop([this](CURLcode result) { connected(result); })
{
    m_limit.setSingleShot(true);
    m_limit.setTimerType(Qt::PreciseTimer);
    connect(&m_limit, &QTimer::timeout, this, [this] { finish(plainReason(CURLE_OPERATION_TIMEDOUT, 0)); });
    setOptions();
    setSecurity();
}

SmtpSession::~SmtpSession()
{
    m_readable.reset();
    m_writable.reset();
    if (m_inMulti)
        m_loop.remove(m_easy);
    curl_easy_cleanup(m_easy);
}

void SmtpSession::setOptions()
{
    const auto set = [this](CURLoption option, auto value) { curl_easy_setopt(m_easy, option, value); };
    set(CURLOPT_URL, m_server.url(ownName()).constData());
    // Greeting, encryption and login only: see README.md.
    set(CURLOPT_CONNECT_ONLY, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_PROXY, "");
    set(CURLOPT_CONNECTTIMEOUT_MS, long(m_timeOut));
    // Giving up must not wait for a name server that does not answer.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_OPENSOCKETFUNCTION, &SmtpSession::openSocket);
    set(CURLOPT_OPENSOCKETDATA, this);
    set(CURLOPT_CLOSESOCKETFUNCTION, &SmtpSession::closeSocket);
    set(CURLOPT_CLOSESOCKETDATA, this);
    set(CURLOPT_VERBOSE, 1L);
    set(CURLOPT_DEBUGFUNCTION, &SmtpSession::watchOutgoing);
    set(CURLOPT_DEBUGDATA, this);
    set(CURLOPT_HEADERFUNCTION, &SmtpSession::readReply);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &SmtpSession::discard);
}

void SmtpSession::setSecurity()
{
    const auto set = [this](CURLoption option, auto value) { curl_easy_setopt(m_easy, option, value); };
    set(CURLOPT_USE_SSL, long(m_server.mustEncrypt ? CURLUSESSL_ALL : CURLUSESSL_TRY));
    set(CURLOPT_SSL_VERIFYPEER, m_server.mustEncrypt ? 1L : 0L);
    set(CURLOPT_SSL_VERIFYHOST, m_server.mustEncrypt ? 2L : 0L);
    const QByteArray trusted = qgetenv("SSL_CERT_FILE");
    if (!trusted.isEmpty())
        set(CURLOPT_CAINFO, trusted.constData());
    if (!m_server.hasLogin())
        return;
    set(CURLOPT_USERNAME, m_server.user.toUtf8().constData());
    set(CURLOPT_PASSWORD, m_server.password.toUtf8().constData());
    // Those that need nothing but the password; Kerberos would ask a name server and wait for it.
    set(CURLOPT_LOGIN_OPTIONS, "AUTH=PLAIN;AUTH=LOGIN;AUTH=CRAM-MD5");
}

void SmtpSession::start()
{
    m_limit.start(m_timeOut);
    m_inMulti = true;
    m_loop.add(m_easy);
}

curl_socket_t SmtpSession::openSocket(void *self, curlsocktype, curl_sockaddr *address)
{
    const int socket = ::socket(address->family, address->socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, address->protocol);
    if (socket < 0)
        return CURL_SOCKET_BAD;
    static_cast<SmtpSession *>(self)->m_sockets.append(socket);
    return socket;
}

int SmtpSession::closeSocket(void *self, curl_socket_t socket)
{
    static_cast<SmtpSession *>(self)->m_sockets.removeAll(socket);
    return ::close(socket);
}

/** libcurl says QUIT when it gives a connection up, and then waits for the answer on the spot. It is let say so,
    but it finds the line ended. */
int SmtpSession::watchOutgoing(CURL *, curl_infotype type, char *data, size_t size, void *self)
{
    const QByteArrayView text(data, qsizetype(size));
    if (type != CURLINFO_HEADER_OUT || !text.startsWith("QUIT"))
        return 0;
    for (const curl_socket_t socket : std::as_const(static_cast<SmtpSession *>(self)->m_sockets))
        ::shutdown(socket, SHUT_RDWR);
    return 0;
}

size_t SmtpSession::readReply(char *data, size_t size, size_t count, void *self)
{
    auto &session = *static_cast<SmtpSession *>(self);
    const QByteArray line(data, qsizetype(size * count));
    session.m_greetings.addLine(line);
    session.m_takesUtf8 = session.m_takesUtf8 || line.mid(4).trimmed() == "SMTPUTF8";
    return size * count;
}

size_t SmtpSession::discard(char *, size_t size, size_t count, void *) { return size * count; }

void SmtpSession::connected(CURLcode result)
{
    if (result != CURLE_OK)
        return finish(m_greetings.last().isRefusal() ? saidByServer(m_greetings.last(), m_server) : reasonOf(result));
    beginTransaction();
}

QString SmtpSession::reasonOf(CURLcode result) const
{
    long systemError = 0;
    curl_easy_getinfo(m_easy, CURLINFO_OS_ERRNO, &systemError);
    return plainReason(result, int(systemError));
}

void SmtpSession::beginTransaction()
{
    const bool ascii = isAscii(m_envelope.sender) && isAscii(m_envelope.recipients.join(u' '));
    if (!ascii && !m_takesUtf8)
        return finish(u"the mail server takes no addresses with letters outside ASCII"_s);
    m_transaction = std::make_unique<MailTransaction>(m_envelope.sender, m_envelope.recipients, m_envelope.message,
                                                      !ascii);
    curl_socket_t socket = CURL_SOCKET_BAD;
    curl_easy_getinfo(m_easy, CURLINFO_ACTIVESOCKET, &socket);
    if (socket == CURL_SOCKET_BAD)
        return finish(reasonOf(CURLE_RECV_ERROR));
    m_readable = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
    m_writable = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Write);
    connect(m_readable.get(), &QSocketNotifier::activated, this, [this] { readMore(); });
    connect(m_writable.get(), &QSocketNotifier::activated, this, [this] { writeMore(); });
}

/** The loop runs until nothing more is there: what an encrypted record held beyond the last read raises no event. */
void SmtpSession::readMore()
{
    QByteArray buffer(4096, Qt::Uninitialized);
    for (;;) {
        size_t got = 0;
        const CURLcode result = curl_easy_recv(m_easy, buffer.data(), size_t(buffer.size()), &got);
        if (result == CURLE_AGAIN)
            return;
        if (result != CURLE_OK || got == 0)
            return finish(reasonOf(CURLE_RECV_ERROR));
        const MailTransaction::Outcome outcome = m_transaction->feed(buffer.left(qsizetype(got)));
        if (outcome != MailTransaction::Going)
            return conclude(outcome);
        m_writable->setEnabled(true);
    }
}

void SmtpSession::writeMore()
{
    m_output += m_transaction->takeOutput();
    while (!m_output.isEmpty()) {
        size_t sent = 0;
        const CURLcode result = curl_easy_send(m_easy, m_output.constData(), size_t(m_output.size()), &sent);
        if (result == CURLE_AGAIN)
            return;
        if (result != CURLE_OK) {
            // What the server said before it closed tells more than that it closed.
            m_writable->setEnabled(false);
            return readMore();
        }
        m_output.remove(0, qsizetype(sent));
    }
    m_writable->setEnabled(false);
}

void SmtpSession::conclude(MailTransaction::Outcome outcome)
{
    // A farewell without waiting; everything of value has been said.
    size_t sent = 0;
    constexpr QByteArrayView quit("QUIT\r\n");
    curl_easy_send(m_easy, quit.data(), size_t(quit.size()), &sent);
    switch (outcome) {
    case MailTransaction::Sent: return finish({});
    case MailTransaction::Refused: return finish(saidByServer(m_transaction->reply(), m_server));
    default: return finish(kNotUnderstood);
    }
}

void SmtpSession::finish(const QString &error)
{
    m_limit.stop();
    // Only switched off: one of them may be the one whose signal led here.
    for (const auto &notifier : { m_readable.get(), m_writable.get() }) {
        if (notifier)
            notifier->setEnabled(false);
    }
    if (const auto finished = std::exchange(m_finished, {}))
        finished(error);
}
