#pragma once

#include <QString>
#include <vector>

namespace vbs {

class ScriptHost;

/**
 * Regular expressions as ECMA-262, third edition, has them, matched by backtracking. The backtrack stack is on the
 * heap and limited, and the host's deadline ends a match that explodes.
 */
class Regex
{
public:
    struct Options
    {
        bool ignoreCase = false;
        bool multiLine = false;
    };

    /** Throws ScriptError 5017 to 5021 for a pattern that is none. */
    Regex(QStringView pattern, Options options);

    /** Memory of the compiled pattern. */
    qint64 bytes() const;
    int groupCount() const { return m_groups; }
    /**
     * Finds the first match at or after `from`. `captures` gets start and end of the whole match and of each
     * group, -1 for groups that took no part.
     */
    bool find(ScriptHost &host, QStringView text, qsizetype from, std::vector<qint32> &captures) const;

    struct Range
    {
        char16_t from;
        char16_t to;
    };
    struct Set
    {
        std::vector<Range> ranges;
        bool negated = false;
    };
    enum class Op : quint8 {
        Char, Any, Set, LineStart, LineEnd, WordBoundary, NotWordBoundary, Save, Split, Jump, BackReference,
        Look, NotLook, LoopStart, Loop, LoopEnter, Run, Match
    };
    /** Jumps are relative, so that pieces can be put together in any order. */
    struct Step
    {
        Op op = Op::Match;
        bool greedy = true;
        char16_t character = 0;
        qint32 x = 0; // set, slot, group, or jump
        qint32 y = 0; // second jump, or first group of a loop
        qint32 z = 0; // group behind the last one of a loop
        qint32 least = 0;
        qint32 most = 0;
    };

private:
    friend class RegexParser;
    friend class RegexMatcher;

    std::vector<Step> m_steps;
    std::vector<Set> m_sets;
    Options m_options;
    int m_groups = 0;
    int m_slots = 2;
};

}
