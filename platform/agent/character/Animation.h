#pragma once

#include "platform/agent/character/Pose.h"

#include <QEasingCurve>
#include <QString>

namespace agent {

/** What a track moves. Numbers move in between; a picture or layer holds until the next key. */
enum class Channel { Rotate, X, Y, ScaleX, ScaleY, Skew, Opacity, Picture, Layer };

struct Key {
    int ms = 0;
    qreal value = 0;
    QEasingCurve::Type easing = QEasingCurve::InOutSine; // on the way to this key from the one before
};

/** One channel of one part over time. Before its first key a number comes from rest, unless that key stands at 0. */
struct Track {
    qsizetype part = 0;
    Channel channel = Channel::Rotate;
    QList<Key> keys; // at least one, times strictly rising

    /** The value at a time; `rest` is where the part stands when nothing moves it. */
    qreal at(int ms, qreal rest) const;
};

/** The value of one channel of a pose, and its setting. */
qreal channelOf(const PartPose &part, Channel channel);
void setChannel(PartPose &part, Channel channel, qreal value);

/** A named movement. It starts near rest and ends in a pose that is held until the next movement. */
class Animation
{
public:
    struct Parts {
        QString name;
        int durationMs = 0;
        int loopFromMs = -1; // -1: ends after its duration
        bool canSpeak = false;
        QString returnName;
        QList<Track> tracks;
    };
    Animation(Parts parts, const Pose &rest);

    const QString &name() const { return m_parts.name; }
    int durationMs() const { return m_parts.durationMs; }
    /** Goes on from loopFromMs() again after its duration, until it is stopped. */
    bool loops() const { return m_parts.loopFromMs >= 0; }
    int loopFromMs() const { return m_parts.loopFromMs; }
    /** Made to be spoken in: its last pose leaves the mouth free. */
    bool canSpeak() const { return m_parts.canSpeak; }
    /** The animation that leads back to rest; empty: the player blends back to the rest pose. */
    const QString &returnName() const { return m_parts.returnName; }
    /** Its last pose is the rest pose, so that nothing need lead back. */
    bool endsAtRest() const { return m_endsAtRest; }
    /** The pose after so many ms; held at the end, or looping. */
    Pose at(int ms) const;

private:
    Parts m_parts;
    Pose m_rest;
    bool m_endsAtRest = false;
};

} // namespace agent
