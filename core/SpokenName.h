#pragma once

#include <QString>

/** How texts name a device: by its name when refer is true, else by its alias when there is one. */
QString SpokenDeviceName(const QString &name, const QString &alias, bool refer);
