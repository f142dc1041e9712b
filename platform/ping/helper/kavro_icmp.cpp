// Opens raw ICMP sockets and hands them over to the program that started it. It alone carries cap_net_raw, so
// that the large program needs no rights. It reads no input, takes no arguments and obeys no environment.
#include "platform/ping/RawIcmp.h"

#include <cstring>
#include <iterator>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int kHandover = 3;
constexpr int kFamilies[] = { AF_INET, AF_INET6 };

bool isUnixSocket(int fd)
{
    int domain = 0;
    socklen_t size = sizeof domain;
    return getsockopt(fd, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0 && domain == AF_UNIX;
}

bool dropRights()
{
    __user_cap_header_struct header { _LINUX_CAPABILITY_VERSION_3, 0 };
    __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] {};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && setgid(getgid()) == 0 && setuid(getuid()) == 0
        && syscall(SYS_capset, &header, none) == 0;
}

bool handOver(const int *sockets, std::size_t count)
{
    char note = 'K';
    iovec part { &note, 1 };
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof kFamilies)] {};
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = CMSG_SPACE(count * sizeof(int));
    cmsghdr *rights = CMSG_FIRSTHDR(&message);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(count * sizeof(int));
    std::memcpy(CMSG_DATA(rights), sockets, count * sizeof(int));
    return sendmsg(kHandover, &message, MSG_NOSIGNAL) == 1;
}

} // namespace

int main()
{
    if (!isUnixSocket(kHandover))
        return 2;
    int sockets[std::size(kFamilies)];
    std::size_t count = 0;
    for (const int family : kFamilies) {
        const int fd = openRawIcmp(family);
        if (fd >= 0)
            sockets[count++] = fd;
    }
    if (!dropRights())
        return 3;
    if (count == 0)
        return 4;
    return handOver(sockets, count) ? 0 : 5;
}
