#include "core/Main.h"

#include "core/Announcer.h"
#include "core/Dialogs.h"
#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/Trap.h"
#include "core/Waits.h"
#include "core/vbMain.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QString defaultDatabase() { return ProgramFolder() + "/defaultDB.mdb"_L1; }

void warn(const QString &text, Dialogs::Icon icon)
{
    vbMain().dialogs->messageBox(text, AppTitle(), icon, Dialogs::Ok);
}

/** The database to open. One that the user chose and that is gone gives way to the default one. */
QString chooseDatabase()
{
    const QString chosen = nativePath(GetSetting(u"Startup"_s, u"Database"_s));
    if (QFileInfo::exists(chosen))
        return chosen;
    if (!QFileInfo::exists(defaultDatabase())) {
        // Goes on all the same: opening then fails and ends the program with the reason.
        warn(u"Unable to load the database you specified or the default database."_s + "\r\n"_L1
                 + "Try un-installing and re-installing the program."_L1,
             Dialogs::Critical);
        return defaultDatabase();
    }
    warn(u"The default database will be loaded because the user specified database does not exist."_s,
         Dialogs::Exclamation);
    SaveSetting(u"Startup"_s, u"Database"_s, defaultDatabase());
    return defaultDatabase();
}

void openDatabase()
{
    const QString path = chooseDatabase();
    UseDatabase(dao::OpenDatabase(path, GetSettingBool(u"Options"_s, u"DBExclusive"_s)), path);
    waits::setAboutToWait([] {
        if (vbMain().db)
            vbMain().db->CommitPending();
    });
}

float twips(const QString &key) { return float(GetSettingNumber(u"Settings"_s, key)); }

Task<void> start(StartFactory &factory, QString arguments)
{
    if (factory.anotherCopyRuns()) {
        warn(AppTitle() + " is already loaded.  Unable to load program again."_L1, Dialogs::Exclamation);
        EndProgram(0);
    }
    const bool atOnce = arguments.contains("-A"_L1);
    if (!atOnce && GetSettingBool(u"Options"_s, u"ShowSplash"_s))
        factory.showSplash();
    co_await waits::Pause(500);
    co_await waits::Yield();

    openDatabase();
    factory.createMainWindow();
    factory.setSplashStatus(u"Loading Microsoft Agent"_s);
    co_await waits::Yield();
    vbMain().announcer->LoadMSAgent();
    co_await factory.loadMainWindow();
    factory.setCaption(QFileInfo(vbMain().databasePath).fileName() + " - "_L1 + AppTitle());
    factory.placeMainWindow(twips(u"MainLeft"_s), twips(u"MainTop"_s), twips(u"MainWidth"_s), twips(u"MainHeight"_s));
    vbMain().startFlag = 1;
    factory.showMainWindow();
    if (atOnce) {
        co_await waits::Yield();
        co_await waits::Pause(1000);
        factory.startMonitoring();
    }
    factory.unloadSplash();
    WriteLog(u"Program Started."_s, u"Information"_s, 0, 0);
}

} // namespace

Task<void> Main(StartFactory &factory, QString arguments)
{
    return Trap("Main", start(factory, std::move(arguments)));
}
