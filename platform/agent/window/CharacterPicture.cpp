#include "platform/agent/window/CharacterPicture.h"

#include <QPainter>
#include <QTimerEvent>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kFrameMs = 33;
constexpr int kBlinkEveryMs = 4000;

} // namespace

CharacterPicture::CharacterPicture(std::shared_ptr<const CharacterFile> file, QWidget *parent)
    : QWidget(parent)
    , m_renderer(file)
    , m_animator(file)
{
    m_clock.start();
    setAccessibleName(file->name());
    setAccessibleDescription(file->description());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMinimumSize(file->size().toSize() / 2);
}

QSize CharacterPicture::sizeHint() const { return m_renderer.file().size().toSize(); }

void CharacterPicture::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    play(u"Wave"_s);
}

void CharacterPicture::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_frames.stop();
    m_pause.stop();
}

void CharacterPicture::play(const QString &animation)
{
    const Animation *found = m_renderer.file().animation(animation);
    if (!found)
        return;
    m_animator.play(*found, m_clock.elapsed());
    m_pause.stop();
    m_frames.start(kFrameMs, this);
}

void CharacterPicture::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_pause.timerId())
        return play(u"Blink"_s);
    if (event->timerId() != m_frames.timerId())
        return QWidget::timerEvent(event);
    update();
    const qint64 now = m_clock.elapsed();
    if (!m_animator.isStill(now))
        return;
    if (!m_animator.isAtRest(now))
        return m_animator.comeBack(now);
    m_frames.stop();
    m_pause.start(kBlinkEveryMs, this);
}

void CharacterPicture::paintEvent(QPaintEvent *)
{
    const QSizeF frame = m_renderer.file().size();
    QRectF target(QPointF(), frame.scaled(size(), Qt::KeepAspectRatio));
    target.moveCenter(QRectF(rect()).center());
    QPainter painter(this);
    m_renderer.paint(painter, target, m_animator.pose(m_clock.elapsed()));
}

} // namespace agent
