#pragma once

#include "platform/agent/SpeechTags.h"
#include "platform/agent/speech/SpeechEngine.h"

namespace agent {

/** Something that happens while a text is spoken. */
struct SpeechEvent {
    enum class Kind { Word, Mouth, Bookmark };
    Kind kind = Kind::Word;
    int ms = 0;    // from the beginning of its clause
    int value = 0; // words visible, mouth shape, bookmark's number
};

/** A stretch of speech, mostly a sentence: its sound and what goes with it. */
struct SpokenClause {
    QByteArray sound; // 16-bit samples of one channel; empty where there is no voice
    int sampleRate = 0;
    qint64 frames = 0;         // its length in samples, also without sound
    QList<SpeechEvent> events; // in order of time

    int duration() const { return sampleRate > 0 ? int(frames * 1000 / sampleRate) : 0; }
};

/** A text on its way to sound. It is made clause by clause, so that a long text keeps nobody waiting: a clause takes
    about a thousandth of the time that it sounds. Without an engine the clauses have the pace of a calm speaker. */
class Speech
{
public:
    Speech(const QString &tagged, const Voice &voice, SpeechEngine &engine);

    /** All words of the written form. */
    const QStringList &words() const { return m_text.words; }
    bool atEnd() const { return m_next >= m_text.pieces.size(); }
    /** The next clause; call it only before the end. */
    SpokenClause next();

private:
    qsizetype clauseEnd() const;
    double cost(const SpeechPiece &piece) const;
    bool beginsSentence(qsizetype piece) const;
    bool beginsPart(qsizetype piece) const;
    SpokenClause voiced(qsizetype begin, qsizetype end);
    SpokenClause paced(qsizetype begin, qsizetype end);
    Voice voiceFor(const SpeechState &state);
    QByteArray markup(qsizetype begin, qsizetype end);
    QByteArray changes(const SpeechState &from, const SpeechState &to);
    int speedFor(const SpeechState &state) const;

    SpeechText m_text;
    Voice m_voice;
    SpeechEngine &m_engine;
    qsizetype m_next = 0;
    int m_visible = 0; // words told of so far
};

} // namespace agent
