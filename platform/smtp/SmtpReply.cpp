#include "platform/smtp/SmtpReply.h"

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype kLongestText = 2000; // of an answer that goes on and on
}

ReplyReader::Result ReplyReader::addLine(const QByteArray &line)
{
    const QByteArray bare = line.trimmed();
    bool isNumber = false;
    const int code = bare.left(3).toInt(&isNumber);
    const char mark = bare.size() > 3 ? bare.at(3) : ' ';
    if (!isNumber || code < 100 || code > 599 || (mark != ' ' && mark != '-'))
        return NoReply;
    if (m_text.size() < kLongestText)
        m_text += u' ' + QString::fromUtf8(bare.mid(4)).trimmed();
    if (mark == '-')
        return Incomplete;
    m_last = { code, QString::number(code) + m_text };
    m_text.clear();
    return Complete;
}
