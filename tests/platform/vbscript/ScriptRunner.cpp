#include "platform/vbscript/Engine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <span>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMilliseconds = 10000;

/** What scripts of the tests write to. */
class Recorder final : public vbs::NativeObject<Recorder>
{
public:
    explicit Recorder(QStringList &lines) : m_lines(lines) {}
    static std::span<const vbs::Member<Recorder>> members()
    {
        static constexpr vbs::Member<Recorder> kMembers[] = { { "Echo", 0, 50, &Recorder::echo } };
        return kMembers;
    }
    QString typeName() const override { return u"Object"_s; }

private:
    vbs::Value echo(vbs::Args &args)
    {
        QStringList texts;
        for (int k = 0; k < args.count(); ++k)
            texts.append(args[k].is(vbs::Type::Null) ? u"Null"_s : args.text(k));
        m_lines.append(texts.join(u' '));
        return {};
    }

    QStringList &m_lines;
};

QStringList expectedLines(const QString &text)
{
    static const QString kMark = u"' expect:"_s;
    QStringList lines;
    for (const QString &line : text.split(u'\n'))
        if (const qsizetype at = line.indexOf(kMark); at >= 0)
            lines.append(line.mid(at + kMark.size()).trimmed());
    return lines;
}

QString contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/** Runs a script behind what it builds on; an error that leaves it is one more line of what it wrote. */
QStringList written(const QString &basis, const QString &text)
{
    QStringList lines;
    vbs::Engine engine;
    engine.setLocale(QLocale::c());
    engine.setTimeLimit(kMilliseconds);
    engine.addObject(u"WScript"_s, vbs::Value::object(new Recorder(lines)));
    try {
        engine.addCode(basis);
        engine.addCode(text);
        engine.reset();
    } catch (const vbs::ScriptError &error) {
        lines.append(u"error %1 line %2 column %3 %4"_s.arg(error.number()).arg(error.line()).arg(error.column())
                         .arg(error.message()));
    } catch (const vbs::ScriptTimeout &) {
        lines.append(u"timed out"_s);
    }
    for (QString &line : lines)
        line = line.trimmed();
    return lines;
}

bool passes(const QString &path)
{
    const QString text = contents(path);
    const QString basis = text.startsWith(u"' table"_s) ? contents(QFileInfo(path).path() + u"/../table.vbs"_s) : QString();
    const QStringList expected = expectedLines(text);
    const QStringList actual = written(basis, text);
    if (expected == actual && !expected.isEmpty())
        return true;
    std::printf("FAILED %s\n", qPrintable(path));
    for (qsizetype k = 0; k < std::max(expected.size(), actual.size()); ++k)
        if (expected.value(k) != actual.value(k) || k >= expected.size() || k >= actual.size())
            std::printf("  %lld expected <%s> got <%s>\n", static_cast<long long>(k + 1), qPrintable(expected.value(k)),
                qPrintable(actual.value(k)));
    return false;
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QDir folder(application.arguments().value(1));
    const QStringList names = folder.entryList({ u"*.vbs"_s }, QDir::Files, QDir::Name);
    int failures = names.isEmpty() ? 1 : 0;
    for (const QString &name : names)
        failures += passes(folder.filePath(name)) ? 0 : 1;
    std::printf("%d scripts, %d failed\n", int(names.size()), failures);
    return failures ? 1 : 0;
}
