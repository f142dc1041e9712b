#include "platform/agent/window/Idler.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kIdleAfterMs = 30'000;
constexpr int kLevelMs = 30'000;
constexpr int kLevels = 3;
constexpr int kPeriodMs = 10'000; // between two movements

} // namespace

void Idler::beat(bool free)
{
    if (!free || !m_on) {
        finish();
        m_due = Pulse::kNever;
        return;
    }
    const qint64 now = m_actor.now();
    if (m_due == Pulse::kNever)
        m_due = now + kIdleAfterMs;
    if (now >= m_due)
        goOn();
}

void Idler::goOn()
{
    const qint64 now = m_actor.now();
    if (!isIdle()) {
        m_since = now;
        m_events.post([id = m_id](Control &control) { emit control.idleStarted(id); });
    }
    m_level = int(std::min<qint64>(kLevels, 1 + (now - m_since) / kLevelMs));
    if (!m_actor.isAtRest()) {
        m_actor.comeBack();
        m_due = now + 300;
        return;
    }
    // A movement without end is played once only: a character that nobody looks at shall cost next to nothing.
    m_actor.playStateOnce(u"IdlingLevel%1"_s.arg(m_level));
    m_due = now + kPeriodMs;
}

void Idler::disturb()
{
    finish();
    m_due = Pulse::kNever;
}

void Idler::finish()
{
    if (!isIdle())
        return;
    m_level = 0;
    m_actor.comeBack();
    m_events.post([id = m_id](Control &control) { emit control.idleCompleted(id); });
}

} // namespace agent
