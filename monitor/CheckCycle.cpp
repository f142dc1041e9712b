#include "monitor/CheckCycle.h"

#include "core/AfterCheck.h"
#include "core/Announcer.h"
#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"
#include "monitor/PortStatus.h"
#include "monitor/RollUp.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;
using dao::Recordset;

namespace {
constexpr int kFirstTick = 1000;   // ms from switching on to the first check
constexpr int kMinute = 60000;     // ms

void showOffOnTray()
{
    vbMain().window->setTrayImage(status::TrayOff);
    vbMain().window->setTrayTip(AppTitle() + " - Monitoring OFF."_L1);
}

/** One plain sentence that names device, check and, for a failure, the reason. */
QString changeSentence(const ResultTable &changes, int row)
{
    const QString what = changes.at(failed::Name, row) + " port "_L1 + changes.at(failed::Port, row);
    if (changes.columns() != failed::Count)
        return what + " recovered."_L1;
    const QString &reason = changes.at(failed::Reason, row);
    return reason.isEmpty() ? what + " failed."_L1 : what + " failed because "_L1 + reason + u'.';
}

} // namespace

CheckCycle::CheckCycle() : m_minuteTimer([this] { minuteTick(); }) {}

void CheckCycle::loadControls()
{
    m_minuteTimer.setEnabled(false);
    m_pings.loadControls();
    m_ports.loadControls();
}

void CheckCycle::unloadControls()
{
    m_cycle = {};
    m_checkInProgress = false;
    m_minuteTimer.setEnabled(false);
    m_pings.unloadControls();
    m_ports.unloadControls();
}

void CheckCycle::abandon()
{
    m_checkInProgress = false;
    m_minuteTimer.setEnabled(false);
}

void CheckCycle::Monitor_Initialize()
{
    Trap("Monitor_Initialize", [this] {
        VbMain &program = vbMain();
        if (program.monitoring)
            return;
        const bool nothingToCheck = db().OpenRecordset("Select tblPortMain.Port_ID"_L1 " FROM tblPortMain"_L1).Eof();
        if (nothingToCheck) {
            program.announcer->speak(u"MonitorDecline"_s);
            return;
        }
        program.window->setMonitoringState(m_checkInProgress ? MonitoringState::Checking : MonitoringState::On);
        program.window->setTrayImage(m_problemCount < 1 ? status::TrayOk : status::TrayProblems);
        program.minutesLeft = 0;
        m_minuteTimer.setInterval(kFirstTick);
        m_minuteTimer.setEnabled(true);
        program.window->setStatusText(u"Monitoring is on."_s);
        program.announcer->speak(u"MonitorOn"_s);
        WriteLog(u"Monitoring Started."_s, u"Message"_s, 0, 0);
        program.monitoring = true;
    });
}

void CheckCycle::Monitor_Stop()
{
    Trap("Monitor_Stop", [this] {
        VbMain &program = vbMain();
        if (!program.monitoring)
            return;
        program.window->setMonitoringState(MonitoringState::Off);
        program.monitoring = false;
        program.window->setStatusText(u"Monitoring is off."_s);
        program.window->setReadyText(u"Ready"_s);
        WriteLog(u"Monitoring Stopped."_s, u"Message"_s, 0, 0);
        program.announcer->speak(u"MonitorOff"_s);
        m_minuteTimer.setEnabled(false);
        showOffOnTray();
    });
}

void CheckCycle::minuteTick()
{
    // Switched off and on again within one cycle: that cycle goes on, and its end starts the countdown.
    if (m_cycle.isRunning())
        return;
    m_cycle = Trap("Timer1_Timer", tick());
    m_cycle.start();
}

