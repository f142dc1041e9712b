#include "tests/platform/agent/window/Stage.h"

using namespace Qt::StringLiterals;
using namespace agent;

namespace {

using Idle = Stage;

} // namespace

TEST_F(Idle, GoesIdleAfterHalfAMinuteAndIsMoreAtEaseWithTime)
{
    enter();
    const QImage rest = window()->picture();
    pulse->advance(3'900);
    EXPECT_EQ(pulse->beats(), 1); // the show; then it waits
    pulse->advance(200);
    EXPECT_NE(window()->picture(), rest); // it blinks
    pulse->advance(24'900);
    EXPECT_TRUE(told().isEmpty());
    EXPECT_LT(pulse->beats(), 8 * 12);
    pulse->advance(1'100);
    EXPECT_EQ(told(), QStringList({ u"idle"_s }));
    pulse->advance(700);
    EXPECT_NE(window()->picture(), rest);

    // Two minutes later it sleeps: nothing moves between its movements.
    pulse->advance(120'000);
    const int before = pulse->beats();
    pulse->advance(60'000);
    EXPECT_LT(pulse->beats() - before, 60 * 5);
    const QImage asleep = window()->picture();
    EXPECT_NE(asleep, rest);
    for (int second = 0; second < 30; ++second) {
        pulse->advance(1'000);
        EXPECT_NE(window()->picture(), rest); // it does not wake to fall asleep again
    }
    EXPECT_TRUE(told().isEmpty());

    named(u"speak"_s, one().Speak(u"awake"_s));
    run(1000);
    EXPECT_EQ(told(), QStringList({ u"not idle"_s, u"speak begins"_s, u"balloon"_s, u"speak: complete"_s }));
    pulse->advance(29'000);
    EXPECT_EQ(told(), QStringList({ u"no balloon"_s }));
    pulse->advance(2'000);
    EXPECT_EQ(told(), QStringList({ u"idle"_s }));
}

TEST_F(Idle, HiddenAndSwitchedOffItHasNoTimer)
{
    control->Load(u"one"_s, u"one.acs"_s);
    EXPECT_TRUE(pulse->isAsleep());
    one().setIdleOn(false);
    one().Show();
    run(5'000);
    told();
    EXPECT_TRUE(pulse->isAsleep()); // visible and at rest
    one().setIdleOn(true);
    pulse->advance(31'000);
    EXPECT_EQ(told(), QStringList({ u"idle"_s }));
    one().setIdleOn(false);
    pulse->advance(1'000);
    EXPECT_EQ(told(), QStringList({ u"not idle"_s }));
    EXPECT_TRUE(pulse->isAsleep());
    one().setIdleOn(true);
    one().Hide();
    run(5'000);
    EXPECT_TRUE(pulse->isAsleep());
    EXPECT_FALSE(window()->isVisible());
}

TEST_F(Idle, AHideAskedForInTheEventIsCarriedOut)
{
    enter();
    QObject::connect(
        control.get(), &Control::idleStarted, control.get(), [this] { named(u"hide"_s, one().Hide()); });
    pulse->advance(40'000);
    EXPECT_EQ(told(),
        QStringList(
            { u"idle"_s, u"not idle"_s, u"hide begins"_s, u"hidden: program hid"_s, u"hide: complete"_s }));
    EXPECT_TRUE(pulse->isAsleep());
}

TEST_F(Idle, AHandWakesIt)
{
    enter();
    pulse->advance(31'000);
    emit window()->clicked(1, 0, { 5, 5 });
    pulse->advance(0);
    EXPECT_EQ(told(), QStringList({ u"idle"_s, u"not idle"_s, u"click 1 0"_s }));
    pulse->advance(29'900);
    EXPECT_TRUE(told().isEmpty());
    pulse->advance(200);
    EXPECT_EQ(told(), QStringList({ u"idle"_s }));
}
