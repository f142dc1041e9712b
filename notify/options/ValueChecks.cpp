#include "notify/options/ValueChecks.h"

#include "core/vbMain.h"
#include "notify/options/FilePicker.h"
#include "notify/options/OptionText.h"
#include "platform/smtp/MailMessage.h"
#include "platform/smtp/SmtpServer.h"


#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace options {

namespace {

QString fileProblem(const FilePicker &picker, const QString &path)
{
    if (path.trimmed().isEmpty())
        return u"You did not indicate a file name."_s;
    if (!HasEnding(picker, path))
        return QString::fromUtf16(picker.wrongEnding);
    const QFileInfo file(nativePath(path));
    if (file.isDir())
        return tr("This is a folder, not a file.");
    if (picker.existing && !file.exists())
        return tr("There is no such file.");
    if (!QFileInfo(file.absolutePath()).isDir())
        return tr("There is no folder %1.").arg(file.absolutePath());
    return {};
}

/** The mail queue takes texts as they are, and an apostrophe would end the statement. */
QString apostropheProblem(const QString &text)
{
    return text.contains(u'\'')
        ? tr("An apostrophe (') cannot be put into the mail queue and would end the program. Write ’ instead.")
        : QString();
}

QString quoted(const QString &element) { return u'“' + withoutLogin(element) + u'”'; }

QString listProblem(const QStringList &elements)
{
    QStringList seen;
    for (const QString &element : elements) {
        if (const QString wrong = serverProblem(element); !wrong.isEmpty())
            return wrong;
        const QString place = withoutLogin(element).toLower();
        if (seen.contains(place))
            return tr("The server %1 is in the list twice.").arg(quoted(element));
        seen << place;
    }
    return {};
}

} // namespace

QString logFileProblem(const QString &path) { return fileProblem(kLogFilePicker, path); }

QString pageFileProblem(const QString &path) { return fileProblem(kPageFilePicker, path); }

QString templateFileProblem(const QString &path) { return fileProblem(kTemplateFilePicker, path); }

QString senderProblem(const QString &address)
{
    if (address.trimmed().isEmpty() || (mailAddresses(address).size() == 1 && address.contains(u'@')))
        return {};
    return tr("The sender is no mail address, such as monitor@example.com.");
}

QString recipientsProblem(const QString &addresses)
{
    if (addresses.trimmed().isEmpty())
        return tr("Without an address only checks with a template of their own can be mailed.");
    if (mailAddresses(addresses).isEmpty())
        return tr("Write one or more mail addresses; a semicolon stands between two of them.");
    return apostropheProblem(addresses);
}

QString templateProblem(const QString &text) { return apostropheProblem(text); }

QString serverProblem(const QString &element)
{
    return parseSmtpServer(element) ? QString() : tr("The server %1 cannot be read.").arg(quoted(element));
}

QStringList serverElements(const QString &list)
{
    QStringList elements;
    for (const QString &element : list.split(u"::"_s)) {
        if (const QString trimmed = element.trimmed(); !trimmed.isEmpty())
            elements << trimmed;
    }
    return elements;
}

QString smtpProblem(const SmtpSettings &settings)
{
    QStringList sentences;
    const QStringList elements = serverElements(settings.servers);
    if (elements.isEmpty() && settings.mailOn)
        sentences << tr("Mail is on, but there is no server to send it with.");
    sentences << listProblem(elements);
    if (settings.sender.trimmed().isEmpty() && settings.mailOn)
        sentences << tr("Mail is on, but it has no sender.");
    sentences << senderProblem(settings.sender);
    sentences.removeAll(QString());
    return sentences.join(u' ');
}

} // namespace options
