#pragma once

#include "core/ResultTable.h"
#include "core/Task.h"
#include "core/Waits.h"
#include "monitor/EventExpiry.h"
#include "monitor/PingCheck.h"
#include "monitor/PortCheck.h"

#include <QSet>

/** Switches monitoring on and off, counts the minutes down and runs one check cycle at a time. The main window owns
    it; destroying it (or unloadControls) cancels a running cycle. */
class CheckCycle
{
public:
    CheckCycle();

    /** The load handler's part: timer element 0 (off), the socket array and the ping control array. */
    void loadControls();
    /** The unload handler's part: cancels a running cycle and unloads the dynamically created elements. */
    void unloadControls();
    /** The same for the program's end after an error, which a procedure of the cycle may be reporting right now: it
        cannot be destroyed while it runs, and is left to the end of the process. */
    void abandon();

    /** Switches monitoring on; without any defined check it stays off and the announcer says why. */
    void Monitor_Initialize();
    /** Switches monitoring off. A running cycle completes its network phase and writes nothing more. */
    void Monitor_Stop();
    /** True from the start of a cycle to the end of CheckFinish. */
    bool checkInProgress() const { return m_checkInProgress; }
    /** Failing, not disabled checks at the last roll-up. */
    int problemCount() const { return m_problemCount; }

    /** Timer element 0, once a minute: counts down, and at 0 runs a cycle. */
    void minuteTick();
    /** One whole cycle. */
    Task<void> Monitor_Devices();

private:
    Task<void> tick();
    Task<void> runCycle();
    void Monitor_Begin();
    static Task<void> collectWork(ResultTable &pings, ResultTable &ports);
    static void collectChecks(const QString &device, ResultTable &pings, ResultTable &ports);
    bool mayWrite() const;
    Task<void> Write_Ping_Results();
    Task<void> Write_Port_Results();
    Task<void> writePingResults(ResultTable results);
    Task<void> writePortResults(ResultTable results);
    Task<void> CheckFinish();
    Task<void> finishCycle();
    Task<void> reportChanges(ResultTable failedNow, ResultTable recoveredNow);
    Task<void> logChanges(ResultTable changes, QString type);
    ResultTable onlyChecked(const ResultTable &changes) const;
    void startCountdown();
    void showCountdown() const;

    PingCheck m_pings;
    PortCheck m_ports;
    EventExpiry m_expiry;
    waits::Timer m_minuteTimer; // element 0 of Timer1
    bool m_checkInProgress = false;
    int m_problemCount = 0;
    int m_generation = 0;        // of the database that the cycle began on
    QSet<QString> m_checked;     // Port_IDs whose results this cycle has written
    Task<void> m_cycle;          // last: cancelled before what it uses goes away
};
