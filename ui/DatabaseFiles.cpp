#include "ui/DatabaseFiles.h"

#include "core/Announcer.h"
#include "core/DatabaseSchema.h"
#include "core/Dialogs.h"
#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/Trap.h"
#include "core/Waits.h"
#include "core/vbMain.h"
#include "monitor/EventExpiry.h"
#include "platform/dao/FileSteps.h"
#include "platform/desktop/FilePickers.h"
#include "ui/DeviceTree.h"
#include "ui/EventList.h"
#include "ui/JetConversion.h"
#include "ui/StatusList.h"

#include <QFileInfo>
#include <QMainWindow>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPagesAtOnce = 64;
constexpr int kStatusSeenMs = 60; // the status bar paints every 30 ms

desktop::FileQuestion fileQuestion(const QString &title)
{
    return { title, ProgramFolder(), u"defaultDB.mdb"_s, u"mdb (*.mdb)|*.mdb"_s };
}

bool confirmed(const QString &question)
{
    return vbMain().dialogs->messageBox(question, AppTitle(), Dialogs::Question, Dialogs::YesNo)
        == Dialogs::AnswerYes;
}

void inform(const QString &text)
{
    vbMain().dialogs->messageBox(text, AppTitle(), Dialogs::Information, Dialogs::Ok);
}

/** What went wrong while the database in use stayed, or came back, as it was. */
void warn(const QString &what, const VbError &reason, const QString &consequence)
{
    vbMain().dialogs->messageBox(what + "\r\n\r\n"_L1 + reason.description() + "\r\n\r\n"_L1 + consequence, AppTitle(),
        Dialogs::Exclamation, Dialogs::Ok);
}

bool isOpenDatabase(const QString &path) { return dao::files::isSame(path, vbMain().databasePath); }

QString fileName(const QString &path) { return QFileInfo(path).fileName(); }

/** Opens a file that has everything the program asks of a database: found out later it would end the program. */
std::unique_ptr<dao::Database> openUsable(const QString &path, bool exclusive)
{
    auto opened = dao::OpenDatabase(path, exclusive);
    schema::require(*opened);
    opened->Execute(u"UPDATE tblPortStatus SET Port_Dummy = 0 WHERE Port_ID IS NULL AND Port_ID IS NOT NULL"_s,
        dao::dbFailOnError);
    opened->CommitPending();
    return opened;
}

/** The database in use, to come back to. */
struct InUse {
    QString path = vbMain().databasePath;
    bool exclusive = db().IsExclusive();

    /** Opens it again if it was closed. An error leaves the program without a database. */
    void ensureOpen() const
    {
        if (vbMain().db && vbMain().db->IsOpen())
            return;
        vbMain().db.reset();
        UseDatabase(dao::OpenDatabase(path, exclusive), path);
    }
};

/** Goes on with another database once everything is written into the former one. */
void changeTo(std::unique_ptr<dao::Database> opened, const QString &path)
{
    db().CommitPending();
    db().Close();
    UseDatabase(std::move(opened), path);
}

/** The file that a compaction is written to first. The open database itself may bear its name. */
QString temporaryFile()
{
    const QString usual = ProgramFolder() + "/Temp.mdb"_L1;
    return isOpenDatabase(usual) ? ProgramFolder() + "/Temp2.mdb"_L1 : usual;
}

} // namespace

void DatabaseFiles::announceNew()
{
    try {
        vbMain().announcer->speak(u"CreateNewDB"_s);
    } catch (const VbError &) {
        // A command that does nothing but speak is no reason to end the program.
    }
}

void DatabaseFiles::mnuFileOpen() { run(Trap("mnuFileOpen_Click", open())); }

void DatabaseFiles::mnuFileSaveAs() { run(Trap("mnuFileSaveAs_Click", saveAs())); }

void DatabaseFiles::mnuCompactDatabase() { run(Trap("CompactDatabase", CompactDatabase())); }

void DatabaseFiles::run(Task<void> command)
{
    if (isBusy())
        return;
    m_running = std::move(command);
    m_running.start();
    if (!m_running.isRunning())
        m_running.result();
}

// Open

