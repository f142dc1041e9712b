#pragma once

#include "platform/agent/Agent.h"
#include "platform/agent/voice/Vocabulary.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <random>
#include <vector>

struct ps_decoder_s;

namespace agent {

/** Understands commands in sound. The engine knows only what can be said to the character at hand, which makes it quick
    to load and sure of what it hears. Nothing of the sound is kept. */
class Recogniser
{
public:
    static constexpr int kSampleRate = 16000;
    /** Below this confidence nothing is to happen. */
    static constexpr int kConfidenceLimit = 46;

    /** A folder with an acoustic model "en-us" and the dictionary "cmudict-en-us.dict"; none: the system's. */
    explicit Recogniser(const QString &modelFolder = QString());
    ~Recogniser();
    Recogniser(const Recogniser &) = delete;
    Recogniser &operator=(const Recogniser &) = delete;

    /** Gets ready for these commands; quick when they are the same as before. Afterwards problem() tells whether it
        can listen. */
    void prepare(const Commands &commands);
    /** Why nothing can be understood, a sentence for people; empty when all is well. */
    QString problem() const { return m_problem; }
    /** Words of the commands that the dictionary lacks; what needs them cannot be said. */
    QStringList missingWords() const { return m_missing; }

    /** A new utterance. */
    void begin();
    /** Its next samples: 16 bits, one channel, kSampleRate. Takes about a twentieth of the time that they sound. */
    void add(QByteArrayView samples);
    /** What was said: the words and how sure they are, and the command's name if it is one and sure enough. */
    UserInput end();

private:
    struct Free {
        void operator()(ps_decoder_s *decoder) const;
    };

    void adapt(bool keep);
    void load(const QString &jsgf, const QByteArray &dictionary);
    QStringList heardWords(int &confidence) const;

    QString m_folder;
    QString m_problem;
    QStringList m_missing;
    QString m_prepared; // the grammar that the decoder was made for
    std::optional<Vocabulary> m_vocabulary;
    std::unique_ptr<ps_decoder_s, Free> m_decoder;
    std::vector<float> m_hearing; // the engine's adaptation to microphone and room
    std::minstd_rand m_noise;
    bool m_listening = false;
};

} // namespace agent
