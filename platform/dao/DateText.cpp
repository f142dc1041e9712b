#include "platform/dao/DateText.h"

#include <QRegularExpression>
#include <QStringList>
#include <cmath>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr qint64 kSecondsPerDay = 86400;

QDate dayZero()
{
    return QDate(1899, 12, 30);
}

/** Applies an edit to the format outside its quoted parts. */
template <class F>
QString editFormat(const QString &format, F &&edit)
{
    QStringList parts = format.split(u'\'');
    for (qsizetype i = 0; i < parts.size(); i += 2)
        parts[i] = edit(parts[i]);
    return parts.join(u'\'');
}

/** The locale and its two formats, worked out once. */
struct Formats {
    explicit Formats(const QLocale &l) : locale(l)
    {
        static const QRegularExpression years(u"y+"_s);
        static const QRegularExpression zone(u"\\s*\\(?t+\\)?\\s*"_s);
        date = editFormat(l.dateFormat(QLocale::ShortFormat), [](QString part) { return part.replace(years, u"yyyy"_s); });
        time = editFormat(l.timeFormat(QLocale::LongFormat), [](QString part) { return part.replace(zone, u" "_s); })
                   .trimmed();
    }
    QLocale locale;
    QString date;
    QString time;
};

Formats &formats()
{
    static Formats current(QLocale::system());
    return current;
}

/** Reading takes one digit where writing puts two. */
QString loosened(const QString &format)
{
    static const QRegularExpression pairs(u"\\b(d|M|h|H|m|s)\\1\\b"_s);
    return editFormat(format, [](QString part) { return part.replace(pairs, u"\\1"_s); });
}

std::optional<QDateTime> valid(const QDateTime &when)
{
    return when.isValid() ? std::optional(when) : std::nullopt;
}

/** The locale's AM and PM words keep their dots: "10:00:00 a/m/" cannot be read. */
QString restoreDayHalves(QString text)
{
    for (const QString &half : {formats().locale.amText(), formats().locale.pmText()}) {
        QString slashed = half;
        slashed.replace(u'.', u'/');
        if (slashed != half)
            text.replace(slashed, half, Qt::CaseInsensitive);
    }
    return text;
}

QString slashed(QString text)
{
    return text.replace(u'.', u'/');
}

/** The instant whose general date, as it is or with slashes for dots, is exactly this text. */
std::optional<QDateTime> parseExactly(const QString &text)
{
    const Formats &f = formats();
    const QString format = f.date + u' ' + f.time;
    const QDateTime plain = f.locale.toDateTime(text, format);
    if (plain.isValid() && generalDateText(plain) == text)
        return plain;
    const QDateTime dotted = f.locale.toDateTime(restoreDayHalves(text), slashed(format));
    if (dotted.isValid() && slashed(generalDateText(dotted)) == text)
        return dotted;
    return {};
}

