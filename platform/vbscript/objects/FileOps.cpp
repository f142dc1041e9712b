#include "platform/vbscript/objects/FileOps.h"

#include "platform/vbscript/objects/PathText.h"
#include "platform/vbscript/objects/Support.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vbs::objects::files {

namespace {

constexpr qint64 kCopyChunk = 256 * 1024;
constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

QByteArray local(const QString &path) { return QFile::encodeName(path); }

bool exists(const QString &path)
{
    struct stat status;
    return ::lstat(local(path).constData(), &status) == 0;
}

/** Where `name` goes: into the folder that `target` names by a trailing separator, or to `target` itself. */
QString placeFor(const QString &source, const QString &target, bool into)
{
    const QString native = nativePath(target);
    if (!into)
        return native;
    if (!folderExists(native))
        throw ScriptError(err::kPathNotFound);
    return native + u'/' + QFileInfo(source).fileName();
}

bool goesInto(const QString &spec, const QString &target)
{
    return path::hasWildcards(path::fileName(spec)) || path::endsWithSeparator(target);
}

void copyContents(ScriptHost &host, int from, int to)
{
    QByteArray chunk(kCopyChunk, Qt::Uninitialized);
    while (true) {
        host.checkDeadline();
        const ssize_t count = ::read(from, chunk.data(), size_t(chunk.size()));
        if (count == 0)
            return;
        if (count < 0 && errno != EINTR)
            throw systemError(errno);
        for (ssize_t done = 0; done < count;) {
            const ssize_t written = ::write(to, chunk.constData() + done, size_t(count - done));
            if (written < 0 && errno != EINTR)
                throw systemError(errno);
            done += qMax<ssize_t>(written, 0);
        }
    }
}

void copyLink(const QString &from, const QString &to)
{
    QByteArray target(PATH_MAX, '\0'); // ends with a NUL as it was filled with them
    if (::readlink(local(from).constData(), target.data(), size_t(target.size() - 1)) < 0)
        throw systemError(errno);
    if (::symlink(target.constData(), local(to).constData()) != 0)
        throw systemError(errno);
}

struct TreeEntry
{
    QString path;
    bool isFolder = false; // a link to a folder is none
    bool isLink = false;
};

/** Everything below a folder, folders before their contents; links are not followed. */
QList<TreeEntry> walk(ScriptHost &host, const QString &folder, memory::Charge &charge)
{
    QList<TreeEntry> entries;
    qint64 bytes = 0;
    QDirIterator items(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
        QDirIterator::Subdirectories);
    while (items.hasNext()) {
        const QString path = items.next();
        const QFileInfo info = items.fileInfo();
        entries.append({ path, info.isDir() && !info.isSymLink(), info.isSymLink() });
        bytes += qint64(sizeof(TreeEntry)) + 2 * path.size();
        charge.resize(bytes);
        host.spend(200);
    }
    return entries;
}

void setPermissions(const QString &path, mode_t mode)
{
    if (::chmod(local(path).constData(), mode) != 0)
        throw systemError(errno);
}

mode_t permissions(const QString &path)
{
    struct stat status;
    if (::stat(local(path).constData(), &status) != 0)
        throw systemError(errno);
    return status.st_mode & 07777;
}

}

bool fileExists(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isDir();
}

bool folderExists(const QString &path) { return QFileInfo(path).isDir(); }

QStringList list(ScriptHost &host, const QString &folder, Kind kind)
{
    if (!folderExists(folder))
        throw ScriptError(err::kPathNotFound);
    if (::access(local(folder).constData(), R_OK | X_OK) != 0)
        throw systemError(errno);
    const QDir::Filters wanted = kind == Kind::File ? QDir::Files | QDir::System : QDir::Filters(QDir::Dirs);
    QDirIterator items(folder, wanted | QDir::Hidden | QDir::NoDotAndDotDot);
    QStringList names;
    memory::Charge charge;
    qint64 bytes = 0;
    while (items.hasNext()) {
        items.next();
        names.append(items.fileName());
        bytes += 64 + 2 * names.constLast().size();
        charge.resize(bytes);
        host.spend(100);
    }
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
        const int order = a.compare(b, Qt::CaseInsensitive);
        return order ? order < 0 : a < b;
    });
    return names;
}

QStringList expand(ScriptHost &host, const QString &spec, Kind kind)
{
    const int missing = kind == Kind::File ? err::kFileNotFound : err::kPathNotFound;
    const QString pattern = path::fileName(spec);
    if (!path::hasWildcards(pattern)) {
        const QString single = nativePath(spec);
        if (kind == Kind::File ? !fileExists(single) : !folderExists(single))
            throw ScriptError(missing);
        return { single };
    }
    const QString parent = path::parent(spec);
    const QString folder = parent.isEmpty() ? workingFolder() : nativePath(parent);
    QStringList found;
    for (const QString &name : list(host, folder, kind)) {
        if (path::matches(pattern, name))
            found.append(folder + u'/' + name);
    }
    if (found.isEmpty())
        throw ScriptError(missing);
    return found;
}

