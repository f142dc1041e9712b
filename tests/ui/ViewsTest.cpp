#include "tests/ui/WindowWorld.h"

#include "core/Settings.h"
#include "ui/EventListModel.h"

#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

class Views : public WindowWorld
{
protected:
    SmallNetwork net { world };

    void status(int port, const QString &assignments)
    {
        world.sql(
            u"UPDATE tblPortStatus SET "_s + assignments + u" WHERE Port_ID = "_s + QString::number(port));
    }
    void device(int id, const QString &assignments)
    {
        world.sql(u"UPDATE tblDevices SET "_s + assignments + u" WHERE Device_ID = "_s + QString::number(id));
    }
};

TEST_F(Views, TreeShowsEveryLevelInOrder)
{
    world.sql(u"UPDATE tblGroup SET Group_Icon = 16 WHERE Group_Label = 'Servers'"_s);
    device(net.web, u"Device_Icon = 4"_s);
    device(net.plain, u"Device_Icon = 2"_s);
    status(net.port80, u"Port_Icon = 7, Port_Mode = -1, Port_Icon_Flag = -3"_s);
    open();
    EXPECT_EQ(treeLines(),
        QStringList({
            u"Root | Monitored Devices | icon 1 | open"_s,
            u" Group:2 | Empty | icon 14"_s,
            u" Group:1 | Servers | icon 16 | open"_s,
            u"  2:plain.example | plain.example | icon 2"_s,
            u"  1:web.example | Web Server | icon 4 | open"_s,
            u"   1:80 | Port:80 | icon 7"_s,
            u"   1:9 | Port:9 | icon 5"_s,
            u"   1:Ping | Ping:Ping | icon 5"_s,
        }));
    EXPECT_EQ(distinct(u"Select Port_Mode, Port_Icon_Flag FROM tblPortStatus"_s), QStringList(u"0|0"_s));
    EXPECT_EQ(
        progress, QStringList({ u"Loading Database"_s, u"Updating Display"_s, u"Loading Event Log"_s }));
}

TEST_F(Views, EmptyDatabaseShowsOnlyTheOpenRoot)
{
    world.sql(u"DELETE * FROM tblGroup"_s);
    world.sql(u"DELETE * FROM tblDevices"_s);
    open();
    EXPECT_EQ(treeLines(), QStringList(u"Root | Monitored Devices | icon 1 | open"_s));
    EXPECT_EQ(listLines(), QStringList());
    const auto hints = list().view()->findChildren<QLabel *>();
    ASSERT_EQ(hints.size(), 1);
    EXPECT_TRUE(hints.first()->isVisible());
}

TEST_F(Views, ExpansionOnLoadFollowsTheSetting)
{
    struct Row {
        const char *name;
        int icon;
        const char *setting;
        bool open;
    };
    for (const Row &row :
        { Row { "fine", 2, "1", false }, Row { "recovered", 3, "1", true }, Row { "problems", 4, "1", true },
            Row { "disabled", 12, "1", true }, Row { "problems, switched off", 4, "0", false } }) {
        SCOPED_TRACE(row.name);
        SaveSetting(u"Options"_s, u"ExpandOnFailure"_s, QString::fromLatin1(row.setting));
        device(net.web, u"Device_Icon = "_s + QString::number(row.icon));
        open();
        EXPECT_EQ(tree().isNodeExpanded(NodeLevel::Device, net.deviceKey), row.open);
        EXPECT_EQ(tree().isNodeExpanded(NodeLevel::Group, net.groupKey), row.open);
        window.reset();
    }
}

TEST_F(Views, RefreshRepaintsAndOpensAndCloses)
{
    struct Row {
        const char *name;
        int icon;
        bool openBefore;
        const char *expand;
        const char *collapse;
        bool openAfter;
    };
    open();
    for (const Row &row :
        { Row { "problems open", 4, false, "1", "1", true },
            Row { "unless switched off", 4, false, "0", "1", false },
            Row { "recovered stays closed", 3, false, "1", "1", false },
            Row { "and open", 3, true, "1", "1", true }, Row { "disabled stays", 12, false, "1", "1", false },
            Row { "fine closes", 2, true, "1", "1", false },
            Row { "unless switched off", 2, true, "1", "0", true } }) {
        SCOPED_TRACE(row.name);
        SaveSetting(u"Options"_s, u"ExpandOnFailure"_s, u"0"_s);
        trigger("mnuViewRefresh");
        row.openBefore ? tree().expandAll() : tree().collapseAll();
        SaveSetting(u"Options"_s, u"ExpandOnFailure"_s, QString::fromLatin1(row.expand));
        SaveSetting(u"Options"_s, u"CollapseOnRecovery"_s, QString::fromLatin1(row.collapse));
        device(net.web, u"Device_Icon = "_s + QString::number(row.icon));
        device(net.plain, u"Device_Icon = 12"_s); // never moves its group
        refresh();
        EXPECT_EQ(tree().imageOf(NodeLevel::Device, net.deviceKey), row.icon);
        EXPECT_EQ(tree().isNodeExpanded(NodeLevel::Device, net.deviceKey), row.openAfter);
        EXPECT_EQ(tree().isNodeExpanded(NodeLevel::Group, net.groupKey), row.openAfter);
    }
}

