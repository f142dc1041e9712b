#pragma once

#include "platform/vbscript/objects/Support.h"

#include <QElapsedTimer>
#include <QList>
#include <QStringList>
#include <QUrl>
#include <exception>
#include <memory>

namespace vbs::objects {

/** Time limits of one request in ms; 0 is none. */
struct HttpTimeouts
{
    qint32 resolve = 0;
    qint32 connect = 0;
    qint32 send = 0;
    qint32 receive = 0;
};

/** What is sent. */
struct HttpOrder
{
    QByteArray method;
    QUrl url;
    QString user;
    QString password;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    HttpTimeouts timeouts;
    QString proxy;        // host:port
    QString noProxy;      // hosts that need none, separated by commas
    QString proxyUser;
    QString proxyPassword;
    bool ignoreProxies = false;
    bool followRedirects = true;
    bool checkIssuer = true;
    bool checkHostName = true;
};

/** What has come back. */
struct HttpAnswer
{
    int status = 0;
    QString statusText;
    QStringList headerLines;
    ByteBuffer body;
    bool headersComplete = false;
};

/** Numbers of the client's network errors, as scripts see them in the low 16 bits of the error. */
namespace http {
constexpr int kTimedOut = 12002;
constexpr int kBadUrl = 12005;
constexpr int kUnknownScheme = 12006;
constexpr int kNameNotResolved = 12007;
constexpr int kCannotConnect = 12029;
constexpr int kConnectionEnded = 12030;
constexpr int kInvalidResponse = 12152;
constexpr int kRedirectFailed = 12156;
constexpr int kSecurityFailure = 12175;
/** The whole error number of a component. */
constexpr qint32 errorNumber(int code) { return qint32(0x80070000u | quint32(code)); }
QString errorText(int code);
}

/** One HTTP or HTTPS exchange, advanced by calls; destroying it ends it at once. */
class HttpTransfer
{
public:
    /** Starts. Throws 7 when the memory does not suffice. */
    explicit HttpTransfer(const HttpOrder &order);
    ~HttpTransfer();
    Q_DISABLE_COPY_MOVE(HttpTransfer)

    /** Goes on, waiting at most so long for the network. Throws what storing the answer threw. */
    void advance(int milliseconds);
    bool isFinished() const { return m_finished; }
    /** 0, or the number of the error it ended with. */
    int failure() const { return m_failure; }
    const HttpAnswer &answer() const { return m_answer; }

private:
    struct Handles;
    static size_t takeHeader(char *bytes, size_t size, size_t count, void *self);
    static size_t takeBody(char *bytes, size_t size, size_t count, void *self);
    static int takeProgress(void *self, qint64, qint64 received, qint64 toSend, qint64 sent);

    void configure();
    void configureMethod();
    void configureSecurity();
    void configureProxy();
    void parseHeaderLine(QByteArrayView line);
    void finish(int failure);
    /** Number of the error that a result of the library stands for. */
    int numberOf(int result) const;
    void collectResult();
    bool hasStalled() const;
    /** Runs what may throw inside a callback of the C library; false when it did. */
    template <class Action>
    bool guarded(Action action);

    HttpOrder m_order;
    memory::Charge m_bodyCharge;
    HttpAnswer m_answer;
    std::unique_ptr<Handles> m_handles;
    std::exception_ptr m_thrown;
    QElapsedTimer m_lastActivity;
    qint64 m_moved = 0;
    bool m_sending = false;
    bool m_finished = false;
    int m_failure = 0;
};

}
