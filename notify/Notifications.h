#pragma once

#include "core/AfterCheck.h"
#include "notify/SmtpDelivery.h"

/** The after-cycle work of this room: page, mail and delivery. */
class Notifications : public AfterCheck
{
public:
    Task<void> CreateHTMLOutput(ResultTable failedNow, ResultTable recoveredNow) override;
    Task<void> SendEmailNotifications(QSet<QString> checked) override;
    Task<void> ProcessMailQue() override;

private:
    SmtpDelivery m_delivery;
};
