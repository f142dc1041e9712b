// Page templates and the texts that are filled in: the input is both, divided by its first NUL.
#include "notify/HtmlTemplate.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const qsizetype middle = bytes.indexOf('\0');
    const HtmlTemplate texts = SplitTemplate(QString::fromUtf8(bytes.left(middle)));
    const QString value = HtmlText(QString::fromUtf8(bytes.mid(middle + 1)));
    for (const char mark : { '<', '>', '"', '\'' }) {
        if (value.contains(QLatin1Char(mark)))
            std::abort();
    }
    const QStringList placeholders{ QStringLiteral("<!--A-->"), QStringLiteral("XXX") };
    for (const QString &section : { texts.page, texts.group, texts.device, texts.port }) {
        QString nothing, same;
        HtmlSection(section, placeholders).expand({ QString(), QString() }, nothing);
        HtmlSection(section, placeholders).expand(placeholders, same);
        if (same != section || nothing.size() > section.size())
            std::abort();
    }
    return 0;
}
