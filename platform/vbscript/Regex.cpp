#include "platform/vbscript/Regex.h"

#include "platform/vbscript/Memory.h"
#include "platform/vbscript/ScriptError.h"
#include "platform/vbscript/ScriptHost.h"

#include <algorithm>
#include <limits>

namespace vbs {

namespace {

constexpr int kSyntax = 5017;
constexpr int kUnexpectedQuantifier = 5018;
constexpr int kExpectedBracket = 5019;
constexpr int kExpectedParenthesis = 5020;
constexpr int kInvalidRange = 5021;
constexpr int kDeepest = 100;
constexpr int kNoLimit = std::numeric_limits<qint32>::max();
constexpr size_t kMostSteps = 100'000;
constexpr size_t kMostEntries = 4'000'000;

using Piece = std::vector<Regex::Step>;

char16_t folded(char16_t c) { return QChar::toCaseFolded(char32_t(c)) <= 0xffff ? char16_t(QChar::toCaseFolded(char32_t(c))) : c; }
bool isWord(char16_t c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'_';
}
bool isLineEnd(char16_t c) { return c == u'\n' || c == u'\r' || c == 0x2028 || c == 0x2029; }

const std::vector<Regex::Range> kDigits = { { u'0', u'9' } };
const std::vector<Regex::Range> kWords = { { u'0', u'9' }, { u'A', u'Z' }, { u'_', u'_' }, { u'a', u'z' } };
const std::vector<Regex::Range> kSpaces = { { 9, 13 }, { u' ', u' ' }, { 0xa0, 0xa0 }, { 0x1680, 0x1680 },
    { 0x2000, 0x200a }, { 0x2028, 0x2029 }, { 0x202f, 0x202f }, { 0x205f, 0x205f }, { 0x3000, 0x3000 },
    { 0xfeff, 0xfeff } };

/** Adds a class such as \d, or what is outside of it (\D), to a set. */
void addClass(std::vector<Regex::Range> &ranges, char16_t letter)
{
    const char16_t lower = letter | 0x20;
    const auto &wanted = lower == u'd' ? kDigits : lower == u'w' ? kWords : kSpaces;
    if (letter == lower) {
        ranges.insert(ranges.end(), wanted.begin(), wanted.end());
        return;
    }
    int next = 0;
    for (const Regex::Range &range : wanted) {
        if (next < range.from)
            ranges.push_back({ char16_t(next), char16_t(range.from - 1) });
        next = range.to + 1;
    }
    if (next <= 0xffff)
        ranges.push_back({ char16_t(next), 0xffff });
}

bool isClassLetter(char16_t c) { return QStringView(u"dDwWsS").contains(QChar(c)); }

bool contains(const Regex::Set &set, char16_t c)
{
    return std::any_of(set.ranges.begin(), set.ranges.end(),
        [c](const Regex::Range &range) { return c >= range.from && c <= range.to; });
}

}

class RegexParser
{
public:
    RegexParser(Regex &regex, QStringView pattern) : m_regex(regex), m_text(pattern) {}
    void run();

private:
    bool atEnd() const { return m_pos >= m_text.size(); }
    char16_t peek(qsizetype offset = 0) const
    {
        return m_pos + offset < m_text.size() ? m_text[m_pos + offset].unicode() : u'\0';
    }
    bool accept(char16_t c)
    {
        if (atEnd() || peek() != c)
            return false;
        ++m_pos;
        return true;
    }
    [[noreturn]] static void fail(int number) { throw ScriptError(number); }
    Piece alternatives();
    Piece sequence();
    Piece atom(bool &repeatable);
    Piece group(bool &repeatable);
    Piece escape(bool &repeatable);
    Piece bracket();
    bool quantifier(qint32 &least, qint32 &most);
    bool braces(qint32 &least, qint32 &most);
    Piece repeat(const Piece &body, qint32 least, qint32 most, bool greedy, int firstGroup);
    char16_t escapedCharacter(char16_t c);
    char16_t hexDigits(int count, char16_t otherwise);
    qint32 number();
    Piece character(char16_t c);
    Piece setOf(Regex::Set set);
    static void append(Piece &piece, const Piece &more);

