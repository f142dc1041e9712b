#include "platform/agent/SpeechTags.h"

#include "platform/agent/TagReader.h"

#include <QHash>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kLongestPause = 60'000; // ms; a text of a script could ask for a month
constexpr int kLongestPiece = 40; // letters; longer words are synthesised in parts
constexpr int kDigitsWorth = 4;   // letters, because digits are read as words

struct Abbreviation {
    QLatin1StringView written;
    QLatin1StringView spoken;
};
// As a postal address reads them; "St." is a saint elsewhere, and "Dr." a doctor.
constexpr Abbreviation kAddressWords[] = {
    { "st."_L1, "street"_L1 },    { "ave."_L1, "avenue"_L1 }, { "rd."_L1, "road"_L1 },
    { "dr."_L1, "drive"_L1 },     { "ln."_L1, "lane"_L1 },    { "blvd."_L1, "boulevard"_L1 },
    { "apt."_L1, "apartment"_L1 }, { "n."_L1, "north"_L1 },    { "s."_L1, "south"_L1 },
    { "e."_L1, "east"_L1 },       { "w."_L1, "west"_L1 },
};
constexpr Abbreviation kMailSigns[] = {
    { "@"_L1, " at "_L1 }, { "."_L1, " dot "_L1 }, { "_"_L1, " underscore "_L1 }, { "-"_L1, " dash "_L1 },
};

QString asAddress(const QString &word)
{
    for (const Abbreviation &entry : kAddressWords) {
        if (word.compare(entry.written, Qt::CaseInsensitive) == 0)
            return entry.spoken;
    }
    return word;
}

QString asMail(QString word)
{
    if (!word.contains(u'@'))
        return word;
    const QString end = word.endsWith(u'.') ? u"."_s : QString();
    word.chop(end.size());
    for (const Abbreviation &entry : kMailSigns)
        word.replace(entry.written, entry.spoken);
    return word.simplified() + end;
}

QString inContext(const QString &word, SpeechState::Context context)
{
    switch (context) {
    case SpeechState::Context::Address: return asAddress(word);
    case SpeechState::Context::EMail: return asMail(word);
    case SpeechState::Context::Unknown: break;
    }
    return word;
}

/** True for a word of capitals, digits and signs: the program's way of saying "spell it". */
bool isCapitals(const QString &word)
{
    return std::any_of(word.cbegin(), word.cend(), [](QChar c) { return c.isUpper(); })
        && std::none_of(word.cbegin(), word.cend(), [](QChar c) { return c.isLower(); });
}

void setNumber(int &target, const QString &value, int least, int most)
{
    bool ok = false;
    const qlonglong number = value.toLongLong(&ok);
    if (ok && number >= least)
        target = int(qMin<qlonglong>(number, most));
}

template <class T>
void setChoice(T &target, const QString &value, std::initializer_list<std::pair<QLatin1StringView, T>> choices)
{
    for (const auto &[name, choice] : choices) {
        if (value.compare(name, Qt::CaseInsensitive) == 0)
            target = choice;
    }
}

/** Puts the pieces and the words of one text together. */
class SpeechReader
{
public:
    SpeechText read(const QString &tagged)
    {
        readText(tagged, false);
        endWord();
        // Whatever is left over needs a piece to hang on, and at the end everything is shown.
        if (m_pause > 0 || (!m_text.words.isEmpty() && visibleWords() < m_text.words.size()))
            addPiece(QString(), int(m_text.words.size()));
        return std::move(m_text);
    }

private:
    using Action = void (SpeechReader::*)(const SpeechTag &);

    void readText(QStringView text, bool mapped)
    {
        TagReader tags(text, mapped);
        SpeechTag tag;
        for (qsizetype i = 0; i < text.size();) {
            if (text[i] == u'\\' && tags.read(i, tag)) {
                apply(tag, mapped);
                i = tag.end;
                continue;
            }
            if (text[i].isSpace() || text[i].isNull())
                endPiece(mapped);
            else
                addCharacter(text[i], mapped);
            // A doubled backslash of a mapped text that begins no tag stands for one.
            i += mapped && text.sliced(i).startsWith(u"\\\\") ? 2 : 1;
        }
        finishPiece(mapped);
    }

    void addCharacter(QChar c, bool mapped)
    {
        m_piece += c;
        if (!mapped)
            m_word += c;
        m_length += c.isLetter() ? 1 : kDigitsWorth;
        if (m_length >= kLongestPiece && !c.isHighSurrogate()) {
            finishPiece(mapped);
            m_joined = true;
        }
    }

    /** A blank: the word is over in the voice and, outside of a mapped text, in the balloon too. */
    void endPiece(bool mapped)
    {
        finishPiece(mapped);
        m_joined = false;
        if (!mapped)
            endWord();
    }

    void finishPiece(bool mapped)
    {
        if (m_piece.isEmpty())
            return;
        const QString spoken = inContext(m_piece, m_state.context);
        const bool spelled = mapped && isCapitals(m_piece);
        m_piece.clear();
        m_length = 0;
        addPiece(spoken, wordInProgress());
        m_text.pieces.last().spelled = spelled;
    }

    void endWord()
    {
        if (!m_word.isEmpty())
            m_text.words.append(m_word);
        m_word.clear();
    }

