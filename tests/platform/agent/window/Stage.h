#pragma once

#include "platform/agent/window/AgentControl.h"
#include "platform/agent/window/Balloon.h"
#include "platform/agent/window/CharacterWindow.h"
#include "platform/agent/window/Engines.h"
#include "platform/agent/window/Pulse.h"

#include <QPointer>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>

/** Failures show texts, not code units. */
inline void PrintTo(const QString &text, std::ostream *out) { *out << '"' << text.toStdString() << '"'; }

/** A character's time, which passes only when a test says so. */
class StillPulse : public agent::Pulse
{
    Q_OBJECT
public:
    qint64 now() const override { return m_now; }
    void wakeAt(qint64 due) override { m_due = due; }
    /** Beats when a beat was asked for, up to that time. */
    void advance(qint64 ms);
    /** No timer runs. */
    bool isAsleep() const { return m_due == kNever; }
    int beats() const { return m_beats; }

private:
    qint64 m_now = 1000;
    qint64 m_due = kNever;
    int m_beats = 0;
};

/** Says a word every 100 ms of its pulse's time. */
class PlainSpeaker : public agent::Speaker
{
    Q_OBJECT
public:
    void start(const QString &text) override;
    void stop() override { speaking = false; }
    QStringList words() const override { return m_words; }
    /** One word more; after the last one the speech ends. */
    void sayWord();

    bool speaking = false;

private:
    QStringList m_words;
    int m_said = 0;
};

/** Understands what a test puts into it. */
class ScriptedEar : public agent::Ear
{
    Q_OBJECT
public:
    void start(const agent::Commands &) override { listening = true; }
    void stop() override { listening = false; }

    bool listening = false;
};

/** A control with a character made for tests, whose movements have plain lengths: Show 200 ms, Hide 300, Wave
   400, Point 400 (cannot speak), Search and the movements without end, GestureUp 200. There is no gesture to
   the left. */
class Stage : public testing::Test
{
protected:
    Stage();

    /** Loads the character as "one" and shows it. */
    void enter();
    /** Lets time pass until the queue has done everything; words are said on the way. */
    void run(int ms = 60'000);
    agent::Character &one() { return *control->find(QStringLiteral("one")); }
    /** Null when there is none. */
    static agent::CharacterWindow *window();
    static agent::Balloon *balloon();
    /** The log since the last call, one entry an event. */
    QStringList told() { return std::exchange(log, {}); }
    /** What the requests were told as, in the log: a name for each, in the order of asking. */
    agent::RequestPtr named(const QString &name, const agent::RequestPtr &request);
    /** Writes a character file into the folder. */
    void writeCharacter(const QString &file, const QString &name) const;

    /** A new control in place of the old one. */
    void makeControl();

    QTemporaryDir folder;
    QPointer<StillPulse> pulse; // of the character that was loaded last; so are the others
    QPointer<PlainSpeaker> speaker;
    QPointer<ScriptedEar> ear;
    std::unique_ptr<agent::AgentControl> control;
    QStringList log;

private:
    template <typename Widget>
    static Widget *widgetOf();
    agent::Engines engines();
    void keepLog();
    QString nameOf(const agent::RequestPtr &request) const;

    QList<std::pair<QString, agent::RequestPtr>> m_names;
};
