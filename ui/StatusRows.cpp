#include "ui/StatusRows.h"

#include "core/StatusCodes.h"
#include "core/vbMain.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace rows {

namespace {

constexpr QLatin1StringView kPortSelect
    = "Select tblPortMain.Device_ID, tblPortMain.Port_ID, tblPortMain.Port_Num, tblPortMain.Port_Type,"
      " tblPortMain.Port_Desc, tblPortStatus.Port_Status, tblPortStatus.Port_Last_Error,"
      " tblPortStatus.Port_Rec_Date, tblPortStatus.Port_Fail_Date, tblPortStatus.Port_Success,"
      " tblPortStatus.Port_Failure, tblPortStatus.Ping_Min, tblPortStatus.Ping_Max, tblPortStatus.Ping_Avg"
      " FROM tblPortMain, tblPortStatus"_L1;

QString text(const dao::Recordset &row, QLatin1StringView field) { return row.Field(field).text(); }

qint64 number(const dao::Recordset &row, QLatin1StringView field)
{
    const dao::Value value = row.Field(field);
    return value.isNull() ? 0 : value.integer();
}

/** The group table holds no status text; its icon says the same. */
QString groupStatus(int icon)
{
    switch (icon) {
    case status::GroupRecovered:
        return u"Recovered"_s;
    case status::GroupProblems:
        return u"Problems Detected"_s;
    default:
        return u"No Problems Detected"_s;
    }
}

StatusRow groupRow(const dao::Recordset &row)
{
    const int icon = int(number(row, "Group_Icon"_L1));
    return { NodeLevel::Group, keys::group(number(row, "Group_ID"_L1)), icon,
        { text(row, "Group_Label"_L1), u"Group"_s, text(row, "Group_Desc"_L1), groupStatus(icon) } };
}

StatusRow deviceRow(const dao::Recordset &row)
{
    const QString name = text(row, "Device_Name"_L1);
    const QString alias = text(row, "Device_Alias"_L1);
    return { NodeLevel::Device, keys::device(number(row, "Device_ID"_L1), name),
        int(number(row, "Device_Icon"_L1)),
        { alias.isEmpty() ? name : alias, u"Device"_s, text(row, "Device_Desc"_L1),
            text(row, "Device_Status"_L1) } };
}

QString portStatus(const dao::Recordset &row)
{
    const QString stored = text(row, "Port_Status"_L1);
    if (stored == u"Failed")
        return u"Failed since "_s + text(row, "Port_Fail_Date"_L1);
    if (stored == u"Recovered")
        return u"Recovered on "_s + text(row, "Port_Rec_Date"_L1);
    return stored;
}

QString portSummary(const dao::Recordset &row)
{
    const QString summary = successSummary(number(row, "Port_Success"_L1), number(row, "Port_Failure"_L1));
    if (text(row, "Port_Type"_L1) != u"Ping")
        return summary;
    return summary + u' ' + text(row, "Ping_Min"_L1) + u" min/"_s + text(row, "Ping_Max"_L1) + u" max/"_s
        + text(row, "Ping_Avg"_L1) + u" average"_s;
}

/** The images of a device's checks by Port_ID; the statement of the rows does not select them. */
QHash<qint64, int> portImages(const QString &deviceId)
{
    QHash<qint64, int> images;
    auto found
        = db().OpenRecordset(u"Select Port_ID, Port_Icon FROM tblPortStatus WHERE Device_ID = "_s + deviceId);
    for (; !found.Eof(); found.MoveNext())
        images.insert(number(found, "Port_ID"_L1), int(number(found, "Port_Icon"_L1)));
    found.Close();
    return images;
}

StatusRow portRow(const dao::Recordset &row, const QHash<qint64, int> &images)
{
    const QString portNum = text(row, "Port_Num"_L1);
    const QString type = text(row, "Port_Type"_L1);
    return { NodeLevel::Port, keys::port(number(row, "Device_ID"_L1), portNum),
        images.value(number(row, "Port_ID"_L1)),
        { type + u':' + portNum, type, text(row, "Port_Desc"_L1), portStatus(row),
            text(row, "Port_Last_Error"_L1), portSummary(row) } };
}

template <class Make>
void append(QList<StatusRow> &list, const QString &sql, Make make)
{
    auto found = db().OpenRecordset(sql);
    for (; !found.Eof(); found.MoveNext())
        list.append(make(found));
    found.Close();
}

void appendPorts(QList<StatusRow> &list, const QString &deviceId, const QString &condition)
{
    const QHash<qint64, int> images = portImages(deviceId);
    append(list, kPortSelect + u" WHERE "_s + condition + u" ORDER BY tblPortMain.Port_Num"_s,
        [&](const dao::Recordset &row) { return portRow(row, images); });
}

void markParent(QList<StatusRow> &list)
{
    if (!list.isEmpty())
        list.first().isParent = true;
}

} // namespace

QList<StatusRow> groups()
{
    QList<StatusRow> list;
    append(list, u"SELECT * FROM tblGroup ORDER BY Group_Label"_s, groupRow);
    return list;
}

QList<StatusRow> devices(const QString &groupId)
{
    QList<StatusRow> list;
    append(list, u"Select * FROM tblGroup WHERE Group_ID = "_s + groupId, groupRow);
    markParent(list);
    append(list,
        u"SELECT * FROM tblDevices WHERE Group_ID = "_s + groupId + u" ORDER BY Device_Alias, Device_Name"_s,
        deviceRow);
    return list;
}

QList<StatusRow> ports(const QString &deviceId)
{
    QList<StatusRow> list;
    append(list, u"Select * from [tblDevices] WHERE Device_ID = "_s + deviceId, deviceRow);
    markParent(list);
    appendPorts(list, deviceId,
        u"tblPortMain.Device_ID = "_s + deviceId + u" AND tblPortMain.Port_ID = tblPortStatus.Port_ID"_s);
    return list;
}

QList<StatusRow> port(const QString &deviceId, const QString &portNum)
{
    QList<StatusRow> list;
    appendPorts(list, deviceId,
        u"tblPortMain.Port_Num = "_s + portNum + u" AND tblPortMain.Device_ID = "_s + deviceId
            + u" AND tblPortMain.Device_ID = tblPortStatus.Device_ID"
              " AND tblPortMain.Port_ID = tblPortStatus.Port_ID"_s);
    return list;
}

QString successSummary(qint64 success, qint64 failure)
{
    const qint64 total = success + failure;
    qint64 hundredths = 0; // of a percent; whole numbers, since a double would turn some halves down
    if (total > 0)
        hundredths = (success * 20000 + total) / (2 * total);
    return u"%1/%2 (%3.%4%)"_s.arg(success)
        .arg(total)
        .arg(hundredths / 100)
        .arg(hundredths % 100, 2, 10, QLatin1Char('0'));
}

} // namespace rows
