#include "platform/agent/window/Acts.h"

#include <QEasingCurve>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

void requireVisible(const Actor &actor)
{
    if (!actor.isVisible())
        throw Error(ErrorNumber::Hidden, u"The character is hidden."_s);
}

void requireUndragged(Actor &actor)
{
    if (actor.window().isDragged())
        throw Error(ErrorNumber::BeingDragged, u"The character cannot move while it is dragged."_s);
}

/** The end of a state's name for a way on the screen. Left and right are the character's own, who faces us.
 */
QString directionOf(const QPoint &way)
{
    if (std::abs(way.x()) >= std::abs(way.y()))
        return way.x() < 0 ? u"Right"_s : u"Left"_s;
    return way.y() < 0 ? u"Up"_s : u"Down"_s;
}

class ShowAct : public Act
{
public:
    ShowAct(bool fast, VisibilityCause cause)
        : m_fast(fast)
        , m_cause(cause)
    {
    }
    void begin(Actor &actor) override
    {
        if (!actor.isVisible())
            actor.appear(m_fast ? nullptr : actor.ofState(u"Showing"_s), m_cause);
        else
            m_alreadyThere = true;
    }
    bool advance(Actor &actor) override { return m_alreadyThere || actor.isStill(); }
    void stop(Actor &actor) override { actor.comeBack(); }
    bool mustFinish() const override { return true; }

private:
    bool m_fast;
    VisibilityCause m_cause;
    bool m_alreadyThere = false;
};

class HideAct : public Act
{
public:
    HideAct(bool fast, VisibilityCause cause)
        : m_fast(fast)
        , m_cause(cause)
    {
    }
    void begin(Actor &actor) override
    {
        if (!m_fast && actor.isVisible())
            actor.comeBack();
    }
    bool advance(Actor &actor) override
    {
        if (!m_fast && actor.isVisible() && !isOver(actor))
            return false;
        actor.vanish(m_cause);
        return true;
    }
    void stop(Actor &actor) override { actor.comeBack(); }
    bool mustFinish() const override { return true; }

private:
    /** First the way back to rest, then the way out. */
    bool isOver(Actor &actor)
    {
        if (!actor.isStill())
            return false;
        if (m_leaving)
            return true;
        m_leaving = true;
        actor.talker().hideBalloon();
        return !actor.playState(u"Hiding"_s, Animator::Loop::Once);
    }
    bool m_fast;
    VisibilityCause m_cause;
    bool m_leaving = false;
};

class MoveAct : public Act
{
public:
    MoveAct(const QPoint &target, int speed)
        : m_target(target)
        , m_speed(speed)
    {
    }
    void begin(Actor &actor) override
    {
        if (m_speed > 0)
            requireVisible(actor);
        requireUndragged(actor);
        // Wherever it is sent, it must not get lost.
        m_target = keptOnScreen(QRect(m_target, actor.frame().size()));
        if (m_target == actor.position())
            m_step = Step::Done;
        else if (m_speed <= 0)
            arrive(actor, Step::Done);
        else
            actor.comeBack();
    }
    bool advance(Actor &actor) override
    {
        if (m_step == Step::Sliding)
            slide(actor);
        else if (m_step == Step::Returning && actor.isStill())
            setOut(actor);
        else if (m_step == Step::Leaving && actor.isStill())
            m_step = Step::Done;
        return m_step == Step::Done;
    }
    void stop(Actor &actor) override
    {
        if (m_step == Step::Sliding)
            actor.tellMoved(MoveCause::Program);
        actor.comeBack();
    }
    qint64 due() const override { return m_step == Step::Sliding ? m_nextStep : Pulse::kNever; }

private:
    enum class Step { Returning, Sliding, Leaving, Done };

    void setOut(Actor &actor)
    {
        m_from = actor.position();
        m_start = m_nextStep = actor.now();
        m_step = Step::Sliding;
        actor.playState(u"Moving"_s + directionOf(m_target - m_from));
    }
    void slide(Actor &actor)
    {
        if (actor.window().isDragged())
            actor.comeBack();
        requireUndragged(actor);
        static const QEasingCurve kEase(QEasingCurve::InOutSine);
        const qreal way = qreal(actor.now() - m_start) / m_speed;
        if (way >= 1) {
            arrive(actor, Step::Leaving);
            actor.comeBack();
            return;
        }
        const QPointF at = QPointF(m_from) + QPointF(m_target - m_from) * kEase.valueForProgress(way);
        actor.place(at.toPoint());
        m_nextStep = actor.now() + kStepMs;
    }
    void arrive(Actor &actor, Step next)
    {
        actor.place(m_target);
        actor.tellMoved(MoveCause::Program);
        m_step = next;
    }

