#include "platform/agent/window/Animator.h"

#include <QEasingCurve>

#include <algorithm>

namespace agent {

namespace {

constexpr int kBlendMs = 140; // from the pose on screen into an animation
constexpr int kReturnMs = 240; // straight back to rest

} // namespace

Animator::Animator(std::shared_ptr<const CharacterFile> file)
    : m_file(std::move(file))
{
}

void Animator::setOut(const Animation *animation, qint64 now, int blendMs)
{
    m_from = pose(now);
    m_animation = animation;
    m_start = now;
    m_blendMs = blendMs;
    m_returning = false;
    m_loop = Loop::Endless;
}

void Animator::play(const Animation &animation, qint64 now, Start start, Loop loop)
{
    setOut(&animation, now, start == Start::Blend ? kBlendMs : 0);
    m_loop = loop;
}

bool Animator::goRound(qint64 now)
{
    if (!m_animation || !m_animation->loops() || isLooping() || !isStill(now))
        return false;
    // Both ends of the round show the same pose.
    m_start = now - m_animation->loopFromMs();
    return true;
}

void Animator::comeBack(qint64 now)
{
    if (leadsToRest(now))
        return;
    const Animation *way = m_file->animation(m_animation->returnName());
    if (way && !way->loops()) {
        setOut(way, now, kBlendMs);
        m_returning = true;
    } else {
        setOut(nullptr, now, kReturnMs);
    }
}

Pose Animator::pose(qint64 now) const
{
    const qint64 elapsed = std::max<qint64>(0, now - m_start);
    const int limit
        = m_animation && !isLooping() ? m_animation->durationMs() : std::numeric_limits<int>::max();
    const Pose aim
        = m_animation ? m_animation->at(int(std::min<qint64>(elapsed, limit))) : m_file->restPose();
    if (elapsed >= m_blendMs)
        return aim;
    static const QEasingCurve kEase(QEasingCurve::InOutSine);
    return Pose::blend(m_from, aim, kEase.valueForProgress(qreal(elapsed) / m_blendMs));
}

bool Animator::isStill(qint64 now) const
{
    if (isLooping())
        return false;
    return now - m_start >= std::max(m_blendMs, m_animation ? m_animation->durationMs() : 0);
}

bool Animator::leadsToRest(qint64 now) const
{
    return !m_animation || m_returning || (m_animation->endsAtRest() && !isLooping() && isStill(now));
}

bool Animator::isAtRest(qint64 now) const { return leadsToRest(now) && isStill(now); }

bool Animator::canSpeak() const { return !m_animation || m_returning || m_animation->canSpeak(); }

} // namespace agent
