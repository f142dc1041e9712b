#pragma once

#include "platform/agent/Agent.h"
#include "platform/agent/window/Idler.h"
#include "platform/agent/window/ListenSession.h"
#include "platform/agent/window/RequestQueue.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace agent {

class CommandMenu;

/** A loaded character: its queue, its window, its balloon, its menu. Between two beats nothing of it runs,
   and hidden or at rest it has no timer. */
class AgentCharacter : public QObject, public Character
{
    Q_OBJECT
public:
    AgentCharacter(const QString &id, std::shared_ptr<const CharacterFile> file, const Engines &engines,
        Control &control);
    ~AgentCharacter() override;

    QString id() const override { return m_id; }
    QString name() const override { return m_file->name(); }
    RequestPtr Show(bool fast) override;
    RequestPtr Hide(bool fast) override;
    RequestPtr MoveTo(int x, int y, int speed) override;
    RequestPtr Play(const QString &animation) override;
    RequestPtr Speak(const QString &text) override;
    RequestPtr Think(const QString &text) override;
    RequestPtr GestureAt(int x, int y) override;
    void Stop() override;
    void Stop(const RequestPtr &request) override;
    Commands &commands() override { return m_commands; }
    bool isVisible() const override { return m_actor.isVisible(); }
    QPoint position() const override { return m_actor.position(); }
    MoveCause moveCause() const override { return m_actor.moveCause(); }
    VisibilityCause visibilityCause() const override { return m_actor.visibilityCause(); }
    void setIdleOn(bool on) override;
    void setBalloonStyle(int style) override { m_actor.talker().setBalloonStyle(style); }
    void Listen(bool on) override;

    /** Gone from the screen at once, and silent for good; nothing is told any more. */
    void retire();

private:
    using ButtonSignal = void (Control::*)(const QString &, int, int, int, int);

    RequestPtr add(Request::Kind kind, std::unique_ptr<Act> act);
    void watchWindow();
    void watchScreens();
    void relay(void (CharacterWindow::*from)(int, int, const QPoint &), ButtonSignal to);
    void touched();
    void showMenu(const QPoint &at);
    void hideByUser();
    void chosenByMenu(const QString &name);
    bool isFree() const;
    void beat();
    bool tellEvents();
    void wake() { m_pulse->wakeAt(m_pulse->now()); }
    qint64 due() const;

    QString m_id;
    std::shared_ptr<const CharacterFile> m_file;
    Control &m_control;
    Events m_events;
    std::unique_ptr<Pulse> m_pulse;
    Actor m_actor;
    RequestQueue m_queue;
    Idler m_idler;
    ListenSession m_listening;
    Commands m_commands;
    QPointer<CommandMenu> m_menu;
    bool m_retired = false;
};

} // namespace agent
