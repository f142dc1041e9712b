#include "platform/agent/VoiceGrammar.h"

#include "platform/agent/Agent.h"

#include <algorithm>
#include <optional>
#include <set>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

using Node = VoiceGrammar::Node;
using Kind = Node::Kind;
using Places = std::set<qsizetype>;

constexpr qsizetype kDeepest = 10; // groups within groups

constexpr QLatin1StringView kDigits[] = { "zero"_L1, "one"_L1, "two"_L1,   "three"_L1, "four"_L1,
                                          "five"_L1, "six"_L1, "seven"_L1, "eight"_L1, "nine"_L1 };

/** A written word as it is said: lower case, digits as words, divided where punctuation stands. */
QStringList saidWords(QStringView written)
{
    QString plain;
    for (const QChar c : written) {
        if (c.isLetter() || c.isMark() || c.isSurrogate() || c == u'\'')
            plain += c.toLower();
        else if (c.isDigit())
            plain += u' ' + kDigits[c.digitValue()] + u' ';
        else
            plain += c == u'&' ? u" and "_s : u" "_s;
    }
    return plain.split(u' ', Qt::SkipEmptyParts);
}

/** Reads a grammar from left to right. */
class GrammarParser
{
public:
    explicit GrammarParser(QStringView text) : m_text(text) {}

    Node parse()
    {
        Node all = choice();
        if (m_at < m_text.size())
            stray(m_text[m_at]);
        return all;
    }

private:
    [[noreturn]] static void fail(ErrorNumber number, const QString &text) { throw Error(number, text); }

    [[noreturn]] void stray(QChar closing)
    {
        if (closing == u')')
            fail(ErrorNumber::GrammarParenthesisMissing, u"The voice grammar has a \")\" without a \"(\"."_s);
        fail(ErrorNumber::GrammarBracketMissing, u"The voice grammar has a \"]\" without a \"[\"."_s);
    }

    /** Alternatives up to the end of the group that is open. */
    Node choice()
    {
        Node alternatives{ Kind::Choice, {}, {} };
        alternatives.parts.push_back(sequence());
        while (m_at < m_text.size() && m_text[m_at] == u'|') {
            if (m_open.isEmpty() || m_open.back() != u'(')
                fail(ErrorNumber::GrammarStrayBar, u"The voice grammar has a \"|\" outside of parentheses."_s);
            ++m_at;
            alternatives.parts.push_back(sequence());
        }
        if (!m_open.isEmpty() && std::any_of(alternatives.parts.cbegin(), alternatives.parts.cend(),
                                             [](const Node &part) { return part.parts.empty(); }))
            emptyGroup();
        return alternatives.parts.size() == 1 ? std::move(alternatives.parts.front()) : alternatives;
    }

    [[noreturn]] void emptyGroup()
    {
        // An end that is missing altogether is the graver fault.
        if (m_at >= m_text.size())
            unclosed();
        if (m_open.back() == u'(')
            fail(ErrorNumber::GrammarParenthesisMissing, u"The voice grammar has empty parentheses."_s);
        fail(ErrorNumber::GrammarBracketMissing, u"The voice grammar has empty brackets."_s);
    }

    [[noreturn]] void unclosed()
    {
        if (m_open.back() == u'(')
            fail(ErrorNumber::GrammarParenthesisOpen, u"The voice grammar has a \"(\" without a \")\"."_s);
        fail(ErrorNumber::GrammarBracketOpen, u"The voice grammar has a \"[\" without a \"]\"."_s);
    }

    Node sequence()
    {
        Node items;
        while (m_at < m_text.size()) {
            const QChar c = m_text[m_at];
            if (c == u')' || c == u']' || c == u'|')
                break;
            if (c.isSpace())
                ++m_at;
            else if (c == u'*' || c == u'+')
                repeat(items);
            else
                item(items);
        }
        return items;
    }

