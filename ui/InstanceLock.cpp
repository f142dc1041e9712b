#include "ui/InstanceLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

InstanceLock::~InstanceLock()
{
    if (m_file >= 0)
        ::close(m_file);
}

QString InstanceLock::filePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + u"/kavro2000/instance.lock"_s;
}

bool InstanceLock::acquire()
{
    if (m_file >= 0)
        return true;
    const QString path = filePath();
    QDir().mkpath(QFileInfo(path).path());
    // Closed in children: a viewer that outlives the program must not keep the lock.
    const int file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0)
        return true;
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        const bool held = errno == EWOULDBLOCK;
        ::close(file);
        return !held;
    }
    m_file = file;
    return true;
}
