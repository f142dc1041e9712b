// window_bench: the real window (offscreen) with 1,000 devices and 11,000 checks, half of the ports refused.
#include "bench/Peers.h"

#include "core/Settings.h"
#include "monitor/CheckCycle.h"
#include "monitor/PortStatus.h"
#include "monitor/RollUp.h"
#include "tests/world/World.h"
#include "ui/DeviceTree.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

constexpr int kDevices = 1000;
constexpr int kPorts = 10;

struct Network {
    QStringList pings, ports; // Port_IDs
};

Network fill(World &world, const QList<int> &portNumbers)
{
    Network network;
    QList<int> groups;
    for (int i = 1; i <= 20; ++i)
        groups << world.addGroup(u"Group %1"_s.arg(i));
    for (int i = 0; i < kDevices; ++i) {
        const int device = world.addDevice(groups.at(i % groups.size()),
                                           u"127.1.%1.%2"_s.arg(1 + i / 250).arg(1 + i % 250));
        network.pings << QString::number(world.addCheck(device, u"Ping"_s));
        for (const int port : portNumbers)
            network.ports << QString::number(world.addCheck(device, QString::number(port)));
    }
    return network;
}

/** The longest time in ms for which the event loop did not turn. */
class GapMeter
{
public:
    GapMeter()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            m_longest = std::max(m_longest, double(m_since.nsecsElapsed()) / 1e6);
            const double cpu = cpuMs();
            m_longestCpu = std::max(m_longestCpu, cpu - m_cpu);
            m_cpu = cpu;
            m_since.restart();
        });
        m_since.start();
        m_timer.start(1);
    }
    double longest() const { return m_longest; }
    /** The same counting only the time in which the thread had a processor: free of what else the machine does. */
    double longestCpu() const { return m_longestCpu; }

private:
    static double cpuMs()
    {
        timespec now;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
    }
    double m_cpu = cpuMs();
    double m_longestCpu = 0;
    QTimer m_timer;
    QElapsedTimer m_since;
    double m_longest = 0;
};

/** What follows the network phases: every result is written, rolled up and shown. */
Task<void> writeRollUpAndShow(frmMain &window, const Network &network, bool flip)
{
    for (const QString &port : network.pings) {
        co_await waits::Yield();
        Device_Ping_Update(port.toInt(), u"Connected"_s, QString(), 1.25);
    }
    for (qsizetype i = 0; i < network.ports.size(); ++i) {
        co_await waits::Yield();
        const bool up = (i % 2 == 0) != flip;
        Port_Update(network.ports.at(i).toInt(), up ? u"Connected"_s : u"Failed"_s,
                    up ? QString() : u"connection refused"_s);
    }
    co_await Check_TVIcons();
    co_await window.Refresh_TreeView_Icons();
}

double residentMegabytes()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024;
    }
    return -1;
}

void wholeCycles(frmMain &window)
{
    GapMeter gap;
    QElapsedTimer timer;
    std::vector<double> cycles;
    window.cycle().Monitor_Initialize();
    for (int run = 0; run < bench::kRuns; ++run) {
        vbMain().minutesLeft = 0;
        window.cycle().minuteTick();
        timer.start();
        while (window.cycle().checkInProgress())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        cycles.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::printf("%-58s %9.1f ms\n", "a whole cycle on the loopback, first one full of failures", bench::median(cycles));
    std::printf("%-58s %9.1f ms (wall; other programs included)\n", "longest gap in the event loop during these cycles",
                gap.longest());
    bench::report("the same in processor time of the program", gap.longestCpu(), 50, "ms");
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    World world;
    QList<int> ports;
    std::vector<std::unique_ptr<QTcpServer>> servers;
    for (int i = 0; i < kPorts / 2; ++i) {
        servers.push_back(std::make_unique<QTcpServer>());
        servers.back()->setListenBacklogSize(4096);
        servers.back()->setMaxPendingConnections(1 << 30);
        servers.back()->listen(QHostAddress::AnyIPv4);
        QObject::connect(servers.back().get(), &QTcpServer::newConnection, [s = servers.back().get()] {
            while (QTcpSocket *peer = s->nextPendingConnection())
                delete peer;
        });
        ports << servers.back()->serverPort();
    }
    for (int port = 2; ports.size() < kPorts; ++port)
        ports << port;
    const Network network = fill(world, ports);

    frmMain window;
    vbMain().window = &window;
    bench::runToEnd(window.load([](const QString &) {}));
    window.resize(1100, 700);
    window.show();

    bench::measure("full tree load", [&] {
        QElapsedTimer timer;
        timer.start();
        window.tree().Load_TreeView();
        return double(timer.nsecsElapsed()) / 1e6;
    }, 500);
    bool flip = false;
    bench::measure("write-back, roll-up and tree refresh", [&] {
        flip = !flip;
        return bench::runToEnd(writeRollUpAndShow(window, network, flip));
    }, 1000);
    wholeCycles(window);
    bench::report("memory at its peak", residentMegabytes(), 150, "MB");
    window.cycle().Monitor_Stop();
    vbMain().window = &world.window;
    return bench::missed() == 0 ? 0 : 1;
}
