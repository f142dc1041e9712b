#include "notify/Notifications.h"

#include "notify/MailQueue.h"
#include "notify/vbHTML.h"

Task<void> Notifications::CreateHTMLOutput(ResultTable failedNow, ResultTable recoveredNow)
{
    return ::CreateHTMLOutput(failedNow, recoveredNow);
}

Task<void> Notifications::SendEmailNotifications(QSet<QString> checked)
{
    const ResultTable failedNow = GetFailedEmailDevices().rowsWith(failedMail::PortId, checked);
    const ResultTable recoveredNow = GetRecoveredEmailDevices().rowsWith(recoveredMail::PortId, checked);
    co_await ::SendEmailNotifications(failedNow, recoveredNow);
}

Task<void> Notifications::ProcessMailQue() { return m_delivery.ProcessMailQue(); }

Task<void> Notifications::ExecuteScript(QString event) { return m_script.ExecuteScript(event); }
