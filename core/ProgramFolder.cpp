#include "core/ProgramFolder.h"

#include "core/Settings.h"
#include "core/vbMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

QString s_folder;
QString s_sharedFolder;

/** What an installed program brings along and a user's own folder needs a copy of. */
constexpr QLatin1StringView kShipped[] = { "defaultDB.mdb"_L1, "HTML_Template_IE5.html"_L1, "Kavro2000.chm"_L1 };

} // namespace

QString ProgramFolder() { return s_folder.isEmpty() ? QCoreApplication::applicationDirPath() : s_folder; }

void setProgramFolder(const QString &folder) { s_folder = folder; }

void setSharedDataFolder(const QString &folder) { s_sharedFolder = folder; }

QString SharedDataFolder()
{
    if (!s_sharedFolder.isEmpty())
        return s_sharedFolder;
    const QString installed = QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../share/kavro2000"_L1);
    return QFileInfo(installed).isDir() ? installed : QCoreApplication::applicationDirPath();
}

QString nativePath(const QString &path)
{
    QString native = path;
    return native.replace(u'\\', u'/');
}

namespace {

void settle()
{
    const QString beside = QCoreApplication::applicationDirPath();
    const bool installed = SharedDataFolder() != beside;
    if (!installed && QFileInfo(beside).isWritable())
        return setProgramFolder(beside);
    const QString own = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/kavro2000"_L1;
    QDir().mkpath(own);
    setProgramFolder(own);
    for (const QLatin1StringView name : kShipped) {
        const QString target = own + u'/' + name;
        const QString source = SharedDataFolder() + u'/' + name;
        if (QFileInfo::exists(target) || !QFile::copy(source, target))
            continue;
        QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
    }
}

/** A missing log file is announced as one that got lost, which would be the first thing a new user hears. */
void beginLog()
{
    if (QFileInfo::exists(SettingsFilePath()))
        return;
    QFile log(ProgramFolder() + "/log.txt"_L1);
    if (!log.exists())
        log.open(QIODevice::WriteOnly); // where it cannot be made, the first event tells so
}

} // namespace

void ChooseProgramFolder()
{
    settle();
    beginLog();
}
