#pragma once

#include <QString>

struct SmtpReply;
struct SmtpServer;

/** The reason of a failed delivery as part of a sentence: without apostrophes, line breaks and a final full stop.
    curlCode is libcurl's result, systemError the errno behind it or 0. */
QString plainReason(int curlCode, int systemError);

/** What the server said, made fit for the log; the server's words may repeat the password, the result does not. */
QString saidByServer(const SmtpReply &reply, const SmtpServer &server);

/** Any text as part of a sentence: no apostrophes, control characters, line breaks, final full stop;
    300 characters. */
QString sentencePart(const QString &text);
