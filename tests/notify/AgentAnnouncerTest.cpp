#include "notify/AgentAnnouncer.h"

#include "core/Settings.h"
#include "tests/world/World.h"

#include <QLocale>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/** A character that keeps a log of what it is asked and does not do it. It knows every animation but one. */
class LoggingCharacter : public agent::Character
{
public:
    LoggingCharacter(QStringList &log, const QString &name)
        : m_log(log)
        , m_name(name)
    {
    }

    QString id() const override { return u"Character"_s; }
    QString name() const override { return m_name; }
    agent::RequestPtr Show(bool) override { return note(u"show"_s); }
    agent::RequestPtr Hide(bool) override { return note(u"hide"_s); }
    agent::RequestPtr MoveTo(int x, int y, int) override { return note(u"move %1 %2"_s.arg(x).arg(y)); }
    agent::RequestPtr Play(const QString &animation) override
    {
        if (animation.isEmpty() || animation == "Unknown"_L1)
            throw agent::Error(agent::ErrorNumber::UnknownAnimation, u"unknown"_s);
        return note("play "_L1 + animation);
    }
    agent::RequestPtr Speak(const QString &text) override { return note("speak "_L1 + text); }
    agent::RequestPtr Think(const QString &text) override { return note("think "_L1 + text); }
    agent::RequestPtr GestureAt(int, int) override { return note(u"gesture"_s); }
    void Stop() override { note(u"stop"_s); }
    void Stop(const agent::RequestPtr &) override { note(u"stop one"_s); }
    agent::Commands &commands() override { return m_commands; }
    bool isVisible() const override { return true; }
    QPoint position() const override { return {}; }
    agent::MoveCause moveCause() const override { return agent::MoveCause::NeverMoved; }
    agent::VisibilityCause visibilityCause() const override { return agent::VisibilityCause::NeverShown; }
    void setIdleOn(bool) override {}
    void setBalloonStyle(int style) override { balloon = style; }
    void Listen(bool on) override { note(on ? u"listen"_s : u"listened"_s); }

    int balloon = -1;

private:
    agent::RequestPtr note(const QString &what)
    {
        m_log << what;
        return std::make_shared<agent::Request>();
    }
    QStringList &m_log;
    QString m_name;
    agent::Commands m_commands;
};

class LoggingAgent : public agent::Control
{
public:
    explicit LoggingAgent(QStringList &log, const QStringList &files)
        : m_log(log)
        , m_files(files)
    {
    }
    agent::Character &Load(const QString &id, const QString &file) override
    {
        m_log << "load "_L1 + id + u' ' + file;
        if (!m_files.contains(file))
            throw agent::Error(agent::ErrorNumber::FileNotFound, u"not found"_s);
        m_character = std::make_unique<LoggingCharacter>(m_log, file.left(file.size() - 4).toUpper());
        return *m_character;
    }
    void Unload(const QString &id) override
    {
        m_log << "unload "_L1 + id;
        m_character.reset();
    }
    agent::Character *find(const QString &) override { return m_character.get(); }
    LoggingCharacter &character() { return *m_character; }

private:
    QStringList &m_log;
    QStringList m_files;
    std::unique_ptr<LoggingCharacter> m_character;
};

struct AgentWorld : World {
    explicit AgentWorld(const QStringList &present = { u"merlin.acs"_s, u"peedy.acs"_s })
        : files(present)
    {
        vbMain().announcer = &agentAnnouncer;
        sql(u"DELETE * FROM tblAgentAnnounce"_s);
    }
    /** One line of a saying; x and y as SQL. */
    void saying(const QString &name, const QString &text, const QString &animation = u"Explain"_s,
                const QString &x = u"1"_s, const QString &y = u"2"_s, int order = 1)
    {
        sql(u"INSERT INTO tblAgentAnnounce (Saying, Speach, PlayOrder, Animation, Agent_X, Agent_Y)"
            " VALUES ('%1', '%2', %3, '%4', %5, %6)"_s.arg(name, text, QString::number(order), animation, x, y));
    }
    void announcementSayings()
    {
        saying(u"AnnounceDateTime"_s, u"<DATE> <TIME>"_s);
        for (const QString &kind : { u"Failed"_s, u"Recovered"_s }) {
            saying(u"Devices"_s + kind, kind + u'!');
            saying(kind + u"DeviceList"_s, u"<DEVICELIST>"_s, u"Alert"_s);
            saying(u"Max"_s + kind + u"Exceeded"_s, u"too many "_s + kind);
        }
    }
    void start()
    {
        agentAnnouncer.LoadMSAgent();
        log.clear();
    }
    QStringList take() { return std::exchange(log, {}); }

