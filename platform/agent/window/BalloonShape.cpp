#include "platform/agent/window/BalloonShape.h"

#include <QLineF>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace agent {

namespace {

constexpr qreal kRadius = 10;
constexpr qreal kTailWidth = 16;
constexpr qreal kBumps[] = { 12, 9.5, 11, 9 }; // radii of a cloud's bumps; unlike ones look less like a doily
constexpr qreal kLargestBump = 12;

/** The point of the body's edge from which a tail starts: as near to the tip as the round corners allow. */
QPointF root(const QRectF &body, const QPointF &tip)
{
    const qreal inset = kRadius + kTailWidth / 2;
    const auto clamped = [inset](qreal value, qreal low, qreal high) {
        return high - low < 2 * inset ? (low + high) / 2 : std::clamp(value, low + inset, high - inset);
    };
    const bool vertical = tip.y() < body.top() || tip.y() > body.bottom();
    if (vertical)
        return { clamped(tip.x(), body.left(), body.right()),
            tip.y() > body.bottom() ? body.bottom() : body.top() };
    return { tip.x() > body.right() ? body.right() : body.left(),
        clamped(tip.y(), body.top(), body.bottom()) };
}

QPainterPath tail(const QRectF &body, const QPointF &tip)
{
    const QPointF start = root(body, tip);
    const bool vertical = tip.y() < body.top() || tip.y() > body.bottom();
    const QPointF along = vertical ? QPointF(kTailWidth / 2, 0) : QPointF(0, kTailWidth / 2);
    // It starts a little inside, so that no line is left between body and tail.
    const QPointF inwards = vertical ? QPointF(0, tip.y() > body.bottom() ? -2 : 2)
                                     : QPointF(tip.x() > body.right() ? -2 : 2, 0);
    const QPointF bend = (start + tip) / 2 + (vertical ? QPointF(start.x() - tip.x(), 0) / 4 : QPointF());
    QPainterPath path(start - along + inwards);
    path.quadTo(bend - along / 3, tip);
    path.quadTo(bend + along / 3, start + along + inwards);
    path.closeSubpath();
    return path;
}

void addBumps(QPainterPath &path, const QPointF &from, const QPointF &to)
{
    const QLineF edge(from, to);
    const int count = std::max(1, int(std::lround(edge.length() / (kLargestBump * 1.6))));
    for (int bump = 0; bump < count; ++bump) {
        const qreal radius = kBumps[bump % int(std::size(kBumps))];
        path.addEllipse(edge.pointAt(qreal(bump) / count), radius, radius);
    }
}

} // namespace

QPainterPath speechShape(const QRectF &body, const QPointF &tip)
{
    QPainterPath path;
    path.addRoundedRect(body, kRadius, kRadius);
    return body.contains(tip) ? path : path.united(tail(body, tip)).simplified();
}

QPainterPath thoughtShape(const QRectF &body, const QPointF &tip)
{
    const QRectF ring = body.adjusted(kLargestBump, kLargestBump, -kLargestBump, -kLargestBump);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRect(ring);
    addBumps(path, ring.topLeft(), ring.topRight());
    addBumps(path, ring.topRight(), ring.bottomRight());
    addBumps(path, ring.bottomRight(), ring.bottomLeft());
    addBumps(path, ring.bottomLeft(), ring.topLeft());
    path = path.simplified();
    const QLineF way(root(body, tip), tip);
    for (const auto &[place, radius] : { std::pair(0.34, 3.4), std::pair(0.85, 1.8) })
        path.addEllipse(way.pointAt(place), radius, radius);
    return path;
}

} // namespace agent
