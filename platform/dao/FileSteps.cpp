#include "platform/dao/FileSteps.h"

#include "platform/dao/Errors.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace dao::files {

namespace {

constexpr qsizetype kCopyBlock = 1 << 20;
const QString kSideFiles[] = {u"-wal"_s, u"-shm"_s, u"-journal"_s};

std::function<void(const QString &)> s_hook;

struct Reason {
    int code;
    long number;
    const char16_t *text;
};
constexpr Reason kReasons[] = {
    {ENOENT, 53, u"File not found"},       {ENOSPC, 61, u"Disk full"},
    {EDQUOT, 61, u"Disk full"},            {EFBIG, 61, u"Disk full"},
    {EACCES, 70, u"Permission denied"},    {EPERM, 70, u"Permission denied"},
    {EROFS, 70, u"Permission denied"},     {EBUSY, 70, u"Permission denied"},
    {EISDIR, 75, u"Path/File access error"}, {ENAMETOOLONG, 75, u"Path/File access error"},
    {ENOTDIR, 76, u"Path not found"},      {0, 57, u"Device I/O error"},
};

[[noreturn]] void raiseErrno(int code, const QString &path)
{
    const Reason *reason = kReasons;
    while (reason->code != 0 && reason->code != code)
        ++reason;
    throw VbError(reason->number, u"%1: %2"_s.arg(QString::fromUtf16(reason->text), path));
}

/** A file descriptor that is closed at the end of its scope. */
class Descriptor
{
public:
    Descriptor(const QString &path, int flags)
        : m_path(path)
        , m_file(::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, 0666))
    {
        if (m_file < 0)
            raiseErrno(errno, path);
    }
    ~Descriptor() { ::close(m_file); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    void sync() const
    {
        // Some file systems cannot sync a folder and say so; there is nothing more to be done then.
        if (fsync(m_file) != 0 && errno != EINVAL && errno != ENOTSUP)
            raiseErrno(errno, m_path);
    }
    qsizetype read(QByteArray &block) const
    {
        const qsizetype count = ::read(m_file, block.data(), size_t(block.size()));
        if (count < 0)
            raiseErrno(errno, m_path);
        return count;
    }
    void write(const char *bytes, qsizetype count) const
    {
        while (count > 0) {
            const qsizetype written = ::write(m_file, bytes, size_t(count));
            if (written < 0)
                raiseErrno(errno, m_path);
            bytes += written;
            count -= written;
        }
    }

private:
    QString m_path;
    int m_file;
};

QString folderOf(const QString &path) { return QFileInfo(path).absolutePath(); }

QString draftPath(const QString &target, qint64 process) { return u"%1.%2.new"_s.arg(target).arg(process); }

void copyNew(const QString &from, const QString &to)
{
    step("copy", to);
    const Descriptor source(from, O_RDONLY);
    const Descriptor target(to, O_WRONLY | O_CREAT | O_EXCL);
    QByteArray block(kCopyBlock, Qt::Uninitialized);
    while (const qsizetype count = source.read(block))
        target.write(block.constData(), count);
}

/** Rights and owner of the replaced file; whoever may not give the file away keeps it. */
void adoptRights(const QString &path, const QString &from)
{
    struct stat old;
    const QByteArray name = QFile::encodeName(path);
    if (stat(QFile::encodeName(from).constData(), &old) != 0)
        return;
    [[maybe_unused]] const int given = chown(name.constData(), old.st_uid, old.st_gid);
    if (chmod(name.constData(), old.st_mode & 07777) != 0)
        raiseErrno(errno, path);
}

} // namespace

void setStepHook(std::function<void(const QString &)> hook) { s_hook = std::move(hook); }

void step(const char *name, const QString &path)
{
    if (s_hook)
        s_hook(QString::fromLatin1(name) + u' ' + path);
}

bool isSame(const QString &one, const QString &other)
{
    struct stat first;
    struct stat second;
    if (stat(QFile::encodeName(one).constData(), &first) == 0
        && stat(QFile::encodeName(other).constData(), &second) == 0)
        return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
    return QDir::cleanPath(QFileInfo(one).absoluteFilePath()) == QDir::cleanPath(QFileInfo(other).absoluteFilePath());
}

QString resolved(const QString &path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical;
}

void remove(const QString &path)
{
    struct stat found;
    const QByteArray name = QFile::encodeName(path);
    if (lstat(name.constData(), &found) != 0 && errno == ENOENT)
        return;
    step("remove", path);
    if (unlink(name.constData()) != 0 && errno != ENOENT)
        raiseErrno(errno, path);
}

void removeSideFiles(const QString &path)
{
    for (const QString &suffix : kSideFiles)
        remove(path + suffix);
}

void removeDatabase(const QString &path)
{
    removeSideFiles(path);
    remove(path);
}

void sync(const QString &path)
{
    step("sync", path);
    Descriptor(path, O_RDONLY).sync();
}

bool replace(const QString &from, const QString &to)
{
    step("rename", to);
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
        if (errno == EXDEV)
            return false;
        raiseErrno(errno, to);
    }
    sync(folderOf(to));
    return true;
}

Draft::Draft(const QString &target)
    : m_target(resolved(target))
    , m_path(draftPath(m_target, QCoreApplication::applicationPid()))
{
    removeDatabase(m_path);
}

void Draft::removeLeftBehind(const QString &target, qint64 process)
{
    const QFileInfo draft(draftPath(resolved(target), process));
    const QDir folder = draft.absoluteDir();
    // Beside the draft there may be its log, its lock and a draft of its own.
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden)) {
        if (name.startsWith(draft.fileName()))
            remove(folder.filePath(name));
    }
}

Draft::~Draft()
{
    try {
        removeDatabase(m_path);
    } catch (...) {
        // What cannot be removed stays; its name tells what it is, and nothing takes it for a database.
    }
}

void Draft::finish()
{
    sync(m_path);
    step("rename", m_target);
    const QByteArray from = QFile::encodeName(m_path);
    const QByteArray to = QFile::encodeName(m_target);
    int result = renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE);
    // Not every file system knows the flag.
    if (result != 0 && (errno == EINVAL || errno == ENOSYS) && !QFileInfo::exists(m_target))
        result = ::rename(from.constData(), to.constData());
    if (result != 0 && (errno == EEXIST || errno == EINVAL))
        raise(3204);
    if (result != 0)
        raiseErrno(errno, m_target);
    sync(folderOf(m_target));
}

void Draft::finishReplacing()
{
    adoptRights(m_path, m_target);
    sync(m_path);
    if (!replace(m_path, m_target))
        raiseErrno(EXDEV, m_target);
}

void moveOver(const QString &from, const QString &to)
{
    const QString target = resolved(to);
    adoptRights(from, target);
    sync(from);
    if (replace(from, target))
        return;
    Draft near(target);
    copyNew(from, near.path());
    near.finishReplacing();
    remove(from);
}

} // namespace dao::files