    QStringList log;
    QStringList files;
    LoggingAgent *control = nullptr;
    AgentAnnouncer agentAnnouncer{ [this] {
        auto made = std::make_unique<LoggingAgent>(log, files);
        control = made.get();
        return made;
    } };
};

ResultTable failures(int count, const QString &name = u"Web.Site"_s, const QString &pronounce = u"True"_s)
{
    ResultTable table(6);
    for (int row = 0; row < count; ++row)
        table.addRow({ name, QString::number(80 + row), u"it is down"_s, pronounce, u"1"_s, u"1"_s });
    return table;
}

ResultTable recoveries(int count)
{
    ResultTable table(5);
    for (int row = 0; row < count; ++row)
        table.addRow({ u"10.0.0.1"_s, QString::number(row), u"False"_s, u"1"_s, u"1"_s });
    return table;
}

QStringList performed(const QString &text, const QString &animation = u"Explain"_s)
{
    return { u"show"_s, u"move 1 2"_s, "play "_L1 + animation, "speak "_L1 + text + u' ' };
}

const QString kDot = u"\\pau=50\\ dot \\pau=25\\"_s;

QString failedItem(int port, const QString &spoken = u"web"_s + kDot + u"site"_s)
{
    return u"\\map=\"%1\"=\"Web.Site\"\\ port %2 because it is down.\\pau=800\\"_s.arg(spoken).arg(port);
}

QString recoveredItem(int port)
{
    return u"\\map=\"10%1"_s.arg(kDot) + u"0%1"_s.arg(kDot) + u"0%1"_s.arg(kDot)
        + u"1\"=\"10.0.0.1\"\\ port %1.\\pau=800\\"_s.arg(port);
}

} // namespace

TEST(AgentAnnouncer, AnnouncesFailuresAndRecoveriesUpToTheLimits)
{
    AgentWorld world;
    world.announcementSayings();
    world.start();
    SaveSetting(u"MSAgent"_s, u"MaxFailAnnounce"_s, u"2"_s);
    SaveSetting(u"MSAgent"_s, u"MaxRecoverAnnounce"_s, u"1"_s);
    const QString threeFailed = failedItem(80) + failedItem(81) + failedItem(82);
    const struct {
        const char *name;
        ResultTable failedNow, recoveredNow;
        QStringList expected;
    } cases[] = {
        { "none", ResultTable(6), ResultTable(5), {} },
        { "one", failures(1), ResultTable(5), performed(u"Failed!"_s) + performed(failedItem(80), u"Alert"_s) },
        { "one more than the limit is still named", failures(3), ResultTable(5),
          performed(u"Failed!"_s) + performed(threeFailed, u"Alert"_s) },
        { "two more", failures(4), ResultTable(5), performed(u"too many Failed"_s) },
        { "recovered", ResultTable(6), recoveries(2),
          performed(u"Recovered!"_s) + performed(recoveredItem(0) + recoveredItem(1), u"Alert"_s) },
        { "too many recovered", ResultTable(6), recoveries(3), performed(u"too many Recovered"_s) },
        { "both", failures(4), recoveries(1),
          performed(u"too many Failed"_s) + performed(u"Recovered!"_s) + performed(recoveredItem(0), u"Alert"_s) },
        { "spelled", failures(1, u"Web.Site"_s, u"False"_s), ResultTable(5),
          performed(u"Failed!"_s) + performed(failedItem(80, u"WEB"_s + kDot + u"SITE"_s), u"Alert"_s) },
    };
    for (const auto &row : cases) {
        world.agentAnnouncer.AnnounceDevices(row.failedNow, row.recoveredNow);
        EXPECT_EQ(world.take(), row.expected) << row.name;
        EXPECT_EQ(world.window.take(), QStringList{ u"status Agent Announce..."_s }) << row.name;
    }
    SaveSetting(u"MSAgent"_s, u"AnnounceDate"_s, u"1"_s);
    world.agentAnnouncer.AnnounceDevices(failures(4), ResultTable(5));
    const QString dated = QLocale::system().toString(world.now.date(), QLocale::LongFormat) + u' '
        + QLocale::system().toString(world.now.time(), QLocale::ShortFormat);
    EXPECT_EQ(world.take(), performed(dated) + performed(u"too many Failed"_s));
    world.agentAnnouncer.AnnounceDevices(ResultTable(6), ResultTable(5));
    EXPECT_EQ(world.take(), QStringList()) << "the date alone is no news";
}

