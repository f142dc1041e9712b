#pragma once

#include "core/Waits.h"

#include <QtGlobal>

#include <deque>
#include <functional>
#include <map>

/** Simulated time: whatever procedures and timers wait for elapses at once, in order. Real sockets are served in
    between; time jumps to the next wake-up only when they stay silent for a moment. */
class SimulatedWaits : public waits::Driver
{
public:
    SimulatedWaits();
    ~SimulatedWaits() override;

    void arm(waits::Wakeup &wakeup, int ms) override;
    void disarm(waits::Wakeup &wakeup) override;

    /** Called before the k-th suspended procedure goes on (k from 0); may cancel it. */
    std::function<void(int k)> onSuspension;
    int suspensions() const { return m_suspensions; }
    /** Simulated milliseconds since construction. */
    qint64 now() const { return m_now; }

    /** Turns until done() holds; false when that takes more than realLimitMs of real time or nothing is left to wait for. */
    bool runUntil(const std::function<bool()> &done, int realLimitMs = 20000);
    /** Lets simulated time pass. */
    void runFor(qint64 ms);

private:
    bool step();
    void wakeNext();
    waits::Wakeup *takeNext();

    std::deque<waits::Wakeup *> m_ready;
    std::multimap<qint64, waits::Wakeup *> m_later;
    waits::Driver *m_previous;
    qint64 m_now = 0;
    qint64 m_limit = -1; // runFor: no jump beyond this time
    int m_suspensions = 0;
};
