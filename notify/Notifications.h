#pragma once

#include "core/AfterCheck.h"
#include "notify/EventScript.h"
#include "notify/SmtpDelivery.h"

/** The after-cycle work of this room: page, mail, delivery and script. */
class Notifications : public AfterCheck
{
public:
    Task<void> CreateHTMLOutput(ResultTable failedNow, ResultTable recoveredNow) override;
    Task<void> SendEmailNotifications(QSet<QString> checked) override;
    Task<void> ProcessMailQue() override;
    Task<void> ExecuteScript(QString event) override;

private:
    SmtpDelivery m_delivery;
    EventScript m_script;
};
