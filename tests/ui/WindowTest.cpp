#include "tests/ui/WindowWorld.h"

#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "monitor/CheckCycle.h"
#include "platform/tray/cKavroTray.h"
#include "ui/DesktopDialogs.h"
#include "ui/InstanceLock.h"
#include "ui/Panes.h"
#include "ui/TerminalEcho.h"
#include "ui/TerminationSignals.h"
#include "ui/frmSplash.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class Window : public WindowWorld
{
protected:
    SmallNetwork net { world };
    const QString question = u"You are about to exit the program.  Are you sure?"_s;

    QStringList loggedEvents() { return world.rows(u"Select Event_Type, Event FROM tblEventLog"_s); }
};

static QString savedLayout()
{
    QStringList saved;
    for (const char16_t *key :
        { u"MainLeft", u"MainTop", u"MainWidth", u"MainHeight", u"Splitter", u"ViewMode" })
        saved << GetSetting(u"Settings"_s, QString::fromUtf16(key), u"?"_s);
    return saved.join(u' ');
}

TEST_F(Window, OnlyNoKeepsItOpen)
{
    struct Row {
        const char *name;
        Dialogs::Answer answer;
        bool closes;
    };
    for (const Row &row : { Row { "no", Dialogs::AnswerNo, false }, Row { "yes", Dialogs::AnswerYes, true },
             Row { "cancel", Dialogs::AnswerCancel, true } }) {
        SCOPED_TRACE(row.name);
        open();
        QSignalSpy closed(window.get(), &frmMain::closed);
        world.dialogs.expect(question, row.answer);
        EXPECT_EQ(window->close(), row.closes);
        EXPECT_EQ(window->isVisible(), !row.closes);
        EXPECT_EQ(closed.count(), row.closes ? 1 : 0);
        EXPECT_EQ(world.dialogs.shown.last().caption, u"Kavro_2000 - Continue?"_s);
        EXPECT_EQ(world.dialogs.shown.last().buttons, Dialogs::YesNoCancel);
        if (!row.closes) { // the timer must not fire into a later question
            time->runFor(10000);
            EXPECT_TRUE(window->isVisible());
        }
    }
}

TEST_F(Window, AnUnansweredQuestionClosesAfterThreeSeconds)
{
    open();
    DesktopDialogs real;
    vbMain().dialogs = &real;
    bool openAt2900 = false;
    QTimer::singleShot(0, window.get(), [&] {
        time->runFor(2900);
        openAt2900 = QApplication::activeModalWidget() != nullptr;
        time->runFor(200);
    });
    // Should the question not dismiss itself, the test must still end.
    QTimer::singleShot(5000, window.get(), [] {
        if (QWidget *box = QApplication::activeModalWidget())
            box->close();
        ADD_FAILURE() << "the question stayed open";
    });
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(openAt2900);
    EXPECT_LT(elapsed.elapsed(), 4000);
    EXPECT_EQ(loggedEvents(), QStringList(u"Information|Program Stopped."_s));
    window.reset();
}

TEST_F(Window, ClosingStopsMonitoringInOrder)
{
    SaveSetting(u"Options"_s, u"ShowShutDown"_s, u"0"_s);
    open();
    trigger("mnuMonitoringOn");
    world.announcer.log.clear();
    EXPECT_TRUE(window->close());
    EXPECT_EQ(loggedEvents(),
        QStringList(
            { u"Message|Monitoring Started."_s, u"Information|Force Shutdown Detected.  Program Stopped."_s,
                u"Message|Monitoring Stopped."_s, u"Information|Program Stopped."_s }));
    EXPECT_EQ(world.announcer.log, QStringList({ u"speak MonitorOff"_s, u"unload"_s }));
    EXPECT_FALSE(vbMain().monitoring);
    EXPECT_TRUE(window->close()) << "a second close asks and does nothing more";
    EXPECT_EQ(loggedEvents().size(), 4);
}

TEST_F(Window, ClosesInTheMiddleOfACheck)
{
    open();
    trigger("mnuMonitoringOn");
    ASSERT_TRUE(time->runUntil([&] { return window->cycle().checkInProgress(); }));
    EXPECT_FALSE(action("tbStop").isEnabled());
    window->closeWithoutQuestion();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(window->cycle().checkInProgress());
    EXPECT_EQ(loggedEvents().last(), u"Information|Program Stopped."_s);
    time->runFor(200000);
    window.reset();
}

