#include "platform/vbscript/objects/HttpTransfer.h"

#include <curl/curl.h>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

struct FailureRow
{
    CURLcode code;
    int number;
};
constexpr FailureRow kFailures[] = {
    { CURLE_OPERATION_TIMEDOUT, http::kTimedOut },
    { CURLE_URL_MALFORMAT, http::kBadUrl },
    { CURLE_UNSUPPORTED_PROTOCOL, http::kUnknownScheme },
    { CURLE_COULDNT_RESOLVE_HOST, http::kNameNotResolved },
    { CURLE_COULDNT_RESOLVE_PROXY, http::kNameNotResolved },
    { CURLE_COULDNT_CONNECT, http::kCannotConnect },
    { CURLE_GOT_NOTHING, http::kConnectionEnded },
    { CURLE_RECV_ERROR, http::kConnectionEnded },
    { CURLE_SEND_ERROR, http::kConnectionEnded },
    { CURLE_PARTIAL_FILE, http::kConnectionEnded },
    { CURLE_TOO_MANY_REDIRECTS, http::kRedirectFailed },
    { CURLE_SSL_CONNECT_ERROR, http::kSecurityFailure },
    { CURLE_PEER_FAILED_VERIFICATION, http::kSecurityFailure },
    { CURLE_SSL_CACERT_BADFILE, http::kSecurityFailure },
    { CURLE_SSL_CERTPROBLEM, http::kSecurityFailure },
    { CURLE_SSL_CIPHER, http::kSecurityFailure },
    { CURLE_SSL_ISSUER_ERROR, http::kSecurityFailure },
};

int failureNumber(CURLcode code)
{
    for (const FailureRow &row : kFailures) {
        if (row.code == code)
            return row.number;
    }
    return http::kInvalidResponse;
}

void initializeOnce()
{
    static const CURLcode done = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (done != CURLE_OK)
        throw ScriptError(err::kInternal);
}

}

QString http::errorText(int code)
{
    switch (code) {
    case kTimedOut: return u"The operation timed out"_s;
    case kBadUrl: return u"The URL is invalid"_s;
    case kUnknownScheme: return u"The URL does not use a recognized protocol"_s;
    case kNameNotResolved: return u"The server name or address could not be resolved"_s;
    case kCannotConnect: return u"A connection with the server could not be established"_s;
    case kConnectionEnded: return u"The connection with the server was terminated abnormally"_s;
    case kRedirectFailed: return u"The redirect request failed"_s;
    case kSecurityFailure: return u"A security error occurred"_s;
    default: return u"The server returned an invalid or unrecognized response"_s;
    }
}

struct HttpTransfer::Handles
{
    Handles() : easy(curl_easy_init()), multi(curl_multi_init())
    {
        if (!easy || !multi)
            throw ScriptError(err::kOutOfMemory);
    }
    ~Handles()
    {
        curl_multi_remove_handle(multi, easy);
        curl_easy_cleanup(easy);
        curl_multi_cleanup(multi);
        curl_slist_free_all(headers);
    }
    Q_DISABLE_COPY_MOVE(Handles)
    void addHeader(const QByteArray &line) { headers = curl_slist_append(headers, line.constData()); }

    CURL *easy;
    CURLM *multi;
    curl_slist *headers = nullptr;
};

HttpTransfer::HttpTransfer(const HttpOrder &order) : m_order(order), m_bodyCharge(order.body.size())
{
    initializeOnce();
    m_handles = std::make_unique<Handles>();
    configure();
    configureMethod();
    configureSecurity();
    configureProxy();
    curl_multi_add_handle(m_handles->multi, m_handles->easy);
}

HttpTransfer::~HttpTransfer()
{
    const SigpipeBlock guard; // saying goodbye to a TLS peer that is gone
    m_handles.reset();
}

void HttpTransfer::configure()
{
    CURL *easy = m_handles->easy;
    curl_easy_setopt(easy, CURLOPT_URL, m_order.url.toEncoded(QUrl::RemoveFragment).constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, long(m_order.followRedirects));
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, 10L);
    curl_easy_setopt(
        easy, CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1)); // later ones have no status text
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L); // giving up does not wait for the resolver
    const HttpTimeouts &limits = m_order.timeouts;
    const long connectLimit = limits.connect > 0 ? long(limits.connect) + limits.resolve : 24 * 3600 * 1000L;
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, connectLimit);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &HttpTransfer::takeHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &HttpTransfer::takeBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, &HttpTransfer::takeProgress);
    curl_easy_setopt(easy, CURLOPT_XFERINFODATA, this);
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
    if (!m_order.user.isNull()) {
        curl_easy_setopt(easy, CURLOPT_USERNAME, m_order.user.toUtf8().constData());
        curl_easy_setopt(easy, CURLOPT_PASSWORD, m_order.password.toUtf8().constData());
        curl_easy_setopt(easy, CURLOPT_HTTPAUTH, long(CURLAUTH_ANY));
    }
}

void HttpTransfer::configureMethod()
{
    CURL *easy = m_handles->easy;
    const QByteArray &method = m_order.method;
    const bool hasBody = !m_order.body.isEmpty() || method == "POST" || method == "PUT" || method == "PATCH";
    if (hasBody) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(m_order.body.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, m_order.body.constData());
    } else if (method == "HEAD") {
        curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    }
    if (method != "GET" && method != "HEAD" && method != "POST")
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, method.constData());
    m_handles->addHeader("Expect:"); // no waiting for a permission that few servers send
    bool typed = false;
    for (const auto &[name, value] : std::as_const(m_order.headers)) {
        typed = typed || name.compare("content-type", Qt::CaseInsensitive) == 0;
        m_handles->addHeader(value.isEmpty() ? name + ';' : name + ": " + value);
    }
    if (hasBody && !typed)
        m_handles->addHeader("Content-Type:"); // the library would claim a form
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_handles->headers);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "kavro-vbs");
}

