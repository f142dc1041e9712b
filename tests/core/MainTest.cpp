#include "core/Main.h"

#include "core/Settings.h"
#include "tests/world/SimulatedWaits.h"
#include "tests/world/World.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/** Records what start-up asks for, with the simulated time. */
struct RecordingFactory : StartFactory {
    World &world;
    SimulatedWaits &time;
    bool otherCopy = false;
    QStringList log;

    RecordingFactory(World &w, SimulatedWaits &t) : world(w), time(t) {}
    void note(const QString &what) { log << QString::number(time.now()) + u' ' + what; }

    bool anotherCopyRuns() override { return otherCopy; }
    void showSplash() override { note(u"splash"_s); }
    void setSplashStatus(const QString &text) override { note(text); }
    void unloadSplash() override { note(u"unload splash"_s); }
    void createMainWindow() override { note("create with "_L1 + vbMain().db->Name().section(u'/', -1)); }
    Task<void> loadMainWindow() override
    {
        co_await waits::Yield();
        note(u"load"_s);
    }
    void setCaption(const QString &caption) override { note(caption); }
    void placeMainWindow(float left, float top, float width, float height) override
    {
        note(u"place %1 %2 %3 %4"_s.arg(left).arg(top).arg(width).arg(height));
    }
    void showMainWindow() override { note(u"show, flag %1"_s.arg(vbMain().startFlag)); }
    void startMonitoring() override { note(u"monitor"_s); }
};

QStringList startUp(World &world, const QString &arguments, bool otherCopy = false)
{
    SimulatedWaits time;
    RecordingFactory factory(world, time);
    factory.otherCopy = otherCopy;
    vbMain().db.reset();
    Task<void> task = Main(factory, arguments);
    task.start();
    EXPECT_TRUE(time.runUntil([&] { return !task.isRunning(); }));
    try {
        task.result();
    } catch (const ProgramEnded &end) {
        factory.log << u"end %1"_s.arg(end.exitCode);
    }
    return factory.log;
}

} // namespace

TEST(Main, Order)
{
    World world;
    EXPECT_EQ(startUp(world, QString()),
              (QStringList{ u"0 splash"_s, u"500 create with defaultDB.mdb"_s, u"500 Loading Microsoft Agent"_s,
                            u"500 load"_s, u"500 defaultDB.mdb - Kavro_2000"_s, u"500 place 1000 1000 6500 6500"_s,
                            u"500 show, flag 1"_s, u"500 unload splash"_s }));
    EXPECT_EQ(world.announcer.log, QStringList{ u"load"_s });
    EXPECT_EQ(world.window.take(), QStringList{ u"event 5 Information: Program Started."_s });
}

TEST(Main, DashAStartsWithoutSplashAndMonitorsASecondAfterTheWindow)
{
    World world;
    SaveSetting(u"Settings"_s, u"MainLeft"_s, u"1500.5"_s);
    const QStringList log = startUp(world, u"--quiet -A"_s);
    EXPECT_FALSE(log.contains(u"0 splash"_s));
    EXPECT_TRUE(log.contains(u"500 place 1500.5 1000 6500 6500"_s));
    EXPECT_EQ(log.mid(log.size() - 3), (QStringList{ u"500 show, flag 1"_s, u"1500 monitor"_s, u"1500 unload splash"_s }));
    EXPECT_TRUE(startUp(world, u"-a"_s).contains(u"0 splash"_s)) << "the switch has a capital A";
}

TEST(Main, SecondCopyOpensNothing)
{
    World world;
    world.dialogs.expect(u"Kavro_2000 is already loaded.  Unable to load program again."_s);
    EXPECT_EQ(startUp(world, QString(), true), QStringList{ u"end 0"_s });
    EXPECT_EQ(world.dialogs.shown.first().icon, Dialogs::Exclamation);
    EXPECT_EQ(vbMain().db, nullptr);
}

TEST(Main, MissingDatabaseFallsBackOnceThenSilently)
{
    World world;
    SaveSetting(u"Startup"_s, u"Database"_s, u"/nowhere/gone.mdb"_s);
    world.dialogs.expect(u"The default database will be loaded because the user specified database does not exist."_s);
    EXPECT_TRUE(startUp(world, QString()).contains(u"500 create with defaultDB.mdb"_s));
    EXPECT_EQ(GetSetting(u"Startup"_s, u"Database"_s), world.path(u"defaultDB.mdb"_s));
    EXPECT_TRUE(startUp(world, QString()).contains(u"500 show, flag 1"_s));
}

TEST(Main, WhatCannotBeOpenedEndsTheProgram)
{
    World world;
    QFile::remove(world.path(u"defaultDB.mdb"_s));
    world.dialogs.expect(u"Unable to load the database you specified or the default database.\r\n"
                         "Try un-installing and re-installing the program."_s);
    world.dialogs.expect(u"An error has occured in the Main subroutine.\r\n\r\nError Number: \t3024\r\n"_s);
    EXPECT_EQ(startUp(world, QString()).last(), u"end 1"_s);

    World::makeDatabase(world.path(u"defaultDB.mdb"_s));
    const auto elsewhere = dao::OpenDatabase(world.path(u"defaultDB.mdb"_s), true);
    world.dialogs.expect(u"Error Number: \t3356\r\n"_s);
    EXPECT_EQ(startUp(world, QString()).last(), u"end 1"_s);
}
