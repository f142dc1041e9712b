#include "platform/agent/character/Animation.h"

#include <algorithm>
#include <cmath>

namespace agent {

namespace {

bool isDiscrete(Channel channel) { return channel == Channel::Picture || channel == Channel::Layer; }

/** Overshooting curves must not make a part more than solid. */
qreal bounded(Channel channel, qreal value)
{
    return channel == Channel::Opacity ? std::clamp(value, 0.0, 1.0) : value;
}

/** To the eye: however something hidden stands. */
bool looksLike(const Pose &one, const Pose &other)
{
    for (qsizetype i = 0; i < one.size(); ++i) {
        if (one[i] != other[i] && (one[i].opacity > 0 || other[i].opacity > 0))
            return false;
    }
    return true;
}

} // namespace

qreal channelOf(const PartPose &part, Channel channel)
{
    switch (channel) {
    case Channel::Rotate: return part.rotate;
    case Channel::X: return part.x;
    case Channel::Y: return part.y;
    case Channel::ScaleX: return part.scaleX;
    case Channel::ScaleY: return part.scaleY;
    case Channel::Skew: return part.skew;
    case Channel::Opacity: return part.opacity;
    case Channel::Picture: return part.picture;
    case Channel::Layer: return part.layer;
    }
    return 0;
}

void setChannel(PartPose &part, Channel channel, qreal value)
{
    switch (channel) {
    case Channel::Rotate: part.rotate = value; return;
    case Channel::X: part.x = value; return;
    case Channel::Y: part.y = value; return;
    case Channel::ScaleX: part.scaleX = value; return;
    case Channel::ScaleY: part.scaleY = value; return;
    case Channel::Skew: part.skew = value; return;
    case Channel::Opacity: part.opacity = value; return;
    case Channel::Picture: part.picture = int(std::lround(value)); return;
    case Channel::Layer: part.layer = int(std::lround(value)); return;
    }
}

qreal Track::at(int ms, qreal rest) const
{
    const auto next = std::upper_bound(keys.cbegin(), keys.cend(), ms,
                                       [](int time, const Key &key) { return time < key.ms; });
    const Key before = next == keys.cbegin() ? Key{ 0, rest } : *std::prev(next);
    if (next == keys.cend() || isDiscrete(channel))
        return before.value;
    const qreal share = qreal(ms - before.ms) / (next->ms - before.ms);
    return before.value + (next->value - before.value) * QEasingCurve(next->easing).valueForProgress(share);
}

Animation::Animation(Parts parts, const Pose &rest)
    : m_parts(std::move(parts))
    , m_rest(rest)
{
    m_endsAtRest = !loops() && looksLike(at(durationMs()), rest);
}

Pose Animation::at(int ms) const
{
    const int end = durationMs();
    int time = std::clamp(ms, 0, end);
    if (loops() && ms > end)
        time = loopFromMs() + (ms - loopFromMs()) % (end - loopFromMs());
    Pose pose = m_rest;
    for (const Track &track : m_parts.tracks) {
        const qreal value = track.at(time, channelOf(m_rest[track.part], track.channel));
        setChannel(pose[track.part], track.channel, bounded(track.channel, value));
    }
    return pose;
}

} // namespace agent
