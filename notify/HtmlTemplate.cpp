#include "notify/HtmlTemplate.h"

#include "platform/dao/VbError.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kLineEnd = "\r\n"_L1;

/** Which sections are open while a template is read. */
struct OpenSections {
    bool group = false;
    bool device = false;
    bool port = false;

    void readMarker(const QString &line)
    {
        const struct {
            bool &section;
            QLatin1StringView begin, end;
        } markers[] = { { group, "<!--BEGINGROUP-->"_L1, "<!--ENDGROUP-->"_L1 },
                        { device, "<!--BEGINDEVICE-->"_L1, "<!--ENDDEVICE-->"_L1 },
                        { port, "<!--BEGINPORT-->"_L1, "<!--ENDPORT-->"_L1 } };
        for (const auto &marker : markers) {
            if (line == marker.begin)
                marker.section = true;
            if (line == marker.end)
                marker.section = false;
        }
    }

    QString &target(HtmlTemplate &texts) const
    {
        if (device)
            return texts.device;
        if (port)
            return texts.port;
        return group ? texts.group : texts.page;
    }
};

/** Blanks only, as the marker lines are compared. */
QString trimBlanks(const QString &line)
{
    static const QRegularExpression ends(u"^ +| +$"_s);
    return QString(line).remove(ends);
}

/** The first placeholder at or behind a position. */
std::pair<qsizetype, int> nextPlaceholder(const QString &text, const QStringList &placeholders, qsizetype from)
{
    std::pair<qsizetype, int> first{ -1, -1 };
    for (int i = 0; i < placeholders.size(); ++i) {
        const qsizetype at = text.indexOf(placeholders.at(i), from);
        if (at >= 0 && (first.first < 0 || at < first.first))
            first = { at, i };
    }
    return first;
}

} // namespace

HtmlTemplate SplitTemplate(const QString &text)
{
    static const QRegularExpression lineEnd(u"\r\n|\r|\n"_s);
    HtmlTemplate texts;
    OpenSections open;
    QStringList lines = text.split(lineEnd);
    if (lines.constLast().isEmpty())
        lines.removeLast();
    for (const QString &line : std::as_const(lines)) {
        const QString marker = trimBlanks(line);
        open.readMarker(marker);
        if (marker == "<!--BEGINDEVICE-->"_L1)
            texts.page += "<!--WRITEDETAILS-->"_L1 + kLineEnd;
        open.target(texts) += line + kLineEnd;
    }
    return texts;
}

QString ReadTemplate(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw VbError(75, file.errorString() + ": "_L1 + path);
    const QByteArray bytes = file.readAll();
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

QString HtmlText(const QString &text)
{
    QString safe;
    safe.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'&': safe += "&amp;"_L1; break;
        case u'<': safe += "&lt;"_L1; break;
        case u'>': safe += "&gt;"_L1; break;
        case u'"': safe += "&quot;"_L1; break;
        case u'\'': safe += "&#39;"_L1; break;
        default: safe += c.category() == QChar::Other_Control ? u' ' : c;
        }
    }
    return safe;
}

HtmlSection::HtmlSection(const QString &text, const QStringList &placeholders)
{
    qsizetype from = 0;
    for (;;) {
        const auto [at, placeholder] = nextPlaceholder(text, placeholders, from);
        m_pieces.append({ text.mid(from, at < 0 ? -1 : at - from), placeholder });
        if (placeholder < 0)
            return;
        from = at + placeholders.at(placeholder).size();
    }
}

void HtmlSection::expand(const QStringList &values, QString &page) const
{
    for (const Piece &piece : m_pieces) {
        page += piece.text;
        if (piece.placeholder >= 0)
            page += values.at(piece.placeholder);
    }
}
