// Looking around: selection, views, files to read, monitoring, leaving.
#include "tests/walk/OperatorWalk.h"

#include "core/Settings.h"

#include <QHeaderView>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

bool OperatorWalk::selectNode() { return goTo(NodeLevel::None); }

bool OperatorWalk::walkByKeys()
{
    tree().setFocus();
    for (int i = 1 + m_random.below(12); i > 0; --i)
        QTest::keyClick(&tree(),
            m_random.of({ Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Right, Qt::Key_Left, Qt::Key_Home,
                Qt::Key_End, Qt::Key_PageDown }));
    note(tree().currentKey());
    return true;
}

bool OperatorWalk::selectRow()
{
    const int rows = int(list().shownRows().size());
    if (rows == 0)
        return false;
    list().selectRow(m_random.below(rows));
    return true;
}

bool OperatorWalk::openRow()
{
    if (!list().isVisible() || !selectRow())
        return false;
    const StatusRow row = list().currentRow();
    // What is shown already opens itself: a check its history, a device without checks its properties.
    const bool shown = row.level == tree().currentLevel() && row.key == tree().currentKey();
    list().view()->setFocus();
    withForms(shown ? detailsOf(row.key) : Forms(), [&] { QTest::keyClick(list().view(), Qt::Key_Return); });
    EXPECT_EQ(tree().currentKey(), row.key);
    return true;
}

bool OperatorWalk::sortList()
{
    auto *details = qobject_cast<QTreeView *>(list().view());
    if (!details)
        return false;
    const int column = m_random.below(details->header()->count());
    QTest::mouseClick(details->header()->viewport(), Qt::LeftButton, {},
        { details->header()->sectionViewportPosition(column) + 15, 5 });
    return true;
}

bool OperatorWalk::changeView()
{
    return command(m_random.of({ "mnuViewStatus", "mnuViewEventViewer", "mnuViewLargeIcons", "mnuViewSmallIcons",
        "mnuViewList", "mnuViewDetails", "tbViews", "mnuViewExpandNodes", "mnuViewCollapseNodes", "mnuViewToolbar",
        "mnuViewStatusBar", "mnuSysTrayRestore" }));
}

bool OperatorWalk::resizeWindow()
{
    window->resize(200 + m_random.below(1200), 150 + m_random.below(900));
    return true;
}

bool OperatorWalk::viewFile()
{
    return command(m_random.of({ "mnuViewHTML", "mnuViewLog", "mnuHelpContentsIndex", "mnuAboutKavroWebSite" }));
}

bool OperatorWalk::refreshViews()
{
    m_ledger.treeReloaded();
    return command(m_random.of({ "mnuViewRefresh", "tbRefresh", "mnutvRefresh", "mnulvRefresh" }));
}

bool OperatorWalk::monitoringOn()
{
    const int checks = counts().checks;
    if (!command(m_random.of({ "mnuMonitoringOn", "tbMonitor", "mnuSysTrayMonitoringOn" })))
        return false;
    EXPECT_EQ(vbMain().monitoring, checks > 0);
    return true;
}

bool OperatorWalk::monitoringOff()
{
    if (!command(m_random.of({ "mnuMonitoringOff", "tbStop", "mnuSysTrayMonitoringOff" })))
        return false;
    EXPECT_FALSE(vbMain().monitoring);
    return true;
}

/** Neither a click nor a key gets at a command that cannot be had. */
bool OperatorWalk::pressDisabled()
{
    QList<QAction *> disabled;
    for (QAction *each : window->commands().actions()) {
        if (!each->isEnabled())
            disabled << each;
    }
    if (disabled.isEmpty())
        return false;
    QAction *chosen = m_random.of(disabled);
    note(chosen->objectName());
    const Counts before = counts();
    const bool monitoring = vbMain().monitoring;
    chosen->trigger();
    expectCounts(before, "a disabled command");
    EXPECT_EQ(vbMain().monitoring, monitoring);
    EXPECT_TRUE(m_dialogs.shown.isEmpty()) << chosen->objectName().toStdString();
    return true;
}

bool OperatorWalk::exitProgram()
{
    const bool asks = GetSettingInt(u"Options"_s, u"ShowShutDown"_s) != 0;
    const Dialogs::Answer answer
        = m_random.of({ Dialogs::AnswerYes, Dialogs::AnswerNo, Dialogs::AnswerCancel });
    if (asks)
        expectBox(u"You are about to exit the program.  Are you sure?"_s, answer);
    const bool stays = asks && answer == Dialogs::AnswerNo;
    if (!command(m_random.of({ "mnuFilemnuExit", "mnuSysTrayExit" })))
        return false;
    EXPECT_TRUE(m_ended || m_closed != stays);
    return true;
}
