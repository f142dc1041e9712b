// What the tags do is measured in the sound.
#include "platform/agent/speech/Mouth.h"
#include "platform/agent/speech/Speech.h"

#include "tests/world/NetTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;
using agent::SpeechEngine;
using agent::SpeechEvent;
using agent::SpokenClause;
using agent::Voice;

namespace {

/** A whole text as one clause. The engine stresses what it has said just before less, so something else is said first. */
SpokenClause say(const QString &text, const Voice &voice = Voice(), SpeechEngine &engine = SpeechEngine::shared())
{
    agent::Speech(u"Well then"_s, voice, engine).next();
    agent::Speech speech(text, voice, engine);
    SpokenClause all;
    while (!speech.atEnd()) {
        SpokenClause clause = speech.next();
        all.sampleRate = clause.sampleRate;
        for (SpeechEvent event : clause.events) {
            event.ms += all.duration();
            all.events.append(event);
        }
        all.sound += clause.sound;
        all.frames += clause.frames;
    }
    return all;
}

std::vector<double> samplesOf(const SpokenClause &clause)
{
    const auto *samples = reinterpret_cast<const qint16 *>(clause.sound.constData());
    return { samples, samples + clause.sound.size() / 2 };
}

double loudness(const SpokenClause &clause)
{
    double sum = 0;
    for (const double sample : samplesOf(clause))
        sum += sample * sample;
    return std::sqrt(sum / double(clause.frames));
}

/** Share of the sound's changes of sign, which noise has more of than voice. */
double hiss(const SpokenClause &clause)
{
    const std::vector<double> samples = samplesOf(clause);
    int changes = 0;
    for (size_t i = 1; i < samples.size(); ++i)
        changes += (samples[i] < 0) != (samples[i - 1] < 0);
    return double(changes) / double(samples.size());
}

/** The intervals between upward zero crossings in samples, shortest first, after all but the lowest frequencies are
    taken out. */
std::vector<double> periodsOf(const SpokenClause &clause)
{
    const double keep = 1 - std::exp(-2 * M_PI * 80 / clause.sampleRate);
    double low[4] = {}, before = 0, at = 0, last = 0;
    std::vector<double> intervals;
    for (double sample : samplesOf(clause)) {
        for (double &stage : low)
            sample = stage += keep * (sample - stage);
        if (before < 0 && sample >= 0)
            intervals.push_back(at - std::exchange(last, at));
        before = sample;
        ++at;
    }
    std::sort(intervals.begin(), intervals.end());
    return intervals;
}

double pitchOf(const SpokenClause &clause)
{
    const std::vector<double> periods = periodsOf(clause);
    return periods.empty() ? 0 : clause.sampleRate / periods[periods.size() / 2];
}

double pitchSpread(const SpokenClause &clause)
{
    const std::vector<double> periods = periodsOf(clause);
    return periods.empty() ? 0 : periods[periods.size() * 3 / 4] / periods[periods.size() / 4] - 1;
}

/** How alike two clauses sound, 1 for the same: the voice is never the same to the sample. */
double likeness(const SpokenClause &a, const SpokenClause &b)
{
    const auto frame = size_t(a.sampleRate / 50);
    const std::vector<double> one = samplesOf(a), other = samplesOf(b);
    double together = 0, own = 1, others = 1;
    for (size_t at = 0; at + frame <= std::min(one.size(), other.size()); at += frame) {
        double x = 0, y = 0;
        for (size_t i = at; i < at + frame; ++i) {
            x += std::abs(one[i]);
            y += std::abs(other[i]);
        }
        together += x * y;
        own += x * x;
        others += y * y;
    }
    return std::abs(a.duration() - b.duration()) > 15 ? 0 : together / std::sqrt(own * others);
}

QList<SpeechEvent> eventsOf(const SpokenClause &clause, SpeechEvent::Kind kind)
{
    QList<SpeechEvent> found;
    std::copy_if(clause.events.cbegin(), clause.events.cend(), std::back_inserter(found),
                 [kind](const SpeechEvent &event) { return event.kind == kind; });
    return found;
}

QList<int> wordCounts(const SpokenClause &clause)
{
    QList<int> counts;
    for (const SpeechEvent &event : eventsOf(clause, SpeechEvent::Kind::Word))
        counts.append(event.value);
    return counts;
}

const QString kSentence = u"The mail server does not answer"_s;

} // namespace

