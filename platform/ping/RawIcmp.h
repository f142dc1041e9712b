#pragma once

/** Opens a raw ICMP socket of the family (AF_INET or AF_INET6), non-blocking and closed on exec, that lets
    through echo replies and error messages only: on the loopback our own requests would wake us as well.
    Returns -1 with errno set if the system refuses. Plain C++, because the helper program uses it too. */
int openRawIcmp(int family);
