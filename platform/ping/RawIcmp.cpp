#include "platform/ping/RawIcmp.h"

#include <linux/icmp.h>
#include <netinet/icmp6.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace {

void filterV4(int fd)
{
    icmp_filter filter {};
    filter.data = ~((1U << ICMP_ECHOREPLY) | (1U << ICMP_DEST_UNREACH) | (1U << ICMP_TIME_EXCEEDED)
                    | (1U << ICMP_PARAMETERPROB));
    // Without the filter there is more to read and to ignore, nothing else.
    setsockopt(fd, SOL_RAW, ICMP_FILTER, &filter, sizeof filter);
}

void filterV6(int fd)
{
    icmp6_filter filter;
    ICMP6_FILTER_SETBLOCKALL(&filter);
    ICMP6_FILTER_SETPASS(ICMP6_ECHO_REPLY, &filter);
    ICMP6_FILTER_SETPASS(ICMP6_DST_UNREACH, &filter);
    ICMP6_FILTER_SETPASS(ICMP6_PACKET_TOO_BIG, &filter);
    ICMP6_FILTER_SETPASS(ICMP6_TIME_EXCEEDED, &filter);
    ICMP6_FILTER_SETPASS(ICMP6_PARAM_PROB, &filter);
    setsockopt(fd, IPPROTO_ICMPV6, ICMP6_FILTER, &filter, sizeof filter);
}

} // namespace

int openRawIcmp(int family)
{
    const int protocol
        = family == AF_INET ? static_cast<int>(IPPROTO_ICMP) : static_cast<int>(IPPROTO_ICMPV6);
    const int fd = socket(family, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, protocol);
    if (fd < 0)
        return -1;
    if (family == AF_INET)
        filterV4(fd);
    else
        filterV6(fd);
    return fd;
}
