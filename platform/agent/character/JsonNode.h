#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>

namespace agent {

/** A value of a description together with the way to it, so that a fault can be told by its place. Every getter checks
    kind and bounds, and throws agent::Error BadData. */
class JsonNode
{
public:
    JsonNode(QJsonValue value, QString path)
        : m_value(std::move(value))
        , m_path(std::move(path))
    {
    }

    [[noreturn]] void fail(const QString &why) const;

    bool has(const QString &key) const { return m_value[key] != QJsonValue(QJsonValue::Undefined); }
    JsonNode at(const QString &key) const;
    JsonNode at(qsizetype index) const;
    /** An object's keys. */
    QStringList keys(qsizetype most) const;
    /** A list's length. */
    qsizetype length(qsizetype least, qsizetype most) const;

    qreal number(qreal least, qreal most) const;
    int integer(int least, int most) const;
    bool flag() const;
    QString text(qsizetype longest) const;
    /** Letters, digits, "_" and "."; neither empty nor long. */
    QString word() const;

    bool isText() const { return m_value.isString(); }
    const QString &path() const { return m_path; }

private:
    QJsonValue m_value;
    QString m_path;
};

} // namespace agent
