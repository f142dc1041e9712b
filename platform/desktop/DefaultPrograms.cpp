#include "platform/desktop/DefaultPrograms.h"

#include "platform/desktop/ScriptedBoxes.h"

#include <QDir>
#include <QFile>
#include <QMimeDatabase>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace desktop {

namespace {

constexpr const char *kChosen[] = { "Default Applications", "Added Associations" };
constexpr const char *kRemoved = "Removed Associations";
constexpr const char *kDeclared = "MIME Cache";
constexpr const char *kProgram = "Desktop Entry";

/** The values of "key=a;b;" in a section of one of the desktop's files; empty without it. */
QStringList listed(const QString &file, const QByteArray &section, const QByteArray &key)
{
    QFile lines(file);
    if (!lines.open(QIODevice::ReadOnly))
        return {};
    bool inside = false;
    while (!lines.atEnd()) {
        const QByteArray line = lines.readLine().trimmed();
        const auto sign = line.indexOf('=');
        if (line.startsWith('['))
            inside = line == '[' + section + ']';
        else if (inside && line.left(sign).trimmed() == key)
            return QString::fromUtf8(line.mid(sign + 1)).simplified().split(u';', Qt::SkipEmptyParts);
    }
    return {};
}

/** The lists of what users and systems have chosen, the strongest first. */
QStringList choiceLists()
{
    QStringList names { u"mimeapps.list"_s };
    const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower();
    for (const QString &each : desktops.split(u':', Qt::SkipEmptyParts))
        names.prepend(each + "-mimeapps.list"_L1);
    QStringList lists;
    for (const auto place : { QStandardPaths::GenericConfigLocation, QStandardPaths::ApplicationsLocation }) {
        for (const QString &folder : QStandardPaths::standardLocations(place)) {
            for (const QString &name : names)
                lists << folder + u'/' + name;
        }
    }
    return lists;
}

bool isInstalled(const QString &program)
{
    if (!QStandardPaths::locate(QStandardPaths::ApplicationsLocation, program).isEmpty())
        return true;
    // A hyphen may stand for a folder.
    QString inside = program;
    const auto hyphen = inside.indexOf(u'-');
    if (hyphen < 0)
        return false;
    inside[hyphen] = u'/';
    return !QStandardPaths::locate(QStandardPaths::ApplicationsLocation, inside).isEmpty();
}

/** The programs of a folder that say they can open the type; by the folder's cache where there is one. */
QStringList declaring(const QString &folder, const QString &type)
{
    const QString cache = folder + "/mimeinfo.cache"_L1;
    if (QFile::exists(cache))
        return listed(cache, kDeclared, type.toUtf8());
    QStringList programs;
    for (const QString &name : QDir(folder).entryList({ u"*.desktop"_s }, QDir::Files)) {
        if (listed(folder + u'/' + name, kProgram, "MimeType").contains(type))
            programs << name;
    }
    return programs;
}

bool hasProgramForType(const QString &type)
{
    const QByteArray key = type.toUtf8();
    QStringList removed;
    for (const QString &list : choiceLists()) {
        removed << listed(list, kRemoved, key);
        for (const char *section : kChosen) {
            const QStringList programs = listed(list, section, key);
            if (std::any_of(programs.begin(), programs.end(), isInstalled))
                return true;
        }
    }
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        for (const QString &program : declaring(folder, type)) {
            if (!removed.contains(program) && isInstalled(program))
                return true;
        }
    }
    return false;
}

} // namespace

bool hasProgramFor(const QString &file)
{
    if (const ScriptedBoxes *script = ScriptedBoxes::active())
        return script->hasProgram();
    const QMimeType type = QMimeDatabase().mimeTypeForFile(file);
    const QStringList names = QStringList(type.name()) + type.aliases();
    return std::any_of(names.begin(), names.end(), hasProgramForType);
}

} // namespace desktop
