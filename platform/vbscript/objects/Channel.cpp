#include "platform/vbscript/objects/Channel.h"

#include <QFile>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

namespace vbs::objects {

FileChannel::FileChannel(const QString &path, int flags)
    : m_fd(::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666))
{
    if (!m_fd)
        throw openError(errno, path);
    struct stat status;
    if (::fstat(m_fd.get(), &status) != 0)
        throw systemError(errno);
    if (S_ISDIR(status.st_mode))
        throw ScriptError(err::kPermissionDenied);
    m_isRegular = S_ISREG(status.st_mode);
}

qint64 FileChannel::read(ScriptHost &host, char *into, qint64 most)
{
    while (m_mayBlock && !waitFor(host, m_fd.get(), POLLIN)) { }
    while (true) {
        const ssize_t count = ::read(m_fd.get(), into, size_t(most));
        if (count >= 0)
            return count;
        if (errno == EAGAIN)
            waitFor(host, m_fd.get(), POLLIN);
        else if (errno != EINTR)
            throw systemError(errno);
    }
}

void FileChannel::write(ScriptHost &host, QByteArrayView bytes)
{
    std::optional<SigpipeBlock> guard;
    if (!m_isRegular)
        guard.emplace();
    const auto wait = [&] { return waitFor(host, m_fd.get(), POLLOUT); };
    while (m_mayBlock && !bytes.isEmpty()) {
        if (!wait())
            continue;
        const QByteArrayView piece = bytes.first(qMin<qsizetype>(bytes.size(), PIPE_BUF)); // fits when ready
        writeAll(m_fd.get(), piece, wait);
        bytes = bytes.sliced(piece.size());
    }
    writeAll(m_fd.get(), bytes, wait);
}

qint64 FileChannel::size() const
{
    struct stat status;
    return ::fstat(m_fd.get(), &status) == 0 ? status.st_size : 0;
}

bool waitFor(ScriptHost &host, int fd, short events)
{
    pollfd entry { fd, events, 0 };
    return ::poll(&entry, 1, waitSlice(host)) > 0;
}

}
