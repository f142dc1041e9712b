#include "platform/smtp/MailTransaction.h"

namespace {
constexpr qsizetype kLongestLine = 8192; // far beyond what a server may send (RFC 5321, 4.5.3.1.5)
}

MailTransaction::MailTransaction(const QString &sender, const QStringList &recipients, const QByteArray &message,
                                 bool utf8Addresses)
{
    constexpr int kDone = 2;
    constexpr int kGoOn = 3;
    m_steps.append({ "MAIL FROM:<" + sender.toUtf8() + (utf8Addresses ? "> SMTPUTF8\r\n" : ">\r\n"), kDone });
    for (const QString &recipient : recipients)
        m_steps.append({ "RCPT TO:<" + recipient.toUtf8() + ">\r\n", kDone });
    m_steps.append({ "DATA\r\n", kGoOn });
    m_steps.append({ message, kDone });
    m_output = m_steps.constFirst().text;
}

MailTransaction::Outcome MailTransaction::feed(const QByteArray &bytes)
{
    m_input += bytes;
    for (qsizetype end = m_input.indexOf('\n'); end >= 0; end = m_input.indexOf('\n')) {
        const ReplyReader::Result result = m_replies.addLine(m_input.left(end));
        m_input.remove(0, end + 1);
        if (result == ReplyReader::NoReply)
            return NotUnderstood;
        if (result == ReplyReader::Incomplete)
            continue;
        const Outcome outcome = judge();
        if (outcome != Going)
            return outcome;
    }
    return m_input.size() > kLongestLine ? NotUnderstood : Going;
}

MailTransaction::Outcome MailTransaction::judge()
{
    if (reply().isRefusal())
        return Refused;
    // An answer to a command that has not left yet belongs to nothing; taking it for one could lose the mail.
    if (!m_output.isEmpty() || reply().code / 100 != m_steps.constFirst().expected)
        return NotUnderstood;
    m_steps.removeFirst();
    if (m_steps.isEmpty())
        return Sent;
    m_output = m_steps.constFirst().text;
    return Going;
}

QByteArray MailTransaction::takeOutput() { return std::exchange(m_output, {}); }
