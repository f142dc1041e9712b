#include "platform/agent/window/Talker.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kLingerMs = 1200; // between the last word and the end of the balloon
constexpr int kWordMs = 375; // 160 words a minute
constexpr int kReadingMs = 600; // more for a thought's last word

/** One of the alternatives of a text, chosen at random. */
QString oneAlternative(const QString &taggedText)
{
    const QStringList all = speechAlternatives(taggedText);
    return all.at(QRandomGenerator::global()->bounded(all.size()));
}

} // namespace

Talker::Talker(const QString &id, std::shared_ptr<const CharacterFile> file, const Engines &engines,
    Pulse &pulse, Events &events)
    : m_id(id)
    , m_file(std::move(file))
    , m_makeSpeaker(engines.speaker)
    , m_pulse(pulse)
    , m_events(events)
{
    connect(&m_balloon, &Balloon::dismissed, this, [this] {
        hideBalloon();
        m_pulse.wakeAt(m_pulse.now());
    });
}

Speaker &Talker::speaker()
{
    if (m_speaker)
        return *m_speaker;
    m_speaker = m_makeSpeaker(*m_file);
    connect(m_speaker.get(), &Speaker::wordShown, &m_balloon, &Balloon::showWords);
    connect(m_speaker.get(), &Speaker::mouthChanged, this, [this](int shape) {
        m_mouth = shape;
        m_pulse.wakeAt(m_pulse.now());
    });
    connect(m_speaker.get(), &Speaker::bookmark, this, [this](int number) {
        m_events.post([number](Control &control) { emit control.bookmark(number); });
        m_pulse.wakeAt(m_pulse.now());
    });
    connect(m_speaker.get(), &Speaker::finished, this, [this] {
        if (m_talking)
            end();
        m_pulse.wakeAt(m_pulse.now());
    });
    return *m_speaker;
}

void Talker::speak(const QString &taggedText)
{
    hush();
    m_talking = true;
    m_mouth = 0;
    speaker().start(oneAlternative(taggedText));
    // A text without a word may have ended already.
    if (m_talking && !m_speaker->words().isEmpty())
        showBalloon(Balloon::Kind::Speech, m_speaker->words(), m_format);
}

void Talker::think(const QString &taggedText)
{
    hush();
    const SpeechText text = parseSpeech(oneAlternative(taggedText));
    if (text.pieces.isEmpty())
        return;
    m_talking = true;
    m_thought = text.pieces;
    m_nextWord = m_pulse.now();
    showBalloon(Balloon::Kind::Thought, text.words, m_format);
}

void Talker::tell(const QString &text)
{
    hush();
    showBalloon(
        Balloon::Kind::Speech, text.split(u' ', Qt::SkipEmptyParts), { BalloonOn | SizeToText, 0, 0 });
    m_balloon.showAll();
}

void Talker::hush()
{
    const bool wasSpeaking = m_talking;
    m_talking = false;
    m_mouth = kMouthOfPose;
    m_nextWord = Pulse::kNever;
    if (wasSpeaking && m_speaker)
        m_speaker->stop();
    hideBalloon();
}

void Talker::linger(int ms) { m_hideAt = m_pulse.now() + ms; }

void Talker::showBalloon(Balloon::Kind kind, const QStringList &words, const BalloonFormat &format)
{
    if (!format.has(BalloonOn))
        return;
    m_hideAt = Pulse::kNever;
    m_balloon.begin(kind, m_file->name(), words, format);
    m_balloon.show();
    m_events.post([id = m_id](Control &control) { emit control.balloonShown(id); });
}

void Talker::hideBalloon()
{
    m_hideAt = Pulse::kNever;
    if (!m_balloon.isVisible())
        return;
    m_balloon.hide();
    m_events.post([id = m_id](Control &control) { emit control.balloonHidden(id); });
}

void Talker::end()
{
    m_talking = false;
    m_mouth = kMouthOfPose;
    m_nextWord = Pulse::kNever;
    m_balloon.showAll();
    if (m_format.has(AutoHide))
        linger(kLingerMs);
}

void Talker::beat(qint64 now)
{
    if (now >= m_hideAt)
        hideBalloon();
    if (now < m_nextWord)
        return;
    if (m_thought.isEmpty())
        end();
    else
        showThought(now);
}

/** Shows one more word. Of the tags only bookmarks count in a thought. */
void Talker::showThought(qint64 now)
{
    const SpeechPiece piece = m_thought.takeFirst();
    m_balloon.showWords(piece.words);
    if (piece.bookmark > 0)
        m_events.post([number = piece.bookmark](Control &control) { emit control.bookmark(number); });
    m_nextWord = now + (piece.spoken.isEmpty() ? 0 : kWordMs) + (m_thought.isEmpty() ? kReadingMs : 0);
}

} // namespace agent
