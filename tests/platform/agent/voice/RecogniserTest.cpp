// Synthetic voices say the program's commands, and things that are none.
#include "platform/agent/voice/Listener.h"
#include "platform/agent/voice/Recogniser.h"

#include "tests/platform/agent/voice/SyntheticVoices.h"
#include "tests/world/NetTest.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;
using agent::Commands;
using agent::Recogniser;
using agent::UserInput;

namespace {

Commands programCommands()
{
    Commands commands;
    commands.add({ u"Monitoring Status"_s, u"Monitoring &Status"_s, QString() });
    commands.add({ u"Show Log File"_s, u"Show &Log File"_s, u"(show|display) log file"_s });
    commands.add({ u"Show HTML Output"_s, u"Show &HTML Output"_s, u"(show|display) HTML Output"_s });
    commands.add({ u"Restore"_s, u"&Restore Program"_s, u"(Restore|Restore Program)"_s });
    commands.add({ u"Minimize"_s, u"&Minimize Program"_s, u"(Minimize|Minimize Program)"_s });
    return commands;
}

struct Timing {
    double worstSlice = 0;
    double total = 0;
};

/** Feeds the sound as a microphone delivers it. */
UserInput hear(Recogniser &recogniser, const QByteArray &sound, Timing *timing = nullptr)
{
    constexpr qsizetype kSlice = 640 * 2; // 40 ms
    Timing taken;
    const auto timed = [&](const std::function<void()> &step) {
        const double before = workedMs();
        step();
        const double ms = workedMs() - before;
        taken.worstSlice = std::max(taken.worstSlice, ms);
        taken.total += ms;
    };
    timed([&] { recogniser.begin(); });
    for (qsizetype at = 0; at < sound.size(); at += kSlice)
        timed([&] { recogniser.add(QByteArrayView(sound).sliced(at, qMin(kSlice, sound.size() - at))); });
    UserInput input;
    timed([&] { input = recogniser.end(); });
    if (timing)
        *timing = taken;
    return input;
}

QByteArray made(const std::function<double(int)> &sample)
{
    QByteArray sound;
    for (int i = 0; i < 2 * Recogniser::kSampleRate; ++i) {
        const auto value = qint16(sample(i));
        sound.append(reinterpret_cast<const char *>(&value), sizeof value);
    }
    return sound;
}

} // namespace

TEST(Recogniser, UnderstandsEveryCommandOfThreeVoices)
{
    const struct {
        QString command;
        QStringList phrases;
    } rows[] = {
        { u"Show Log File"_s, { u"show log file"_s, u"display log file"_s } },
        { u"Show HTML Output"_s, { u"show html output"_s, u"display html output"_s } },
        { u"Restore"_s, { u"restore"_s, u"restore program"_s } },
        { u"Minimize"_s, { u"minimize"_s, u"minimize program"_s } },
    };
    Recogniser recogniser;
    recogniser.prepare(programCommands());
    ASSERT_EQ(recogniser.problem(), QString());
    EXPECT_TRUE(recogniser.missingWords().isEmpty());
    Timing worst;
    for (const auto &row : rows) {
        int right = 0, all = 0;
        for (const QString &voice : syntheticVoices()) {
            for (const double speed : { 0.9, 1.0, 1.15 }) {
                // The phrases take turns, so that each command is said nine times and in all its ways.
                const QString phrase = row.phrases.at(all % row.phrases.size());
                const QByteArray sound = spokenBy(voice, phrase, speed);
                ASSERT_FALSE(sound.isEmpty()) << qPrintable(voice);
                Timing timing;
                const UserInput input = hear(recogniser, sound, &timing);
                worst.worstSlice = std::max(worst.worstSlice, timing.worstSlice);
                worst.total = std::max(worst.total, timing.total);
                ++all;
                right += input.name == row.command;
                if (input.name != row.command)
                    std::printf("  missed: %s by %s at %.2f: \"%s\" %d\n", qPrintable(phrase), qPrintable(voice), speed,
                                qPrintable(input.voice), input.confidence);
            }
        }
        std::printf("%s: %d of %d\n", qPrintable(row.command), right, all);
        EXPECT_EQ(all, 9);
        EXPECT_GE(right, 8) << qPrintable(row.command);
    }
    std::printf("longest slice %.1f ms, longest utterance %.1f ms in all\n", worst.worstSlice, worst.total);
}

