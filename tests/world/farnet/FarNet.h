#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

/** A network far away, played in one process: it is given the packets that were sent there and answers as its
    configuration says. Pure logic without sockets and clocks; farnet.cpp puts it behind a tunnel device.

    Configuration, one entry a line, "#" starts a comment, the first line that holds the address counts:
        delay MS                        round-trip time of the lines that follow (default 10)
        hosts ADDRESS[/PREFIX] KEY=VALUE…
    KEY=VALUE:
        delay=MS
        echo=answer|silent|nth:N|unreachable|prohibited       (nth:N: only every Nth request is answered)
        echo=twice|foreign|garbled                            (answers that no request deserves: a duplicate,
                                                               from elsewhere, with another content)
        tcp=open|refused|silent|reset|unreachable|prohibited  (reset: accepts, then resets at once;
                                                               unreachable: ICMP port unreachable)
        NUMBER=…                                              like tcp, for this port alone
    Default: echo=answer tcp=refused. Addresses on no line are silent. */
class FarNet
{
public:
    using Bytes = std::span<const unsigned char>;
    using Packet = std::vector<unsigned char>;
    struct Answer {
        std::chrono::microseconds delay;
        Packet packet;
    };
    struct Mistake : std::runtime_error {
        using std::runtime_error::runtime_error;
    };

    /** Throws Mistake that names the line. */
    explicit FarNet(const std::string &configuration);

    /** Calls answer for each packet that comes back for this one; an IP packet without link header. */
    void receive(Bytes packet, const std::function<void(Answer)> &answer);

private:
    using Address = std::array<unsigned char, 16>; // IPv4 as ::ffff:a.b.c.d
    enum class Echo { Answer, Silent, Nth, Unreachable, Prohibited, Twice, Foreign, Garbled };
    enum class Tcp { Open, Refused, Silent, Reset, Unreachable, Prohibited };
    struct Rule {
        Address address {};
        unsigned prefix = 0;
        std::chrono::microseconds delay {};
        Echo echo = Echo::Answer;
        unsigned nth = 1;
        Tcp tcp = Tcp::Refused;
        std::map<unsigned, Tcp> ports;
    };
    struct Datagram; // an incoming packet, taken apart

    void readLine(const std::string &line, std::chrono::microseconds &delay);
    static void readSetting(Rule &rule, const std::string &key, const std::string &value);
    static Tcp readTcp(const std::string &value);
    const Rule *find(const Address &address) const;
    void echoed(const Datagram &in, const Rule &rule, const std::function<void(Answer)> &answer);
    static void connected(const Datagram &in, const Rule &rule, const std::function<void(Answer)> &answer);

    std::vector<Rule> m_rules;
    std::map<Address, unsigned> m_echoCounts; // of hosts that answer only some
};
