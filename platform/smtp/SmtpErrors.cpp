#include "platform/smtp/SmtpErrors.h"

#include "platform/smtp/SmtpReply.h"
#include "platform/smtp/SmtpServer.h"

#include <curl/curl.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

struct Row {
    int code;
    const char *text;
};

constexpr Row kByResult[] = {
    { CURLE_COULDNT_RESOLVE_HOST, "the mail server was not found" },
    { CURLE_COULDNT_CONNECT, "the mail server could not be reached" },
    { CURLE_OPERATION_TIMEDOUT, "the mail server did not answer in time" },
    { CURLE_GOT_NOTHING, "the mail server closed the connection" },
    { CURLE_RECV_ERROR, "the mail server closed the connection" },
    { CURLE_SEND_ERROR, "the mail server closed the connection" },
    { CURLE_WEIRD_SERVER_REPLY, "the mail server gave an answer that is not understood" },
    { CURLE_PEER_FAILED_VERIFICATION, "the certificate of the mail server could not be verified" },
    { CURLE_SSL_CONNECT_ERROR, "no encrypted connection with the mail server came about" },
    { CURLE_SSL_CACERT_BADFILE, "the list of trusted certificates could not be read" },
    { CURLE_USE_SSL_FAILED, "the mail server offers no encryption" },
    { CURLE_LOGIN_DENIED, "the mail server refused the login" },
};

constexpr Row kBySystemError[] = {
    { ECONNREFUSED, "the mail server refused the connection" },
    { ENETUNREACH, "the network of the mail server is unreachable" },
    { EHOSTUNREACH, "there is no route to the mail server" },
};

constexpr qsizetype kLongestPart = 300;

} // namespace

QString plainReason(int curlCode, int systemError)
{
    if (curlCode == CURLE_COULDNT_CONNECT) {
        for (const Row &row : kBySystemError) {
            if (row.code == systemError)
                return QString::fromLatin1(row.text);
        }
    }
    for (const Row &row : kByResult) {
        if (row.code == curlCode)
            return QString::fromLatin1(row.text);
    }
    return sentencePart(QString::fromUtf8(curl_easy_strerror(CURLcode(curlCode))));
}

QString sentencePart(const QString &text)
{
    QString part;
    for (const QChar c : text.simplified())
        part += c.category() == QChar::Other_Control ? u' ' : (c == u'\'' ? u'`' : c);
    part.truncate(kLongestPart);
    while (part.endsWith(u'.') || part.endsWith(u' '))
        part.chop(1);
    return part;
}

QString saidByServer(const SmtpReply &reply, const SmtpServer &server)
{
    QString text = reply.text;
    const QByteArray secret = server.password.toUtf8();
    if (!secret.isEmpty()) {
        const QByteArray whole = '\0' + server.user.toUtf8() + '\0' + secret; // what AUTH PLAIN sends
        for (const QByteArray &form : { whole.toBase64(), secret.toBase64(), secret })
            text.replace(QString::fromUtf8(form), "***"_L1);
    }
    return sentencePart(text);
}
