#include "platform/agent/speech/Speech.h"

#include "platform/agent/speech/Mouth.h"

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

// A clause ends at the end of its sentence; a long sentence at a comma, an endless one anywhere. The unit is the
// letter at normal speed: about 65 ms of sound.
constexpr double kLongClause = 60;
constexpr double kLongestClause = 100;
constexpr double kCostOfSign = 12;    // "%" and "1" are read as words
constexpr double kCostOfForeign = 16; // "Chinese letter"
constexpr double kNormalSpeed = 175;
constexpr int kLongPause = 10'000; // ms

constexpr int kFadeMs = 3;       // where silence is put in, so that it does not click
constexpr int kPacedSpeed = 160; // words a minute without a voice
constexpr int kPacedRate = 22050;
constexpr int kPacedMouthMs = 100;
constexpr int kPacedSentencePauseMs = 300;
constexpr int kLettersOfWord = 5;

constexpr QLatin1StringView kAbbreviations[] = { "mr."_L1, "mrs."_L1, "ms."_L1, "dr."_L1, "st."_L1, "no."_L1 };

// A long sentence takes breath before one of these.
constexpr QLatin1StringView kConjunctions[] = { "and"_L1, "or"_L1, "but"_L1, "because"_L1, "which"_L1, "that"_L1, "with"_L1 };

template <size_t N>
bool isOneOf(QStringView word, const QLatin1StringView (&words)[N])
{
    return std::any_of(std::begin(words), std::end(words),
                       [word](QLatin1StringView known) { return word.compare(known, Qt::CaseInsensitive) == 0; });
}

/** A word without the quotes and brackets that may follow its full stop. */
QStringView withoutClosing(QStringView word)
{
    while (!word.isEmpty() && u"\"')]}\u201d\u2019"_s.contains(word.back()))
        word.chop(1);
    return word;
}

bool endsSentence(const SpeechPiece &piece)
{
    const QStringView word = withoutClosing(piece.spoken);
    if (word.isEmpty() || !u".?!\u2026"_s.contains(word.back()))
        return false;
    return !isOneOf(word, kAbbreviations);
}

bool endsPart(const SpeechPiece &piece)
{
    const QStringView word = withoutClosing(piece.spoken);
    return !word.isEmpty() && u",;:"_s.contains(word.back());
}

QByteArray withoutMarkup(const QString &text)
{
    QString plain = text;
    for (QChar &c : plain) {
        // Control characters are commands to the engine.
        if (c.category() == QChar::Other_Control)
            c = u' ';
    }
    return plain.toHtmlEscaped().toUtf8();
}

/** Puts a clause together from stretches of sound, stretches of silence and what happens at them. */
class ClauseWriter
{
public:
    explicit ClauseWriter(int sampleRate) { m_clause.sampleRate = sampleRate; }

    void tell(SpeechEvent::Kind kind, int value) { tellAt(m_clause.frames, kind, value); }
    void tellAt(qint64 frame, SpeechEvent::Kind kind, int value)
    {
        m_clause.events.append({ kind, int(frame * 1000 / m_clause.sampleRate), value });
    }
    void mouth(qint64 frame, MouthShape shape)
    {
        if (std::exchange(m_shape, shape) != shape)
            tellAt(frame, SpeechEvent::Kind::Mouth, shape);
    }
    qint64 frames() const { return m_clause.frames; }
    qint64 framesOf(int ms) const { return qint64(ms) * m_clause.sampleRate / 1000; }
    void pass(int ms) { m_clause.frames += framesOf(ms); }

    void addSilence(int ms)
    {
        if (ms <= 0)
            return;
        fade(m_clause.sound.size() / qsizetype(sizeof(qint16)) - 1, -1);
        mouth(m_clause.frames, MouthClosed);
        pass(ms);
        m_clause.sound.resize(m_clause.frames * qsizetype(sizeof(qint16)), '\0');
        m_fadeIn = true;
    }

    void addSound(const qint16 *samples, qsizetype count, int volume)
    {
        const qsizetype before = m_clause.sound.size();
        m_clause.sound.resize(before + count * qsizetype(sizeof(qint16)));
        auto *target = reinterpret_cast<qint16 *>(m_clause.sound.data() + before);
        std::transform(samples, samples + count, target,
                       [volume](qint16 sample) { return qint16(qint64(sample) * volume / 65535); });
        m_clause.frames += count;
        if (std::exchange(m_fadeIn, false))
            fade(before / qsizetype(sizeof(qint16)), 1);
    }

