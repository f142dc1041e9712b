#pragma once

#include <QString>
#include <exception>

/** What Visual Basic would raise: a number and a description. The one exception type for expected faults. */
class VbError : public std::exception
{
public:
    VbError(long number, const QString &description)
        : m_number(number), m_description(description), m_what(description.toUtf8()) {}

    long number() const { return m_number; }
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    long m_number;
    QString m_description;
    QByteArray m_what;
};
