// network_bench loopback | far: the network phases of a cycle, by the engine itself.
// "far" runs inside a network namespace whose hosts answer after 10 ms (see bench/run).
#include "bench/Peers.h"

#include "core/Settings.h"
#include "monitor/PingCheck.h"
#include "monitor/PortCheck.h"
#include "tests/world/World.h"

#include <QCoreApplication>
#include <QFile>

#include <arpa/inet.h>
#include <atomic>
#include <cstdio>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kHosts = 1000;
constexpr int kPortsPerHost = 10;

/** Listens on ports of all addresses in a thread of its own and closes whatever connects. */
class Listeners
{
public:
    explicit Listeners(int count)
    {
        for (int i = 0; i < count; ++i)
            open();
        m_thread = std::thread([this] { serve(); });
    }
    ~Listeners()
    {
        m_stop = true;
        m_thread.join();
        for (const pollfd &p : m_sockets)
            ::close(p.fd);
    }
    QList<int> ports;

private:
    void open()
    {
        const int fd = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        socklen_t size = sizeof address;
        if (bind(fd, reinterpret_cast<sockaddr *>(&address), size) != 0 || listen(fd, 4096) != 0
            || getsockname(fd, reinterpret_cast<sockaddr *>(&address), &size) != 0)
            qFatal("cannot listen");
        m_sockets.push_back({ fd, POLLIN, 0 });
        ports << ntohs(address.sin_port);
    }
    void serve()
    {
        while (!m_stop) {
            poll(m_sockets.data(), m_sockets.size(), 50);
            for (const pollfd &p : m_sockets) {
                for (int peer = accept(p.fd, nullptr, nullptr); peer >= 0; peer = accept(p.fd, nullptr, nullptr))
                    ::close(peer);
            }
        }
    }
    std::vector<pollfd> m_sockets;
    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

QStringList hosts(const QString &pattern, int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names << pattern.arg(1 + i / 250).arg(1 + i % 250);
    return names;
}

void expectOutcomes(const ResultTable &results, int statusColumn, int connected, int rows)
{
    int up = 0;
    for (int row = 0; row < results.rows(); ++row)
        up += results.at(statusColumn, row) == u"Connected"_s;
    if (results.rows() != rows || up != connected)
        qFatal("%d outcomes, %d of them up; expected %d and %d", results.rows(), up, rows, connected);
}

double pingMs(const QStringList &names, int dead = 0)
{
    PingCheck check;
    check.loadControls();
    ResultTable list(pingList::Count);
    for (int i = 0; i < names.size(); ++i)
        list.addRow({ names.at(i), QString::number(i) });
    const double ms = bench::runToEnd(check.Check_Ping(list));
    expectOutcomes(check.takeResults(), pingResult::Status, int(names.size()) - dead, int(names.size()));
    return ms;
}

double portsMs(const QStringList &names, const QList<int> &ports, int open)
{
    PortCheck check;
    check.loadControls();
    ResultTable list(portList::Count);
    for (const QString &name : names) {
        for (const int port : ports)
            list.addRow({ name, QString::number(port), QString::number(list.rows()) });
    }
    const double ms = bench::runToEnd(check.Check_Ports(list));
    expectOutcomes(check.takeResults(), portResult::Status, int(names.size()) * open, list.rows());
    return ms;
}

QString writeList(World &world, const QStringList &names)
{
    QFile file(world.path(u"hosts.txt"_s));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write the host list");
    file.write(names.join(u'\n').toUtf8() + '\n');
    return file.fileName();
}

QList<int> halfRefused(const Listeners &listeners)
{
    QList<int> ports = listeners.ports;
    for (int port = 2; ports.size() < kPortsPerHost; ++port)
        ports << port;
    return ports;
}

QString joined(const QList<int> &ports)
{
    QStringList texts;
    for (const int port : ports)
        texts << QString::number(port);
    return texts.join(u',');
}

void loopback(World &world)
{
    const QStringList names = hosts(u"127.1.%1.%2"_s, kHosts);
    const QString list = writeList(world, names);
    bench::compare("1,000 loopback pings, defaults, against fping -c1 -i1", [&] { return pingMs(names); },
                   [&] { return bench::commandMs(u"fping"_s, { u"-c1"_s, u"-i1"_s, u"-q"_s, u"-f"_s, list }); }, 0.25);

    const Listeners listeners(kPortsPerHost / 2);
    const QList<int> ports = halfRefused(listeners);
    const QStringList nmap{ u"-sT"_s, u"-Pn"_s, u"-n"_s, u"-p"_s, joined(ports), u"-iL"_s, list };
    bench::compare("10,000 loopback ports, half refused, against nmap -sT",
                   [&] { return portsMs(names, ports, kPortsPerHost / 2); },
                   [&] { return bench::commandMs(u"nmap"_s, nmap); }, 1.5);

    std::printf("\nCost per check (loopback, one ping and ten ports a host), medians of %d:\n", bench::kRuns);
    double first = 0, last = 0;
    for (const int count : { 9, 91, 909 }) {
        const QStringList some = names.mid(0, count);
        std::vector<double> runs;
        for (int run = 0; run < bench::kRuns; ++run)
            runs.push_back(pingMs(some) + portsMs(some, ports, kPortsPerHost / 2));
        last = bench::median(runs) * 1000 / (count * (kPortsPerHost + 1.0));
        first = first > 0 ? first : last;
        std::printf("  %6d checks: %6.1f us a check\n", count * (kPortsPerHost + 1), last);
    }
    bench::report("cost per check at 10,000 checks over that at 100", last / first, 1.25, "x ");
}

/** The far hosts: 10.99.1.* to 10.99.4.* answer, 10.99.9.* are dead; odd ports are open, even ones refused. */
void far(World &)
{
    SaveSetting(u"Options"_s, u"PingControls"_s, u"256"_s);
    SaveSetting(u"Options"_s, u"PortSockets"_s, u"512"_s);
    SaveSetting(u"Options"_s, u"PingTimeOut"_s, u"1000"_s);
    const QStringList alive = hosts(u"10.99.%1.%2"_s, kHosts);
    QStringList mixed = alive;
    for (int i = 5; i < mixed.size(); i += 10)
        mixed[i] = u"10.99.9.%1"_s.arg(1 + i / 10);
    bench::measure("1,000 pings at 10 ms round trip, 256 elements", [&] { return pingMs(alive); }, 150);
    bench::measure("the same with a tenth dead, time-out 1000 ms", [&] { return pingMs(mixed, kHosts / 10); }, 1300);
    QList<int> ports;
    for (int i = 0; i < kPortsPerHost; ++i)
        ports << 1001 + i;
    bench::measure("10,000 ports at 10 ms round trip, 512 sockets",
                   [&] { return portsMs(alive, ports, kPortsPerHost / 2); }, 1000);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QString part = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (part != "loopback"_L1 && part != "far"_L1) {
        std::fprintf(stderr, "usage: network_bench loopback|far\n");
        return 2;
    }
    World world;
    world.window.recordStatus = false;
    vbMain().monitoring = true;
    part == "far"_L1 ? far(world) : loopback(world);
    return bench::missed() == 0 ? 0 : 1;
}
