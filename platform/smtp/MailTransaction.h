#pragma once

#include "platform/smtp/SmtpReply.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/** The conversation that hands one mail over, after greeting and login (RFC 5321, 3.3). Knows no socket: answers go
    in, commands come out. The mail goes to all of its recipients or to none. */
class MailTransaction
{
public:
    enum Outcome { Going, Sent, Refused, NotUnderstood };

    /** message is dot-stuffed and ends with the end mark. utf8Addresses: announce them (RFC 6531). */
    MailTransaction(const QString &sender, const QStringList &recipients, const QByteArray &message,
                    bool utf8Addresses);

    /** What came from the server, in pieces of any size. */
    Outcome feed(const QByteArray &bytes);
    /** What is to be sent now. */
    QByteArray takeOutput();
    /** The answer that decided. */
    const SmtpReply &reply() const { return m_replies.last(); }

private:
    struct Step {
        QByteArray text;
        int expected; // first digit of the code that lets the conversation go on
    };
    Outcome judge();

    QList<Step> m_steps; // the first one waits for its answer
    QByteArray m_input;
    QByteArray m_output;
    ReplyReader m_replies;
};
