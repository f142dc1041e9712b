#include "platform/agent/character/Pose.h"

#include <algorithm>

namespace agent {

namespace {

PartPose blended(const PartPose &from, const PartPose &to, qreal t)
{
    const auto between = [t](qreal a, qreal b) { return a + (b - a) * t; };
    const PartPose &nearer = t < 0.5 ? from : to;
    return { between(from.rotate, to.rotate), between(from.x, to.x), between(from.y, to.y),
             between(from.scaleX, to.scaleX), between(from.scaleY, to.scaleY), between(from.skew, to.skew),
             between(from.opacity, to.opacity), nearer.picture, nearer.layer };
}

} // namespace

Pose Pose::blend(const Pose &from, const Pose &to, qreal t)
{
    Q_ASSERT(from.size() == to.size());
    const qreal bounded = std::clamp(t, 0.0, 1.0);
    Pose pose(to.size());
    for (qsizetype i = 0; i < pose.size(); ++i)
        pose[i] = blended(from[i], to[i], bounded);
    return pose;
}

} // namespace agent
