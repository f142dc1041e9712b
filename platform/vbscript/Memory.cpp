#include "platform/vbscript/Memory.h"

#include "platform/vbscript/ScriptError.h"

#include <algorithm>
#include <malloc.h>

namespace vbs::memory {

namespace {
thread_local qint64 t_used = 0;
thread_local qint64 t_peak = 0; // since memory was last handed back to the system
thread_local qint64 t_limit = kDefaultLimit;

constexpr qint64 kWorthReturning = 24LL * 1024 * 1024;
}

qint64 used() { return t_used; }

void setLimit(qint64 bytes) { t_limit = bytes; }

void requireRoom(qint64 bytes)
{
    if (bytes > t_limit - t_used)
        throw ScriptError(err::kOutOfMemory);
}

void charge(qint64 bytes)
{
    requireRoom(bytes);
    if (t_peak - t_used > kWorthReturning)
        returnFreed();
    t_used += bytes;
    t_peak = std::max(t_peak, t_used);
}

void returnFreed() noexcept
{
    if (t_peak - t_used <= kWorthReturning)
        return;
    ::malloc_trim(0);
    t_peak = t_used;
}

void release(qint64 bytes) noexcept { t_used -= bytes; }

void Charge::resize(qint64 bytes)
{
    if (bytes > m_bytes)
        charge(bytes - m_bytes);
    else
        release(m_bytes - bytes);
    m_bytes = bytes;
}

}
