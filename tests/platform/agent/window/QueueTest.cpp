#include "tests/platform/agent/window/Stage.h"

#include <QApplication>
#include <QFile>

#include <set>

using namespace Qt::StringLiterals;
using namespace agent;

namespace {

using Queue = Stage;

ErrorNumber numberOf(const std::function<void()> &call)
{
    try {
        call();
    } catch (const Error &error) {
        EXPECT_FALSE(error.text().isEmpty());
        return error.number();
    }
    return ErrorNumber::None;
}

} // namespace

TEST_F(Queue, WorksStrictlyInOrderWithoutWaiting)
{
    control->Load(u"one"_s, u"one.acs"_s);
    named(u"show"_s, one().Show());
    named(u"move"_s, one().MoveTo(300, 200, 500));
    named(u"wave"_s, one().Play(u"wAVE"_s));
    named(u"speak"_s, one().Speak(u"all is well"_s));
    named(u"hide"_s, one().Hide());
    EXPECT_TRUE(told().isEmpty()); // nothing happens before the event loop runs
    run();
    EXPECT_EQ(told(),
        QStringList({ u"show begins"_s, u"shown: program showed"_s, u"show: complete"_s, u"move begins"_s,
            u"moved to 300,200: program"_s, u"move: complete"_s, u"wave begins"_s, u"wave: complete"_s,
            u"speak begins"_s, u"balloon"_s, u"speak: complete"_s, u"hide begins"_s, u"no balloon"_s,
            u"hidden: program hid"_s, u"hide: complete"_s }));
    EXPECT_TRUE(pulse->isAsleep());
    EXPECT_EQ(one().position(), QPoint(300, 200));
    EXPECT_EQ(one().visibilityCause(), VisibilityCause::ProgramHid);
    EXPECT_EQ(one().moveCause(), MoveCause::Program);
}

TEST_F(Queue, TakesTheTimeThatItsMovementsTake)
{
    enter();
    const RequestPtr wave = one().Play(u"Wave"_s), again = one().Play(u"Wave"_s);
    pulse->advance(399);
    EXPECT_EQ(wave->status, Request::Status::InProgress);
    EXPECT_EQ(again->status, Request::Status::Pending);
    pulse->advance(40);
    EXPECT_EQ(wave->status, Request::Status::Complete);
    // First the way back to rest, then the same once more.
    pulse->advance(400);
    EXPECT_EQ(again->status, Request::Status::InProgress);
    pulse->advance(300);
    EXPECT_EQ(again->status, Request::Status::Complete);
}

TEST_F(Queue, WhatFailsIsToldByTheRequestAndTheQueueGoesOn)
{
    control->Load(u"one"_s, u"one.acs"_s);
    EXPECT_EQ(numberOf([this] { one().Play(u"Fly"_s); }), ErrorNumber::UnknownAnimation);
    EXPECT_EQ(numberOf([this] { one().setBalloonStyle(BalloonOn | 3 << 16); }), ErrorNumber::BadData);
    named(u"speak"_s, one().Speak(u"nobody hears"_s));
    named(u"think"_s, one().Think(u"nobody sees"_s));
    named(u"play"_s, one().Play(u"Wave"_s));
    named(u"gesture"_s, one().GestureAt(0, 0));
    named(u"walk"_s, one().MoveTo(10, 10));
    named(u"jump"_s, one().MoveTo(20, 30, 0));
    named(u"hide"_s, one().Hide());
    named(u"show"_s, one().Show(true));
    named(u"show again"_s, one().Show());
    named(u"left"_s, one().GestureAt(700, 60));
    named(u"same place"_s, one().MoveTo(20, 30));
    run(1000);
    EXPECT_EQ(told(),
        QStringList({ u"speak begins"_s, u"speak: failed 8004200a"_s, u"think begins"_s,
            u"think: failed 8004200a"_s, u"play begins"_s, u"play: failed 8004200a"_s, u"gesture begins"_s,
            u"gesture: failed 8004200a"_s, u"walk begins"_s, u"walk: failed 8004200a"_s, u"jump begins"_s,
            u"moved to 20,30: program"_s, u"jump: complete"_s, u"hide begins"_s, u"hide: complete"_s,
            u"show begins"_s, u"shown: program showed"_s, u"show: complete"_s, u"show again begins"_s,
            u"show again: complete"_s, u"left begins"_s, u"left: failed 80042004"_s, u"same place begins"_s,
            u"same place: complete"_s }));
}

