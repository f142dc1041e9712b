// kavro-import OLD.mdb NEW.mdb: makes a database of this program from a genuine Jet file and prints a report.
//
// The reading is done by a child process, because a damaged file may crash the library that reads it, or keep it busy
// for ever. The parent sees to it that nothing half done stays behind.

#include "data/import/ImportDatabase.h"
#include "platform/dao/FileSteps.h"
#include "platform/dao/VbError.h"
#include "platform/jet/JetFile.h"

#include <QCoreApplication>
#include <QFile>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr rlim_t kSecondsWithoutRows = 10; // of computing
constexpr rlim_t kMaxMemory = rlim_t(4) << 30;

void print(FILE *stream, const QString &text) { std::fprintf(stream, "%s\n", text.toUtf8().constData()); }

/** Whoever reads in circles meets this limit; every row that comes out moves it on. */
void moveTimeLimit()
{
    rusage used {};
    getrusage(RUSAGE_SELF, &used);
    const rlimit seconds {rlim_t(used.ru_utime.tv_sec + used.ru_stime.tv_sec) + kSecondsWithoutRows, RLIM_INFINITY};
    setrlimit(RLIMIT_CPU, &seconds);
}

/** Progress for a program that reads along: "@" and the share of rows done, in percent. */
void tellProgress(qint64 done, qint64 total)
{
    std::printf("@%d\n", total > 0 ? int(done * 100 / total) : 0);
    std::fflush(stdout);
}

/** Own messages; the library's warnings about a damaged file may be endless. */
FILE *s_messages = stderr;

void keepLibraryQuiet()
{
    const int own = dup(STDERR_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (own < 0 || nowhere < 0)
        return;
    s_messages = fdopen(own, "w");
    dup2(nowhere, STDERR_FILENO);
}

void limitSelf()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    moveTimeLimit();
#ifndef __SANITIZE_ADDRESS__
    const rlimit memory {kMaxMemory, kMaxMemory};
    setrlimit(RLIMIT_AS, &memory);
#endif
    const rlimit noCore {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
}

int import(const QString &from, const QString &to, bool withProgress)
{
    try {
        const ImportReport report = ImportDatabase(from, to, [&](qint64 done, qint64 total) {
            moveTimeLimit();
            if (withProgress)
                tellProgress(done, total);
        });
        for (const QString &line : report.lines())
            print(stdout, line);
        print(stdout, report.isComplete() ? u"Complete."_s : u"Imported, but for what is noted above."_s);
        return EXIT_SUCCESS;
    } catch (const jet::Error &error) {
        print(s_messages, u"kavro-import: %1: %2"_s.arg(from, error.text()));
    } catch (const VbError &error) {
        print(s_messages, u"kavro-import: %1: %2"_s.arg(to, error.description()));
    } catch (const std::exception &error) {
        print(s_messages, u"kavro-import: %1: The file is damaged (%2)."_s.arg(from, QString::fromUtf8(error.what())));
    }
    return EXIT_FAILURE;
}

/** Waits for the child; on a request to end, ends it. */
int superviseChild(pid_t child, const sigset_t &signals_)
{
    for (;;) {
        int signal = 0;
        sigwait(&signals_, &signal);
        if (signal != SIGCHLD)
            kill(child, SIGKILL);
        int status = 0;
        if (waitpid(child, &status, signal == SIGCHLD ? WNOHANG : 0) == child)
            return status;
    }
}

int finish(const QString &from, const QString &to, pid_t child, int status)
{
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    dao::files::Draft::removeLeftBehind(to, child);
    const int signal = WTERMSIG(status);
    const QString reason = signal == SIGKILL ? u"The import was ended."_s
        : signal == SIGXCPU                  ? u"The file is damaged; reading it does not come to an end."_s
                                             : u"The file is damaged beyond what can be read."_s;
    print(s_messages, u"kavro-import: %1: %2"_s.arg(from, reason));
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char **argv)
{
    const bool withProgress = argc == 4 && qstrcmp(argv[1], "--progress") == 0;
    if (argc != 3 && !withProgress) {
        std::fputs("usage: kavro-import [--progress] OLD.mdb NEW.mdb\n"
                   "Makes a database from a genuine Jet file (.mdb) and tells what came over.\n",
                   stderr);
        return 2;
    }
    const QString from = QFile::decodeName(argv[argc - 2]);
    const QString to = QFile::decodeName(argv[argc - 1]);
    sigset_t signals_;
    sigemptyset(&signals_);
    for (const int each : {SIGCHLD, SIGTERM, SIGINT, SIGHUP})
        sigaddset(&signals_, each);
    sigprocmask(SIG_BLOCK, &signals_, nullptr);
    const pid_t child = fork();
    if (child < 0) {
        std::perror("kavro-import");
        return EXIT_FAILURE;
    }
    if (child == 0) {
        limitSelf();
        keepLibraryQuiet();
        const QCoreApplication app(argc, argv);
        return import(from, to, withProgress);
    }
    try {
        return finish(from, to, child, superviseChild(child, signals_));
    } catch (const VbError &error) {
        print(s_messages, u"kavro-import: "_s + error.description());
        return EXIT_FAILURE;
    }
}
