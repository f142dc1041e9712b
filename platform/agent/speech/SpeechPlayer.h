#pragma once

#include "platform/agent/speech/AudioOutput.h"
#include "platform/agent/speech/Speech.h"

#include <QElapsedTimer>
#include <QObject>
#include <QQueue>
#include <QStringList>
#include <QTimer>

#include <memory>

namespace agent {

/** Speaks one text at a time and tells how far it is. Time is taken from the clock and not from the sound device, so
    that words and mouth keep their pace whether or not anything is heard. Of several players that speak at once only
    the first is heard. */
class SpeechPlayer : public QObject
{
    Q_OBJECT
public:
    explicit SpeechPlayer(QObject *parent = nullptr, SpeechEngine &engine = SpeechEngine::shared());
    ~SpeechPlayer() override;

    /** Begins to speak a text with speech tags; what was being spoken is cut off as by stop(). */
    void start(const QString &taggedText, const Voice &voice);
    /** Falls silent at once. The mouth closes; there is no finished(). */
    void stop();
    bool isSpeaking() const { return m_speech != nullptr; }
    /** The written form of the text, complete from its start on. */
    QStringList words() const { return m_words; }

signals:
    /** So many of the words are to be seen now. */
    void wordShown(int count);
    /** 0 closed to 6 narrow, as the mouth pictures of a character are numbered. */
    void mouthChanged(int shape);
    void bookmark(int number);
    /** The text is spoken to its end; all words have been shown. */
    void finished();

private:
    struct Due {
        qint64 at = 0; // microseconds since the start
        SpeechEvent event;
    };

    void turn();
    bool tellDue();
    void tell(const SpeechEvent &event);
    void prepare();
    void schedule();
    void release();
    void closeMouth();
    qint64 now() const;

    SpeechEngine &m_engine;
    AudioOutput m_output;
    std::unique_ptr<Speech> m_speech; // null while silent
    QStringList m_words;
    QQueue<Due> m_due;
    QElapsedTimer m_clock; // from the first sound on
    qint64 m_end = 0;      // of what is prepared, microseconds since the start
    int m_mouth = 0;
    quint64 m_run = 0; // of start and stop; tells whether a receiver of a signal has called one of them
    QTimer m_timer;
};

} // namespace agent
