#pragma once

// Speech tags: what of a text is said, what of it is shown, and how the two keep step.

#include <QList>
#include <QString>
#include <QStringList>

namespace agent {

/** How a stretch of text is to be said. A zero means: as the character's own voice has it. */
struct SpeechState {
    enum class Character { Normal, Monotone, Whisper };
    enum class Context { Unknown, Address, EMail };

    int speed = 0;      // words per minute
    int pitch = 0;      // hertz
    int volume = 65535; // 0 silent to 65535 full
    Character character = Character::Normal;
    Context context = Context::Unknown;

    bool operator==(const SpeechState &) const = default;
};

/** The smallest stretch that is timed by itself: a spoken word, or nothing but a pause or a bookmark. */
struct SpeechPiece {
    QString spoken;          // may be empty
    int words = 0;           // words of the balloon that are visible once this piece begins
    int pause = 0;           // milliseconds of silence before it
    int bookmark = 0;        // reached when it begins; 0: none
    bool emphasised = false;
    bool spelled = false;    // letter by letter
    bool joined = false;     // goes on the piece before without a blank
    SpeechState state;
};

/** A text with its tags worked in. */
struct SpeechText {
    QStringList words; // the written form, as the balloon shows it
    QList<SpeechPiece> pieces;
};

/** Reads a text with speech tags. Whatever the text holds, this succeeds: well-formed tags that nobody knows are left
    out, malformed ones are text like any other. Time grows with the length of the text only. */
SpeechText parseSpeech(const QString &tagged);

/** A text without speech tags: what a reader sees of it. A mapped text shows its written form. */
QString writtenForm(const QString &tagged);

/** The alternatives of a text, of which one is to be spoken: it is divided at every "|" that is not within a mapped
    text. At least one. */
QStringList speechAlternatives(const QString &tagged);

} // namespace agent
