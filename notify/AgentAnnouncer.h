#pragma once

#include "notify/vbMSAgent.h"
#include "platform/agent/Agent.h"

#include <QObject>

#include <functional>
#include <memory>

/** The announcer with a character on the screen. */
class AgentAnnouncer : public QObject, public Announcer
{
    Q_OBJECT
public:
    /** Makes the agent, once; null or an agent::Error when that is impossible. */
    using CreateAgent = std::function<std::unique_ptr<agent::Control>()>;

    explicit AgentAnnouncer(CreateAgent create);
    ~AgentAnnouncer() override;

    /** Creates the agent, loads the configured character or one of the four usual ones, and gives it its commands.
        Ends the program when there is none. */
    void LoadMSAgent() override;
    void speakLines(const ResultTable &lines) override;
    void speak(const QString &saying) override;
    void greet(const QString &character) override;
    void AnnounceDevices(const ResultTable &failedNow, const ResultTable &recoveredNow) override;
    void unloadCharacter() override;

    void listen(bool on) override;
    bool canListen() const override { return m_character != nullptr; }
    bool isListening() const override { return m_listening; }

private:
    void connectEvents();
    void loadFirstOf(const QStringList &names);
    bool load(const QString &name);
    void use(const QString &name);
    void buildCommands();
    void perform(const ResultTable &lines);
    void performLine(const ResultTable &lines, int row);
    void Agent1_Command(const agent::UserInput &input);
    void tellStatus();
    void Agent1_DragComplete(int x, int y);
    void Agent1_IdleStart();

    CreateAgent m_create;
    std::unique_ptr<agent::Control> m_agent;
    agent::Character *m_character = nullptr;
    QString m_loaded; // the file's name without its ending
    bool m_listening = false;
};