    Regex &m_regex;
    QStringView m_text;
    qsizetype m_pos = 0;
    int m_depth = 0;
};

void RegexParser::append(Piece &piece, const Piece &more)
{
    piece.insert(piece.end(), more.begin(), more.end());
    if (piece.size() > kMostSteps)
        fail(kSyntax);
}

void RegexParser::run()
{
    Piece all = alternatives();
    if (!atEnd())
        fail(kSyntax); // a parenthesis that nothing has opened
    all.push_back({ .op = Regex::Op::Match });
    m_regex.m_steps = std::move(all);
    m_regex.m_slots = std::max(m_regex.m_slots, 2 * (m_regex.m_groups + 1));
}

Piece RegexParser::alternatives()
{
    if (++m_depth > kDeepest)
        fail(kSyntax);
    Piece left = sequence();
    std::vector<Piece> choices = { std::move(left) };
    while (accept(u'|'))
        choices.push_back(sequence());
    --m_depth;
    Piece result = std::move(choices.back());
    for (auto choice = std::next(choices.rbegin()); choice != choices.rend(); ++choice) {
        Piece joined = { { .op = Regex::Op::Split, .x = 1, .y = qint32(choice->size()) + 2 } };
        append(joined, *choice);
        joined.push_back({ .op = Regex::Op::Jump, .x = qint32(result.size()) + 1 });
        append(joined, result);
        result = std::move(joined);
    }
    return result;
}

Piece RegexParser::sequence()
{
    Piece result;
    while (!atEnd() && peek() != u'|' && peek() != u')') {
        const int groupsBefore = m_regex.m_groups;
        bool repeatable = true;
        const Piece piece = atom(repeatable);
        qint32 least = 1;
        qint32 most = 1;
        if (!quantifier(least, most)) {
            append(result, piece);
            continue;
        }
        if (!repeatable)
            fail(kUnexpectedQuantifier);
        const bool greedy = !accept(u'?');
        append(result, repeat(piece, least, most, greedy, groupsBefore + 1));
        if (!atEnd() && QStringView(u"*+?").contains(QChar(peek())))
            fail(kUnexpectedQuantifier);
    }
    return result;
}

qint32 RegexParser::number()
{
    qint64 value = 0;
    for (; peek() >= u'0' && peek() <= u'9'; ++m_pos)
        value = std::min<qint64>(value * 10 + peek() - u'0', kNoLimit - 1);
    return qint32(value);
}

bool RegexParser::braces(qint32 &least, qint32 &most)
{
    const qsizetype start = m_pos++;
    if (peek() < u'0' || peek() > u'9') {
        m_pos = start;
        return false;
    }
    least = most = number();
    if (accept(u','))
        most = peek() >= u'0' && peek() <= u'9' ? number() : kNoLimit;
    if (!accept(u'}')) {
        m_pos = start;
        return false;
    }
    if (most < least)
        fail(kSyntax);
    return true;
}

bool RegexParser::quantifier(qint32 &least, qint32 &most)
{
    if (atEnd())
        return false;
    switch (peek()) {
    case u'*': least = 0; most = kNoLimit; break;
    case u'+': least = 1; most = kNoLimit; break;
    case u'?': least = 0; most = 1; break;
    case u'{': return braces(least, most);
    default: return false;
    }
    ++m_pos;
    return true;
}

Piece RegexParser::repeat(const Piece &body, qint32 least, qint32 most, bool greedy, int firstGroup)
{
    const bool single = body.size() == 1 && (body[0].op == Regex::Op::Char || body[0].op == Regex::Op::Any
                                                || body[0].op == Regex::Op::Set);
    if (single && greedy) {
        Piece run = { { .op = Regex::Op::Run, .least = least, .most = most } };
        append(run, body);
        return run;
    }
    // LoopStart, jump to Loop, body, Loop, LoopEnter: Loop decides, LoopEnter begins one more round.
    const qint32 slot = 1'000'000 + m_regex.m_slots; // counters follow the groups, whose number is not known yet
    m_regex.m_slots += 2;
    const auto size = qint32(body.size());
    Piece loop = { { .op = Regex::Op::LoopStart, .x = slot }, { .op = Regex::Op::Jump, .x = size + 1 } };
    append(loop, body);
    loop.push_back({ .op = Regex::Op::Loop, .greedy = greedy, .x = slot, .least = least, .most = most });
    loop.push_back({ .op = Regex::Op::LoopEnter, .x = slot, .y = firstGroup, .z = m_regex.m_groups + 1,
        .least = -(size + 1) });
    return loop;
}

Piece RegexParser::character(char16_t c)
{
    return { { .op = Regex::Op::Char, .character = m_regex.m_options.ignoreCase ? folded(c) : c } };
}

Piece RegexParser::setOf(Regex::Set set)
{
    m_regex.m_sets.push_back(std::move(set));
    return { { .op = Regex::Op::Set, .x = qint32(m_regex.m_sets.size() - 1) } };
}

Piece RegexParser::atom(bool &repeatable)
{
    const char16_t c = peek();
    switch (c) {
    case u'*': case u'+': case u'?': fail(kUnexpectedQuantifier);
    case u'(': return group(repeatable);
    case u'[': return bracket();
    case u'\\': return escape(repeatable);
    case u'.': ++m_pos; return { { .op = Regex::Op::Any } };
    case u'^': ++m_pos; repeatable = false; return { { .op = Regex::Op::LineStart } };
    case u'$': ++m_pos; repeatable = false; return { { .op = Regex::Op::LineEnd } };
    default: ++m_pos; return character(c);
    }
}

Piece RegexParser::group(bool &repeatable)
{
    ++m_pos;
    Piece result;
    if (accept(u'?')) {
        const char16_t kind = peek();
        if (kind != u':' && kind != u'=' && kind != u'!')
            fail(kSyntax);
        ++m_pos;
        Piece body = alternatives();
        if (kind == u':') {
            result = std::move(body);
        } else {
            repeatable = false;
            const auto size = qint32(body.size());
            result = { { .op = kind == u'=' ? Regex::Op::Look : Regex::Op::NotLook, .x = size + 2 } };
            append(result, body);
            result.push_back({ .op = Regex::Op::Match });
        }
    } else {
        const qint32 number = ++m_regex.m_groups;
        result = { { .op = Regex::Op::Save, .x = 2 * number } };
        append(result, alternatives());
        result.push_back({ .op = Regex::Op::Save, .x = 2 * number + 1 });
    }
    if (!accept(u')'))
        fail(kExpectedParenthesis);
    return result;
}

char16_t RegexParser::hexDigits(int count, char16_t otherwise)
{
    bool ok = m_pos + count <= m_text.size();
    const ushort value = ok ? m_text.mid(m_pos, count).toString().toUShort(&ok, 16) : ushort(0);
    if (!ok)
        return otherwise;
    m_pos += count;
    return value;
}

/** The character behind a backslash; the letter has been read already. */
char16_t RegexParser::escapedCharacter(char16_t c)
{
    switch (c) {
    case u't': return u'\t';
    case u'n': return u'\n';
    case u'r': return u'\r';
    case u'f': return u'\f';
    case u'v': return u'\v';
    case u'x': return hexDigits(2, u'x');
    case u'u': return hexDigits(4, u'u');
    case u'c': {
        const QChar letter(peek());
        if (!letter.isLetter())
            return u'c';
        ++m_pos;
        return letter.unicode() & 0x1f;
    }
    default: break;
    }
    if (c < u'0' || c > u'7')
        return c;
    int value = c - u'0';
    for (int digits = 1; digits < 3 && peek() >= u'0' && peek() <= u'7' && value * 8 + peek() - u'0' <= 255; ++digits)
        value = value * 8 + m_text[m_pos++].unicode() - u'0';
    return char16_t(value);
}

Piece RegexParser::escape(bool &repeatable)
{
    ++m_pos;
    if (atEnd())
        fail(kSyntax);
    const char16_t c = peek();
    if (c == u'b' || c == u'B') {
        ++m_pos;
        repeatable = false;
        return { { .op = c == u'b' ? Regex::Op::WordBoundary : Regex::Op::NotWordBoundary } };
    }
    if (isClassLetter(c)) {
        ++m_pos;
        Regex::Set set;
        addClass(set.ranges, c);
        return setOf(std::move(set));
    }
    if (c >= u'1' && c <= u'9') {
        const qsizetype start = m_pos;
        const qint32 wanted = number();
        if (wanted <= m_regex.m_groups)
            return { { .op = Regex::Op::BackReference, .x = wanted } };
        m_pos = start; // no such group: an octal code, or the digit itself
    }
    ++m_pos;
    return character(escapedCharacter(c));
}

Piece RegexParser::bracket()
{
    ++m_pos;
    Regex::Set set;
    set.negated = accept(u'^');
    int previous = -1; // a character that may start a range
    for (;;) {
        if (atEnd())
            fail(kExpectedBracket);
        char16_t c = m_text[m_pos++].unicode();
        if (c == u']')
            break;
        bool isClass = false;
        if (c == u'\\') {
            if (atEnd())
                fail(kExpectedBracket);
            c = m_text[m_pos++].unicode();
            isClass = isClassLetter(c);
            if (!isClass)
                c = c == u'b' ? u'\b' : escapedCharacter(c);
        } else if (c == u'-' && previous >= 0 && !atEnd() && peek() != u']') {
            char16_t to = m_text[m_pos++].unicode();
            if (to == u'\\' && !atEnd()) {
                to = m_text[m_pos++].unicode();
                if (isClassLetter(to))
                    fail(kInvalidRange);
                to = to == u'b' ? u'\b' : escapedCharacter(to);
            }
            if (to < previous)
                fail(kInvalidRange);
            set.ranges.back().to = to;
            previous = -1;
            continue;
        }
        if (isClass)
            addClass(set.ranges, c);
        else
            set.ranges.push_back({ c, c });
        previous = isClass ? -1 : c;
    }
    return setOf(std::move(set));
}

class RegexMatcher
{
public:
    RegexMatcher(const Regex &regex, ScriptHost &host, QStringView text)
        : m_regex(regex), m_host(host), m_text(text), m_slots(size_t(regex.m_slots), -1) {}
    bool matchAt(qsizetype start);
    std::vector<qint32> captures() const
    {
        return { m_slots.begin(), m_slots.begin() + 2 * (m_regex.m_groups + 1) };
    }

private:
    /** What to try next (a step and a position), or a slot to restore on the way back. */
    struct Entry
    {
        qint32 step; // -1: restore
        qint32 pos;
        qint32 lowest; // Run: may give back characters down to here; else -1
        qint32 slot;
    };

