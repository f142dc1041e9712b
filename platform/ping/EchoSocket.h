#pragma once

#include "platform/ping/IcmpPacket.h"

#include <QHostAddress>
#include <netinet/in.h>
#include <optional>
#include <span>

/** Where an echo request goes. */
union EchoTarget {
    sockaddr any;
    sockaddr_in v4;
    sockaddr_in6 v6;

    /** Nothing for an address that is neither IPv4 nor IPv6. */
    static std::optional<EchoTarget> from(const QHostAddress &address);
    icmp::Family family() const { return any.sa_family == AF_INET ? icmp::Family::V4 : icmp::Family::V6; }
    socklen_t size() const { return any.sa_family == AF_INET ? sizeof v4 : sizeof v6; }
    /** The bare address: 4 or 16 bytes. */
    std::span<const unsigned char> bytes() const;
};

/** Receives what a socket read; called while the socket is being drained, so it must not close it. */
class EchoSink
{
public:
    /** receivedAt: kernel's time stamp, ns of the real-time clock; 0 if there was none. */
    virtual void replyArrived(const icmp::Received &reply, std::span<const unsigned char> source,
                              qint64 receivedAt)
        = 0;
    /** The text belongs to error.type and error.code already. */
    virtual void errorArrived(const icmp::Received &error, const char *text) = 0;

protected:
    ~EchoSink() = default;
};

/** One ICMP socket of one family, datagram or raw, non-blocking. */
class EchoSocket
{
public:
    explicit EchoSocket(icmp::Family family) : m_family(family) { }
    ~EchoSocket() { close(); }
    EchoSocket(const EchoSocket &) = delete;
    EchoSocket &operator=(const EchoSocket &) = delete;

    /** Tries a datagram and a raw socket, as far as setEchoAccess allows. Returns 0 or the errno of the
        refusal. */
    int open();
    /** Takes over a raw socket that somebody else has opened. */
    void adopt(int fd);
    void close();
    bool isOpen() const { return m_fd >= 0; }
    int descriptor() const { return m_fd; }
    /** Our identifier on this socket; the kernel chooses that of datagram sockets. */
    quint16 ident() const { return m_ident; }
    /** Bytes that the receive buffer holds, with the kernel's bookkeeping. */
    int receiveBuffer() const { return m_receiveBuffer; }

    /** Sends an ICMP packet. Returns 0 or the errno of the refusal. */
    int send(const EchoTarget &target, std::span<const unsigned char> packet);
    /** Reads everything that has arrived, errors first. */
    void drain(EchoSink &sink);

private:
    void setUp();
    void readErrors(EchoSink &sink);
    void readPackets(EchoSink &sink);

    icmp::Family m_family;
    icmp::Framing m_framing = icmp::Framing::IcmpOnly;
    int m_fd = -1;
    int m_receiveBuffer = 0;
    quint16 m_ident = 0;
};