TEST_F(Window, AnErrorUnloadsTheWindowOnce)
{
    open();
    world.sql(u"UPDATE tblGroup SET Group_Icon = Null"_s); // Null reads as no picture, not as an error
    trigger("mnuViewRefresh");
    EXPECT_EQ(tree().imageOf(NodeLevel::Group, net.groupKey), 0);
    vbMain().db->Close();
    QSignalSpy closed(window.get(), &frmMain::closed);
    expectEnd(u"Load_TreeView"_s, [&] { trigger("mnuViewRefresh"); });
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(Window, LayoutIsSavedInTwips)
{
    SaveSetting(u"Options"_s, u"ShowShutDown"_s, u"0"_s);
    SaveSetting(u"Settings"_s, u"Splitter"_s, u"3000"_s);
    openAt(1500, 750, 9000, 7500);
    QTest::qWait(1);
    EXPECT_EQ(window->panes().position(), 200);
    window->panes().setPosition(4500);
    trigger("mnuViewSmallIcons");
    window->close();
    EXPECT_EQ(savedLayout(), u"1500 750 9000 7500 4500 1"_s);
}

TEST_F(Window, AnUntouchedLayoutDoesNotDrift)
{
    SaveSetting(u"Options"_s, u"ShowShutDown"_s, u"0"_s);
    for (const bool minimised : { false, true }) {
        openAt(1000, 1000, 6500, 6500);
        if (minimised)
            window->showMinimized();
        window->close();
        EXPECT_EQ(savedLayout(), u"1000 1000 6500 6500 2500 0"_s);
        window.reset();
    }
}

TEST_F(Window, SplitterStaysAwayFromTheEdges)
{
    struct Row {
        const char *stored;
        int position;
    };
    for (const Row &row :
        { Row { "10", 100 }, Row { "-500", 100 }, Row { "2500", 167 }, Row { "99999999", -1 } }) {
        SCOPED_TRACE(row.stored);
        SaveSetting(u"Settings"_s, u"Splitter"_s, QString::fromLatin1(row.stored));
        openAt(1000, 1000, 7500, 7500);
        QTest::qWait(1);
        Panes &panes = window->panes();
        const int right = panes.width() - panes.handleWidth() - 100;
        EXPECT_NEAR(panes.position(), row.position < 0 ? right : row.position, 1);
        EXPECT_GE(panes.sizes().last(), 100);
        window.reset();
    }
}

TEST_F(Window, AWindowOutsideOfEveryScreenComesBack)
{
    openAt(900000, -900000, 6500, 6500);
    EXPECT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(window->geometry().topLeft()));
    EXPECT_EQ(window->width(), 433);
}

TEST_F(Window, AViewModeTypedByHandIsBroughtIntoRange)
{
    SaveSetting(u"Settings"_s, u"ViewMode"_s, u"77"_s);
    open();
    EXPECT_EQ(list().viewMode(), ViewMode::Details);
}

TEST_F(Window, StatusTextsAreStoredAtOnceAndPaintedAtTheScreensPace)
{
    open();
    StatusBar &bar = window->statusPanels();
    QTest::qWait(60);
    const int before = bar.paints();
    QElapsedTimer elapsed;
    elapsed.start();
    for (int i = 0; i < 20000; ++i) {
        window->setStatusText(u"Checking %1"_s.arg(i));
        if (i % 100 == 0)
            QCoreApplication::processEvents();
    }
    EXPECT_EQ(bar.panelText(StatusBar::Progress), u"Checking 19999"_s);
    const qint64 took = elapsed.elapsed();
    EXPECT_LT(took, 1000);
    EXPECT_LE(bar.paints() - before, took / 30 + 1);
    QTest::qWait(60);
    EXPECT_EQ(bar.findChild<QWidget *>(u"sbPanelProgress"_s)->accessibleDescription(), u"Checking 19999"_s);
}

