#pragma once

#include "core/ResultTable.h"
#include "core/Task.h"

#include <QSet>
#include <QString>

/** The after-cycle work that other rooms do: page, mail, delivery, script. CheckFinish calls them in its order;
    a build without one of them leaves its step out by not overriding it. */
class AfterCheck
{
public:
    virtual ~AfterCheck() = default;

    /** Rewrites the HTML status page when the page is switched on. The lists are those of the announcement:
        failedNow has 6 columns, recoveredNow 5. */
    virtual Task<void> CreateHTMLOutput(ResultTable failedNow, ResultTable recoveredNow)
    {
        Q_UNUSED(failedNow)
        Q_UNUSED(recoveredNow)
        co_return;
    }
    /** Selects the checks to be mailed and queues their mails. checked holds the Port_IDs whose results this cycle
        has written; what an earlier cycle left behind has been mailed already. */
    virtual Task<void> SendEmailNotifications(QSet<QString> checked)
    {
        Q_UNUSED(checked)
        co_return;
    }
    /** Sends the queued mails. */
    virtual Task<void> ProcessMailQue() { co_return; }
    /** Runs the user script of an event. */
    virtual Task<void> ExecuteScript(QString event)
    {
        Q_UNUSED(event)
        co_return;
    }
};
