#include "platform/agent/window/Actor.h"

#include <QGuiApplication>
#include <QRandomGenerator>
#include <QScreen>

namespace agent {

namespace {

constexpr int kFrameMs = 33; // 30 pictures a second
constexpr int kMarginPx = 24; // between a new character and the corner of the screen

/** Where a character stands that nobody has moved yet. */
QPoint lowerRightCorner(const QSize &size)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect(0, 0, 800, 600);
    return area.bottomRight() - QPoint(size.width() + kMarginPx, size.height() + kMarginPx);
}

} // namespace

Actor::Actor(const QString &id, std::shared_ptr<const CharacterFile> file, const Engines &engines,
    Pulse &pulse, Events &events)
    : m_id(id)
    , m_file(std::move(file))
    , m_pulse(pulse)
    , m_events(events)
    , m_renderer(m_file)
    , m_animator(m_file)
    , m_window(m_file->name(), m_file->description(), m_file->size().toSize(),
          [this](qreal ratio) { return m_renderer.image(m_drawnPose, m_drawnMouth, 1, ratio); })
    , m_talker(id, m_file, engines, pulse, events)
    , m_position(lowerRightCorner(m_window.size()))
    , m_drawnPose(m_file->restPose())
{
    connect(&m_window, &CharacterWindow::placed, this, [this] {
        if (m_window.isDragged())
            m_position = m_window.pos();
        followFrame();
    });
}

void Actor::appear(const Animation *entrance, VisibilityCause cause)
{
    if (entrance)
        m_animator.play(*entrance, now(), Animator::Start::AtOnce);
    else
        m_animator.reset();
    m_visible = true;
    m_visibilityCause = cause;
    m_position = keptOnScreen(frame());
    m_window.move(m_position);
    draw();
    m_window.redraw();
    m_window.show();
    followFrame();
    m_events.post([id = m_id, cause](Control &control) { emit control.shown(id, cause); });
}

void Actor::vanish(VisibilityCause cause)
{
    if (!m_visible)
        return;
    m_talker.hush();
    m_window.endDrag();
    m_window.hide();
    m_animator.reset();
    m_visible = false;
    m_visibilityCause = cause;
    m_events.post([id = m_id, cause](Control &control) { emit control.hidden(id, cause); });
}

void Actor::place(const QPoint &corner)
{
    m_position = corner;
    m_window.place(corner);
    followFrame();
}

void Actor::tellMoved(MoveCause cause)
{
    m_moveCause = cause;
    m_events.post([id = m_id, at = m_position, cause](
                      Control &control) { emit control.moved(id, at.x(), at.y(), cause); });
}

void Actor::keepOnScreen()
{
    const QPoint kept = keptOnScreen(frame());
    if (kept == m_position || !m_visible || m_window.isDragged())
        return;
    place(kept);
    tellMoved(MoveCause::System);
}

const Animation *Actor::ofState(const QString &state) const
{
    QList<const Animation *> choice;
    for (const QString &name : m_file->state(state))
        if (const Animation *animation = m_file->animation(name))
            choice.append(animation);
    return choice.isEmpty() ? nullptr : choice.at(QRandomGenerator::global()->bounded(choice.size()));
}

void Actor::play(const Animation &animation, Animator::Loop loop)
{
    m_animator.play(animation, now(), Animator::Start::Blend, loop);
}

bool Actor::playState(const QString &state, Animator::Loop loop)
{
    const Animation *animation = ofState(state);
    if (animation)
        play(*animation, loop);
    return animation;
}

void Actor::beat()
{
    m_talker.beat(now());
    if (m_visible)
        draw();
}

qint64 Actor::due() const
{
    const bool moves = m_visible && !isStill();
    return std::min(moves ? now() + kFrameMs : Pulse::kNever, m_talker.due());
}

void Actor::draw()
{
    const Pose pose = m_animator.pose(now());
    const int mouth = m_talker.mouth();
    if (pose == m_drawnPose && mouth == m_drawnMouth)
        return;
    m_drawnPose = pose;
    m_drawnMouth = mouth;
    m_window.redraw();
}

void Actor::followFrame()
{
    if (m_visible)
        m_talker.balloon().follow(frame(), m_position + m_file->balloonAnchor().toPoint());
}

} // namespace agent
