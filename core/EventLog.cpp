#include "core/vbMain.h"

#include "core/Announcer.h"
#include "core/Clock.h"
#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/** The log file's path. One that does not exist is announced and replaced by the default, which the next
    line creates. */
QString logFilePath()
{
    const QString configured = nativePath(GetSetting(u"Options"_s, u"LogFile"_s));
    if (QFileInfo::exists(configured))
        return configured;
    if (vbMain().announcer)
        vbMain().announcer->speak(u"LogFileNotFound"_s);
    SaveSetting(u"Options"_s, u"LogFile"_s, ProgramFolder() + "/log.txt"_L1);
    return nativePath(GetSetting(u"Options"_s, u"LogFile"_s));
}

/** Opened and closed for every line, so that the file is never held. */
void appendLine(const QString &path, const QString &line)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        throw VbError(QFileInfo(path).dir().exists() ? 75 : 76, file.errorString() + ": "_L1 + path);
    const QByteArray bytes = line.toUtf8() + '\n';
    if (file.write(bytes) != bytes.size() || !file.flush())
        throw VbError(57, file.errorString() + ": "_L1 + path);
}

} // namespace

void WriteLog(const QString &Message, const QString &MsgType, qint32 DeviceID, qint32 PortID)
{
    Trap("WriteLog", [&] {
        const QDateTime when = Clock::now();
        const QString path = logFilePath();
        const int icon = status::eventIcon(MsgType);
        if (vbMain().window)
            vbMain().window->addEventRow(icon, when, MsgType, Message);
        DBRecordEvent(when, MsgType, Message, DeviceID, PortID, qint16(icon));
        if (GetSettingNumber(u"Options"_s, u"LogFailures"_s) == 1.0)
            appendLine(path, GeneralDate(when) + u' ' + MsgType + "..."_L1 + Message.trimmed());
    });
}

void DBRecordEvent(const QDateTime &EventDate, const QString &EventType, const QString &EventText, qint32 DeviceID,
                   qint32 PortID, qint16 EventIcon)
{
    Trap("DBRecordEvent", [&] {
        // The texts go in as they are: one that holds an apostrophe is refused by the database.
        db().Execute("INSERT INTO tblEventLog"_L1
                     " (Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event)"_L1
                     " VALUES"_L1
                     " ('"_L1 + QString::number(DeviceID) + "', '"_L1 + QString::number(PortID) + "', '"_L1
                     + QString::number(EventIcon) + "', '"_L1 + GeneralDate(EventDate) + "', '"_L1 + EventType
                     + "', '"_L1 + EventText + "');"_L1);
        CheckDatabaseErrors();
    });
}
