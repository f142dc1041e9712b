#include "platform/vbscript/objects/Process.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

constexpr qint64 kPipeChunk = 64 * 1024;
constexpr int kGraceMilliseconds = 1000;

ScriptError componentError(qint32 number, const QString &text)
{
    return ScriptError::fromComponent(number, text, u"WshShell"_s);
}

ScriptError startError(int code)
{
    switch (code) {
    case ENOENT:
    case ENOTDIR:
        return componentError(kFileMissing, u"The system cannot find the file specified."_s);
    case EACCES: case EPERM: return componentError(kAccessDenied, u"Access is denied."_s);
    case ENOEXEC: return componentError(kBadProgram, u"The program is not a valid application."_s);
    default: return systemError(code);
    }
}

/** Children whose end nobody waits for; looked after whenever another one is started. */
std::vector<pid_t> &orphans()
{
    static std::vector<pid_t> list;
    return list;
}

void reapOrphans()
{
    std::erase_if(orphans(), [](pid_t pid) { return ::waitpid(pid, nullptr, WNOHANG) != 0; });
}

QString findProgram(const QString &name)
{
    if (name.contains(u'/') || name.contains(u'\\'))
        return nativePath(name);
    const QStringList folders = environment().value(u"PATH"_s, u"/usr/bin:/bin"_s).split(u':');
    for (const QString &folder : folders) {
        const QFileInfo candidate(QDir(workingFolder()).absoluteFilePath(folder), name);
        if (candidate.isFile() && candidate.isExecutable())
            return candidate.filePath();
    }
    throw startError(ENOENT);
}

/** What follows `cmd /c`, as one text for the shell; null when the command is no such thing. */
QString shellText(const QString &command, const QStringList &words)
{
    if (words.size() < 3)
        return {};
    const QString program = QFileInfo(QString(words[0]).replace(u'\\', u'/')).fileName().toLower();
    const QString flag = words[1].toLower();
    const bool isShell = program == "cmd"_L1 || program == "cmd.exe"_L1 || program == "sh"_L1;
    if (!isShell || (flag != "/c"_L1 && flag != "/k"_L1))
        return {};
    const qsizetype flagAt = command.indexOf(u' ' + words[1]);
    const QString text = command.mid(flagAt + 1 + words[1].size()).trimmed();
    const bool quoted = text.size() > 1 && text.startsWith(u'"') && text.indexOf(u'"', 1) == text.size() - 1;
    return quoted ? text.mid(1, text.size() - 2) : text;
}

/** Arguments or environment as exec wants them. */
class StringTable
{
public:
    explicit StringTable(const QStringList &strings)
    {
        for (const QString &text : strings)
            m_bytes.append(text.toLocal8Bit());
        for (QByteArray &bytes : m_bytes)
            m_pointers.push_back(bytes.data());
        m_pointers.push_back(nullptr);
    }
    char *const *data() const { return m_pointers.data(); }

private:
    QList<QByteArray> m_bytes;
    std::vector<char *> m_pointers;
};

/** The attributes and file actions of one posix_spawn. */
struct SpawnPlan
{
    SpawnPlan()
    {
        posix_spawnattr_init(&attributes);
        posix_spawn_file_actions_init(&actions);
    }
    ~SpawnPlan()
    {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    Q_DISABLE_COPY_MOVE(SpawnPlan)

    posix_spawnattr_t attributes;
    posix_spawn_file_actions_t actions;
};

void makePipe(Descriptor &readEnd, Descriptor &writeEnd)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw systemError(errno);
    readEnd.reset(ends[0]);
    writeEnd.reset(ends[1]);
}

void doNotBlock(const Descriptor &fd) { ::fcntl(fd.get(), F_SETFL, ::fcntl(fd.get(), F_GETFL) | O_NONBLOCK); }

}

