#include "platform/ping/IcmpPacket.h"

#include <cstring>

namespace icmp {
namespace {

using Bytes = std::span<const unsigned char>;

struct Types {
    std::uint8_t request, reply;
};

constexpr std::size_t kIpv6HeaderSize = 40;
constexpr std::uint8_t kProtocolIcmp = 1;
constexpr std::uint8_t kProtocolIcmpV6 = 58;
constexpr int kAnyCode = -1;

struct ErrorRow {
    Family family;
    std::uint8_t type;
    int code;
    const char *text;
};

// The first row that fits counts; rows for any code close the list of their type.
constexpr ErrorRow kErrors[] = {
    { Family::V4, 3, 0, "destination network unreachable" },
    { Family::V4, 3, 1, "destination host unreachable" },
    { Family::V4, 3, 2, "destination protocol unreachable" },
    { Family::V4, 3, 3, "destination port unreachable" },
    { Family::V4, 3, 4, "packet too big for the path" },
    { Family::V4, 3, 5, "source route failed" },
    { Family::V4, 3, 6, "destination network unknown" },
    { Family::V4, 3, 7, "destination host unknown" },
    { Family::V4, 3, 9, "communication administratively prohibited" },
    { Family::V4, 3, 10, "communication administratively prohibited" },
    { Family::V4, 3, 13, "communication administratively prohibited" },
    { Family::V4, 3, kAnyCode, "destination unreachable" },
    { Family::V4, 11, 0, "time to live exceeded in transit" },
    { Family::V4, 11, kAnyCode, "fragment reassembly time exceeded" },
    { Family::V4, 12, kAnyCode, "packet header refused on the path" },
    { Family::V6, 1, 0, "no route to destination" },
    { Family::V6, 1, 1, "communication administratively prohibited" },
    { Family::V6, 1, 3, "destination host unreachable" },
    { Family::V6, 1, 4, "destination port unreachable" },
    { Family::V6, 1, 5, "communication administratively prohibited" },
    { Family::V6, 1, 6, "destination route rejected" },
    { Family::V6, 1, kAnyCode, "destination unreachable" },
    { Family::V6, 2, kAnyCode, "packet too big for the path" },
    { Family::V6, 3, 0, "hop limit exceeded in transit" },
    { Family::V6, 3, kAnyCode, "fragment reassembly time exceeded" },
    { Family::V6, 4, kAnyCode, "packet header refused on the path" },
};

const ErrorRow *findError(Family family, std::uint8_t type, std::uint8_t code)
{
    for (const ErrorRow &row : kErrors) {
        if (row.family == family && row.type == type && (row.code == kAnyCode || row.code == code))
            return &row;
    }
    return nullptr;
}

Types echoTypes(Family family)
{
    return family == Family::V4 ? Types { 8, 0 } : Types { 128, 129 };
}

std::uint16_t read16(Bytes bytes, std::size_t at)
{
    return static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]);
}

void write16(std::span<unsigned char> bytes, std::size_t at, std::uint16_t value)
{
    bytes[at] = static_cast<unsigned char>(value >> 8);
    bytes[at + 1] = static_cast<unsigned char>(value & 0xff);
}

/** Length of the IPv4 header with its options, 0 if this is none or it is cut off. */
std::size_t ipv4HeaderLength(Bytes packet)
{
    if (packet.size() < 20 || packet[0] >> 4 != 4)
        return 0;
    const std::size_t length = (packet[0] & 0x0f) * std::size_t { 4 };
    return length >= 20 && length <= packet.size() ? length : 0;
}

Received quotedIpv4(Bytes datagram)
{
    const std::size_t header = ipv4HeaderLength(datagram);
    const bool laterFragment = header && (read16(datagram, 6) & 0x1fff) != 0;
    if (!header || laterFragment || datagram[9] != kProtocolIcmp)
        return {};
    Received found = readQuotedRequest(Family::V4, datagram.subspan(header));
    found.destination = datagram.subspan(16, 4);
    return found;
}

Received quotedIpv6(Bytes datagram)
{
    // Our requests leave without extension headers, but for a fragment header in front of large ones.
    constexpr std::uint8_t kFragmentHeader = 44;
    if (datagram.size() < kIpv6HeaderSize + kEchoHeaderSize || datagram[0] >> 4 != 6)
        return {};
    std::uint8_t next = datagram[6];
    Bytes rest = datagram.subspan(kIpv6HeaderSize);
    if (next == kFragmentHeader) {
        if ((read16(rest, 2) & 0xfff8) != 0)
            return {};
        next = rest[0];
        rest = rest.subspan(8);
    }
    if (next != kProtocolIcmpV6)
        return {};
    Received found = readQuotedRequest(Family::V6, rest);
    found.destination = datagram.subspan(24, 16);
    return found;
}

} // namespace

std::uint16_t checksum(Bytes bytes)
{
    std::uint64_t sum = 0;
    std::size_t at = 0;
    for (; at + 2 <= bytes.size(); at += 2) {
        std::uint16_t word;
        std::memcpy(&word, bytes.data() + at, 2);
        sum += word;
    }
    if (at < bytes.size()) {
        const unsigned char last[2] = { bytes[at], 0 };
        std::uint16_t word;
        std::memcpy(&word, last, 2);
        sum += word;
    }
    while (sum >> 16)
        sum = (sum & 0xffff) + (sum >> 16);
    return static_cast<std::uint16_t>(~sum);
}

void writeEchoRequest(Family family, std::uint16_t ident, std::uint16_t sequence,
                      std::span<unsigned char> packet)
{
    packet[0] = echoTypes(family).request;
    packet[1] = 0;
    write16(packet, 2, 0);
    write16(packet, 4, ident);
    write16(packet, 6, sequence);
    if (family == Family::V6)
        return;
    const std::uint16_t sum = checksum(packet);
    std::memcpy(packet.data() + 2, &sum, 2);
}

Received readQuotedRequest(Family family, Bytes icmp)
{
    if (icmp.size() < kEchoHeaderSize || icmp[0] != echoTypes(family).request || icmp[1] != 0)
        return {};
    Received found;
    found.kind = Received::Error;
    found.ident = read16(icmp, 4);
    found.sequence = read16(icmp, 6);
    return found;
}

Received readReceived(Family family, Framing framing, Bytes packet)
{
    if (framing == Framing::WithIpHeader) {
        const std::size_t header = ipv4HeaderLength(packet);
        if (!header)
            return {};
        packet = packet.subspan(header);
    }
    if (packet.size() < kEchoHeaderSize)
        return {};
    if (packet[0] == echoTypes(family).reply && packet[1] == 0) {
        Received reply;
        reply.kind = Received::Reply;
        reply.ident = read16(packet, 4);
        reply.sequence = read16(packet, 6);
        reply.payload = packet.subspan(kEchoHeaderSize);
        return reply;
    }
    if (!findError(family, packet[0], packet[1]))
        return {};
    const Bytes original = packet.subspan(kEchoHeaderSize);
    Received error = family == Family::V4 ? quotedIpv4(original) : quotedIpv6(original);
    error.type = packet[0];
    error.code = packet[1];
    return error;
}

const char *errorText(Family family, std::uint8_t type, std::uint8_t code)
{
    const ErrorRow *row = findError(family, type, code);
    return row ? row->text : "destination unreachable";
}

} // namespace icmp
