#include "platform/ping/EchoSocket.h"

#include "platform/ping/EchoAccess.h"
#include "platform/ping/RawIcmp.h"

#include <QRandomGenerator>
#include <cerrno>
#include <cstring>
#include <linux/errqueue.h>
#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kWantedBuffer = 4 * 1024 * 1024;
constexpr unsigned kBatch = 32;
// Enough for an error message: outer header, ICMP header, quoted header with options, quoted ICMP header.
constexpr std::size_t kPacketRoom = 192;

EchoAccess &access()
{
    static EchoAccess value;
    return value;
}

void setOption(int fd, int level, int name, int value)
{
    // Each of these options makes answers better; none is needed to get them.
    setsockopt(fd, level, name, &value, sizeof value);
}

int getOption(int fd, int name)
{
    int value = 0;
    socklen_t size = sizeof value;
    getsockopt(fd, SOL_SOCKET, name, &value, &size);
    return value;
}

void growBuffer(int fd, int forced, int asked)
{
    if (setsockopt(fd, SOL_SOCKET, forced, &kWantedBuffer, sizeof kWantedBuffer) != 0)
        setOption(fd, SOL_SOCKET, asked, kWantedBuffer);
}

quint32 scopeNumber(const QString &scope)
{
    bool isNumber = false;
    const quint32 number = scope.toUInt(&isNumber);
    return isNumber ? number : if_nametoindex(scope.toUtf8().constData());
}

qint64 timeStamp(msghdr &header)
{
    for (cmsghdr *c = CMSG_FIRSTHDR(&header); c; c = CMSG_NXTHDR(&header, c)) {
        if (c->cmsg_level == SOL_SOCKET && c->cmsg_type == SCM_TIMESTAMPNS) {
            timespec stamp;
            std::memcpy(&stamp, CMSG_DATA(c), sizeof stamp);
            return qint64 { stamp.tv_sec } * 1'000'000'000 + stamp.tv_nsec;
        }
    }
    return 0;
}

std::optional<sock_extended_err> extendedError(msghdr &header)
{
    for (cmsghdr *c = CMSG_FIRSTHDR(&header); c; c = CMSG_NXTHDR(&header, c)) {
        const bool v4 = c->cmsg_level == IPPROTO_IP && c->cmsg_type == IP_RECVERR;
        const bool v6 = c->cmsg_level == IPPROTO_IPV6 && c->cmsg_type == IPV6_RECVERR;
        if (!v4 && !v6)
            continue;
        sock_extended_err error;
        std::memcpy(&error, CMSG_DATA(c), sizeof error);
        return error;
    }
    return std::nullopt;
}

} // namespace

void setEchoAccess(const EchoAccess &value)
{
    access() = value;
}

const EchoAccess &echoAccess()
{
    return access();
}

std::optional<EchoTarget> EchoTarget::from(const QHostAddress &address)
{
    EchoTarget target {};
    bool isV4 = false;
    const quint32 v4 = address.toIPv4Address(&isV4); // mapped addresses too
    if (isV4) {
        target.v4.sin_family = AF_INET;
        // The kernel takes the unspecified address for this machine, but the answer comes from the real one.
        target.v4.sin_addr.s_addr = htonl(v4 == INADDR_ANY ? INADDR_LOOPBACK : v4);
        return target;
    }
    if (address.protocol() != QAbstractSocket::IPv6Protocol)
        return std::nullopt;
    const Q_IPV6ADDR v6 = address == QHostAddress(QHostAddress::AnyIPv6)
        ? QHostAddress(QHostAddress::LocalHostIPv6).toIPv6Address()
        : address.toIPv6Address();
    target.v6.sin6_family = AF_INET6;
    std::memcpy(&target.v6.sin6_addr, &v6, sizeof target.v6.sin6_addr);
    if (!address.scopeId().isEmpty())
        target.v6.sin6_scope_id = scopeNumber(address.scopeId());
    return target;
}

std::span<const unsigned char> EchoTarget::bytes() const
{
    if (any.sa_family == AF_INET)
        return { reinterpret_cast<const unsigned char *>(&v4.sin_addr), 4 };
    return { v6.sin6_addr.s6_addr, 16 };
}

int EchoSocket::open()
{
    const bool isV4 = m_family == icmp::Family::V4;
    const int domain = isV4 ? AF_INET : AF_INET6;
    int error = EACCES;
    if (access().datagram) {
        m_fd = socket(domain, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC,
                      isV4 ? static_cast<int>(IPPROTO_ICMP) : static_cast<int>(IPPROTO_ICMPV6));
        error = m_fd < 0 ? errno : 0;
    }
    if (m_fd < 0 && access().raw) {
        m_fd = openRawIcmp(domain);
        error = m_fd < 0 ? errno : 0;
    }
    if (m_fd >= 0)
        setUp();
    return error;
}

void EchoSocket::adopt(int fd)
{
    close();
    m_fd = fd;
    setUp();
}

void EchoSocket::close()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

