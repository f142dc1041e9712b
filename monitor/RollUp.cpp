#include "monitor/RollUp.h"

#include "core/MainWindow.h"
#include "core/SpokenName.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"
#include "core/Waits.h"

#include <QVector>

#include <limits>
#include <span>

using namespace Qt::StringLiterals;
using dao::Recordset;

namespace {

/** One statement of the roll-up; the id is appended. Later rows override earlier ones, which sets the precedence. */
constexpr QLatin1StringView kDeviceStatements[] = {
    "UPDATE tblDevices INNER JOIN tblPortStatus ON tblDevices.Device_ID = tblPortStatus.Device_ID"
    " SET tblDevices.Device_Icon = 2, tblDevices.Device_Status = 'No Problems Detected'"
    " WHERE tblPortStatus.Port_Mode = 0 AND tblDevices.Device_Icon <> 12 AND tblDevices.Device_ID = "_L1,
    "UPDATE tblDevices INNER JOIN tblPortStatus ON tblDevices.Device_ID = tblPortStatus.Device_ID"
    " SET tblDevices.Device_Icon = 3, tblDevices.Device_Status = 'Recovered'"
    " WHERE tblPortStatus.Port_Mode >= 1 AND tblDevices.Device_Icon <> 12 AND tblDevices.Device_ID = "_L1,
    "UPDATE tblDevices INNER JOIN tblPortStatus ON tblDevices.Device_ID = tblPortStatus.Device_ID"
    " SET tblDevices.Device_Icon = 4, tblDevices.Device_Status = 'Problems Detected'"
    " WHERE tblPortStatus.Port_Mode = -1 AND tblDevices.Device_Icon <> 12 AND tblDevices.Device_ID = "_L1,
};

constexpr QLatin1StringView kGroupStatements[] = {
    "UPDATE tblGroup INNER JOIN tblDevices ON tblGroup.Group_ID = tblDevices.Group_ID SET tblGroup.Group_Icon = 14"
    " WHERE tblDevices.Device_Icon = 2 AND tblDevices.Group_ID = "_L1,
    "UPDATE tblGroup INNER JOIN tblDevices ON tblGroup.Group_ID = tblDevices.Group_ID SET tblGroup.Group_Icon = 15"
    " WHERE tblDevices.Device_Icon = 3 AND tblDevices.Group_ID = "_L1,
    "UPDATE tblGroup INNER JOIN tblDevices ON tblGroup.Group_ID = tblDevices.Group_ID SET tblGroup.Group_Icon = 16"
    " WHERE tblDevices.Device_Icon = 4 AND tblDevices.Group_ID = "_L1,
};

QVector<qint64> idsOf(QLatin1StringView select, const QString &column)
{
    QVector<qint64> ids;
    Recordset rows = db().OpenRecordset(select);
    for (; !rows.Eof(); rows.MoveNext())
        ids.append(rows.Field(column).integer());
    return ids;
}

void runAll(std::span<const QLatin1StringView> statements, qint64 id)
{
    for (const QLatin1StringView statement : statements) {
        db().Execute(statement + QString::number(id));
        CheckDatabaseErrors();
    }
}

/** The statement changes nothing of meaning; the number of rows that it meets is the problem count. */
int countProblems()
{
    db().Execute(u"UPDATE tblPortStatus SET Port_Dummy = 0 WHERE Port_Mode < 0 AND Port_Icon <> 13"_s);
    CheckDatabaseErrors();
    const long count = db().RecordsAffected();
    if (count > std::numeric_limits<qint16>::max())
        throw VbError(6, u"Overflow"_s);
    return int(count);
}

void showOnTray(int problems)
{
    MainWindow *window = vbMain().window;
    window->setTrayImage(problems < 1 ? status::TrayOk : status::TrayProblems);
    window->setTrayTip(AppTitle() + " - "_L1 + QString::number(problems) + " problems detected."_L1);
}

Task<int> checkIcons()
{
    const QVector<qint64> devices = idsOf("Select tblDevices.Device_ID FROM tblDevices"_L1, u"Device_ID"_s);
    if (devices.isEmpty())
        co_return -1;
    for (const qint64 id : devices) {
        co_await waits::Yield();
        runAll(kDeviceStatements, id);
    }
    const QVector<qint64> groups = idsOf("Select tblGroup.Group_ID FROM tblGroup ORDER BY tblGroup.Group_ID"_L1,
                                         u"Group_ID"_s);
    if (groups.isEmpty())
        co_return -1;
    for (const qint64 id : groups)
        runAll(kGroupStatements, id);
    const int problems = countProblems();
    showOnTray(problems);
    co_return problems;
}

/** Walks the rows of a change list; the row counter has 16 bits. */
template <class Cells>
ResultTable changeList(const QString &select, int columns, Cells cellsOf)
{
    ResultTable list(columns);
    Recordset rows = db().OpenRecordset(select);
    CheckDatabaseErrors();
    for (; !rows.Eof(); rows.MoveNext()) {
        if (list.rows() > std::numeric_limits<qint16>::max())
            throw VbError(6, u"Overflow"_s);
        list.addRow(cellsOf(rows));
    }
    return list;
}

constexpr QLatin1StringView kSelectFailed =
    "Select tblDevices.Device_Name, tblDevices.Device_Alias, tblDevices.MSAgent_Referr_Device,"
    " tblDevices.MSAgent_Pronounce_Device, tblDevices.Device_ID, tblPortMain.Device_ID as DeviceID,"
    " tblPortMain.Port_Num, tblPortStatus.Port_Mode, tblPortStatus.Port_Icon, tblPortStatus.Port_Icon_Flag,"
    " tblPortMain.Port_ID as PortID, tblPortStatus.Port_ID, tblPortStatus.Port_Last_Error"
    " FROM tblDevices, tblPortMain, tblPortStatus"
    " WHERE tblDevices.Device_ID = tblPortMain.Device_ID AND tblPortMain.Port_ID = tblPortStatus.Port_ID"
    " AND tblPortStatus.Port_Mode = -1 AND tblPortStatus.Port_Icon <> 13 AND tblPortStatus.Port_Icon_Flag = -1"_L1;

constexpr QLatin1StringView kSelectRecovered =
    "Select tblDevices.Device_Name, tblDevices.Device_Alias, tblDevices.MSAgent_Referr_Device,"
    " tblDevices.MSAgent_Pronounce_Device, tblDevices.Device_ID as DeviceID, tblPortMain.Device_ID,"
    " tblPortMain.Port_Num, tblPortStatus.Port_Mode, tblPortStatus.Port_Icon, tblPortStatus.Port_Icon_Flag,"
    " tblPortMain.Port_ID as PortID, tblPortStatus.Port_ID, tblPortStatus.Port_Last_Error"
    " FROM tblDevices, tblPortMain, tblPortStatus"
    " WHERE tblDevices.Device_ID = tblPortMain.Device_ID AND tblPortMain.Port_ID = tblPortStatus.Port_ID"
    " AND tblPortStatus.Port_Mode >= 1 AND tblPortStatus.Port_Icon <> 13 AND tblPortStatus.Port_Icon_Flag = 1"_L1;

} // namespace

Task<int> Check_TVIcons() { return Trap("Check_TVIcons", checkIcons()); }

ResultTable GetFailedDevices()
{
    return Trap("GetFailedDevices", [] {
        return changeList(kSelectFailed, failed::Count, [](const Recordset &row) {
            return QStringList{ SpokenDeviceName(row), row.Field(u"Port_Num"_s).text(),
                                row.Field(u"Port_Last_Error"_s).text(), row.Field(u"MSAgent_Pronounce_Device"_s).text(),
                                row.Field(u"DeviceID"_s).text(), row.Field(u"PortID"_s).text() };
        });
    });
}

ResultTable GetRecoveredDevices()
{
    return Trap("GetRecoveredDevices", [] {
        return changeList(kSelectRecovered, recovered::Count, [](const Recordset &row) {
            return QStringList{ SpokenDeviceName(row), row.Field(u"Port_Num"_s).text(),
                                row.Field(u"MSAgent_Pronounce_Device"_s).text(), row.Field(u"DeviceID"_s).text(),
                                row.Field(u"PortID"_s).text() };
        });
    });
}