TEST(Speech, PausesAreAsLongAsTheySay)
{
    const struct {
        QString without;
        QString with;
        int ms;
    } rows[] = {
        { u"It failed. The next one."_s, u"It failed.\\pau=800\\ The next one."_s, 800 },
        { u"It failed the next one"_s, u"It failed \\pau=800\\the next one"_s, 800 },
        { u"It failed."_s, u"\\pau=300\\It failed.\\pau=500\\"_s, 800 },
        { u"\\map=\"10 dot 0 dot 1\"=\"x\"\\ ok"_s, u"\\map=\"10\\pau=400\\ dot \\pau=100\\0\\pau=200\\ dot \\pau=100\\1\"=\"x\"\\ ok"_s, 800 },
    };
    for (const auto &row : rows) {
        say(row.with); // so that both follow the same
        const int longer = say(row.with).duration() - say(row.without).duration();
        EXPECT_NEAR(longer, row.ms, 20) << qPrintable(row.with);
    }
    // And it is silent while it lasts.
    const SpokenClause clause = say(u"Wait \\pau=800\\now"_s);
    const std::vector<double> samples = samplesOf(clause);
    int silent = 0, longest = 0;
    for (const double sample : samples)
        longest = std::max(longest, silent = sample == 0 ? silent + 1 : 0);
    EXPECT_NEAR(longest * 1000.0 / clause.sampleRate, 800, 20);
}

TEST(Speech, SpeedPitchAndVolumeAreHeard)
{
    const QString &sentence = kSentence;
    const SpokenClause plain = say(sentence);
    EXPECT_NEAR(say(u"\\spd=330\\"_s + sentence).duration() * 2.0 / plain.duration(), 1, 0.2);
    EXPECT_NEAR(say(u"\\spd=90\\"_s + sentence).duration() * 90.0 / 165 / plain.duration(), 1, 0.2);
    // In the middle of a sentence too, and not beyond the reset.
    const int half = say(u"The mail server \\spd=400\\does not \\rst\\answer"_s).duration();
    EXPECT_LT(half, plain.duration() * 0.92);
    EXPECT_GT(likeness(say(sentence), plain), 0.97);

    EXPECT_NEAR(loudness(say(u"\\vol=32768\\"_s + sentence)) / loudness(plain), 0.5, 0.02);
    EXPECT_EQ(loudness(say(u"\\vol=0\\"_s + sentence)), 0);
    EXPECT_NEAR(say(u"\\vol=0\\"_s + sentence).duration(), plain.duration(), 12);

    const double low = pitchOf(say(u"\\pit=70\\"_s + sentence));
    const double middle = pitchOf(say(u"\\pit=105\\"_s + sentence));
    const double high = pitchOf(say(u"\\pit=140\\"_s + sentence));
    EXPECT_GT(middle, low * 1.2) << low;
    EXPECT_GT(high, middle * 1.15) << middle;
    EXPECT_GT(say(u"The mail server \\emp\\does not answer"_s).duration(), plain.duration());
    EXPECT_GT(hiss(say(u"\\chr=\"Whisper\"\\"_s + sentence)), 1.3 * hiss(plain));
    EXPECT_LT(pitchSpread(say(u"\\chr=\"Monotone\"\\"_s + sentence)), 0.5 * pitchSpread(plain));
}

TEST(Speech, HertzMeanTheSameForEveryVoice)
{
    for (const QString &variant : { QString(), u"m3"_s, u"f2"_s, u"m7"_s }) {
        Voice voice;
        voice.variant = variant;
        for (const int hertz : { 100, 140 }) {
            Voice level = voice;
            level.range = 0;
            level.pitch = SpeechEngine::shared().pitchForHertz(voice, hertz);
            EXPECT_NEAR(pitchOf(say(u"Oh no. Oh no. Oh no."_s, level)), hertz, hertz * 0.25)
                << qPrintable(variant) << " " << level.pitch;
        }
    }
}

TEST(Speech, MapSoundsLikeItsSpokenTextAndCapitalsAreSpelled)
{
    EXPECT_GT(likeness(say(u"\\map=\"server one\"=\"srv1\"\\ is down"_s), say(u"server one is down"_s)), 0.99);
    EXPECT_LT(likeness(say(u"\\map=\"server one\"=\"srv1\"\\ is down"_s), say(u"srv1 is down"_s)), 0.9);
    EXPECT_GT(say(u"\\map=\"SERVER\"=\"server\"\\"_s).duration(), 1.5 * say(u"server"_s).duration());
    EXPECT_GT(likeness(say(u"SERVER"_s), say(u"server"_s)), 0.99);
}

TEST(Speech, EveryWordIsShownWhenItIsSpoken)
{
    const SpokenClause clause = say(u"The \\map=\"WEB\\pau=50\\ dot \\pau=25\\LAN\"=\"web.lan\"\\ port 80 because Time Out."
                                    u"\\pau=800\\\\mrk=3\\ - \"Next\", (one) ... & <two>"_s);
    const QList<SpeechEvent> words = eventsOf(clause, SpeechEvent::Kind::Word);
    EXPECT_EQ(words.first().ms, 0);
    EXPECT_EQ(words.last().value, 13);
    for (qsizetype i = 1; i < words.size(); ++i) {
        EXPECT_GT(words[i].value, words[i - 1].value);
        EXPECT_GE(words[i].ms, words[i - 1].ms);
    }
    EXPECT_LT(words.last().ms, clause.duration());
    EXPECT_GT(words[2].ms - words[1].ms, 600) << "the spelled name takes its time";
    EXPECT_EQ(eventsOf(clause, SpeechEvent::Kind::Bookmark).size(), 1);
    EXPECT_EQ(wordCounts(say(u"one two three. four \\map=\"\"=\"five six\"\\"_s)), QList<int>({ 1, 2, 3, 4, 6 }));
}

