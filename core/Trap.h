#pragma once

#include "core/Task.h"
#include "core/vbMain.h"

#include <exception>
#include <utility>

/** Hands whatever is being thrown to ErrorHandler under the procedure's name. Call inside a catch block. */
[[noreturn]] void ReportCurrentException(const char *procName);

/** A procedure's error trap: one line at its top. */
template <class F>
auto Trap(const char *procName, F &&body) -> decltype(body())
{
    try {
        return body();
    } catch (...) {
        ReportCurrentException(procName);
    }
}

/** The same for a coroutine. */
template <class T>
Task<T> Trap(const char *procName, Task<T> body)
{
    try {
        co_return co_await body;
    } catch (...) {
        ReportCurrentException(procName);
    }
}
