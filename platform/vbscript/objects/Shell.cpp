#include "platform/vbscript/objects/Environment.h"
#include "platform/vbscript/objects/Makers.h"
#include "platform/vbscript/objects/Process.h"
#include "platform/vbscript/objects/Registry.h"
#include "platform/vbscript/objects/Shortcut.h"
#include "platform/vbscript/objects/TextStream.h"

#include <QFileInfo>
#include <span>
#include <syslog.h>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

class OutputChannel : public Channel
{
public:
    OutputChannel(std::shared_ptr<Process> process, Process::Stream stream)
        : m_process(std::move(process)), m_stream(stream) {}
    qint64 read(ScriptHost &host, char *into, qint64 most) override
    {
        return m_process->read(host, m_stream, into, most);
    }
    void write(ScriptHost &, QByteArrayView) override { throw ScriptError(err::kBadFileMode); }

private:
    std::shared_ptr<Process> m_process;
    Process::Stream m_stream;
};

/** Closing it is what tells the command that its input is complete. */
class InputChannel : public Channel
{
public:
    explicit InputChannel(std::shared_ptr<Process> process) : m_process(std::move(process)) {}
    ~InputChannel() override { m_process->closeInput(); }
    qint64 read(ScriptHost &, char *, qint64) override { throw ScriptError(err::kBadFileMode); }
    void write(ScriptHost &host, QByteArrayView bytes) override { m_process->write(host, bytes); }

private:
    std::shared_ptr<Process> m_process;
};

/** What WScript.Shell's Exec returns. */
class Execution : public NativeObject<Execution>
{
public:
    explicit Execution(const QStringList &command)
        : m_process(std::make_shared<Process>(command, Process::Streams::Piped))
        , m_input(stream(std::make_unique<InputChannel>(m_process), TextStream::Direction::Write))
        , m_output(
              stream(std::make_unique<OutputChannel>(m_process, Process::Out), TextStream::Direction::Read))
        , m_errors(
              stream(std::make_unique<OutputChannel>(m_process, Process::Error), TextStream::Direction::Read))
    {
    }
    QString typeName() const override { return u"WshExec"_s; }
    static std::span<const Member<Execution>> members()
    {
        using E = Execution;
        static constexpr Member<E> table[] = {
            { "Status", 0, 0, &E::status },
            { "ProcessID", 0, 0, &E::processId },
            { "ExitCode", 0, 0, &E::exitCode },
            { "StdIn", 0, 0, &E::input },
            { "StdOut", 0, 0, &E::output },
            { "StdErr", 0, 0, &E::errors },
            { "Terminate", 0, 0, &E::terminate },
        };
        return table;
    }

private:
    static Value stream(std::unique_ptr<Channel> channel, TextStream::Direction direction)
    {
        const TextStream::Style style { TextEncoding::Utf8, false, true };
        return Value::object(new TextStream(std::move(channel), direction, style));
    }
    Value status(Args &) { return Value::longInteger(m_process->hasEnded()); }
    Value processId(Args &) { return Value::longInteger(m_process->id()); }
    Value exitCode(Args &)
    {
        m_process->hasEnded();
        return Value::longInteger(m_process->exitCode());
    }
    Value input(Args &) { return m_input; }
    Value output(Args &) { return m_output; }
    Value errors(Args &) { return m_errors; }
    Value terminate(Args &args)
    {
        m_process->terminate(args.host());
        return {};
    }

    std::shared_ptr<Process> m_process;
    Value m_input;
    Value m_output;
    Value m_errors;
};

/** WScript.Shell. */
class Shell : public NativeObject<Shell>
{
public:
    QString typeName() const override { return u"IWshShell3"_s; }
    static std::span<const Member<Shell>> members();

private:
    Value run(Args &args);
    Value exec(Args &args) { return Value::object(new Execution(resolveCommand(args.text(0)))); }
    Value expand(Args &args) { return Value::string(expandEnvironment(args.text(0))); }
    Value environmentOf(Args &args) { return makeEnvironment(args.text(0, u"SYSTEM"_s)); }
    Value specialFolders(Args &args);
    Value currentDirectory(Args &) { return Value::string(workingFolder()); }
    void putCurrentDirectory(Args &args);
    Value regRead(Args &args) { return registry::read(args.text(0)); }
    Value regWrite(Args &args);
    Value regDelete(Args &args);
    Value createShortcut(Args &args) { return Value::object(makeShortcut(args.text(0))); }
    Value logEvent(Args &args);
    /** Dialogs and key strokes need a user interface, which scripts do not have. */
    Value refuse(Args &) { throw ScriptError(err::kPermissionDenied); }
};

Value Shell::run(Args &args)
{
    Process process(resolveCommand(args.text(0)), Process::Streams::Inherited);
    if (!args.boolean(2, false))
        return Value::longInteger(0);
    process.waitForEnd(args.host());
    return Value::longInteger(process.exitCode());
}

Value Shell::specialFolders(Args &args)
{
    const Value folders = Value::object(makeSpecialFolders());
    if (!args.has(0))
        return folders;
    Value name = args[0];
    Args inner(args.host(), &name, 1);
    return folders.object()->invoke(kDefaultMember, Access::Get, inner);
}

void Shell::putCurrentDirectory(Args &args)
{
    const QString folder = nativePath(toText(args.host(), args.newValue()));
    if (!QFileInfo(folder).isDir())
        throw ScriptError::fromComponent(
            kFileMissing, u"The system cannot find the file specified."_s, u"WshShell"_s);
    setWorkingFolder(folder);
}

Value Shell::regWrite(Args &args)
{
    registry::write(args.text(0), args[1], args.text(2, u"REG_SZ"_s), args.host());
    return {};
}

Value Shell::regDelete(Args &args)
{
    registry::remove(args.text(0));
    return {};
}

Value Shell::logEvent(Args &args)
{
    // Success, error, warning, information, audit success, audit failure
    constexpr struct { int type; int priority; } kPriorities[] = { { 0, LOG_NOTICE }, { 1, LOG_ERR },
        { 2, LOG_WARNING }, { 4, LOG_INFO }, { 8, LOG_NOTICE }, { 16, LOG_WARNING } };
    const qint32 type = args.integer(0);
    for (const auto &row : kPriorities) {
        if (row.type != type)
            continue;
        ::syslog(LOG_USER | row.priority, "%s", args.text(1).toUtf8().constData());
        return Value::boolean(true);
    }
    throw ScriptError(err::kInvalidCall);
}

std::span<const Member<Shell>> Shell::members()
{
    using S = Shell;
    static constexpr Member<S> table[] = {
        { "Run", 1, 3, &S::run },
        { "Exec", 1, 1, &S::exec },
        { "ExpandEnvironmentStrings", 1, 1, &S::expand },
        { "Environment", 0, 1, &S::environmentOf },
        { "SpecialFolders", 0, 1, &S::specialFolders },
        { "CurrentDirectory", 0, 0, &S::currentDirectory, &S::putCurrentDirectory },
        { "RegRead", 1, 1, &S::regRead },
        { "RegWrite", 2, 3, &S::regWrite },
        { "RegDelete", 1, 1, &S::regDelete },
        { "CreateShortcut", 1, 1, &S::createShortcut },
        { "LogEvent", 2, 3, &S::logEvent },
        { "Popup", 1, 4, &S::refuse },
        { "SendKeys", 1, 2, &S::refuse },
        { "AppActivate", 1, 2, &S::refuse },
    };
    return table;
}

}

Object *makeShell(ScriptHost &) { return new Shell; }

}
