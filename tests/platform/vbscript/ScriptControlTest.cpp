#include "platform/vbscript/Engine.h"
#include "platform/vbscript/Memory.h"
#include "platform/vbscript/ScriptControl.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/** A control whose events are written down. */
struct Control
{
    ScriptControl control;
    QStringList log;

    Control()
    {
        control.SetAllowUI(false);
        QObject::connect(&control, &ScriptControl::Error, &control,
            [this] { log.append(u"error %1 line %2"_s.arg(control.Fault().number).arg(control.Fault().line)); });
        QObject::connect(&control, &ScriptControl::Timeout, &control, [this] { log.append(u"timeout"_s); });
    }
    QString value(const QString &expression)
    {
        return vbs::toText(control.engine(), control.engine().evaluate(expression));
    }
};

TEST(ScriptControl, addsTheSameTextAgainAndAgain)
{
    Control c;
    const QString text = u"Option Explicit\nConst kStep = 2\nDim total, list(2)\nClass Counter\nPublic n\nEnd Class\n"
                         u"Sub Main\nDim k : Set k = New Counter\nk.n = kStep\ntotal = total + k.n\n"
                         u"list(0) = total\nEnd Sub"_s;
    for (int cycle = 0; cycle < 50; ++cycle) {
        EXPECT_TRUE(c.control.AddCode(text));
        EXPECT_TRUE(c.control.Run(u"Main"_s));
    }
    EXPECT_EQ(c.log, QStringList());
    EXPECT_EQ(c.value(u"total & \" \" & list(0)"_s), u"100 100"_s);
}

TEST(ScriptControl, holdsNoMemoryOfFormerCycles)
{
    Control c;
    const QString text = u"Class K\nPublic o\nEnd Class\nSub Main\nDim a(1000), k\nSet k = New K\na(1) = Space(5000)\n"
                         u"Execute \"x = 1 : y = \"\"a\"\" & x\"\nEnd Sub"_s;
    const auto cycle = [&] { c.control.AddCode(text), c.control.Run(u"Main"_s); };
    for (int k = 0; k < 3; ++k)
        cycle();
    const qint64 before = vbs::memory::used();
    for (int k = 0; k < 20; ++k)
        cycle();
    EXPECT_EQ(vbs::memory::used(), before);
}

TEST(ScriptControl, newDefinitionsReplaceFormerOnes)
{
    Control c;
    EXPECT_TRUE(c.control.AddCode(u"Const a = 1\nFunction F : F = a : End Function\nFunction G : G = F : End Function"_s));
    EXPECT_TRUE(c.control.AddCode(u"Const a = 5"_s));
    EXPECT_EQ(c.value(u"G"_s), u"5"_s);
    EXPECT_TRUE(c.control.AddCode(u"Function F : F = \"new\" & a : End Function"_s));
    EXPECT_EQ(c.value(u"G()"_s), u"new5"_s);
    // A name that a procedure took for its own variable becomes global later.
    EXPECT_TRUE(c.control.AddCode(u"Function H : H = later : End Function"_s));
    EXPECT_EQ(c.value(u"H"_s), QString(u""_s));
    EXPECT_TRUE(c.control.AddCode(u"Dim later\nlater = 7"_s));
    EXPECT_EQ(c.value(u"H"_s), u"7"_s);
}

TEST(ScriptControl, tellsErrorsAndStaysUsable)
{
    Control c;
    c.control.Run(u"Main"_s);
    c.control.AddCode(u"x = 1\ny = (2"_s);
    c.control.AddCode(u"Sub Main\nx = 1 / 0\nEnd Sub"_s);
    c.control.Run(u"Main"_s);
    c.control.AddCode(u"Sub Main\nMsgBox 1\nEnd Sub"_s);
    c.control.Run(u"Main"_s);
    c.control.AddCode(u"Sub Main : done = True : End Sub : Dim done"_s);
    EXPECT_TRUE(c.control.Run(u"Main"_s));
    EXPECT_EQ(c.value(u"done"_s), u"True"_s);
    const QStringList expected = { u"error 5 line 0"_s, u"error 1006 line 2"_s, u"error 11 line 2"_s,
        u"error 70 line 2"_s };
    EXPECT_EQ(c.log, expected);
}

struct Endless
{
    const char *name;
    const char16_t *body;
};

class EndsInTime : public testing::TestWithParam<Endless>
{
};

TEST_P(EndsInTime, withinATenthOfASecond)
{
    Control c;
    c.control.SetTimeout(200);
    QElapsedTimer timer;
    c.control.AddCode(u"Function F(n) : F = F(n + 1) : End Function\nSub E\nEnd Sub\nSub Main\n"_s
        + QString::fromUtf16(GetParam().body) + u"\nEnd Sub"_s);
    timer.start();
    c.control.Run(u"Main"_s);
    EXPECT_LT(timer.elapsed(), 320);
    EXPECT_EQ(c.log, QStringList { u"timeout"_s });
    EXPECT_TRUE(c.control.AddCode(u"x = 1"_s));
}

INSTANTIATE_TEST_SUITE_P(Table, EndsInTime,
    testing::Values(Endless { "loop", u"Do : Loop" }, Endless { "while", u"While True : x = x + 1 : Wend" },
        Endless { "caught", u"On Error Resume Next\nDo : Err.Raise 5 : Loop" },
        Endless { "recursion", u"On Error Resume Next\nDo : F 1 : Loop" },
        Endless { "strings", u"On Error Resume Next\nDo : s = Space(1000000) : t = Replace(s, \" \", \"ab\") : Loop" },
        Endless { "append", u"On Error Resume Next\nDo : s = s & Space(100000) : Loop" },
        Endless { "execute", u"Do : Execute \"x = x + 1\" : Loop" },
        Endless { "regexp", u"Set r = New RegExp : r.Pattern = \"(a+)+b\" : r.Test String(60, \"a\")" },
        Endless { "arrays", u"Do : ReDim a(100000) : b = a : b(1) = 2 : Loop" },
        Endless { "calls", u"Do : E : Loop" }),
    [](const auto &row) { return std::string(row.param.name); });

}
