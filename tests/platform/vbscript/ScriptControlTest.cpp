#include "platform/vbscript/Ast.h"
#include "platform/vbscript/Engine.h"
#include "platform/vbscript/Memory.h"
#include "platform/vbscript/ScriptControl.h"

#include <QElapsedTimer>
#include <QFile>
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
    c.control.AddCode(
        u"Class Stays : Private Sub Class_Terminate : Do : Loop : End Sub : End Class\n"
        u"Class Asks : Public Default Property Get V : Do : Loop : End Property : End Class\n"
        u"Function F(n) : F = F(n + 1) : End Function\nSub E\nEnd Sub\nSub Main\n"_s
        + QString::fromUtf16(GetParam().body) + u"\nEnd Sub"_s);
    qint64 best = 1000;
    for (int attempt = 0; attempt < 5 && best >= 300; ++attempt) { // a busy machine may be late itself
        c.log.clear();
        timer.start();
        c.control.Run(u"Main"_s);
        best = std::min(best, timer.elapsed());
        EXPECT_EQ(c.log, QStringList { u"timeout"_s });
    }
    EXPECT_LT(best, 300);
    EXPECT_GE(best, 200);
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
        Endless { "calls", u"Do : E : Loop" },
        Endless { "sharedArray", u"ReDim a(2000000) : Do : b = a : b(0) = 1 : Loop" },
        Endless { "longTexts", u"s = Space(3000000) : Do : t = StrComp(s, s & \"\", 1) & UCase(s) : Loop" },
        Endless { "findsNothing", u"s = String(3000000, \"a\") : Do : t = InStr(1, s, \"B\", 1) + InStrRev(s, \"b\") : Loop" },
        Endless { "matches", u"Set r = New RegExp : r.Pattern = \"a\" : r.Global = True : s = String(300000, \"a\")\n"
                             u"Do : Set m = r.Execute(s) : Loop" },
        Endless { "longProgram", u"s = \"x = 1\" & vbLf : For i = 1 To 14 : s = s & s : Next : Do : Execute s : Loop" },
        Endless { "terminate", u"Set t = New Stays : Set t = Nothing" },
        Endless { "defaultProperty", u"Set t = New Asks : x = t + 1" }),
    [](const auto &row) { return std::string(row.param.name); });

}

namespace {

/** A line of the process's own status, in MB. */
double statusMegabytes(const QByteArray &field)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith(field))
            return line.simplified().split(' ').value(1).toDouble() / 1024;
    return -1;
}

}

// Looking at a script without an engine, as the editor of event scripts does.
TEST(Memory, CheckingTextsLeavesNothingCharged)
{
    const qint64 before = vbs::memory::used();
    for (const QString &text : { u"Sub Main : name1 = 1 : End Sub"_s, u"Sub Main : name2 ="_s }) {
        vbs::SymbolTable names;
        try {
            vbs::parseScript(text, names);
        } catch (const vbs::ScriptError &error) {
            EXPECT_EQ(error.number(), 1023);
        }
    }
    EXPECT_EQ(vbs::memory::used(), before);
}

// Whatever a script piles up: it gets error 7 before the process has grown by more than its share.
TEST(Memory, NothingMakesTheProcessGrowBeyondTheLimit)
{
    const char16_t *const hogs[] = {
        u"s = String(50000000, \",\") : t = Split(s, \",\")",
        u"a = Array() : Do : a = Array(a) : Loop",
        u"s = \"x = 1 + 2\" & vbLf : For i = 1 To 20 : s = s & s : Next : Execute s",
        u"s = String(30000000, \"A\") : Do : t = t & LCase(s) : Loop",
        u"Set r = New RegExp : r.Pattern = \"(a)\" : r.Global = True : Set m = r.Execute(String(5000000, \"a\"))",
        u"s = String(1000000, \"a\") : t = Replace(s, \"a\", String(1000, \"b\"))",
        u"ReDim a(20000000)",
    };
    [[maybe_unused]] const double before = statusMegabytes("VmRSS:"); // the sanitizer has memory of its own
    QStringList expected;
    Control c;
    c.control.SetTimeout(20000);
    for (const char16_t *hog : hogs) {
        c.control.AddCode(QString::fromUtf16(hog));
        c.control.Reset();
        expected.append(u"error 7 line 1"_s);
    }
    EXPECT_EQ(c.log, expected);
#ifndef __SANITIZE_ADDRESS__
    EXPECT_LT(statusMegabytes("VmHWM:") - before, 256);
#endif
}
