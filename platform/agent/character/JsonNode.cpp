#include "platform/agent/character/JsonNode.h"

#include "platform/agent/Agent.h"

#include <QRegularExpression>

#include <cmath>

using namespace Qt::StringLiterals;

namespace agent {

void JsonNode::fail(const QString &why) const
{
    throw Error(ErrorNumber::BadData,
                u"The character file is damaged: %1 %2."_s.arg(m_path.isEmpty() ? u"its description"_s : m_path, why));
}

JsonNode JsonNode::at(const QString &key) const
{
    if (!m_value.isObject())
        fail(u"is no object"_s);
    if (!has(key))
        fail(u"has no %1"_s.arg(key));
    return { m_value[key], m_path.isEmpty() ? key : m_path + u'/' + key };
}

JsonNode JsonNode::at(qsizetype index) const
{
    return { m_value[index], m_path + u'[' + QString::number(index) + u']' };
}

QStringList JsonNode::keys(qsizetype most) const
{
    if (!m_value.isObject())
        fail(u"is no object"_s);
    const QStringList keys = m_value.toObject().keys();
    if (keys.size() > most)
        fail(u"has more than %1 entries"_s.arg(most));
    for (const QString &key : keys)
        JsonNode(key, m_path + u'/' + key.left(80)).word();
    return keys;
}

qsizetype JsonNode::length(qsizetype least, qsizetype most) const
{
    if (!m_value.isArray())
        fail(u"is no list"_s);
    const qsizetype length = m_value.toArray().size();
    if (length < least || length > most)
        fail(u"has %1 entries instead of %2 to %3"_s.arg(length).arg(least).arg(most));
    return length;
}

qreal JsonNode::number(qreal least, qreal most) const
{
    const qreal number = m_value.toDouble(std::nan(""));
    if (!(number >= least && number <= most))
        fail(u"is no number from %1 to %2"_s.arg(least).arg(most));
    return number;
}

int JsonNode::integer(int least, int most) const
{
    const qreal value = number(least, most);
    if (value != std::floor(value))
        fail(u"is no whole number"_s);
    return int(value);
}

bool JsonNode::flag() const
{
    if (!m_value.isBool())
        fail(u"is neither true nor false"_s);
    return m_value.toBool();
}

QString JsonNode::text(qsizetype longest) const
{
    if (!m_value.isString())
        fail(u"is no text"_s);
    const QString text = m_value.toString();
    if (text.size() > longest)
        fail(u"is longer than %1 letters"_s.arg(longest));
    return text;
}

QString JsonNode::word() const
{
    static const QRegularExpression plain(u"^[A-Za-z0-9_.]{1,64}$"_s);
    const QString word = text(64);
    if (!plain.match(word).hasMatch())
        fail(u"is no plain name"_s);
    return word;
}

} // namespace agent
