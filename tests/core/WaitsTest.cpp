#include "core/Waits.h"

#include "core/Task.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <gtest/gtest.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

struct Guard {
    QStringList &log;
    QString name;
    ~Guard() { log << "end "_L1 + name; }
};

Task<int> inner(QStringList &log, int ms)
{
    const Guard guard{ log, u"inner"_s };
    co_await waits::Pause(ms);
    log << u"inner done"_s;
    co_return 7;
}

Task<void> outer(QStringList &log, int ms)
{
    const Guard guard{ log, u"outer"_s };
    log << QString::number(co_await inner(log, ms));
}

Task<int> thrower()
{
    co_await waits::Yield();
    throw std::runtime_error("broken");
}

Task<void> catcher(QStringList &log)
{
    try {
        co_await thrower();
    } catch (const std::exception &error) {
        log << QString::fromLatin1(error.what());
    }
}

Task<void> waiter(QStringList &log, waits::Event &event, int ms)
{
    QElapsedTimer time;
    time.start();
    co_await waits::WaitFor(event, ms);
    log << (time.elapsed() < ms / 2 ? u"event"_s : u"time"_s);
}

void turnUntilDone(const Task<void> &task)
{
    QElapsedTimer time;
    time.start();
    while (task.isRunning() && time.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    ASSERT_FALSE(task.isRunning());
}

} // namespace

TEST(Task, RunsLazilyReturnsValuesAndPassesExceptions)
{
    QStringList log;
    Task<void> task = outer(log, 1);
    EXPECT_EQ(log, QStringList());
    task.start();
    turnUntilDone(task);
    EXPECT_EQ(log, (QStringList{ u"inner done"_s, u"end inner"_s, u"7"_s, u"end outer"_s }));

    log.clear();
    Task<void> failing = catcher(log);
    failing.start();
    turnUntilDone(failing);
    EXPECT_EQ(log, QStringList{ u"broken"_s });
}

TEST(Task, DestroyingItCancelsEveryFrame)
{
    QStringList log;
    {
        Task<void> task = outer(log, 60000);
        task.start();
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(log, (QStringList{ u"end inner"_s, u"end outer"_s }));
}

TEST(Waits, AnEventEndsTheWaitAtOnceAndMayFireTwiceOrNever)
{
    QStringList log;
    waits::Event event;
    Task<void> woken = waiter(log, event, 2000);
    woken.start();
    event.fire();
    event.fire();
    EXPECT_EQ(log, QStringList()) << "resumed inside fire()";
    turnUntilDone(woken);
    event.fire(); // nobody waits any more

    Task<void> alone = waiter(log, event, 20);
    alone.start();
    turnUntilDone(alone);
    {
        Task<void> dropped = waiter(log, event, 2000);
        dropped.start();
        event.fire();
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(log, (QStringList{ u"event"_s, u"time"_s }));
}

TEST(Waits, YieldingProceduresTakeTurnsAndLetTimersRun)
{
    QStringList log;
    const auto turns = [](QStringList &out, QString name) -> Task<void> {
        for (int i = 0; i < 3; ++i) {
            out << name;
            co_await waits::Yield();
        }
    };
    Task<void> a = turns(log, u"a"_s), b = turns(log, u"b"_s);
    a.start();
    b.start();
    turnUntilDone(a);
    turnUntilDone(b);
    EXPECT_EQ(log, (QStringList{ u"a"_s, u"b"_s, u"a"_s, u"b"_s, u"a"_s, u"b"_s }));

    int ticks = 0;
    waits::Timer timer([&] {
        if (++ticks == 3)
            timer.setEnabled(false);
    });
    timer.setInterval(0);
    timer.setEnabled(true); // an interval of 0 never ticks
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    EXPECT_EQ(ticks, 0);
    timer.setInterval(2);
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 60)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    EXPECT_EQ(ticks, 3);
}
