#pragma once

#include <QString>

namespace agent {

/** How one character sounds. */
struct Voice {
    QString name = QStringLiteral("en-us"); // of the language, as espeak-ng calls it
    QString variant;                        // "m3", "f2", "croak" …; empty: the language's own voice
    int pitch = 50;                         // 0 to 99
    int range = 50;                         // 0 (monotonous) to 99
    int speed = 165;                        // words per minute

    bool operator==(const Voice &) const = default;
};

} // namespace agent
