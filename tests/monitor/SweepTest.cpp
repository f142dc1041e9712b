#include "monitor/CheckCycle.h"

#include "core/Settings.h"
#include "tests/world/SimulatedWaits.h"
#include "tests/world/World.h"

#include <QTcpServer>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString kStates = u"Select Port_ID, Port_Status, Port_Last_Error, Port_Success, Port_Failure, Port_Mode,"
                        " Port_Icon, Port_Icon_Flag FROM tblPortStatus ORDER BY Port_ID"_s;

/** Three devices with a ping, an answering and a refusing port each; one check has failed before. */
struct SweepWorld : World {
    QTcpServer server;
    int group = 0, firstDevice = 0, firstPort = 0;
    QString otherFile = path(u"other.mdb"_s);
    CheckCycle cycle;
    SimulatedWaits time;
    int cycles = 0; // begun

    SweepWorld()
    {
        server.listen(QHostAddress::Any);
        QTcpServer gone;
        gone.listen(QHostAddress::Any);
        SaveSetting(u"Options"_s, u"PortSockets"_s, u"2"_s);
        SaveSetting(u"Options"_s, u"PingTimeOut"_s, u"300"_s);
        group = addGroup(u"g"_s);
        for (int i = 1; i <= 3; ++i) {
            const int device = addDevice(group, u"127.0.0.%1"_s.arg(i));
            const int ping = addCheck(device, u"Ping"_s);
            addCheck(device, QString::number(server.serverPort()));
            addCheck(device, QString::number(gone.serverPort()));
            if (i == 1)
                firstDevice = device, firstPort = ping;
        }
        dao::CompactDatabase(copyOfOpen(), otherFile);
        cycle.loadControls();
    }
    ~SweepWorld() { cycle.unloadControls(); }

    /** Compacting needs a closed file. */
    QString copyOfOpen()
    {
        const QString file = vbMain().databasePath;
        vbMain().db->Close();
        const QString copy = path(u"copy.mdb"_s);
        QFile::copy(file, copy);
        UseDatabase(dao::OpenDatabase(file, true), file);
        return copy;
    }

    int cyclesBegun() { return int(window.log.count(u"tip Kavro_2000 - Check In Progress."_s)); }

    /** Lets one whole cycle run; false when it did not end. */
    bool runCycle(const std::function<bool()> &ended)
    {
        cycle.Monitor_Initialize();
        return time.runUntil([&] { return cycle.checkInProgress() || ended(); })
            && time.runUntil([&] { return !cycle.checkInProgress() || ended(); });
    }
};

/** Something that happens to a running cycle. keepsRunning: the cycle is expected to come to its end. */
struct Disturbance {
    const char *name;
    std::function<void(SweepWorld &)> happen;
    bool stops = false;
    bool closes = false;
};

const Disturbance kDisturbances[] = {
    { "stop", [](SweepWorld &w) { w.cycle.Monitor_Stop(); }, true },
    { "stop and start", [](SweepWorld &w) {
         w.cycle.Monitor_Stop();
         w.cycle.Monitor_Initialize();
     } },
    { "a tick", [](SweepWorld &w) { w.cycle.minuteTick(); } },
    { "close", [](SweepWorld &w) {
         w.cycle.Monitor_Stop();
         w.cycle.unloadControls();
     }, true, true },
    { "delete the device", [](SweepWorld &w) {
         w.sql(u"DELETE tblDevices.*, tblPortMain.*, tblPortStatus.*, tblPortEmailTemplate.*"
               " FROM tblDevices LEFT JOIN(tblPortMain LEFT JOIN(tblPortStatus LEFT JOIN tblPortEmailTemplate"
               " ON tblPortStatus.Device_ID = tblPortEmailTemplate.Device_ID)"
               " ON tblPortMain.Device_ID = tblPortStatus.Device_ID)"
               " ON tblDevices.Device_ID = tblPortMain.Device_ID WHERE tblDevices.Device_ID = "_s
               + QString::number(w.firstDevice));
     } },
    { "disable the device", [](SweepWorld &w) {
         w.sql(u"UPDATE tblPortStatus Set Port_Status = 'Disabled', Port_Icon = 13 where Device_ID = "_s
               + QString::number(w.firstDevice));
         w.sql(u"UPDATE tblDevices Set Device_Status = 'Disabled', Device_Icon = 12 where Device_ID = "_s
               + QString::number(w.firstDevice));
     } },
    { "add a device", [](SweepWorld &w) { w.addCheck(w.addDevice(w.group, u"127.0.0.9"_s), u"Ping"_s); } },
    { "reload the tree", [](SweepWorld &w) {
         w.sql(u"UPDATE tblPortStatus SET Port_Mode = 0, Port_Icon_Flag = 0"_s);
     } },
    { "change the numbers of controls", [](SweepWorld &) {
         SaveSetting(u"Options"_s, u"PortSockets"_s, u"1"_s);
         SaveSetting(u"Options"_s, u"PingControls"_s, u"3"_s);
     } },
    { "open another database", [](SweepWorld &w) {
         UseDatabase(dao::OpenDatabase(w.otherFile, true), w.otherFile);
     } },
};