    void repeat(Node &items)
    {
        if (items.parts.empty())
            fail(ErrorNumber::BadData, u"The voice grammar has nothing before a \"%1\"."_s.arg(m_text[m_at]));
        Node &last = items.parts.back();
        const Kind kind = m_text[m_at++] == u'*' ? Kind::AnyNumber : Kind::OneOrMore;
        // A second sign says little new, and must not nest: "a* * * *".
        if (last.kind == Kind::AnyNumber || last.kind == Kind::OneOrMore) {
            if (kind == Kind::AnyNumber)
                last.kind = kind;
            return;
        }
        Node repeated{ kind, {}, {} };
        repeated.parts.push_back(std::move(last));
        last = std::move(repeated);
    }

    void item(Node &items)
    {
        const QChar c = m_text[m_at];
        if (c == u'(' || c == u'[') {
            items.parts.push_back(group(c));
        } else if (m_text.sliced(m_at).startsWith(u"...")) {
            m_at += 3;
            items.parts.push_back({ Kind::Skipped, {}, {} });
        } else {
            word(items);
        }
    }

    Node group(QChar opening)
    {
        if (m_open.size() >= kDeepest)
            fail(ErrorNumber::BadData, u"The voice grammar has too many groups within groups."_s);
        ++m_at;
        m_open.append(opening);
        Node inside = choice();
        if (m_at >= m_text.size())
            unclosed();
        const QChar closing = m_text[m_at];
        if ((closing == u')') != (opening == u'(')) {
            // The end of a group around this one shows that the end of this one is missing.
            if (m_open.contains(closing == u')' ? u'(' : u'['))
                unclosed();
            stray(closing);
        }
        ++m_at;
        m_open.chop(1);
        if (opening == u'(')
            return inside;
        Node optional{ Kind::Optional, {}, {} };
        optional.parts.push_back(std::move(inside));
        return optional;
    }

    void word(Node &items)
    {
        const qsizetype begin = m_at;
        while (m_at < m_text.size() && !m_text[m_at].isSpace() && !u"()[]|*+"_s.contains(m_text[m_at]))
            ++m_at;
        const QStringView written = m_text.sliced(begin, m_at - begin);
        const qsizetype slash = written.indexOf(u'\\');
        const QStringList said = saidWords(slash < 0 ? written : written.sliced(slash + 1));
        Node words;
        for (const QString &one : said)
            words.parts.push_back({ Kind::Word, one, {} });
        if (said.size() == 1)
            items.parts.push_back(std::move(words.parts.front()));
        else if (said.size() > 1)
            items.parts.push_back(std::move(words));
    }

    QStringView m_text;
    qsizetype m_at = 0;
    QString m_open; // the brackets that are open, innermost last
};

bool canBeSilent(const Node &node)
{
    switch (node.kind) {
    case Kind::Word: return false;
    case Kind::Skipped:
    case Kind::Optional:
    case Kind::AnyNumber: return true;
    case Kind::OneOrMore:
    case Kind::Sequence: return std::all_of(node.parts.cbegin(), node.parts.cend(), canBeSilent);
    case Kind::Choice: return std::any_of(node.parts.cbegin(), node.parts.cend(), canBeSilent);
    }
    return true;
}

/** Where a saying can have got to after the node, from any of the places. */
Places advance(const Node &node, const QStringList &words, const Places &from);

Places advanceAll(const Node &node, const QStringList &words, Places places)
{
    for (const Node &part : node.parts)
        places = advance(part, words, places);
    return places;
}

Places advanceAny(const Node &node, const QStringList &words, const Places &from)
{
    Places to;
    for (const Node &part : node.parts)
        to.merge(advance(part, words, from));
    return to;
}

Places advanceRepeatedly(const Node &node, const QStringList &words, const Places &from)
{
    Places all = advance(node, words, from);
    for (Places latest = all; !latest.empty();) {
        Places fresh;
        for (const qsizetype place : advance(node, words, latest)) {
            if (all.insert(place).second)
                fresh.insert(place);
        }
        latest = std::move(fresh);
    }
    return all;
}

