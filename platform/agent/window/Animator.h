#pragma once

#include "platform/agent/character/CharacterFile.h"

#include <memory>

namespace agent {

/** Which pose a character has at which time. Every movement sets out from the pose on screen, so nothing
   jumps; an animation that has ended holds its last pose. Times in ms of one clock. */
class Animator
{
public:
    enum class Start { Blend, AtOnce }; // AtOnce: for a character that was not to be seen before
    enum class Loop { Endless, Once };

    explicit Animator(std::shared_ptr<const CharacterFile> file);

    void play(const Animation &animation, qint64 now, Start start = Start::Blend, Loop loop = Loop::Endless);
    /** What would go on for ever but has been played once goes round once more; false when nothing such is
     * held. */
    bool goRound(qint64 now);
    /** Leads back to rest, by the animation made for that or straight; nothing to do when it is there
     * already. */
    void comeBack(qint64 now);
    /** At rest at once. */
    void reset() { m_animation = nullptr, m_blendMs = 0, m_returning = false; }

    Pose pose(qint64 now) const;
    /** Nothing moves any more: at rest, or holding the last pose of an animation. */
    bool isStill(qint64 now) const;
    bool isAtRest(qint64 now) const;
    /** The pose that it holds, or comes to, leaves the mouth free. */
    bool canSpeak() const;
    /** An animation runs that does not end by itself. */
    bool isLooping() const { return m_animation && m_animation->loops() && m_loop == Loop::Endless; }

private:
    bool leadsToRest(qint64 now) const;
    void setOut(const Animation *animation, qint64 now, int blendMs);

    std::shared_ptr<const CharacterFile> m_file;
    const Animation *m_animation = nullptr; // null: rest
    Loop m_loop = Loop::Endless;
    bool m_returning = false; // what plays leads back to rest
    Pose m_from;
    qint64 m_start = 0;
    int m_blendMs = 0;
};

} // namespace agent
