#include "monitor/RollUp.h"

#include "tests/world/SimulatedWaits.h"
#include "tests/world/World.h"

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

namespace {

int rollUp()
{
    SimulatedWaits time;
    Task<int> task = Check_TVIcons();
    task.start();
    EXPECT_TRUE(time.runUntil([&] { return !task.isRunning(); }));
    return task.result();
}

void setCheck(World &world, int port, int mode, int icon, int flag)
{
    world.sql(u"UPDATE tblPortStatus SET Port_Mode = %1, Port_Icon = %2, Port_Icon_Flag = %3 WHERE Port_ID = %4"_s
                  .arg(mode).arg(icon).arg(flag).arg(port));
}

} // namespace

TEST(RollUp, DeviceStates)
{
    struct Check {
        int mode, icon;
    };
    struct Case {
        const char *name;
        QList<Check> checks;
        int iconBefore;
        const char *after; // icon|status
        int problems;
    };
    const Case cases[] = {
        { "all normal", { { 0, 5 }, { 0, 5 } }, 4, "2|No Problems Detected", 0 },
        { "recovered wins over normal", { { 0, 5 }, { 2, 6 } }, 2, "3|Recovered", 0 },
        { "problem wins over recovered", { { 1, 6 }, { -1, 7 } }, 2, "4|Problems Detected", 1 },
        { "a disabled failing check counts for the state, not for the count", { { -1, 13 }, { 0, 13 } }, 2,
          "4|Problems Detected", 0 },
        { "unknown mode keeps the state", { { -2, 7 } }, 3, "3|as before", 1 },
        { "disabled device is never touched", { { -1, 7 } }, 12, "12|as before", 1 },
        { "no checks keep the state", {}, 3, "3|as before", 0 },
    };
    for (const Case &c : cases) {
        World world;
        const int device = world.addDevice(world.addGroup(u"g"_s), u"host"_s);
        world.sql(u"UPDATE tblDevices SET Device_Icon = %1, Device_Status = 'as before'"_s.arg(c.iconBefore));
        int number = 1;
        for (const Check &check : c.checks)
            setCheck(world, world.addCheck(device, QString::number(number++)), check.mode, check.icon, 0);
        EXPECT_EQ(rollUp(), c.problems) << c.name;
        EXPECT_EQ(world.rows(u"Select Device_Icon, Device_Status FROM tblDevices"_s),
                  QStringList{ QString::fromLatin1(c.after) })
            << c.name;
        EXPECT_EQ(world.window.take(),
                  (QStringList{ c.problems ? u"tray 10"_s : u"tray 8"_s,
                                u"tip Kavro_2000 - %1 problems detected."_s.arg(c.problems) }))
            << c.name;
    }
}

TEST(RollUp, GroupStatesFollowTheirDevices)
{
    World world;
    const int fine = world.addGroup(u"fine"_s), back = world.addGroup(u"back"_s), bad = world.addGroup(u"bad"_s);
    const int off = world.addGroup(u"off"_s);
    const auto device = [&](int group, const QString &name, int mode) {
        setCheck(world, world.addCheck(world.addDevice(group, name), u"80"_s), mode, 5, 0);
    };
    device(fine, u"a"_s, 0);
    device(back, u"b"_s, 0);
    device(back, u"c"_s, 1);
    device(bad, u"d"_s, 1);
    device(bad, u"e"_s, -1);
    device(off, u"f"_s, -1);
    world.sql(u"UPDATE tblDevices SET Device_Icon = 12 WHERE Device_Name = 'f'"_s);
    world.sql(u"UPDATE tblGroup SET Group_Icon = 15 WHERE Group_Label = 'off'"_s);
    rollUp();
    EXPECT_EQ(world.rows(u"Select Group_Label, Group_Icon FROM tblGroup ORDER BY Group_ID"_s),
              (QStringList{ u"fine|14"_s, u"back|15"_s, u"bad|16"_s, u"off|15"_s }));
}

TEST(RollUp, NothingToRollUpLeavesTheTrayAlone)
{
    World world;
    EXPECT_EQ(rollUp(), -1);
    const int device = world.addDevice(4711, u"no group"_s);
    setCheck(world, world.addCheck(device, u"80"_s), -1, 7, -1);
    EXPECT_EQ(rollUp(), -1);
    EXPECT_EQ(world.rows(u"Select Device_Icon FROM tblDevices"_s), QStringList{ u"4"_s });
    EXPECT_EQ(world.window.take(), QStringList());
}

TEST(RollUp, ChangeLists)
{
    World world;
    const int group = world.addGroup(u"g"_s);
    const int named = world.addDevice(group, u"named"_s, u"Alias One"_s);
    const int aliased = world.addDevice(group, u"aliased"_s, u"Alias Two"_s);
    const int plain = world.addDevice(group, u"plain"_s);
    world.sql(u"UPDATE tblDevices SET MSAgent_Referr_Device = True WHERE Device_Name = 'named'"_s);
    world.sql(u"UPDATE tblDevices SET MSAgent_Pronounce_Device = True WHERE Device_Name = 'plain'"_s);
    const int p1 = world.addCheck(named, u"Ping"_s), p2 = world.addCheck(aliased, u"80"_s);
    const int p3 = world.addCheck(plain, u"443"_s), p4 = world.addCheck(plain, u"25"_s);
    EXPECT_FALSE(ArrayHasBounds(GetFailedDevices()));
    EXPECT_FALSE(ArrayHasBounds(GetRecoveredDevices()));

    setCheck(world, p1, -1, 7, -1);
    setCheck(world, p2, -1, 7, -2); // reported in an earlier cycle
    setCheck(world, p3, 2, 6, 1);
    setCheck(world, p4, 0, 5, -1); // flag without the mode
    world.sql(u"UPDATE tblPortStatus SET Port_Last_Error = 'no answer' WHERE Port_ID = "_s + QString::number(p1));
    ResultTable expectedFailed(failed::Count), expectedRecovered(recovered::Count);
    expectedFailed.addRow({ u"named"_s, u"Ping"_s, u"no answer"_s, u"False"_s, QString::number(named),
                            QString::number(p1) });
    expectedRecovered.addRow({ u"plain"_s, u"443"_s, u"True"_s, QString::number(plain), QString::number(p3) });
    EXPECT_EQ(GetFailedDevices(), expectedFailed);
    EXPECT_EQ(GetRecoveredDevices(), expectedRecovered);

    setCheck(world, p2, -1, 7, -1);
    setCheck(world, p1, -1, 13, -1); // disabled
    EXPECT_EQ(GetFailedDevices().rows(), 1);
    EXPECT_EQ(GetFailedDevices().at(failed::Name, 0), u"Alias Two"_s);
}
