#include "tests/platform/agent/voice/SyntheticVoices.h"

#include "platform/agent/speech/Speech.h"

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

constexpr int kRate = 16000;
constexpr int kAround = kRate * 3 / 10; // samples before and after

QByteArray withRoom(const QByteArray &sound)
{
    QRandomGenerator random(1);
    QByteArray noise;
    for (int i = 0; i < kAround; ++i) {
        const auto sample = qint16(random.bounded(-10, 10));
        noise.append(reinterpret_cast<const char *>(&sample), sizeof sample);
    }
    return noise + sound + noise;
}

/** Another sample rate, by straight lines between samples that have been smoothed a little. */
QByteArray resampled(const QByteArray &sound, int rate)
{
    const auto *samples = reinterpret_cast<const qint16 *>(sound.constData());
    const qsizetype count = sound.size() / 2;
    std::vector<double> smooth(size_t(count) + 1);
    for (qsizetype i = 0; i < count; ++i)
        smooth[size_t(i) + 1] = smooth[size_t(i)] + 0.85 * (samples[i] - smooth[size_t(i)]);
    QByteArray result;
    for (double at = 0; at < double(count - 1); at += double(rate) / kRate) {
        const auto i = size_t(at);
        const auto sample = qint16(0.6 * (smooth[i] + (smooth[i + 1] - smooth[i]) * (at - double(i))));
        result.append(reinterpret_cast<const char *>(&sample), sizeof sample);
    }
    return result;
}

QByteArray byEspeak(const QString &variant, const QString &text, double speed)
{
    agent::Voice voice;
    voice.variant = variant;
    voice.speed = int(160 * speed);
    agent::Speech speech(text, voice, agent::SpeechEngine::shared());
    QByteArray sound;
    while (!speech.atEnd())
        sound += speech.next().sound;
    return resampled(sound, agent::SpeechEngine::shared().sampleRate());
}

QByteArray byFlite(const QString &voice, const QString &text, double speed)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"said.wav"_s);
    const QStringList arguments{ u"-voice"_s, voice, u"--setf"_s, u"duration_stretch="_s + QString::number(1 / speed), u"-t"_s,
                                 text, u"-o"_s, path };
    QFile file(path);
    if (QProcess::execute(u"flite"_s, arguments) != 0 || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().mid(44); // 16 kHz after the header
}

} // namespace

QStringList syntheticVoices()
{
    return { u"en-us"_s, u"en-us+f3"_s, u"flite slt"_s };
}

QByteArray spokenBy(const QString &voice, const QString &text, double speed)
{
    const QByteArray sound = voice.startsWith(u"flite "_s) ? byFlite(voice.section(u' ', 1), text, speed)
                                                           : byEspeak(voice.section(u'+', 1), text, speed);
    return sound.isEmpty() ? QByteArray() : withRoom(sound);
}
