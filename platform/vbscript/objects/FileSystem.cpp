#include "platform/vbscript/objects/FileItems.h"
#include "platform/vbscript/objects/FileOps.h"
#include "platform/vbscript/objects/Makers.h"
#include "platform/vbscript/objects/PathText.h"
#include "platform/vbscript/objects/TextStream.h"

#include <QDir>
#include <fcntl.h>
#include <span>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

using files::Kind;

/** Scripting.FileSystemObject. */
class FileSystem : public NativeObject<FileSystem>
{
public:
    QString typeName() const override { return u"FileSystemObject"_s; }
    static std::span<const Member<FileSystem>> members();

private:
    Value buildPath(Args &args) { return Value::string(path::build(args.text(0), args.text(1))); }
    Value getAbsolutePathName(Args &args) { return Value::string(path::absolute(args.text(0))); }
    Value getBaseName(Args &args) { return Value::string(path::baseName(args.text(0))); }
    Value getDriveName(Args &args) { return Value::string(path::driveName(args.text(0))); }
    Value getExtensionName(Args &args) { return Value::string(path::extension(args.text(0))); }
    Value getFileName(Args &args) { return Value::string(path::fileName(args.text(0))); }
    Value getParentFolderName(Args &args) { return Value::string(path::parent(args.text(0))); }
    Value getTempName(Args &) { return Value::string(path::temporaryName()); }
    Value getFileVersion(Args &args);
    Value fileExists(Args &args) { return Value::boolean(answers(args.text(0), files::fileExists)); }
    Value folderExists(Args &args) { return Value::boolean(answers(args.text(0), files::folderExists)); }
    Value driveExists(Args &args);
    Value copyFile(Args &args);
    Value copyFolder(Args &args);
    Value moveFile(Args &args);
    Value moveFolder(Args &args);
    Value deleteFile(Args &args);
    Value deleteFolder(Args &args);
    Value createFolder(Args &args);
    Value getFile(Args &args) { return Value::object(makeFile(nativePath(args.text(0)))); }
    Value getFolder(Args &args) { return Value::object(makeFolder(nativePath(args.text(0)))); }
    Value getDrive(Args &args) { return Value::object(makeDrive(args.text(0))); }
    Value getSpecialFolder(Args &args);
    Value drives(Args &) { return Value::object(makeDrives()); }
    Value createTextFile(Args &args);
    Value openTextFile(Args &args);
    Value getStandardStream(Args &args);

    /** A path that cannot even be meant is no error in a question. */
    static bool answers(const QString &path, bool (*question)(const QString &));
};

bool FileSystem::answers(const QString &path, bool (*question)(const QString &))
{
    try {
        return question(nativePath(path));
    } catch (const ScriptError &) {
        return false;
    }
}

Value FileSystem::getFileVersion(Args &args)
{
    if (!files::fileExists(nativePath(args.text(0))))
        throw ScriptError(err::kFileNotFound);
    return Value::string(u""_s); // no file here carries such a version
}

Value FileSystem::driveExists(Args &args)
{
    try {
        Value::object(makeDrive(args.text(0)));
        return Value::boolean(true);
    } catch (const ScriptError &) {
        return Value::boolean(false);
    }
}

Value FileSystem::copyFile(Args &args)
{
    files::copyFiles(args.host(), args.text(0), args.text(1), args.boolean(2, true));
    return {};
}

Value FileSystem::copyFolder(Args &args)
{
    files::copyFolders(args.host(), args.text(0), args.text(1), args.boolean(2, true));
    return {};
}

Value FileSystem::moveFile(Args &args)
{
    files::moveItems(args.host(), args.text(0), args.text(1), Kind::File);
    return {};
}

Value FileSystem::moveFolder(Args &args)
{
    files::moveItems(args.host(), args.text(0), args.text(1), Kind::Folder);
    return {};
}

Value FileSystem::deleteFile(Args &args)
{
    files::deleteFiles(args.host(), args.text(0), args.boolean(1, false));
    return {};
}