Task<void> CheckCycle::tick()
{
    m_expiry.Check_EventLog_Expiry();
    if (vbMain().minutesLeft == 0) {
        m_minuteTimer.setInterval(kMinute);
        co_await Monitor_Devices();
        if (!vbMain().monitoring)
            co_return;
        m_minuteTimer.setInterval(kMinute); // switching off and on meanwhile has asked for an early tick
        m_minuteTimer.setEnabled(true);
        startCountdown();
    }
    showCountdown();
    --vbMain().minutesLeft;
}

void CheckCycle::startCountdown()
{
    const int minutes = GetSettingInt(u"Options"_s, u"Min_Between_Checks"_s);
    if (minutes > std::numeric_limits<qint16>::max())
        throw VbError(6, u"Overflow"_s);
    // Less than a minute would count down past 0 and never check again.
    vbMain().minutesLeft = qint16(std::max(minutes, 1));
}

void CheckCycle::showCountdown() const
{
    const int minutes = vbMain().minutesLeft;
    vbMain().window->setStatusText("Next Check In "_L1 + QString::number(minutes)
                                   + (minutes == 1 ? " Minute."_L1 : " Minutes."_L1));
}

Task<void> CheckCycle::Monitor_Devices() { return Trap("Monitor_Devices", runCycle()); }

void CheckCycle::Monitor_Begin()
{
    m_checkInProgress = true;
    m_checked.clear();
    m_generation = vbMain().databaseGeneration;
    MainWindow *window = vbMain().window;
    window->setMonitoringState(MonitoringState::Checking);
    m_minuteTimer.setEnabled(false);
    window->setStatusText(u"Check in progress..."_s);
    window->setTrayTip(AppTitle() + " - Check In Progress."_L1);
}

/** Off, or another database: the results belong to nobody any more. */
bool CheckCycle::mayWrite() const
{
    return vbMain().monitoring && vbMain().databaseGeneration == m_generation;
}

Task<void> CheckCycle::runCycle()
{
    Monitor_Begin();
    ResultTable pings(pingList::Count);
    ResultTable ports(portList::Count);
    co_await collectWork(pings, ports);
    if (ArrayHasBounds(pings)) {
        co_await m_pings.Check_Ping(pings);
        if (mayWrite())
            co_await Write_Ping_Results();
    }
    if (ArrayHasBounds(ports)) {
        co_await m_ports.Check_Ports(ports);
        if (mayWrite())
            co_await Write_Port_Results();
    }
    if (m_checkInProgress)
        co_await CheckFinish();
}

/** The checks of every enabled device, in the order of device names. */
Task<void> CheckCycle::collectWork(ResultTable &pings, ResultTable &ports)
{
    QStringList devices;
    Recordset rows = db().OpenRecordset("Select Device_ID"_L1
                                        " FROM tblDevices"_L1
                                        " WHERE Device_Icon <> 12"_L1
                                        " ORDER BY Device_Name"_L1);
    for (; !rows.Eof(); rows.MoveNext())
        devices.append(rows.Field(u"Device_ID"_s).text());
    rows.Close();
    waits::Slice slice;
    for (const QString &device : std::as_const(devices)) {
        co_await slice.breathe();
        collectChecks(device, pings, ports);
    }
}

void CheckCycle::collectChecks(const QString &device, ResultTable &pings, ResultTable &ports)
{
    Recordset rows = db().OpenRecordset(
        "Select tblDevices.Device_ID, tblDevices.Device_Name, tblPortMain.Device_ID, tblPortMain.Port_Num,"_L1
        " tblPortMain.Port_ID"_L1
        " FROM tblPortMain, tblDevices"_L1
        " WHERE tblPortMain.Device_ID = "_L1 + device + " AND tblDevices.Device_ID = tblPortMain.Device_ID"_L1
        " ORDER BY tblPortMain.Device_ID"_L1);
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString name = rows.Field(u"Device_Name"_s).text();
        const QString port = rows.Field(u"Port_Num"_s).text();
        const QString portId = rows.Field(u"Port_ID"_s).text();
        if (port.toLower() == "ping"_L1)
            pings.addRow({ name, portId });
        else
            ports.addRow({ name, port, portId });
    }
}