    int wordInProgress() const { return int(m_text.words.size()) + (m_word.isEmpty() ? 0 : 1); }
    int visibleWords() const { return m_text.pieces.isEmpty() ? 0 : m_text.pieces.constLast().words; }

    void addPiece(const QString &spoken, int words)
    {
        SpeechPiece piece{ .spoken = spoken, .words = words, .pause = m_pause, .state = m_state };
        piece.emphasised = m_emphasis;
        piece.joined = m_joined;
        m_text.pieces.append(piece);
        m_pause = 0;
        m_emphasis = false;
        m_joined = true; // unless a blank follows
    }

    void apply(const SpeechTag &tag, bool mapped)
    {
        static const QHash<QString, Action> kActions{
            { u"pau"_s, &SpeechReader::pause },     { u"emp"_s, &SpeechReader::emphasis },
            { u"spd"_s, &SpeechReader::speed },     { u"pit"_s, &SpeechReader::pitch },
            { u"vol"_s, &SpeechReader::volume },    { u"rst"_s, &SpeechReader::reset },
            { u"mrk"_s, &SpeechReader::mark },      { u"chr"_s, &SpeechReader::character },
            { u"ctx"_s, &SpeechReader::context },
        };
        if (tag.name == "map"_L1) {
            map(tag, mapped);
            return;
        }
        endPiece(mapped);
        if (const Action action = kActions.value(tag.name, nullptr))
            (this->*action)(tag);
    }

    void pause(const SpeechTag &tag)
    {
        int more = 0;
        setNumber(more, tag.value, 0, kLongestPause);
        m_pause = qMin(m_pause + more, kLongestPause);
    }
    void emphasis(const SpeechTag &) { m_emphasis = true; }
    void speed(const SpeechTag &tag) { setNumber(m_state.speed, tag.value, 1, 10'000); }
    void pitch(const SpeechTag &tag) { setNumber(m_state.pitch, tag.value, 1, 10'000); }
    void volume(const SpeechTag &tag) { setNumber(m_state.volume, tag.value, 0, 65535); }
    void reset(const SpeechTag &) { m_state = SpeechState{}; }
    void character(const SpeechTag &tag)
    {
        using enum SpeechState::Character;
        setChoice(m_state.character, tag.value,
                  { { "Normal"_L1, Normal }, { "Monotone"_L1, Monotone }, { "Whisper"_L1, Whisper } });
    }
    void context(const SpeechTag &tag)
    {
        using enum SpeechState::Context;
        setChoice(m_state.context, tag.value,
                  { { "Unknown"_L1, Unknown }, { "Address"_L1, Address }, { "E-mail"_L1, EMail } });
    }
    void mark(const SpeechTag &tag)
    {
        int number = 0;
        setNumber(number, tag.value, 1, std::numeric_limits<int>::max());
        // The two largest numbers are the control's own.
        if (number == 0 || number >= 2147483646)
            return;
        const bool emphasis = std::exchange(m_emphasis, false);
        addPiece(QString(), wordInProgress());
        m_text.pieces.last().bookmark = number;
        m_emphasis = emphasis;
        m_joined = false;
    }

    /** Speaks one text and shows another: the words of the one are spread over the pieces of the other. */
    void map(const SpeechTag &tag, bool mapped)
    {
        finishPiece(mapped);
        const qsizetype firstPiece = m_text.pieces.size();
        readText(tag.value, true);
        m_joined = true;
        if (mapped)
            return;
        const int firstWord = int(m_text.words.size()) + 1;
        showWritten(tag.shown);
        const int added = wordInProgress() - firstWord + 1;
        const qsizetype pieces = m_text.pieces.size() - firstPiece;
        for (qsizetype i = 0; i < pieces; ++i)
            m_text.pieces[firstPiece + i].words =
                firstWord - 1 + int(((i + 1) * added + pieces - 1) / pieces);
        if (pieces == 0 && added > 0)
            addPiece(QString(), wordInProgress());
    }

    void showWritten(QStringView shown)
    {
        for (const QChar c : shown) {
            if (c.isSpace() || c.isNull())
                endWord();
            else
                m_word += c;
        }
    }

    SpeechText m_text;
    SpeechState m_state;
    QString m_word;  // being written
    QString m_piece; // being spoken
    int m_length = 0; // of the piece, in letters
    int m_pause = 0;
    bool m_emphasis = false;
    bool m_joined = false;
};

} // namespace

SpeechText parseSpeech(const QString &tagged)
{
    return SpeechReader().read(tagged);
}

QString writtenForm(const QString &tagged)
{
    return parseSpeech(tagged).words.join(u' ');
}

QStringList speechAlternatives(const QString &tagged)
{
    QStringList alternatives;
    TagReader tags(tagged, false);
    SpeechTag tag;
    qsizetype begin = 0;
    for (qsizetype i = 0; i < tagged.size();) {
        if (tagged[i] == u'\\' && tags.read(i, tag)) {
            i = tag.end;
            continue;
        }
        if (tagged[i] == u'|') {
            alternatives.append(tagged.sliced(begin, i - begin));
            begin = i + 1;
        }
        ++i;
    }
    alternatives.append(tagged.sliced(begin));
    return alternatives;
}

} // namespace agent
