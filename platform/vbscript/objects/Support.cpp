#include "platform/vbscript/objects/Support.h"

#include <QDir>
#include <QFileInfo>
#include <QHostInfo>
#include <QStandardPaths>
#include <cerrno>
#include <csignal>
#include <pthread.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

constexpr int kLongestSlice = 20; // ms; a fifth of the tenth of a second that a time-out may be late
constexpr qint64 kLargestBuffer = 0x7fff0000;

QString &workingFolderStore()
{
    static QString folder = QDir::currentPath();
    return folder;
}

QString hostName() { return QHostInfo::localHostName().section(u'.', 0, 0).toUpper(); }

struct WindowsVariable
{
    const char *name;
    QString (*value)();
};

// Names that scripts rely on and that this system does not set.
const WindowsVariable kWindowsVariables[] = {
    { "TEMP", [] { return QDir::tempPath(); } },
    { "TMP", [] { return QDir::tempPath(); } },
    { "USERNAME", [] { return environment().value(u"USER"_s, environment().value(u"LOGNAME"_s)); } },
    { "COMPUTERNAME", hostName },
    { "USERDOMAIN", hostName },
    { "USERPROFILE", QDir::homePath },
    { "HOMEDRIVE", [] { return u""_s; } },
    { "HOMEPATH", QDir::homePath },
    { "APPDATA", [] { return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation); } },
    { "LOCALAPPDATA", [] { return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation); } },
    { "COMSPEC", [] { return u"/bin/sh"_s; } },
    { "SYSTEMDRIVE", [] { return u""_s; } },
    { "OS", [] { return u"Linux"_s; } },
};

}

const QString &workingFolder() { return workingFolderStore(); }

void setWorkingFolder(const QString &folder) { workingFolderStore() = folder; }

QProcessEnvironment &environment()
{
    static QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    return variables;
}

QString environmentValue(const QString &name)
{
    const QProcessEnvironment &variables = environment();
    const auto set
        = [&](const QString &exact) { return u""_s + variables.value(exact); }; // empty is not null
    if (variables.contains(name))
        return set(name);
    const QStringList names = variables.keys();
    for (const QString &other : names) {
        if (other.compare(name, Qt::CaseInsensitive) == 0)
            return set(other);
    }
    for (const WindowsVariable &row : kWindowsVariables) {
        if (name.compare(QLatin1StringView(row.name), Qt::CaseInsensitive) == 0)
            return row.value();
    }
    return {};
}

QString expandEnvironment(const QString &text)
{
    QString result;
    qsizetype done = 0;
    while (true) {
        const qsizetype open = text.indexOf(u'%', done);
        const qsizetype close = open < 0 ? -1 : text.indexOf(u'%', open + 1);
        if (close < 0)
            return result + text.mid(done);
        const QString value = environmentValue(text.mid(open + 1, close - open - 1));
        result += QStringView(text).mid(done, open - done);
        if (value.isNull()) { // the closing sign may open the next name
            result += QStringView(text).mid(open, close - open);
            done = close;
            continue;
        }
        result += value;
        done = close + 1;
    }
}

QString nativePath(const QString &path)
{
    if (path.isEmpty())
        throw ScriptError(err::kInvalidCall);
    if (path.contains(QChar(0)))
        throw ScriptError(err::kBadFileName);
    QString local = path;
    if (local.size() >= 2 && local[1] == u':' && local[0].isLetter()) {
        if (local[0].toUpper() != u'C')
            throw ScriptError(err::kPathNotFound);
        local.remove(0, 2);
        if (local.isEmpty())
            local = u"/"_s;
    }
    local.replace(u'\\', u'/');
    return QDir::cleanPath(QDir(workingFolder()).absoluteFilePath(local));
}

ScriptError systemError(int code)
{
    switch (code) {
    case ENOENT: return ScriptError(err::kFileNotFound);
    case ENOTDIR: return ScriptError(err::kPathNotFound);
    case EEXIST: return ScriptError(err::kFileExists);
    case EACCES: case EPERM: case EROFS: case EISDIR: case EBUSY: case ETXTBSY: case ENOTEMPTY: case ENXIO:
        return ScriptError(err::kPermissionDenied);
    case ENOSPC: case EDQUOT: case EFBIG: return ScriptError(kDiskFullNumber);
    case EMFILE: case ENFILE: return ScriptError(kTooManyFiles);
    case ENAMETOOLONG: case EINVAL: return ScriptError(err::kBadFileName);
    case EIO: case EPIPE: return ScriptError(err::kDeviceIo);
    case ENOMEM: return ScriptError(err::kOutOfMemory);
    default: return ScriptError(err::kPathAccess);
    }
}

ScriptError openError(int code, const QString &path)
{
    if (code == ENOENT && !QFileInfo(QFileInfo(path).path()).isDir())
        return ScriptError(err::kPathNotFound);
    return systemError(code);
}

Value dateValue(const QDateTime &when)
{
    if (!when.isValid())
        return {};
    const QDateTime local = when.toLocalTime();
    const double days = double(QDate(1899, 12, 30).daysTo(local.date()));
    return Value::date(days + local.time().msecsSinceStartOfDay() / 1000 / 86400.0); // whole seconds
}

Value sizeValue(qint64 size)
{
    return size == qint32(size) ? Value::longInteger(qint32(size)) : Value::real(double(size));
}

int waitSlice(ScriptHost &host)
{
    host.checkDeadline();
    const qint64 left = host.millisecondsLeft();
    return left < 0 ? kLongestSlice : int(qBound(qint64(1), left, qint64(kLongestSlice)));
}

TextView::TextView(Args &args, int index)
{
    if (args[index].is(Type::String)) {
        m_view = args[index].view();
        return;
    }
    m_own = args.text(index);
    m_view = m_own;
}

void ByteBuffer::reserve(qint64 size)
{
    if (size <= m_bytes.capacity())
        return;
    if (size > kLargestBuffer)
        throw ScriptError(err::kOutOfMemory);
    constexpr qint64 kLargestStep = 8 * 1024 * 1024;
    const qint64 capacity
        = qMax<qint64>(size, m_bytes.capacity() + qMin<qint64>(m_bytes.capacity(), kLargestStep));
    m_charge.resize(capacity);
    m_bytes.reserve(capacity);
}

void ByteBuffer::write(qint64 position, QByteArrayView bytes)
{
    reserve(position + bytes.size());
    const qint64 over = qMin<qint64>(bytes.size(), size() - position);
    m_bytes.replace(position, over, bytes);
}

void ByteBuffer::resize(qint64 size)
{
    reserve(size);
    const qint64 before = m_bytes.size();
    m_bytes.resize(size);
    if (size > before)
        memset(m_bytes.data() + before, 0, size_t(size - before));
}

void ByteBuffer::dropFront(qint64 count) { m_bytes.remove(0, count); }

void ByteBuffer::clear()
{
    m_bytes = QByteArray();
    m_charge.resize(0);
}

SigpipeBlock::SigpipeBlock()
{
    sigset_t pending;
    sigpending(&pending);
    if (sigismember(&pending, SIGPIPE))
        return;
    sigset_t pipe;
    sigset_t before;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe, &before);
    m_blockedHere = !sigismember(&before, SIGPIPE);
}

SigpipeBlock::~SigpipeBlock()
{
    if (!m_blockedHere)
        return;
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    const timespec now {};
    while (sigtimedwait(&pipe, nullptr, &now) == -1 && errno == EINTR) { }
    pthread_sigmask(SIG_UNBLOCK, &pipe, nullptr);
}

void Descriptor::reset(int fd)
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = fd;
}

}
