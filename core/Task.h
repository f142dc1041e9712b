#pragma once

#ifndef Q_MOC_RUN // moc 6.4 cannot parse what this header includes
#include <coroutine>
#endif
#include <exception>
#include <optional>
#include <utility>

/** A lazy coroutine owned by whoever holds the Task. It starts when awaited or by start();
    destroying the Task cancels it together with every frame that it waits for. */
template <class T>
class [[nodiscard]] Task;

namespace task_detail {

struct FinalAwaiter {
    bool await_ready() const noexcept { return false; }
    template <class Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> h) const noexcept
    {
        return h.promise().continuation;
    }
    void await_resume() const noexcept {}
};

struct PromiseBase {
    std::coroutine_handle<> continuation = std::noop_coroutine();
    std::exception_ptr error;

    std::suspend_always initial_suspend() const noexcept { return {}; }
    FinalAwaiter final_suspend() const noexcept { return {}; }
    void unhandled_exception() noexcept { error = std::current_exception(); }
    void rethrow() const
    {
        if (error)
            std::rethrow_exception(error);
    }
};

template <class T>
struct Promise : PromiseBase {
    std::optional<T> value;
    Task<T> get_return_object();
    template <class U>
    void return_value(U &&v) { value.emplace(std::forward<U>(v)); }
    T take() { rethrow(); return std::move(*value); }
};

template <>
struct Promise<void> : PromiseBase {
    Task<void> get_return_object();
    void return_void() const noexcept {}
    void take() const { rethrow(); }
};

} // namespace task_detail

template <class T = void>
class [[nodiscard]] Task
{
public:
    using promise_type = task_detail::Promise<T>;
    using Handle = std::coroutine_handle<promise_type>;

    Task() = default;
    explicit Task(Handle h) : m_handle(h) {}
    Task(Task &&other) noexcept : m_handle(std::exchange(other.m_handle, {})) {}
    Task &operator=(Task &&other) noexcept
    {
        Task old(std::exchange(m_handle, std::exchange(other.m_handle, {})));
        return *this;
    }
    ~Task()
    {
        if (m_handle)
            m_handle.destroy();
    }

    /** Runs up to the first suspension. For the outermost task only; inner ones are awaited. */
    void start() { m_handle.resume(); }
    bool isRunning() const { return m_handle && !m_handle.done(); }
    /** The result of a finished task; throws what the coroutine threw. */
    T result() { return m_handle.promise().take(); }

    bool await_ready() const noexcept { return false; }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> caller) noexcept
    {
        m_handle.promise().continuation = caller;
        return m_handle;
    }
    T await_resume() { return m_handle.promise().take(); }

private:
    Handle m_handle;
};

template <class T>
Task<T> task_detail::Promise<T>::get_return_object() { return Task<T>(Task<T>::Handle::from_promise(*this)); }
inline Task<void> task_detail::Promise<void>::get_return_object() { return Task<void>(Task<void>::Handle::from_promise(*this)); }
