#pragma once

#include <QDate>

/** Deletes the events that are older than EventLogHistory days. */
void CleanEventLog();

/** Runs CleanEventLog when the last run is more than one day boundary ago (so every second calendar day). */
class EventExpiry
{
public:
    void Check_EventLog_Expiry();

private:
    QDate m_lastCheck{ 1899, 12, 30 }; // the zero date: the first check always runs
};
