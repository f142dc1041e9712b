#include "platform/vbscript/objects/FileItems.h"
#include "platform/vbscript/objects/PathText.h"

#include <QFileInfo>
#include <QStorageInfo>
#include <span>
#include <sys/statvfs.h>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

enum DriveType {
    UnknownDrive = 0,
    RemovableDrive = 1,
    FixedDrive = 2,
    NetworkDrive = 3,
    OpticalDrive = 4,
    RamDrive = 5
};

struct FileSystemKind
{
    const char *name;
    DriveType type;
};
constexpr FileSystemKind kFileSystems[] = {
    { "nfs", NetworkDrive }, { "nfs4", NetworkDrive }, { "cifs", NetworkDrive }, { "smb3", NetworkDrive },
    { "fuse.sshfs", NetworkDrive }, { "9p", NetworkDrive }, { "ceph", NetworkDrive },
    { "iso9660", OpticalDrive }, { "udf", OpticalDrive }, { "tmpfs", RamDrive }, { "ramfs", RamDrive },
    { "vfat", RemovableDrive }, { "exfat", RemovableDrive },
};

/** A mounted file system. The root has the letter C, others have none. */
class Drive : public NativeObject<Drive>
{
public:
    explicit Drive(const QStorageInfo &storage) : m_storage(storage) {}
    QString typeName() const override { return u"Drive"_s; }
    static std::span<const Member<Drive>> members();

private:
    Value path(Args &) { return Value::string(m_storage.rootPath()); }
    Value driveLetter(Args &) { return Value::string(m_storage.isRoot() ? u"C"_s : u""_s); }
    Value driveType(Args &);
    Value freeSpace(Args &) { return space(m_storage.bytesFree()); }
    Value availableSpace(Args &) { return space(m_storage.bytesAvailable()); }
    Value totalSize(Args &) { return space(m_storage.bytesTotal()); }
    Value fileSystem(Args &) { return Value::string(QString::fromLatin1(m_storage.fileSystemType())); }
    Value isReady(Args &) { return Value::boolean(m_storage.isValid() && m_storage.isReady()); }
    Value volumeName(Args &) { return Value::string(m_storage.name()); }
    void putVolumeName(Args &) { throw ScriptError(err::kPermissionDenied); }
    Value serialNumber(Args &);
    Value shareName(Args &args);
    Value rootFolder(Args &) { return Value::object(makeFolder(m_storage.rootPath())); }
    Value space(qint64 bytes) const { return Value::real(double(qMax<qint64>(bytes, 0))); }

    QStorageInfo m_storage;
};

Value Drive::driveType(Args &)
{
    const QByteArray type = m_storage.fileSystemType();
    for (const FileSystemKind &row : kFileSystems) {
        if (type == row.name)
            return Value::longInteger(row.type);
    }
    return Value::longInteger(FixedDrive);
}

Value Drive::serialNumber(Args &)
{
    struct statvfs status;
    if (::statvfs(QFile::encodeName(m_storage.rootPath()).constData(), &status) != 0)
        throw ScriptError(kDeviceUnavailable);
    return Value::longInteger(qint32(quint64(status.f_fsid)));
}

Value Drive::shareName(Args &args)
{
    const bool remote = driveType(args).whole() == NetworkDrive;
    return Value::string(remote ? QString::fromLocal8Bit(m_storage.device()) : QString());
}

std::span<const Member<Drive>> Drive::members()
{
    using D = Drive;
    static constexpr Member<D> table[] = {
        { "Path", 0, 0, &D::path, nullptr, true },
        { "DriveLetter", 0, 0, &D::driveLetter },
        { "DriveType", 0, 0, &D::driveType },
        { "FreeSpace", 0, 0, &D::freeSpace },
        { "AvailableSpace", 0, 0, &D::availableSpace },
        { "TotalSize", 0, 0, &D::totalSize },
        { "FileSystem", 0, 0, &D::fileSystem },
        { "IsReady", 0, 0, &D::isReady },
        { "VolumeName", 0, 0, &D::volumeName, &D::putVolumeName },
        { "SerialNumber", 0, 0, &D::serialNumber },
        { "ShareName", 0, 0, &D::shareName },
        { "RootFolder", 0, 0, &D::rootFolder },
    };
    return table;
}

class DriveWalk : public Enumerator
{
public:
    explicit DriveWalk(const QList<QStorageInfo> &volumes) : m_volumes(volumes) {}
    bool next(Value &item) override
    {
        if (m_at >= m_volumes.size())
            return false;
        item = Value::object(new Drive(m_volumes[m_at++]));
        return true;
    }

private:
    QList<QStorageInfo> m_volumes;
    qsizetype m_at = 0;
};

class Drives : public NativeObject<Drives>
{
public:
    QString typeName() const override { return u"Drives"_s; }
    static std::span<const Member<Drives>> members()
    {
        static constexpr Member<Drives> table[] = {
            { "Item", 1, 1, &Drives::item, nullptr, true },
            { "Count", 0, 0, &Drives::count },
        };
        return table;
    }
    std::unique_ptr<Enumerator> enumerate(ScriptHost &) override
    {
        return std::make_unique<DriveWalk>(volumes());
    }

private:
    static QList<QStorageInfo> volumes()
    {
        QList<QStorageInfo> found = QStorageInfo::mountedVolumes();
        found.removeIf([](const QStorageInfo &volume) {
            return !volume.isValid() || !QFileInfo(volume.rootPath()).isDir();
        });
        return found;
    }
    Value item(Args &args) { return Value::object(makeDrive(args.text(0))); }
    Value count(Args &) { return Value::longInteger(qint32(volumes().size())); }
};

}

Object *makeDrive(const QString &path)
{
    QString place = path;
    if (place.size() == 1 && place[0].isLetter())
        place += u':';
    if (place.size() >= 2 && place[1] == u':' && place[0].toUpper() != u'C')
        throw ScriptError(kDeviceUnavailable);
    const QStorageInfo storage(nativePath(place));
    if (!storage.isValid())
        throw ScriptError(kDeviceUnavailable);
    return new Drive(storage);
}

Object *makeDrives() { return new Drives; }

}
