#include "platform/agent/speech/SpeechEngine.h"

#include <espeak-ng/speak_lib.h>

#include <QFileInfo>

#include <cmath>
#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kBufferMs = 200;
constexpr int kLongestSeconds = 60; // of one piece of sound; what would sound longer is cut off
constexpr int kPitchStepsPerOctave = 56;
constexpr int kUnknownHertz = 100; // where a voice cannot be measured

RawSpeech *s_target = nullptr; // the library knows no user data for its callback
int s_rate = 22050;

qsizetype sampleAt(int milliseconds)
{
    return qsizetype(qMax(0, milliseconds)) * s_rate / 1000;
}

void takeEvent(const espeak_EVENT &event)
{
    if (event.type == espeakEVENT_MARK && event.id.name) {
        s_target->marks.append({ QByteArray(event.id.name).toInt(), sampleAt(event.audio_position) });
    } else if (event.type == espeakEVENT_PHONEME) {
        const char *name = event.id.string;
        s_target->phonemes.append(
            { QByteArray(name, qsizetype(strnlen(name, sizeof event.id.string))), sampleAt(event.audio_position) });
    }
}

int takeSpeech(short *samples, int count, espeak_EVENT *events)
{
    if (!s_target)
        return 1;
    if (samples && count > 0)
        s_target->samples.insert(s_target->samples.end(), samples, samples + count);
    for (; events && events->type != espeakEVENT_LIST_TERMINATED; ++events)
        takeEvent(*events);
    return s_target->samples.size() > size_t(kLongestSeconds) * size_t(s_rate) ? 1 : 0;
}

/** The frequency of a steady sound, by the shift at which it is most like itself. 0 when it is none. */
double hertzOf(const std::vector<qint16> &samples, int rate)
{
    const size_t window = size_t(rate / 10);
    const size_t longest = size_t(rate / 50);
    if (samples.size() < 2 * (window + longest))
        return 0;
    const qint16 *middle = samples.data() + samples.size() / 3;
    std::vector<double> likeness(longest + 1);
    double best = 0;
    for (size_t shift = size_t(rate / 500); shift <= longest; ++shift) {
        double together = 0, own = 1, other = 1;
        for (size_t i = 0; i < window; ++i) {
            together += double(middle[i]) * middle[i + shift];
            own += double(middle[i]) * middle[i];
            other += double(middle[i + shift]) * middle[i + shift];
        }
        likeness[shift] = together / std::sqrt(own * other);
        best = std::max(best, likeness[shift]);
    }
    // Twice the period fits as well; the first summit that is about as high as the highest is the period.
    for (size_t shift = size_t(rate / 500) + 1; shift < longest; ++shift) {
        if (likeness[shift] > 0.9 * best && likeness[shift] >= likeness[shift + 1])
            return double(rate) / double(shift);
    }
    return 0;
}

} // namespace

SpeechEngine &SpeechEngine::shared()
{
    static SpeechEngine engine;
    return engine;
}

bool SpeechEngine::isAvailable()
{
    if (!std::exchange(m_loaded, true))
        load();
    return m_available;
}

void SpeechEngine::load()
{
    // Asked for a folder without data the library would look in its own places.
    if (!m_dataFolder.isEmpty() && !QFileInfo::exists(m_dataFolder + u"/espeak-ng-data/phontab"_s))
        return;
    const QByteArray folder = m_dataFolder.toLocal8Bit();
    const int rate = espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, kBufferMs, folder.isEmpty() ? nullptr : folder.constData(),
                                       espeakINITIALIZE_PHONEME_EVENTS | espeakINITIALIZE_DONT_EXIT);
    m_available = rate > 0;
    if (!m_available)
        return;
    m_sampleRate = s_rate = rate;
    espeak_SetSynthCallback(takeSpeech);
}

/** Everything is set anew for every clause: the library's state remembers commands of the clause before. */
void SpeechEngine::select(const Voice &voice)
{
    const QByteArray name = voice.name.toUtf8();
    const QByteArray full = voice.variant.isEmpty() ? name : name + '+' + voice.variant.toUtf8();
    if (espeak_SetVoiceByName(full.constData()) != EE_OK)
        espeak_SetVoiceByName("en-us");
    espeak_SetParameter(espeakRATE, qBound(kSlowestSpeech, voice.speed, kFastestSpeech), 0);
    espeak_SetParameter(espeakPITCH, qBound(0, voice.pitch, 99), 0);
    espeak_SetParameter(espeakRANGE, qBound(0, voice.range, 99), 0);
    espeak_SetParameter(espeakVOLUME, 100, 0);
}

RawSpeech SpeechEngine::synthesise(const QByteArray &ssml, const Voice &voice, bool endPause)
{
    RawSpeech speech;
    if (!isAvailable())
        return speech;
    select(voice);
    s_target = &speech;
    const unsigned flags = espeakCHARS_UTF8 | espeakSSML | (endPause ? espeakENDPAUSE : 0U);
    espeak_Synth(ssml.constData(), size_t(ssml.size()) + 1, 0, POS_CHARACTER, 0, flags, nullptr, nullptr);
    s_target = nullptr;
    return speech;
}

int SpeechEngine::pitchForHertz(const Voice &voice, int hertz)
{
    return qBound(0, int(std::lround(50 + kPitchStepsPerOctave * std::log2(qMax(1, hertz) / middleHertz(voice)))), 99);
}

double SpeechEngine::middleHertz(const Voice &voice)
{
    double &hertz = m_middleHertz[voice.name + u'+' + voice.variant];
    if (hertz == 0) {
        Voice level = voice;
        level.pitch = 50;
        level.range = 0;
        level.speed = kSlowestSpeech;
        hertz = hertzOf(synthesise("oh", level, false).samples, m_sampleRate);
        if (hertz == 0)
            hertz = kUnknownHertz;
    }
    return hertz;
}

} // namespace agent