    static constexpr int kStepMs = 16;
    QPoint m_target;
    int m_speed;
    Step m_step = Step::Returning;
    QPoint m_from;
    qint64 m_start = 0;
    qint64 m_nextStep = 0;
};

/** Plays an animation after the way back to rest; which one is known when that is done. */
class MovementAct : public Act
{
public:
    bool advance(Actor &actor) override
    {
        if (!actor.isStill())
            return false;
        if (m_playing)
            return true;
        m_playing = true;
        actor.play(chosen(actor));
        return false;
    }
    void stop(Actor &actor) override { actor.comeBack(); }

protected:
    virtual const Animation &chosen(Actor &actor) = 0;

private:
    bool m_playing = false;
};

class PlayAct : public MovementAct
{
public:
    explicit PlayAct(const Animation &animation)
        : m_animation(animation)
    {
    }
    void begin(Actor &actor) override
    {
        requireVisible(actor);
        actor.comeBack();
    }

protected:
    const Animation &chosen(Actor &) override { return m_animation; }

private:
    const Animation &m_animation;
};

class GestureAct : public MovementAct
{
public:
    explicit GestureAct(const QPoint &at)
        : m_at(at)
    {
    }
    void begin(Actor &actor) override
    {
        requireVisible(actor);
        m_animation = actor.ofState(u"Gesturing"_s + directionOf(m_at - actor.frame().center()));
        if (!m_animation)
            throw Error(
                ErrorNumber::NoAnimationForState, u"The character has no gesture in this direction."_s);
        actor.comeBack();
    }

protected:
    const Animation &chosen(Actor &) override { return *m_animation; }

private:
    QPoint m_at;
    const Animation *m_animation = nullptr;
};

class SpeakAct : public Act
{
public:
    explicit SpeakAct(const QString &taggedText)
        : m_text(taggedText)
    {
    }
    void begin(Actor &actor) override
    {
        requireVisible(actor);
        // It may go on pointing while it speaks, if its mouth is to be seen.
        if (!actor.canSpeak() || actor.isAtRest())
            actor.playState(u"Speaking"_s);
        actor.talker().speak(m_text);
    }
    bool advance(Actor &actor) override
    {
        if (actor.talker().isTalking())
            return false;
        if (actor.isLooping())
            actor.comeBack();
        return true;
    }
    void stop(Actor &actor) override
    {
        actor.talker().hush();
        actor.comeBack();
    }

private:
    QString m_text;
};

class ThinkAct : public Act
{
public:
    explicit ThinkAct(const QString &taggedText)
        : m_text(taggedText)
    {
    }
    void begin(Actor &actor) override
    {
        requireVisible(actor);
        if (!actor.talker().hasBalloon())
            throw Error(ErrorNumber::NoBalloon, u"The character has no word balloon."_s);
        actor.talker().think(m_text);
    }
    bool advance(Actor &actor) override { return !actor.talker().isTalking(); }
    void stop(Actor &actor) override { actor.talker().hush(); }

private:
    QString m_text;
};

} // namespace

std::unique_ptr<Act> showAct(bool fast, VisibilityCause cause)
{
    return std::make_unique<ShowAct>(fast, cause);
}

std::unique_ptr<Act> hideAct(bool fast, VisibilityCause cause)
{
    return std::make_unique<HideAct>(fast, cause);
}

std::unique_ptr<Act> moveAct(const QPoint &target, int speed)
{
    return std::make_unique<MoveAct>(target, speed);
}

std::unique_ptr<Act> playAct(const Animation &animation) { return std::make_unique<PlayAct>(animation); }

std::unique_ptr<Act> speakAct(const QString &taggedText) { return std::make_unique<SpeakAct>(taggedText); }

std::unique_ptr<Act> thinkAct(const QString &taggedText) { return std::make_unique<ThinkAct>(taggedText); }

std::unique_ptr<Act> gestureAct(const QPoint &at) { return std::make_unique<GestureAct>(at); }

} // namespace agent
