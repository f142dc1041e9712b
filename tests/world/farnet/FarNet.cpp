#include "tests/world/farnet/FarNet.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <sstream>

namespace {

using Bytes = FarNet::Bytes;
using Packet = FarNet::Packet;

constexpr unsigned char kFin = 1, kSyn = 2, kRst = 4, kAck = 16;
constexpr unsigned char kIcmp = 1, kTcpProtocol = 6, kIcmpV6 = 58;
constexpr std::uint32_t kFirstSequence = 1000;

std::uint16_t get16(Bytes b, std::size_t at)
{
    return static_cast<std::uint16_t>(b[at] << 8 | b[at + 1]);
}

std::uint32_t get32(Bytes b, std::size_t at)
{
    return static_cast<std::uint32_t>(get16(b, at)) << 16 | get16(b, at + 2);
}

void put16(Packet &p, std::size_t at, std::uint32_t value)
{
    p[at] = static_cast<unsigned char>(value >> 8);
    p[at + 1] = static_cast<unsigned char>(value);
}

void put32(Packet &p, std::size_t at, std::uint32_t value)
{
    put16(p, at, value >> 16);
    put16(p, at + 2, value & 0xffff);
}

std::uint32_t sum(Bytes b, std::uint32_t start = 0)
{
    for (std::size_t i = 0; i + 1 < b.size(); i += 2)
        start += get16(b, i);
    return b.size() % 2 ? start + (std::uint32_t { b.back() } << 8) : start;
}

std::uint16_t fold(std::uint32_t value)
{
    while (value >> 16)
        value = (value & 0xffff) + (value >> 16);
    return static_cast<std::uint16_t>(~value);
}

} // namespace

struct FarNet::Datagram {
    bool isV6 = false;
    Bytes whole, source, destination, body;
    unsigned char protocol = 0;

    /** False if this is nothing that the far network understands. */
    bool read(Bytes packet);
    Address target() const;
    std::size_t headerSize() const { return isV6 ? 40 : 20; }
    /** A packet back to the sender with this body; the checksum belongs at this place of the body. */
    Packet back(unsigned char bodyProtocol, const Packet &content, std::size_t checksumAt) const;
    /** An ICMP error from the host's router about this packet. */
    Packet error(unsigned char typeV4, unsigned char codeV4, unsigned char typeV6,
                 unsigned char codeV6) const;
    Packet segment(std::uint32_t sequence, std::uint32_t acknowledged, unsigned char flags) const;
};

bool FarNet::Datagram::read(Bytes packet)
{
    whole = packet;
    if (packet.size() >= 20 && packet[0] >> 4 == 4) {
        const std::size_t header = (packet[0] & 15) * std::size_t { 4 };
        if (header < 20 || packet.size() < header + 8 || (get16(packet, 6) & 0x3fff) != 0)
            return false; // fragments are not put together here
        protocol = packet[9];
        source = packet.subspan(12, 4);
        destination = packet.subspan(16, 4);
        body = packet.subspan(header);
        return true;
    }
    if (packet.size() < 48 || packet[0] >> 4 != 6)
        return false;
    isV6 = true;
    protocol = packet[6];
    source = packet.subspan(8, 16);
    destination = packet.subspan(24, 16);
    body = packet.subspan(40);
    return true;
}

FarNet::Address FarNet::Datagram::target() const
{
    Address address { 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff };
    std::ranges::copy(destination, isV6 ? address.begin() : address.begin() + 12);
    return address;
}

Packet FarNet::Datagram::back(unsigned char bodyProtocol, const Packet &content, std::size_t checksumAt) const
{
    Packet out(headerSize());
    if (isV6) {
        out[0] = 0x60;
        put16(out, 4, static_cast<std::uint32_t>(content.size()));
        out[6] = bodyProtocol;
        out[7] = 64;
        std::ranges::copy(destination, out.begin() + 8);
        std::ranges::copy(source, out.begin() + 24);
    } else {
        out[0] = 0x45;
        put16(out, 2, static_cast<std::uint32_t>(content.size() + 20));
        out[8] = 64;
        out[9] = bodyProtocol;
        std::ranges::copy(destination, out.begin() + 12);
        std::ranges::copy(source, out.begin() + 16);
        put16(out, 10, fold(sum(out)));
    }
    const std::size_t start = out.size();
    out.insert(out.end(), content.begin(), content.end());
    // ICMP for IPv4 alone has no pseudo header.
    std::uint32_t total = sum(content);
    if (bodyProtocol != kIcmp)
        total = sum(source,
                    sum(destination, total + bodyProtocol + static_cast<std::uint32_t>(content.size())));
    put16(out, start + checksumAt, fold(total));
    return out;
}