TEST(Speech, TheMouthGoesWithTheSounds)
{
    const SpokenClause clause = say(u"Bob met pop"_s);
    const QList<SpeechEvent> mouth = eventsOf(clause, SpeechEvent::Kind::Mouth);
    EXPECT_EQ(mouth.last().value, agent::MouthClosed);
    int closings = 0;
    for (const SpeechEvent &event : mouth)
        closings += event.value == agent::MouthClosed;
    EXPECT_EQ(closings, 3) << "b-m, p, p";
    const SpokenClause hoop = say(u"\\pau=400\\hoo\\pau=400\\"_s);
    const QList<SpeechEvent> shapes = eventsOf(hoop, SpeechEvent::Kind::Mouth);
    EXPECT_GE(shapes.first().ms, 400);
    EXPECT_EQ(shapes.last().value, agent::MouthClosed);
    EXPECT_LE(shapes.last().ms, hoop.duration() - 400);
    const struct {
        const char *phoneme;
        int shape;
    } rows[] = { { "m", 0 }, { "b", 0 }, { "f", 0 }, { "g", 1 }, { "l", 1 }, { "n", 2 }, { "d", 2 }, { "t2", 2 }, { "V", 3 },
                 { "3:", 3 }, { "a", 4 }, { "aU", 4 }, { "0", 5 }, { "u:", 6 }, { "w", 6 }, { "_:", 0 }, { "", 0 } };
    for (const auto &row : rows)
        EXPECT_EQ(agent::mouthOf(row.phoneme), row.shape) << row.phoneme;
}

TEST(Speech, WhateverTheTextHoldsIsSpokenAsText)
{
    const QString hostile = u"a<break time=\"9s\"/>b &amp; <voice name=\"de\"> </speak> \x1b \x01"_s + u"50S \x01"_s + u"90P "_s
        + QChar(0) + QChar(0xd800) + u" ]]> <!-- \u202e \ufffe <audio src=\"x.wav\"/> end"_s;
    const SpokenClause clause = say(hostile);
    EXPECT_EQ(wordCounts(clause).last(), agent::parseSpeech(hostile).words.size());
    EXPECT_LT(clause.duration(), 40'000);
    EXPECT_GT(likeness(say(u"one \x01"_s + u"90P two"_s), say(u"one 90P two"_s)), 0.98);
    Voice voice;
    voice.name = u"../../etc/passwd"_s;
    voice.variant = u"no such"_s;
    EXPECT_GT(loudness(say(u"Hello"_s, voice)), 100);
}

TEST(Speech, NoClauseTakesLong)
{
    const QString unit = u"a word, 4711 % # "_s;
    for (const QString &text : { unit.repeated(100'000 / unit.size()), u"x"_s.repeated(100'000), u"7"_s.repeated(100'000),
                                 u"\\spd=80\\"_s + u"\u4e2d\u6587 "_s.repeated(5'000),
                                 u"\\map=\""_s + u"ABC"_s.repeated(5'000) + u"\"=\"abc\"\\"_s,
                                 u"a\\pau=60000\\"_s.repeated(1000) }) {
        const double beginning = workedMs();
        agent::Speech speech(text, Voice(), SpeechEngine::shared());
        const double parsing = workedMs() - beginning;
        double worst = 0, all = 0;
        int clauses = 0;
        while (!speech.atEnd() && clauses < 40) {
            const double before = workedMs();
            const SpokenClause clause = speech.next();
            const double ms = workedMs() - before;
            worst = std::max(worst, ms);
            all += ms;
            ++clauses;
            EXPECT_LT(clause.duration(), 130'000);
        }
        std::printf("%s...: reading %.1f ms, %d clauses, worst %.1f ms, mean %.1f ms\n", qPrintable(text.left(12)), parsing,
                    clauses, worst, all / clauses);
        EXPECT_LT(all / clauses, 16);
        EXPECT_LT(parsing, 200);
    }
}

TEST(Speech, WithoutAVoiceTheTextIsPaced)
{
    SpeechEngine none(u"/nonexistent"_s);
    EXPECT_FALSE(none.isAvailable());
    const QString text = u"one word more. "_s.repeated(40);
    const SpokenClause clause = say(text, Voice(), none);
    EXPECT_TRUE(clause.sound.isEmpty());
    EXPECT_EQ(wordCounts(clause).size(), 120);
    const double perMinute = 120 * 60'000.0 / clause.duration();
    EXPECT_GT(perMinute, 120);
    EXPECT_LT(perMinute, 180);
    EXPECT_GT(eventsOf(clause, SpeechEvent::Kind::Mouth).size(), 120);
    EXPECT_EQ(eventsOf(clause, SpeechEvent::Kind::Mouth).last().value, agent::MouthClosed);
    EXPECT_EQ(say(u"a \\pau=800\\b"_s, Voice(), none).duration(), say(u"a b"_s, Voice(), none).duration() + 800);
}
