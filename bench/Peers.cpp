#include "bench/Peers.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdio>

namespace bench {

namespace {
int s_missed = 0;

const char *verdict(bool reached)
{
    s_missed += !reached;
    return reached ? "reached" : "MISSED";
}
} // namespace

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double commandMs(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    if (!process.waitForStarted() || !process.waitForFinished(-1))
        qFatal("cannot run %s", qPrintable(program));
    return double(timer.nsecsElapsed()) / 1e6;
}

double runToEnd(Task<void> task)
{
    QElapsedTimer timer;
    timer.start();
    task.start();
    while (task.isRunning())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    task.result();
    return ms;
}

void compare(const char *what, const std::function<double()> &ours, const std::function<double()> &peer,
             double mostRatio)
{
    std::vector<double> own, other;
    for (int run = 0; run < kRuns; ++run) {
        own.push_back(ours());
        other.push_back(peer());
    }
    const double ratio = median(own) / median(other);
    std::printf("%-58s %9.1f ms  peer %9.1f ms  ratio %.3f  (aim <= %.2f)  %s\n", what, median(own), median(other),
                ratio, mostRatio, verdict(ratio <= mostRatio));
    std::fflush(stdout);
}

double measure(const char *what, const std::function<double()> &ours, double most, const char *unit)
{
    std::vector<double> own;
    for (int run = 0; run < kRuns; ++run)
        own.push_back(ours());
    report(what, median(own), most, unit);
    return median(own);
}

void report(const char *what, double value, double most, const char *unit)
{
    std::printf("%-58s %9.1f %s  (aim <= %g)  %s\n", what, value, unit, most, verdict(value <= most));
    std::fflush(stdout);
}

int missed() { return s_missed; }

} // namespace bench