TEST(AgentAnnouncer, HiddenCharacterIsSilentOnlyAfterACycle)
{
    AgentWorld world;
    world.announcementSayings();
    world.start();
    SaveSetting(u"MSAgent"_s, u"ShowCharacter"_s, u"0"_s);
    world.agentAnnouncer.AnnounceDevices(failures(1), recoveries(1));
    EXPECT_EQ(world.take(), QStringList());
    EXPECT_EQ(world.window.take(), QStringList());
    world.agentAnnouncer.speak(u"MaxFailedExceeded"_s);
    EXPECT_EQ(world.take(), performed(u"too many Failed"_s));
}

TEST(AgentAnnouncer, SaysEveryLineAndLeavesOutWhatCannotBeDone)
{
    AgentWorld world;
    world.saying(u"Tour"_s, u"two"_s, u""_s, u"Null"_s, u"5"_s, 2);
    world.saying(u"Tour"_s, u"one"_s, u"Unknown"_s, u"40000"_s, u"5"_s, 1);
    world.start();
    world.agentAnnouncer.speak(u"Tour"_s);
    EXPECT_EQ(world.take(), (QStringList{ u"show"_s, u"speak one "_s, u"speak two "_s }));
    EXPECT_EQ(world.control->character().balloon,
              agent::BalloonOn | agent::SizeToText | agent::AutoHide | agent::AutoPace);
    SaveSetting(u"MSAgentBalloon"_s, u"AutoHide"_s, u"0"_s);

    world.agentAnnouncer.speak(u"Nowhere"_s);
    const QStringList apology = world.take();
    ASSERT_EQ(apology.size(), 3);
    EXPECT_EQ(apology.at(1), u"play GetAttention"_s);
    EXPECT_TRUE(apology.at(2).startsWith(
        u"speak Oh crap.  I can not find what I am suppose to say from the database."_s));
    EXPECT_TRUE(apology.at(2).endsWith("Nowhere! "_L1));
    EXPECT_EQ(world.control->character().balloon, agent::BalloonOn | agent::SizeToText | agent::AutoPace);
}

TEST(AgentAnnouncer, LoadsTheConfiguredCharacterOrAUsualOne)
{
    {
        AgentWorld world;
        SaveSetting(u"MSAgent"_s, u"Character"_s, u"../../../peedy"_s);
        world.agentAnnouncer.LoadMSAgent();
        EXPECT_EQ(world.take(), QStringList{ u"load Character merlin.acs"_s }) << "a path is no character";
        EXPECT_EQ(GetSetting(u"MSAgent"_s, u"Character"_s), u"merlin"_s);
    }
    {
        AgentWorld world({ u"genie.acs"_s });
        SaveSetting(u"MSAgent"_s, u"Character"_s, u"own"_s);
        world.agentAnnouncer.LoadMSAgent();
        EXPECT_EQ(world.take(),
                  (QStringList{ u"load Character own.acs"_s, u"load Character merlin.acs"_s,
                                u"load Character peedy.acs"_s, u"load Character robby.acs"_s,
                                u"load Character genie.acs"_s }));
        EXPECT_EQ(GetSetting(u"MSAgent"_s, u"Character"_s), u"genie"_s);
        QStringList commands;
        for (const agent::Command &command : world.control->character().commands().all())
            commands << command.name + u'|' + command.caption + u'|' + command.voice;
        EXPECT_EQ(commands,
                  (QStringList{ u"Monitoring Status|Monitoring &Status|"_s,
                                u"Show Log File|Show &Log File|(show|display) log file"_s,
                                u"Show HTML Output|Show &HTML Output|(show|display) HTML Output"_s,
                                u"Restore|&Restore Program|(Restore|Restore Program)"_s,
                                u"Minimize|&Minimize Program|(Minimize|Minimize Program)"_s }));
    }
    {
        AgentWorld world{ QStringList() };
        world.dialogs.expect(u"Kavro_2000 was unable to load one of the following Microsoft Agent 2.0 characters.\n"
                              "\t- Merlin\n\t- Peedy\n\t- Robby\n\t- Genie\n"_s);
        EXPECT_THROW(world.agentAnnouncer.LoadMSAgent(), ProgramEnded);
        EXPECT_EQ(world.dialogs.shown.constLast().icon, Dialogs::Critical);
    }
    {
        AgentWorld world;
        AgentAnnouncer none([] { return nullptr; });
        world.dialogs.expect(u"You must install Microsoft Agent 2.0 and a Microsoft Agent 2.0 Character."_s);
        EXPECT_THROW(none.LoadMSAgent(), ProgramEnded);
        none.speakLines(ResultTable(4));
        none.listen(true);
    }
}