Task<void> DatabaseFiles::open()
{
    QString path = desktop::openFile(&m_parts.window, fileQuestion(u"Kavro 2.0 - Open Database"_s));
    if (path.isEmpty())
        co_return;
    if (!QFileInfo::exists(path)) {
        inform(u"The Database name you provided is not valid."_s);
        co_return;
    }
    const bool again = isOpenDatabase(path);
    if (again
        && !confirmed(u"The file you specified is already loaded.  "
                      "Re-loading the database will reset the counters.  Continue with re-load."_s))
        co_return;
    if (!again && needsConversion(path))
        path = co_await convertJetFile(m_parts.window, path);
    if (path.isEmpty())
        co_return;
    if (again ? reload(path) : exchange(path))
        co_await showOpened(path);
}

/** Opens the new file before the old one is closed, so that there is something to go on with if it cannot be. */
bool DatabaseFiles::exchange(const QString &path)
{
    const bool exclusive = GetSettingBool(u"Options"_s, u"DBExclusive"_s);
    const InUse former;
    try {
        changeTo(openUsable(path, exclusive), path);
        return true;
    } catch (const VbError &error) {
        former.ensureOpen();
        warn(u"The database %1 could not be opened."_s.arg(fileName(path)), error,
            u"%1 stays open."_s.arg(fileName(former.path)));
        return false;
    }
}

/** A file cannot be opened exclusively twice, so here the old opening has to go first. */
bool DatabaseFiles::reload(const QString &path)
{
    const bool exclusive = GetSettingBool(u"Options"_s, u"DBExclusive"_s);
    const InUse former;
    try {
        db().CommitPending();
        db().Close();
        UseDatabase(openUsable(path, exclusive), path);
        return true;
    } catch (const VbError &error) {
        former.ensureOpen();
        warn(u"The database %1 could not be loaded again."_s.arg(fileName(path)), error,
            u"It is open as it was before."_s);
        return false;
    }
}

Task<void> DatabaseFiles::showOpened(QString path)
{
    // Start-up reads the key as "Database"; the store does not tell the two apart.
    SaveSetting(u"Startup"_s, u"DataBase"_s, path);
    showCaption(path);
    co_await waits::Yield();
    m_parts.tree.Load_TreeView();
    m_parts.tree.selectNode(NodeLevel::Root, u"Root"_s);
    m_parts.list.Update_Groups();
    CleanEventLog();
    m_parts.events.Load_EventLog();
}

void DatabaseFiles::showCaption(const QString &path)
{
    m_parts.window.setWindowTitle(AppTitle() + " - "_L1 + fileName(path));
}

// Save As

Task<void> DatabaseFiles::saveAs()
{
    const QString path = desktop::saveFile(&m_parts.window, fileQuestion(u"Kavro 2.0 - Save Database As..."_s));
    if (path.isEmpty())
        co_return;
    if (isOpenDatabase(path)) {
        inform(u"File in use.  Please specify a different file name."_s);
        co_return;
    }
    if (QFileInfo::exists(path) && !confirmed(u"Overwrite existing file?"_s))
        co_return;
    const bool exclusive = GetSettingBool(u"Options"_s, u"DBExclusive"_s);
    const InUse former;
    try {
        waits::Slice slice;
        dao::Backup copy(db(), path);
        while (!copy.step(kPagesAtOnce))
            co_await slice.breathe();
        copy.finish();
        changeTo(dao::OpenDatabase(path, exclusive), path);
        showCaption(path);
    } catch (const VbError &error) {
        former.ensureOpen();
        warn(u"The database could not be saved as %1."_s.arg(fileName(path)), error,
            u"%1 stays open."_s.arg(fileName(former.path)));
    }
}

// Compact

Task<void> DatabaseFiles::CompactDatabase()
{
    if (!confirmed(u"You are about to compact the database.\r\nContinue with database compaction?"_s))
        co_return;
    MainWindow &window = *vbMain().window;
    window.setStatusText(u"Compacting Database.  Please wait..."_s);
    co_await waits::Pause(kStatusSeenMs);
    const InUse former;
    try {
        const QString temporary = temporaryFile();
        dao::files::removeDatabase(temporary);
        db().CommitPending();
        db().Close();
        dao::CompactInPlace(former.path, temporary);
        former.ensureOpen();
    } catch (const VbError &error) {
        window.setStatusText(u"Ready"_s);
        former.ensureOpen();
        warn(u"The database could not be compacted."_s, error, u"It is open again."_s);
        co_return;
    }
    window.setStatusText(u"Ready"_s);
    vbMain().announcer->speak(u"CompactDatabase"_s);
    WriteLog(u"Database compacted."_s, u"Information"_s, 0, 0);
}
