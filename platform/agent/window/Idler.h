#pragma once

#include "platform/agent/window/Actor.h"

#include <algorithm>

namespace agent {

/** What a character does when nobody wants anything of it: it blinks; after half a minute it goes idle and
   moves a little now and then, with every half minute more at its leisure. */
class Idler
{
public:
    Idler(const QString &id, Actor &actor, Events &events)
        : m_id(id)
        , m_actor(actor)
        , m_events(events)
    {
    }

    void setOn(bool on) { m_on = on; }
    /** Carries idling on; `free` says that the character is visible and has nothing to do. */
    void beat(bool free);
    /** Somebody touched it: the waiting begins anew. */
    void disturb();
    bool isIdle() const { return m_level > 0; }
    qint64 due() const { return std::min(m_due, m_blinkAt); }

private:
    void waitFromNow();
    void blink();
    void goOn();
    void finish();

    QString m_id;
    Actor &m_actor;
    Events &m_events;
    bool m_on = true;
    int m_level = 0; // 0: not idle, else 1 to 3
    qint64 m_since = 0;
    qint64 m_due = Pulse::kNever; // next movement of idling
    qint64 m_blinkAt = Pulse::kNever; // before that
};

} // namespace agent
