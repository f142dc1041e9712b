#pragma once

#include "platform/agent/SpeechTags.h"
#include "platform/agent/window/Balloon.h"
#include "platform/agent/window/Engines.h"
#include "platform/agent/window/Events.h"
#include "platform/agent/window/Pulse.h"

#include <QObject>

#include <memory>

namespace agent {

/** What a character says and thinks: voice, mouth and balloon in step. */
class Talker : public QObject
{
    Q_OBJECT
public:
    Talker(const QString &id, std::shared_ptr<const CharacterFile> file, const Engines &engines, Pulse &pulse,
        Events &events);

    /** Speaks with the voice; the balloon's words come with it. */
    void speak(const QString &taggedText);
    /** Shows a thought at a reader's pace. */
    void think(const QString &taggedText);
    /** A word of the character itself, whole at once and without voice; it stays until the next one or
     * clear(). */
    void tell(const QString &text);
    /** Falls silent. The balloon goes too. */
    void hush();
    /** The balloon goes after a moment. */
    void linger(int ms);
    void hideBalloon();

    bool isTalking() const { return m_talking; }
    /** Shape of the mouth, or kMouthOfPose when nothing is spoken. */
    int mouth() const { return m_mouth; }
    /** Throws BadData. */
    void setBalloonStyle(int style) { m_format = BalloonFormat::ofStyle(style); }
    bool hasBalloon() const { return m_format.has(BalloonOn); }
    Balloon &balloon() { return m_balloon; }

    void beat(qint64 now);
    qint64 due() const { return std::min(m_nextWord, m_hideAt); }

private:
    Speaker &speaker();
    void showBalloon(Balloon::Kind kind, const QStringList &words, const BalloonFormat &format);
    void showThought(qint64 now);
    void end();

    QString m_id;
    std::shared_ptr<const CharacterFile> m_file;
    std::function<std::unique_ptr<Speaker>(const CharacterFile &)> m_makeSpeaker;
    Pulse &m_pulse;
    Events &m_events;
    std::unique_ptr<Speaker> m_speaker;
    Balloon m_balloon;
    BalloonFormat m_format { BalloonOn | SizeToText | AutoHide | AutoPace, 0, 0 };
    bool m_talking = false;
    int m_mouth = kMouthOfPose;
    QList<SpeechPiece> m_thought; // what is still to be shown of a thought
    qint64 m_nextWord = Pulse::kNever;
    qint64 m_hideAt = Pulse::kNever;
};

} // namespace agent
