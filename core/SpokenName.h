#pragma once

#include "platform/dao/Dao.h"

#include <QString>

/** How texts name a device: by its name when refer is true, else by its alias when there is one. */
QString SpokenDeviceName(const QString &name, const QString &alias, bool refer);
/** The same for a row that holds Device_Name, Device_Alias and MSAgent_Referr_Device. */
QString SpokenDeviceName(const dao::Recordset &row);
