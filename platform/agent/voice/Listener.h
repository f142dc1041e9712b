#pragma once

#include "platform/agent/voice/Recogniser.h"

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <memory>

class QAudioSource;
class QIODevice;

namespace agent {

/** Push to talk: listens to the microphone from start() to stop(), ten seconds at most, and tells what was understood.
    Sound is understood while it comes in and forgotten at once. */
class Listener : public QObject
{
    Q_OBJECT
public:
    explicit Listener(QObject *parent = nullptr, const QString &modelFolder = QString());
    ~Listener() override;

    /** Begins to listen for the voice grammars of these commands; failed() tells when that cannot be, before the call
        returns. A start during listening begins anew. */
    void start(const agent::Commands &commands);
    /** Ends it; understood() or failed() follows within half a second. Without effect when nobody listens. */
    void stop();
    /** From start() until what was understood has been told. */
    bool isListening() const { return m_stage != Stage::Idle; }

signals:
    /** The name is empty when the words are no command or not sure enough; voice holds the words in any case, and is
        empty when nothing was heard that could be one. */
    void understood(const agent::UserInput &input);
    /** A sentence for people: no microphone, no voice model … */
    void failed(const QString &text);
    /** Loudness of the last moment, 0 to 100. */
    void levelChanged(int level);

private:
    enum class Stage { Idle, Hearing, Ending, Thinking };

    bool open();
    void takeSound();
    void endSound();
    void turn();
    void close();
    void fail(const QString &text);

    Recogniser m_recogniser;
    std::unique_ptr<QAudioSource> m_source;
    QIODevice *m_device = nullptr; // the source's
    QByteArray m_pending;          // heard and not yet understood
    Stage m_stage = Stage::Idle;
    QTimer m_limit; // of hearing, then of its end
    QTimer m_turn;
};

} // namespace agent
