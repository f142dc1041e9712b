#include "tests/ui/WindowWorld.h"

#include "core/Settings.h"
#include "monitor/CheckCycle.h"
#include "ui/HelpPages.h"

#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

class CommandsTest : public WindowWorld
{
protected:
    SmallNetwork net { world };

    QStringList events()
    {
        return world.rows(u"Select Event_Type, Event FROM tblEventLog ORDER BY Event_Date"_s);
    }
    QStringList enabled(const QStringList &names)
    {
        QStringList found;
        for (const QString &name : names) {
            const QAction &each = action(name.toLatin1().constData());
            if (each.isEnabled() && each.isVisible())
                found << name;
        }
        return found;
    }
};

TEST_F(CommandsTest, ResetCounters)
{
    world.sql(
        u"UPDATE tblPortStatus SET Port_Icon = 13, Port_Icon_Flag = -2, Port_Mode = -1, Port_Success = 4,"
        " Port_Failure = 5, Ping_Cur = 1.5, Ping_Min = 1, Ping_Max = 2, Ping_Avg = 1.5, Port_Status = "
        "'Failed',"
        " Port_Last_Error = 'x', Port_Rec_Date = #1/1/2026#, Port_Fail_Date = #1/1/2026#"_s);
    world.sql(u"UPDATE tblGroup SET Group_Icon = 16"_s);
    world.sql(u"UPDATE tblDevices SET Device_Icon = 12, Device_Status = 'Disabled'"_s);
    open();
    world.dialogs.expect(u"Are you sure you want to reset all of the counters?"_s, Dialogs::AnswerNo);
    trigger("mnuResetCounters");
    EXPECT_EQ(tree().imageOf(NodeLevel::Device, net.deviceKey), 12);

    world.dialogs.expect(u"Are you sure you want to reset all of the counters?"_s, Dialogs::AnswerYes);
    trigger("mnuResetCounters");
    EXPECT_EQ(
        distinct(u"Select Port_Icon, Port_Icon_Flag, Port_Mode, Port_Success, Port_Failure, Ping_Cur,"
                 " Ping_Min, Ping_Max, Ping_Avg, Port_Status, Port_Last_Error, Port_Rec_Date, Port_Fail_Date"
                 " FROM tblPortStatus"_s),
        QStringList(u"5|0|0|0|0|0|0|0|0|Not checked||Null|Null"_s));
    EXPECT_EQ(distinct(u"Select Group_Icon FROM tblGroup"_s), QStringList(u"14"_s));
    EXPECT_EQ(
        distinct(u"Select Device_Icon, Device_Status FROM tblDevices"_s), QStringList(u"2|Not checked"_s));
    EXPECT_EQ(tree().imageOf(NodeLevel::Device, net.deviceKey), 2);
    EXPECT_EQ(events(), QStringList(u"Information|Counters have been reset."_s));
    EXPECT_EQ(world.dialogs.shown.last().caption, AppTitle());
}

TEST_F(CommandsTest, ClearEventLog)
{
    open();
    for (int i = 0; i < 3; ++i)
        WriteLog(u"event"_s, u"Message"_s, 0, 0);
    const QString question = u"You are sure you want to delete the contents of the event log."_s;
    world.dialogs.expect(question, Dialogs::AnswerNo);
    trigger("mnuToolsAdvancedClearEventLog");
    EXPECT_EQ(events().size(), 3);
    for (const char16_t *result :
        { u"3 entries were deleted from the event log.", u"1 entries were deleted from the event log." }) {
        world.dialogs.expect(question, Dialogs::AnswerYes);
        world.dialogs.expect(QString::fromUtf16(result));
        trigger("mnuToolsAdvancedClearEventLog");
        EXPECT_EQ(events(), QStringList(u"Information|"_s + QString::fromUtf16(result)));
        EXPECT_EQ(window->events().events().rowCount(), 1) << "the view shows what the database holds";
    }
}

