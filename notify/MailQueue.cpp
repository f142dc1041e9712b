#include "notify/MailQueue.h"

#include "core/Announcer.h"
#include "core/Clock.h"
#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/SpokenName.h"
#include "core/Trap.h"
#include "core/Waits.h"

using namespace Qt::StringLiterals;
using dao::Recordset;

namespace {

constexpr QLatin1StringView kSelect =
    "Select tblDevices.Device_Name, tblDevices.Device_Alias, tblDevices.MSAgent_Referr_Device, tblPortMain.Port_Num,"
    " tblDevices.Device_ID, tblPortMain.Device_ID, tblPortMain.Port_Email_Notify, tblPortStatus.Port_Mode,"
    " tblPortStatus.Port_Icon, tblPortStatus.Port_Icon_Flag, tblPortMain.Port_ID, tblPortStatus.Port_ID as PortID,"
    " tblPortStatus.Port_Last_Error"
    " FROM tblDevices, tblPortMain, tblPortStatus"
    " WHERE tblDevices.Device_ID = tblPortMain.Device_ID AND tblPortMain.Port_ID = tblPortStatus.Port_ID"_L1;

/** What differs between failure and recovery mails. */
struct MailKind {
    QLatin1StringView name;     // for GetEmailSetting
    QLatin1StringView logEnd;
    int reasonColumn;
    int portIdColumn;
};
constexpr MailKind kFailure{ "Failure"_L1, " has failed."_L1, failedMail::Reason, failedMail::PortId };
constexpr MailKind kRecovery{ "Recovery"_L1, " has recovered."_L1, -1, recoveredMail::PortId };

void composeMail(const ResultTable &list, int row, const MailKind &kind, bool useSmtp)
{
    const QString &device = list.at(failedMail::Name, row);
    const QString &port = list.at(failedMail::Port, row);
    const QString reason = kind.reasonColumn >= 0 ? list.at(kind.reasonColumn, row) : u"device recovered"_s;
    const EmailSetting setting = GetEmailSetting(list.at(kind.portIdColumn, row).toInt(), kind.name);
    const QString subject = ExpandTemplate(setting.subject, device, port, reason);
    const QString body = ExpandTemplate(setting.body, device, port, reason) + "\r\n"_L1;
    if (useSmtp)
        QueMail(setting.address, subject, body, device, port);
    WriteLog(device + " port "_L1 + port + kind.logEnd, u"Email"_s, 0, 0);
}

Task<void> composeMails(ResultTable list, const MailKind &kind, bool useSmtp)
{
    const int generation = vbMain().databaseGeneration;
    waits::Slice slice;
    for (int row = 0; row < list.rows(); ++row) {
        co_await slice.breathe();
        if (vbMain().databaseGeneration != generation)
            co_return; // the checks belong to a database that is no longer open
        composeMail(list, row, kind, useSmtp);
    }
}

Task<void> sendNotifications(ResultTable failed, ResultTable recovered)
{
    const bool announce = GetSettingBool(u"MSAgent"_s, u"AnnounceEmail"_s);
    const bool useSmtp = GetSettingBool(u"Mail Options"_s, u"SendUsingSMTP"_s);
    const bool send = GetSettingBool(u"Mail Options"_s, u"SendOnFailure"_s);
    if (!send || (!ArrayHasBounds(failed) && !ArrayHasBounds(recovered)))
        co_return;
    if (announce)
        vbMain().announcer->speak(u"AnnounceEmail"_s);
    vbMain().window->setStatusText(u"Sending Email..."_s);
    co_await composeMails(failed, kFailure, useSmtp);
    co_await composeMails(recovered, kRecovery, useSmtp);
}

} // namespace

// Tokens are replaced one after the other over the whole text: a value that holds a later token is expanded, too.
QString ExpandTemplate(const QString &mask, const QString &device, const QString &port, const QString &reason)
{
    QString text = mask;
    text.replace("<DEVICE>"_L1, device);
    text.replace("<PORT>"_L1, port);
    text.replace("<REASON>"_L1, reason);
    return text.replace("<DATE>"_L1, GeneralDate(Clock::now()));
}