TEST_F(Queue, StopEmptiesItButFinishesAShowThatHasBegun)
{
    control->Load(u"one"_s, u"one.acs"_s);
    named(u"show"_s, one().Show());
    named(u"wave"_s, one().Play(u"Wave"_s));
    pulse->advance(100);
    one().Stop();
    run(1000);
    EXPECT_EQ(told(),
        QStringList({ u"show begins"_s, u"shown: program showed"_s, u"wave: interrupted 80042108"_s,
            u"show: complete"_s }));

    // A movement without end holds the queue until it is stopped.
    const RequestPtr search = named(u"search"_s, one().Play(u"Search"_s));
    named(u"speak"_s, one().Speak(u"found it"_s));
    const RequestPtr removed = named(u"wave"_s, one().Play(u"Wave"_s));
    pulse->advance(10'000);
    EXPECT_EQ(search->status, Request::Status::InProgress);
    one().Stop(removed);
    one().Stop(search);
    one().Stop(search); // long gone
    run(2000);
    EXPECT_EQ(told(),
        QStringList({ u"search begins"_s, u"wave: interrupted 80042108"_s, u"search: interrupted 80042108"_s,
            u"speak begins"_s, u"balloon"_s, u"speak: complete"_s, u"no balloon"_s }));
    EXPECT_EQ(removed->status, Request::Status::Interrupted);

    named(u"speak"_s, one().Speak(u"a long story about the network"_s));
    pulse->advance(0);
    one().Stop();
    EXPECT_FALSE(speaker->speaking);
    run(1000);
    EXPECT_EQ(
        told().mid(1), QStringList({ u"balloon"_s, u"no balloon"_s, u"speak: interrupted 80042108"_s }));
}

TEST_F(Queue, TwoHundredRequestsAtOnceAreAllDoneInOrder)
{
    enter();
    QStringList expected;
    for (int number = 0; number < 200; ++number) {
        const QString name = QString::number(number);
        if (number % 4 == 0)
            named(name, one().MoveTo(100 + number, 200, 50));
        else if (number % 4 == 1)
            named(name, one().Play(u"Nod"_s));
        else if (number % 4 == 2)
            named(name, one().Speak(u"number %1"_s.arg(number)));
        else
            named(name, one().GestureAt(800, 200)); // fails
        expected
            += { name + u" begins"_s, name + (number % 4 == 3 ? u": failed 80042004"_s : u": complete"_s) };
    }
    run(300'000);
    QStringList requests = told();
    requests.removeIf([](const QString &entry) { return !entry.at(0).isDigit(); });
    EXPECT_EQ(requests, expected);

    // Failing ones cost nothing, yet a beat deals with some of them only: the program must go on meanwhile.
    for (int number = 0; number < 200; ++number)
        named(u"x"_s, one().GestureAt(800, 200));
    const int before = pulse->beats();
    pulse->advance(0);
    EXPECT_EQ(told().count(u"x: failed 80042004"_s), 200);
    EXPECT_GT(pulse->beats() - before, 3);
}

TEST_F(Queue, SpeaksInStepWithTheBalloonAndKeepsAPoseInWhichItCanSpeak)
{
    enter();
    one().Play(u"Wave"_s);
    run(500);
    const QImage waving = window()->picture();
    one().Speak(u"three little words"_s);
    pulse->advance(0);
    EXPECT_EQ(balloon()->accessibleName(), u"One says"_s);
    EXPECT_EQ(balloon()->text(), u"three little words"_s);
    EXPECT_EQ(balloon()->shownText(), QString());
    std::set<qint64> mouths;
    for (const QString &shown : { u"three"_s, u"three little"_s, u"three little words"_s }) {
        speaker->sayWord();
        pulse->advance(40);
        EXPECT_EQ(balloon()->shownText(), shown);
        mouths.insert(window()->picture().cacheKey());
    }
    EXPECT_EQ(mouths.size(), 3u);
    speaker->sayWord();
    pulse->advance(40);
    EXPECT_EQ(window()->picture(), waving); // still, with the mouth of the pose
    EXPECT_TRUE(balloon()->isVisible());
    pulse->advance(1200);
    EXPECT_FALSE(balloon()->isVisible());
}

TEST_F(Queue, ThinksAtAReadersPaceWithoutVoice)
{
    enter();
    named(u"think"_s, one().Think(u"\\Spd=300\\what a \\Mrk=7\\day"_s));
    pulse->advance(0);
    EXPECT_EQ(balloon()->accessibleName(), u"One thinks"_s);
    EXPECT_EQ(balloon()->text(), u"what a day"_s);
    EXPECT_EQ(balloon()->shownText(), u"what"_s);
    pulse->advance(400);
    EXPECT_EQ(balloon()->shownText(), u"what a"_s);
    run(4000);
    EXPECT_EQ(told(),
        QStringList(
            { u"think begins"_s, u"balloon"_s, u"bookmark 7"_s, u"think: complete"_s, u"no balloon"_s }));
    EXPECT_FALSE(speaker);

    one().setBalloonStyle(0);
    named(u"think"_s, one().Think(u"nothing"_s));
    named(u"speak"_s, one().Speak(u"no balloon"_s));
    run(1000);
    EXPECT_EQ(told(),
        QStringList(
            { u"think begins"_s, u"think: failed 8004200c"_s, u"speak begins"_s, u"speak: complete"_s }));
}

TEST_F(Queue, WithoutAutoHideTheBalloonStaysUntilTheNextOneOrAClick)
{
    enter();
    one().setBalloonStyle(BalloonOn | SizeToText | AutoPace);
    one().Speak(u"first"_s);
    run(1000);
    pulse->advance(20'000);
    EXPECT_TRUE(balloon()->isVisible());
    one().Speak(u"one|two|three"_s);
    run(500);
    EXPECT_TRUE(QStringList({ u"one"_s, u"two"_s, u"three"_s }).contains(balloon()->text()));
    emit balloon()->dismissed();
    pulse->advance(0);
    EXPECT_FALSE(balloon()->isVisible());
    one().Speak(u" "_s); // nothing to say, nothing to show
    run(500);
    EXPECT_FALSE(balloon()->isVisible());
}

TEST_F(Queue, CharactersAreLoadedFoundAndUnloadedByIdsWithoutRegardToCase)
{
    EXPECT_EQ(numberOf([this] { control->Load(u"x"_s, u"missing.acs"_s); }), ErrorNumber::FileNotFound);
    Character &first = control->Load(u"Merlin"_s, u"one.acs"_s);
    EXPECT_EQ(control->find(u"MERLIN"_s), &first);
    EXPECT_EQ(first.name(), u"One"_s);
    EXPECT_EQ(numberOf([this] { control->Load(u"merlin"_s, u"one.acs"_s); }), ErrorNumber::AlreadyLoaded);
    Character &second = control->Load(u"other"_s, folder.filePath(u"one.acs"_s));
    EXPECT_NE(&first, &second);
    control->Unload(u"mErlin"_s);
    EXPECT_EQ(control->find(u"Merlin"_s), nullptr);
    EXPECT_EQ(numberOf([this] { control->Unload(u"Merlin"_s); }), ErrorNumber::UnknownCharacter);
}

TEST_F(Queue, AFileReplacedMeanwhileChangesNothingUntilItIsLoadedAgain)
{
    enter();
    writeCharacter(u"one.acs"_s, u"Other"_s);
    one().Play(u"Wave"_s);
    one().Speak(u"still here"_s);
    run(2000);
    EXPECT_EQ(one().name(), u"One"_s);
    EXPECT_TRUE(one().isVisible());
    control->Unload(u"one"_s);
    EXPECT_EQ(control->Load(u"one"_s, u"one.acs"_s).name(), u"Other"_s);
    control->Unload(u"one"_s);
    QFile file(folder.filePath(u"one.acs"_s));
    ASSERT_TRUE(file.resize(file.size() / 2));
    EXPECT_EQ(numberOf([this] { control->Load(u"one"_s, u"one.acs"_s); }), ErrorNumber::BadData);
}

TEST_F(Queue, UnloadingAtAnyMomentIsSafe)
{
    // The k-th event unloads the character, or destroys the control, for every k until the play is over.
    const auto play = [this](int disturbAt, bool destroy) {
        Stage::log.clear();
        control->Load(u"one"_s, u"one.acs"_s);
        int events = 0;
        const auto disturb = [&] {
            if (++events != disturbAt)
                return;
            if (destroy)
                control.reset();
            else
                control->Unload(u"one"_s);
        };
        QObject scope;
        QObject::connect(control.get(), &Control::requestStarted, &scope, disturb);
        QObject::connect(control.get(), &Control::requestCompleted, &scope, disturb);
        QObject::connect(control.get(), &Control::shown, &scope, disturb);
        QObject::connect(control.get(), &Control::hidden, &scope, disturb);
        QObject::connect(control.get(), &Control::moved, &scope, disturb);
        QObject::connect(control.get(), &Control::balloonShown, &scope, disturb);
        QObject::connect(control.get(), &Control::balloonHidden, &scope, disturb);
        one().Show();
        const RequestPtr move = one().MoveTo(50, 60, 200);
        one().Speak(u"good bye"_s);
        const RequestPtr last = one().Hide();
        run(10'000);
        EXPECT_NE(last->status, Request::Status::Pending);
        if (!destroy && disturbAt > 0)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return events;
    };
    const int all = play(0, false);
    control->Unload(u"one"_s);
    ASSERT_GT(all, 10);
    for (int disturbAt = 1; disturbAt <= all; ++disturbAt) {
        EXPECT_EQ(play(disturbAt, false), disturbAt);
        EXPECT_EQ(control->find(u"one"_s), nullptr);
        EXPECT_EQ(play(disturbAt, true), disturbAt);
        makeControl();
    }
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Queue, QuittingWhileTalkingIsSafe)
{
    enter();
    one().Speak(u"and then I said"_s);
    pulse->advance(0);
    EXPECT_TRUE(speaker->speaking);
    control.reset();
    EXPECT_FALSE(speaker);
    EXPECT_EQ(balloon(), nullptr);
}
