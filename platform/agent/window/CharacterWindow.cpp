#include "platform/agent/window/CharacterWindow.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

int buttonNumber(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::RightButton:
        return 2;
    case Qt::MiddleButton:
        return 4;
    default:
        return 0;
    }
}

int shiftNumber(Qt::KeyboardModifiers keys)
{
    return (keys & Qt::ShiftModifier ? 1 : 0) + (keys & Qt::ControlModifier ? 2 : 0)
        + (keys & Qt::AltModifier ? 4 : 0);
}

/** Wayland places windows itself and never says where: the rest of the drag is the desktop's. */
bool dragsByItself(QWindow *window)
{
    return QGuiApplication::platformName().startsWith("wayland"_L1) && window && window->startSystemMove();
}

} // namespace

CharacterWindow::CharacterWindow(const QString &name, const QString &description, QSize size, Painter painter)
    : m_painter(std::move(painter))
{
    setFixedSize(size);
    setWindowTitle(name);
    setAccessibleName(name);
    setAccessibleDescription(description);
}

void CharacterWindow::redraw() { setPicture(m_painter(devicePixelRatioF())); }

void CharacterWindow::place(const QPoint &corner)
{
    if (!m_dragging)
        move(corner);
}

void CharacterWindow::endDrag()
{
    m_grip.reset();
    m_dragging = false;
}

void CharacterWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_grip = event->position().toPoint();
    else if (event->button() == Qt::RightButton)
        emit menuWanted(event->globalPosition().toPoint());
}

void CharacterWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_grip || !(event->buttons() & Qt::LeftButton))
        return;
    const QPoint pointer = event->globalPosition().toPoint();
    const int travelled = (pointer - pos() - *m_grip).manhattanLength();
    const bool starts = !m_dragging && travelled >= QGuiApplication::styleHints()->startDragDistance();
    if (!m_dragging && !starts)
        return;
    if (starts && dragsByItself(windowHandle())) {
        endDrag();
    } else {
        m_dragging = true;
        move(pointer - *m_grip);
    }
    if (starts)
        emit dragStarted(1, shiftNumber(event->modifiers()), pointer);
}

void CharacterWindow::mouseReleaseEvent(QMouseEvent *event)
{
    const bool dragged = m_dragging && event->button() == Qt::LeftButton;
    if (event->button() == Qt::LeftButton)
        endDrag();
    const int shift = shiftNumber(event->modifiers());
    const QPoint pointer = event->globalPosition().toPoint();
    if (dragged)
        emit dragCompleted(1, shift, pointer);
    else
        emit clicked(buttonNumber(event->button()), shift, pointer);
}

void CharacterWindow::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_grip = event->position().toPoint();
    emit doubleClicked(
        buttonNumber(event->button()), shiftNumber(event->modifiers()), event->globalPosition().toPoint());
}

void CharacterWindow::moveEvent(QMoveEvent *event)
{
    Overlay::moveEvent(event);
    emit placed();
}

} // namespace agent