    SpokenClause take()
    {
        mouth(m_clause.frames, MouthClosed);
        return std::move(m_clause);
    }

private:
    /** Lets the sound begin or end softly: from the sample that is silent in the given direction. */
    void fade(qsizetype silent, int direction)
    {
        auto *samples = reinterpret_cast<qint16 *>(m_clause.sound.data());
        const qsizetype count = m_clause.sound.size() / qsizetype(sizeof(qint16));
        const qsizetype length = framesOf(kFadeMs);
        for (qsizetype i = 0, at = silent; i < length && at >= 0 && at < count; ++i, at += direction)
            samples[at] = qint16(samples[at] * i / length);
    }

    SpokenClause m_clause;
    MouthShape m_shape = MouthClosed;
    bool m_fadeIn = false;
};

/** Where in the sound each piece begins. Marks that the engine left out are where the piece before began. */
QList<qsizetype> beginnings(const RawSpeech &raw, qsizetype pieces)
{
    QList<qsizetype> at(pieces, -1);
    for (const RawSpeech::Mark &mark : raw.marks) {
        if (mark.number > 0 && mark.number < pieces)
            at[mark.number] = mark.at;
    }
    const auto end = qsizetype(raw.samples.size());
    qsizetype last = 0;
    for (qsizetype &begin : at)
        begin = last = qBound(last, begin, end);
    at.append(end);
    return at;
}

/** Milliseconds that a piece takes where nothing is heard. */
int pacedDuration(const SpeechPiece &piece, int speed)
{
    const int word = 60'000 / speed;
    if (piece.spelled)
        return int(piece.spoken.size()) * word / 2;
    // Half of a word's time for its being a word, the rest by its letters.
    return piece.spoken.isEmpty() ? 0 : word / 2 + int(piece.spoken.size()) * word / (2 * kLettersOfWord);
}

} // namespace

Speech::Speech(const QString &tagged, const Voice &voice, SpeechEngine &engine)
    : m_text(parseSpeech(tagged))
    , m_voice(voice)
    , m_engine(engine)
{
}

SpokenClause Speech::next()
{
    const qsizetype begin = m_next;
    m_next = clauseEnd();
    return m_engine.isAvailable() ? voiced(begin, m_next) : paced(begin, m_next);
}

qsizetype Speech::clauseEnd() const
{
    double sum = 0;
    qsizetype end = m_next;
    while (end < m_text.pieces.size()) {
        sum += cost(m_text.pieces.at(end++));
        if (end == m_text.pieces.size() || sum >= kLongestClause || beginsSentence(end)
            || (sum >= kLongClause && beginsPart(end)))
            break;
    }
    return end;
}

double Speech::cost(const SpeechPiece &piece) const
{
    double sum = 1;
    for (const QChar c : piece.spoken) {
        if (c.unicode() > 0x24f)
            sum += kCostOfForeign;
        else
            sum += c.isLetter() && !piece.spelled ? 1 : kCostOfSign;
    }
    return sum * kNormalSpeed / speedFor(piece.state);
}

/** True when a new clause must begin with this piece, which is not the first. Pauses and bookmarks stay with the words
    before them. */
bool Speech::beginsSentence(qsizetype index) const
{
    const SpeechPiece &piece = m_text.pieces.at(index);
    const SpeechPiece &before = m_text.pieces.at(index - 1);
    return (endsSentence(before) && !piece.joined && !piece.spoken.isEmpty())
        || before.state.character != piece.state.character || piece.pause >= kLongPause;
}

bool Speech::beginsPart(qsizetype index) const
{
    return endsPart(m_text.pieces.at(index - 1)) || isOneOf(m_text.pieces.at(index).spoken, kConjunctions);
}

int Speech::speedFor(const SpeechState &state) const
{
    return qBound(kSlowestSpeech, state.speed > 0 ? state.speed : m_voice.speed, kFastestSpeech);
}

