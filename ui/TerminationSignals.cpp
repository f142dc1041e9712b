#include "ui/TerminationSignals.h"

#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kSignals[] = { SIGTERM, SIGINT, SIGHUP };
volatile sig_atomic_t g_writeEnd = -1;

// Only what a signal handler may do: one byte into a pipe.
void onSignal(int)
{
    const int saved = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(g_writeEnd, &byte, 1);
    errno = saved;
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent)
    : QObject(parent)
{
    if (::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    g_writeEnd = m_pipe[1];
    connect(new QSocketNotifier(m_pipe[0], QSocketNotifier::Read, this), &QSocketNotifier::activated, this,
        &TerminationSignals::drain);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : kSignals)
        ::sigaction(number, &action, nullptr);
}

TerminationSignals::~TerminationSignals()
{
    if (m_pipe[0] < 0)
        return;
    for (const int number : kSignals)
        std::signal(number, SIG_DFL);
    g_writeEnd = -1;
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
}

void TerminationSignals::drain()
{
    char bytes[16];
    while (::read(m_pipe[0], bytes, sizeof bytes) > 0) { }
    emit received();
}
