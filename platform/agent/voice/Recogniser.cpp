#include "platform/agent/voice/Recogniser.h"

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <sys/mman.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

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
    cmd_ln_t *options = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", model.constData(), "-dict", words.path().constData(),
                                    nullptr);
    if (!options)
        return;
    m_decoder.reset(ps_init(options));
    cmd_ln_free_r(options); // the decoder has its own hold of them
    if (m_decoder && (ps_set_jsgf_string(m_decoder.get(), "commands", jsgf.toUtf8().constData()) != 0
                      || ps_set_search(m_decoder.get(), "commands") != 0))
        m_decoder.reset();
}

void Recogniser::begin()
{
    if (!m_decoder || std::exchange(m_listening, true))
        return;
    ps_start_stream(m_decoder.get());
    if (ps_start_utt(m_decoder.get()) != 0)
        m_listening = false;
}

void Recogniser::add(QByteArrayView samples)
{
    if (m_listening)
        ps_process_raw(m_decoder.get(), reinterpret_cast<const int16 *>(samples.data()),
                       size_t(samples.size()) / sizeof(int16), FALSE, FALSE);
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
