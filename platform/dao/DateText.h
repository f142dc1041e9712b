#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <optional>

/** The one place where dates become text and text becomes dates (system locale, OLE day numbers). */
namespace dao {

/** General date: the system locale's short date, a blank, its long time without zone; years have four digits. */
QString generalDateText(const QDateTime &when);

/** Reads what generalDateText() wrote, and a date or a time alone; empty when the text is no date. */
std::optional<QDateTime> parseGeneralDate(const QString &text);

/** Reads the inside of a #…# literal. A text formed by generalDateText(), also with every "." replaced by "/",
    means the instant it was formed from; anything else is read month/day/year as Jet does. */
std::optional<QDateTime> parseDateLiteral(const QString &text);

/** OLE day number: days since 30 December 1899, local time, fraction = time of day (counted forward also before day 0).
    Rounded to whole seconds. */
double toOleDate(const QDateTime &when);
QDateTime fromOleDate(double days);

/** The locale that dates are written and read in; QLocale::system() unless a test has set another. */
QLocale dateLocale();
void setDateLocale(const QLocale &locale);

} // namespace dao
