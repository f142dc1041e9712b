#pragma once

#include "core/ResultTable.h"
#include "platform/dao/Dao.h"

#include <QDateTime>
#include <QString>
#include <functional>
#include <memory>

class AfterCheck;
class Announcer;
class Dialogs;
class MainWindow;

/** The application's title; it also keys the settings. */
inline constexpr char16_t kAppTitle[] = u"Kavro_2000";
QString AppTitle();
QString AppVersion(); // "2.0.0"

/** Process-wide state, kept for the whole run. */
struct VbMain {
    std::unique_ptr<dao::Database> db;
    QString databasePath;
    int databaseGeneration = 0; // counts openings, so that a cycle notices that it began on another file
    bool monitoring = false;    // the monitoring flag
    qint16 minutesLeft = 0;     // until the next check; 0: at the next tick
    qint16 startFlag = 0;       // 1 once the main window has been placed
    MainWindow *window = nullptr;
    Announcer *announcer = nullptr;
    Dialogs *dialogs = nullptr;
    AfterCheck *afterCheck = nullptr;
};
VbMain &vbMain();

/** Makes an opened database the program's one; the former one is closed. */
void UseDatabase(std::unique_ptr<dao::Database> opened, const QString &path);
/** The open database; throws VbError 91 when none is open. */
dao::Database &db();

/** Folder of the executable when it is writable (a portable folder), else the per-user data folder. No trailing separator. */
QString ProgramFolder();
/** For tests and the start-up: replaces the program folder. */
void setProgramFolder(const QString &folder);
/** A path as users or old settings give it, with the platform's separators. */
QString nativePath(const QString &path);

/** The system locale's short date and long time; the one form for list, log, mail and page. */
QString GeneralDate(const QDateTime &when);

/** Records one event: event list, tblEventLog, log file. The only way to record an event.
    Device and port id 0: the event concerns none. */
void WriteLog(const QString &Message, const QString &MsgType, qint32 DeviceID, qint32 PortID);
/** Inserts one tblEventLog row. WriteLog is its only caller. */
void DBRecordEvent(const QDateTime &EventDate, const QString &EventType, const QString &EventText, qint32 DeviceID,
                   qint32 PortID, qint16 EventIcon);
/** Reports an unexpected error through the announcer and one critical box, unloads the window and ends the program. */
[[noreturn]] void ErrorHandler(long ErrNumber, const QString &ErrDescription, const char *ProcName);
/** Throws the last error of the database engine's collection, if there is one: the second net after a statement. */
void CheckDatabaseErrors();
/** Opens a file or address with the desktop's "Open". False when there is nothing that could even try. */
bool ShellOpen(const QString &FilePath);

/** Thrown by a test's hook in place of ending the process; no trap reports it again. */
struct ProgramEnded {
    int exitCode = 0;
};
/** What "end the program" does; empty: leave the process. For tests. */
void setEndProgramHook(std::function<void(int)> hook);
[[noreturn]] void EndProgram(int exitCode);
