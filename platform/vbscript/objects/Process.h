#pragma once

#include "platform/vbscript/objects/Channel.h"

#include <QStringList>
#include <memory>
#include <sys/types.h>

namespace vbs::objects {

/** A command line taken apart: blanks separate, double quotes hold together, \" is a quote. */
QStringList splitCommand(const QString &command);
/**
 * Program and arguments of a command as scripts give it: variables expanded, the program looked for in PATH,
 * `cmd /c …` handed to the shell. Throws the system's "file not found" of components when there is no such
 * program.
 */
QStringList resolveCommand(const QString &command);

/** A command that runs beside the script. Letting go of it does not end it. */
class Process
{
public:
    enum class Streams { Inherited, Piped };
    enum Stream { Out = 0, Error = 1 };

    /** Starts; throws a component's error when the program cannot be run. */
    Process(const QStringList &command, Streams streams);
    ~Process();
    Q_DISABLE_COPY_MOVE(Process)

    pid_t id() const { return m_pid; }
    /** True once it has ended; looks without waiting. */
    bool hasEnded();
    /** Exit code, 128 + signal number if killed; 0 while running. */
    int exitCode() const { return m_exitCode; }
    void waitForEnd(ScriptHost &host);
    /** Asks it and what it started to end, and makes them after a second. */
    void terminate(ScriptHost &host);

    /** Takes bytes of an output stream, waiting for at least one; 0 at its end. */
    qint64 read(ScriptHost &host, Stream stream, char *into, qint64 most);
    void write(ScriptHost &host, QByteArrayView bytes);
    void closeInput() { m_input.reset(); }

private:
    struct Output
    {
        Descriptor fd;
        ByteBuffer waiting; // read while somebody waited for something else
    };

    void start(const QStringList &command, const int (&fds)[3], bool ownGroup);
    /** Waits a slice for output, or for room in the input, and takes what there is so that no side blocks. */
    void pump(ScriptHost &host, bool forInput);
    void take(Output &output);

    pid_t m_pid = 0;
    bool m_ended = false;
    int m_exitCode = 0;
    Descriptor m_input;
    Output m_outputs[2];
};

}
