#include "editors/AddressRange.h"

#include <QRegularExpression>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

using addressrange::Kind;
using addressrange::Range;

constexpr int kBits = 32;
constexpr int kLastWithBroadcast = 30; // longer prefixes have no network and broadcast address

std::optional<quint32> address(const QString &text)
{
    const QStringList parts = text.split(u'.');
    if (parts.size() != 4)
        return {};
    quint32 value = 0;
    for (const QString &part : parts) {
        bool ok = false;
        const uint number = part.toUInt(&ok);
        if (!ok || number > 255)
            return {};
        value = value << 8 | number;
    }
    return value;
}

QString dotted(quint32 value)
{
    return u"%1.%2.%3.%4"_s.arg(value >> 24).arg(value >> 16 & 255).arg(value >> 8 & 255).arg(value & 255);
}

Range between(quint32 first, quint32 last)
{
    if (last < first)
        return { Kind::Backwards, {} };
    if (last - first >= addressrange::kMostAddresses)
        return { Kind::TooLarge, {} };
    Range range { Kind::Range, {} };
    for (quint64 each = first; each <= last; ++each)
        range.addresses.append(dotted(quint32(each)));
    return range;
}

Range network(quint32 inside, const QString &length)
{
    bool ok = false;
    const int prefix = length.toInt(&ok);
    if (!ok || prefix < 0 || prefix > kBits)
        return { Kind::Malformed, {} };
    const quint64 size = 1ULL << (kBits - prefix);
    if (size > addressrange::kMostAddresses)
        return { Kind::TooLarge, {} };
    const auto first = quint32(inside & ~(size - 1));
    const auto last = quint32(first + size - 1);
    return prefix > kLastWithBroadcast ? between(first, last) : between(first + 1, last - 1);
}

} // namespace

Range addressrange::parse(const QString &text)
{
    // Letters after the sign make it a name again, if an unusual one.
    static const QRegularExpression shape(uR"(^\s*([0-9]+(?:\.[0-9]+){3})\s*([-/])\s*([0-9.]*)\s*$)"_s);
    const QRegularExpressionMatch match = shape.match(text);
    if (!match.hasMatch())
        return {};
    const std::optional<quint32> first = address(match.captured(1));
    if (!first)
        return { Kind::Malformed, {} };
    const QString end = match.captured(3);
    if (match.captured(2) == u"/")
        return network(*first, end);
    const QString last = end.contains(u'.') ? end : match.captured(1).section(u'.', 0, 2) + u'.' + end;
    if (const std::optional<quint32> value = address(last))
        return between(*first, *value);
    return { Kind::Malformed, {} };
}
