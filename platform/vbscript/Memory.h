#pragma once

#include <QtGlobal>
#include <cstddef>

namespace vbs::memory {

/**
 * Bytes that all values of this thread may hold together; beyond it error 7 "Out of memory". A script may have 256 MB;
 * the difference is for what passes by: texts on their way through a conversion, the engine's own tables.
 */
constexpr qint64 kDefaultLimit = 232LL * 1024 * 1024;

/** What the allocator takes for a block of so many bytes. */
constexpr qint64 blockSize(qint64 bytes) { return qMax<qint64>(32, (bytes + 8 + 15) & ~qint64(15)); }

/** Bytes charged on this thread now. */
qint64 used();
void setLimit(qint64 bytes);
/** Throws ScriptError 7, without charging, when the limit would be passed. */
void charge(qint64 bytes);
void release(qint64 bytes) noexcept;
/** Hands freed memory back to the system where it is much: the allocator alone would keep it beside what comes next. */
void returnFreed() noexcept;
/** Throws as charge() does, but charges nothing: for a copy that is gone before the script goes on. */
void requireRoom(qint64 bytes);

/** Memory that a native object holds outside of values (buffers, tables); given back when destroyed. */
class Charge
{
public:
    Charge() = default;
    explicit Charge(qint64 bytes) { resize(bytes); }
    ~Charge() { release(m_bytes); }
    Q_DISABLE_COPY_MOVE(Charge)
    /** Sets the charge to so many bytes. Throws ScriptError 7 and stays as it was. */
    void resize(qint64 bytes);

private:
    qint64 m_bytes = 0;
};

}