    bool run(qint32 step, qint32 pos, int depth);
    bool goBack(size_t bottom, qint32 &step, qint32 &pos);
    void push(const Entry &entry);
    void setSlot(qint32 slot, qint32 value);
    bool matches(const Regex::Step &step, char16_t c) const;
    qint32 runLength(const Regex::Step &run, const Regex::Step &one, qint32 pos);
    bool isBoundary(qint32 pos) const;
    bool backReference(qint32 group, qint32 &pos) const;
    void decide(const Regex::Step &step, qint32 &at, qint32 pos);
    bool simpleStep(const Regex::Step &step, qint32 &pos);
    bool look(const Regex::Step &step, qint32 at, qint32 pos, int depth);

    const Regex &m_regex;
    ScriptHost &m_host;
    QStringView m_text;
    std::vector<qint32> m_slots;
    std::vector<Entry> m_stack;
    memory::Charge m_charge;
    int m_work = 0;
};

void RegexMatcher::push(const Entry &entry)
{
    if (m_stack.size() >= kMostEntries)
        throw ScriptError(err::kOutOfMemory);
    if (m_stack.size() == m_stack.capacity())
        m_charge.resize(qint64(m_stack.capacity() * 2 * sizeof(Entry)));
    m_stack.push_back(entry);
}

void RegexMatcher::setSlot(qint32 slot, qint32 value)
{
    push({ -1, m_slots[size_t(slot)], -1, slot });
    m_slots[size_t(slot)] = value;
}

bool RegexMatcher::matches(const Regex::Step &step, char16_t c) const
{
    if (step.op == Regex::Op::Any)
        return !isLineEnd(c);
    const bool ignoreCase = m_regex.m_options.ignoreCase;
    if (step.op == Regex::Op::Char)
        return (ignoreCase ? folded(c) : c) == step.character;
    const Regex::Set &set = m_regex.m_sets[size_t(step.x)];
    bool inside = contains(set, c);
    if (!inside && ignoreCase)
        inside = contains(set, QChar(c).toLower().unicode()) || contains(set, QChar(c).toUpper().unicode());
    return inside != set.negated;
}

bool RegexMatcher::isBoundary(qint32 pos) const
{
    const bool before = pos > 0 && isWord(m_text[pos - 1].unicode());
    const bool behind = pos < m_text.size() && isWord(m_text[pos].unicode());
    return before != behind;
}

bool RegexMatcher::backReference(qint32 group, qint32 &pos) const
{
    const qint32 from = m_slots[size_t(2 * group)];
    const qint32 to = m_slots[size_t(2 * group + 1)];
    if (from < 0 || to < 0)
        return true; // a group that took no part matches nothing, everywhere
    const QStringView wanted = m_text.mid(from, to - from);
    const Qt::CaseSensitivity mode = m_regex.m_options.ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive;
    if (!m_text.mid(pos).startsWith(wanted, mode))
        return false;
    pos += qint32(wanted.size());
    return true;
}

qint32 RegexMatcher::runLength(const Regex::Step &run, const Regex::Step &one, qint32 pos)
{
    qint32 end = pos;
    while (end < m_text.size() && end - pos < run.most && matches(one, m_text[end].unicode()))
        ++end;
    m_work += (end - pos) / 8;
    return end - pos;
}

bool RegexMatcher::goBack(size_t bottom, qint32 &step, qint32 &pos)
{
    while (m_stack.size() > bottom) {
        Entry &entry = m_stack.back();
        if (entry.step < 0) {
            m_slots[size_t(entry.slot)] = entry.pos;
            m_stack.pop_back();
            continue;
        }
        step = entry.step;
        pos = entry.pos;
        if (entry.lowest >= 0 && entry.pos > entry.lowest)
            --entry.pos;
        else
            m_stack.pop_back();
        return true;
    }
    return false;
}

/** Loop: one more round, or go on behind it. */
void RegexMatcher::decide(const Regex::Step &step, qint32 &at, qint32 pos)
{
    const qint32 counter = m_slots[size_t(step.x)];
    const bool emptyRound = counter > step.least && m_slots[size_t(step.x + 1)] == pos;
    const qint32 enter = at + 1;
    const qint32 leave = at + 2;
    if (counter < step.least) {
        at = enter;
    } else if (counter >= step.most || emptyRound) {
        at = leave;
    } else {
        push({ step.greedy ? leave : enter, pos, -1, 0 });
        at = step.greedy ? enter : leave;
    }
}

bool RegexMatcher::look(const Regex::Step &step, qint32 at, qint32 pos, int depth)
{
    const size_t bottom = m_stack.size();
    const bool found = run(at + 1, pos, depth + 1);
    const bool wanted = step.op == Regex::Op::Look;
    if (found && wanted) {
        // The choices inside are settled; what has to be restored on the way back stays.
        std::erase_if(m_stack, [&, index = size_t(0)](const Entry &entry) mutable {
            return index++ >= bottom && entry.step >= 0;
        });
        return true;
    }
    while (m_stack.size() > bottom) {
        const Entry entry = m_stack.back();
        m_stack.pop_back();
        if (entry.step < 0)
            m_slots[size_t(entry.slot)] = entry.pos;
    }
    return found == wanted;
}

bool RegexMatcher::simpleStep(const Regex::Step &step, qint32 &pos)
{
    const bool multiLine = m_regex.m_options.multiLine;
    switch (step.op) {
    case Regex::Op::LineStart: return pos == 0 || (multiLine && isLineEnd(m_text[pos - 1].unicode()));
    case Regex::Op::LineEnd: return pos == m_text.size() || (multiLine && isLineEnd(m_text[pos].unicode()));
    case Regex::Op::WordBoundary: return isBoundary(pos);
    case Regex::Op::NotWordBoundary: return !isBoundary(pos);
    case Regex::Op::Save: setSlot(step.x, pos); return true;
    case Regex::Op::BackReference: return backReference(step.x, pos);
    default:
        if (pos >= m_text.size() || !matches(step, m_text[pos].unicode()))
            return false;
        ++pos;
        return true;
    }
}

bool RegexMatcher::run(qint32 at, qint32 pos, int depth)
{
    const size_t bottom = m_stack.size();
    for (;;) {
        if (++m_work >= 256) {
            m_host.spend(m_work);
            m_work = 0;
        }
        const Regex::Step &step = m_regex.m_steps[size_t(at)];
        bool ok = true;
        switch (step.op) {
        case Regex::Op::Match: m_slots[1] = depth == 0 ? pos : m_slots[1]; return true;
        case Regex::Op::Jump: at += step.x; break;
        case Regex::Op::Split:
            push({ at + step.y, pos, -1, 0 });
            at += step.x;
            break;
        case Regex::Op::LoopStart:
            setSlot(step.x, 0);
            setSlot(step.x + 1, -1);
            ++at;
            break;
        case Regex::Op::Loop: decide(step, at, pos); break;
        case Regex::Op::LoopEnter:
            setSlot(step.x, m_slots[size_t(step.x)] + 1);
            setSlot(step.x + 1, pos);
            for (qint32 group = step.y; group < step.z; ++group) {
                setSlot(2 * group, -1);
                setSlot(2 * group + 1, -1);
            }
            at += step.least;
            break;
        case Regex::Op::Run: {
            const qint32 length = runLength(step, m_regex.m_steps[size_t(at + 1)], pos);
            ok = length >= step.least;
            if (ok && length > step.least)
                push({ at + 2, pos + length - 1, pos + step.least, 0 });
            pos += length;
            at += 2;
            break;
        }
        case Regex::Op::Look: case Regex::Op::NotLook:
            ok = look(step, at, pos, depth);
            at += step.x;
            break;
        default:
            ok = simpleStep(step, pos);
            ++at;
        }
        if (!ok && !goBack(bottom, at, pos))
            return false;
    }
}

bool RegexMatcher::matchAt(qsizetype start)
{
    std::fill(m_slots.begin(), m_slots.end(), -1);
    m_stack.clear();
    m_slots[0] = qint32(start);
    return run(0, qint32(start), 0);
}

qint64 Regex::bytes() const
{
    qint64 sum = qint64(m_steps.capacity() * sizeof(Step) + m_sets.capacity() * sizeof(Set) + sizeof(Regex));
    for (const Set &set : m_sets)
        sum += qint64(set.ranges.capacity() * sizeof(Range));
    return sum + 64;
}

Regex::Regex(QStringView pattern, Options options) : m_options(options)
{
    m_slots = 0;
    RegexParser(*this, pattern).run();
    // Counters stand behind the groups.
    const int captures = 2 * (m_groups + 1);
    int counters = 0;
    for (Step &step : m_steps) {
        if (step.op == Op::LoopStart || step.op == Op::Loop || step.op == Op::LoopEnter) {
            step.x = step.x - 1'000'000 + captures;
            counters = std::max(counters, step.x + 2);
        }
    }
    m_slots = std::max(captures, counters);
}

bool Regex::find(ScriptHost &host, QStringView text, qsizetype from, std::vector<qint32> &captures) const
{
    RegexMatcher matcher(*this, host, text);
    const bool anchored = !m_options.multiLine && m_steps.front().op == Op::LineStart;
    for (qsizetype start = from; start <= text.size(); ++start) {
        if (matcher.matchAt(start)) {
            captures = matcher.captures();
            return true;
        }
        if (anchored)
            break;
    }
    return false;
}

}
