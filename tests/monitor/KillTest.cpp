// A process that runs check cycles is killed at any moment: at most the last half second is lost, and the file
// opens clean. The victim is this program itself, started with the name of a folder.
#include "monitor/CheckCycle.h"

#include "core/Settings.h"
#include "tests/world/World.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int kDevices = 40;
constexpr int kRepetitions = 50;
constexpr int kMostLostMs = 500;
constexpr int kSlackMs = 150; // what a busy machine adds to a timer and to a pipe

/** Runs one cycle after the other and adds a row every 10 ms, telling its number when it is written. */
void runVictim(const QString &file)
{
    World world;
    vbMain().db.reset();
    UseDatabase(dao::OpenDatabase(file, true), file);
    CheckCycle cycle;
    cycle.loadControls();
    cycle.Monitor_Initialize();
    int row = 0;
    QTimer heartbeat, restart;
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        world.sql(u"INSERT INTO tblMailQue(Device_Name, Device_Port) VALUES ('beat', '%1');"_s.arg(++row));
        std::printf("%d\n", row);
        std::fflush(stdout);
    });
    QObject::connect(&restart, &QTimer::timeout, [&] {
        if (cycle.checkInProgress())
            return;
        vbMain().minutesLeft = 0;
        cycle.minuteTick();
    });
    heartbeat.start(10);
    restart.start(1);
    QCoreApplication::exec();
}

struct Victim {
    QProcess process;
    QElapsedTimer clock;
    QList<qint64> told; // when row i + 1 was told, in ms

    explicit Victim(const QString &file)
    {
        clock.start();
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationFilePath(), { u"--victim"_s, file });
    }
    void read()
    {
        while (process.canReadLine()) {
            process.readLine();
            told.append(clock.elapsed());
        }
    }
    /** Lets it work for so long after its first sign of life, then kills it; returns the moment. */
    qint64 killAfter(int ms)
    {
        while (told.isEmpty() && clock.elapsed() < 10000) {
            process.waitForReadyRead(20);
            read();
        }
        const qint64 end = clock.elapsed() + ms;
        while (clock.elapsed() < end) {
            process.waitForReadyRead(1);
            read();
        }
        const qint64 moment = clock.elapsed();
        ::kill(pid_t(process.processId()), SIGKILL);
        process.waitForFinished();
        read();
        return moment;
    }
};

} // namespace

TEST(KilledProgram, LosesAtMostHalfASecondAndTheFileOpensClean)
{
    World world;
    const QString file = world.path(u"victim.mdb"_s);
    World::makeDatabase(file);
    UseDatabase(dao::OpenDatabase(file, true), file);
    const int group = world.addGroup(u"g"_s);
    for (int i = 1; i <= kDevices; ++i)
        world.addCheck(world.addDevice(group, u"127.0.1.%1"_s.arg(i)), u"9"_s);
    vbMain().db.reset();

    std::mt19937 random(7);
    qint64 cyclesBefore = 0;
    for (int repetition = 0; repetition < kRepetitions; ++repetition) {
        SCOPED_TRACE(repetition);
        Victim victim(file);
        const qint64 killed = victim.killAfter(std::uniform_int_distribution(0, 250)(random));
        ASSERT_FALSE(victim.told.isEmpty()) << "the victim never worked";

        ASSERT_NO_THROW(UseDatabase(dao::OpenDatabase(file, true), file));
        const qint64 kept = world.rows(u"Select ID FROM tblMailQue"_s).size();
        if (kept < victim.told.size()) {
            EXPECT_GE(victim.told.at(kept), killed - kMostLostMs - kSlackMs)
                << victim.told.size() - kept << " rows were lost";
        }
        EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortStatus"_s).size(), kDevices);
        const qint64 cycles = world.number(u"Select Port_Failure FROM tblPortStatus"_s);
        EXPECT_GE(cycles, cyclesBefore);
        cyclesBefore = cycles;
        world.sql(u"DELETE * FROM tblMailQue"_s);
        vbMain().db.reset();
    }
    EXPECT_GT(cyclesBefore, 0) << "no cycle was ever kept";
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && QString::fromLocal8Bit(argv[1]) == "--victim"_L1) {
        runVictim(QString::fromLocal8Bit(argv[2]));
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
