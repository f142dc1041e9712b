// Players on a machine that may have a sound device or not; nothing here depends on it.
#include "platform/agent/speech/SpeechPlayer.h"

#include "tests/world/NetTest.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;
using agent::SpeechPlayer;
using agent::Voice;

namespace {

/** Notes what a player tells. */
class Notes : public QObject
{
public:
    explicit Notes(SpeechPlayer &player)
    {
        connect(&player, &SpeechPlayer::wordShown, this, [this](int count) { words.append(count); });
        connect(&player, &SpeechPlayer::mouthChanged, this, [this](int shape) { mouth.append(shape); });
        connect(&player, &SpeechPlayer::bookmark, this, [this](int number) { bookmarks.append(number); });
        connect(&player, &SpeechPlayer::finished, this, [this] { ++finished; });
    }
    QList<int> words, mouth, bookmarks;
    int finished = 0;
};

/** Milliseconds until the player is done. */
qint64 playOut(SpeechPlayer &player, Notes &notes)
{
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(turnUntil([&] { return notes.finished > 0; }, 20'000));
    EXPECT_FALSE(player.isSpeaking());
    return clock.elapsed();
}

int durationOf(const QString &text)
{
    agent::Speech speech(text, Voice(), agent::SpeechEngine::shared());
    int ms = 0;
    while (!speech.atEnd())
        ms += speech.next().duration();
    return ms;
}

} // namespace

TEST(SpeechPlayer, TellsWordsMouthAndBookmarksInTime)
{
    const QString text = u"Hello there. \\mrk=4\\Server \\map=\"ONE\"=\"one\"\\ failed.\\pau=300\\"_s;
    SpeechPlayer player;
    Notes notes(player);
    player.start(text, Voice());
    EXPECT_TRUE(player.isSpeaking());
    EXPECT_EQ(player.words(), QStringList({ u"Hello"_s, u"there."_s, u"Server"_s, u"one"_s, u"failed."_s }));
    const int expected = durationOf(text);
    EXPECT_NEAR(double(playOut(player, notes)), expected, 400);
    EXPECT_EQ(notes.words, QList<int>({ 1, 2, 3, 4, 5 }));
    EXPECT_EQ(notes.bookmarks, QList<int>({ 4 }));
    EXPECT_GT(notes.mouth.size(), 10);
    EXPECT_EQ(notes.mouth.last(), 0);
    EXPECT_EQ(notes.finished, 1);
}

TEST(SpeechPlayer, StopsAtOnceAndSpeaksAgain)
{
    SpeechPlayer player;
    Notes notes(player);
    player.start(u"Something long that is never spoken to its end because it is cut off"_s, Voice());
    ASSERT_TRUE(turnUntil([&] { return notes.words.size() >= 3 && notes.mouth.last() != 0; }));
    player.stop();
    EXPECT_EQ(notes.mouth.last(), 0);
    EXPECT_FALSE(player.isSpeaking());
    const qsizetype words = notes.words.size(), shapes = notes.mouth.size();
    turnUntil([] { return false; }, 300);
    EXPECT_EQ(notes.words.size(), words);
    EXPECT_EQ(notes.mouth.size(), shapes);
    EXPECT_EQ(notes.finished, 0);
    player.stop();
    player.start(u"Hi"_s, Voice());
    playOut(player, notes);
    EXPECT_EQ(notes.words.last(), 1);
}

TEST(SpeechPlayer, ReceiversMayStopStartAndDelete)
{
    auto player = std::make_unique<SpeechPlayer>();
    Notes notes(*player);
    QStringList log;
    QObject context;
    QObject::connect(player.get(), &SpeechPlayer::wordShown, &context, [&](int) {
        log.append(player->words().join(u' '));
        if (log.size() == 1)
            player->start(u"second text"_s, Voice());
        else if (log.size() == 2)
            player->stop();
    });
    player->start(u"first text"_s, Voice());
    turnUntil([&] { return log.size() >= 2; });
    turnUntil([] { return false; }, 400);
    EXPECT_EQ(log, QStringList({ u"first text"_s, u"second text"_s }));
    QObject::connect(player.get(), &SpeechPlayer::finished, &context, [&] {
        if (notes.finished < 3)
            player->start(u"x"_s, Voice());
    });
    player->start(u"\\map=\"\"=\"\"\\"_s, Voice()); // nothing to say is said at once
    EXPECT_TRUE(turnUntil([&] { return notes.finished == 3; }));
    player->start(u"and gone"_s, Voice());
    turnUntil([&] { return log.size() > 4; }, 200);
    player.reset();
}

TEST(SpeechPlayer, TwoAtOnceKeepThePaceOfOne)
{
    const QString text = u"Both of us say the same"_s;
    SpeechPlayer first, second;
    Notes one(first), two(second);
    first.start(text, Voice());
    second.start(text, Voice());
    EXPECT_NEAR(double(playOut(first, one)), durationOf(text), 400);
    turnUntil([&] { return two.finished > 0; }, 500);
    EXPECT_EQ(one.words, two.words);
    EXPECT_EQ(one.mouth, two.mouth);
}

TEST(SpeechPlayer, WithoutVoiceItKeepsACalmPace)
{
    agent::SpeechEngine none(u"/nonexistent"_s);
    SpeechPlayer player(nullptr, none);
    Notes notes(player);
    player.start(u"Nobody hears these words."_s, Voice());
    const qint64 ms = playOut(player, notes);
    EXPECT_GT(ms, 1000);
    EXPECT_LT(ms, 2600);
    EXPECT_EQ(notes.words, QList<int>({ 1, 2, 3, 4 }));
    EXPECT_EQ(notes.mouth.last(), 0);
}

TEST(SpeechPlayer, ALongTextLeavesTheLoopFree)
{
    SpeechPlayer player;
    Notes notes(player);
    const double before = workedMs();
    player.start(u"Device server number 12 failed because of a time out, says the 1st check. "_s.repeated(1350), Voice());
    const double start = workedMs() - before;
    EXPECT_EQ(player.words().size(), 1350 * 14);
    double longest = 0, last = workedMs();
    turnUntil([&] {
        const double now = workedMs();
        longest = std::max(longest, now - last);
        last = now;
        return false;
    }, 3000);
    std::printf("100 kB: start %.1f ms; longest turn of the loop %.1f ms of work\n", start, longest);
    EXPECT_LT(longest, 100);
    EXPECT_LT(start, 200);
    EXPECT_GT(notes.words.size(), 3);
    EXPECT_LT(notes.words.last(), 40) << "only what had its time is told";
    player.stop();
}
