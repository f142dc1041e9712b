#pragma once

#include "platform/agent/window/Acts.h"

#include <deque>
#include <memory>
#include <optional>

namespace agent {

/** A character's requests, carried out strictly one after the other. It never waits: whoever owns it calls
   work() as often as something has moved. */
class RequestQueue
{
public:
    RequestQueue(Actor &actor, Events &events)
        : m_actor(actor)
        , m_events(events)
    {
    }

    RequestPtr add(Request::Kind kind, std::unique_ptr<Act> act);
    /** Before all others that wait, and in place of the current one, which ends as interrupted with that
     * number. */
    void intervene(Request::Kind kind, std::unique_ptr<Act> act, ErrorNumber number);
    /** Begins, carries on or ends at most one request; true when one began or ended, and there is news to
     * tell. */
    bool work();
    /** Ends the current request, unless it is one that is finished once begun. */
    void interrupt(ErrorNumber number);
    /** Ends the current request likewise and takes out all others. */
    void stopAll();
    /** Takes one out, or ends it when it is the current one. */
    void stop(const RequestPtr &request);
    /** Takes out everything without a word to the actor or anybody. */
    void drop();

    bool isEmpty() const { return !m_current && m_waiting.empty(); }
    /** When work() is to be called again at the latest. */
    qint64 due() const;

private:
    struct Job {
        std::shared_ptr<Request> request;
        std::unique_ptr<Act> act;
    };
    void start();
    void end(const Job &job, Request::Status status, ErrorNumber number, const QString &description);
    void endCurrent(
        Request::Status status, ErrorNumber number = ErrorNumber::None, const QString &description = {});
    void remove(const Job &job);

    Actor &m_actor;
    Events &m_events;
    std::optional<Job> m_current;
    std::deque<Job> m_waiting;
};

} // namespace agent
