#pragma once

#include "core/ResultTable.h"
#include "core/Task.h"

#include <QString>

/** The after-cycle work that other rooms do: page, mail, delivery, script. CheckFinish calls them in its order;
    a build without one of them leaves its step out by not overriding it. */
class AfterCheck
{
public:
    virtual ~AfterCheck() = default;

    /** Rewrites the HTML status page when the page is switched on. */
    virtual Task<void> CreateHTMLOutput() { co_return; }
    /** Selects the checks to be mailed and queues their mails. */
    virtual Task<void> SendEmailNotifications() { co_return; }
    /** Sends the queued mails. */
    virtual Task<void> ProcessMailQue() { co_return; }
    /** Runs the user script of an event. */
    virtual Task<void> ExecuteScript(QString event)
    {
        Q_UNUSED(event)
        co_return;
    }
};
