#include "platform/agent/voice/Recogniser.h"

#include <pocketsphinx.h>
#include <sphinxbase/cmn.h>
#include <sphinxbase/err.h>
#include <sphinxbase/feat.h>
#include <sphinxbase/jsgf.h>

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <utility>
#include <sys/mman.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

// Perfect silence, as sound cards with a gate deliver, is strange to the model; a faint noise on it is not.
constexpr int kFaintNoise = 6;

/** A file without a place on the disk; the engine reads its dictionary from files only. */
class MemoryFile
{
public:
    explicit MemoryFile(const QByteArray &content)
        : m_fd(memfd_create("dictionary", MFD_CLOEXEC))
    {
        for (qsizetype at = 0; m_fd >= 0 && at < content.size();) {
            const ssize_t written = write(m_fd, content.constData() + at, size_t(content.size() - at));
            if (written <= 0)
                break;
            at += written;
        }
    }
    ~MemoryFile()
    {
        if (m_fd >= 0)
            close(m_fd);
    }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;
    QByteArray path() const { return "/proc/self/fd/" + QByteArray::number(m_fd); }

private:
    int m_fd;
};

bool isWord(const char *text)
{
    return text && *text != '<' && *text != '[' && *text != '(' && *text != '+';
}

bool hasModel(const QString &folder)
{
    constexpr QLatin1StringView kFiles[] = { "feat.params"_L1, "mdef"_L1,      "means"_L1,
                                             "noisedict"_L1,   "variances"_L1, "transition_matrices"_L1 };
    return std::all_of(std::begin(kFiles), std::end(kFiles), [&folder](QLatin1StringView name) {
        return QFileInfo(folder + "/en-us/"_L1 + name).size() > 0;
    });
}

/** Step by step, because the engine's one call for it never frees the grammar that it has read. */
bool setGrammar(ps_decoder_t *decoder, const QByteArray &jsgf)
{
    const std::unique_ptr<jsgf_t, decltype(&jsgf_grammar_free)> grammar(jsgf_parse_string(jsgf.constData(), nullptr),
                                                                        jsgf_grammar_free);
    jsgf_rule_t *rule = grammar ? jsgf_get_public_rule(grammar.get()) : nullptr;
    if (!rule)
        return false;
    const auto languageWeight = float32(cmd_ln_float_r(ps_get_config(decoder), "-lw"));
    const std::unique_ptr<fsg_model_t, decltype(&fsg_model_free)> model(
        jsgf_build_fsg(grammar.get(), rule, ps_get_logmath(decoder), languageWeight), fsg_model_free);
    return model && ps_set_fsg(decoder, "commands", model.get()) == 0 && ps_set_search(decoder, "commands") == 0;
}

/** How well the sound fits a word, 0 to 100: the engine's score is 0 where every moment sounds like nothing else. */
int fit(int score, int frames)
{
    return qBound(0, int(std::lround(100 + double(score) / frames)), 100);
}

} // namespace

void Recogniser::Free::operator()(ps_decoder_s *decoder) const
{
    ps_free(decoder);
}

Recogniser::Recogniser(const QString &modelFolder)
    : m_folder(modelFolder.isEmpty() ? QStringLiteral(KAVRO_SPHINX_MODEL) : modelFolder)
{
}

Recogniser::~Recogniser() = default;

void Recogniser::prepare(const Commands &commands)
{
    m_vocabulary.emplace(commands);
    const QString grammar = m_vocabulary->toJsgf({});
    if (m_decoder && grammar == m_prepared)
        return;
    m_decoder.reset();
    m_listening = false;
    m_problem.clear();
    m_missing.clear();
    if (m_vocabulary->isEmpty()) {
        m_problem = u"There is no command that can be spoken."_s;
        return;
    }
    // Looked for before: the engine ends the program when one of them is missing.
    const QString dictionaryFile = m_folder + u"/cmudict-en-us.dict"_s;
    if (QFileInfo(dictionaryFile).size() == 0 || !hasModel(m_folder)) {
        m_problem = u"Voice commands need the package pocketsphinx-en-us."_s;
        return;
    }
    QSet<QString> missing;
    const QByteArray dictionary = dictionaryFor(m_vocabulary->words(), dictionaryFile, missing);
    m_missing = missing.values();
    m_missing.sort();
    if (const QString jsgf = m_vocabulary->toJsgf(missing); !jsgf.isEmpty())
        load(jsgf, dictionary);
    if (m_decoder)
        m_prepared = grammar;
    else
        m_problem = u"The voice commands cannot be understood. Words that are not in the dictionary: %1."_s.arg(m_missing.join(u", "_s));
}

