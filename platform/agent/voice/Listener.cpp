#include "platform/agent/voice/Listener.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSource>
#include <QIODevice>
#include <QMediaDevices>

#include <algorithm>
#include <cstdlib>
#include <utility>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kLongestMs = 10'000;
constexpr int kEndingMs = 250; // people let go of the key with the last sound, which is still on its way
constexpr int kBufferMs = 100;
constexpr qsizetype kSliceMs = 40; // of sound that one turn of the event loop understands
constexpr qsizetype kSliceBytes = kSliceMs * Recogniser::kSampleRate / 1000 * 2;

QAudioFormat speechFormat()
{
    QAudioFormat format;
    format.setSampleRate(Recogniser::kSampleRate);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    return format;
}

int loudness(QByteArrayView sound)
{
    const auto *samples = reinterpret_cast<const qint16 *>(sound.data());
    int loudest = 0;
    for (qsizetype i = 0; i < sound.size() / 2; ++i)
        loudest = std::max(loudest, std::abs(int(samples[i])));
    return loudest * 100 / 32768;
}

} // namespace

Listener::Listener(QObject *parent, const QString &modelFolder)
    : QObject(parent)
    , m_recogniser(modelFolder)
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] { m_stage == Stage::Hearing ? stop() : endSound(); });
    connect(&m_turn, &QTimer::timeout, this, &Listener::turn);
}

Listener::~Listener() = default;

void Listener::start(const agent::Commands &commands)
{
    close();
    m_recogniser.prepare(commands);
    if (!m_recogniser.problem().isEmpty()) {
        fail(m_recogniser.problem());
        return;
    }
    if (!open())
        return;
    m_recogniser.begin();
    m_stage = Stage::Hearing;
    m_limit.start(kLongestMs);
}

bool Listener::open()
{
    const QAudioDevice microphone = QMediaDevices::defaultAudioInput();
    if (microphone.isNull()) {
        fail(u"There is no microphone."_s);
        return false;
    }
    m_source = std::make_unique<QAudioSource>(microphone, speechFormat());
    m_source->setBufferSize(speechFormat().bytesForDuration(kBufferMs * 1000));
    m_device = m_source->start();
    if (!m_device || m_source->error() != QAudio::NoError) {
        fail(u"The microphone \"%1\" cannot be opened."_s.arg(microphone.description()));
        return false;
    }
    connect(m_device, &QIODevice::readyRead, this, &Listener::takeSound);
    return true;
}

void Listener::takeSound()
{
    if (!m_device)
        return;
    const QByteArray sound = m_device->readAll();
    if (sound.isEmpty())
        return;
    m_pending += sound;
    m_turn.start(0);
    emit levelChanged(loudness(sound));
}

/** Understands a slice; after the last one of all, tells what it was. */
void Listener::turn()
{
    const qsizetype size = std::min(kSliceBytes, m_pending.size() & ~qsizetype(1));
    if (size > 0) {
        m_recogniser.add(QByteArrayView(m_pending).first(size));
        m_pending.remove(0, size);
        return;
    }
    m_turn.stop();
    if (m_stage != Stage::Thinking)
        return;
    const UserInput input = m_recogniser.end();
    close();
    emit understood(input);
}

void Listener::stop()
{
    if (m_stage != Stage::Hearing)
        return;
    m_stage = Stage::Ending;
    m_limit.start(kEndingMs);
}

void Listener::endSound()
{
    takeSound();
    const bool broken = m_source->error() == QAudio::FatalError || m_source->error() == QAudio::IOError;
    m_device = nullptr;
    m_source.reset();
    if (broken) {
        fail(u"The microphone has stopped working."_s);
        return;
    }
    m_stage = Stage::Thinking;
    m_turn.start(0);
}

void Listener::close()
{
    m_limit.stop();
    m_turn.stop();
    m_device = nullptr;
    m_source.reset();
    m_pending.clear();
    if (std::exchange(m_stage, Stage::Idle) != Stage::Idle)
        m_recogniser.end();
}

void Listener::fail(const QString &text)
{
    close();
    emit failed(text);
}

} // namespace agent
