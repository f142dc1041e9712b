#include "tests/platform/agent/window/Stage.h"

#include "platform/agent/window/CommandMenu.h"

#include <QApplication>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace agent;

namespace {

/** What users do with mouse and keyboard. */
class Hands : public Stage
{
protected:
    Hands()
    {
        enter();
        one().MoveTo(300, 200, 0);
        run(100);
        told();
    }
    void press(const QPoint &at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(window(), button, {}, at);
    }
    /** Moves the pointer to a place of the window, as it stands now. */
    void pull(const QPoint &to)
    {
        const QPointF place(to);
        QMouseEvent event(
            QEvent::MouseMove, place, window()->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(window(), &event);
    }
    void drop(const QPoint &at) { QTest::mouseRelease(window(), Qt::LeftButton, Qt::ControlModifier, at); }
    CommandMenu *openMenu()
    {
        press({ 50, 60 }, Qt::RightButton);
        return qobject_cast<CommandMenu *>(QApplication::activePopupWidget());
    }
};

} // namespace

TEST_F(Hands, APressOfTheButtonIsAClickAndALongWayIsADrag)
{
    press({ 50, 60 });
    pull({ 52, 61 });
    drop({ 52, 61 });
    pulse->advance(0);
    EXPECT_EQ(told(), QStringList({ u"click 1 2"_s }));
    EXPECT_EQ(one().position(), QPoint(300, 200));

    press({ 50, 60 });
    pull({ 90, 80 }); // 40 right, 20 down; the window follows, so that the pointer is where it was in it
    EXPECT_EQ(one().position(), QPoint(340, 220));
    pull({ 60, 60 });
    drop({ 50, 60 });
    pulse->advance(0);
    EXPECT_EQ(one().position(), QPoint(350, 220));
    EXPECT_EQ(told(), QStringList({ u"drag"_s, u"dropped at 400,280"_s, u"moved to 350,220: user"_s }));
    EXPECT_EQ(one().moveCause(), MoveCause::User);
}

TEST_F(Hands, ADragGoesBeforeAMoveAndTheQueueGoesOn)
{
    named(u"move"_s, one().MoveTo(10, 10, 1000));
    named(u"move again"_s, one().MoveTo(20, 20, 0));
    named(u"wave"_s, one().Play(u"Wave"_s));
    pulse->advance(400);
    const QPoint underWay = one().position();
    EXPECT_NE(underWay, QPoint(300, 200));
    press({ 50, 60 });
    pull({ 100, 100 });
    run(1500);
    EXPECT_EQ(one().position(), underWay + QPoint(50, 40));
    drop({ 50, 60 });
    pulse->advance(0);
    EXPECT_EQ(told().filter(QRegularExpression(u"^drag|:"_s)),
        QStringList({ u"drag"_s, u"move: failed 80042010"_s, u"move again: failed 80042010"_s,
            u"wave: complete"_s, u"moved to %1,%2: user"_s.arg(underWay.x() + 50).arg(underWay.y() + 40) }));
}

TEST_F(Hands, TheBalloonFollowsAndATouchSendsAForgottenOneAway)
{
    one().setBalloonStyle(BalloonOn | SizeToText);
    one().Speak(u"hello there"_s);
    pulse->advance(10);
    const QPoint offset = balloon()->pos() - window()->pos();
    press({ 50, 60 });
    pull({ 90, 80 });
    EXPECT_EQ(balloon()->pos() - window()->pos(), offset);
    EXPECT_TRUE(balloon()->isVisible()); // it is still talking
    drop({ 50, 60 });
    run(1000);
    EXPECT_TRUE(balloon()->isVisible());
    press({ 50, 60 });
    drop({ 50, 60 });
    pulse->advance(0);
    EXPECT_FALSE(balloon()->isVisible());
}

TEST_F(Hands, TheMenuShowsTheCommandsAndIsWorkedByKeys)
{
    Commands &commands = one().commands();
    commands.caption = u"Kavro 2.0"_s;
    commands.add({ u"Status"_s, u"Monitoring &Status"_s, {} });
    commands.add({ u"Log"_s, u"Show &Log File"_s, {} });
    commands.add({ u"Greyed"_s, u"&Greyed"_s, {}, false });
    commands.add({ u"Secret"_s, u"Secret"_s, {}, true, false });
    commands.add({ u"Voice only"_s, {}, u"speak"_s });
    commands.defaultName = u"log"_s;

    CommandMenu *menu = openMenu();
    ASSERT_TRUE(menu);
    QStringList entries;
    for (const QAction *action : menu->actions())
        entries
            += action->isSeparator() ? u"-"_s : action->text() + (action->isEnabled() ? u""_s : u" (off)"_s);
    EXPECT_EQ(entries,
        QStringList(
            { u"&Hide"_s, u"-"_s, u"Monitoring &Status"_s, u"Show &Log File"_s, u"&Greyed (off)"_s }));
    EXPECT_EQ(menu->defaultAction()->text(), u"Show &Log File"_s);
    EXPECT_FALSE(window()->isActiveWindow());

    QTest::keyClick(menu, Qt::Key_L);
    pulse->advance(0);
    EXPECT_EQ(told(), QStringList({ u"command 'Log' from one, '', 100"_s }));
    EXPECT_FALSE(QApplication::activePopupWidget());

    // What changes shows at the next opening.
    commands.remove(u"Status"_s);
    menu = openMenu();
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    pulse->advance(0);
    EXPECT_EQ(told(), QStringList({ u"command 'Log' from one, '', 100"_s }));
}

TEST_F(Hands, HidingByTheMenuCutsShortWhatIsSaid)
{
    named(u"speak"_s, one().Speak(u"a long story"_s));
    named(u"wave"_s, one().Play(u"Wave"_s));
    named(u"show"_s, one().Show(true));
    pulse->advance(0);
    QTest::keyClick(openMenu(), Qt::Key_H);
    run(1000);
    QStringList events = told();
    EXPECT_TRUE(events.removeOne(u"request of kind 1 begins"_s)); // the user's own request
    EXPECT_TRUE(events.removeOne(u"request of kind 1: complete"_s));
    EXPECT_EQ(events,
        QStringList({ u"speak begins"_s, u"balloon"_s, u"no balloon"_s, u"speak: interrupted 8004210d"_s,
            u"hidden: user hid"_s, u"wave begins"_s, u"wave: failed 8004200a"_s, u"show begins"_s,
            u"shown: program showed"_s, u"show: complete"_s }));
}

TEST_F(Hands, ItNeverTakesTheFocusAndStaysOnTop)
{
    for (const QWidget *widget : { static_cast<QWidget *>(window()), static_cast<QWidget *>(balloon()) }) {
        EXPECT_TRUE(widget->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
        EXPECT_TRUE(widget->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        EXPECT_TRUE(widget->windowFlags().testFlag(Qt::FramelessWindowHint));
        EXPECT_EQ(widget->focusPolicy(), Qt::NoFocus);
        EXPECT_FALSE(widget->testAttribute(Qt::WA_QuitOnClose));
    }
    EXPECT_EQ(window()->accessibleName(), u"One"_s);
    EXPECT_EQ(window()->accessibleDescription(), u"A box with an arm."_s);
}

TEST_F(Hands, IsKeptOnAScreen)
{
    const QRect area = QApplication::primaryScreen()->availableGeometry();
    one().MoveTo(30'000, -400, 0);
    pulse->advance(0);
    EXPECT_EQ(one().position(), QPoint(area.right() + 1 - 100, area.top()));
    told();

    // The screen has become smaller meanwhile: it stands outside now.
    press({ 50, 60 });
    pull({ 140, 60 });
    drop({ 50, 60 });
    pulse->advance(0);
    EXPECT_FALSE(area.contains(window()->geometry()));
    told();
    emit QApplication::primaryScreen()->availableGeometryChanged(area);
    pulse->advance(0);
    EXPECT_EQ(
        told(), QStringList({ u"moved to %1,%2: system"_s.arg(area.right() + 1 - 100).arg(area.top()) }));
    EXPECT_EQ(one().moveCause(), MoveCause::System);
}

TEST_F(Hands, ListensWhileTheKeyIsHeldAndTellsWhatItUnderstood)
{
    named(u"speak"_s, one().Speak(u"a long story"_s));
    named(u"wave"_s, one().Play(u"Wave"_s));
    pulse->advance(0);
    one().Listen(true);
    one().Listen(true);
    pulse->advance(5'000);
    EXPECT_TRUE(ear->listening);
    EXPECT_EQ(balloon()->text(), u"Listening…"_s);
    EXPECT_EQ(told(),
        QStringList({ u"speak begins"_s, u"balloon"_s, u"no balloon"_s, u"speak: interrupted 8004210a"_s,
            u"balloon"_s, u"listens"_s }));
    one().Listen(false);
    EXPECT_FALSE(ear->listening);
    emit ear->understood({ u"Log"_s, {}, u"show log file"_s, 80 });
    pulse->advance(0);
    EXPECT_EQ(balloon()->text(), u"I understood “show log file”."_s);
    run(3'000);
    EXPECT_EQ(told(),
        QStringList({ u"no balloon"_s, u"balloon"_s, u"has listened"_s,
            u"command 'Log' from one, 'show log file', 80"_s, u"wave begins"_s, u"wave: complete"_s }));
}

TEST_F(Hands, ListeningSaysSoWhenThereIsNoMicrophoneOrNoAnswer)
{
    one().Hide(true);
    run(100);
    one().Listen(true);
    EXPECT_TRUE(window()->isVisible());
    emit ear->failed(u"There is no microphone."_s);
    EXPECT_EQ(balloon()->text(), u"There is no microphone."_s);
    EXPECT_EQ(balloon()->shownText(), balloon()->text());
    one().Listen(false); // comes too late, and means nothing
    run(5'000);
    EXPECT_FALSE(balloon()->isVisible());

    one().Listen(true);
    one().Listen(false);
    pulse->advance(16'000);
    EXPECT_EQ(balloon()->text(), u"I did not hear a command."_s);
    emit ear->understood({ u"Log"_s, {}, u"show log file"_s, 80 }); // too late
    pulse->advance(0);
    EXPECT_FALSE(told().last().startsWith(u"command"_s));
}