TEST_F(CommandsTest, ClearRegistryLogsAfterEitherAnswer)
{
    open();
    const QString question
        = u"Are you sure you want to clear of the registry entries associated with Kavro_2000?"_s;
    for (const Dialogs::Answer answer : { Dialogs::AnswerNo, Dialogs::AnswerYes }) {
        SaveSetting(u"Mail Options"_s, u"MailTo"_s, u"a@b"_s);
        world.dialogs.expect(question, answer);
        trigger("mnuToolsClearRegistry");
        EXPECT_EQ(GetSetting(u"Mail Options"_s, u"MailTo"_s, u"none"_s),
            answer == Dialogs::AnswerYes ? u"none"_s : u"a@b"_s);
    }
    EXPECT_EQ(events(),
        QStringList(
            { u"Information|Registry has been cleared."_s, u"Information|Registry has been cleared."_s }));
}

TEST_F(CommandsTest, DeleteGroup)
{
    open();
    select(NodeLevel::Group, net.groupKey);
    world.dialogs.expect(u"You can not delete a group when devices are defined under the group."_s);
    trigger("mnutvDeleteGroup");
    EXPECT_EQ(world.dialogs.shown.last().icon, Dialogs::Exclamation);
    EXPECT_EQ(world.rows(u"Select * FROM tblGroup"_s).size(), 2);

    select(NodeLevel::Group, keys::group(net.empty));
    trigger("mnutvDeleteGroup");
    EXPECT_EQ(world.rows(u"Select Group_ID FROM tblGroup"_s), QStringList(u"1"_s));
    EXPECT_FALSE(tree().hasNode(NodeLevel::Group, keys::group(net.empty)));
    EXPECT_EQ(listLines(),
        QStringList(u"Group:1 | 14 | Servers | Group | Servers description | No Problems Detected"_s));
}

TEST_F(CommandsTest, DeleteDeviceWithEverythingUnderIt)
{
    world.sql(u"INSERT INTO tblPortEmailTemplate (Port_ID, Device_ID) VALUES (%1, %2)"_s.arg(net.port80)
                  .arg(net.web));
    const int other = world.addCheck(net.plain, u"80"_s);
    open();
    select(NodeLevel::Device, net.deviceKey);
    const QString question = u"You are about to delete Web Server.\r\nAre you sure?"_s;
    world.dialogs.expect(question, Dialogs::AnswerNo);
    QTest::keyClick(&tree(), Qt::Key_Delete);
    EXPECT_TRUE(tree().hasNode(NodeLevel::Device, net.deviceKey));
    world.dialogs.expect(question, Dialogs::AnswerYes);
    QTest::keyClick(&tree(), Qt::Key_Delete);
    EXPECT_FALSE(tree().hasNode(NodeLevel::Device, net.deviceKey));
    EXPECT_EQ(world.rows(u"Select Device_ID FROM tblDevices"_s), QStringList(QString::number(net.plain)));
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortMain"_s), QStringList(QString::number(other)));
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortStatus"_s), QStringList(QString::number(other)));
    EXPECT_EQ(world.rows(u"Select * FROM tblPortEmailTemplate"_s).size(), 0);
    EXPECT_EQ(tree().currentKey(), net.groupKey);
}

TEST_F(CommandsTest, DeletePort)
{
    open();
    select(NodeLevel::Port, net.portKey);
    world.sql(u"UPDATE tblPortStatus SET Port_Mode = -1"_s);
    world.dialogs.expect(
        u"You are about to delete port 80 from Web Server.\r\nAre you sure?"_s, Dialogs::AnswerYes);
    QTest::keyClick(&tree(), Qt::Key_Delete);
    EXPECT_EQ(world.rows(u"Select Port_Num FROM tblPortMain ORDER BY Port_Num"_s),
        QStringList({ u"9"_s, u"Ping"_s }));
    EXPECT_EQ(world.rows(u"Select * FROM tblPortStatus"_s).size(), 2);
    EXPECT_FALSE(tree().hasNode(NodeLevel::Port, net.portKey));
    EXPECT_EQ(tree().currentKey(), net.deviceKey);
    EXPECT_EQ(list().shownRows().size(), 3) << "the device and its two checks";
    EXPECT_EQ(distinct(u"Select Port_Mode FROM tblPortStatus"_s), QStringList(u"-1"_s)) << "no reload";
}