void copyFile(ScriptHost &host, const QString &from, const QString &to, bool overwrite)
{
    if (folderExists(to) || QFileInfo(from).canonicalFilePath() == QFileInfo(to).canonicalFilePath())
        throw ScriptError(err::kPermissionDenied);
    if (exists(to) && !overwrite)
        throw ScriptError(err::kFileExists);
    if (exists(to) && isReadOnly(to))
        throw ScriptError(err::kPermissionDenied);
    const Descriptor source(::open(local(from).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!source)
        throw openError(errno, from);
    const mode_t mode = permissions(from);
    const Descriptor target(
        ::open(local(to).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, mode | S_IWUSR));
    if (!target)
        throw openError(errno, to);
    copyContents(host, source.get(), target.get());
    ::fchmod(target.get(), mode); // some file systems keep no modes
}

void copyTree(ScriptHost &host, const QString &from, const QString &to, bool overwrite)
{
    if ((to + u'/').startsWith(from + u'/'))
        throw ScriptError(err::kPermissionDenied);
    if (fileExists(to))
        throw ScriptError(err::kFileExists);
    if (!folderExists(to))
        createFolder(to);
    memory::Charge charge;
    for (const TreeEntry &entry : walk(host, from, charge)) {
        const QString place = to + entry.path.mid(from.size());
        if (entry.isFolder && !folderExists(place))
            createFolder(place);
        else if (entry.isLink && !exists(place))
            copyLink(entry.path, place);
        else if (!entry.isFolder)
            copyFile(host, entry.path, place, overwrite);
    }
}

void copyFiles(ScriptHost &host, const QString &spec, const QString &target, bool overwrite)
{
    const bool into = goesInto(spec, target);
    for (const QString &source : expand(host, spec, Kind::File))
        copyFile(host, source, placeFor(source, target, into), overwrite);
}

void copyFolders(ScriptHost &host, const QString &spec, const QString &target, bool overwrite)
{
    const bool into = goesInto(spec, target);
    for (const QString &source : expand(host, spec, Kind::Folder))
        copyTree(host, source, placeFor(source, target, into), overwrite);
}

void moveItem(ScriptHost &host, const QString &from, const QString &to)
{
    if (exists(to))
        throw ScriptError(err::kFileExists);
    if ((to + u'/').startsWith(from + u'/'))
        throw ScriptError(err::kPermissionDenied);
    if (::rename(local(from).constData(), local(to).constData()) == 0)
        return;
    if (errno != EXDEV)
        throw openError(errno, to);
    if (QFileInfo(from).isDir()) {
        copyTree(host, from, to, false);
        deleteTree(host, from, true);
    } else {
        copyFile(host, from, to, false);
        deleteFile(from, true);
    }
}

void moveItems(ScriptHost &host, const QString &spec, const QString &target, Kind kind)
{
    const bool into = goesInto(spec, target);
    for (const QString &source : expand(host, spec, kind))
        moveItem(host, source, placeFor(source, target, into));
}

void deleteFile(const QString &path, bool force)
{
    if (!force && !QFileInfo(path).isSymLink() && isReadOnly(path))
        throw ScriptError(err::kPermissionDenied);
    if (::unlink(local(path).constData()) != 0)
        throw systemError(errno);
}

void deleteTree(ScriptHost &host, const QString &path, bool force)
{
    if (path == "/"_L1)
        throw ScriptError(err::kPermissionDenied);
    if (QFileInfo(path).isSymLink())
        return deleteFile(path, force);
    memory::Charge charge;
    const QList<TreeEntry> entries = walk(host, path, charge);
    for (auto entry = entries.crbegin(); entry != entries.crend(); ++entry) {
        host.checkDeadline();
        if (!entry->isFolder)
            deleteFile(entry->path, force);
        else if (::rmdir(local(entry->path).constData()) != 0)
            throw systemError(errno);
    }
    if (::rmdir(local(path).constData()) != 0)
        throw systemError(errno);
}

void deleteFiles(ScriptHost &host, const QString &spec, bool force)
{
    for (const QString &path : expand(host, spec, Kind::File))
        deleteFile(path, force);
}

void deleteFolders(ScriptHost &host, const QString &spec, bool force)
{
    for (const QString &path : expand(host, spec, Kind::Folder))
        deleteTree(host, path, force);
}

void createFolder(const QString &path)
{
    if (::mkdir(local(path).constData(), 0777) == 0)
        return;
    throw errno == ENOENT ? ScriptError(err::kPathNotFound) : systemError(errno);
}

qint64 treeSize(ScriptHost &host, const QString &folder)
{
    qint64 bytes = 0;
    memory::Charge charge;
    for (const TreeEntry &entry : walk(host, folder, charge)) {
        if (!entry.isFolder && !entry.isLink)
            bytes += QFileInfo(entry.path).size();
    }
    return bytes;
}

bool isReadOnly(const QString &path) { return !(permissions(path) & kWriteBits); }

void setReadOnly(const QString &path, bool readOnly)
{
    const mode_t mode = permissions(path);
    if (readOnly)
        setPermissions(path, mode & ~kWriteBits);
    else if (!(mode & kWriteBits))
        setPermissions(path, mode | S_IWUSR);
}

}
