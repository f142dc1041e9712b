#pragma once

#include <QString>

namespace desktop {

/** Opens a file path, a "file://" + path or an address with the desktop's own program for it.
    False when the desktop knows none. */
bool shellOpen(const QString &target);

} // namespace desktop