QStringList splitCommand(const QString &command)
{
    QStringList words;
    QString word;
    bool inWord = false;
    bool quoted = false;
    for (qsizetype i = 0; i < command.size(); ++i) {
        const QChar c = command[i];
        if (c == u'\\' && i + 1 < command.size() && command[i + 1] == u'"') {
            word += command[++i];
            inWord = true;
        } else if (c == u'"') {
            quoted = !quoted;
            inWord = true;
        } else if (!quoted && (c == u' ' || c == u'\t')) {
            if (inWord)
                words.append(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inWord)
        words.append(word);
    return words;
}

QStringList resolveCommand(const QString &command)
{
    const QString expanded = expandEnvironment(command);
    QStringList words = splitCommand(expanded);
    if (words.isEmpty() || words[0].isEmpty())
        throw ScriptError(err::kInvalidCall);
    const QString text = shellText(expanded, words);
    if (!text.isNull())
        return { u"/bin/sh"_s, u"-c"_s, text };
    words[0] = findProgram(words[0]);
    if (QFileInfo(words[0]).isDir())
        throw startError(EACCES);
    return words;
}

Process::Process(const QStringList &command, Streams streams)
{
    reapOrphans();
    if (streams == Streams::Inherited) {
        std::fflush(nullptr); // what the script has printed comes before what the command prints
        const Descriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        start(command, { nothing.get(), STDOUT_FILENO, STDERR_FILENO }, false);
        return;
    }
    Descriptor childInput;
    Descriptor childOutputs[2];
    makePipe(childInput, m_input);
    makePipe(m_outputs[Out].fd, childOutputs[Out]);
    makePipe(m_outputs[Error].fd, childOutputs[Error]);
    doNotBlock(m_input);
    doNotBlock(m_outputs[Out].fd);
    doNotBlock(m_outputs[Error].fd);
    start(command, { childInput.get(), childOutputs[Out].get(), childOutputs[Error].get() }, true);
}

Process::~Process()
{
    if (m_pid && !hasEnded())
        orphans().push_back(m_pid);
}

void Process::start(const QStringList &command, const int (&fds)[3], bool ownGroup)
{
    SpawnPlan plan;
    for (int i = 0; i < 3; ++i)
        posix_spawn_file_actions_adddup2(&plan.actions, fds[i], i);
    posix_spawn_file_actions_addchdir_np(&plan.actions, QFile::encodeName(workingFolder()).constData());
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&plan.attributes, &none);
    posix_spawnattr_setsigdefault(&plan.attributes, &all);
    const int group = ownGroup ? POSIX_SPAWN_SETPGROUP : 0;
    posix_spawnattr_setflags(&plan.attributes, short(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | group));
    const StringTable arguments(command);
    const StringTable variables(environment().toStringList());
    const int failure = posix_spawn(&m_pid, QFile::encodeName(command[0]).constData(), &plan.actions,
        &plan.attributes, arguments.data(), variables.data());
    if (failure) {
        m_pid = 0;
        throw startError(failure);
    }
}

bool Process::hasEnded()
{
    if (m_ended)
        return true;
    int status = 0;
    const pid_t found = ::waitpid(m_pid, &status, WNOHANG);
    if (found == 0 || (found < 0 && errno == EINTR))
        return false;
    m_ended = true;
    if (found == m_pid)
        m_exitCode = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return true;
}

void Process::waitForEnd(ScriptHost &host)
{
    for (int pause = 1; !hasEnded(); pause = qMin(pause * 2, waitSlice(host)))
        ::poll(nullptr, 0, qMin(pause, waitSlice(host)));
}

void Process::terminate(ScriptHost &host)
{
    if (hasEnded())
        return;
    ::kill(-m_pid, SIGTERM);
    QElapsedTimer waited;
    waited.start();
    while (!hasEnded() && waited.elapsed() < kGraceMilliseconds)
        ::poll(nullptr, 0, qMin(5, waitSlice(host)));
    if (m_ended)
        return;
    ::kill(-m_pid, SIGKILL);
    waitForEnd(host);
}

void Process::take(Output &output)
{
    char bytes[kPipeChunk];
    const ssize_t count = ::read(output.fd.get(), bytes, sizeof bytes);
    if (count > 0)
        output.waiting.append(QByteArrayView(bytes, count));
    else if (count == 0 || (errno != EAGAIN && errno != EINTR))
        output.fd.reset();
}

void Process::pump(ScriptHost &host, bool forInput)
{
    pollfd entries[3] = { { m_outputs[Out].fd.get(), POLLIN, 0 }, { m_outputs[Error].fd.get(), POLLIN, 0 },
        { forInput ? m_input.get() : -1, POLLOUT, 0 } };
    ::poll(entries, 3, waitSlice(host));
    for (int i = 0; i < 2; ++i) {
        if (entries[i].revents)
            take(m_outputs[i]);
    }
}

qint64 Process::read(ScriptHost &host, Stream stream, char *into, qint64 most)
{
    Output &output = m_outputs[stream];
    while (output.waiting.size() == 0 && output.fd)
        pump(host, false);
    const qint64 count = qMin(most, output.waiting.size());
    memcpy(into, output.waiting.bytes().constData(), size_t(count));
    output.waiting.dropFront(count);
    return count;
}

void Process::write(ScriptHost &host, QByteArrayView bytes)
{
    const SigpipeBlock guard;
    writeAll(m_input.get(), bytes, [&] { pump(host, true); });
}

}