ResultTable GetFailedEmailDevices()
{
    return Trap("GetFailedEmailDevices", [] {
        const int failures = GetSettingInt(u"Mail Options"_s, u"SendOnConsecutiveFailure"_s);
        ResultTable list(failedMail::Count);
        // The counter runs downward while a check fails.
        Recordset rows = db().OpenRecordset(kSelect
                                            + " AND tblPortStatus.Port_Mode = -1 AND tblPortStatus.Port_Icon <> 13"_L1
                                              " AND tblPortStatus.Port_Icon_Flag = "_L1
                                            + QString::number(-qint64(failures))
                                            + " AND tblPortMain.Port_Email_Notify = True"_L1);
        CheckDatabaseErrors();
        for (; !rows.Eof(); rows.MoveNext())
            list.addRow({ SpokenDeviceName(rows), rows.Field(u"Port_Num"_s).text(),
                          rows.Field(u"Port_Last_Error"_s).text(), rows.Field(u"PortID"_s).text() });
        return list;
    });
}

ResultTable GetRecoveredEmailDevices()
{
    return Trap("GetRecoveredEmailDevices", [] {
        ResultTable list(recoveredMail::Count);
        Recordset rows = db().OpenRecordset(kSelect
                                            + " AND tblPortStatus.Port_Mode = 2 AND tblPortStatus.Port_Icon <> 13"_L1
                                              " AND tblPortStatus.Port_Icon_Flag = 1"_L1
                                              " AND tblPortMain.Port_Email_Notify = True"_L1);
        CheckDatabaseErrors();
        for (; !rows.Eof(); rows.MoveNext())
            list.addRow({ SpokenDeviceName(rows), rows.Field(u"Port_Num"_s).text(), rows.Field(u"PortID"_s).text() });
        return list;
    });
}

EmailSetting GetEmailSetting(qint32 Port_ID, const QString &kind)
{
    return Trap("GetEmailSetting", [&] {
        QString address, subject, failure, recovery;
        Recordset rows = db().OpenRecordset("Select Port_ID, Email_Address, Email_Subject, Email_Recovery,"_L1
                                            " Email_Failure FROM tblPortEmailTemplate where Port_ID = "_L1
                                            + QString::number(Port_ID));
        CheckDatabaseErrors();
        if (!rows.Eof()) {
            address = rows.Field(u"Email_Address"_s).text();
            subject = rows.Field(u"Email_Subject"_s).text();
            failure = rows.Field(u"Email_Failure"_s).text();
            recovery = rows.Field(u"Email_Recovery"_s).text();
        }
        if (address.isEmpty() || subject.isEmpty()) {
            address = GetSetting(u"Mail Options"_s, u"MailTo"_s);
            subject = GetSetting(u"Mail Options"_s, u"MailSubject"_s);
            failure = GetSetting(u"Mail Options"_s, u"MailFailedMask"_s);
            recovery = GetSetting(u"Mail Options"_s, u"MailRecoveredMask"_s);
        }
        return EmailSetting{ address, subject, kind == "Failure"_L1 ? failure : recovery };
    });
}

void QueMail(const QString &recipient, const QString &subject, const QString &body, const QString &device,
             const QString &port)
{
    Trap("QueMail", [&] {
        // The texts go in as they are: one that holds an apostrophe is refused by the database.
        db().Execute("INSERT INTO tblMailQue"_L1
                     "(Device_Name, Device_Port, Mail_To ,Mail_Subject ,Mail_Body)"_L1
                     " VALUES ( '"_L1 + device + "', '"_L1 + port + "', '"_L1 + recipient + "', '"_L1 + subject
                     + "', '"_L1 + body + "');"_L1);
        CheckDatabaseErrors();
    });
}

Task<void> SendEmailNotifications(ResultTable failed, ResultTable recovered)
{
    return Trap("SendEmailNotifications", sendNotifications(failed, recovered));
}