/** Takes the time of day off the end of the text; false when there is a colon that is no time. */
bool takeTime(QString &text, QTime &time)
{
    static const QRegularExpression pattern(
        u"(?:^|\\s)(\\d{1,2})(?::(\\d{1,2}))?(?::(\\d{1,2}))?\\s*(AM|PM)?$"_s, QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(text);
    const bool isTime = match.hasMatch() && (!match.captured(2).isEmpty() || !match.captured(4).isEmpty());
    if (!isTime)
        return !text.contains(u':');
    int hour = match.captured(1).toInt();
    const QString half = match.captured(4).toUpper();
    if (!half.isEmpty() && (hour < 1 || hour > 12))
        return false;
    if (!half.isEmpty())
        hour = hour % 12 + (half == u"PM" ? 12 : 0);
    time = QTime(hour, match.captured(2).toInt(), match.captured(3).toInt());
    text = text.left(match.capturedStart()).trimmed();
    return time.isValid();
}

int monthByName(const QString &word)
{
    for (int month = 1; month <= 12 && word.size() >= 3; ++month) {
        if (QLocale::c().monthName(month).startsWith(word, Qt::CaseInsensitive))
            return month;
    }
    return 0;
}

QDate makeDate(int year, int month, int day)
{
    if (year < 100)
        year += year < 30 ? 2000 : 1900;
    return QDate(year, month, day);
}

QDate dateFromParts(const QStringList &parts)
{
    int numbers[3] = {0, 0, 0};
    int month = 0;
    int count = 0;
    for (const QString &part : parts) {
        bool isNumber = false;
        const int number = part.toInt(&isNumber);
        if (isNumber)
            numbers[count++] = number;
        else if (month == 0 && (month = monthByName(part)) > 0)
            continue;
        else
            return {};
    }
    const int thisYear = QDate::currentDate().year();
    if (month > 0) {
        if (count == 2)
            return numbers[0] > 31 ? makeDate(numbers[0], month, numbers[1]) : makeDate(numbers[1], month, numbers[0]);
        return count == 1 ? (numbers[0] > 31 ? makeDate(numbers[0], month, 1) : makeDate(thisYear, month, numbers[0]))
                          : QDate();
    }
    if (count == 2)
        return makeDate(thisYear, numbers[0], numbers[1]);
    if (count != 3)
        return {};
    if (parts.front().size() == 4)
        return makeDate(numbers[0], numbers[1], numbers[2]);
    const QDate monthFirst = makeDate(numbers[2], numbers[0], numbers[1]);
    return monthFirst.isValid() ? monthFirst : makeDate(numbers[2], numbers[1], numbers[0]);
}

std::optional<QDateTime> parseJet(const QString &literal)
{
    static const QRegularExpression separators(u"[/\\-,\\s]+"_s);
    QString text = literal.trimmed();
    QTime time(0, 0);
    if (text.isEmpty() || !takeTime(text, time))
        return {};
    if (text.isEmpty())
        return QDateTime(dayZero(), time);
    const QStringList parts = text.split(separators, Qt::SkipEmptyParts);
    const QDate date = parts.size() > 3 ? QDate() : dateFromParts(parts);
    return date.isValid() ? valid(QDateTime(date, time)) : std::nullopt;
}

} // namespace

QLocale dateLocale()
{
    return formats().locale;
}

void setDateLocale(const QLocale &locale)
{
    formats() = Formats(locale);
}

QString generalDateText(const QDateTime &when)
{
    const Formats &f = formats();
    return f.locale.toString(when.date(), f.date) + u' ' + f.locale.toString(when.time(), f.time);
}

std::optional<QDateTime> parseGeneralDate(const QString &text)
{
    const Formats &f = formats();
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {};
    if (const auto exact = parseExactly(trimmed))
        return exact;
    const QString date = loosened(f.date);
    for (const QString &time : {loosened(f.time), u"H:m:s"_s, u"H:m"_s, u"h:m:s AP"_s, u"h:m AP"_s}) {
        if (const QDateTime both = f.locale.toDateTime(trimmed, date + u' ' + time); both.isValid())
            return both;
        if (const QTime alone = f.locale.toTime(trimmed, time); alone.isValid())
            return QDateTime(dayZero(), alone);
    }
    if (const QDate alone = f.locale.toDate(trimmed, date); alone.isValid())
        return valid(QDateTime(alone, QTime(0, 0)));
    return parseJet(trimmed);
}

std::optional<QDateTime> parseDateLiteral(const QString &text)
{
    const auto exact = parseExactly(text.trimmed());
    return exact ? exact : parseJet(text);
}

double toOleDate(const QDateTime &when)
{
    const qint64 ms = when.time().msecsSinceStartOfDay();
    const qint64 seconds = dayZero().daysTo(when.date()) * kSecondsPerDay + (ms + 500) / 1000;
    const qint64 day = seconds >= 0 ? seconds / kSecondsPerDay : -((-seconds + kSecondsPerDay - 1) / kSecondsPerDay);
    const double fraction = double(seconds - day * kSecondsPerDay) / kSecondsPerDay;
    return day >= 0 ? double(seconds) / kSecondsPerDay : double(day) - fraction;
}

QDateTime fromOleDate(double days)
{
    const double day = std::trunc(days);
    const qint64 seconds = std::llround(std::fabs(days - day) * kSecondsPerDay);
    const QDate date = dayZero().addDays(qint64(day) + seconds / kSecondsPerDay);
    return QDateTime(date, QTime(0, 0).addSecs(int(seconds % kSecondsPerDay)));
}

} // namespace dao
