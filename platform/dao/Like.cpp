#include "platform/dao/Like.h"

#include <QChar>

namespace dao {

namespace {

/** Length of the list that begins with "[" at pattern[0], or 0 when no "]" closes it. */
qsizetype listLength(QStringView pattern)
{
    const qsizetype close = pattern.indexOf(u']', 1);
    return close < 0 ? 0 : close + 1;
}

bool inRange(QChar c, QChar low, QChar high)
{
    const QChar lower = c.toLower();
    const QChar upper = c.toUpper();
    return (lower >= low && lower <= high) || (upper >= low && upper <= high);
}

/** inside is what stands between the brackets. */
bool listHolds(QStringView inside, QChar c)
{
    const bool negated = inside.size() > 1 && inside.front() == u'!';
    if (negated)
        inside = inside.mid(1);
    for (qsizetype i = 0; i < inside.size(); ++i) {
        if (i + 2 < inside.size() && inside[i + 1] == u'-') {
            if (inRange(c, inside[i], inside[i + 2]))
                return !negated;
            i += 2;
        } else if (inside[i].toCaseFolded() == c.toCaseFolded()) {
            return !negated;
        }
    }
    return negated;
}

/** Whether the one pattern element at pattern[0] takes the character; size becomes the element's length. */
bool takes(QStringView pattern, QChar c, qsizetype &size)
{
    size = 1;
    switch (pattern.front().unicode()) {
    case u'?':
        return true;
    case u'#':
        return c >= u'0' && c <= u'9';
    case u'[':
        if (const qsizetype length = listLength(pattern)) {
            size = length;
            return listHolds(pattern.mid(1, length - 2), c);
        }
        [[fallthrough]];
    default:
        return pattern.front().toCaseFolded() == c.toCaseFolded();
    }
}

} // namespace

bool likeMatches(QStringView text, QStringView pattern)
{
    qsizetype t = 0;
    qsizetype p = 0;
    qsizetype star = -1; // where to go on in the pattern when the run of the last "*" must grow
    qsizetype mark = 0;
    for (;;) {
        while (pattern.mid(p).startsWith(u"[]"))
            p += 2;
        qsizetype size = 0;
        if (p < pattern.size() && pattern[p] == u'*') {
            star = ++p;
            mark = t;
        } else if (t == text.size() && p == pattern.size()) {
            return true;
        } else if (t < text.size() && p < pattern.size() && takes(pattern.mid(p), text[t], size)) {
            ++t;
            p += size;
        } else if (star >= 0 && mark < text.size()) {
            p = star;
            t = ++mark;
        } else {
            return false;
        }
    }
}

} // namespace dao
