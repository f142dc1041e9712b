// The engine on a network: runs in a namespace with the hosts of engine.farnet, in real time.
#include "monitor/CheckCycle.h"

#include "core/Settings.h"
#include "tests/world/World.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct NetworkWorld : World {
    CheckCycle cycle;
    int group = addGroup(u"g"_s);

    NetworkWorld() { cycle.loadControls(); }
    ~NetworkWorld() { cycle.unloadControls(); }

    void set(const QString &key, int value) { SaveSetting(u"Options"_s, key, QString::number(value)); }
    void addChecks(const QString &host, const QStringList &ports)
    {
        const int device = addDevice(group, host);
        for (const QString &port : ports)
            addCheck(device, port);
    }

    bool turnUntil(const std::function<bool()> &done, int limitMs = 20000)
    {
        QElapsedTimer time;
        time.start();
        while (!done() && time.elapsed() < limitMs)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        return done();
    }
    /** One cycle from switching on; returns its length in ms. */
    qint64 runCycle()
    {
        vbMain().monitoring = false;
        cycle.Monitor_Initialize();
        EXPECT_TRUE(turnUntil([&] { return cycle.checkInProgress(); }));
        QElapsedTimer time;
        time.start();
        EXPECT_TRUE(turnUntil([&] { return !cycle.checkInProgress(); }));
        return time.elapsed();
    }
    QStringList outcomes()
    {
        return rows(u"Select tblDevices.Device_Name, tblPortMain.Port_Num, tblPortStatus.Port_Status,"
                    " tblPortStatus.Port_Last_Error FROM tblDevices, tblPortMain, tblPortStatus"
                    " WHERE tblDevices.Device_ID = tblPortMain.Device_ID"
                    " AND tblPortMain.Port_ID = tblPortStatus.Port_ID ORDER BY tblPortMain.Port_ID"_s);
    }
    int count(const QString &status)
    {
        return int(rows(u"Select Port_ID FROM tblPortStatus WHERE Port_Status = '"_s + status + u'\'').size());
    }
};

} // namespace

TEST(Engine, EveryKindOfHostEndsWithItsStatusAndReason)
{
    struct Case {
        const char *host, *port, *status, *error;
    };
    const Case cases[] = {
        { "10.99.1.1", "Ping", "Connected", "" },
        { "10.99.1.1", "80", "Connected", "" },
        { "10.99.1.1", "81", "Connected", "" }, // accepts and resets at once
        { "10.99.1.1", "82", "Failed", "connection timed out" },
        { "10.99.1.1", "83", "Failed", "connection refused" }, // ICMP port unreachable
        { "10.99.1.1", "84", "Failed", "no route to host" },   // ICMP prohibited
        { "10.99.1.1", "85", "Failed", "connection refused" },
        { "10.99.1.1", "70000", "Failed", "port number 70000 is not valid" },
        { "10.99.1.2", "Ping", "Failed", "request timed out" },
        { "10.99.1.2", "80", "Failed", "connection timed out" },
        { "10.99.1.3", "Ping", "Connected", "" }, // answers every third request
        { "10.99.1.4", "Ping", "Failed", "destination host unreachable" },
        { "10.99.1.5", "Ping", "Failed", "communication administratively prohibited" },
        { "203.0.113.1", "Ping", "Failed", "network unreachable" },
        { "203.0.113.1", "80", "Failed", "network unreachable" },
        { "nowhere.test", "Ping", "Failed", "host not found" },
        { "nowhere.test", "80", "Failed", "host not found" },
        { "named.test", "Ping", "Connected", "" },
        { "named.test", "80", "Connected", "" },
        { "fd99::1", "Ping", "Connected", "" },
        { "fd99::1", "80", "Connected", "" },
        { "fd99::1", "81", "Failed", "connection refused" },
        { "fd99::2", "Ping", "Failed", "request timed out" },
        { "six.test", "Ping", "Connected", "" },
        { "::1", "Ping", "Connected", "" },
    };
    NetworkWorld world;
    world.set(u"PingCount"_s, 3);
    world.set(u"PingTimeOut"_s, 150);
    world.set(u"HostTimeOut"_s, 1);
    QStringList expected;
    QMap<QString, int> devices;
    for (const Case &c : cases) {
        const QString host = QString::fromLatin1(c.host);
        if (!devices.contains(host))
            devices.insert(host, world.addDevice(world.group, host));
        world.addCheck(devices.value(host), QString::fromLatin1(c.port));
        expected << QStringList{ host, QString::fromLatin1(c.port), QString::fromLatin1(c.status),
                                 QString::fromLatin1(c.error) }.join(u'|');
    }
    world.runCycle();
    EXPECT_EQ(world.outcomes().join(u'\n').toStdString(), expected.join(u'\n').toStdString());
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortStatus WHERE Port_Success + Port_Failure <> 1"_s), QStringList())
        << "every check has exactly one outcome";
    const double roundTrip = world.rows(u"Select Ping_Cur FROM tblPortStatus WHERE Port_ID = 1"_s).first().toDouble();
    EXPECT_GE(roundTrip, 5);
    EXPECT_LT(roundTrip, 60);
}

