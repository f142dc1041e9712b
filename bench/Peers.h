#pragma once

#include "core/Task.h"

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <vector>

/** Small tools of the benchmarks: peers measured in the same run, medians, one line per figure. */
namespace bench {

inline constexpr int kRuns = 5;

/** The median of kRuns results of a measurement in ms. */
double median(std::vector<double> values);

/** Wall time in ms of a command; its output is thrown away. Ends the benchmark when it cannot be run. */
double commandMs(const QString &program, const QStringList &arguments);

/** Runs a task on the event loop to its end; wall time in ms. Throws what the task threw. */
double runToEnd(Task<void> task);

/** Measures ours and the peer in turn, kRuns times each, and prints medians and their ratio with the aim. */
void compare(const char *what, const std::function<double()> &ours, const std::function<double()> &peer,
             double mostRatio);

/** Measures kRuns times and prints the median against an upper limit. */
double measure(const char *what, const std::function<double()> &ours, double most, const char *unit = "ms");

/** Prints one figure against its limit. */
void report(const char *what, double value, double most, const char *unit);

/** The number of figures that missed their aim so far. */
int missed();

} // namespace bench
