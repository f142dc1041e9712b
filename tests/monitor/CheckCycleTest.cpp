#include "monitor/CheckCycle.h"

#include "core/Settings.h"
#include "tests/world/SimulatedWaits.h"
#include "tests/world/World.h"

#include <QFile>
#include <QTcpServer>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/** A world with one device on loopback that has a listening and a refusing port. */
struct CycleWorld : World {
    QTcpServer server;
    int device, open, refused;
    CheckCycle cycle;
    SimulatedWaits time;

    CycleWorld()
    {
        server.listen(QHostAddress::LocalHost);
        QTcpServer other;
        other.listen(QHostAddress::LocalHost);
        device = addDevice(addGroup(u"g"_s), u"127.0.0.1"_s);
        open = addCheck(device, QString::number(server.serverPort()));
        refused = addCheck(device, QString::number(other.serverPort()));
        cycle.loadControls();
    }
    ~CycleWorld() { cycle.unloadControls(); }

    void runCycle()
    {
        ASSERT_TRUE(time.runUntil([&] { return cycle.checkInProgress(); }));
        ASSERT_TRUE(time.runUntil([&] { return !cycle.checkInProgress(); }));
    }
    QString port(int id)
    {
        return rows(u"Select Port_Num FROM tblPortMain WHERE Port_ID = "_s + QString::number(id)).first();
    }
};

QStringList statusTexts(const QStringList &log)
{
    QStringList texts;
    for (const QString &line : log) {
        if (line.startsWith("status "_L1))
            texts << line.mid(7);
    }
    return texts;
}

} // namespace

TEST(CheckCycle, NothingToCheckDeclines)
{
    World world;
    CheckCycle cycle;
    cycle.loadControls();
    world.addDevice(world.addGroup(u"g"_s), u"lonely"_s);
    cycle.Monitor_Initialize();
    EXPECT_FALSE(vbMain().monitoring);
    EXPECT_EQ(world.announcer.log, QStringList{ u"speak MonitorDecline"_s });
    EXPECT_EQ(world.window.take(), QStringList());
}

TEST(CheckCycle, OneWholeCycleInOrder)
{
    CycleWorld world;
    world.cycle.Monitor_Initialize();
    world.runCycle();
    world.time.runUntil([&] { return world.window.log.last().startsWith("status Next Check"_L1); });
    const QString port = world.port(world.refused);
    EXPECT_EQ(world.window.take(),
              (QStringList{
                  u"state on"_s, u"tray 8"_s, u"status Monitoring is on."_s, u"event 2 Message: Monitoring Started."_s,
                  u"load events"_s, u"event 1 Debug: Event log checked for expired events."_s,
                  u"state checking"_s, u"status Check in progress..."_s, u"tip Kavro_2000 - Check In Progress."_s,
                  u"status Check in progress... (127.0.0.1)"_s, u"status Check in progress... (127.0.0.1)"_s,
                  u"status Check in progress...(Closing Port Sockets)"_s,
                  u"state on"_s, u"tray 10"_s, u"tip Kavro_2000 - 1 problems detected."_s, u"refresh tree"_s,
                  u"status Writing Log..."_s,
                  u"event 4 Failure: 127.0.0.1 port %1 failed because connection refused."_s.arg(port),
                  u"reselect"_s, u"status Next Check In 5 Minutes."_s }));
    EXPECT_EQ(world.announcer.log, (QStringList{ u"speak MonitorOn"_s, u"announce 1 failed, 0 recovered"_s }));
    EXPECT_EQ(world.rows(u"Select Port_Status, Port_Last_Error, Port_Mode, Port_Icon_Flag FROM tblPortStatus"
                         " ORDER BY Port_ID"_s),
              (QStringList{ u"Connected||0|0"_s, u"Failed|connection refused|-1|-1"_s }));
    EXPECT_EQ(world.rows(u"Select Event_Type, Event, Device_ID, Port_ID FROM tblEventLog WHERE Event_Icon = 4"_s),
              QStringList{ u"Failure|127.0.0.1 port %1 failed because connection refused.|%2|%3"_s.arg(port)
                               .arg(world.device).arg(world.refused) });
    QFile log(world.logFile());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString::fromUtf8(log.readAll())
                    .contains(GeneralDate(world.now) + " Failure...127.0.0.1 port "_L1 + port
                              + " failed because connection refused.\n"_L1));
}

TEST(CheckCycle, SwitchedOffAndOnWithinACycleItCountsMinutesAllTheSame)
{
    CycleWorld world;
    world.cycle.Monitor_Initialize();
    ASSERT_TRUE(world.time.runUntil([&] { return world.cycle.checkInProgress(); }));
    world.cycle.Monitor_Stop();
    world.cycle.Monitor_Initialize();
    world.runCycle();
    const qint64 end = world.time.now();
    ASSERT_TRUE(world.time.runUntil([&] { return world.cycle.checkInProgress(); }));
    EXPECT_GE(world.time.now() - end, 5 * 60000);
}

