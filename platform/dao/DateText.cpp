#include "platform/dao/DateText.h"

#include "platform/dao/DateFormatReader.h"

#include <QRegularExpression>
#include <QStringList>
#include <cmath>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr qint64 kSecondsPerDay = 86400;

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
    explicit Formats(const QLocale &l)
        : locale(l)
    {
        static const QRegularExpression years(u"y+"_s);
        static const QRegularExpression zone(u"[\\s,]*\\(?t+\\)?\\s*"_s);
        date = editFormat(l.dateFormat(QLocale::ShortFormat),
                          [](QString part) { return part.replace(years, u"yyyy"_s); });
        time = editFormat(l.timeFormat(QLocale::LongFormat), [](QString part) {
                   return part.replace(zone, u" "_s);
               }).trimmed();
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

std::optional<QDateTime> valid(const QDateTime &when)
{
    return when.isValid() ? std::optional(when) : std::nullopt;
}

QString slashed(QString text) { return text.replace(u'.', u'/'); }

std::optional<QDateTime> readBy(const QString &format, const QString &text)
{
    return DateFormatReader(formats().locale, format, text).run();
}

/** The instant whose general date, as it is or with slashes for dots, is exactly this text. */
std::optional<QDateTime> parseExactly(const QString &text)
{
    const auto when = readBy(formats().date + u' ' + formats().time, text);
    if (!when)
        return {};
    const QString written = generalDateText(*when);
    return written == text || slashed(written) == text ? when : std::nullopt;
}

/** Takes the time of day off the end of the text; false when there is a colon that is no time. */
bool takeTime(QString &text, QTime &time)
{
    static const QRegularExpression pattern(
        u"(?:^|\\s)(\\d{1,2})(?::(\\d{1,2}))?(?::(\\d{1,2}))?\\s*(AM|PM)?$"_s,
        QRegularExpression::CaseInsensitiveOption);
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
            return numbers[0] > 31 ? dateOf(numbers[0], month, numbers[1])
                                   : dateOf(numbers[1], month, numbers[0]);
        return count == 1
            ? (numbers[0] > 31 ? dateOf(numbers[0], month, 1) : dateOf(thisYear, month, numbers[0]))
            : QDate();
    }
    if (count == 2)
        return dateOf(thisYear, numbers[0], numbers[1]);
    if (count != 3)
        return {};
    if (parts.front().size() == 4)
        return dateOf(numbers[0], numbers[1], numbers[2]);
    const QDate monthFirst = dateOf(numbers[2], numbers[0], numbers[1]);
    return monthFirst.isValid() ? monthFirst : dateOf(numbers[2], numbers[1], numbers[0]);
}

std::optional<QDateTime> parseJet(const QString &literal)
{
    static const QRegularExpression separators(u"[/\\-,\\s]+"_s);
    QString text = literal.trimmed();
    QTime time(0, 0);
    if (text.isEmpty() || !takeTime(text, time))
        return {};
    if (text.isEmpty())
        return QDateTime(oleDayZero(), time);
    const QStringList parts = text.split(separators, Qt::SkipEmptyParts);
    const QDate date = parts.size() > 3 ? QDate() : dateFromParts(parts);
    return date.isValid() ? valid(QDateTime(date, time)) : std::nullopt;
}

} // namespace

QLocale dateLocale() { return formats().locale; }

void setDateLocale(const QLocale &locale) { formats() = Formats(locale); }

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
    for (const QString &time : {f.time, u"H:m:s"_s, u"H:m"_s, u"h:m:s AP"_s, u"h:m AP"_s}) {
        if (const auto both = readBy(f.date + u' ' + time, trimmed))
            return both;
        if (const auto alone = readBy(time, trimmed))
            return alone;
    }
    if (const auto alone = readBy(f.date, trimmed))
        return alone;
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
    const qint64 seconds = oleDayZero().daysTo(when.date()) * kSecondsPerDay + (ms + 500) / 1000;
    const qint64 day
        = seconds >= 0 ? seconds / kSecondsPerDay : -((-seconds + kSecondsPerDay - 1) / kSecondsPerDay);
    const double fraction = double(seconds - day * kSecondsPerDay) / kSecondsPerDay;
    return day >= 0 ? double(seconds) / kSecondsPerDay : double(day) - fraction;
}

QDateTime fromOleDate(double days)
{
    const double day = std::trunc(days);
    const qint64 seconds = std::llround(std::fabs(days - day) * kSecondsPerDay);
    const QDate date = oleDayZero().addDays(qint64(day) + seconds / kSecondsPerDay);
    return QDateTime(date, QTime(0, 0).addSecs(int(seconds % kSecondsPerDay)));
}

} // namespace dao
