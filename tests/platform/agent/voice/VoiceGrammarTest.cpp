#include "platform/agent/Agent.h"
#include "platform/agent/VoiceGrammar.h"

#include "tests/world/NetTest.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using agent::ErrorNumber;
using agent::VoiceGrammar;

namespace {

ErrorNumber errorOf(const QString &text)
{
    try {
        VoiceGrammar grammar(text);
    } catch (const agent::Error &error) {
        EXPECT_FALSE(error.text().isEmpty());
        return error.number();
    }
    return ErrorNumber::None;
}

bool matches(const QString &grammar, const QString &said)
{
    return VoiceGrammar(grammar).matches(said.split(u' ', Qt::SkipEmptyParts));
}

} // namespace

TEST(VoiceGrammar, WhatMayBeSaid)
{
    const struct {
        QString grammar;
        QStringList right, wrong;
    } rows[] = {
        { u"(show|display) log file"_s, { u"show log file"_s, u"Display LOG file"_s },
          { u"log file"_s, u"show log"_s, u"show log file now"_s, u"show display log file"_s, QString() } },
        { u"(Restore|Restore Program)"_s, { u"restore"_s, u"restore program"_s }, { u"program"_s } },
        { u"(hello [there] | hi)"_s, { u"hello"_s, u"hello there"_s, u"hi"_s }, { u"hi there"_s, u"there"_s } },
        { u"please* try this"_s, { u"try this"_s, u"please please try this"_s }, { u"please this"_s } },
        { u"(New York)+"_s, { u"new york"_s, u"new york new york"_s }, { u"new new york"_s } },
        { u"New York+"_s, { u"new york"_s, u"new york york"_s }, { u"new york new york"_s } },
        { u"[...] check mail [...]"_s, { u"check mail"_s, u"would you check mail now please"_s }, { u"check the mail"_s } },
        { u"([a] [b])* c"_s, { u"c"_s, u"b a a c"_s }, { u"d c"_s } },
        { u"HTML\\h-t-m-l page 42!"_s, { u"h t m l page four two"_s }, { u"html page four two"_s } },
        { u"don't stop & go"_s, { u"don't stop and go"_s }, { u"dont stop and go"_s } },
        { u"(a* * +)* b"_s + u" ? *"_s.repeated(200) + u" (((((c*)*)*)*)*)* d"_s, { u"a a b b c c c d"_s, u"d"_s }, { u"c"_s } },
    };
    for (const auto &row : rows) {
        for (const QString &said : row.right)
            EXPECT_TRUE(matches(row.grammar, said)) << qPrintable(row.grammar) << ": " << qPrintable(said);
        for (const QString &said : row.wrong)
            EXPECT_FALSE(matches(row.grammar, said)) << qPrintable(row.grammar) << ": " << qPrintable(said);
    }
}

TEST(VoiceGrammar, EveryFaultHasItsNumber)
{
    using enum ErrorNumber;
    const struct {
        QString grammar;
        ErrorNumber number;
    } rows[] = {
        { u"(a b"_s, GrammarParenthesisOpen },   { u"a ("_s, GrammarParenthesisOpen },
        { u"[(a] b"_s, GrammarParenthesisOpen }, { u"[a"_s, GrammarBracketOpen },
        { u"([a) b"_s, GrammarBracketOpen },     { u"a) b"_s, GrammarParenthesisMissing },
        { u"() a"_s, GrammarParenthesisMissing }, { u"(a|) b"_s, GrammarParenthesisMissing },
        { u"[a) b"_s, GrammarParenthesisMissing }, { u"a] b"_s, GrammarBracketMissing },
        { u"[] a"_s, GrammarBracketMissing },    { u"(a] b"_s, GrammarBracketMissing },
        { u"a|b"_s, GrammarStrayBar },           { u"[a|b] c"_s, GrammarStrayBar },
        { u"[a]"_s, BadData },                   { u"..."_s, BadData },
        { u"a* [b]"_s, BadData },                { u"*a"_s, BadData },
        { u" ?! "_s, BadData },                  { u"("_s.repeated(100'000), BadData },
        { u"a"_s + u"*"_s.repeated(100'000) + u" b"_s, None },
    };
    for (const auto &row : rows)
        EXPECT_EQ(errorOf(row.grammar), row.number) << qPrintable(row.grammar.left(40));
}

TEST(VoiceGrammar, CommandsRefuseWhatCannotBeSaid)
{
    agent::Commands commands;
    EXPECT_THROW(commands.add({ u"a"_s, u"A"_s, u"(broken"_s }), agent::Error);
    EXPECT_TRUE(commands.all().isEmpty());
    commands.add({ u"a"_s, u"A"_s, QString() });
    commands.add({ u"b"_s, u"B"_s, u"(Minimize|Minimize Program)"_s });
    EXPECT_EQ(commands.all().size(), 2);
}

TEST(VoiceGrammar, BecomesARule)
{
    const VoiceGrammar grammar(u"(Show|display) [the] log+ ..."_s);
    EXPECT_EQ(grammar.words(), QStringList({ u"show"_s, u"display"_s, u"the"_s, u"log"_s }));
    EXPECT_EQ(grammar.toJsgf(u"c1"_s, { u"display"_s }), u"<c1> = (((show)) [(the)] (log)+ <skipped>);\n"_s);
    EXPECT_EQ(grammar.toJsgf(u"c1"_s, { u"the"_s }), u"<c1> = (((show) | (display)) (log)+ <skipped>);\n"_s);
    EXPECT_EQ(grammar.toJsgf(u"c1"_s, { u"show"_s, u"display"_s }), QString());
    EXPECT_EQ(grammar.toJsgf(u"c1"_s, { u"log"_s }), QString());
}