TEST_F(CommandsTest, DisableAndEnableDevice)
{
    open();
    select(NodeLevel::Device, net.deviceKey);
    EXPECT_FALSE(action("mnutvDisableDevice").isChecked());
    trigger("mnutvDisableDevice");
    const QString devices = u"Select Device_Icon, Device_Status FROM tblDevices WHERE Device_ID = 1"_s;
    const QString ports = u"Select Port_Icon, Port_Status FROM tblPortStatus WHERE Device_ID = 1"_s;
    EXPECT_EQ(world.rows(devices), QStringList(u"12|Disabled"_s));
    EXPECT_EQ(distinct(ports), QStringList(u"13|Disabled"_s));
    EXPECT_EQ(tree().imageOf(NodeLevel::Device, net.deviceKey), 12);
    EXPECT_TRUE(action("mnutvDisableDevice").isChecked());
    trigger("mnutvDisableDevice");
    EXPECT_EQ(world.rows(devices), QStringList(u"2|Not Checked"_s));
    EXPECT_EQ(distinct(ports), QStringList(u"5|Not Checked"_s));
    EXPECT_FALSE(action("mnutvDisableDevice").isChecked());
}

TEST_F(CommandsTest, ViewLog)
{
    open();
    trigger("mnuViewLog");
    EXPECT_EQ(world.dialogs.opened, QStringList(u"file://"_s + world.logFile()));
    QFile::remove(world.logFile());
    world.dialogs.expect(u"The Log Files you specified does not exist or is corrupt .\r\n"
                         "Please re-define a log file from the options menu."_s);
    trigger("mnuViewLog");
    EXPECT_EQ(world.dialogs.opened.size(), 1);
}

const QDir kHelp(QStringLiteral(KAVRO_DATA_FOLDER "/help"));

QString plain(QString text) { return text.section(u'\t', 0, 0).remove(u'&'); }

/** A menu's entries and those of its menus, as the help writes them: "View > Log File". */
void addPaths(const QMenu &menu, const QString &path, QSet<QString> &paths)
{
    for (const QAction *action : menu.actions()) {
        const QString below = path + u" > "_s + plain(action->text());
        paths << below;
        if (action->menu())
            addPaths(*action->menu(), below, paths);
    }
}

class HelpCommandsTest : public CommandsTest
{
protected:
    QString file(const QString &name)
    {
        const QString path = QDir::cleanPath(world.path(name));
        QDir().mkpath(QFileInfo(path).path());
        QFile made(path);
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        return path;
    }
    QString takeOpened()
    {
        const QString opened = world.dialogs.opened.join(u' ');
        world.dialogs.opened.clear();
        return opened;
    }
};

TEST_F(HelpCommandsTest, TheHelpFileOpensWhereThereIsAViewerElseThePages)
{
    const QString help = file(u"Kavro2000.chm"_s);
    const QString page = file(u"help/index.html"_s);
    open();
    QTest::keyClick(window.get(), Qt::Key_F1);
    EXPECT_EQ(takeOpened(), u"file://"_s + help);
    world.dialogs.hasProgram = false;
    trigger("mnuHelpContentsIndex");
    EXPECT_EQ(takeOpened(), u"file://"_s + page);
    world.dialogs.hasProgram = true;
    QFile::remove(help);
    trigger("mnuHelpContentsIndex");
    EXPECT_EQ(takeOpened(), u"file://"_s + page);

    world.dialogs.canOpen = false;
    world.dialogs.expect(u"No program was found that shows this help page:\r\n"_s + page);
    trigger("mnuHelpContentsIndex");
    world.dialogs.expect(u"No program was found that shows web sites. The address is:\r\nhttps://"_s);
    trigger("mnuAboutKavroWebSite");
}

TEST_F(HelpCommandsTest, WebSite)
{
    open();
    trigger("mnuAboutKavroWebSite");
    EXPECT_EQ(takeOpened(), u"https://www.kavro.example/"_s);
}

TEST_F(HelpCommandsTest, F1InADialogOpensThePageAboutIt)
{
    const QString groups = file(u"help/groups.html"_s);
    const QString first = file(u"help/index.html"_s);
    open();
    for (const auto &[form, opened] : { std::pair(u"frmModifyGroup"_s, groups), std::pair(u"frmAbout"_s, first) }) {
        QDialog dialog(window.get());
        dialog.setObjectName(form);
        dialog.setModal(true);
        auto *box = new QLineEdit(&dialog);
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(box, Qt::Key_F1);
        EXPECT_EQ(takeOpened(), u"file://"_s + opened);
        QTest::keyClick(box, Qt::Key_F1, Qt::ShiftModifier);
        EXPECT_EQ(takeOpened(), QString());
    }
}

