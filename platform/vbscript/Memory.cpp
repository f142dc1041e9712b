#include "platform/vbscript/Memory.h"

#include "platform/vbscript/ScriptError.h"

namespace vbs::memory {

namespace {
thread_local qint64 t_used = 0;
thread_local qint64 t_limit = kDefaultLimit;
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
    t_used += bytes;
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
