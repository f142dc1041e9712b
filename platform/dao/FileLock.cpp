#include "platform/dao/FileLock.h"

#include "platform/dao/Errors.h"

#include <QFile>
#include <QFileInfo>
#include <QSysInfo>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

QString lockPath(const QString &databasePath)
{
    const QFileInfo info(databasePath);
    const QString canonical = info.canonicalFilePath();
    const QString whole = canonical.isEmpty() ? info.absoluteFilePath() : canonical;
    if (whole.endsWith(u".mdb"_s, Qt::CaseInsensitive))
        return whole.chopped(4) + u".ldb"_s;
    return whole + u".ldb"_s;
}

bool isSameFile(int file, const QByteArray &path)
{
    struct stat held;
    struct stat named;
    return fstat(file, &held) == 0 && stat(path.constData(), &named) == 0 && held.st_ino == named.st_ino
        && held.st_dev == named.st_dev;
}

int lockRetrying(int file, int how)
{
    int result = 0;
    do {
        result = flock(file, how | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    return result;
}

} // namespace

FileLock::FileLock(const QString &databasePath, bool exclusive)
    : m_path(lockPath(databasePath))
{
    const QByteArray path = QFile::encodeName(m_path);
    for (;;) {
        m_file = open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (m_file < 0)
            raise(3050);
        if (lockRetrying(m_file, exclusive ? LOCK_EX : LOCK_SH) != 0)
            raiseHeld(exclusive);
        // The last user of a moment ago may have removed the file between our opening and locking it.
        if (isSameFile(m_file, path))
            return;
        ::close(m_file);
    }
}

FileLock::~FileLock()
{
    // Whoever can lock it exclusively is its last user.
    if (lockRetrying(m_file, LOCK_EX) == 0)
        unlink(QFile::encodeName(m_path).constData());
    ::close(m_file);
}

void FileLock::raiseHeld(bool exclusive)
{
    const bool unsupported = errno != EWOULDBLOCK;
    const bool shared = exclusive && lockRetrying(m_file, LOCK_SH) == 0;
    ::close(m_file);
    if (unsupported)
        raise(3050);
    raise(shared ? 3704 : 3356, QSysInfo::machineHostName());
}

} // namespace dao
