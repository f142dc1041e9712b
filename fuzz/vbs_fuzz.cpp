#include "platform/vbscript/Engine.h"

#include <QCoreApplication>
#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMilliseconds = 200;

// What a script reaches outside of the engine stays out of reach: nothing may be created.
constexpr char16_t kNoObjects[] = u"Function CreateObject(x) : Err.Raise 429 : End Function";

#ifdef KAVRO_FUZZ_EXECUTE
/** Turns bytes into a program of statements that make sense, so that more than the parser is reached. */
class Generator
{
public:
    Generator(const uint8_t *data, size_t size) : m_data(data), m_size(size) {}
    QString program()
    {
        QString text;
        while (m_at < m_size && text.size() < 4000)
            text += statement(0) + u'\n';
        return text;
    }

private:
    unsigned next(unsigned limit) { return m_at < m_size ? m_data[m_at++] % limit : 0; }
    QString name() { return u"abcdef"_s.at(int(next(6))); }
    QString expression(int depth)
    {
        static const char *const kLeaves[] = { "1", "\"x\"", "Null", "Empty", "Nothing", "2.5", "&HFF", "#1/2/2003#",
            "True", "-7", "\"12\"", "32767", "2147483647", "1e308" };
        static const char *const kOperators[] = { "+", "-", "*", "/", "\\", "Mod", "^", "&", "=", "<", ">=", "Is",
            "And", "Or", "Xor", "Eqv", "Imp", "<>" };
        static const char *const kFunctions[] = { "Len", "CStr", "CLng", "UBound", "Array", "Split", "Eval", "TypeName",
            "Int", "Abs", "Hex", "CDate", "Join", "IsNumeric", "Replace", "Mid", "DateAdd", "Round", "f", "g" };
        switch (depth > 4 ? next(2) : next(7)) {
        case 0: return QString::fromLatin1(kLeaves[next(std::size(kLeaves))]);
        case 1: return name();
        case 2: case 3:
            return u'(' + expression(depth + 1) + u' ' + QString::fromLatin1(kOperators[next(std::size(kOperators))])
                + u' ' + expression(depth + 1) + u')';
        case 4:
            return QString::fromLatin1(kFunctions[next(std::size(kFunctions))]) + u'(' + expression(depth + 1)
                + (next(2) ? u',' + expression(depth + 1) : QString()) + u')';
        case 5: return name() + u'(' + expression(depth + 1) + u')';
        default: return u"(New K)."_s + name();
        }
    }
    QString block(int depth) { return u'\n' + statement(depth + 1) + u'\n' + statement(depth + 1) + u'\n'; }
    QString statement(int depth)
    {
        switch (depth > 3 ? next(4) : next(16)) {
        case 0: return name() + u" = "_s + expression(0);
        case 1: return u"Set "_s + name() + u" = New K"_s;
        case 2: return name() + u'(' + expression(1) + u") = "_s + expression(0);
        case 3: return u"s = s & "_s + expression(0);
        case 4: return u"If "_s + expression(0) + u" Then"_s + block(depth) + u"Else"_s + block(depth) + u"End If"_s;
        case 5: return u"For "_s + name() + u" = 0 To "_s + expression(2) + block(depth) + u"Next"_s;
        case 6: return u"For Each "_s + name() + u" In "_s + expression(1) + block(depth) + u"Next"_s;
        case 7: return u"Do While "_s + expression(1) + block(depth) + u"Exit Do\nLoop"_s;
        case 8: return u"ReDim Preserve "_s + name() + u'(' + expression(3) + u')';
        case 9: return u"With "_s + name() + block(depth) + u".a = 1\nEnd With"_s;
        case 10: return u"Execute \""_s + name() + u" = 1 : "_s + name() + u"(0) = "_s + name() + u"\""_s;
        case 11: return u"ExecuteGlobal \"Function f(x) : f = x & "_s + name() + u" : End Function\""_s;
        case 12: return u"Select Case "_s + expression(1) + u"\nCase "_s + expression(2) + block(depth) + u"End Select"_s;
        case 13: return u"Call f("_s + expression(1) + u')';
        case 14: return u"Erase "_s + name();
        default: return next(2) ? u"On Error Resume Next"_s : u"ReDim "_s + name() + u"(3)"_s;
        }
    }

    const uint8_t *m_data;
    size_t m_size;
    size_t m_at = 0;
};

constexpr char16_t kFrame[] = u"Class K\nPublic a, b, c(3)\nPublic Default Property Get D(x) : D = x : End Property\n"
                              u"Private Sub Class_Terminate : t = t + 1 : End Sub\nEnd Class\n"
                              u"Function f(x) : f = x : x = 1 : End Function\nSub g(x, ByVal y) : x = y : End Sub\n";

#endif

void run(const QString &text)
{
    vbs::Engine engine;
    engine.setTimeLimit(kMilliseconds);
    try {
        engine.addCode(QStringView(kNoObjects));
        engine.addCode(text);
        engine.addCode(text);
    } catch (const vbs::ScriptError &) {
        // What is being tried is that nothing else comes.
    } catch (const vbs::ScriptTimeout &) {
    }
}

#ifdef KAVRO_FUZZ_EXECUTE
/** The program as text that a script puts together line by line. */
QString quoted(const QString &text)
{
    QString lines;
    for (const QString &line : text.split(u'\n')) {
        QString doubled = line;
        lines += u"p = p & \""_s + doubled.replace(u'"', QStringLiteral("\"\"")) + u"\" & vbLf\n"_s;
    }
    return lines;
}
#endif

}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int count = 0;
    static char name[] = "fuzz";
    static char *arguments[] = { name, nullptr };
    static QCoreApplication application(count = 1, arguments);
#ifdef KAVRO_FUZZ_EXECUTE
    const QString program = Generator(data, size).program();
    run(QString::fromUtf16(kFrame) + quoted(program) + u"Execute p\nSub Main : Execute p : End Sub\nOn Error Resume Next\nMain\n"_s);
#else
    run(QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size)));
#endif
    return 0;
}