TEST_F(Views, AProblemOpensAGroupThatAHealthyDeviceCloses)
{
    open();
    device(net.web, u"Device_Icon = 4"_s);
    status(net.port9, u"Port_Icon = 7"_s);
    world.sql(u"UPDATE tblGroup SET Group_Icon = 16 WHERE Group_ID = 1"_s);
    refresh();
    EXPECT_TRUE(tree().isNodeExpanded(NodeLevel::Group, net.groupKey));
    EXPECT_EQ(tree().imageOf(NodeLevel::Group, net.groupKey), 16);
    EXPECT_EQ(tree().imageOf(NodeLevel::Port, u"1:9"_s), 7);
    EXPECT_EQ(tree().imageOf(NodeLevel::Port, net.portKey), 5);
}

TEST_F(Views, RefreshOfARowAddedBehindItsBackEndsTheProgram)
{
    open();
    world.addCheck(net.plain, u"22"_s);
    world.dialogs.expect(u"An error has occured in the Refresh_TreeView_Icons subroutine."_s);
    Task<void> task = window->Refresh_TreeView_Icons();
    task.start();
    time->runUntil([&] { return !task.isRunning(); });
    EXPECT_THROW(task.result(), ProgramEnded);
    EXPECT_TRUE(world.dialogs.shown.last().text.contains(u"Error Description: \tElement not found"_s));
}

TEST_F(Views, ReloadKeepsSelectionAndExpansion)
{
    SaveSetting(u"Options"_s, u"ExpandOnFailure"_s, u"0"_s);
    open();
    select(NodeLevel::Port, net.portKey);
    trigger("mnuViewRefresh");
    EXPECT_EQ(tree().currentKey(), net.portKey);
    EXPECT_TRUE(tree().isNodeExpanded(NodeLevel::Device, net.deviceKey));
    world.sql(u"DELETE * FROM tblPortMain WHERE Port_Num = '80'"_s);
    trigger("mnuViewRefresh");
    EXPECT_EQ(tree().currentKey(), net.deviceKey) << "a node that is gone hands over to its parent";
}

namespace {
/** Counts how often a viewport is resized, and ends it when it does not end by itself. */
class ResizeCounter : public QObject
{
public:
    explicit ResizeCounter(QAbstractScrollArea &view)
        : m_view(view)
    {
        view.viewport()->installEventFilter(this);
    }
    int count = 0;
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Resize && ++count > 200)
            m_view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        return false;
    }

private:
    QAbstractScrollArea &m_view;
};
} // namespace

TEST_F(Views, AWideRowAtTheBottomDoesNotMakeTheScrollBarComeAndGo)
{
    for (int i = 10; i < 60; ++i)
        world.addGroup(i == 40 ? u"group 40"_s + QString(200, u'w') : u"group %1"_s.arg(i));
    open();
    ResizeCounter resizes(tree());
    for (int top = 0; top < 30; ++top) {
        window->tree().verticalScrollBar()->setValue(top);
        for (int height = 400; height < 440; height += 3) {
            resizes.count = 0;
            window->resize(500, height);
            QCoreApplication::processEvents();
            ASSERT_LE(resizes.count, 20) << height << " from row " << top;
        }
    }
}

TEST_F(Views, ADeviceNamedLikeItsOwnPortIsNoTrouble)
{
    const int odd = world.addDevice(net.servers, u"80"_s);
    const int check = world.addCheck(odd, u"80"_s);
    open();
    const QString key = u"%1:80"_s.arg(odd);
    device(odd, u"Device_Icon = 4"_s);
    status(check, u"Port_Icon = 7"_s);
    refresh();
    EXPECT_EQ(tree().imageOf(NodeLevel::Device, key), 4);
    EXPECT_EQ(tree().imageOf(NodeLevel::Port, key), 7);
}

