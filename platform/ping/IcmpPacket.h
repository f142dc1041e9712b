#pragma once

#include <cstdint>
#include <span>

/** Building and reading ICMP echo packets: pure functions on bytes, for packets that anybody may have sent.
    Nothing here reads past the span that it was given (RFC 792, RFC 4443). */
namespace icmp {

enum class Family { V4, V6 };

/** How the kernel hands a packet over: raw IPv4 sockets deliver the IP header too. */
enum class Framing { WithIpHeader, IcmpOnly };

/** What a socket received, as far as it concerns our echoes. The spans point into the packet. */
struct Received {
    enum Kind { Ignored, Reply, Error } kind = Ignored;
    std::uint16_t ident = 0; // of our request
    std::uint16_t sequence = 0;
    std::span<const unsigned char> payload;     // Reply: what was echoed
    std::span<const unsigned char> destination; // Error: where our request went, 4 or 16 bytes
    std::uint8_t type = 0;                      // Error: as in the packet
    std::uint8_t code = 0;
};

inline constexpr std::size_t kEchoHeaderSize = 8;

/** Fills in the header of an echo request and its checksum; everything after the header is sent as it is.
    The kernel overwrites ident (datagram sockets) and the checksum (datagram sockets and IPv6).
    The packet has at least kEchoHeaderSize bytes. */
void writeEchoRequest(Family family, std::uint16_t ident, std::uint16_t sequence,
                      std::span<unsigned char> packet);

/** Reads a received packet; whatever is no echo reply and no error about an echo request is Ignored. */
Received readReceived(Family family, Framing framing, std::span<const unsigned char> packet);

/** Reads the ICMP part of one of our requests, as error messages quote it: ident and sequence with kind
    Error, or Ignored if it is no echo request. */
Received readQuotedRequest(Family family, std::span<const unsigned char> icmp);

/** The plain sentence part that says what an ICMP error message means. */
const char *errorText(Family family, std::uint8_t type, std::uint8_t code);

/** Internet checksum (RFC 1071) over the bytes, in the byte order of memory. */
std::uint16_t checksum(std::span<const unsigned char> bytes);

} // namespace icmp
