#pragma once

#include "platform/agent/Agent.h"
#include "platform/agent/VoiceGrammar.h"

#include <QList>
#include <QSet>
#include <QString>

namespace agent {

/** What can be said to a character: the grammars of its enabled commands that have one. */
class Vocabulary
{
public:
    struct Entry {
        QString name; // of the command
        VoiceGrammar grammar;
    };

    explicit Vocabulary(const Commands &commands);

    bool isEmpty() const { return m_entries.isEmpty(); }
    /** All words of it, and those that stand for words that do not matter. */
    QSet<QString> words() const;
    /** A whole JSGF grammar without the unknown words; empty when nothing can be said without them. */
    QString toJsgf(const QSet<QString> &unknown) const;
    /** The name of the first command that these words make; empty when there is none. */
    QString commandOf(const QStringList &words) const;

private:
    QList<Entry> m_entries;
};

/** The lines of a pronouncing dictionary for these words, one to a line as "word P R O N", with the variants "word(2)".
    Words that are not there are put into missing. */
QByteArray dictionaryFor(const QSet<QString> &words, const QString &dictionaryFile, QSet<QString> &missing);

} // namespace agent
