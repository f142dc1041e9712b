#pragma once

#include <QString>

/** What a failed attempt reports: the control's error number and one plain sentence part, without
    apostrophes. */
struct SocketError {
    int number;
    QString text;
};

/** Translates an errno of a socket call. */
SocketError socketError(int systemError);
/** The name has no address. */
SocketError hostNotFoundError();
/** The value cannot be a remote port. */
SocketError portNumberError(int port);