TEST(TerminalEchoTest, TellsEverythingButFloods)
{
    QStringList lines;
    {
        TerminalEcho echo([&](const QString &line) { lines << line; });
        for (int i = 0; i < 1000; ++i)
            echo.status(u"Pinging %1"_s.arg(i));
        EXPECT_EQ(lines, QStringList(u"Status: Pinging 0"_s));
        echo.event(u"one\nline"_s);
        echo.announcement(u"Hello"_s);
        echo.announcement({});
        EXPECT_EQ(lines.mid(1),
            QStringList({ u"Status: Pinging 999"_s, u"Event: one line"_s, u"Announcement: Hello"_s }));
        lines.clear();
        echo.status(u"a"_s);
        echo.status(u"b"_s);
        QTest::qWait(400);
        EXPECT_EQ(lines, QStringList(u"Status: b"_s)) << "the last of a burst is told by itself";
        lines.clear();
        echo.status(u"c"_s);
    }
    EXPECT_EQ(lines, QStringList(u"Status: c"_s)) << "and at the end";
}

TEST_F(Window, EchoesWhatItShows)
{
    QStringList lines;
    TerminalEcho echo([&](const QString &line) { lines << line; });
    open(nullptr, &echo);
    window->setStatusText(u"Check in progress..."_s);
    window->setAnnouncement(u"All is well."_s);
    WriteLog(u"text"_s, u"Failure"_s, 0, 0);
    EXPECT_EQ(lines,
        QStringList({ u"Status: Check in progress..."_s, u"Announcement: All is well."_s,
            u"Event: "_s + GeneralDate(world.now) + u" Failure...text"_s }));
    DesktopDialogs headless(&echo);
    EXPECT_EQ(headless.messageBox(u"Really?"_s, u"Kavro"_s, Dialogs::Question, Dialogs::YesNoCancel),
        Dialogs::AnswerCancel);
    EXPECT_EQ(lines.last(), u"Message: Kavro: Really?"_s);
    window.reset();
}

TEST_F(Window, TrayFollows)
{
    open();
    EXPECT_EQ(window->tray().Tip(), u"Kavro_2000 - Monitoring OFF."_s);
    trigger("mnuMonitoringOn");
    trigger("mnuMonitoringOff");
    EXPECT_EQ(window->tray().Tip(), u"Kavro_2000 - Monitoring OFF."_s);
    window->showMinimized();
    QTest::qWait(20);
    EXPECT_TRUE(window->isVisible()) << "without a tray host it minimises normally";
    trigger("mnuSysTrayRestore");
    EXPECT_FALSE(window->isMinimized());
}

TEST_F(Window, ClosesFromTheTrayWhileHidden)
{
    open();
    window->hide();
    QSignalSpy closed(window.get(), &frmMain::closed);
    world.dialogs.expect(question, Dialogs::AnswerYes);
    trigger("mnuSysTrayExit");
    EXPECT_EQ(closed.count(), 1);
}

TEST(Splash, TellsStatusAndVersion)
{
    frmSplash splash;
    splash.setStatus(u"Loading Database"_s);
    EXPECT_EQ(splash.status(), u"Loading Database"_s);
    EXPECT_EQ(splash.version(), u"Version 2.0.0"_s);
}

TEST(Instance, OneCopyPerUserUntilItEndsHoweverItEnds)
{
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t other = fork();
    if (other == 0) {
        InstanceLock lock;
        const char got = lock.acquire() ? 'y' : 'n';
        [[maybe_unused]] const auto written = write(ready[1], &got, 1);
        pause();
        _exit(0);
    }
    char got = 0;
    ASSERT_EQ(read(ready[0], &got, 1), 1);
    EXPECT_EQ(got, 'y');
    InstanceLock lock;
    EXPECT_FALSE(lock.acquire());
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    EXPECT_TRUE(lock.acquire());
    EXPECT_TRUE(QFile::exists(home.path() + u"/kavro2000/instance.lock"_s));
    close(ready[0]);
    close(ready[1]);
}

TEST_F(Window, ATerminationSignalClosesWithoutAQuestion)
{
    open();
    TerminationSignals catcher;
    QObject::connect(&catcher, &TerminationSignals::received, window.get(), &frmMain::closeWithoutQuestion);
    QSignalSpy closed(window.get(), &frmMain::closed);
    raise(SIGTERM);
    EXPECT_TRUE(closed.wait(1000));
    EXPECT_EQ(loggedEvents(), QStringList(u"Information|Program Stopped."_s));
}