void HttpTransfer::configureSecurity()
{
    curl_easy_setopt(m_handles->easy, CURLOPT_SSL_VERIFYPEER, long(m_order.checkIssuer));
    curl_easy_setopt(m_handles->easy, CURLOPT_SSL_VERIFYHOST, m_order.checkHostName ? 2L : 0L);
}

void HttpTransfer::configureProxy()
{
    CURL *easy = m_handles->easy;
    if (m_order.ignoreProxies)
        curl_easy_setopt(easy, CURLOPT_PROXY, "");
    if (m_order.proxy.isEmpty())
        return;
    curl_easy_setopt(easy, CURLOPT_PROXY, m_order.proxy.toUtf8().constData());
    curl_easy_setopt(easy, CURLOPT_NOPROXY, m_order.noProxy.toUtf8().constData());
    if (m_order.proxyUser.isEmpty())
        return;
    curl_easy_setopt(easy, CURLOPT_PROXYUSERNAME, m_order.proxyUser.toUtf8().constData());
    curl_easy_setopt(easy, CURLOPT_PROXYPASSWORD, m_order.proxyPassword.toUtf8().constData());
    curl_easy_setopt(easy, CURLOPT_PROXYAUTH, long(CURLAUTH_ANY));
}

template <class Action>
bool HttpTransfer::guarded(Action action)
{
    try {
        action();
        return true;
    } catch (...) {
        m_thrown = std::current_exception();
        return false;
    }
}

void HttpTransfer::parseHeaderLine(QByteArrayView line)
{
    const QString text = QString::fromLatin1(line).trimmed();
    if (text.startsWith("HTTP/"_L1)) { // of each answer: an interim one, a redirect, the last
        m_answer.headerLines.clear();
        m_answer.headersComplete = false;
        m_answer.body.clear();
        m_answer.status = text.section(u' ', 1, 1).toInt();
        m_answer.statusText = text.section(u' ', 2);
    } else if (!text.isEmpty()) {
        m_answer.headerLines.append(text);
    } else if (m_answer.status >= 200) {
        m_answer.headersComplete = true;
    }
}

size_t HttpTransfer::takeHeader(char *bytes, size_t size, size_t count, void *self)
{
    auto *transfer = static_cast<HttpTransfer *>(self);
    const QByteArrayView line(bytes, qsizetype(size * count));
    return transfer->guarded([&] { transfer->parseHeaderLine(line); }) ? size * count : 0;
}

size_t HttpTransfer::takeBody(char *bytes, size_t size, size_t count, void *self)
{
    auto *transfer = static_cast<HttpTransfer *>(self);
    const QByteArrayView part(bytes, qsizetype(size * count));
    return transfer->guarded([&] { transfer->m_answer.body.append(part); }) ? size * count : 0;
}

int HttpTransfer::takeProgress(void *self, qint64, qint64 received, qint64 toSend, qint64 sent)
{
    auto *transfer = static_cast<HttpTransfer *>(self);
    transfer->m_sending = sent < toSend;
    if (received + sent != transfer->m_moved)
        transfer->m_lastActivity.start();
    transfer->m_moved = received + sent;
    return 0;
}

bool HttpTransfer::hasStalled() const
{
    const qint32 limit = m_sending ? m_order.timeouts.send : m_order.timeouts.receive;
    return limit > 0 && m_lastActivity.isValid() && m_lastActivity.elapsed() > limit;
}

void HttpTransfer::finish(int failure)
{
    m_finished = true;
    m_failure = failure;
    m_bodyCharge.resize(0);
}

int HttpTransfer::numberOf(int result) const
{
    // The library's word for an answer that is no HTTP at all, and for a redirect to another kind of URL.
    if (result == CURLE_UNSUPPORTED_PROTOCOL && m_answer.status == 0)
        return http::kInvalidResponse;
    return result == CURLE_OK ? 0 : failureNumber(CURLcode(result));
}

void HttpTransfer::collectResult()
{
    int waiting = 0;
    while (const CURLMsg *message = curl_multi_info_read(m_handles->multi, &waiting)) {
        if (message->msg == CURLMSG_DONE)
            finish(numberOf(message->data.result));
    }
}

void HttpTransfer::advance(int milliseconds)
{
    if (m_finished)
        return;
    const SigpipeBlock guard;
    int running = 0;
    if (milliseconds > 0)
        curl_multi_poll(m_handles->multi, nullptr, 0, milliseconds, nullptr);
    curl_multi_perform(m_handles->multi, &running);
    if (m_thrown) {
        finish(http::kInvalidResponse);
        std::rethrow_exception(m_thrown);
    }
    collectResult();
    curl_off_t connected = 0;
    curl_easy_getinfo(m_handles->easy, CURLINFO_PRETRANSFER_TIME_T, &connected);
    if (connected > 0 && !m_lastActivity.isValid())
        m_lastActivity.start();
    if (!m_finished && hasStalled())
        finish(http::kTimedOut);
}

}
