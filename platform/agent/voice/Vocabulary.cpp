#include "platform/agent/voice/Vocabulary.h"

#include <QFile>
#include <QHash>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

// What people say around a command, where a grammar lets them.
constexpr QLatin1StringView kSkipped[] = {
    "a"_L1,    "the"_L1,  "please"_L1, "now"_L1,  "would"_L1, "could"_L1, "can"_L1,  "you"_L1,  "me"_L1,   "i"_L1,
    "want"_L1, "to"_L1,   "like"_L1,   "my"_L1,   "and"_L1,   "just"_L1,  "then"_L1, "okay"_L1, "hey"_L1,  "again"_L1,
    "of"_L1,   "for"_L1,  "in"_L1,     "is"_L1,   "it"_L1,    "that"_L1,  "this"_L1, "let"_L1,  "us"_L1,   "at"_L1,
};

bool usesSkipped(const VoiceGrammar &grammar)
{
    return grammar.toJsgf(QString()).contains("<skipped>"_L1);
}

QSet<QString> skippedWords()
{
    QSet<QString> words;
    for (const QLatin1StringView word : kSkipped)
        words.insert(word);
    return words;
}

/** Finds some words among the lines of a large dictionary: most lines are done with by a look at two letters. */
class WordIndex
{
public:
    explicit WordIndex(const QSet<QString> &words)
        : m_beginnings(256 * 256)
    {
        for (const QString &word : words) {
            const QByteArray bytes = word.toUtf8();
            m_words.insert(bytes, word);
            m_beginnings[beginning(bytes)] = true;
        }
    }

    /** The word that the line is about; empty when it is not wanted. */
    QString wordOf(QByteArrayView line) const
    {
        if (line.size() < 3 || !m_beginnings[beginning(line)])
            return QString();
        const auto *end = std::find_if(line.begin(), line.end(), [](char c) { return c == ' ' || c == '('; });
        return m_words.value(QByteArray::fromRawData(line.data(), end - line.begin()));
    }

private:
    /** The first two letters; a word of one letter is followed by a blank. */
    static size_t beginning(QByteArrayView text)
    {
        const auto second = text.size() > 1 && text[1] != '(' ? uchar(text[1]) : uchar(' ');
        return size_t(uchar(text[0])) * 256 + second;
    }

    QHash<QByteArray, QString> m_words;
    std::vector<bool> m_beginnings;
};

} // namespace

Vocabulary::Vocabulary(const Commands &commands)
{
    for (const Command &command : commands.all()) {
        if (command.enabled && !command.voice.trimmed().isEmpty())
            m_entries.append({ command.name, VoiceGrammar(command.voice) });
    }
}

QSet<QString> Vocabulary::words() const
{
    QSet<QString> all;
    for (const Entry &entry : m_entries) {
        for (const QString &word : entry.grammar.words())
            all.insert(word);
        if (usesSkipped(entry.grammar))
            all.unite(skippedWords());
    }
    return all;
}

QString Vocabulary::toJsgf(const QSet<QString> &unknown) const
{
    QStringList names;
    QString rules;
    for (const Entry &entry : m_entries) {
        const QString name = u"c"_s + QString::number(names.size());
        const QString rule = entry.grammar.toJsgf(name, unknown);
        if (rule.isEmpty())
            continue;
        rules += rule;
        names.append(u'<' + name + u'>');
    }
    if (names.isEmpty())
        return QString();
    QStringList skipped = (skippedWords() - unknown).values();
    std::sort(skipped.begin(), skipped.end());
    if (rules.contains("<skipped>"_L1) && !skipped.isEmpty())
        rules += "<skipped> = ("_L1 + skipped.join(u" | "_s) + ")*;\n"_L1;
    return "#JSGF V1.0;\ngrammar commands;\npublic <command> = "_L1 + names.join(u" | "_s) + ";\n"_L1 + rules;
}

QString Vocabulary::commandOf(const QStringList &words) const
{
    const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                    [&](const Entry &entry) { return entry.grammar.matches(words); });
    return found == m_entries.cend() ? QString() : found->name;
}

QByteArray dictionaryFor(const QSet<QString> &words, const QString &dictionaryFile, QSet<QString> &missing)
{
    const WordIndex wanted(words);
    missing = words;
    QByteArray lines;
    QFile file(dictionaryFile);
    const uchar *mapped = file.open(QIODevice::ReadOnly) && file.size() > 0 ? file.map(0, file.size()) : nullptr;
    const QByteArrayView all(mapped, mapped ? file.size() : 0);
    for (qsizetype at = 0; at < all.size();) {
        const qsizetype feed = all.indexOf('\n', at);
        const QByteArrayView line = all.sliced(at, (feed < 0 ? all.size() : feed) - at);
        at += line.size() + 1;
        if (const QString word = wanted.wordOf(line); !word.isEmpty()) {
            missing.remove(word);
            lines.append(line.data(), line.size()).append('\n');
        }
    }
    return lines;
}

} // namespace agent
