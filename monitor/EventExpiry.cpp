#include "monitor/EventExpiry.h"

#include "core/Clock.h"
#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/Trap.h"

using namespace Qt::StringLiterals;

void CleanEventLog()
{
    Trap("CleanEventLog", [] {
        const int days = GetSettingInt(u"Options"_s, u"EventLogHistory"_s);
        QString limit = GeneralDate(Clock::now().addDays(-qint64(days)));
        // A date text that separates with dots would not be read as a date literal.
        limit.replace(u'.', u'/');
        db().Execute("DELETE *"_L1
                     " FROM tblEventLog"_L1
                     " WHERE Event_Date < #"_L1 + limit + u'#');
        CheckDatabaseErrors();
    });
}

void EventExpiry::Check_EventLog_Expiry()
{
    Trap("Check_EventLog_Expiry", [this] {
        const QDate today = Clock::now().date();
        if (m_lastCheck.daysTo(today) <= 1)
            return;
        CleanEventLog();
        vbMain().window->Load_EventLog();
        WriteLog(u"Event log checked for expired events."_s, u"Debug"_s, 0, 0);
        m_lastCheck = today;
    });
}
