#include "platform/ping/IcmpPacket.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

using icmp::Family;
using icmp::Framing;
using icmp::Received;

namespace {

using Packet = std::vector<unsigned char>;

Packet operator+(Packet left, const Packet &right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Packet ipv4Header(unsigned words, unsigned char protocol)
{
    Packet header(words * 4, 0);
    header[0] = static_cast<unsigned char>(0x40 | words);
    header[9] = protocol;
    header[16] = 10;
    header[19] = 7;
    return header;
}

Packet ipv6Header(unsigned char next)
{
    Packet header(40, 0);
    header[0] = 0x60;
    header[6] = next;
    header[24] = 0xfd;
    header[39] = 7;
    return header;
}

const Packet kReply4 { 0, 0, 0, 0, 0x12, 0x34, 0x00, 0x05, 'd', 'a', 't', 'a' };
const Packet kReply6 { 129, 0, 0, 0, 0x12, 0x34, 0x00, 0x05, 'd', 'a', 't', 'a' };
const Packet kRequest4 { 8, 0, 0, 0, 0x12, 0x34, 0x00, 0x05 };
const Packet kRequest6 { 128, 0, 0, 0, 0x12, 0x34, 0x00, 0x05 };
const Packet kUnreachable4 { 3, 1, 0, 0, 0, 0, 0, 0 };
const Packet kUnreachable6 { 1, 3, 0, 0, 0, 0, 0, 0 };

struct Row {
    const char *name;
    Family family;
    Framing framing;
    Packet packet;
    const char *expected;
};

Packet fragmented(Packet header)
{
    header[7] = 1; // fragment offset 8
    return header;
}

const Row kRows[] = {
    { "reply", Family::V4, Framing::IcmpOnly, kReply4, "reply 1234:5 data" },
    { "reply behind a header with options", Family::V4, Framing::WithIpHeader, ipv4Header(15, 1) + kReply4,
      "reply 1234:5 data" },
    { "reply v6", Family::V6, Framing::IcmpOnly, kReply6, "reply 1234:5 data" },
    { "reply without payload", Family::V4, Framing::IcmpOnly, Packet(kReply4.begin(), kReply4.begin() + 8),
      "reply 1234:5 " },
    { "error", Family::V4, Framing::WithIpHeader,
      ipv4Header(5, 1) + kUnreachable4 + ipv4Header(6, 1) + kRequest4, "error 1234:5 3/1 4 bytes ending 7" },
    { "error v6", Family::V6, Framing::IcmpOnly, kUnreachable6 + ipv6Header(58) + kRequest6,
      "error 1234:5 1/3 16 bytes ending 7" },
    { "error v6 about a first fragment", Family::V6, Framing::IcmpOnly,
      kUnreachable6 + ipv6Header(44) + Packet { 58, 0, 0, 1, 0, 0, 0, 9 } + kRequest6,
      "error 1234:5 1/3 16 bytes ending 7" },
    { "our own request", Family::V4, Framing::IcmpOnly, kRequest4, "ignored" },
    { "error about another protocol", Family::V4, Framing::IcmpOnly,
      kUnreachable4 + ipv4Header(5, 17) + kRequest4, "ignored" },
    { "error about a reply", Family::V4, Framing::IcmpOnly, kUnreachable4 + ipv4Header(5, 1) + kReply4,
      "ignored" },
    { "error about a later fragment", Family::V4, Framing::IcmpOnly,
      kUnreachable4 + fragmented(ipv4Header(5, 1)) + kRequest4, "ignored" },
    { "error v6 about a later fragment", Family::V6, Framing::IcmpOnly,
      kUnreachable6 + ipv6Header(44) + Packet { 58, 0, 1, 0, 0, 0, 0, 9 } + kRequest6, "ignored" },
    { "reply type with a code", Family::V4, Framing::IcmpOnly, Packet { 0, 1, 0, 0, 0x12, 0x34, 0, 5 },
      "ignored" },
    { "header length below the least", Family::V4, Framing::WithIpHeader, Packet { 0x44 } + Packet(30, 0),
      "ignored" },
    { "not IPv4", Family::V4, Framing::WithIpHeader, Packet { 0x65 } + Packet(30, 0), "ignored" },
    { "redirect", Family::V4, Framing::IcmpOnly,
      Packet { 5, 1, 0, 0, 0, 0, 0, 0 } + ipv4Header(5, 1) + kRequest4, "ignored" },
};

std::string describe(const Received &r)
{
    if (r.kind == Received::Ignored)
        return "ignored";
    char head[32];
    snprintf(head, sizeof head, "%x:%u ", r.ident, r.sequence);
    if (r.kind == Received::Reply)
        return std::string("reply ") + head + std::string(r.payload.begin(), r.payload.end());
    return std::string("error ") + head + std::to_string(r.type) + "/" + std::to_string(r.code) + " "
        + std::to_string(r.destination.size()) + " bytes ending " + std::to_string(r.destination.back());
}

} // namespace

TEST(IcmpPacket, ReadsWhatConcernsOurEchoes)
{
    for (const Row &row : kRows)
        EXPECT_EQ(describe(readReceived(row.family, row.framing, row.packet)), row.expected) << row.name;
}

// Cut off anywhere, a packet is read no further than it goes (the address sanitizer watches the exact-size
// copy).
TEST(IcmpPacket, SurvivesTruncation)
{
    for (const Row &row : kRows) {
        for (std::size_t size = 0; size < row.packet.size(); ++size) {
            const auto copy = std::make_unique<unsigned char[]>(size);
            std::copy_n(row.packet.begin(), size, copy.get());
            const Received r = readReceived(row.family, row.framing, std::span(copy.get(), size));
            const bool isShorterReply = r.kind == Received::Reply && r.payload.size() < 4;
            EXPECT_TRUE(r.kind == Received::Ignored || isShorterReply) << row.name << " cut to " << size;
        }
    }
}

TEST(IcmpPacket, RequestHasAValidChecksum)
{
    for (const std::size_t payload : { 0, 1, 32, 33 }) {
        Packet packet(icmp::kEchoHeaderSize + payload, 0xa5);
        writeEchoRequest(Family::V4, 0x1234, 0xfffe, packet);
        EXPECT_EQ(packet[0], 8);
        EXPECT_EQ(icmp::checksum(packet), 0) << payload;
        const Received quoted = readQuotedRequest(Family::V4, packet);
        EXPECT_EQ(quoted.ident, 0x1234);
        EXPECT_EQ(quoted.sequence, 0xfffe);
    }
    // The example of RFC 1071, section 3.
    const Packet example { 0x00, 0x01, 0xf2, 0x03, 0xf4, 0xf5, 0xf6, 0xf7 };
    const std::uint16_t sum = icmp::checksum(example);
    EXPECT_EQ(reinterpret_cast<const unsigned char *>(&sum)[0], 0x22);
    EXPECT_EQ(reinterpret_cast<const unsigned char *>(&sum)[1], 0x0d);
}

// The ping check counts time-outs by two words; an error text must never be mistaken for one, nor break a
// statement.
TEST(IcmpPacket, ErrorTextsAreHarmless)
{
    for (const Family family : { Family::V4, Family::V6 }) {
        for (unsigned type = 0; type < 256; ++type) {
            for (unsigned code = 0; code < 256; ++code) {
                const std::string text = icmp::errorText(family, static_cast<std::uint8_t>(type),
                                                         static_cast<std::uint8_t>(code));
                EXPECT_FALSE(text.empty());
                ASSERT_EQ(text.find_first_of("'\r\n"), std::string::npos) << text;
                ASSERT_EQ(text.find("equest"), std::string::npos) << text;
                ASSERT_EQ(text.find("inging"), std::string::npos) << text;
            }
        }
    }
    EXPECT_STREQ(icmp::errorText(Family::V4, 3, 13), "communication administratively prohibited");
    EXPECT_STREQ(icmp::errorText(Family::V6, 2, 0), "packet too big for the path");
}
