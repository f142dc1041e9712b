#pragma once

#include "platform/agent/character/CharacterRenderer.h"
#include "platform/agent/window/Animator.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>

namespace agent {

/** A character in a dialog: waves when it appears, stands there, and blinks now and then. */
class CharacterPicture : public QWidget
{
    Q_OBJECT
public:
    CharacterPicture(std::shared_ptr<const CharacterFile> file, QWidget *parent);
    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void play(const QString &animation);

    CharacterRenderer m_renderer;
    Animator m_animator;
    QElapsedTimer m_clock;
    QBasicTimer m_frames;
    QBasicTimer m_pause;
};

} // namespace agent
