#include "platform/agent/window/RequestQueue.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

QString describe(ErrorNumber number)
{
    switch (number) {
    case ErrorNumber::HiddenMeanwhile:
        return u"The character was hidden meanwhile."_s;
    case ErrorNumber::InterruptedByListening:
        return u"The character was asked to listen."_s;
    default:
        return u"The request was removed from the queue."_s;
    }
}

} // namespace

RequestPtr RequestQueue::add(Request::Kind kind, std::unique_ptr<Act> act)
{
    auto request = std::make_shared<Request>();
    request->kind = kind;
    m_waiting.push_back({ request, std::move(act) });
    return request;
}

void RequestQueue::intervene(Request::Kind kind, std::unique_ptr<Act> act, ErrorNumber number)
{
    if (m_current) {
        m_current->act->stop(m_actor);
        endCurrent(Request::Status::Interrupted, number, describe(number));
    }
    auto request = std::make_shared<Request>();
    request->kind = kind;
    m_waiting.push_front({ std::move(request), std::move(act) });
}

bool RequestQueue::work()
{
    const bool starts = !m_current && !m_waiting.empty();
    try {
        if (starts)
            start();
        else if (m_current && m_current->act->advance(m_actor))
            endCurrent(Request::Status::Complete);
    } catch (const Error &error) {
        endCurrent(Request::Status::Failed, error.number(), error.text());
    }
    return !m_events.isEmpty();
}

void RequestQueue::start()
{
    m_current = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_current->request->status = Request::Status::InProgress;
    m_events.post([request = RequestPtr(m_current->request)](
                      Control &control) { emit control.requestStarted(request); });
    m_current->act->begin(m_actor);
}

void RequestQueue::end(const Job &job, Request::Status status, ErrorNumber number, const QString &description)
{
    job.request->status = status;
    job.request->number = number;
    job.request->description = description;
    m_events.post(
        [request = RequestPtr(job.request)](Control &control) { emit control.requestCompleted(request); });
}

void RequestQueue::endCurrent(Request::Status status, ErrorNumber number, const QString &description)
{
    end(*m_current, status, number, description);
    m_current.reset();
}

void RequestQueue::interrupt(ErrorNumber number)
{
    if (!m_current || m_current->act->mustFinish())
        return;
    m_current->act->stop(m_actor);
    endCurrent(Request::Status::Interrupted, number, describe(number));
}

void RequestQueue::remove(const Job &job)
{
    end(job, Request::Status::Interrupted, ErrorNumber::Removed, describe(ErrorNumber::Removed));
}

void RequestQueue::stopAll()
{
    interrupt(ErrorNumber::Removed);
    for (const Job &job : std::exchange(m_waiting, {}))
        remove(job);
}

void RequestQueue::stop(const RequestPtr &request)
{
    if (m_current && m_current->request == request) {
        interrupt(ErrorNumber::Removed);
        return;
    }
    const auto found = std::find_if(
        m_waiting.begin(), m_waiting.end(), [&request](const Job &job) { return job.request == request; });
    if (found == m_waiting.end())
        return;
    remove(*found);
    m_waiting.erase(found);
}

void RequestQueue::drop()
{
    const auto forget = [](const Job &job) {
        job.request->status = Request::Status::Interrupted;
        job.request->number = ErrorNumber::Removed;
        job.request->description = describe(ErrorNumber::Removed);
    };
    if (m_current)
        forget(*m_current);
    m_current.reset();
    for (const Job &job : std::exchange(m_waiting, {}))
        forget(job);
}

qint64 RequestQueue::due() const
{
    if (m_current)
        return m_current->act->due();
    return m_waiting.empty() ? Pulse::kNever : m_actor.now();
}

} // namespace agent
