#include "platform/agent/window/Idler.h"

#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kIdleAfterMs = 30'000;
constexpr int kLevelMs = 30'000;
constexpr int kLevels = 3;
constexpr int kPeriodMs = 10'000; // between two movements
constexpr int kBlinkMs = 4'000; // at least, between two blinks
const QString kBlink = u"Blink"_s;

} // namespace

void Idler::beat(bool free)
{
    if (!free || !m_on) {
        disturb();
        return;
    }
    if (m_due == Pulse::kNever)
        waitFromNow();
    if (m_actor.now() >= m_blinkAt)
        blink();
    if (m_actor.now() >= m_due)
        goOn();
}

void Idler::waitFromNow()
{
    m_due = m_actor.now() + kIdleAfterMs;
    m_blinkAt = m_actor.file().animation(kBlink) ? m_actor.now() + kBlinkMs : Pulse::kNever;
}

/** A pose that is held, such as pointing, is left alone. */
void Idler::blink()
{
    if (m_actor.isAtRest())
        m_actor.play(*m_actor.file().animation(kBlink), Animator::Loop::Once);
    m_blinkAt = m_actor.now() + kBlinkMs + QRandomGenerator::global()->bounded(kBlinkMs);
}

void Idler::goOn()
{
    const qint64 now = m_actor.now();
    if (!isIdle()) {
        m_since = now;
        m_blinkAt = Pulse::kNever;
        m_events.post([id = m_id](Control &control) { emit control.idleStarted(id); });
    }
    m_level = int(std::min<qint64>(kLevels, 1 + (now - m_since) / kLevelMs));
    if (m_level == kLevels && m_actor.goRound()) { // who sleeps sleeps on
        m_due = now + kPeriodMs;
        return;
    }
    if (!m_actor.isAtRest()) {
        m_actor.comeBack();
        m_due = now + 300;
        return;
    }
    // A movement without end is played once only: a character that nobody looks at shall cost next to
    // nothing.
    m_actor.playState(u"IdlingLevel%1"_s.arg(m_level), Animator::Loop::Once);
    m_due = now + kPeriodMs;
}

void Idler::disturb()
{
    finish();
    m_due = m_blinkAt = Pulse::kNever;
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
