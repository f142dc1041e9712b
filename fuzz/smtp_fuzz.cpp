// What mail servers, settings and names bring: an element of the server list, addresses, a message, answers.
#include "platform/smtp/MailMessage.h"
#include "platform/smtp/MailTransaction.h"
#include "platform/smtp/SmtpErrors.h"
#include "platform/smtp/SmtpServer.h"

#include <algorithm>
#include <cstdlib>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void tryServer(const QString &text)
{
    require(!withoutLogin(text).contains(QLatin1Char('@')));
    const std::optional<SmtpServer> server = parseSmtpServer(text);
    if (!server)
        return;
    const QByteArray url = server->url("me");
    require(std::none_of(url.cbegin(), url.cend(), [](char c) { return c <= ' ' || c == '@' || c == 127; }));
    require(server->mustEncrypt || !server->hasLogin());
}

void tryMessage(const QString &text)
{
    MailMessage mail;
    mail.recipients = mailAddresses(text);
    for (const QString &address : mail.recipients)
        require(!address.contains(QLatin1Char('\r')) && !address.contains(QLatin1Char('\n'))
                && !address.contains(QLatin1Char('>')));
    mail.subject = text;
    mail.body = text;
    const QByteArray bytes = mail.bytes();
    // The header ends where it should, and the end mark occurs once.
    require(bytes.left(bytes.indexOf("\r\n\r\n")).contains("\r\nX-Mailer:"));
    require(QByteArray("\r\n" + dotStuffed(bytes)).indexOf("\r\n.\r\n") == dotStuffed(bytes).size() - 3);
    for (const QByteArray &line : bytes.split('\n'))
        require(line.size() <= 1000 || bytes.left(bytes.indexOf(line)).endsWith("To: "));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString text = QString::fromUtf8(bytes);
    tryServer(text);
    tryMessage(text);
    const QString part = sentencePart(text);
    require(!part.contains(QLatin1Char('\'')) && !part.contains(QLatin1Char('\n')));
    MailTransaction transaction({}, { QStringLiteral("a@x") }, "m\r\n.\r\n", false);
    for (const QByteArray &piece : bytes.split('\0')) {
        transaction.takeOutput();
        if (transaction.feed(piece) != MailTransaction::Going)
            break;
    }
    return 0;
}
