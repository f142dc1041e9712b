#include "core/Settings.h"
#include "core/vbMain.h"
#include "tests/world/World.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"(no file)"_s;
}

} // namespace

TEST(WriteLog, OneCallReachesListDatabaseAndFile)
{
    struct Case {
        const char *type;
        int icon;
    };
    const Case cases[] = { { "Message", 2 },   { "Email", 2 },       { "Warning", 6 }, { "SMTP Error", 6 },
                           { "Failure", 4 },   { "Information", 5 }, { "Recovered", 3 },
                           { "Debug", 1 },     { "message", 1 } };
    World world;
    QString expectedLog;
    const QString date = GeneralDate(world.now);
    for (const Case &c : cases) {
        const QString type = QString::fromLatin1(c.type);
        WriteLog(u"  spaced out "_s, type, 3, 4);
        EXPECT_EQ(world.window.take(), QStringList{ u"event %1 %2:   spaced out "_s.arg(c.icon).arg(type) }) << c.type;
        expectedLog += date + u' ' + type + "...spaced out\n"_L1;
        EXPECT_EQ(world.rows(u"Select Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event FROM tblEventLog"_s)
                      .last(),
                  u"3|4|%1|%2|%3|  spaced out "_s.arg(QString::number(c.icon), date, type))
            << c.type;
    }
    EXPECT_EQ(contents(world.logFile()), expectedLog);
}

TEST(WriteLog, AMissingFileIsAnnouncedAndReplaced)
{
    World world;
    QFile::remove(world.logFile());
    SaveSetting(u"Options"_s, u"LogFile"_s, world.path(u"elsewhere.txt"_s));
    WriteLog(u"one"_s, u"Message"_s, 0, 0);
    WriteLog(u"two"_s, u"Message"_s, 0, 0);
    EXPECT_EQ(world.announcer.log, QStringList{ u"speak LogFileNotFound"_s });
    EXPECT_EQ(GetSetting(u"Options"_s, u"LogFile"_s), world.logFile());
    EXPECT_EQ(contents(world.logFile()).count(u'\n'), 2);

    SaveSetting(u"Options"_s, u"LogFailures"_s, u"0"_s);
    QFile::remove(world.logFile());
    world.announcer.log.clear();
    WriteLog(u"three"_s, u"Message"_s, 0, 0);
    WriteLog(u"four"_s, u"Message"_s, 0, 0);
    EXPECT_EQ(world.announcer.log.size(), 2) << "without a file every call announces it";
    EXPECT_FALSE(QFile::exists(world.logFile()));
    EXPECT_EQ(world.rows(u"Select Event FROM tblEventLog"_s).size(), 4);
}

TEST(WriteLog, FaultsEndTheProgramUnderTheRightName)
{
    World world;
    world.dialogs.expect(u"An error has occured in the DBRecordEvent subroutine.\r\n\r\nError Number: \t3075\r\n"_s);
    EXPECT_THROW(WriteLog(u"O'Brien"_s, u"Message"_s, 0, 0), ProgramEnded);

    UseDatabase(dao::OpenDatabase(vbMain().databasePath, true), vbMain().databasePath);
    QFile::remove(world.logFile());
    ASSERT_TRUE(QDir(world.folder.path()).mkdir(u"log.txt"_s));
    world.dialogs.expect(u"An error has occured in the WriteLog subroutine.\r\n\r\nError Number: \t75\r\n"_s);
    EXPECT_THROW(WriteLog(u"x"_s, u"Message"_s, 0, 0), ProgramEnded);
}

TEST(ErrorHandler, ApologisesShowsOneBoxUnloadsAndEnds)
{
    World world;
    world.dialogs.expect(QString());
    // An error inside the handler is ignored.
    world.window.onUnload = [] { ErrorHandler(5, u"inner"_s, "inner"); };
    try {
        ErrorHandler(-7, QString(), "Device_Add");
        ADD_FAILURE() << "returned";
    } catch (const ProgramEnded &end) {
        EXPECT_EQ(end.exitCode, 1);
    }
    EXPECT_EQ(world.announcer.log, QStringList{ u"line Oh crap!  A very bad thing just happened!|Sad||"_s });
    EXPECT_EQ(world.window.take(), QStringList{ u"unload"_s });
    ASSERT_EQ(world.dialogs.shown.size(), 1);
    const ScriptedDialogs::Box box = world.dialogs.shown.first();
    EXPECT_EQ(box.caption, u"Kavro_2000 - Unexpected Error!"_s);
    EXPECT_EQ(box.icon, Dialogs::Critical);
    EXPECT_EQ(box.text,
              u"Kavro_2000 will be shut down due to an error in the program.\r\n\r\n"
              "An error has occured in the Device_Add subroutine.\r\n\r\n"
              "Error Number: \t-7\r\nError Description: \tUnknown error\r\n\r\n"
              "If you can duplicate this error then report it to support@kavro.example \r\n"
              "with a complete description of the error.  Your cooperation is appreciated."_s);
}