TEST(AgentAnnouncer, GreetsForACharacterAndGoesBackToTheConfiguredOne)
{
    AgentWorld world;
    world.saying(u"MSAgentGreeting"_s, u"I am <CHARACTER>."_s);
    world.start();
    world.agentAnnouncer.greet(u"peedy"_s);
    EXPECT_EQ(world.take(),
              (QStringList{ u"unload Character"_s, u"load Character peedy.acs"_s }) + performed(u"I am PEEDY."_s));
    world.agentAnnouncer.greet(u"missing"_s);
    EXPECT_EQ(world.take(),
              (QStringList{ u"unload Character"_s, u"load Character missing.acs"_s, u"load Character peedy.acs"_s })
                  + performed(u"I am PEEDY."_s));
    world.agentAnnouncer.speak(u"MSAgentGreeting"_s);
    EXPECT_EQ(world.take().mid(0, 2), (QStringList{ u"unload Character"_s, u"load Character merlin.acs"_s }));
}

TEST(AgentAnnouncer, ObeysItsCommands)
{
    AgentWorld world;
    for (const QString &state : { u"OK"_s, u"Failure"_s, u"None"_s })
        world.saying(u"Status-"_s + state, state + u" <PROBLEMS>"_s);
    world.start();
    const auto command = [&](const QString &name) {
        emit world.control->commandChosen({ name, u"Character"_s, QString(), 100 });
        return world.take() + world.window.take();
    };
    EXPECT_EQ(command(u"monitoring status"_s), performed(u"None <PROBLEMS>"_s));
    vbMain().monitoring = true;
    world.window.problems = -1;
    EXPECT_EQ(command(u"Monitoring Status"_s), performed(u"OK <PROBLEMS>"_s));
    world.window.problems = 3;
    EXPECT_EQ(command(u"Monitoring Status"_s), performed(u"Failure 3"_s));
    const auto told = [](OperatorCommand wanted) { return u"command %1"_s.arg(int(wanted)); };
    EXPECT_EQ(command(u"Restore"_s), QStringList{ told(OperatorCommand::Restore) });
    EXPECT_EQ(command(u"Minimize"_s), QStringList{ told(OperatorCommand::Minimize) });
    EXPECT_EQ(command(u"Show Log File"_s), QStringList{ told(OperatorCommand::ShowLog) });
    EXPECT_EQ(command(u"Show HTML Output"_s), QStringList{ told(OperatorCommand::ShowHTML) });
    EXPECT_EQ(command(u"Monitoring On"_s),
              (QStringList{ u"play Acknowledge"_s, told(OperatorCommand::MonitoringOn) }));
    EXPECT_EQ(command(u"Monitoring Off"_s),
              (QStringList{ u"play Acknowledge"_s, told(OperatorCommand::MonitoringOff) }));
    EXPECT_EQ(command(QString()), QStringList()) << "nothing was understood";
    vbMain().monitoring = false;
}

TEST(AgentAnnouncer, KeepsItsPlaceAndHidesWhenIdle)
{
    AgentWorld world;
    world.start();
    emit world.control->dragCompleted(u"Character"_s, 1, 0, -12, 345);
    EXPECT_EQ(GetSetting(u"MSAgent"_s, u"Agent-X"_s), u"-12"_s);
    EXPECT_EQ(GetSetting(u"MSAgent"_s, u"Agent-Y"_s), u"345"_s);
    emit world.control->idleStarted(u"Character"_s);
    EXPECT_EQ(world.take(), QStringList{ u"hide"_s });
    SaveSetting(u"MSAgent"_s, u"HideCharacterOnIdle"_s, u"0"_s);
    emit world.control->idleStarted(u"Character"_s);
    EXPECT_EQ(world.take(), QStringList());

    world.agentAnnouncer.listen(true);
    world.agentAnnouncer.listen(true);
    world.agentAnnouncer.listen(false);
    EXPECT_EQ(world.take(), (QStringList{ u"show"_s, u"listen"_s, u"listened"_s }));
    world.agentAnnouncer.unloadCharacter();
    world.agentAnnouncer.unloadCharacter();
    world.agentAnnouncer.speak(u"Anything"_s);
    EXPECT_EQ(world.take(), QStringList{ u"unload Character"_s });
}
