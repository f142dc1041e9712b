#pragma once

#include "core/ResultTable.h"
#include "core/Task.h"
#include "core/Waits.h"

#include <QString>

#include <memory>
#include <vector>

class DPingCtl;

/** Columns of the ping work list and of the ping results. */
namespace pingList {
enum Column { Host, PortId, Count };
}
namespace pingResult {
enum Column { PortId, Status, Time, Error, Count };
}

/** The ping phase: owns the control array DPingCtl1, its slot table and the results. */
class PingCheck
{
public:
    PingCheck();
    ~PingCheck();

    /** Makes the array as large as PingControls says (element 0 always exists). */
    void loadControls();
    /** Unloads elements 1 and up and ends what element 0 is doing. */
    void unloadControls();

    /** Pings every entry of the list (2 columns) while monitoring is on, and waits for the outcomes. */
    Task<void> Check_Ping(ResultTable list);
    /** What the phase found, 4 columns × one row per finished ping; empties the table. */
    ResultTable takeResults();

private:
    /** One row of the slot table. An empty or "0" remainder marks the element as free. */
    struct Slot {
        QString remaining;
        QString host;
        QString portId;
    };
    struct Parameters {
        int packetSize;
        int count;
        int timeOut;
    };

    Task<void> checkAll(ResultTable list);
    Task<int> findFreeElement();
    Task<void> closePingSockets();
    int freeElement() const;
    bool isFree(int element) const;
    bool anyBusy() const;
    void startPing(int element, const QString &host, const QString &portId, const Parameters &parameters);
    void replyArrived(int element, int status, double roundTrip);
    void messageArrived(int element, const QString &text);
    void finish(int element, const QString &status, const QString &time, const QString &error);

    std::vector<std::unique_ptr<DPingCtl>> DPingCtl1;
    std::vector<Slot> m_slots;
    ResultTable m_results{ pingResult::Count };
    waits::Event m_elementFinished;
};
