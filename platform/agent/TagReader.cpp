#include "platform/agent/TagReader.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr qsizetype kNameLength = 3;
constexpr qsizetype kLongestValue = 64;

bool isLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

/** Undoes the doubling of quotes; a single one, as in a name that nobody has doubled, stays. */
QString withoutDoubledQuotes(QStringView quoted)
{
    return quoted.toString().replace(u"\"\""_s, u"\""_s);
}

} // namespace

bool TagReader::read(qsizetype at, SpeechTag &tag)
{
    const bool doubled = m_mapped && m_text.sliced(at).startsWith(u"\\\\");
    const QStringView stroke = doubled ? QStringView(u"\\\\") : QStringView(u"\\");
    qsizetype end = at + stroke.size();
    if (m_text.size() < end + kNameLength)
        return false;
    const QStringView name = m_text.sliced(end, kNameLength);
    if (!std::all_of(name.begin(), name.end(), isLetter))
        return false;
    tag = SpeechTag();
    tag.name = name.toString().toLower();
    end += kNameLength;
    if (tag.name == "map"_L1)
        return m_text.sliced(end).startsWith(u"=\"") && readMap(end + 2, tag);
    if (m_text.sliced(end).startsWith(u'=') && !readValue(end + 1, tag, end))
        return false;
    if (!m_text.sliced(end).startsWith(stroke))
        return false;
    tag.end = end + stroke.size();
    return true;
}

/** A mapped text ends by its quotes, because tags within it bring backslashes of their own. */
bool TagReader::readMap(qsizetype at, SpeechTag &tag)
{
    const qsizetype spokenEnd = findClosingQuote(at, u"=\"", m_noSpokenEndFrom);
    if (spokenEnd < 0)
        return false;
    const qsizetype shownAt = spokenEnd + 3;
    const qsizetype shownEnd = findClosingQuote(shownAt, u"\\", m_noShownEndFrom);
    if (shownEnd < 0)
        return false;
    tag.value = withoutDoubledQuotes(m_text.sliced(at, spokenEnd - at));
    tag.shown = withoutDoubledQuotes(m_text.sliced(shownAt, shownEnd - shownAt)).replace(u"\\\\"_s, u"\\"_s);
    tag.end = shownEnd + 2;
    return true;
}

bool TagReader::readValue(qsizetype at, SpeechTag &tag, qsizetype &end) const
{
    const QStringView rest = m_text.sliced(at).first(qMin(kLongestValue, m_text.size() - at));
    if (rest.startsWith(u'"')) {
        const qsizetype close = rest.indexOf(u'"', 1);
        if (close < 0)
            return false;
        tag.value = rest.sliced(1, close - 1).toString();
        end = at + close + 1;
        return true;
    }
    const qsizetype close = rest.indexOf(u'\\');
    if (close <= 0 || rest.first(close).contains(u' '))
        return false;
    tag.value = rest.first(close).toString();
    end = at + close;
    return true;
}

/** The quote that is followed by what ends the text, the last of them where several stand in a row: the ones
    before it belong to the text. */
qsizetype TagReader::findClosingQuote(qsizetype from, QStringView after, qsizetype &nothingFrom) const
{
    if (nothingFrom >= 0 && from >= nothingFrom)
        return -1;
    for (qsizetype quote = m_text.indexOf(u'"', from); quote >= 0; quote = m_text.indexOf(u'"', quote + 1)) {
        if (m_text.sliced(quote + 1).startsWith(after))
            return quote;
    }
    nothingFrom = from;
    return -1;
}

} // namespace agent
