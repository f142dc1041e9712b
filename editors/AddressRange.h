#pragma once

#include <QString>
#include <QStringList>

/** Ranges of IPv4 addresses as an operator types them: "192.168.1.10-192.168.1.40", "192.168.1.10-40",
    "192.168.1.0/24" (the network's hosts). */
namespace addressrange {

inline constexpr int kMostAddresses = 1024;

enum class Kind {
    None, // no range; a single name
    Range,
    Backwards, // ends before it begins
    TooLarge, // more than kMostAddresses
    Malformed // begins like a range
};

struct Range {
    Kind kind = Kind::None;
    QStringList addresses; // ascending, of a good range only
};

Range parse(const QString &text);

} // namespace addressrange