TEST_F(Views, EveryClickFillsItsList)
{
    device(net.web, u"Device_Status = 'Problems Detected', Device_Icon = 4"_s);
    world.sql(u"UPDATE tblGroup SET Group_Icon = 15 WHERE Group_ID = 1"_s);
    status(net.ping,
        u"Port_Status = 'Connected', Port_Success = 10, Ping_Min = 1, Ping_Max = 3, Ping_Avg = 2"_s);
    status(net.port80,
        u"Port_Status = 'Failed', Port_Icon = 7, Port_Last_Error = 'connection timed out',"
        " Port_Fail_Date = #3/14/2026 1:02:03 PM#, Port_Success = 39, Port_Failure = 1"_s);
    status(net.port9,
        u"Port_Status = 'Recovered', Port_Icon = 6, Port_Rec_Date = #3/14/2026 1:02:03 PM#,"
        " Port_Success = 2, Port_Failure = 1"_s);
    open();
    const QString date = GeneralDate(QDateTime({ 2026, 3, 14 }, { 13, 2, 3 }));
    const QString webRow
        = u"1:web.example | 4 | Web Server | Device | web.example description | Problems Detected"_s;
    const QString row80 = u"1:80 | 7 | Port:80 | Port | test check | Failed since "_s + date
        + u" | connection timed out | 39/40 (97.50%)"_s;

    select(NodeLevel::Root, u"Root"_s);
    EXPECT_EQ(listLines(),
        QStringList({
            u"Group:2 | 14 | Empty | Group | Empty description | No Problems Detected"_s,
            u"Group:1 | 15 | Servers | Group | Servers description | Recovered"_s,
        }));
    EXPECT_EQ(list().columns().join(u','), u"Name,Type,Description,Status"_s);

    select(NodeLevel::Group, net.groupKey);
    EXPECT_EQ(listLines(),
        QStringList({
            u"Group:1 | 15 | Servers | Group | Servers description | Recovered"_s,
            u"2:plain.example | 2 | plain.example | Device | plain.example description | Not checked"_s,
            webRow,
        }));

    select(NodeLevel::Device, net.deviceKey);
    EXPECT_EQ(listLines(),
        QStringList({
            webRow,
            row80,
            u"1:9 | 6 | Port:9 | Port | test check | Recovered on "_s + date + u" |  | 2/3 (66.67%)"_s,
            u"1:Ping | 5 | Ping:Ping | Ping | test check | Connected |  | 10/10 (100.00%)"
            " 1 min/3 max/2 average"_s,
        }));
    EXPECT_EQ(list().columns().join(u','), u"Name,Type,Description,Status,Last Error,Summary"_s);

    select(NodeLevel::Port, net.portKey);
    EXPECT_EQ(listLines(), QStringList(row80));
    select(NodeLevel::Port, u"1:Ping"_s);
    EXPECT_EQ(list().shownRows().size(), 1);
}

TEST(Summary, PercentIsRoundedNotCut)
{
    struct Row {
        qint64 success, failure;
        const char16_t *text;
    };
    for (const Row &row : { Row { 0, 0, u"0/0 (0.00%)" }, Row { 39, 1, u"39/40 (97.50%)" },
             Row { 2, 1, u"2/3 (66.67%)" }, Row { 1, 2, u"1/3 (33.33%)" }, Row { 1, 1599, u"1/1600 (0.06%)" },
             Row { 19999, 1, u"19999/20000 (100.00%)" }, Row { 3, 1597, u"3/1600 (0.19%)" },
             Row { 0, 7, u"0/7 (0.00%)" }, Row { 2000000000, 147483647, u"2000000000/2147483647 (93.13%)" } })
        EXPECT_EQ(rows::successSummary(row.success, row.failure), QString::fromUtf16(row.text));
}

