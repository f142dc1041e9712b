#include "platform/dao/Value.h"

#include "platform/dao/DateText.h"
#include "platform/dao/VbError.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

[[noreturn]] void raiseNull() { throw VbError(94, u"Invalid use of Null"_s); }

[[noreturn]] void raiseMismatch() { throw VbError(13, u"Type mismatch"_s); }

[[noreturn]] void raiseOverflow() { throw VbError(6, u"Overflow"_s); }

double parseNumber(const QString &text)
{
    const QString trimmed = text.trimmed();
    // "nan" and "inf" are words here, not numbers.
    const bool plausible = std::any_of(trimmed.begin(), trimmed.end(), [](QChar c) { return c.isDigit(); });
    bool ok = false;
    double number = QLocale::c().toDouble(trimmed, &ok);
    if (!ok)
        number = dateLocale().toDouble(trimmed, &ok);
    if (!ok || !plausible || !std::isfinite(number))
        raiseMismatch();
    return number;
}

qint64 roundToEven(double number)
{
    constexpr double kLimit = 9.2e18;
    if (!(std::fabs(number) < kLimit))
        raiseOverflow();
    return std::llrint(number);
}

/** Reads a value as a number; texts and dates are handed to the given readers. */
struct NumberReader {
    double operator()(std::monostate) const { raiseNull(); }
    double operator()(qint64 v) const { return double(v); }
    double operator()(double v) const { return v; }
    double operator()(bool v) const { return v ? -1 : 0; }
    double operator()(const QDateTime &v) const { return toOleDate(v); }
    double operator()(const QString &v) const { return parseNumber(v); }
};

} // namespace

Value::Value(const QDateTime &v)
{
    if (v.isValid())
        m_data = v;
}

QString Value::text() const
{
    struct Writer {
        QString operator()(std::monostate) const { return {}; }
        QString operator()(qint64 v) const { return QString::number(v); }
        QString operator()(double v) const { return QString::number(v, 'g', 15); }
        QString operator()(bool v) const { return v ? u"True"_s : u"False"_s; }
        QString operator()(const QDateTime &v) const { return generalDateText(v); }
        QString operator()(const QString &v) const { return v; }
    };
    return std::visit(Writer {}, m_data);
}

qint64 Value::integer() const
{
    if (const auto *whole = std::get_if<qint64>(&m_data))
        return *whole;
    return roundToEven(number());
}

double Value::number() const { return std::visit(NumberReader {}, m_data); }

bool Value::boolean() const
{
    if (const auto *flag = std::get_if<bool>(&m_data))
        return *flag;
    if (isText()) {
        const QString word = text().trimmed();
        if (word.compare(u"True"_s, Qt::CaseInsensitive) == 0)
            return true;
        if (word.compare(u"False"_s, Qt::CaseInsensitive) == 0)
            return false;
    }
    return number() != 0;
}

QDateTime Value::dateTime() const
{
    if (isNull())
        return {};
    if (const auto *when = std::get_if<QDateTime>(&m_data))
        return *when;
    if (isText()) {
        const auto when = parseGeneralDate(text());
        if (!when)
            raiseMismatch();
        return *when;
    }
    constexpr double kLimit = 2958466; // the day after 31 December 9999
    const double days = number();
    if (!(std::fabs(days) < kLimit))
        raiseMismatch();
    return fromOleDate(days);
}

} // namespace dao