void Recogniser::load(const QString &jsgf, const QByteArray &dictionary)
{
    err_set_logfp(nullptr); // it would tell its whole configuration
    const MemoryFile words(dictionary);
    const QByteArray model = (m_folder + u"/en-us"_s).toLocal8Bit();
    // Wide beams: with so few words they cost little, and no command is given up before its end.
    cmd_ln_t *options = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", model.constData(), "-dict", words.path().constData(),
                                    "-beam", "1e-80", "-pbeam", "1e-80", "-wbeam", "1e-60", nullptr);
    if (!options)
        return;
    m_decoder.reset(ps_init(options));
    cmd_ln_free_r(options); // the decoder has its own hold of them
    if (m_decoder && !setGrammar(m_decoder.get(), jsgf.toUtf8()))
        m_decoder.reset();
    if (m_decoder)
        adapt(true);
}

/** The engine gets used to what it hears, be it a voice or the noise of a fan. What was no command is forgotten again. */
void Recogniser::adapt(bool keep)
{
    static_assert(sizeof(mfcc_t) == sizeof(float));
    cmn_t *hearing = ps_get_feat(m_decoder.get())->cmn_struct;
    m_hearing.resize(size_t(hearing->veclen));
    if (keep)
        cmn_live_get(hearing, m_hearing.data());
    else
        cmn_live_set(hearing, m_hearing.data());
}

void Recogniser::begin()
{
    if (!m_decoder || std::exchange(m_listening, true))
        return;
    ps_start_stream(m_decoder.get());
    m_noise.seed(); // so that the same sound is always understood alike
    if (ps_start_utt(m_decoder.get()) != 0)
        m_listening = false;
}

void Recogniser::add(QByteArrayView samples)
{
    if (!m_listening)
        return;
    std::vector<int16> sound(size_t(samples.size()) / sizeof(int16));
    std::memcpy(sound.data(), samples.data(), sound.size() * sizeof(int16));
    for (int16 &sample : sound)
        sample = int16(qBound(-32768, int(sample) + int(m_noise() % (2 * kFaintNoise + 1)) - kFaintNoise, 32767));
    ps_process_raw(m_decoder.get(), sound.data(), sound.size(), FALSE, FALSE);
}

UserInput Recogniser::end()
{
    UserInput input;
    input.confidence = 0;
    if (!std::exchange(m_listening, false) || ps_end_utt(m_decoder.get()) != 0)
        return input;
    const QStringList words = heardWords(input.confidence);
    input.voice = words.join(u' ');
    if (input.confidence >= kConfidenceLimit)
        input.name = m_vocabulary->commandOf(words);
    adapt(!input.name.isEmpty());
    return input;
}

/** The confidence is that of the worst word: a sentence that is no command has one that fits nowhere. */
QStringList Recogniser::heardWords(int &confidence) const
{
    QStringList words;
    confidence = 0;
    if (!ps_get_hyp(m_decoder.get(), nullptr))
        return words;
    for (ps_seg_t *segment = ps_seg_iter(m_decoder.get()); segment; segment = ps_seg_next(segment)) {
        if (!isWord(ps_seg_word(segment)))
            continue;
        int first = 0, last = 0;
        int32 score = 0;
        ps_seg_frames(segment, &first, &last);
        ps_seg_prob(segment, &score, nullptr, nullptr);
        const int fits = fit(score, last - first + 1);
        confidence = words.isEmpty() ? fits : qMin(confidence, fits);
        // Further ways of saying a word are named "word(2)".
        words.append(QString::fromUtf8(ps_seg_word(segment)).section(u'(', 0, 0));
    }
    return words;
}

} // namespace agent
