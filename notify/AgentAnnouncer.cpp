#include "notify/AgentAnnouncer.h"

#include "core/Dialogs.h"
#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/Trap.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QString kId = u"Character"_s;

/** Columns of a saying line. */
enum Column { Text, Animation, X, Y };

constexpr QLatin1StringView kUsual[] = { "merlin"_L1, "peedy"_L1, "robby"_L1, "genie"_L1 };

constexpr QLatin1StringView kNeeded
    = "This program can not function without the required Microsoft Agent components."_L1;

struct BalloonFlag {
    QLatin1StringView key;
    agent::BalloonStyle flag;
};
constexpr BalloonFlag kBalloonFlags[] = {
    { "BalloonShow"_L1, agent::BalloonOn },
    { "SizeToText"_L1, agent::SizeToText },
    { "AutoHide"_L1, agent::AutoHide },
    { "AutoPace"_L1, agent::AutoPace },
};

struct CharacterCommand {
    QLatin1StringView name;
    QLatin1StringView caption;
    QLatin1StringView voice;
};
constexpr CharacterCommand kCommands[] = {
    { "Monitoring Status"_L1, "Monitoring &Status"_L1, ""_L1 },
    { "Show Log File"_L1, "Show &Log File"_L1, "(show|display) log file"_L1 },
    { "Show HTML Output"_L1, "Show &HTML Output"_L1, "(show|display) HTML Output"_L1 },
    { "Restore"_L1, "&Restore Program"_L1, "(Restore|Restore Program)"_L1 },
    { "Minimize"_L1, "&Minimize Program"_L1, "(Minimize|Minimize Program)"_L1 },
};

/** What the window does at a command's name; the last two are never among the commands that are built here. */
struct WindowCommand {
    QLatin1StringView name;
    OperatorCommand command;
    bool acknowledged;
};
constexpr WindowCommand kWindowCommands[] = {
    { "Restore"_L1, OperatorCommand::Restore, false },
    { "Minimize"_L1, OperatorCommand::Minimize, false },
    { "Show Log File"_L1, OperatorCommand::ShowLog, false },
    { "Show HTML Output"_L1, OperatorCommand::ShowHTML, false },
    { "Monitoring On"_L1, OperatorCommand::MonitoringOn, true },
    { "Monitoring Off"_L1, OperatorCommand::MonitoringOff, true },
};

void showCritical(const QString &text)
{
    vbMain().dialogs->messageBox(text, AppTitle(), Dialogs::Critical, Dialogs::Ok);
}

[[noreturn]] void endWithoutAgent()
{
    showCritical("You must install Microsoft Agent 2.0 and a Microsoft Agent 2.0 Character.\n"
                 "Please see the agent vendor's information page about its components.\n"_L1
                 + kNeeded);
    EndProgram(1);
}

[[noreturn]] void endWithoutCharacter()
{
    showCritical(AppTitle()
                 + " was unable to load one of the following Microsoft Agent 2.0 characters.\n"
                   "\t- Merlin\n\t- Peedy\n\t- Robby\n\t- Genie\n"
                   "Please download a character from the agent vendor's page.\n"_L1
                 + kNeeded);
    EndProgram(1);
}

/** Coordinates are 16-bit whole numbers; throws VbError 13 or 6 for what is none. */
int screenPosition(const QString &text)
{
    const qint64 number = dao::Value(text).integer();
    if (number < std::numeric_limits<qint16>::min() || number > std::numeric_limits<qint16>::max())
        throw VbError(6, u"Overflow"_s);
    return int(number);
}

int balloonStyle()
{
    int style = 0;
    for (const BalloonFlag &row : kBalloonFlags) {
        if (GetSettingBool(u"MSAgentBalloon"_s, row.key))
            style |= row.flag;
    }
    return style;
}

QString configured() { return GetSetting(u"MSAgent"_s, u"Character"_s); }

/** A step of a performance: what the character cannot do is left out. */
template <class F>
void ignoringErrors(F &&step)
{
    try {
        step();
    } catch (const VbError &) {
        // A line without a position, or with one that is no number, is said where the character stands.
    } catch (const agent::Error &) {
        // The character may not know the animation, or may be gone.
    }
}

} // namespace

AgentAnnouncer::AgentAnnouncer(CreateAgent create)
    : m_create(std::move(create))
{
}

AgentAnnouncer::~AgentAnnouncer() = default;

// Loading

void AgentAnnouncer::LoadMSAgent()
{
    try {
        try {
            m_agent = m_create();
        } catch (const agent::Error &) {
            m_agent.reset();
        }
        if (!m_agent)
            endWithoutAgent();
        connectEvents();
        loadFirstOf(QStringList(configured()) + QStringList(std::begin(kUsual), std::end(kUsual)));
        if (!m_character)
            endWithoutCharacter();
        if (m_loaded != configured())
            SaveSetting(u"MSAgent"_s, u"Character"_s, m_loaded);
    } catch (const VbError &error) {
        showCritical("An error has occured during the loading of "_L1 + AppTitle() + ".\n"_L1 + error.description());
        ReportCurrentException("LoadMSAgent");
    }
}

