// The commands that change the database, the settings or the log themselves.
#include "ui/CommandHandlers.h"

#include "core/Dialogs.h"
#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"
#include "core/vbMain.h"
#include "notify/vbHTML.h"
#include "ui/DeviceTree.h"
#include "ui/EventList.h"
#include "ui/StatusList.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

bool confirmed(const QString &question)
{
    return vbMain().dialogs->messageBox(question, AppTitle(), Dialogs::Question, Dialogs::YesNo)
        == Dialogs::AnswerYes;
}

void logInformation(const QString &message) { WriteLog(message, u"Information"_s, 0, 0); }

} // namespace

void CommandHandlers::viewHTML() { ViewHTML(); }

void CommandHandlers::viewLog()
{
    const QString path = nativePath(GetSetting(u"Options"_s, u"LogFile"_s));
    if (!QFileInfo::exists(path)) {
        vbMain().dialogs->messageBox(u"The Log Files you specified does not exist or is corrupt ."
                                     "\r\nPlease re-define a log file from the options menu."_s,
            AppTitle(), Dialogs::Exclamation, Dialogs::Ok);
        return;
    }
    ShellOpen(u"file://"_s + path);
}

void CommandHandlers::resetCounters()
{
    if (!confirmed(u"Are you sure you want to reset all of the counters?"_s))
        return;
    db().Execute(
        u"UPDATE tblPortStatus SET Port_Icon = 5, Port_Icon_Flag = 0, Port_Mode = 0, Port_Success = 0,"
        " Port_Failure = 0, Ping_Cur = 0, Ping_Min = 0, Ping_Max = 0, Ping_Avg = 0,"
        " Port_Status = 'Not checked', Port_Last_Error = '', Port_Rec_Date = NULL, Port_Fail_Date = NULL"_s);
    db().Execute(u"UPDATE tblGroup SET Group_Icon = 14"_s);
    db().Execute(u"UPDATE tblDevices SET Device_Icon = 2, Device_Status = 'Not checked'"_s);
    logInformation(u"Counters have been reset."_s);
    m_parts.tree.Load_TreeView();
    m_parts.tree.clickCurrent();
}

void CommandHandlers::clearEventLog()
{
    if (!confirmed(u"You are sure you want to delete the contents of the event log."_s))
        return;
    db().Execute(u"DELETE * FROM tblEventLog"_s);
    const QString result
        = QString::number(db().RecordsAffected()) + u" entries were deleted from the event log."_s;
    m_parts.events.Load_EventLog();
    vbMain().dialogs->messageBox(result, AppTitle(), Dialogs::Information, Dialogs::Ok);
    logInformation(result);
}

void CommandHandlers::clearRegistry()
{
    if (confirmed(u"Are you sure you want to clear of the registry entries associated with "_s + AppTitle()
            + u'?')) {
        for (const char *section : Settings::sections())
            DeleteSetting(QString::fromLatin1(section));
    }
    // Recorded after a No as well.
    logInformation(u"Registry has been cleared."_s);
}

void CommandHandlers::deleteGroup()
{
    if (m_parts.tree.currentHasChildren()) {
        vbMain().dialogs->messageBox(
            u"You can not delete a group when devices are defined under the group."_s, AppTitle(),
            Dialogs::Exclamation, Dialogs::Ok);
        return;
    }
    db().Execute(u"DELETE * FROM tblGroup WHERE Group_ID = "_s + keys::after(m_parts.tree.currentKey()));
    m_parts.tree.removeCurrent();
    m_parts.list.Update_Groups();
}

void CommandHandlers::deleteDevice()
{
    const QString id = keys::before(m_parts.tree.currentKey());
    if (!confirmed(u"You are about to delete "_s + m_parts.tree.currentText() + u".\r\nAre you sure?"_s))
        return;
    db().Execute(
        u"DELETE tblDevices.*, tblPortMain.*, tblPortStatus.*, tblPortEmailTemplate.*"
        " FROM tblDevices LEFT JOIN(tblPortMain LEFT JOIN(tblPortStatus LEFT JOIN tblPortEmailTemplate"
        " ON tblPortStatus.Device_ID = tblPortEmailTemplate.Device_ID)"
        " ON tblPortMain.Device_ID = tblPortStatus.Device_ID)"
        " ON tblDevices.Device_ID = tblPortMain.Device_ID WHERE tblDevices.Device_ID = "_s
        + id);
    m_parts.tree.removeCurrent();
    m_parts.tree.Load_TreeView();
    m_parts.tree.clickCurrent();
}

void CommandHandlers::deletePort()
{
    const QString key = m_parts.tree.currentKey();
    if (!confirmed(u"You are about to delete port "_s + keys::after(key) + u" from "_s
            + m_parts.tree.currentParentText() + u".\r\nAre you sure?"_s))
        return;
    db().Execute(u"DELETE tblPortMain.*, tblPortStatus.*, tblPortEmailTemplate.*"
                 " FROM tblPortMain INNER JOIN(tblPortStatus LEFT JOIN tblPortEmailTemplate"
                 " ON tblPortStatus.Port_ID = tblPortEmailTemplate.Port_ID)"
                 " ON tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortMain.Device_ID = "_s
        + keys::before(key) + u" AND tblPortMain.Port_Num = '"_s + keys::after(key) + u"'"_s);
    m_parts.tree.removeCurrent();
    m_parts.list.Update_Ports(m_parts.tree.currentKey());
}

void CommandHandlers::disableDevice()
{
    const bool disable = m_parts.tree.currentImage() != status::DeviceDisabled;
    DisableDevice(m_parts.tree.currentKey(), disable ? u"Disabled"_s : u"Not Checked"_s);
    m_parts.tree.Load_TreeView();
    m_parts.tree.clickCurrent();
}

void CommandHandlers::DisableDevice(const QString &key, const QString &text)
{
    Trap("DisableDevice", [&] {
        const QString id = keys::before(key);
        const bool disabled = text == u"Disabled";
        const int portCode = disabled ? status::PortDisabled : status::PortOk;
        const int deviceCode = disabled ? status::DeviceDisabled : status::DeviceOk;
        db().Execute(u"UPDATE tblPortStatus Set Port_Status = '"_s + text + u"', Port_Icon = "_s
            + QString::number(portCode) + u" where Device_ID = "_s + id);
        db().Execute(u"UPDATE tblDevices Set Device_Status = '"_s + text + u"', Device_Icon = "_s
            + QString::number(deviceCode) + u" where Device_ID = "_s + id);
    });
}
