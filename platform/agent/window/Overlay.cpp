#include "platform/agent/window/Overlay.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

struct Free {
    void operator()(void *reply) const { std::free(reply); }
};

/** A compositing manager owns this selection; without one, transparent pixels of a window would be black. */
bool compositorRuns(xcb_connection_t *connection)
{
    constexpr std::string_view kName = "_NET_WM_CM_S0";
    const auto ask = xcb_intern_atom(connection, 0, quint16(kName.size()), kName.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(
        xcb_intern_atom_reply(connection, ask, nullptr));
    if (!atom)
        return false;
    const auto askOwner = xcb_get_selection_owner(connection, atom->atom);
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(
        xcb_get_selection_owner_reply(connection, askOwner, nullptr));
    return owner && owner->owner != XCB_NONE;
}

int distance(const QRect &area, const QPoint &point)
{
    const int x = std::clamp(point.x(), area.left(), area.right());
    const int y = std::clamp(point.y(), area.top(), area.bottom());
    return (QPoint(x, y) - point).manhattanLength();
}

} // namespace

bool screenComposites()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // A platform without a screen may have the interface, but no connection.
    return !x11 || !x11->connection() || compositorRuns(x11->connection());
}

Overlay::Overlay()
    : QWidget(nullptr,
        Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus
            | Qt::NoDropShadowWindowHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_AlwaysShowToolTips);
    // It must neither keep the program running nor go when the program's window is minimised.
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
}

void Overlay::setPicture(const QImage &picture)
{
    m_picture = picture;
    if (m_cutOut)
        cutOut();
    update();
}

void Overlay::showEvent(QShowEvent *event)
{
    m_cutOut = !screenComposites();
    if (m_cutOut)
        cutOut();
    else
        clearMask();
    QWidget::showEvent(event);
}

/** Half-covered pixels of the edge would look black: they belong to the shape with their full colour, or not.
 */
void Overlay::cutOut()
{
    if (m_picture.isNull())
        return;
    QImage shape = m_picture.createAlphaMask(Qt::ThresholdDither);
    shape.setDevicePixelRatio(1);
    setMask(QBitmap::fromImage(shape.size() == size() ? shape : shape.scaled(size())));
    m_opaque = m_picture.convertToFormat(QImage::Format_ARGB32).convertToFormat(QImage::Format_RGB32);
    m_opaque.setDevicePixelRatio(m_picture.devicePixelRatio());
}

void Overlay::paintEvent(QPaintEvent *)
{
    if (!m_picture.isNull() && !qFuzzyCompare(m_picture.devicePixelRatio(), devicePixelRatioF()))
        redraw();
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.drawImage(QPointF(0, 0), m_cutOut ? m_opaque : m_picture);
}

QRect screenAt(const QPoint &point)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    if (screens.isEmpty())
        return QRect(point, QSize(1, 1));
    const auto nearest = std::min_element(screens.cbegin(), screens.cend(), [&point](QScreen *a, QScreen *b) {
        return distance(a->geometry(), point) < distance(b->geometry(), point);
    });
    return (*nearest)->availableGeometry();
}

QPoint keptOnScreen(const QRect &frame)
{
    const QRect area = screenAt(frame.center());
    // The second bound comes last: of a frame larger than the screen the top left corner is seen.
    const int x = std::max(area.left(), std::min(frame.x(), area.right() + 1 - frame.width()));
    const int y = std::max(area.top(), std::min(frame.y(), area.bottom() + 1 - frame.height()));
    return { x, y };
}

} // namespace agent