void expectSoundRows(SweepWorld &world, const std::string &where)
{
    EXPECT_EQ(world.rows(u"Select tblPortMain.Port_ID FROM tblPortMain LEFT JOIN tblPortStatus"
                         " ON tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortStatus.Port_ID IS NULL"_s),
              QStringList())
        << where;
    // Twice only where a second cycle was switched on.
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortStatus WHERE Port_Success + Port_Failure > "_s
                         + QString::number(world.cyclesBegun())),
              QStringList())
        << where;
}

/** Disturbs at the k-th suspension; false when the cycle ended before it. */
bool disturbAt(const Disturbance &disturbance, int k)
{
    const std::string where = std::string(disturbance.name) + " at suspension " + std::to_string(k);
    SweepWorld world;
    bool met = false;
    QStringList before;
    world.time.onSuspension = [&](int suspension) {
        if (met || suspension != k || !world.cycle.checkInProgress())
            return;
        met = true;
        disturbance.happen(world);
        before = world.rows(kStates);
    };
    const bool ended = world.runCycle([&] { return disturbance.closes && met; });
    EXPECT_TRUE(ended) << where;
    if (!met)
        return false;
    if (disturbance.stops) {
        world.time.runFor(10 * 60000);
        EXPECT_EQ(world.rows(kStates), before) << "result after a stop: " << where;
        EXPECT_FALSE(vbMain().monitoring) << where;
    }
    if (vbMain().databasePath == world.otherFile) {
        EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortStatus WHERE Port_Status <> 'Not checked'"_s), QStringList())
            << where;
    }
    EXPECT_EQ(world.cyclesBegun(), 1) << "second cycle: " << where;
    expectSoundRows(world, where);
    return !testing::Test::HasFailure();
}

} // namespace

class DisturbedCycle : public testing::TestWithParam<Disturbance>
{
};

TEST_P(DisturbedCycle, AtEverySuspension)
{
    int k = 0;
    while (disturbAt(GetParam(), k))
        ++k;
    EXPECT_GE(k, 20) << "the cycle hardly ever waited";
}

INSTANTIATE_TEST_SUITE_P(Sweep, DisturbedCycle, testing::ValuesIn(kDisturbances), [](const auto &test) {
    std::string name = test.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
});

TEST(FailingDatabase, AtEveryAccessEndsTheProgramThroughOneDoor)
{
    int failures = 0;
    for (int i = 1;; ++i) {
        SweepWorld world;
        int access = 0;
        dao::SetAccessHook([&] {
            if (++access == i)
                throw VbError(3043, u"Disk or network error."_s);
        });
        world.dialogs.expect(u"Error Number: \t3043\r\nError Description: \tDisk or network error."_s);
        bool ended = true;
        try {
            ended = world.runCycle([&] { return !world.dialogs.shown.isEmpty(); });
        } catch (const ProgramEnded &) {
            // the access failed while monitoring was being switched on
        }
        dao::SetAccessHook({});
        ASSERT_TRUE(ended) << "hangs when access " << i << " fails";
        if (access < i) {
            world.dialogs.expectNothingMore();
            break;
        }
        ++failures;
        ASSERT_EQ(world.dialogs.shown.size(), 1) << "access " << i;
        ASSERT_EQ(world.window.log.last(), u"unload"_s) << "access " << i;
        // The handler has closed the database; what is in the file must be whole.
        UseDatabase(dao::OpenDatabase(vbMain().databasePath, true), vbMain().databasePath);
        expectSoundRows(world, "access " + std::to_string(i));
    }
    EXPECT_GE(failures, 40);
}
