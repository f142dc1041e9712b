#pragma once

// What can be said for a command.

#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

namespace agent {

/** A voice grammar: words, "[optional]", "(one|of|these)", "*" and "+" after a word or a group for any number of them,
    "..." for words that do not matter, and "shown\spoken" for a word that is said in another way. Case does not matter,
    digits are said one by one, punctuation is not said. */
class VoiceGrammar
{
public:
    /** Throws Error with one of the grammar numbers, or BadData when nothing need be said or groups nest too deep. */
    explicit VoiceGrammar(const QString &text);

    /** Every word that may be said, once each, in lower case. */
    QStringList words() const;
    /** True when these words, and nothing more, make the command. */
    bool matches(const QStringList &words) const;
    /** The grammar as a rule of a JSGF grammar, with a line feed. Ways of saying it that need one of the unknown words
        are left out, and when there is no other way it is empty. Skipped words refer to a rule "<skipped>". */
    QString toJsgf(const QString &ruleName, const QSet<QString> &unknown = {}) const;

    struct Node {
        enum class Kind { Word, Skipped, Sequence, Choice, Optional, AnyNumber, OneOrMore };
        Kind kind = Kind::Sequence;
        QString word;
        std::vector<Node> parts;
    };

private:
    Node m_root;
};

} // namespace agent