TEST_F(HelpCommandsTest, EveryFormAndEveryPageOfTheOptionsHasAPage)
{
    QStringList names { u"frmAddDevice"_s, u"frmAddPort"_s, u"frmGroupAdd"_s, u"frmModifyDevice"_s,
        u"frmModifyGroup"_s, u"frmModifyPort"_s, u"frmOptions"_s, u"frmPortDetails"_s, u"frmPortList"_s };
    names << QStringLiteral("Root MSAgent MSAgentCharacters Logging FailureNotification SMTP EmailTemplate HTMLOutput"
                            " DBOptions Monitor TCP Ping DefaultOptions EventScripting")
                 .split(u' ');
    for (const QString &name : names) {
        const QString page = helppages::pageOf(name);
        EXPECT_NE(page, u"index.html"_s) << qPrintable(name);
        EXPECT_TRUE(kHelp.exists(page)) << qPrintable(page);
    }
}

TEST_F(HelpCommandsTest, EveryMenuPathOfTheHelpExists)
{
    RecordingEditors editors;
    open(&editors);
    QSet<QString> paths;
    for (const QAction *each : window->menuBar()->actions())
        addPaths(*each->menu(), plain(each->text()), paths);
    const QRegularExpression mention(u"<kbd class=\"menu\">([^<]*)</kbd>"_s);
    int mentioned = 0;
    for (const QString &page : kHelp.entryList({ u"*.html"_s }, QDir::Files)) {
        QFile file(kHelp.filePath(page));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        auto each = mention.globalMatch(QString::fromUtf8(file.readAll()));
        for (; each.hasNext(); ++mentioned) {
            const QString path = each.next().captured(1).replace(u"&gt;"_s, u">"_s).simplified();
            EXPECT_TRUE(paths.contains(path)) << qPrintable(page) << ": " << qPrintable(path);
        }
    }
    EXPECT_GT(mentioned, 50);
}

TEST_F(CommandsTest, ADatabaseErrorEndsTheProgramUnderTheCommandsName)
{
    open();
    select(NodeLevel::Device, net.deviceKey);
    world.sql(u"UPDATE tblDevices SET Device_Name = 'x'"_s);
    vbMain().db->Close();
    expectEnd(u"DisableDevice"_s, [&] { trigger("mnutvDisableDevice"); });
}

TEST_F(CommandsTest, ViewModesAreKept)
{
    open();
    struct Row {
        const char *command;
        ViewMode mode;
        const char16_t *stored;
    };
    for (const Row &row : { Row { "mnuViewDetails", ViewMode::Details, u"3" },
             Row { "mnuViewSmallIcons", ViewMode::SmallIcons, u"1" },
             Row { "mnuViewList", ViewMode::List, u"2" }, Row { "tbViews", ViewMode::Details, u"3" },
             Row { "tbViews", ViewMode::LargeIcons, u"0" }, Row { "mnuViewList", ViewMode::List, u"2" } }) {
        trigger(row.command);
        EXPECT_EQ(list().viewMode(), row.mode);
        EXPECT_EQ(GetSetting(u"Settings"_s, u"ViewMode"_s), QString::fromUtf16(row.stored));
    }
    window.reset();
    open();
    EXPECT_EQ(list().viewMode(), ViewMode::List);
    EXPECT_TRUE(action("mnuViewList").isChecked());
    EXPECT_FALSE(action("mnuViewLargeIcons").isChecked());
    trigger("mnuViewList");
    EXPECT_TRUE(action("mnuViewList").isChecked()) << "choosing the present mode again keeps its mark";
}