Task<void> CheckCycle::Write_Ping_Results()
{
    return Trap("Write_Ping_Results", writePingResults(m_pings.takeResults()));
}

Task<void> CheckCycle::writePingResults(ResultTable results)
{
    for (int row = 0; row < results.rows(); ++row) {
        co_await waits::Yield();
        if (!mayWrite())
            co_return;
        const QString &portId = results.at(pingResult::PortId, row);
        m_checked.insert(portId);
        Device_Ping_Update(portId.toInt(), results.at(pingResult::Status, row), results.at(pingResult::Error, row),
                           results.at(pingResult::Time, row).toDouble());
    }
}

Task<void> CheckCycle::Write_Port_Results()
{
    return Trap("Write_Port_Results", writePortResults(m_ports.takeResults()));
}

Task<void> CheckCycle::writePortResults(ResultTable results)
{
    for (int row = 0; row < results.rows(); ++row) {
        co_await waits::Yield();
        if (!mayWrite())
            co_return;
        const QString &portId = results.at(portResult::PortId, row);
        m_checked.insert(portId);
        Port_Update(portId.toInt(), results.at(portResult::Status, row), results.at(portResult::Error, row));
    }
}

Task<void> CheckCycle::CheckFinish() { return Trap("CheckFinish", finishCycle()); }

Task<void> CheckCycle::finishCycle()
{
    VbMain &program = vbMain();
    const bool runScript = GetSettingBool(u"Options"_s, u"MonitorFinish"_s);
    program.window->setMonitoringState(program.monitoring ? MonitoringState::On : MonitoringState::Off);
    const int problems = co_await Check_TVIcons();
    if (problems >= 0)
        m_problemCount = problems;
    co_await program.window->Refresh_TreeView_Icons();
    const ResultTable failedNow = onlyChecked(GetFailedDevices());
    co_await waits::Yield(); // after a storm of failures each list takes its time
    const ResultTable recoveredNow = onlyChecked(GetRecoveredDevices());
    co_await program.afterCheck->CreateHTMLOutput(failedNow, recoveredNow);
    co_await reportChanges(failedNow, recoveredNow);
    co_await program.afterCheck->SendEmailNotifications(m_checked);
    if (GetSettingBool(u"Mail Options"_s, u"SendOnFailure"_s))
        co_await program.afterCheck->ProcessMailQue();
    program.window->reselectNode();
    if (runScript)
        co_await program.afterCheck->ExecuteScript(u"CheckFinish"_s);
    m_checkInProgress = false;
    if (!program.monitoring) {
        // Switched off meanwhile: the steps above must not have the last word.
        program.window->setStatusText(u"Monitoring is off."_s);
        showOffOnTray();
    }
}

Task<void> CheckCycle::reportChanges(ResultTable failedNow, ResultTable recoveredNow)
{
    vbMain().announcer->AnnounceDevices(failedNow, recoveredNow);
    vbMain().window->setStatusText(u"Writing Log..."_s);
    co_await logChanges(failedNow, u"Failure"_s);
    co_await logChanges(recoveredNow, u"Recovered"_s);
}

/** A cycle that was switched off early leaves flags of the cycle before; those changes are reported already. */
ResultTable CheckCycle::onlyChecked(const ResultTable &changes) const
{
    return changes.rowsWith(changes.columns() - 1, m_checked); // the Port_ID is the last column of both lists
}

Task<void> CheckCycle::logChanges(ResultTable changes, QString type)
{
    waits::Slice slice;
    const int portId = changes.columns() - 1;
    for (int row = 0; row < changes.rows(); ++row) {
        co_await slice.breathe();
        WriteLog(changeSentence(changes, row), type, changes.at(portId - 1, row).toInt(),
                 changes.at(portId, row).toInt());
    }
}
