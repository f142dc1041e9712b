#pragma once

#include "platform/agent/Voice.h"

#include <QByteArray>
#include <QHash>
#include <QList>

#include <vector>

namespace agent {

/** Sound and where in it things are, in samples from its beginning. */
struct RawSpeech {
    struct Mark {
        int number = 0;
        qsizetype at = 0;
    };
    struct Phoneme {
        QByteArray name;
        qsizetype at = 0;
    };
    std::vector<qint16> samples; // one channel
    QList<Mark> marks;
    QList<Phoneme> phonemes;
};

/** The voice synthesiser. There is one in a process, because the library behind it has one state; it is loaded at the
    first question. */
class SpeechEngine
{
public:
    /** Data from the system's place, or from a folder that holds "espeak-ng-data". */
    explicit SpeechEngine(const QString &dataFolder = QString())
        : m_dataFolder(dataFolder)
    {
    }
    SpeechEngine(const SpeechEngine &) = delete;
    SpeechEngine &operator=(const SpeechEngine &) = delete;

    /** The one that characters speak with. */
    static SpeechEngine &shared();

    /** False when the synthesiser's data is missing: then nothing sounds. */
    bool isAvailable();
    /** Samples a second, also where no engine is available. */
    int sampleRate() const { return m_sampleRate; }

    /** Text with SSML marks "0", "1" … to sound, in one go: keep it to a sentence. A pause follows when endPause is
        set. A voice that is not installed is replaced by the plain English one. */
    RawSpeech synthesise(const QByteArray &ssml, const Voice &voice, bool endPause);

    /** The pitch, 0 to 99, with which a voice sounds at so many hertz. */
    int pitchForHertz(const Voice &voice, int hertz);

private:
    void load();
    void select(const Voice &voice);
    double middleHertz(const Voice &voice);

    QString m_dataFolder;
    bool m_loaded = false;
    bool m_available = false;
    int m_sampleRate = 22050;
    QHash<QString, double> m_middleHertz; // of voice and variant at pitch 50
};

/** Words per minute that the engine can speak. */
inline constexpr int kSlowestSpeech = 80;
inline constexpr int kFastestSpeech = 450;

} // namespace agent