Voice Speech::voiceFor(const SpeechState &state)
{
    Voice voice = m_voice;
    voice.speed = speedFor(state);
    if (state.pitch > 0)
        voice.pitch = m_engine.pitchForHertz(m_voice, state.pitch);
    if (state.character == SpeechState::Character::Monotone)
        voice.range = 0;
    if (state.character == SpeechState::Character::Whisper)
        voice.variant = voice.variant.startsWith(u'f') ? u"whisperf"_s : u"whisper"_s;
    return voice;
}

/** Commands to the engine in the middle of a clause; an element would not do for a pitch in hertz. */
QByteArray Speech::changes(const SpeechState &from, const SpeechState &to)
{
    const Voice before = voiceFor(from);
    const Voice after = voiceFor(to);
    QByteArray commands;
    if (before.speed != after.speed)
        commands += '\x01' + QByteArray::number(after.speed) + 'S';
    if (before.pitch != after.pitch)
        commands += '\x01' + QByteArray::number(after.pitch) + 'P';
    return commands;
}

QByteArray Speech::markup(qsizetype begin, qsizetype end)
{
    QByteArray ssml;
    for (qsizetype i = begin; i < end; ++i) {
        const SpeechPiece &piece = m_text.pieces.at(i);
        if (i > begin && !piece.joined)
            ssml += " <mark name=\"" + QByteArray::number(i - begin) + "\"/>";
        if (i > begin)
            ssml += changes(m_text.pieces.at(i - 1).state, piece.state);
        QByteArray word = withoutMarkup(piece.spoken);
        if (piece.spelled)
            word = "<say-as interpret-as=\"characters\">" + word + "</say-as>";
        if (piece.emphasised && !word.isEmpty())
            word = "<emphasis level=\"strong\">" + word + "</emphasis>";
        ssml += word;
    }
    return ssml;
}

SpokenClause Speech::voiced(qsizetype begin, qsizetype end)
{
    // The engine knows how long it rests after a sentence, but not whether another one follows.
    const bool pauseAtEnd = !atEnd() && beginsSentence(end);
    const RawSpeech raw = m_engine.synthesise(markup(begin, end), voiceFor(m_text.pieces.at(begin).state), pauseAtEnd);
    const QList<qsizetype> at = beginnings(raw, end - begin);
    ClauseWriter writer(m_engine.sampleRate());
    auto phoneme = raw.phonemes.cbegin();
    for (qsizetype i = 0; i < end - begin; ++i) {
        const SpeechPiece &piece = m_text.pieces.at(begin + i);
        writer.addSilence(piece.pause);
        if (piece.words > m_visible)
            writer.tell(SpeechEvent::Kind::Word, m_visible = piece.words);
        if (piece.bookmark > 0)
            writer.tell(SpeechEvent::Kind::Bookmark, piece.bookmark);
        for (; phoneme != raw.phonemes.cend() && phoneme->at < at.at(i + 1); ++phoneme)
            writer.mouth(writer.frames() + qMax(qsizetype(0), phoneme->at - at.at(i)), mouthOf(phoneme->name));
        writer.addSound(raw.samples.data() + at.at(i), at.at(i + 1) - at.at(i), piece.state.volume);
    }
    return writer.take();
}

SpokenClause Speech::paced(qsizetype begin, qsizetype end)
{
    ClauseWriter writer(kPacedRate);
    for (qsizetype i = begin; i < end; ++i) {
        const SpeechPiece &piece = m_text.pieces.at(i);
        writer.pass(piece.pause);
        if (piece.words > m_visible)
            writer.tell(SpeechEvent::Kind::Word, m_visible = piece.words);
        if (piece.bookmark > 0)
            writer.tell(SpeechEvent::Kind::Bookmark, piece.bookmark);
        const int duration = pacedDuration(piece, piece.state.speed > 0 ? speedFor(piece.state) : kPacedSpeed);
        for (int ms = 0, change = 0; ms < duration; ms += kPacedMouthMs, ++change)
            writer.mouth(writer.frames() + writer.framesOf(ms), talkingMouth(int(piece.spoken.size()) + change));
        writer.pass(duration);
        if (endsSentence(piece)) {
            writer.mouth(writer.frames(), MouthClosed);
            writer.pass(kPacedSentencePauseMs);
        }
    }
    return writer.take();
}

} // namespace agent
