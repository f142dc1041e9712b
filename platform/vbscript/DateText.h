#pragma once

#include <QDate>
#include <QLocale>
#include <QString>
#include <optional>

namespace vbs {

/** OLE dates: days since 30 December 1899; the fraction is the time of day also in front of that day. */
constexpr double kFirstDate = -657434.0;      // 1 January 100
constexpr double kBehindLastDate = 2958466.0; // 1 January 10000

struct DateParts
{
    QDate date;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

DateParts splitDate(double days);
/** Days of a calendar date that may be out of QDate's month or day range by rolling over; nothing out of 100–9999. */
std::optional<double> makeDate(qint64 year, qint64 month, qint64 day);
/** Adds a time of day to a whole number of days. */
double withTime(double day, double fraction);
/** Reads the text of a `#…#` literal by fixed US rules. */
std::optional<double> parseDateLiteral(const QString &text);
/** Reads a date and / or time in the locale's order of day and month, or any other that is possible. */
std::optional<double> parseDate(QStringView text, const QLocale &locale);
/** Windows' general date: short date and long time, each only if there is one. */
QString dateText(double days, const QLocale &locale);
QString shortDateText(const QDate &date, const QLocale &locale);
QString longDateText(const QDate &date, const QLocale &locale);
QString longTimeText(const DateParts &parts, const QLocale &locale);

}
