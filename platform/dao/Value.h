#pragma once

#include <QDateTime>
#include <QString>
#include <variant>

/** A field's value: Null, a whole number, a number, a yes/no, a date or a text. */
namespace dao {

class Value
{
public:
    Value() = default; // Null
    Value(int v) : m_data(qint64(v)) {}
    Value(long v) : m_data(qint64(v)) {}
    Value(qint64 v) : m_data(v) {}
    Value(double v) : m_data(v) {}
    Value(bool v) : m_data(v) {}
    Value(const QString &v) : m_data(v) {}
    Value(const QDateTime &v);
    Value(const char *) = delete;

    static Value null() { return Value(); }

    bool isNull() const { return std::holds_alternative<std::monostate>(m_data); }
    bool isText() const { return std::holds_alternative<QString>(m_data); }

    /** The value as text; Null reads as "" (the & "" idiom), dates as general date, flags as True/False. */
    QString text() const;
    /** Whole number (half to even). Throws VbError 94 on Null, 13 when the text is no number, 6 when out of range. */
    qint64 integer() const;
    double number() const;
    /** Non-zero is true; the words True and False are understood. Throws VbError 94 on Null, 13 otherwise. */
    bool boolean() const;
    /** Local date and time; invalid for Null. Throws VbError 13 when the value is no date. */
    QDateTime dateTime() const;

    bool operator==(const Value &other) const = default;

    using Data = std::variant<std::monostate, qint64, double, bool, QDateTime, QString>;
    const Data &data() const { return m_data; }

private:
    Data m_data;
};

} // namespace dao
