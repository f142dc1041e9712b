#pragma once

#include "platform/agent/window/Overlay.h"

#include <QPoint>

#include <functional>
#include <optional>

namespace agent {

/** The window that a character stands in: draws what it is given, tells of clicks, is dragged with the left
 * button. */
class CharacterWindow : public Overlay
{
    Q_OBJECT
public:
    /** Paints the character as it is now, in a picture of the window's size and the given pixel ratio. */
    using Painter = std::function<QImage(qreal ratio)>;

    CharacterWindow(const QString &name, const QString &description, QSize size, Painter painter);

    void redraw() override;
    bool isDragged() const { return m_dragging; }
    /** Moves the frame; a dragging hand goes before. */
    void place(const QPoint &corner);
    /** Lets go of a drag, because the window goes. */
    void endDrag();

signals:
    /** Button 1 left, 2 right, 4 middle; shift 1, ctrl 2, alt 4; place on the screen. */
    void clicked(int button, int shift, const QPoint &at);
    void doubleClicked(int button, int shift, const QPoint &at);
    void dragStarted(int button, int shift, const QPoint &at);
    void dragCompleted(int button, int shift, const QPoint &at);
    void menuWanted(const QPoint &at);
    /** The frame stands elsewhere; also while it is dragged. */
    void placed();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void moveEvent(QMoveEvent *event) override;

private:
    Painter m_painter;
    std::optional<QPoint> m_grip; // where in the frame the left button went down
    bool m_dragging = false;
};

} // namespace agent
