#include "core/Waits.h"

#include <QBasicTimer>
#include <QHash>
#include <QObject>
#include <QTimerEvent>

#include <algorithm>
#include <chrono>
#include <deque>

namespace waits {

namespace {

/** The event loop as driver. Yields share one timer of 0 ms: such a timer runs after the sockets were served,
    while a posted event would be served again and again before them. */
class LoopDriver : public QObject, public Driver
{
public:
    void arm(Wakeup &wakeup, int ms) override
    {
        if (ms > 0) {
            const int id = startTimer(ms, Qt::PreciseTimer);
            m_byTimer.insert(id, &wakeup);
            m_timerOf.insert(&wakeup, id);
            return;
        }
        m_ready.push_back(&wakeup);
        if (!m_turn.isActive())
            m_turn.start(0, this);
    }

    void disarm(Wakeup &wakeup) override
    {
        const auto timer = m_timerOf.constFind(&wakeup);
        if (timer != m_timerOf.cend()) {
            forgetTimer(*timer);
            return;
        }
        std::replace(m_ready.begin(), m_ready.end(), &wakeup, static_cast<Wakeup *>(nullptr));
    }

    bool frozen = false;

protected:
    void timerEvent(QTimerEvent *event) override
    {
        if (frozen)
            return;
        if (event->timerId() == m_turn.timerId())
            return turn();
        if (Wakeup *wakeup = forgetTimer(event->timerId()))
            wakeup->elapse();
    }

private:
    /** Wakes those that were waiting when the turn began; whoever yields again waits for the next turn. */
    void turn()
    {
        for (size_t left = m_ready.size(); left > 0 && !m_ready.empty(); --left) {
            Wakeup *wakeup = m_ready.front();
            m_ready.pop_front();
            if (wakeup)
                wakeup->elapse();
        }
        if (m_ready.empty())
            m_turn.stop();
    }

    Wakeup *forgetTimer(int id)
    {
        Wakeup *wakeup = m_byTimer.take(id);
        m_timerOf.remove(wakeup);
        killTimer(id);
        return wakeup;
    }

    std::deque<Wakeup *> m_ready;
    QBasicTimer m_turn;
    QHash<int, Wakeup *> m_byTimer;
    QHash<Wakeup *, int> m_timerOf;
};

LoopDriver &loopDriver()
{
    // Never destroyed: wake-ups of static objects may outlive the application object.
    static auto *instance = new LoopDriver;
    return *instance;
}

Driver *s_replacement = nullptr;
std::function<void()> s_aboutToWait;

qint64 steadyNs()
{
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

constexpr qint64 kSliceNs = 8'000'000;

} // namespace

Driver &driver() { return s_replacement ? *s_replacement : loopDriver(); }

Driver *setDriver(Driver *replacement) { return std::exchange(s_replacement, replacement); }

void setAboutToWait(std::function<void()> hook) { s_aboutToWait = std::move(hook); }

void freeze(bool on) { loopDriver().frozen = on; }

void Wakeup::arm(int ms)
{
    disarm();
    if (ms > 0 && isSuspension() && s_aboutToWait)
        s_aboutToWait();
    m_armedBy = &driver();
    m_armedBy->arm(*this, ms);
}

void Wakeup::disarm()
{
    if (Driver *by = std::exchange(m_armedBy, nullptr))
        by->disarm(*this);
}

void Wakeup::elapse()
{
    m_armedBy = nullptr;
    wake();
}

void Event::fire()
{
    // Never resumed from inside the control that fires: its handler must return first.
    if (m_waiter)
        m_waiter->arm(0);
}

void SuspendAwaiter::await_suspend(std::coroutine_handle<> h)
{
    m_handle = h;
    arm(m_ms);
}

EventAwaiter::~EventAwaiter()
{
    if (m_event.m_waiter == this)
        m_event.m_waiter = nullptr;
}

void EventAwaiter::await_suspend(std::coroutine_handle<> h)
{
    m_event.m_waiter = this;
    SuspendAwaiter::await_suspend(h);
}

void EventAwaiter::wake()
{
    m_event.m_waiter = nullptr;
    SuspendAwaiter::wake();
}

Slice::Slice() : m_since(steadyNs()) {}

bool Slice::Breath::await_ready() const noexcept { return steadyNs() - m_slice.m_since < kSliceNs; }

void Slice::Breath::await_resume() noexcept
{
    if (m_handle)
        m_slice.m_since = steadyNs();
}

void Timer::setInterval(int ms)
{
    m_ms = ms;
    restart();
}

void Timer::setEnabled(bool on)
{
    m_enabled = on;
    restart();
}

void Timer::restart()
{
    if (m_enabled && m_ms > 0)
        arm(m_ms);
    else
        disarm();
}

void Timer::wake()
{
    restart();
    m_tick();
}

} // namespace waits
