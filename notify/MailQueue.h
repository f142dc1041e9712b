#pragma once

#include "core/ResultTable.h"
#include "core/Task.h"

#include <QString>

/** Columns of the lists of checks to be mailed. */
namespace failedMail {
enum Column { Name, Port, Reason, PortId, Count };
}
namespace recoveredMail {
enum Column { Name, Port, PortId, Count };
}

/** A mail template with its tokens filled in: "<DEVICE>", "<PORT>", "<REASON>" and "<DATE>", the present time. */
QString ExpandTemplate(const QString &mask, const QString &device, const QString &port, const QString &reason);

/** Recipient and templates of one mail. */
struct EmailSetting {
    QString address;
    QString subject;
    QString body;
    bool operator==(const EmailSetting &) const = default;
};

/** Checks whose failure has lasted exactly "SendOnConsecutiveFailure" checks, 4 columns × n rows of text. */
ResultTable GetFailedEmailDevices();
/** Checks that have recovered from a failure that was mailed, 3 columns × n rows of text. */
ResultTable GetRecoveredEmailDevices();
/** The templates of a check for kind "Failure" or "Recovery"; those of the settings when the check has none, or one
    without address or subject. */
EmailSetting GetEmailSetting(qint32 Port_ID, const QString &kind);
/** Puts one mail into tblMailQue. */
void QueMail(const QString &recipient, const QString &subject, const QString &body, const QString &device,
             const QString &port);
/** Composes, queues and logs all mails of one cycle. */
Task<void> SendEmailNotifications(ResultTable failed, ResultTable recovered);
