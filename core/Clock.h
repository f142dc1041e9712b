#pragma once

#include <QDateTime>
#include <functional>

/** The one source of the current date and time, so that tests can set it. */
namespace Clock {

/** Local date and time, whole milliseconds. */
QDateTime now();
/** Replaces the source (empty: back to the system's). For tests. */
void setSource(std::function<QDateTime()> source);

} // namespace Clock