TEST_F(Views, ListSortsByColumnAndKeepsThePlace)
{
    for (const char16_t *name : { u"host10", u"host9", u"Host100" })
        world.addDevice(net.servers, QString::fromUtf16(name));
    open();
    select(NodeLevel::Group, net.groupKey);
    list().setViewMode(ViewMode::Details);
    auto *details = qobject_cast<QTreeView *>(list().view());
    const auto names = [&] {
        QStringList all;
        for (const StatusRow &row : list().shownRows())
            all << row.cells.first();
        return all.join(u' ');
    };
    EXPECT_EQ(names(), u"Servers host10 Host100 host9 plain.example Web Server"_s);
    details->sortByColumn(0, Qt::AscendingOrder);
    EXPECT_EQ(names(), u"Servers host9 host10 Host100 plain.example Web Server"_s);
    details->sortByColumn(0, Qt::DescendingOrder);
    EXPECT_EQ(names(), u"Servers Web Server plain.example Host100 host10 host9"_s);

    list().selectRow(4);
    window->reselectNode();
    EXPECT_EQ(list().currentRow().cells.first(), u"host10"_s) << "refilled after a check";
}

TEST_F(Views, ColumnsGrowWithTheirTextsUnlessTheOperatorSizedThem)
{
    open();
    trigger("mnuViewDetails");
    select(NodeLevel::Device, net.deviceKey);
    auto *details = qobject_cast<QTreeView *>(list().view());
    constexpr int description = 2, status = 3, error = 4;
    details->setColumnWidth(error, 41);
    const int before = details->columnWidth(status);
    world.sql(u"UPDATE tblPortStatus SET Port_Status = 'Failed', Port_Fail_Date = #1/1/2026#,"
              " Port_Last_Error = 'connection timed out'"_s);
    window->reselectNode();
    const int grown = details->columnWidth(status);
    EXPECT_GT(grown, before);
    EXPECT_EQ(details->columnWidth(error), 41);
    details->setColumnWidth(description, 333);
    world.sql(u"UPDATE tblPortStatus SET Port_Status = 'Connected'"_s);
    window->reselectNode();
    EXPECT_EQ(details->columnWidth(status), grown) << "nothing jumps back and forth";
    EXPECT_EQ(details->columnWidth(description), 333);
}

TEST_F(Views, ARowOpensItsNode)
{
    open();
    list().setViewMode(ViewMode::Details);
    list().selectRow(1);
    QTest::keyClick(list().view(), Qt::Key_Return);
    EXPECT_EQ(tree().currentKey(), net.groupKey);
    list().selectRow(2);
    const QRect row = list().view()->visualRect(list().view()->currentIndex());
    QTest::mouseClick(list().view()->viewport(), Qt::LeftButton, {}, row.center());
    QTest::mouseDClick(list().view()->viewport(), Qt::LeftButton, {}, row.center());
    EXPECT_EQ(tree().currentKey(), net.deviceKey);
    EXPECT_EQ(list().shownRows().size(), 4);
}

TEST_F(Views, EventViewer)
{
    world.sql(
        u"INSERT INTO tblEventLog (Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event) VALUES"
        " (0, 0, 3, #3/14/2026 1:00:00 PM#, 'Recovered', 'second')"_s);
    world.sql(
        u"INSERT INTO tblEventLog (Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event) VALUES"
        " (0, 0, 4, #3/14/2026 12:00:00 PM#, 'Failure', 'first')"_s);
    world.sql(
        u"INSERT INTO tblEventLog (Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event) VALUES"
        " (0, 0, 4, #1/14/2026 12:00:00 PM#, 'Failure', 'expired')"_s);
    open();
    trigger("mnuViewEventViewer");
    WriteLog(u"<b>third</b>"_s, u"Warning"_s, 0, 0);
    const QAbstractItemModel &model = window->events().events();
    QStringList lines;
    for (int row = 0; row < model.rowCount(); ++row)
        lines << model.index(row, 1).data().toString() + u' ' + model.index(row, 2).data().toString() + u' '
                + model.index(row, 0).data(Qt::AccessibleDescriptionRole).toString();
    EXPECT_EQ(lines,
        QStringList({ u"Failure first icon 4: failure"_s, u"Recovered second icon 3: recovered"_s,
            u"Warning <b>third</b> icon 6: warning"_s }));
    EXPECT_EQ(model.index(2, 0).data().toString(), GeneralDate(world.now));
    QStringList columns;
    for (int column = 0; column < model.columnCount(); ++column)
        columns << model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    EXPECT_EQ(columns.join(u','), u"Date/Time,Type,Message"_s);

    for (int i = 0; i < 200; ++i)
        WriteLog(u"row %1"_s.arg(i), u"Message"_s, 0, 0);
    QTest::qWait(150);
    const QModelIndex last = model.index(model.rowCount() - 1, 0);
    EXPECT_TRUE(window->events().viewport()->rect().intersects(window->events().visualRect(last)));
}
