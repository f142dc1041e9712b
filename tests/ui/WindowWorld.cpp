#include "tests/ui/WindowWorld.h"

#include <QTest>

using namespace Qt::StringLiterals;

WindowWorld::~WindowWorld()
{
    window.reset();
    vbMain().window = nullptr;
}

void WindowWorld::open(Editors *editors, TerminalEcho *echo)
{
    openAt(1000, 1000, 12000, 9000, editors, echo);
}

void WindowWorld::openAt(
    double left, double top, double width, double height, Editors *editors, TerminalEcho *echo)
{
    window = std::make_unique<frmMain>(editors, echo);
    vbMain().window = window.get();
    Task<void> load = window->load([this](const QString &text) { progress << text; });
    load.start();
    ASSERT_TRUE(time->runUntil([&] { return !load.isRunning(); }));
    load.result();
    window->place(left, top, width, height);
    vbMain().startFlag = 1;
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

static void describe(const QTreeWidgetItem *item, int depth, QStringList &lines)
{
    lines << QString(depth, u' ') + item->data(0, Qt::UserRole).toString() + u" | "_s + item->text(0)
            + u" | "_s + item->data(0, Qt::AccessibleDescriptionRole).toString().section(u':', 0, 0)
            + (item->isExpanded() ? u" | open"_s : QString());
    for (int i = 0; i < item->childCount(); ++i)
        describe(item->child(i), depth + 1, lines);
}

QStringList WindowWorld::treeLines()
{
    QStringList lines;
    for (int i = 0; i < tree().topLevelItemCount(); ++i)
        describe(tree().topLevelItem(i), 0, lines);
    return lines;
}

QStringList WindowWorld::listLines()
{
    QStringList lines;
    for (const StatusRow &row : list().shownRows())
        lines << row.key + u" | "_s + QString::number(row.image) + u" | "_s + row.cells.join(u" | "_s);
    return lines;
}

void WindowWorld::refresh()
{
    Task<void> task = window->Refresh_TreeView_Icons();
    task.start();
    ASSERT_TRUE(time->runUntil([&] { return !task.isRunning(); }));
    task.result();
}

QStringList WindowWorld::distinct(const QString &select)
{
    QStringList rows = world.rows(select);
    rows.removeDuplicates();
    return rows;
}

void WindowWorld::expectEnd(const QString &procedure, const std::function<void()> &act)
{
    world.dialogs.expect(u"An error has occured in the "_s + procedure + u" subroutine."_s);
    EXPECT_THROW(act(), ProgramEnded);
}

SmallNetwork::SmallNetwork(World &world)
    : servers(world.addGroup(u"Servers"_s))
    , empty(world.addGroup(u"Empty"_s))
    , web(world.addDevice(servers, u"web.example"_s, u"Web Server"_s))
    , plain(world.addDevice(servers, u"plain.example"_s))
    , ping(world.addCheck(web, u"Ping"_s))
    , port80(world.addCheck(web, u"80"_s))
    , port9(world.addCheck(web, u"9"_s))
    , groupKey(keys::group(servers))
    , deviceKey(keys::device(web, u"web.example"_s))
    , portKey(keys::port(web, u"80"_s))
{
}
