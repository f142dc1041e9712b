#include "WScript.h"

#include <QFileInfo>
#include <QThread>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr int kSlice = 20; // ms between two looks at the deadline while sleeping

void writeText(std::FILE *file, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), file);
}

/** StdOut and StdErr. */
class OutputStream final : public NativeObject<OutputStream>
{
public:
    explicit OutputStream(std::FILE *file) : m_file(file) {}
    static std::span<const Member<OutputStream>> members()
    {
        static constexpr Member<OutputStream> kMembers[] = {
            { "Write", 1, 1, &OutputStream::write }, { "WriteLine", 0, 1, &OutputStream::writeLine },
            { "WriteBlankLines", 1, 1, &OutputStream::writeBlankLines }, { "Close", 0, 0, &OutputStream::close },
        };
        return kMembers;
    }
    QString typeName() const override { return u"TextStream"_s; }

private:
    Value write(Args &args)
    {
        writeText(m_file, args.text(0));
        return {};
    }
    Value writeLine(Args &args)
    {
        writeText(m_file, args.text(0, QString()) + u'\n');
        return {};
    }
    Value writeBlankLines(Args &args)
    {
        for (int left = args.integer(0); left > 0; --left) {
            args.host().spend(10);
            writeText(m_file, u"\n"_s);
        }
        return {};
    }
    Value close(Args &)
    {
        std::fflush(m_file);
        return {};
    }

    std::FILE *m_file;
};

/** StdIn. */
class InputStream final : public NativeObject<InputStream>
{
public:
    static std::span<const Member<InputStream>> members()
    {
        static constexpr Member<InputStream> kMembers[] = {
            { "ReadLine", 0, 0, &InputStream::readLine }, { "ReadAll", 0, 0, &InputStream::readAll },
            { "AtEndOfStream", 0, 0, &InputStream::atEnd },
        };
        return kMembers;
    }
    QString typeName() const override { return u"TextStream"_s; }

private:
    static bool isAtEnd()
    {
        const int c = std::getc(stdin);
        if (c != EOF)
            std::ungetc(c, stdin);
        return c == EOF;
    }
    Value readLine(Args &args)
    {
        if (isAtEnd())
            throw ScriptError(err::kPastEnd);
        QByteArray line;
        for (int c = std::getc(stdin); c != EOF && c != '\n'; c = std::getc(stdin)) {
            line += char(c);
            args.host().spend(1);
        }
        if (line.endsWith('\r'))
            line.chop(1);
        return Value::string(QString::fromUtf8(line));
    }
    Value readAll(Args &args)
    {
        QByteArray all;
        for (int c = std::getc(stdin); c != EOF; c = std::getc(stdin)) {
            all += char(c);
            args.host().spend(1);
        }
        return Value::string(QString::fromUtf8(all));
    }
    Value atEnd(Args &) { return Value::boolean(isAtEnd()); }
};

class ArgumentList final : public NativeObject<ArgumentList>
{
public:
    explicit ArgumentList(QStringList items) : m_items(std::move(items)) {}
    static std::span<const Member<ArgumentList>> members()
    {
        static constexpr Member<ArgumentList> kMembers[] = {
            { "Item", 1, 1, &ArgumentList::item, nullptr, true }, { "Count", 0, 0, &ArgumentList::count },
            { "Length", 0, 0, &ArgumentList::count },
        };
        return kMembers;
    }
    QString typeName() const override { return u"Object"_s; }
    std::unique_ptr<Enumerator> enumerate(ScriptHost &) override
    {
        class Walk final : public Enumerator
        {
        public:
            explicit Walk(QStringList items) : m_left(std::move(items)) {}
            bool next(Value &item) override
            {
                if (m_left.isEmpty())
                    return false;
                item = Value::string(m_left.takeFirst());
                return true;
            }

        private:
            QStringList m_left;
        };
        return std::make_unique<Walk>(m_items);
    }

private:
    Value item(Args &args)
    {
        const int index = args.integer(0);
        if (index < 0 || index >= m_items.size())
            throw ScriptError(err::kSubscript);
        return Value::string(m_items[index]);
    }
    Value count(Args &) { return Value::longInteger(qint32(m_items.size())); }

    QStringList m_items;
};

}

WScript::WScript(QString fileName, QStringList arguments)
    : m_fileName(std::move(fileName)), m_arguments(Value::object(new ArgumentList(std::move(arguments)))),
      m_output(Value::object(new OutputStream(stdout))), m_errors(Value::object(new OutputStream(stderr))),
      m_input(Value::object(new InputStream))
{
}

std::span<const Member<WScript>> WScript::members()
{
    using W = WScript;
    static constexpr Member<W> kMembers[] = {
        { "Echo", 0, 255, &W::echo }, { "Quit", 0, 1, &W::quit }, { "Sleep", 1, 1, &W::sleep },
        { "CreateObject", 1, 2, &W::createObject }, { "ScriptName", 0, 0, &W::scriptName },
        { "ScriptFullName", 0, 0, &W::scriptFullName }, { "Arguments", 0, 0, &W::arguments },
        { "StdOut", 0, 0, &W::output }, { "StdErr", 0, 0, &W::errors }, { "StdIn", 0, 0, &W::input },
        { "Name", 0, 0, &W::name }, { "Version", 0, 0, &W::version },
        { "Interactive", 0, 0, &W::interactive, &W::setInteractive },
    };
    return kMembers;
}

Value WScript::echo(Args &args)
{
    QStringList texts;
    for (int k = 0; k < args.count(); ++k)
        texts.append(args[k].is(Type::Null) ? QString() : args.text(k));
    writeText(stdout, texts.join(u' ') + u'\n');
    return {};
}

Value WScript::quit(Args &args) { throw ScriptQuit(args.integer(0, 0)); }

Value WScript::sleep(Args &args)
{
    qint64 left = args.integer(0);
    if (left < 0)
        throw ScriptError(err::kInvalidCall);
    for (; left > 0; left -= kSlice) {
        QThread::msleep(static_cast<unsigned long>(std::min<qint64>(left, kSlice)));
        args.host().checkDeadline();
    }
    return {};
}

Value WScript::scriptName(Args &) { return Value::string(QFileInfo(m_fileName).fileName()); }
Value WScript::scriptFullName(Args &) { return Value::string(QFileInfo(m_fileName).absoluteFilePath()); }

}
