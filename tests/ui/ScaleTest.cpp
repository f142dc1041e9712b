#include "tests/ui/WindowWorld.h"

#include "ui/DesktopDialogs.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

constexpr int kDevices = 1000;
constexpr int kChecks = 11;

} // namespace

/** A thousand devices with eleven checks each, in ten groups. */
class Scale : public WindowWorld
{
protected:
    Scale()
    {
        for (int group = 1; group <= 10; ++group)
            world.addGroup(u"Group %1"_s.arg(group));
        int port = 0;
        for (int device = 1; device <= kDevices; ++device) {
            world.sql(
                u"INSERT INTO tblDevices (Group_ID, Device_Name, Device_Alias, Device_Icon) VALUES (%1, 'host%2', '', %3)"_s
                    .arg(device % 10 + 1)
                    .arg(device)
                    .arg(device % 3 ? 2 : 4));
            for (int check = 0; check < kChecks; ++check, ++port) {
                const QString number = check == 0 ? u"Ping"_s : QString::number(check);
                world.sql(
                    u"INSERT INTO tblPortMain (Device_ID, Port_Num, Port_Type) VALUES (%1, '%2', 'Port')"_s
                        .arg(device)
                        .arg(number));
                world.sql(u"INSERT INTO tblPortStatus (Port_ID, Device_ID, Port_Icon) VALUES (%1, %2, %3)"_s
                              .arg(port + 1)
                              .arg(device)
                              .arg(check % 2 ? 5 : 7));
            }
        }
        db().CommitPending();
    }
};

TEST_F(Scale, LoadsAndRefreshesWithoutFreezing)
{
    open();
    time.reset(); // real time from here on
    QElapsedTimer watch;
    watch.start();
    tree().Load_TreeView();
    const qint64 loading = watch.elapsed();
    RecordProperty("load_ms", int(loading));
    EXPECT_LE(loading, 500);
    EXPECT_EQ(tree().nodeCount(), 1 + 10 + kDevices + kDevices * kChecks);

    // Every second device changes its mind, so that nodes open and close and most pictures change.
    world.sql(u"UPDATE tblDevices SET Device_Icon = 4 WHERE Device_ID > 500"_s);
    world.sql(u"UPDATE tblDevices SET Device_Icon = 2 WHERE Device_ID <= 500"_s);
    world.sql(u"UPDATE tblPortStatus SET Port_Icon = 6"_s);
    QTest::qWait(50);
    Task<void> refreshing = window->Refresh_TreeView_Icons();
    qint64 gap = 0;
    const auto turn = [&] {
        watch.restart();
        QCoreApplication::processEvents();
        gap = qMax(gap, watch.elapsed());
    };
    watch.restart();
    refreshing.start();
    gap = watch.elapsed();
    while (refreshing.isRunning())
        turn();
    for (int i = 0; i < 20; ++i)
        turn(); // what the view does with it afterwards
    refreshing.result();
    RecordProperty("longest_gap_ms", int(gap));
    EXPECT_LE(gap, 50);
    EXPECT_EQ(tree().imageOf(NodeLevel::Port, u"77:3"_s), 6);
    EXPECT_TRUE(tree().isNodeExpanded(NodeLevel::Device, u"700:host700"_s));
    EXPECT_FALSE(tree().isNodeExpanded(NodeLevel::Device, u"300:host300"_s));
}

TEST_F(Scale, AReloadInTheMiddleEndsTheRefresh)
{
    open();
    world.sql(u"UPDATE tblPortStatus SET Port_Icon = 6"_s);
    bool disturbed = false;
    time->onSuspension = [&](int) {
        if (std::exchange(disturbed, true))
            return;
        world.sql(u"DELETE * FROM tblDevices WHERE Device_ID > 900"_s);
        tree().Load_TreeView();
    };
    refresh();
    EXPECT_TRUE(disturbed);
    EXPECT_EQ(tree().imageOf(NodeLevel::Port, u"77:3"_s), 6);
    EXPECT_FALSE(tree().hasNode(NodeLevel::Device, u"950:host950"_s));
}

TEST_F(Scale, ALongListFillsAndSortsAtOnce)
{
    world.sql(u"UPDATE tblDevices SET Group_ID = 1"_s);
    open();
    QElapsedTimer watch;
    for (const ViewMode mode :
        { ViewMode::Details, ViewMode::LargeIcons, ViewMode::SmallIcons, ViewMode::List }) {
        list().setViewMode(mode);
        watch.start();
        tree().selectNode(NodeLevel::Group, u"Group:1"_s);
        QCoreApplication::processEvents();
        EXPECT_LE(watch.elapsed(), 200) << int(mode);
        EXPECT_EQ(list().shownRows().size(), kDevices + 1);
    }
    list().setViewMode(ViewMode::Details);
    watch.start();
    qobject_cast<QTreeView *>(list().view())->sortByColumn(0, Qt::AscendingOrder);
    QCoreApplication::processEvents();
    EXPECT_LE(watch.elapsed(), 200);
    EXPECT_EQ(list().shownRows().at(10).cells.first(), u"host10"_s);
}

TEST_F(Scale, ACycleFullOfEventsStaysSmooth)
{
    open();
    trigger("mnuViewEventViewer");
    QElapsedTimer watch;
    qint64 gap = 0;
    qint64 total = 0;
    for (int i = 0; i < kDevices * kChecks; ++i) {
        watch.restart();
        window->addEventRow(
            4, world.now, u"Failure"_s, u"host%1 port 80 failed because connection timed out."_s.arg(i));
        if (i % 50 == 0)
            QCoreApplication::processEvents();
        gap = qMax(gap, watch.elapsed());
        total += watch.nsecsElapsed() / 1000;
    }
    RecordProperty("events_us_each", int(total / (kDevices * kChecks)));
    RecordProperty("events_longest_gap_ms", int(gap));
    EXPECT_LE(gap, 50);
    EXPECT_LE(total / (kDevices * kChecks), 1000);
}