Packet FarNet::Datagram::error(unsigned char typeV4, unsigned char codeV4, unsigned char typeV6,
                               unsigned char codeV6) const
{
    Packet content { isV6 ? typeV6 : typeV4, isV6 ? codeV6 : codeV4, 0, 0, 0, 0, 0, 0 };
    const auto quoted
        = whole.first(std::min<std::size_t>(whole.size(), isV6 ? 1000 : whole.size() - body.size() + 8));
    content.insert(content.end(), quoted.begin(), quoted.end());
    return back(isV6 ? kIcmpV6 : kIcmp, content, 2);
}

Packet FarNet::Datagram::segment(std::uint32_t sequence, std::uint32_t acknowledged,
                                 unsigned char flags) const
{
    Packet content(20);
    put16(content, 0, get16(body, 2));
    put16(content, 2, get16(body, 0));
    put32(content, 4, sequence);
    put32(content, 8, acknowledged);
    content[12] = 5 << 4;
    content[13] = flags;
    put16(content, 14, 65535);
    return back(kTcpProtocol, content, 16);
}

FarNet::FarNet(const std::string &configuration)
{
    std::istringstream lines(configuration);
    std::chrono::microseconds delay { 10'000 };
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        try {
            readLine(line.substr(0, line.find('#')), delay);
        } catch (const std::exception &e) {
            throw Mistake("line " + std::to_string(number) + ": " + e.what());
        }
    }
}

void FarNet::readLine(const std::string &line, std::chrono::microseconds &delay)
{
    std::istringstream words(line);
    std::string what, where, setting;
    if (!(words >> what))
        return;
    if (!(words >> where) || (what != "delay" && what != "hosts"))
        throw Mistake("expected \"delay MS\" or \"hosts ADDRESS …\"");
    if (what == "delay") {
        delay = std::chrono::microseconds(static_cast<long>(std::stod(where) * 1000));
        return;
    }
    Rule rule;
    rule.delay = delay;
    const auto slash = where.find('/');
    const std::string name = where.substr(0, slash);
    const bool isV6 = name.find(':') != std::string::npos;
    rule.address[10] = rule.address[11] = isV6 ? 0 : 0xff;
    if (inet_pton(isV6 ? AF_INET6 : AF_INET, name.c_str(), rule.address.data() + (isV6 ? 0 : 12)) != 1)
        throw Mistake("not an address: " + name);
    const unsigned bits
        = slash == std::string::npos ? 128 : static_cast<unsigned>(std::stoul(where.substr(slash + 1)));
    rule.prefix = slash == std::string::npos || isV6 ? bits : bits + 96;
    while (words >> setting) {
        const auto equals = setting.find('=');
        if (equals == std::string::npos)
            throw Mistake("expected KEY=VALUE: " + setting);
        readSetting(rule, setting.substr(0, equals), setting.substr(equals + 1));
    }
    m_rules.push_back(rule);
}

FarNet::Tcp FarNet::readTcp(const std::string &value)
{
    static const std::map<std::string, Tcp> kNames {
        { "open", Tcp::Open },   { "refused", Tcp::Refused },         { "silent", Tcp::Silent },
        { "reset", Tcp::Reset }, { "unreachable", Tcp::Unreachable }, { "prohibited", Tcp::Prohibited },
    };
    const auto found = kNames.find(value);
    if (found == kNames.end())
        throw Mistake("unknown behaviour: " + value);
    return found->second;
}

void FarNet::readSetting(Rule &rule, const std::string &key, const std::string &value)
{
    static const std::map<std::string, Echo> kEchoes {
        { "answer", Echo::Answer },         { "silent", Echo::Silent }, { "unreachable", Echo::Unreachable },
        { "prohibited", Echo::Prohibited }, { "twice", Echo::Twice },   { "foreign", Echo::Foreign },
        { "garbled", Echo::Garbled },
    };
    if (key == "delay") {
        rule.delay = std::chrono::microseconds(static_cast<long>(std::stod(value) * 1000));
    } else if (key == "echo" && value.starts_with("nth:")) {
        rule.echo = Echo::Nth;
        rule.nth = std::max(1U, static_cast<unsigned>(std::stoul(value.substr(4))));
    } else if (key == "echo") {
        const auto found = kEchoes.find(value);
        if (found == kEchoes.end())
            throw Mistake("unknown behaviour: " + value);
        rule.echo = found->second;
    } else if (key == "tcp") {
        rule.tcp = readTcp(value);
    } else {
        rule.ports[static_cast<unsigned>(std::stoul(key))] = readTcp(value);
    }
}

