#pragma once

#include <QImage>
#include <QWidget>

namespace agent {

/** Whether the screen lets windows shine through; otherwise a window of another shape than a rectangle is cut
 * out. */
bool screenComposites();

/** A borderless window on top of all others that shows a picture with transparent parts and never takes the
   focus. Where nothing composites the screen it is cut to the picture's shape. */
class Overlay : public QWidget
{
    Q_OBJECT
public:
    Overlay();

    /** What the window shows. */
    const QImage &picture() const { return m_picture; }

protected:
    /** Shows a picture whose device pixel ratio is the window's. */
    void setPicture(const QImage &picture);
    /** Makes the picture anew, because the window came to a screen of another pixel ratio. */
    virtual void redraw() = 0;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void cutOut();
    QImage m_picture;
    QImage m_opaque; // the same without transparency, for a window that is cut out
    bool m_cutOut = false;
};

/** Where a frame must stand so that it lies wholly on the nearest screen's usable area. */
QPoint keptOnScreen(const QRect &frame);
/** The usable area of the screen that a point is on or nearest to. */
QRect screenAt(const QPoint &point);

} // namespace agent
