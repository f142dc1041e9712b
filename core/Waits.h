#pragma once

#include <QtGlobal>

#ifndef Q_MOC_RUN // moc 6.4 cannot parse what this header includes
#include <coroutine>
#endif
#include <functional>

/** Everything that may suspend a long procedure: yield once, pause, wait for a control's event. Timers stand here
    too, so that one driver (the event loop, or a test's simulated time) decides when anything goes on. */
namespace waits {

class Driver;

/** Something that the driver wakes once after a time; unregisters itself when destroyed. */
class Wakeup
{
public:
    Wakeup() = default;
    Wakeup(const Wakeup &) = delete;
    Wakeup &operator=(const Wakeup &) = delete;
    virtual ~Wakeup() { disarm(); }

    /** Asks the driver for one waking after ms milliseconds, in place of an earlier one. */
    void arm(int ms);
    void disarm();
    /** For the driver: the time has come. The wake-up may be gone when this returns. */
    void elapse();
    /** True for a suspended procedure, false for a timer. */
    virtual bool isSuspension() const { return true; }

protected:
    virtual void wake() = 0;

private:
    Driver *m_armedBy = nullptr;
};

/** Decides when wake-ups happen. */
class Driver
{
public:
    virtual ~Driver() = default;
    /** To call wakeup.elapse() after ms milliseconds; 0 means on the next turn of the event loop, in order of arming. */
    virtual void arm(Wakeup &wakeup, int ms) = 0;
    virtual void disarm(Wakeup &wakeup) = 0;
};

/** The driver in use; the event loop's own one unless a test has set another. */
Driver &driver();
/** Replaces the driver (null: back to the event loop's). Returns the previous one. For tests. */
Driver *setDriver(Driver *replacement);

/** Called whenever the program is about to wait longer than one turn (the database commits then). */
void setAboutToWait(std::function<void()> hook);
/** From now on nothing goes on any more: for the error reporter, whose box turns the event loop. */
void freeze(bool on);

/** A control's event that a procedure may wait for. Firing without a waiter is remembered by nobody:
    look at the state first, then wait. */
class Event
{
public:
    void fire();

private:
    friend class EventAwaiter;
    Wakeup *m_waiter = nullptr;
};

class SuspendAwaiter : public Wakeup
{
public:
    explicit SuspendAwaiter(int ms) : m_ms(ms) {}
    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> h);
    void await_resume() const noexcept {}

protected:
    void wake() override { m_handle.resume(); }
    int m_ms;
    std::coroutine_handle<> m_handle;
};

class EventAwaiter : public SuspendAwaiter
{
public:
    EventAwaiter(Event &event, int ms) : SuspendAwaiter(ms), m_event(event) {}
    ~EventAwaiter() override;
    void await_suspend(std::coroutine_handle<> h);

private:
    void wake() override;
    Event &m_event;
};

/** Lets the event loop turn once. */
inline SuspendAwaiter Yield() { return SuspendAwaiter(0); }
/** Lets ms milliseconds pass. */
inline SuspendAwaiter Pause(int ms) { return SuspendAwaiter(ms); }
/** Waits until the event fires, at most ms milliseconds. */
inline EventAwaiter WaitFor(Event &event, int ms) { return EventAwaiter(event, ms); }

/** For long plain loops: co_await slice.breathe() yields once when more than 8 ms passed since the last yield. */
class Slice
{
public:
    Slice();
    struct Breath : SuspendAwaiter {
        explicit Breath(Slice &slice) : SuspendAwaiter(0), m_slice(slice) {}
        bool await_ready() const noexcept;
        void await_resume() noexcept;
        Slice &m_slice;
    };
    Breath breathe() { return Breath(*this); }

private:
    friend struct Breath;
    qint64 m_since = 0; // ns, monotonic
};

/** An element of the timer array Timer1: an interval in ms, switched on and off, calling its handler at each tick.
    With an interval of 0 it never ticks. */
class Timer : public Wakeup
{
public:
    explicit Timer(std::function<void()> tick) : m_tick(std::move(tick)) {}
    void setInterval(int ms);
    int interval() const { return m_ms; }
    void setEnabled(bool on);
    bool isEnabled() const { return m_enabled; }

private:
    void wake() override;
    void restart();
    bool isSuspension() const override { return false; }
    std::function<void()> m_tick;
    int m_ms = 0;
    bool m_enabled = false;
};

} // namespace waits
