#pragma once

#include "platform/agent/Agent.h"

#include <QList>

#include <functional>

namespace agent {

/** What a character has to tell its client, kept until its own state is in order: a handler may stop
   requests, unload the character or destroy the control. */
class Events
{
public:
    using Event = std::function<void(Control &)>;

    void post(Event event) { m_waiting.append(std::move(event)); }
    bool isEmpty() const { return m_waiting.isEmpty(); }
    Event takeFirst() { return m_waiting.takeFirst(); }

private:
    QList<Event> m_waiting;
};

} // namespace agent
