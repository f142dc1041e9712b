#include "platform/agent/window/ListenSession.h"

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kDecideMs = 15'000; // more than any recogniser needs
constexpr int kAnswerMs = 900; // before other requests go on
constexpr int kReadMs = 3'500; // until the balloon goes

} // namespace

ListenSession::ListenSession(const QString &id, Actor &actor, Pulse &pulse, const Engines &engines)
    : m_id(id)
    , m_actor(actor)
    , m_pulse(pulse)
    , m_makeEar(engines.ear)
{
}

Ear &ListenSession::ear()
{
    if (m_ear)
        return *m_ear;
    m_ear = m_makeEar();
    connect(m_ear.get(), &Ear::understood, this, &ListenSession::understood);
    connect(m_ear.get(), &Ear::failed, this, &ListenSession::answer);
    return *m_ear;
}

void ListenSession::begin(const Commands &commands)
{
    m_step = Step::Hearing;
    m_deadline = Pulse::kNever;
    m_actor.playState(u"Listening"_s);
    m_actor.talker().tell(u"Listening…"_s);
    m_actor.events().post([id = m_id](Control &control) { emit control.listenStarted(id); });
    // Without a microphone this answers at once.
    ear().start(commands);
}

void ListenSession::release()
{
    if (m_step != Step::Hearing)
        return;
    m_step = Step::Deciding;
    m_deadline = m_pulse.now() + kDecideMs;
    m_actor.playState(u"Hearing"_s, Animator::Loop::Once);
    m_ear->stop();
}

void ListenSession::understood(const UserInput &input)
{
    if (m_step != Step::Hearing && m_step != Step::Deciding)
        return;
    if (input.voice.isEmpty() && input.name.isEmpty())
        answer(u"I did not hear a command."_s);
    else if (input.name.isEmpty())
        answer(u"I understood “%1”, which is not one of my commands."_s.arg(input.voice));
    else
        answer(u"I understood “%1”."_s.arg(input.voice));
    UserInput told = input;
    told.characterId = m_id;
    m_actor.events().post([told](Control &control) { emit control.commandChosen(told); });
}

void ListenSession::answer(const QString &text)
{
    if (m_step != Step::Hearing && m_step != Step::Deciding)
        return;
    m_step = Step::Answering;
    m_deadline = m_pulse.now() + kAnswerMs;
    m_actor.comeBack();
    m_actor.talker().tell(text);
    m_actor.talker().linger(kReadMs);
    m_actor.events().post([id = m_id](Control &control) { emit control.listenCompleted(id); });
    m_pulse.wakeAt(m_pulse.now());
}

void ListenSession::beat()
{
    if (m_pulse.now() < m_deadline)
        return;
    if (m_step == Step::Deciding) {
        answer(u"I did not hear a command."_s);
        return;
    }
    m_step = Step::Off;
    m_deadline = Pulse::kNever;
}

} // namespace agent
