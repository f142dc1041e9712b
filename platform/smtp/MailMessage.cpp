#include "platform/smtp/MailMessage.h"

#include <QLocale>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestLine = 998; // RFC 5322, 2.1.1
constexpr qsizetype kPlainSubject = 66; // fits a line of 78 behind "Subject: "

bool isPrintableAscii(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c >= u' ' && c <= u'~'; });
}

/** Text for one header line: whatever could end the line becomes a blank. */
QString oneLine(const QString &text)
{
    QString line = text;
    for (QChar &c : line) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return line.trimmed();
}

/** Encoded words (RFC 2047), a line each; none cuts a character in two. */
QByteArray encodedWords(const QString &text)
{
    constexpr qsizetype kBytesAWord = 45;
    QByteArrayList words;
    QByteArray chunk;
    const auto flush = [&] {
        words.append("=?UTF-8?B?" + chunk.toBase64() + "?=");
        chunk.clear();
    };
    for (const char32_t codePoint : text.toUcs4()) {
        const QByteArray bytes = QString::fromUcs4(&codePoint, 1).toUtf8();
        if (chunk.size() + bytes.size() > kBytesAWord)
            flush();
        chunk += bytes;
    }
    flush();
    return words.join("\r\n ");
}

QByteArray subjectText(const QString &subject)
{
    const QString line = oneLine(subject);
    if (isPrintableAscii(line) && line.size() <= kPlainSubject && !line.contains("=?"_L1))
        return line.toLatin1();
    return encodedWords(line);
}

QByteArrayList linesOf(const QString &body)
{
    static const QRegularExpression lineEnd(u"\r\n|\r|\n"_s);
    QStringList lines = QString(body).remove(QChar::Null).split(lineEnd);
    if (lines.constLast().isEmpty())
        lines.removeLast();
    QByteArrayList encoded;
    for (const QString &line : std::as_const(lines))
        encoded.append(line.toUtf8());
    return encoded;
}

bool needsEncoding(const QByteArrayList &lines)
{
    const auto foreign = [](char c) { return (c < ' ' && c != '\t') || c > '~'; };
    return std::any_of(lines.cbegin(), lines.cend(), [&](const QByteArray &line) {
        return line.size() > kLongestLine || std::any_of(line.cbegin(), line.cend(), foreign);
    });
}

/** One line as quoted-printable (RFC 2045, 6.7), broken softly at 76 characters. */
QByteArray quotedPrintable(const QByteArray &line)
{
    constexpr qsizetype kLongest = 75; // the soft break's "=" is the 76th
    QByteArray result;
    qsizetype width = 0;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char c = line.at(i);
        const bool blank = (c == ' ' || c == '\t') && i + 1 < line.size();
        const QByteArray piece = blank || (c > ' ' && c <= '~' && c != '=')
            ? QByteArray(1, c)
            : '=' + QByteArray(1, c).toHex().toUpper();
        if (width + piece.size() > kLongest) {
            result += "=\r\n";
            width = 0;
        }
        result += piece;
        width += piece.size();
    }
    return result;
}

/** "local@domain" with the domain in its wire form; empty when the text is no address. */
QString bareAddress(const QString &text)
{
    static const QRegularExpression bracketed(u"<([^<>]*)>\\s*$"_s);
    static const QRegularExpression shape(uR"(^[^\s<>()\[\],;:\\"@\x00-\x1f\x7f]{1,64})"
                                          uR"((?:@([^\s<>(),;\\"@\x00-\x1f\x7f]{1,255}))?$)"_s);
    if (text.trimmed() != oneLine(text))
        return {};
    const QRegularExpressionMatch inner = bracketed.match(text);
    const QString address = (inner.hasMatch() ? inner.captured(1) : text).trimmed();
    const QRegularExpressionMatch match = shape.match(address);
    if (!match.hasMatch())
        return {};
    if (!match.hasCaptured(1) || isPrintableAscii(match.captured(1)))
        return address;
    const QByteArray domain = QUrl::toAce(match.captured(1));
    return domain.isEmpty() ? QString() : address.left(match.capturedStart(1)) + QString::fromLatin1(domain);
}

/** The elements of a list; a separator between quotation marks belongs to a display name. */
QStringList elementsOf(const QString &list)
{
    QStringList elements{ QString() };
    bool quoted = false;
    for (const QChar c : list) {
        if (c == u'"')
            quoted = !quoted;
        if (!quoted && (c == u';' || c == u','))
            elements.append(QString());
        else
            elements.last() += c;
    }
    return elements;
}

} // namespace

QByteArray MailMessage::bytes() const
{
    const QByteArrayList lines = linesOf(body);
    const bool encode = needsEncoding(lines);
    const QString from = sender.isEmpty() ? "kavro2000@"_L1 + oneLine(hostName) : oneLine(sender);
    QByteArrayList text{
        "Date: " + QLocale::c().toString(date.date(), u"ddd, "_s).toLatin1()
            + date.toString(Qt::RFC2822Date).toLatin1(),
        "From: " + from.toUtf8(),
        "To: " + oneLine(recipients.join(u'\n')).replace(u' ', ",\r\n "_L1).toUtf8(),
        "Subject: " + subjectText(subject),
        "Message-ID: <" + oneLine(messageId).toUtf8() + '>',
        "MIME-Version: 1.0",
        "Content-Type: text/plain; charset=utf-8",
        QByteArray("Content-Transfer-Encoding: ") + (encode ? "quoted-printable" : "7bit"),
        "Auto-Submitted: auto-generated",
        "X-Mailer: " + oneLine(program).toUtf8(),
        QByteArray(),
    };
    for (const QByteArray &line : lines)
        text.append(encode ? quotedPrintable(line) : line);
    return text.join("\r\n") + "\r\n";
}

QStringList mailAddresses(const QString &list)
{
    QStringList addresses;
    for (const QString &element : elementsOf(list)) {
        if (element.trimmed().isEmpty())
            continue;
        const QString address = bareAddress(element);
        if (address.isEmpty())
            return {};
        if (!addresses.contains(address))
            addresses.append(address);
    }
    return addresses;
}

QByteArray dotStuffed(const QByteArray &message)
{
    QByteArray stuffed = message;
    stuffed.replace("\r\n.", "\r\n..");
    if (stuffed.startsWith('.'))
        stuffed.prepend('.');
    return stuffed + ".\r\n";
}
