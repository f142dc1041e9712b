#include "notify/EventScript.h"

#include "tests/world/SimulatedWaits.h"
#include "tests/world/World.h"

#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct ScriptWorld : World {
    SimulatedWaits time;
    EventScript script{ 300 };

    void store(const QString &text)
    {
        sql(u"DELETE * FROM tblScripts"_s);
        dao::Recordset rows = db().OpenRecordset(u"tblScripts"_s);
        rows.AddNew();
        rows.Set(u"Script_Event"_s, u"CheckFinish"_s);
        rows.Set(u"Script"_s, text);
        rows.Update();
    }
    QStringList run()
    {
        window.take();
        Task<void> task = script.ExecuteScript(u"CheckFinish"_s);
        task.start();
        EXPECT_TRUE(time.runUntil([&] { return !task.isRunning(); }));
        task.result();
        return window.take();
    }
};

const QString kRunning = u"status Executing User Script (CheckFinish)..."_s;

} // namespace

TEST(EventScript, WithoutAScriptNothingHappens)
{
    ScriptWorld world;
    EXPECT_EQ(world.run(), QStringList());
}

TEST(EventScript, TheSameScriptRunsAtEveryCycle)
{
    ScriptWorld world;
    const QString file = world.path(u"out.txt"_s);
    world.store(u"Const kAppending = 8\r\nClass Writer\r\nSub Add(name)\r\n"
                "With CreateObject(\"Scripting.FileSystemObject\").OpenTextFile(name, kAppending, True)\r\n"
                ".WriteLine \"again\"\r\n.Close\r\nEnd With\r\nEnd Sub\r\nEnd Class\r\n"
                "Sub Main\r\nDim w : Set w = New Writer\r\nw.Add \"%1\"\r\nEnd Sub\r\n"_s.arg(file));
    for (int cycle = 0; cycle < 3; ++cycle)
        EXPECT_EQ(world.run(), QStringList{ kRunning });
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(written.readAll()).count("again"_L1), 3);
}

TEST(EventScript, ErrorsAreLoggedByTheirNumberAndEndNothing)
{
    struct Case {
        const char *name, *script, *logged;
    };
    const Case cases[] = {
        { "run time", "Sub Main\r\nx = 1 / 0\r\nEnd Sub", "11" },
        { "syntax", "Sub Main\r\nx = (1\r\nEnd Sub", "1006" },
        { "no Main", "Sub Other\r\nEnd Sub", "5" },
        { "no user interface", "Sub Main\r\nMsgBox 1\r\nEnd Sub", "70" },
        { "endless", "Sub Main\r\nDo\r\nLoop\r\nEnd Sub", "timed out." },
    };
    for (const Case &c : cases) {
        ScriptWorld world;
        world.store(QString::fromLatin1(c.script));
        QElapsedTimer time;
        time.start();
        EXPECT_EQ(world.run(), (QStringList{ kRunning, u"event 6 Warning: User script error:  "_s
                                                 + QString::fromLatin1(c.logged) }))
            << c.name;
        EXPECT_LT(time.elapsed(), 3000) << c.name;
    }
}

TEST(EventScript, AnApostropheInTheEventEndsTheProgram)
{
    ScriptWorld world;
    world.dialogs.expect(u"An error has occured in the ExecuteScript subroutine.\r\n\r\nError Number: \t3075"_s);
    Task<void> task = world.script.ExecuteScript(u"Check'Finish"_s);
    task.start();
    EXPECT_THROW(task.result(), ProgramEnded);
}
