#pragma once

#include <QString>

namespace desktop {

/** Whether the desktop has a program for files of this one's type: chosen by the user or by the system, or
   one that declares the type itself. Whoever opens a file without asking gets a yes from the desktop even
   where nothing will show it. */
bool hasProgramFor(const QString &file);

} // namespace desktop
