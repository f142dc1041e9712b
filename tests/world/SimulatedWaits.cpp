#include "tests/world/SimulatedWaits.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>

#include <algorithm>

namespace {
constexpr int kSilenceMs = 2; // real time that sockets get before simulated time jumps
}

SimulatedWaits::SimulatedWaits() : m_previous(waits::setDriver(this)) {}

SimulatedWaits::~SimulatedWaits() { waits::setDriver(m_previous); }

void SimulatedWaits::arm(waits::Wakeup &wakeup, int ms)
{
    if (ms > 0)
        m_later.emplace(m_now + ms, &wakeup);
    else
        m_ready.push_back(&wakeup);
}

void SimulatedWaits::disarm(waits::Wakeup &wakeup)
{
    std::erase(m_ready, &wakeup);
    std::erase_if(m_later, [&](const auto &entry) { return entry.second == &wakeup; });
}

bool SimulatedWaits::runUntil(const std::function<bool()> &done, int realLimitMs)
{
    const QDeadlineTimer limit(realLimitMs);
    while (!done()) {
        if (limit.hasExpired() || !step())
            return done();
    }
    return true;
}

void SimulatedWaits::runFor(qint64 ms)
{
    m_limit = m_now + ms;
    while (step()) { }
    m_now = std::exchange(m_limit, -1);
}

/** One wake-up; false when nothing is left to wait for. */
bool SimulatedWaits::step()
{
    QCoreApplication::processEvents();
    const QDeadlineTimer silence(kSilenceMs);
    while (m_ready.empty() && !silence.hasExpired()) {
        QThread::usleep(50);
        QCoreApplication::processEvents();
    }
    const bool jumps = m_ready.empty();
    if (jumps && (m_later.empty() || (m_limit >= 0 && m_later.begin()->first > m_limit)))
        return false;
    wakeNext();
    return true;
}

waits::Wakeup *SimulatedWaits::takeNext()
{
    if (!m_ready.empty()) {
        waits::Wakeup *next = m_ready.front();
        m_ready.pop_front();
        return next;
    }
    const auto first = m_later.begin();
    waits::Wakeup *next = first->second;
    m_now = std::max(m_now, first->first);
    m_later.erase(first);
    return next;
}

void SimulatedWaits::wakeNext()
{
    // Stays registered while the disturbance runs, so that cancelling it is noticed.
    waits::Wakeup *next = takeNext();
    m_ready.push_front(next);
    if (next->isSuspension()) {
        const int k = m_suspensions++;
        if (onSuspension)
            onSuspension(k);
    }
    if (m_ready.empty() || m_ready.front() != next)
        return;
    m_ready.pop_front();
    next->elapse();
}