Value FileSystem::deleteFolder(Args &args)
{
    files::deleteFolders(args.host(), args.text(0), args.boolean(1, false));
    return {};
}

Value FileSystem::createFolder(Args &args)
{
    const QString path = nativePath(args.text(0));
    files::createFolder(path);
    return Value::object(makeFolder(path));
}

Value FileSystem::getSpecialFolder(Args &args)
{
    switch (args.integer(0)) {
    case 0: return Value::object(makeFolder(u"/usr"_s));
    case 1: return Value::object(makeFolder(u"/usr/bin"_s));
    case 2: return Value::object(makeFolder(QDir::tempPath()));
    default: throw ScriptError(err::kInvalidCall);
    }
}

Value FileSystem::createTextFile(Args &args)
{
    const QString path = nativePath(args.text(0));
    return Value::object(vbs::objects::createTextFile(path, args.boolean(1, true), args.boolean(2, false)));
}

Value FileSystem::openTextFile(Args &args)
{
    const QString path = nativePath(args.text(0));
    return Value::object(vbs::objects::openTextFile(
        args.host(), path, args.integer(1, 1), args.boolean(2, false), args.integer(3, 0)));
}

Value FileSystem::getStandardStream(Args &args)
{
    const qint32 which = args.integer(0);
    if (which < 0 || which > 2)
        throw ScriptError(err::kInvalidCall);
    const int copy = ::fcntl(which, F_DUPFD_CLOEXEC, 0);
    if (copy < 0)
        throw ScriptError(err::kBadFileName);
    const TextStream::Style style { args.boolean(1, false) ? TextEncoding::Utf16 : TextEncoding::Utf8, false,
        true };
    return Value::object(new TextStream(std::make_unique<FileChannel>(copy),
        which == 0 ? TextStream::Direction::Read : TextStream::Direction::Write, style));
}

std::span<const Member<FileSystem>> FileSystem::members()
{
    using F = FileSystem;
    static constexpr Member<F> table[] = {
        { "BuildPath", 2, 2, &F::buildPath },
        { "GetAbsolutePathName", 1, 1, &F::getAbsolutePathName },
        { "GetBaseName", 1, 1, &F::getBaseName },
        { "GetDriveName", 1, 1, &F::getDriveName },
        { "GetExtensionName", 1, 1, &F::getExtensionName },
        { "GetFileName", 1, 1, &F::getFileName },
        { "GetParentFolderName", 1, 1, &F::getParentFolderName },
        { "GetTempName", 0, 0, &F::getTempName },
        { "GetFileVersion", 1, 1, &F::getFileVersion },
        { "FileExists", 1, 1, &F::fileExists },
        { "FolderExists", 1, 1, &F::folderExists },
        { "DriveExists", 1, 1, &F::driveExists },
        { "CopyFile", 2, 3, &F::copyFile },
        { "CopyFolder", 2, 3, &F::copyFolder },
        { "MoveFile", 2, 2, &F::moveFile },
        { "MoveFolder", 2, 2, &F::moveFolder },
        { "DeleteFile", 1, 2, &F::deleteFile },
        { "DeleteFolder", 1, 2, &F::deleteFolder },
        { "CreateFolder", 1, 1, &F::createFolder },
        { "GetFile", 1, 1, &F::getFile },
        { "GetFolder", 1, 1, &F::getFolder },
        { "GetDrive", 1, 1, &F::getDrive },
        { "GetSpecialFolder", 1, 1, &F::getSpecialFolder },
        { "Drives", 0, 0, &F::drives },
        { "CreateTextFile", 1, 3, &F::createTextFile },
        { "OpenTextFile", 1, 4, &F::openTextFile },
        { "GetStandardStream", 1, 2, &F::getStandardStream },
    };
    return table;
}

}

Object *makeFileSystem(ScriptHost &) { return new FileSystem; }

}