void EchoSocket::setUp()
{
    const bool isV4 = m_family == icmp::Family::V4;
    const bool isRaw = getOption(m_fd, SO_TYPE) == SOCK_RAW;
    m_framing = isRaw && isV4 ? icmp::Framing::WithIpHeader : icmp::Framing::IcmpOnly;
    growBuffer(m_fd, SO_RCVBUFFORCE, SO_RCVBUF);
    growBuffer(m_fd, SO_SNDBUFFORCE, SO_SNDBUF);
    m_receiveBuffer = getOption(m_fd, SO_RCVBUF);
    setOption(m_fd, SOL_SOCKET, SO_TIMESTAMPNS, 1);
    if (isV4)
        setOption(m_fd, IPPROTO_IP, IP_RECVERR, 1);
    else
        setOption(m_fd, IPPROTO_IPV6, IPV6_RECVERR, 1);
    m_ident = static_cast<quint16>(QRandomGenerator::global()->bounded(1, 0x10000));
    if (isRaw)
        return;
    EchoTarget self {};
    self.any.sa_family = isV4 ? AF_INET : AF_INET6;
    socklen_t size = self.size();
    // Binding to port 0 makes the kernel choose the identifier now instead of at the first request.
    if (bind(m_fd, &self.any, size) == 0 && getsockname(m_fd, &self.any, &size) == 0)
        m_ident = ntohs(isV4 ? self.v4.sin_port : self.v6.sin6_port);
}

int EchoSocket::send(const EchoTarget &target, std::span<const unsigned char> packet)
{
    // The kernel reports an ICMP error about an earlier request as the failure of the next call; that says
    // nothing about this packet, so the call is repeated. A refusal that concerns this packet comes back each
    // time.
    constexpr int kAttempts = 3;
    int error = 0;
    for (int i = 0; i < kAttempts; ++i) {
        if (sendto(m_fd, packet.data(), packet.size(), MSG_NOSIGNAL, &target.any, target.size()) >= 0)
            return 0;
        error = errno;
        if (error == EAGAIN || error == ENOBUFS)
            break;
    }
    return error;
}

void EchoSocket::drain(EchoSink &sink)
{
    readErrors(sink);
    readPackets(sink);
}

void EchoSocket::readErrors(EchoSink &sink)
{
    unsigned char packet[kPacketRoom];
    alignas(cmsghdr) char control[512];
    EchoTarget destination;
    while (true) {
        iovec part { packet, sizeof packet };
        msghdr header {};
        header.msg_name = &destination;
        header.msg_namelen = sizeof destination;
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = control;
        header.msg_controllen = sizeof control;
        const ssize_t size = recvmsg(m_fd, &header, MSG_ERRQUEUE | MSG_DONTWAIT);
        if (size < 0)
            return;
        const auto cause = extendedError(header);
        const bool fromNetwork
            = cause && (cause->ee_origin == SO_EE_ORIGIN_ICMP || cause->ee_origin == SO_EE_ORIGIN_ICMP6);
        icmp::Received error
            = icmp::readQuotedRequest(m_family, std::span(packet, static_cast<std::size_t>(size)));
        // What the system refused by itself was reported when the request was sent.
        if (!fromNetwork || error.kind != icmp::Received::Error || header.msg_namelen == 0)
            continue;
        error.destination = destination.bytes();
        error.type = cause->ee_type;
        error.code = cause->ee_code;
        sink.errorArrived(error, icmp::errorText(m_family, error.type, error.code));
    }
}

void EchoSocket::readPackets(EchoSink &sink)
{
    struct Room {
        EchoTarget source;
        iovec part;
        unsigned char packet[kPacketRoom];
        alignas(cmsghdr) char control[64];
    } rooms[kBatch];
    mmsghdr headers[kBatch] {};
    constexpr int kMostBatches = 64; // a flood from outside may not hold the event loop
    for (int batch = 0; batch < kMostBatches; ++batch) {
        for (unsigned i = 0; i < kBatch; ++i) {
            rooms[i].part = { rooms[i].packet, kPacketRoom };
            msghdr &h = headers[i].msg_hdr;
            h = { &rooms[i].source, sizeof(EchoTarget), &rooms[i].part, 1, rooms[i].control, 64, 0 };
        }
        const int count = recvmmsg(m_fd, headers, kBatch, MSG_DONTWAIT, nullptr);
        // A pending error of an earlier request ends one call; its details came through the error queue.
        if (count < 0 && errno != EAGAIN)
            continue;
        for (int i = 0; i < count; ++i) {
            const std::size_t size = headers[i].msg_len;
            const auto found = icmp::readReceived(m_family, m_framing, std::span(rooms[i].packet, size));
            if (found.kind == icmp::Received::Reply)
                sink.replyArrived(found, rooms[i].source.bytes(), timeStamp(headers[i].msg_hdr));
            else if (found.kind == icmp::Received::Error)
                sink.errorArrived(found, icmp::errorText(m_family, found.type, found.code));
        }
        if (count < static_cast<int>(kBatch))
            return;
    }
}