TEST(CheckCycle, FailureIsReportedOnceAndItsRecoveryOnce)
{
    CycleWorld world;
    SaveSetting(u"Options"_s, u"Min_Between_Checks"_s, u"1"_s);
    world.cycle.Monitor_Initialize();
    world.runCycle();
    world.runCycle();
    QTcpServer back;
    ASSERT_TRUE(back.listen(QHostAddress::LocalHost, world.port(world.refused).toUShort()));
    world.runCycle();
    world.runCycle();
    const QString what = u"127.0.0.1 port "_s + world.port(world.refused);
    EXPECT_EQ(world.rows(u"Select Event_Type, Event FROM tblEventLog WHERE Port_ID <> 0"_s),
              (QStringList{ "Failure|"_L1 + what + " failed because connection refused."_L1,
                            "Recovered|"_L1 + what + " recovered."_L1 }));
}

TEST(CheckCycle, Countdown)
{
    struct Case {
        const char *minutes;
        QStringList texts;
    };
    const Case cases[] = {
        { "3", { u"Next Check In 3 Minutes."_s, u"Next Check In 2 Minutes."_s, u"Next Check In 1 Minute."_s } },
        { "1", { u"Next Check In 1 Minute."_s } },
        { "0", { u"Next Check In 1 Minute."_s } }, // never less than a minute
    };
    for (const Case &c : cases) {
        CycleWorld world;
        SaveSetting(u"Options"_s, u"Min_Between_Checks"_s, QString::fromLatin1(c.minutes));
        world.cycle.Monitor_Initialize();
        world.runCycle();
        const qint64 ended = world.time.now();
        ASSERT_TRUE(world.time.runUntil([&] { return world.cycle.checkInProgress(); })) << c.minutes;
        EXPECT_EQ(statusTexts(world.window.take()).filter(u"Next"_s), c.texts) << c.minutes;
        EXPECT_EQ(world.time.now() - ended, 60000 * c.texts.size()) << c.minutes;
    }
}

TEST(CheckCycle, SwitchedOffNothingRunsAndSwitchedOnAgainItChecksAtOnce)
{
    CycleWorld world;
    world.cycle.Monitor_Initialize();
    world.runCycle();
    world.window.take();
    world.cycle.Monitor_Stop();
    EXPECT_EQ(world.window.take(),
              (QStringList{ u"state off"_s, u"status Monitoring is off."_s, u"ready Ready"_s,
                            u"event 2 Message: Monitoring Stopped."_s, u"tray 9"_s,
                            u"tip Kavro_2000 - Monitoring OFF."_s }));
    const qint64 checks = world.number(u"Select Port_Success FROM tblPortStatus"_s);
    world.time.runFor(20 * 60000);
    EXPECT_EQ(world.number(u"Select Port_Success FROM tblPortStatus"_s), checks);
    EXPECT_EQ(world.window.take(), QStringList());

    const qint64 restarted = world.time.now();
    world.cycle.Monitor_Initialize();
    world.runCycle();
    EXPECT_LT(world.time.now() - restarted, 5000);
    EXPECT_EQ(world.number(u"Select Port_Success FROM tblPortStatus"_s), checks + 1);
}

TEST(CheckCycle, DisabledDevicesAreLeftAloneAndPingIsRecognisedInAnyCase)
{
    CycleWorld world;
    const int group = world.addGroup(u"h"_s);
    const int off = world.addDevice(group, u"127.0.0.2"_s);
    world.addCheck(off, u"PING"_s);
    world.sql(u"UPDATE tblDevices SET Device_Icon = 12 WHERE Device_ID = "_s + QString::number(off));
    world.addCheck(world.addDevice(group, u"127.0.0.3"_s), u"pInG"_s);
    world.cycle.Monitor_Initialize();
    world.runCycle();
    EXPECT_EQ(world.rows(u"Select tblDevices.Device_Name, tblPortStatus.Port_Status FROM tblDevices, tblPortStatus,"
                         " tblPortMain WHERE tblPortMain.Port_ID = tblPortStatus.Port_ID AND"
                         " tblPortMain.Device_ID = tblDevices.Device_ID AND tblPortMain.Port_Num LIKE 'ping'"
                         " ORDER BY tblDevices.Device_Name"_s),
              (QStringList{ u"127.0.0.2|Not checked"_s, u"127.0.0.3|Connected"_s }));
}

TEST(CheckCycle, EventsExpireToTheSecondEverySecondDay)
{
    CycleWorld world;
    SaveSetting(u"Options"_s, u"EventLogHistory"_s, u"3"_s);
    const auto event = [&](const QString &text, qint64 age) {
        DBRecordEvent(world.now.addSecs(-age), u"Message"_s, text, 0, 0, 2);
    };
    const qint64 limit = 3 * 86400;
    event(u"older"_s, limit + 1);
    event(u"exact"_s, limit);
    event(u"younger"_s, limit - 1);
    EventExpiry expiry;
    const auto texts = [&] { return world.rows(u"Select Event FROM tblEventLog WHERE Event_Icon = 2"_s); };
    expiry.Check_EventLog_Expiry();
    EXPECT_EQ(texts(), (QStringList{ u"exact"_s, u"younger"_s }));

    world.now = world.now.addDays(1);
    expiry.Check_EventLog_Expiry();
    EXPECT_EQ(texts().size(), 2) << "one day boundary is not enough";
    world.now = world.now.addDays(1);
    expiry.Check_EventLog_Expiry();
    EXPECT_EQ(texts(), QStringList());
}
