#pragma once

#include "platform/agent/character/CharacterRenderer.h"
#include "platform/agent/window/Animator.h"
#include "platform/agent/window/CharacterWindow.h"
#include "platform/agent/window/Talker.h"

#include <QObject>

#include <memory>
#include <optional>

namespace agent {

/** A character's body: where it stands, how it moves, what it says. It does at once what it is told; the
   order of doing things is the queue's matter. */
class Actor : public QObject
{
    Q_OBJECT
public:
    Actor(const QString &id, std::shared_ptr<const CharacterFile> file, const Engines &engines, Pulse &pulse,
        Events &events);

    const CharacterFile &file() const { return *m_file; }
    CharacterWindow &window() { return m_window; }
    Talker &talker() { return m_talker; }
    Events &events() { return m_events; }
    qint64 now() const { return m_pulse.now(); }

    bool isVisible() const { return m_visible; }
    VisibilityCause visibilityCause() const { return m_visibilityCause; }
    /** The window comes up, in the first pose of an animation or at rest. */
    void appear(const Animation *entrance, VisibilityCause cause);
    /** Window and balloon go, and it falls silent. */
    void vanish(VisibilityCause cause);

    QPoint position() const { return m_position; }
    QRect frame() const { return QRect(m_position, m_window.size()); }
    MoveCause moveCause() const { return m_moveCause; }
    /** Moves the frame without a word to anybody. */
    void place(const QPoint &corner);
    /** Tells that the frame was moved. */
    void tellMoved(MoveCause cause);
    /** Back on a screen, if it is not. */
    void keepOnScreen();

    /** Once: also what would go on for ever ends. */
    void play(const Animation &animation, Animator::Loop loop = Animator::Loop::Endless);
    /** An animation of a state, chosen at random; null when there is none. */
    const Animation *ofState(const QString &state) const;
    /** False when the state has no animation. */
    bool playState(const QString &state, Animator::Loop loop = Animator::Loop::Endless);
    /** Goes on with what is held, such as sleeping, for one round; false when nothing such is held. */
    bool goRound() { return m_animator.goRound(now()); }
    void comeBack() { m_animator.comeBack(now()); }
    bool isStill() const { return m_animator.isStill(now()); }
    bool isAtRest() const { return m_animator.isAtRest(now()); }
    bool isLooping() const { return m_animator.isLooping(); }
    bool canSpeak() const { return m_animator.canSpeak(); }

    /** Carries movement and speech on, and draws what has changed. */
    void beat();
    /** When the next beat is needed. Call after something was begun, too. */
    qint64 due() const;

private:
    void draw();
    void followFrame();

    QString m_id;
    std::shared_ptr<const CharacterFile> m_file;
    Pulse &m_pulse;
    Events &m_events;
    CharacterRenderer m_renderer;
    Animator m_animator;
    CharacterWindow m_window;
    Talker m_talker;
    bool m_visible = false;
    QPoint m_position;
    VisibilityCause m_visibilityCause = VisibilityCause::NeverShown;
    MoveCause m_moveCause = MoveCause::NeverMoved;
    Pose m_drawnPose;
    int m_drawnMouth = kMouthOfPose;
};

} // namespace agent
