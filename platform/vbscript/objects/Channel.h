#pragma once

#include "platform/vbscript/objects/Support.h"

#include <QByteArrayView>
#include <cerrno>
#include <memory>
#include <optional>
#include <unistd.h>

namespace vbs::objects {

/** Where a text stream's bytes come from or go to. Waits end with the script's time limit. */
class Channel
{
public:
    virtual ~Channel() = default;
    /** Up to `most` bytes, waiting for at least one; 0 at the end. */
    virtual qint64 read(ScriptHost &host, char *into, qint64 most) = 0;
    /** All of them. */
    virtual void write(ScriptHost &host, QByteArrayView bytes) = 0;
};

/** A file, a device or a named pipe; opened so that neither opening nor reading can hang. */
class FileChannel : public Channel
{
public:
    /** `flags` as of open(2). Throws what openError says. */
    FileChannel(const QString &path, int flags);
    /** Takes over a descriptor that may block: every transfer is waited for first. */
    explicit FileChannel(int fd) : m_fd(fd), m_mayBlock(true) {}

    qint64 read(ScriptHost &host, char *into, qint64 most) override;
    void write(ScriptHost &host, QByteArrayView bytes) override;
    qint64 size() const;

private:
    Descriptor m_fd;
    bool m_mayBlock = false;
    bool m_isRegular = false;
};

/** Waits until `fd` is ready for `events` (poll(2)) or a slice of time is over; tells whether it is. */
bool waitFor(ScriptHost &host, int fd, short events);
/**
 * write(2) of all bytes; `whileWaiting` runs between attempts that would block. Throws systemError. The
 * caller holds a SigpipeBlock where there is somebody on the other side.
 */
template <class Waiter>
void writeAll(int fd, QByteArrayView bytes, Waiter whileWaiting)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(fd, bytes.data(), size_t(qMin<qsizetype>(bytes.size(), 1 << 20)));
        if (written >= 0)
            bytes = bytes.sliced(written);
        else if (errno == EAGAIN)
            whileWaiting();
        else if (errno != EINTR)
            throw systemError(errno);
    }
}

}
