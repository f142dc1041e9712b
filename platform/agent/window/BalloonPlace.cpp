#include "platform/agent/window/BalloonPlace.h"

#include <algorithm>

namespace agent {

namespace {

using Side = BalloonPlace::Side;

int within(int position, int extent, int low, int high)
{
    return std::max(low, std::min(position, high - extent));
}

Side chooseSide(const QSize &body, const QRect &character, const QPoint &head, const QRect &screen)
{
    const int height = body.height() + kTailLength;
    if (head.y() - height >= screen.top())
        return Side::Above;
    if (character.bottom() + height <= screen.bottom())
        return Side::Below;
    const int roomLeft = character.left() - screen.left();
    const int roomRight = screen.right() - character.right();
    return roomLeft >= roomRight ? Side::Left : Side::Right;
}

QPoint tipOf(Side side, const QRect &character, const QPoint &head)
{
    switch (side) {
    case Side::Above:
        return head;
    case Side::Below:
        return { head.x(), character.bottom() };
    case Side::Left:
        return { character.left(), head.y() };
    case Side::Right:
        break;
    }
    return { character.right(), head.y() };
}

QPoint corner(Side side, const QSize &body, const QPoint &tip)
{
    switch (side) {
    case Side::Above:
        return { tip.x() - body.width() / 2, tip.y() - kTailLength - body.height() };
    case Side::Below:
        return { tip.x() - body.width() / 2, tip.y() + kTailLength };
    case Side::Left:
        return { tip.x() - kTailLength - body.width(), tip.y() - body.height() / 2 };
    case Side::Right:
        break;
    }
    return { tip.x() + kTailLength, tip.y() - body.height() / 2 };
}

} // namespace

BalloonPlace placeBalloon(const QSize &body, const QRect &character, const QPoint &head, const QRect &screen)
{
    const Side side = chooseSide(body, character, head, screen);
    const QPoint tip = tipOf(side, character, head);
    const QPoint wish = corner(side, body, tip);
    const QPoint kept(within(wish.x(), body.width(), screen.left(), screen.right() + 1),
        within(wish.y(), body.height(), screen.top(), screen.bottom() + 1));
    return { side, QRect(kept, body), tip };
}

} // namespace agent