TEST(Recogniser, NoiseIsNoCommandAndFewSentencesAre)
{
    Recogniser recogniser;
    recogniser.prepare(programCommands());
    QRandomGenerator random(7);
    const struct {
        const char *name;
        QByteArray sound;
    } noises[] = {
        { "nothing", QByteArray() },
        { "silence", made([](int) { return 0; }) },
        { "hum", made([&](int) { return random.bounded(-6, 6); }) },
        { "noise", made([&](int) { return random.bounded(-9000, 9000); }) },
        { "tone", made([](int i) { return 9000 * std::sin(i * 0.17); }) },
        { "clicks", made([](int i) { return i % 4000 < 4 ? 30000 : 0; }) },
    };
    for (const auto &noise : noises)
        EXPECT_EQ(hear(recogniser, noise.sound).name, QString()) << noise.name;

    const QStringList sentences{
        u"what is for lunch"_s, u"I will be back in five minutes"_s, u"did you see the game yesterday"_s, u"good night"_s,
        u"please close the door"_s, u"send me the report"_s, u"the printer is out of paper"_s, u"who is there"_s,
        u"we should restart the router"_s, u"a little more to the left"_s, u"nothing works today"_s, u"hello"_s,
    };
    int accepted = 0, all = 0;
    for (const QString &sentence : sentences) {
        for (const QString &voice : syntheticVoices()) {
            const UserInput input = hear(recogniser, spokenBy(voice, sentence, 1));
            ++all;
            accepted += !input.name.isEmpty();
            if (!input.name.isEmpty())
                std::printf("  taken for %s: \"%s\" by %s, %d\n", qPrintable(input.name), qPrintable(sentence),
                            qPrintable(voice), input.confidence);
        }
    }
    std::printf("%d of %d sentences taken for commands\n", accepted, all);
    EXPECT_LE(accepted, all / 6);
}

TEST(Recogniser, SaysWhatItUnderstoodWhenUnsure)
{
    Recogniser recogniser;
    Commands commands;
    commands.add({ u"Restart"_s, QString(), u"restart every service [now]"_s });
    recogniser.prepare(commands);
    const UserInput right = hear(recogniser, spokenBy(u"flite slt"_s, u"restart every service now"_s, 1));
    EXPECT_EQ(right.name, u"Restart"_s);
    EXPECT_EQ(right.voice, u"restart every service now"_s);
    EXPECT_GE(right.confidence, Recogniser::kConfidenceLimit);
    const UserInput wrong = hear(recogniser, spokenBy(u"flite slt"_s, u"we sat in the garden until it was dark"_s, 1));
    EXPECT_EQ(wrong.name, QString());
    EXPECT_LT(wrong.confidence, Recogniser::kConfidenceLimit);
}

TEST(Recogniser, GrammarsOfEveryKindWork)
{
    Recogniser recogniser;
    Commands commands;
    commands.add({ u"mail"_s, QString(), u"[...] check mail [...]"_s });
    commands.add({ u"ports"_s, QString(), u"port (one|two|8)+ [[please]*]"_s });
    commands.add({ u"strange"_s, QString(), u"(start|begin) Kavroquux"_s });
    commands.add({ u"foreign"_s, QString(), u"\u00fcber (na\u00efve|caf\u00e9|\u4e2d)"_s });
    commands.add({ u"spelled"_s, QString(), u"Kavro\\monitor status"_s });
    recogniser.prepare(commands);
    ASSERT_EQ(recogniser.problem(), QString());
    EXPECT_TRUE(recogniser.missingWords().contains(u"kavroquux"_s));
    const struct {
        QString said, command;
    } rows[] = {
        { u"would you check mail now please"_s, u"mail"_s }, { u"port one two eight please"_s, u"ports"_s },
        { u"monitor status"_s, u"spelled"_s },
    };
    for (const auto &row : rows)
        EXPECT_EQ(hear(recogniser, spokenBy(u"flite slt"_s, row.said, 1)).name, row.command) << qPrintable(row.said);
}

TEST(Recogniser, IsReadyAtOnce)
{
    Commands commands = programCommands();
    const double before = workedMs();
    Recogniser recogniser;
    recogniser.prepare(commands);
    const double first = workedMs() - before;
    recogniser.prepare(commands);
    const double again = workedMs() - before - first;
    std::printf("ready in %.1f ms, for the same commands %.2f ms\n", first, again);
    EXPECT_LT(first, 150);
    EXPECT_LT(again, 5);
}

TEST(Listener, SaysWhyItCannotListen)
{
    qputenv("PULSE_SERVER", "unix:/nonexistent"); // whatever this machine has
    const auto failure = [](const Commands &commands, const QString &models) {
        agent::Listener listener(nullptr, models);
        QStringList told;
        QObject::connect(&listener, &agent::Listener::failed, &listener, [&](const QString &text) { told.append(text); });
        QObject::connect(&listener, &agent::Listener::understood, &listener, [&] { told.append(u"understood"_s); });
        listener.start(commands);
        EXPECT_FALSE(listener.isListening());
        listener.stop();
        turnUntil([] { return false; }, 30);
        return told;
    };
    EXPECT_EQ(failure(programCommands(), QString()), QStringList(u"There is no microphone."_s));
    EXPECT_EQ(failure(programCommands(), u"/nonexistent"_s),
              QStringList(u"Voice commands need the package pocketsphinx-en-us."_s));
    EXPECT_EQ(failure(Commands(), QString()), QStringList(u"There is no command that can be spoken."_s));

    // A dictionary alone is no model.
    QTemporaryDir folder;
    QFile file(folder.filePath(u"cmudict-en-us.dict"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("show SH OW\n") > 0);
    EXPECT_EQ(failure(programCommands(), folder.path()),
              QStringList(u"Voice commands need the package pocketsphinx-en-us."_s));
    Commands strange;
    strange.add({ u"x"_s, QString(), u"kavroquux [please]"_s });
    EXPECT_EQ(failure(strange, QString()),
              QStringList(u"The voice commands cannot be understood. Words that are not in the dictionary: kavroquux."_s));
}