void AgentAnnouncer::connectEvents()
{
    using agent::Control;
    connect(m_agent.get(), &Control::commandChosen, this, &AgentAnnouncer::Agent1_Command);
    connect(m_agent.get(), &Control::dragCompleted, this,
            [this](const QString &, int, int, int x, int y) { Agent1_DragComplete(x, y); });
    connect(m_agent.get(), &Control::idleStarted, this, &AgentAnnouncer::Agent1_IdleStart);
    // It may have ended listening by itself.
    connect(m_agent.get(), &Control::listenCompleted, this, [this] { m_listening = false; });
}

void AgentAnnouncer::loadFirstOf(const QStringList &names)
{
    for (const QString &name : names) {
        if (load(name))
            return;
    }
}

bool AgentAnnouncer::load(const QString &name)
{
    // The store is edited by hand; a character comes from the character folder and nowhere else.
    if (name.isEmpty() || name.contains(u'/') || name.contains(u'\\'))
        return false;
    try {
        m_character = &m_agent->Load(kId, name + ".acs"_L1);
    } catch (const agent::Error &) {
        return false; // the caller has another name to try, or tells
    }
    m_loaded = name;
    buildCommands();
    return true;
}

/** Puts another character in the place of the one on the screen; one that cannot be loaded changes nothing. */
void AgentAnnouncer::use(const QString &name)
{
    if (!m_character || name.compare(m_loaded, Qt::CaseInsensitive) == 0)
        return;
    const QString former = m_loaded;
    unloadCharacter();
    loadFirstOf({ name, former });
}

void AgentAnnouncer::buildCommands()
{
    agent::Commands &commands = m_character->commands();
    commands.removeAll();
    commands.caption = u"Kavro 2.0"_s;
    for (const CharacterCommand &row : kCommands)
        commands.add({ row.name, row.caption, row.voice });
}

void AgentAnnouncer::unloadCharacter()
{
    if (!m_character)
        return;
    m_character = nullptr;
    m_loaded.clear();
    ignoringErrors([this] { m_agent->Unload(kId); });
}

// Speaking

void AgentAnnouncer::speakLines(const ResultTable &lines)
{
    use(configured()); // the dialog shows characters that were not chosen in the end
    perform(lines);
}

void AgentAnnouncer::perform(const ResultTable &lines)
{
    if (!m_character)
        return;
    ignoringErrors([this] { m_character->setBalloonStyle(balloonStyle()); });
    ignoringErrors([this] { m_character->Show(); });
    for (int row = 0; row < lines.rows(); ++row)
        performLine(lines, row);
}

void AgentAnnouncer::performLine(const ResultTable &lines, int row)
{
    ignoringErrors([&] { m_character->MoveTo(screenPosition(lines.at(X, row)), screenPosition(lines.at(Y, row))); });
    ignoringErrors([&] { m_character->Play(lines.at(Animation, row)); });
    ignoringErrors([&] { m_character->Speak(lines.at(Text, row) + u' '); });
}

void AgentAnnouncer::speak(const QString &saying) { speakLines(MSAgentSpeak(saying)); }

void AgentAnnouncer::greet(const QString &character)
{
    Trap("MSAgentGreeting", [&] {
        use(character);
        perform(GreetingLines(m_character ? m_character->name() : character));
    });
}

void AgentAnnouncer::AnnounceDevices(const ResultTable &failedNow, const ResultTable &recoveredNow)
{
    Trap("AnnounceDevices", [&] {
        for (const ResultTable &lines : AnnouncementLines(failedNow, recoveredNow))
            speakLines(lines);
    });
}

// Events

void AgentAnnouncer::Agent1_Command(const agent::UserInput &input)
{
    Trap("Agent1_Command", [&] {
        if (input.name.compare("Monitoring Status"_L1, Qt::CaseInsensitive) == 0)
            return tellStatus();
        for (const WindowCommand &row : kWindowCommands) {
            if (input.name.compare(row.name, Qt::CaseInsensitive) != 0)
                continue;
            if (row.acknowledged && m_character)
                ignoringErrors([this] { m_character->Play(u"Acknowledge"_s); });
            vbMain().window->carryOut(row.command);
        }
    });
}

void AgentAnnouncer::tellStatus()
{
    if (!vbMain().monitoring)
        return speak(u"Status-None"_s);
    const int problems = vbMain().window->problemCount();
    if (problems <= 0)
        return speak(u"Status-OK"_s);
    ResultTable lines = MSAgentSpeak(u"Status-Failure"_s);
    ReplaceInText(lines, u"<PROBLEMS>"_s, QString::number(problems));
    speakLines(lines);
}

void AgentAnnouncer::Agent1_DragComplete(int x, int y)
{
    Trap("Agent1_DragComplete", [&] {
        SaveSettings({ { u"MSAgent"_s, u"Agent-X"_s, QString::number(x) },
                       { u"MSAgent"_s, u"Agent-Y"_s, QString::number(y) } });
    });
}

void AgentAnnouncer::Agent1_IdleStart()
{
    Trap("Agent1_IdleStart", [&] {
        if (m_character && GetSettingBool(u"MSAgent"_s, u"HideCharacterOnIdle"_s))
            m_character->Hide();
    });
}

void AgentAnnouncer::listen(bool on)
{
    if (!m_character || on == m_listening)
        return;
    m_listening = on;
    ignoringErrors([&] {
        if (on)
            m_character->Show();
        m_character->Listen(on);
    });
}
