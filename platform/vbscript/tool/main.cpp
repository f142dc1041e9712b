#include "WScript.h"

#include "platform/vbscript/Engine.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int kUsage = 2;

void complain(const QString &text)
{
    const QByteArray bytes = (text + u'\n').toUtf8();
    std::fflush(stdout);
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
}

/** Script files are UTF-8, UTF-16 with a byte-order mark, or else Latin-1. */
QString decoded(const QByteArray &bytes)
{
    const auto marked = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(marked.value_or(QStringConverter::Utf8));
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

struct Call
{
    QString file;
    QStringList arguments;
    int timeLimit = -1;
};

bool readCall(const QStringList &words, Call &call)
{
    qsizetype at = 1;
    if (words.value(at) == u"--timeout") {
        bool ok = false;
        call.timeLimit = words.value(at + 1).toInt(&ok);
        if (!ok || call.timeLimit < 0)
            return false;
        at += 2;
    }
    call.file = words.value(at);
    call.arguments = words.mid(at + 1);
    return !call.file.isEmpty() && !call.file.startsWith(u"--");
}

/** A line without its comment, and without its texts unless they may be run. */
QString codeOf(const QString &line)
{
    static const QRegularExpression runs(
        u"\\b(execute|executeglobal|eval|getref)\\b"_s, QRegularExpression::CaseInsensitiveOption);
    const bool keepTexts = line.contains(runs);
    QString code;
    bool inText = false;
    for (const QChar c : line) {
        if (c == u'"')
            inText = !inText;
        else if (c == u'\'' && !inText)
            break;
        if (!inText || keepTexts)
            code += c;
    }
    return code;
}

/** Whether anything but its definition mentions Main: such a script starts itself. */
bool mentionsMain(const QString &text)
{
    static const QRegularExpression definition(
        u"\\b(sub|function)\\s+main\\b"_s, QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression name(u"\\bmain\\b"_s, QRegularExpression::CaseInsensitiveOption);
    for (const QString &line : text.split(u'\n')) {
        if (codeOf(line).remove(definition).contains(name))
            return true;
    }
    return false;
}

int runScript(const Call &call, const QString &text)
{
    vbs::Engine engine;
    engine.setTimeLimit(call.timeLimit);
    engine.addObject(u"WScript"_s, vbs::Value::object(new vbs::WScript(call.file, call.arguments)));
    try {
        engine.addCode(text);
        if (engine.hasProcedure(u"Main"_s) && !mentionsMain(text))
            engine.runProcedure(u"Main"_s); // as the program does with the scripts of its events
        engine.reset(); // so that what Class_Terminate of global objects writes comes in time
    } catch (const vbs::ScriptError &error) {
        complain(u"%1(%2, %3) %4: %5 %6"_s.arg(call.file).arg(error.line()).arg(error.column() + 1)
                     .arg(error.source()).arg(error.number()).arg(error.message()));
        return 1;
    } catch (const vbs::ScriptTimeout &) {
        complain(u"%1: timed out"_s.arg(call.file));
        return 1;
    } catch (const vbs::ScriptQuit &quit) {
        return quit.code();
    }
    return 0;
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    Call call;
    if (!readCall(application.arguments(), call)) {
        complain(u"usage: kavro-vbs [--timeout ms] FILE [arguments]"_s);
        return kUsage;
    }
    QFile file(call.file);
    if (!file.open(QIODevice::ReadOnly)) {
        complain(u"%1: %2"_s.arg(call.file, file.errorString()));
        return kUsage;
    }
    const int code = runScript(call, decoded(file.readAll()));
    std::fflush(stdout);
    return code;
}
