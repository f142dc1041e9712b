#pragma once

#include <QString>

/** By which ways the process may look for its ICMP sockets. The default is every way, in this order:
    datagram socket, raw socket, socket handed over by the helper program. */
struct EchoAccess {
    bool datagram = true;
    bool raw = true;
    QString helperPath; // empty: kavro-icmp beside the executable
};

/** Applies to sockets that are opened from now on; they are kept until the last DPingCtl element is gone. */
void setEchoAccess(const EchoAccess &access);
const EchoAccess &echoAccess();