Places advance(const Node &node, const QStringList &words, const Places &from)
{
    if (from.empty())
        return {};
    Places to;
    switch (node.kind) {
    case Kind::Word:
        for (const qsizetype place : from) {
            if (place < words.size() && words.at(place).compare(node.word, Qt::CaseInsensitive) == 0)
                to.insert(place + 1);
        }
        return to;
    case Kind::Skipped:
        for (qsizetype place = *from.begin(); place <= words.size(); ++place)
            to.insert(place);
        return to;
    case Kind::Sequence: return advanceAll(node, words, from);
    case Kind::Choice: return advanceAny(node, words, from);
    case Kind::Optional: to = advance(node.parts.front(), words, from); break;
    case Kind::AnyNumber: to = advanceRepeatedly(node.parts.front(), words, from); break;
    case Kind::OneOrMore: return advanceRepeatedly(node.parts.front(), words, from);
    }
    to.insert(from.cbegin(), from.cend());
    return to;
}

using Rule = std::optional<QString>; // nothing: cannot be said; empty: says nothing

Rule jsgf(const Node &node, const QSet<QString> &unknown);

Rule jsgfSequence(const Node &node, const QSet<QString> &unknown)
{
    QStringList said;
    for (const Node &part : node.parts) {
        const Rule rule = jsgf(part, unknown);
        if (!rule)
            return std::nullopt;
        if (!rule->isEmpty())
            said.append(*rule);
    }
    return said.isEmpty() ? QString() : u'(' + said.join(u' ') + u')';
}

Rule jsgfChoice(const Node &node, const QSet<QString> &unknown)
{
    QStringList said;
    bool silent = false;
    for (const Node &part : node.parts) {
        const Rule rule = jsgf(part, unknown);
        if (rule && rule->isEmpty())
            silent = true;
        else if (rule)
            said.append(*rule);
    }
    if (said.isEmpty())
        return silent ? Rule(QString()) : std::nullopt;
    const QString all = said.join(u" | "_s);
    return silent ? u'[' + all + u']' : u'(' + all + u')';
}

/** What cannot be said is left out here: the recogniser's own word for it spoils all rules. */
Rule jsgf(const Node &node, const QSet<QString> &unknown)
{
    switch (node.kind) {
    case Kind::Word: return unknown.contains(node.word) ? std::nullopt : Rule(node.word);
    case Kind::Skipped: return u"<skipped>"_s;
    case Kind::Sequence: return jsgfSequence(node, unknown);
    case Kind::Choice: return jsgfChoice(node, unknown);
    case Kind::Optional:
    case Kind::AnyNumber:
    case Kind::OneOrMore: break;
    }
    const Rule part = jsgf(node.parts.front(), unknown);
    if (node.kind == Kind::OneOrMore)
        return !part || part->isEmpty() ? part : Rule(u'(' + *part + u")+"_s);
    if (!part || part->isEmpty())
        return QString();
    return node.kind == Kind::Optional ? u'[' + *part + u']' : u'(' + *part + u")*"_s;
}

void collectWords(const Node &node, QStringList &words)
{
    if (node.kind == Kind::Word && !words.contains(node.word))
        words.append(node.word);
    for (const Node &part : node.parts)
        collectWords(part, words);
}

} // namespace

VoiceGrammar::VoiceGrammar(const QString &text)
    : m_root(GrammarParser(text).parse())
{
    if (canBeSilent(m_root))
        throw Error(ErrorNumber::BadData, u"The voice grammar has no word that must be said."_s);
}

QStringList VoiceGrammar::words() const
{
    QStringList all;
    collectWords(m_root, all);
    return all;
}

bool VoiceGrammar::matches(const QStringList &words) const
{
    return advance(m_root, words, { 0 }).contains(words.size());
}

QString VoiceGrammar::toJsgf(const QString &ruleName, const QSet<QString> &unknown) const
{
    const Rule rule = jsgf(m_root, unknown);
    return rule && !rule->isEmpty() ? u'<' + ruleName + u"> = "_s + *rule + u";\n"_s : QString();
}

} // namespace agent
