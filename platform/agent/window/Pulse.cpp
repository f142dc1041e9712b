#include "platform/agent/window/Pulse.h"

#include <algorithm>

namespace agent {

SystemPulse::SystemPulse(QObject *parent)
    : Pulse(parent)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Pulse::beat);
}

qint64 SystemPulse::now() const { return m_clock.elapsed(); }

void SystemPulse::wakeAt(qint64 due)
{
    if (due == kNever)
        m_timer.stop();
    else
        m_timer.start(int(std::clamp<qint64>(due - now(), 0, std::numeric_limits<int>::max())));
}

} // namespace agent