TEST(Engine, OneRequestMeansOneRequest)
{
    NetworkWorld world;
    world.set(u"PingTimeOut"_s, 150);
    world.addChecks(u"third.test"_s, { u"Ping"_s });
    world.runCycle();
    EXPECT_EQ(world.outcomes(), QStringList{ u"third.test|Ping|Failed|request timed out"_s });
}

TEST(Engine, The32ndPortWaitsForAFreeSocketAndSilentOnesHoldItNoLongerThanTheTimeOut)
{
    NetworkWorld world;
    world.set(u"HostTimeOut"_s, 1);
    for (int i = 1; i <= 62; ++i)
        world.addChecks(u"10.99.3.%1"_s.arg(i, 3, 10, QChar(u'0')), { u"80"_s });
    world.addChecks(u"idle.test"_s, {}); // a device without checks adds nothing
    world.addChecks(u"six.test"_s, { u"80"_s });
    // 62 silent ports fill 31 sockets twice; the answering one is last in line.
    const qint64 ms = world.runCycle();
    EXPECT_EQ(world.count(u"Connected"_s), 1);
    EXPECT_EQ(world.count(u"Failed"_s), 62);
    EXPECT_GE(ms, 1900) << "the sockets were not waited for";
    EXPECT_LE(ms, 3500) << "the silent ports held the others up";
}

TEST(Engine, ManySocketsAndElementsCheckASilentNetworkInOneTimeOut)
{
    NetworkWorld world;
    world.set(u"HostTimeOut"_s, 1);
    world.set(u"PingTimeOut"_s, 500);
    world.set(u"PortSockets"_s, 128);
    world.set(u"PingControls"_s, 64);
    for (int i = 1; i <= 50; ++i) {
        world.addChecks(u"10.99.2.%1"_s.arg(i), { u"Ping"_s, u"80"_s });
        world.addChecks(u"10.99.3.%1"_s.arg(i), { u"Ping"_s, u"80"_s });
    }
    const qint64 ms = world.runCycle();
    EXPECT_EQ(world.count(u"Connected"_s), 100);
    EXPECT_EQ(world.count(u"Failed"_s), 100);
    EXPECT_LE(ms, 2700);
}

TEST(Engine, SwitchedOffInAPhaseWritesNothingMore)
{
    for (const bool inPorts : { false, true }) {
        NetworkWorld world;
        world.set(u"PingTimeOut"_s, inPorts ? 100 : 600);
        world.set(u"HostTimeOut"_s, 1);
        world.addChecks(u"10.99.2.1"_s, { u"Ping"_s, u"80"_s });
        world.addChecks(u"10.99.3.1"_s, { u"Ping"_s, u"80"_s });
        world.cycle.Monitor_Initialize();
        const QString phase = inPorts ? u"(Closing Port"_s : u"(Closing Ping"_s;
        ASSERT_TRUE(world.turnUntil([&] { return world.window.log.join(u'\n').contains(phase); }));
        world.cycle.Monitor_Stop();
        const QStringList before = world.outcomes();
        ASSERT_TRUE(world.turnUntil([&] { return !world.cycle.checkInProgress(); }));
        EXPECT_EQ(world.outcomes(), before);
        EXPECT_EQ(world.count(u"Not checked"_s), inPorts ? 2 : 4);
        EXPECT_EQ(world.window.log.count(u"tip Kavro_2000 - Check In Progress."_s), 1);
        EXPECT_EQ(world.window.log.last(), u"tip Kavro_2000 - Monitoring OFF."_s);
    }
}
