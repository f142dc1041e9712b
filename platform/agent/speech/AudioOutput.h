#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <memory>

class QAudioSink;
class QIODevice;

namespace agent {

/** Plays 16-bit samples of one channel on the default device. Without a device, and when it fails or vanishes, the
    samples are thrown away and nobody is told: what goes with the sound keeps time by the clock. */
class AudioOutput : public QObject
{
    Q_OBJECT
public:
    explicit AudioOutput(QObject *parent = nullptr);
    ~AudioOutput() override;

    /** Goes on with what was added before. */
    void play(const QByteArray &samples, int sampleRate);
    /** Silence at once. */
    void stop();
    bool isOpen() const { return m_device != nullptr; }

private:
    void open(int sampleRate);
    void feed();
    void close();

    std::unique_ptr<QAudioSink> m_sink;
    QIODevice *m_device = nullptr; // the sink's
    QByteArray m_pending;
    QTimer m_timer;
    int m_idleTurns = 0;
};

} // namespace agent
