#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QString>

#include <ctime>
#include <functional>
#include <ostream>

/** Lets googletest print texts instead of lists of characters. */
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << qPrintable(text) << '"';
}

/** Milliseconds that the processor has worked for this program: what a busy machine does meanwhile does not count. */
inline double workedMs()
{
    return double(std::clock()) * 1000 / CLOCKS_PER_SEC;
}

/** Turns the event loop until the condition holds; false after the limit. */
inline bool turnUntil(const std::function<bool()> &condition, int limitMs = 5000)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > limitMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        if (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    return true;
}
