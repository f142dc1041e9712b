#pragma once

#include "core/ResultTable.h"
#include "core/Task.h"
#include "core/Waits.h"

#include <QString>

#include <memory>
#include <vector>

class Winsock;

/** Columns of the port work list and of the port results. */
namespace portList {
enum Column { Host, Port, PortId, Count };
}
namespace portResult {
enum Column { PortId, Status, Error, Count };
}

/** The TCP phase: owns the socket array Winsock1, its slot table, the host time-out timer and the results. */
class PortCheck
{
public:
    PortCheck();
    ~PortCheck();

    /** Makes the array as large as PortSockets says (element 0 always exists). */
    void loadControls();
    /** Unloads elements 1 and up and closes element 0. */
    void unloadControls();

    /** Starts a connection for every entry of the list (3 columns) while monitoring is on, then waits for the
        outcomes, times out the rest and closes every socket. */
    Task<void> Check_Ports(ResultTable list);
    /** What the phase found, 3 columns × one row per finished check; empties the table. */
    ResultTable takeResults();

private:
    /** One row of the slot table. The busy mark keeps two entries from sharing a socket. */
    struct Slot {
        QString portId;
        QString busy;
    };

    Task<void> checkAll(ResultTable list);
    Task<int> findFreeSocket();
    Task<void> closePortSockets();
    Task<void> awaitOutcome(int element);
    int freeSocket() const;
    void startConnection(int element, const QString &host, const QString &port, const QString &portId);
    void connectArrived(int element);
    void errorArrived(int element, const QString &text);
    void finish(int element, const QString &status, const QString &error);
    static int hostTimeOutMs();

    std::vector<std::unique_ptr<Winsock>> Winsock1;
    std::vector<Slot> m_slots;
    ResultTable m_results{ portResult::Count };
    int m_attemptLimit = 0; // ms
    bool m_timedOut = false;
    waits::Event m_socketFinished;
    waits::Timer m_hostTimer; // element 1 of Timer1
};