const FarNet::Rule *FarNet::find(const Address &address) const
{
    const auto holds = [&](const Rule &rule) {
        for (unsigned bit = 0; bit < rule.prefix; bit += 8) {
            const unsigned rest = std::min(8U, rule.prefix - bit);
            if ((rule.address[bit / 8] ^ address[bit / 8]) >> (8 - rest))
                return false;
        }
        return true;
    };
    const auto found = std::ranges::find_if(m_rules, holds);
    return found == m_rules.end() ? nullptr : &*found;
}

void FarNet::receive(Bytes packet, const std::function<void(Answer)> &answer)
{
    Datagram in;
    if (!in.read(packet))
        return;
    const Rule *rule = find(in.target());
    if (!rule)
        return;
    if (in.protocol == (in.isV6 ? kIcmpV6 : kIcmp) && in.body[0] == (in.isV6 ? 128 : 8))
        echoed(in, *rule, answer);
    else if (in.protocol == kTcpProtocol && in.body.size() >= 20)
        connected(in, *rule, answer);
}

void FarNet::echoed(const Datagram &in, const Rule &rule, const std::function<void(Answer)> &answer)
{
    switch (rule.echo) {
    case Echo::Silent:
        return;
    case Echo::Unreachable:
        return answer({ rule.delay, in.error(3, 1, 1, 3) });
    case Echo::Prohibited:
        return answer({ rule.delay, in.error(3, 13, 1, 1) });
    case Echo::Nth:
        if (++m_echoCounts[in.target()] % rule.nth != 0)
            return;
        break;
    default:
        break;
    }
    Packet content(in.body.begin(), in.body.end());
    content[0] = in.isV6 ? 129 : 0;
    content[2] = content[3] = 0;
    if (rule.echo == Echo::Garbled && content.size() > 8)
        content[8] ^= 1;
    Packet other(in.destination.begin(), in.destination.end());
    other.back() ^= 128;
    Datagram from = in;
    if (rule.echo == Echo::Foreign)
        from.destination = other;
    answer({ rule.delay, from.back(in.protocol, content, 2) });
    if (rule.echo == Echo::Twice)
        answer({ rule.delay, from.back(in.protocol, content, 2) });
}

/** The peers keep no state: what a segment says is enough to play one that sends nothing of its own. */
void FarNet::connected(const Datagram &in, const Rule &rule, const std::function<void(Answer)> &answer)
{
    const std::uint32_t sequence = get32(in.body, 4), acknowledged = get32(in.body, 8);
    const unsigned char flags = in.body[13];
    const auto port = rule.ports.find(get16(in.body, 2));
    const Tcp tcp = port == rule.ports.end() ? rule.tcp : port->second;
    if (flags & kRst || tcp == Tcp::Silent)
        return;
    if (!(flags & kSyn)) {
        const std::size_t dataAt = (in.body[12] >> 4) * std::size_t { 4 };
        const auto length = static_cast<std::uint32_t>(in.body.size() - std::min(dataAt, in.body.size()));
        if (flags & kFin)
            answer({ rule.delay, in.segment(acknowledged, sequence + length + 1, kFin | kAck) });
        else if (length > 0)
            answer({ rule.delay, in.segment(acknowledged, sequence + length, kAck) });
        return;
    }
    switch (tcp) {
    case Tcp::Unreachable:
        return answer({ rule.delay, in.error(3, 3, 1, 4) });
    case Tcp::Prohibited:
        return answer({ rule.delay, in.error(3, 13, 1, 1) });
    case Tcp::Refused:
        return answer({ rule.delay, in.segment(0, sequence + 1, kRst | kAck) });
    default:
        break;
    }
    answer({ rule.delay, in.segment(kFirstSequence, sequence + 1, kSyn | kAck) });
    if (tcp == Tcp::Reset)
        answer({ rule.delay, in.segment(kFirstSequence + 1, sequence + 1, kRst | kAck) });
}
