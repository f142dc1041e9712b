#include "core/SpokenName.h"

QString SpokenDeviceName(const QString &name, const QString &alias, bool refer)
{
    return refer || alias.isEmpty() ? name : alias;
}
