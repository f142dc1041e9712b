#include "platform/agent/speech/AudioOutput.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QIODevice>
#include <QMediaDevices>

namespace agent {

namespace {

constexpr int kFeedMs = 20;
constexpr int kBufferMs = 200;
constexpr int kTurnsToTail = 50; // a second after the last sample the device is let go

QAudioFormat formatOf(int sampleRate)
{
    QAudioFormat format;
    format.setSampleRate(sampleRate);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    return format;
}

} // namespace

AudioOutput::AudioOutput(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(kFeedMs);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &AudioOutput::feed);
}

AudioOutput::~AudioOutput() = default;

void AudioOutput::play(const QByteArray &samples, int sampleRate)
{
    if (samples.isEmpty())
        return;
    if (!m_sink)
        open(sampleRate);
    if (!m_device)
        return;
    m_pending += samples;
    m_idleTurns = 0;
    feed();
}

void AudioOutput::open(int sampleRate)
{
    const QAudioDevice device = QMediaDevices::defaultAudioOutput();
    if (device.isNull())
        return;
    const QAudioFormat format = formatOf(sampleRate);
    m_sink = std::make_unique<QAudioSink>(device, format);
    m_sink->setBufferSize(format.bytesForDuration(kBufferMs * 1000));
    m_device = m_sink->start();
    if (m_device)
        m_timer.start();
}

/** The device takes what it has room for. It tells of its failing by its error only. */
void AudioOutput::feed()
{
    if (!m_sink || m_sink->error() == QAudio::FatalError || m_sink->error() == QAudio::IOError
        || m_sink->state() == QAudio::StoppedState) {
        close();
        return;
    }
    const qint64 room = qMin<qint64>(m_sink->bytesFree(), m_pending.size()) & ~qint64(1);
    const qint64 written = room > 0 ? m_device->write(m_pending.constData(), room) : 0;
    if (written > 0)
        m_pending.remove(0, written);
    if (m_pending.isEmpty() && ++m_idleTurns > kTurnsToTail)
        close();
}

void AudioOutput::close()
{
    m_timer.stop();
    m_pending.clear();
    m_device = nullptr;
    m_idleTurns = 0;
    m_sink.reset();
}

void AudioOutput::stop()
{
    if (m_sink)
        m_sink->reset(); // without this the device would play on to the end of its buffer
    close();
}

} // namespace agent
