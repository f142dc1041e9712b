#pragma once

#include <QByteArray>
#include <QString>

/** One answer of an SMTP server (RFC 5321, 4.2): a code and what was said with it, on one line or several. */
struct SmtpReply {
    int code = 0;
    QString text; // "550 5.1.1 no such user": the code once, the lines joined by blanks

    bool isRefusal() const { return code >= 400; }
};

/** Puts an answer together from its lines. */
class ReplyReader
{
public:
    enum Result { Incomplete, Complete, NoReply };

    /** Takes one line, with or without its line break. NoReply: this is no SMTP answer. */
    Result addLine(const QByteArray &line);
    /** The last complete answer. */
    const SmtpReply &last() const { return m_last; }

private:
    QString m_text; // of the answer whose lines are still coming
    SmtpReply m_last;
};
