#include "core/SpokenName.h"

using namespace Qt::StringLiterals;

QString SpokenDeviceName(const QString &name, const QString &alias, bool refer)
{
    return refer || alias.isEmpty() ? name : alias;
}

QString SpokenDeviceName(const dao::Recordset &row)
{
    return SpokenDeviceName(row.Field(u"Device_Name"_s).text(), row.Field(u"Device_Alias"_s).text(),
                            row.Field(u"MSAgent_Referr_Device"_s).boolean());
}
