#include "monitor/PortStatus.h"

#include "core/Clock.h"
#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"

#include <optional>

using namespace Qt::StringLiterals;
using dao::Recordset;
using dao::Value;

namespace {

qint64 number(const Recordset &row, const QString &column)
{
    const Value value = row.Field(column);
    return value.isNull() ? 0 : value.integer();
}

double timeOf(const Recordset &row, const QString &column)
{
    const Value value = row.Field(column);
    return value.isNull() ? 0 : value.number();
}

/** 0 stands for "no time recorded yet" in every column, so a real time of 0 ms leaves the minimum open. */
void updatePingTimes(Recordset &row, double t)
{
    const double min = timeOf(row, u"Ping_Min"_s);
    const double average = timeOf(row, u"Ping_Avg"_s);
    const double max = timeOf(row, u"Ping_Max"_s);
    if (min == 0 || t < min)
        row.Set(u"Ping_Min"_s, t);
    // An exponentially weighted mean with weight one half, not the mean over all checks.
    row.Set(u"Ping_Avg"_s, average == 0 ? t : (average + t) / 2);
    if (max == 0 || t > max)
        row.Set(u"Ping_Max"_s, t);
    row.Set(u"Ping_Cur"_s, t);
}

void markRecovered(Recordset &row, qint64 flag)
{
    const int mailedFrom = GetSettingInt(u"Mail Options"_s, u"SendOnConsecutiveFailure"_s);
    row.Set(u"Port_Rec_Date"_s, Clock::now());
    row.Set(u"Port_Mode"_s, int(flag <= -mailedFrom ? status::PortRecoveredMailed : status::PortRecovered));
    row.Set(u"Port_Icon"_s, int(status::PortRecoveredIcon));
    row.Set(u"Port_Icon_Flag"_s, 1);
}

void countRecovered(Recordset &row, qint64 flag)
{
    if (flag > GetSettingInt(u"Options"_s, u"ResetIcon"_s)) {
        row.Set(u"Port_Icon"_s, int(status::PortOk));
        row.Set(u"Port_Mode"_s, int(status::PortNormal));
    }
    row.Set(u"Port_Icon_Flag"_s, flag + 1);
}

void foldSuccess(Recordset &row)
{
    row.Set(u"Port_Success"_s, number(row, u"Port_Success"_s) + 1);
    const qint64 mode = number(row, u"Port_Mode"_s);
    const qint64 flag = number(row, u"Port_Icon_Flag"_s);
    if (mode == status::PortNormal)
        row.Set(u"Port_Icon"_s, int(status::PortOk));
    else if (mode < 0)
        markRecovered(row, flag);
    else
        countRecovered(row, flag);
}

void foldFailure(Recordset &row, const QString &errorText)
{
    row.Set(u"Port_Failure"_s, number(row, u"Port_Failure"_s) + 1);
    const bool first = number(row, u"Port_Mode"_s) >= 0;
    row.Set(u"Port_Icon"_s, int(status::PortFailed));
    if (first) {
        row.Set(u"Port_Fail_Date"_s, Clock::now());
        row.Set(u"Port_Rec_Date"_s, Value::null());
        row.Set(u"Port_Mode"_s, int(status::PortFailing));
    }
    row.Set(u"Port_Icon_Flag"_s, first ? -1 : number(row, u"Port_Icon_Flag"_s) - 1);
    if (!errorText.isEmpty())
        row.Set(u"Port_Last_Error"_s, errorText.toLower());
}

void fold(qint32 portId, const QString &status, const QString &errorText, std::optional<double> roundTrip)
{
    Recordset row = db().OpenRecordset("Select * from tblPortStatus"_L1
                                       " WHERE Port_ID = "_L1 + QString::number(portId) + " AND Port_Icon <> 13"_L1);
    CheckDatabaseErrors();
    if (row.Eof())
        return; // disabled or deleted while it was being checked
    row.Edit();
    row.Set(u"Port_Status"_s, status);
    if (status == "Connected"_L1) {
        if (roundTrip)
            updatePingTimes(row, *roundTrip);
        foldSuccess(row);
    } else {
        foldFailure(row, errorText);
    }
    row.Update();
}

} // namespace

void Device_Ping_Update(qint32 Port_ID, const QString &Status, const QString &ErrorText, double roundTrip)
{
    Trap("Device_Ping_Update", [&] { fold(Port_ID, Status, ErrorText, roundTrip); });
}

void Port_Update(qint32 Port_ID, const QString &Status, const QString &ErrorText)
{
    Trap("Port_Update", [&] { fold(Port_ID, Status, ErrorText, std::nullopt); });
}
