#include "platform/agent/speech/SpeechPlayer.h"

#include <algorithm>
#include <utility>

namespace agent {

namespace {

constexpr qint64 kAhead = 3'000'000; // microseconds of speech that are kept ready

SpeechPlayer *s_heard = nullptr; // the player that has the sound device

} // namespace

SpeechPlayer::SpeechPlayer(QObject *parent, SpeechEngine &engine)
    : QObject(parent)
    , m_engine(engine)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &SpeechPlayer::turn);
}

SpeechPlayer::~SpeechPlayer()
{
    release();
}

void SpeechPlayer::start(const QString &taggedText, const Voice &voice)
{
    stop();
    m_speech = std::make_unique<Speech>(taggedText, voice, m_engine);
    m_words = m_speech->words();
    if (!s_heard)
        s_heard = this;
    // The first sound is made in the next turn, so that whoever starts a text is not kept waiting for it.
    m_timer.start(0);
}

void SpeechPlayer::stop()
{
    ++m_run;
    if (!m_speech)
        return;
    m_output.stop();
    release();
    closeMouth();
}

void SpeechPlayer::release()
{
    m_timer.stop();
    m_speech.reset();
    m_due.clear();
    m_end = 0;
    m_clock.invalidate();
    if (s_heard == this)
        s_heard = nullptr;
}

void SpeechPlayer::closeMouth()
{
    if (std::exchange(m_mouth, 0) != 0)
        emit mouthChanged(0);
}

qint64 SpeechPlayer::now() const
{
    return m_clock.isValid() ? m_clock.nsecsElapsed() / 1000 : 0;
}

void SpeechPlayer::turn()
{
    if (!tellDue())
        return;
    if (!m_speech->atEnd() && m_end - now() < kAhead) {
        prepare();
        m_timer.start(0); // what has been made is told of in a turn of its own
        return;
    }
    if (m_speech->atEnd() && m_due.isEmpty() && now() >= m_end) {
        release();
        closeMouth();
        emit finished();
        return;
    }
    schedule();
}

/** False when a receiver has started another text or stopped this one. */
bool SpeechPlayer::tellDue()
{
    const quint64 run = m_run;
    while (!m_due.isEmpty() && m_due.head().at <= now()) {
        tell(m_due.dequeue().event);
        if (run != m_run)
            return false;
    }
    return true;
}

void SpeechPlayer::tell(const SpeechEvent &event)
{
    switch (event.kind) {
    case SpeechEvent::Kind::Word: emit wordShown(event.value); break;
    case SpeechEvent::Kind::Bookmark: emit bookmark(event.value); break;
    case SpeechEvent::Kind::Mouth:
        if (std::exchange(m_mouth, event.value) != event.value)
            emit mouthChanged(event.value);
        break;
    }
}

void SpeechPlayer::prepare()
{
    const SpokenClause clause = m_speech->next();
    if (!m_clock.isValid())
        m_clock.start();
    // A machine that was too busy to make the clause in time speaks it late, but whole.
    const qint64 begin = std::max(m_end, now());
    for (const SpeechEvent &event : clause.events)
        m_due.enqueue({ begin + qint64(event.ms) * 1000, event });
    m_end = begin + clause.frames * 1'000'000 / std::max(1, clause.sampleRate);
    if (s_heard == this)
        m_output.play(clause.sound, clause.sampleRate);
}

void SpeechPlayer::schedule()
{
    qint64 next = m_due.isEmpty() ? m_end : m_due.head().at;
    if (!m_speech->atEnd())
        next = std::min(next, m_end - kAhead);
    // Rounded up: a timer that comes early would only ask again.
    m_timer.start(int(std::max<qint64>(0, next - now() + 999) / 1000));
}

} // namespace agent