TEST_F(CommandsTest, ViewSelectorAndItsKeys)
{
    open();
    QTest::keyClick(window.get(), Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(window->viewSelector().currentText(), u"Event Viewer"_s);
    EXPECT_TRUE(window->events().isVisible());
    EXPECT_FALSE(list().isVisible());
    EXPECT_TRUE(window->events().hasFocus());
    QTest::keyClick(window.get(), Qt::Key_1, Qt::ControlModifier);
    EXPECT_TRUE(list().isVisible());
    EXPECT_TRUE(list().view()->hasFocus());
}

TEST_F(CommandsTest, BarsAreToggledWithTheirMarks)
{
    open();
    auto *toolBar = window->findChild<QToolBar *>();
    for (const auto &[name, bar] : { std::pair<const char *, QWidget *> { "mnuViewToolbar", toolBar },
             { "mnuViewStatusBar", &window->statusPanels() } }) {
        EXPECT_TRUE(action(name).isChecked());
        trigger(name);
        EXPECT_FALSE(bar->isVisible());
        EXPECT_FALSE(action(name).isChecked());
        trigger(name);
        EXPECT_TRUE(bar->isVisible());
    }
}

TEST_F(CommandsTest, OnlyWhatCanBeDoneIsOffered)
{
    RecordingEditors editors;
    open(&editors);
    const QStringList monitoring { u"mnuMonitoringOn"_s, u"mnuMonitoringOff"_s, u"tbMonitor"_s, u"tbStop"_s,
        u"mnuSysTrayMonitoringOn"_s, u"mnuSysTrayMonitoringOff"_s, u"mnuResetCounters"_s };
    struct State {
        MonitoringState state;
        const char16_t *enabled;
    };
    for (const State &row : { State { MonitoringState::Off,
                                  u"mnuMonitoringOn tbMonitor mnuSysTrayMonitoringOn mnuResetCounters" },
             State {
                 MonitoringState::On, u"mnuMonitoringOff tbStop mnuSysTrayMonitoringOff mnuResetCounters" },
             State { MonitoringState::Checking, u"mnuMonitoringOff mnuSysTrayMonitoringOff" } }) {
        window->setMonitoringState(row.state);
        EXPECT_EQ(enabled(monitoring).join(u' '), QString::fromUtf16(row.enabled));
        const bool checking = row.state == MonitoringState::Checking;
        const QStringList exchanging { u"mnuFileOpen"_s, u"mnuFileSaveAs"_s, u"tbOpen"_s, u"tbSaveAs"_s,
            u"mnuCompactDatabase"_s };
        EXPECT_EQ(enabled(exchanging).size(), checking ? 0 : 5) << "a cycle works on one database from its start to its end";
    }
    const QStringList objects { u"mnutvAddGroup"_s, u"mnutvAddDevice"_s, u"mnutvAddPort"_s, u"mnutvDeleteGroup"_s,
        u"mnutvDeleteDevice"_s, u"mnutvDeletePort"_s,
        u"mnutvDisableDevice"_s, u"mnutvPortDetails"_s, u"mnutvProperties"_s };
    struct Node {
        NodeLevel level;
        QString key;
        const char16_t *idle;
        const char16_t *checking;
    };
    for (const Node &row : { Node { NodeLevel::Root, u"Root"_s, u"mnutvAddGroup", u"" },
             Node { NodeLevel::Group, net.groupKey, u"mnutvAddDevice mnutvDeleteGroup mnutvProperties", u"" },
             Node { NodeLevel::Device, net.deviceKey,
                 u"mnutvAddPort mnutvDeleteDevice mnutvDisableDevice mnutvProperties", u"" },
             Node { NodeLevel::Port, net.portKey, u"mnutvDeletePort mnutvPortDetails mnutvProperties",
                 u"mnutvPortDetails" } }) {
        select(row.level, row.key);
        window->setMonitoringState(MonitoringState::Off);
        EXPECT_EQ(enabled(objects).join(u' '), QString::fromUtf16(row.idle));
        window->setMonitoringState(MonitoringState::Checking);
        EXPECT_EQ(enabled(objects).join(u' '), QString::fromUtf16(row.checking));
    }
    window->setMonitoringState(MonitoringState::Off);
    select(NodeLevel::Device, net.deviceKey);
    list().selectRow(1);
    trigger("mnulvRightClickDetails");
    QTest::keyClick(&tree(), Qt::Key_Return, Qt::AltModifier);
    for (const auto &[level, key] : { std::pair(NodeLevel::Root, u"Root"_s),
             std::pair(NodeLevel::Group, net.groupKey), std::pair(NodeLevel::Device, net.deviceKey) }) {
        select(level, key);
        QTest::keyClick(&tree(), Qt::Key_Insert);
    }
    trigger("mnuPortList");
    trigger("mnuHelpAbout");
    EXPECT_EQ(editors.opened,
        QStringList({ u"details 1:80"_s, u"properties "_s + net.deviceKey, u"add group"_s,
            u"add device "_s + net.groupKey, u"add port "_s + net.deviceKey, u"port list"_s, u"about"_s }));
}

TEST_F(CommandsTest, ActivatingARowGoesDownAndInTheEndOpensIt)
{
    RecordingEditors editors;
    open(&editors);
    select(NodeLevel::Device, net.deviceKey);
    const auto activate = [this](int row) {
        list().selectRow(row);
        QTest::keyClick(list().view(), Qt::Key_Return);
    };
    activate(0); // the device itself
    activate(1);
    EXPECT_EQ(tree().currentKey(), net.portKey);
    activate(0);
    QTest::keyClick(list().view(), Qt::Key_D, Qt::ControlModifier);
    QTest::keyClick(&tree(), Qt::Key_D, Qt::ControlModifier);
    const QString details = u"details "_s + net.portKey;
    EXPECT_EQ(editors.opened, QStringList({ u"properties "_s + net.deviceKey, details, details, details }));
    window->setMonitoringState(MonitoringState::Checking);
    select(NodeLevel::Device, net.deviceKey);
    activate(0);
    EXPECT_EQ(editors.opened.size(), 4) << "no editing during a check";
}

TEST_F(CommandsTest, EditorCommandsAreAbsentWithoutEditors)
{
    open();
    select(NodeLevel::Port, net.portKey);
    EXPECT_EQ(enabled({ u"mnutvPortDetails"_s, u"mnutvProperties"_s, u"mnulvRightClickDetails"_s,
                  u"mnuPortList"_s, u"mnuHelpAbout"_s }),
        QStringList());
}

TEST_F(CommandsTest, MonitoringKeyToggles)
{
    open();
    QTest::keyClick(window.get(), Qt::Key_M, Qt::ControlModifier);
    EXPECT_TRUE(vbMain().monitoring);
    QTest::keyClick(window.get(), Qt::Key_M, Qt::ControlModifier);
    EXPECT_FALSE(vbMain().monitoring);
    EXPECT_EQ(window->statusPanels().panelText(StatusBar::Progress), u"Monitoring is off."_s);
}

TEST_F(CommandsTest, EverythingIsReachableByKeyboardAndNamed)
{
    open();
    QSet<QAction *> inMenus;
    const auto menus = window->findChildren<QMenu *>();
    for (QMenu *menu : menus) {
        QStringList mnemonics;
        for (QAction *each : menu->actions()) {
            if (each->isSeparator())
                continue;
            inMenus.insert(each);
            const QString key = QKeySequence::mnemonic(each->text()).toString();
            EXPECT_FALSE(key.isEmpty()) << each->objectName().toStdString();
            if (each->isVisible()) {
                EXPECT_FALSE(mnemonics.contains(key))
                    << menu->title().toStdString() << ": " << key.toStdString();
                mnemonics << key;
            }
        }
    }
    for (QAction *each : window->commands().actions()) {
        EXPECT_FALSE(each->statusTip().isEmpty()) << each->objectName().toStdString();
        EXPECT_TRUE(inMenus.contains(each) || each->objectName().startsWith(u"tb"))
            << each->objectName().toStdString();
    }
    // What can have the focus tells its name to a screen reader.
    for (QWidget *each : window->findChildren<QWidget *>()) {
        const bool inner = each->objectName().startsWith(u"qt_") || qobject_cast<QMenu *>(each);
        if (each->focusPolicy() != Qt::NoFocus && !inner && !qobject_cast<QToolButton *>(each)) {
            EXPECT_FALSE(each->accessibleName().isEmpty())
                << each->metaObject()->className() << ' ' << each->objectName().toStdString();
        }
    }
    QStringList order;
    tree().setFocus();
    for (int i = 0; i < 3; ++i) {
        order << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order, QStringList({ u"tvTreeView"_s, u"cmbViews"_s, u"lvListViewIcons"_s }));
}
