#pragma once

#include <QPoint>
#include <QRect>

namespace agent {

/** Where a balloon stands on the screen. */
struct BalloonPlace {
    enum class Side { Above, Below, Left, Right };
    Side side = Side::Above; // of the character
    QRect body; // without the tail
    QPoint tip; // of the tail
};

constexpr int kTailLength = 18;

/** Above the head if there is room, else below the character, else beside it where there is more room; the
   body always lies within the screen. All in screen coordinates. */
BalloonPlace placeBalloon(const QSize &body, const QRect &character, const QPoint &head, const QRect &screen);

} // namespace agent
