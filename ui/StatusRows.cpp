#include "ui/StatusRows.h"

#include "core/StatusCodes.h"
#include "core/vbMain.h"

using namespace Qt::StringLiterals;

namespace rows {

namespace {

constexpr char16_t kPortSelect[] =
    u"Select tblPortMain.Device_ID, tblPortMain.Port_ID, tblPortMain.Port_Num, tblPortMain.Port_Type,"
    " tblPortMain.Port_Desc, tblPortStatus.Port_Status, tblPortStatus.Port_Last_Error,"
    " tblPortStatus.Port_Rec_Date, tblPortStatus.Port_Fail_Date, tblPortStatus.Port_Success,"
    " tblPortStatus.Port_Failure, tblPortStatus.Ping_Min, tblPortStatus.Ping_Max, tblPortStatus.Ping_Avg"
    " FROM tblPortMain, tblPortStatus";

QString text(const dao::Recordset &row, const char16_t *field) { return row.Field(QString(field)).text(); }

qint64 number(const dao::Recordset &row, const char16_t *field)
{
    const dao::Value value = row.Field(QString(field));
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
    const int icon = int(number(row, u"Group_Icon"));
    return {NodeLevel::Group, keys::group(number(row, u"Group_ID")), icon,
            {text(row, u"Group_Label"), u"Group"_s, text(row, u"Group_Desc"), groupStatus(icon)}};
}

StatusRow deviceRow(const dao::Recordset &row)
{
    const QString name = text(row, u"Device_Name");
    const QString alias = text(row, u"Device_Alias");
    return {NodeLevel::Device, keys::device(number(row, u"Device_ID"), name), int(number(row, u"Device_Icon")),
            {alias.isEmpty() ? name : alias, u"Device"_s, text(row, u"Device_Desc"),
             text(row, u"Device_Status")}};
}

QString portStatus(const dao::Recordset &row)
{
    const QString stored = text(row, u"Port_Status");
    if (stored == u"Failed")
        return u"Failed since "_s + text(row, u"Port_Fail_Date");
    if (stored == u"Recovered")
        return u"Recovered on "_s + text(row, u"Port_Rec_Date");
    return stored;
}

QString portSummary(const dao::Recordset &row)
{
    const QString summary = successSummary(number(row, u"Port_Success"), number(row, u"Port_Failure"));
    if (text(row, u"Port_Type") != u"Ping")
        return summary;
    return summary + u' ' + text(row, u"Ping_Min") + u" min/"_s + text(row, u"Ping_Max") + u" max/"_s
           + text(row, u"Ping_Avg") + u" average"_s;
}

StatusRow portRow(const dao::Recordset &row)
{
    const QString portNum = text(row, u"Port_Num");
    const QString type = text(row, u"Port_Type");
    return {NodeLevel::Port, keys::port(number(row, u"Device_ID"), portNum), int(number(row, u"Port_Icon")),
            {type + u':' + portNum, type, text(row, u"Port_Desc"), portStatus(row),
             text(row, u"Port_Last_Error"), portSummary(row)}};
}

void append(QList<StatusRow> &list, const QString &sql, StatusRow (*make)(const dao::Recordset &))
{
    auto found = db().OpenRecordset(sql);
    for (; !found.Eof(); found.MoveNext())
        list.append(make(found));
    found.Close();
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
    append(list,
           QString(kPortSelect) + u" WHERE tblPortMain.Device_ID = "_s + deviceId
               + u" AND tblPortMain.Port_ID = tblPortStatus.Port_ID ORDER BY tblPortMain.Port_Num"_s,
           portRow);
    return list;
}

QList<StatusRow> port(const QString &deviceId, const QString &portNum)
{
    QList<StatusRow> list;
    append(list,
           QString(kPortSelect) + u" WHERE tblPortMain.Port_Num = "_s + portNum
               + u" AND tblPortMain.Device_ID = "_s + deviceId
               + u" AND tblPortMain.Device_ID = tblPortStatus.Device_ID"
                 " AND tblPortMain.Port_ID = tblPortStatus.Port_ID ORDER BY tblPortMain.Port_Num"_s,
           portRow);
    return list;
}

QString successSummary(qint64 success, qint64 failure)
{
    const qint64 total = success + failure;
    qint64 hundredths = 0; // of a percent; whole numbers, since a double would turn some halves down
    if (total > 0)
        hundredths = (success * 20000 + total) / (2 * total);
    return u"%1/%2 (%3.%4%)"_s.arg(success).arg(total).arg(hundredths / 100).arg(hundredths % 100, 2, 10,
                                                                                QLatin1Char('0'));
}

} // namespace rows
