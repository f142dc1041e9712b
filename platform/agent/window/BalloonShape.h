#pragma once

#include <QPainterPath>
#include <QPoint>
#include <QRectF>

namespace agent {

/** A rounded rectangle with a tail that ends in the tip. */
QPainterPath speechShape(const QRectF &body, const QPointF &tip);
/** A cloud with small circles towards the tip. */
QPainterPath thoughtShape(const QRectF &body, const QPointF &tip);

} // namespace agent
