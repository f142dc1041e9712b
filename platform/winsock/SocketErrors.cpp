#include "platform/winsock/SocketErrors.h"

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

struct Row {
    int systemError;
    int number;
    const char *text;
};

constexpr Row kRows[] = {
    { EPERM, 10013, "connection prohibited" },
    { EACCES, 10013, "connection prohibited" },
    { EINVAL, 10022, "address not valid" },
    { EMFILE, 10024, "too many open sockets" },
    { ENFILE, 10024, "too many open files on this machine" },
    { EPROTONOSUPPORT, 10043, "protocol not supported" },
    { EAFNOSUPPORT, 10047, "address family not supported" },
    { EADDRINUSE, 10048, "local port in use" },
    { EADDRNOTAVAIL, 10049, "no local address or port available" },
    { ENETDOWN, 10050, "network is down" },
    { ENETUNREACH, 10051, "network unreachable" },
    { ECONNABORTED, 10053, "connection aborted" },
    { ECONNRESET, 10054, "connection reset" },
    { ENOBUFS, 10055, "no buffer space left" },
    { ENOMEM, 10055, "no buffer space left" },
    { ETIMEDOUT, 10060, "connection timed out" },
    { ECONNREFUSED, 10061, "connection refused" },
    { EHOSTDOWN, 10064, "host is down" },
    { EHOSTUNREACH, 10065, "no route to host" },
    { ENOPROTOOPT, 10065, "destination protocol unreachable" },
};

} // namespace

SocketError socketError(int systemError)
{
    for (const Row &row : kRows) {
        if (row.systemError == systemError)
            return { row.number, QString::fromLatin1(row.text) };
    }
    constexpr int kOtherFailure = 10107; // "a system call that should never fail has failed"
    return { kOtherFailure, u"connection failed (error %1)"_s.arg(systemError) };
}

SocketError hostNotFoundError()
{
    return { 11001, u"host not found"_s };
}

SocketError portNumberError(int port)
{
    return { 10022, u"port number %1 is not valid"_s.arg(port) };
}
