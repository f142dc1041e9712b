// farnet CONFIGURATION [DEVICE]: plays the far network of the configuration file behind a tunnel device of
// the current network namespace. Says "ready" on standard output when the device is there and ends on
// SIGTERM. Routes and addresses are the caller's business (see in-netns).
#include "tests/world/farnet/FarNet.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <linux/if_tun.h>
#include <net/if.h>
#include <poll.h>
#include <queue>
#include <sstream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

struct Due {
    Clock::time_point at;
    std::uint64_t order; // packets of the same time leave in the order in which they were made
    FarNet::Packet packet;
    bool operator<(const Due &other) const { return at != other.at ? at > other.at : order > other.order; }
};

int openTunnel(const char *name)
{
    const int fd = open("/dev/net/tun", O_RDWR | O_NONBLOCK | O_CLOEXEC);
    ifreq request {};
    request.ifr_flags = IFF_TUN | IFF_NO_PI;
    std::strncpy(request.ifr_name, name, IFNAMSIZ - 1);
    if (fd < 0 || ioctl(fd, TUNSETIFF, &request) < 0) {
        std::cerr << "farnet: no tunnel device: " << std::strerror(errno) << '\n';
        return -1;
    }
    return fd;
}

class Tunnel
{
public:
    Tunnel(int fd, FarNet &net) : m_fd(fd), m_net(net) { }
    [[noreturn]] void run();

private:
    void readAll();
    void writeDue();
    void wait() const;

    int m_fd;
    FarNet &m_net;
    std::priority_queue<Due> m_due;
    std::uint64_t m_order = 0;
};

void Tunnel::run()
{
    while (true) {
        readAll();
        writeDue();
        wait();
    }
}

void Tunnel::readAll()
{
    unsigned char buffer[65536];
    constexpr int kMostAtOnce = 256; // then it is time to see what is due
    for (int i = 0; i < kMostAtOnce; ++i) {
        const ssize_t size = read(m_fd, buffer, sizeof buffer);
        if (size <= 0)
            return;
        const auto now = Clock::now();
        m_net.receive({ buffer, static_cast<std::size_t>(size) }, [&](FarNet::Answer answer) {
            m_due.push({ now + answer.delay, m_order++, std::move(answer.packet) });
        });
    }
}

void Tunnel::writeDue()
{
    while (!m_due.empty() && m_due.top().at <= Clock::now()) {
        const FarNet::Packet &packet = m_due.top().packet;
        if (write(m_fd, packet.data(), packet.size()) < 0 && errno != EAGAIN)
            std::cerr << "farnet: write: " << std::strerror(errno) << '\n';
        m_due.pop();
    }
}

void Tunnel::wait() const
{
    pollfd ready { m_fd, POLLIN, 0 };
    if (m_due.empty()) {
        poll(&ready, 1, -1);
        return;
    }
    const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(m_due.top().at - Clock::now());
    if (left.count() <= 0)
        return;
    const timespec limit { left.count() / 1'000'000'000, left.count() % 1'000'000'000 };
    ppoll(&ready, 1, &limit, nullptr);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::cerr << "usage: farnet CONFIGURATION [DEVICE]\n";
        return 2;
    }
    std::ifstream file(argv[1]);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file) {
        std::cerr << "farnet: cannot read " << argv[1] << '\n';
        return 2;
    }
    try {
        FarNet net(text.str());
        const int fd = openTunnel(argc > 2 ? argv[2] : "far0");
        if (fd < 0)
            return 1;
        std::cout << "ready" << std::endl;
        Tunnel(fd, net).run();
    } catch (const std::exception &e) {
        std::cerr << "farnet: " << argv[1] << ": " << e.what() << '\n';
        return 2;
    }
}
