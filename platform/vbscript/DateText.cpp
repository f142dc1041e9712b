#include "platform/vbscript/DateText.h"

#include <QTime>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

const QDate kDayZero(1899, 12, 30);
constexpr int kSecondsPerDay = 86400;
constexpr qsizetype kLongestText = 1000; // of a date

struct Piece
{
    enum Kind { Number, Month, Morning, Afternoon, Colon, Other } kind;
    int value = 0;
    int digits = 0;
};

/** Month of a name or abbreviation in the locale's language or English, 0 for none; weekday names give -1. */
int monthOf(const QString &word, const QLocale &locale)
{
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    for (const QLocale &language : { locale, english }) {
        for (int month = 1; month <= 12; ++month) {
            for (const auto format : { QLocale::LongFormat, QLocale::ShortFormat }) {
                QString name = language.monthName(month, format);
                name.remove(u'.');
                if (!name.isEmpty() && word.compare(name, Qt::CaseInsensitive) == 0)
                    return month;
            }
        }
        for (int day = 1; day <= 7; ++day)
            for (const auto format : { QLocale::LongFormat, QLocale::ShortFormat })
                if (word.compare(language.dayName(day, format), Qt::CaseInsensitive) == 0)
                    return -1;
    }
    return 0;
}

std::optional<Piece> wordPiece(const QString &word, const QLocale &locale)
{
    const QString folded = word.toLower();
    if (folded == u"am" || folded == u"a" || folded == locale.amText().toLower())
        return Piece { Piece::Morning };
    if (folded == u"pm" || folded == u"p" || folded == locale.pmText().toLower())
        return Piece { Piece::Afternoon };
    const int month = monthOf(word, locale);
    if (month == 0)
        return std::nullopt;
    return month < 0 ? Piece { Piece::Other } : Piece { Piece::Month, month };
}

std::optional<std::vector<Piece>> piecesOf(const QString &text, const QLocale &locale)
{
    std::vector<Piece> pieces;
    for (qsizetype i = 0; i < text.size();) {
        const QChar c = text[i];
        qsizetype end = i;
        if (c >= u'0' && c <= u'9') {
            while (end < text.size() && text[end] >= u'0' && text[end] <= u'9')
                ++end;
            if (end - i > 4)
                return std::nullopt;
            pieces.push_back({ Piece::Number, text.mid(i, end - i).toInt(), int(end - i) });
        } else if (c.isLetter()) {
            while (end < text.size() && text[end].isLetter())
                ++end;
            const std::optional<Piece> piece = wordPiece(text.mid(i, end - i), locale);
            if (!piece)
                return std::nullopt;
            if (piece->kind != Piece::Other)
                pieces.push_back(*piece);
        } else {
            if (c == u':')
                pieces.push_back({ Piece::Colon });
            else if (!c.isSpace() && c != u'/' && c != u'-' && c != u',' && c != u'.')
                return std::nullopt;
            end = i + 1;
        }
        i = end;
    }
    return pieces;
}

/** Takes `h:m[:s] [AM|PM]` or `h AM` out of the pieces. Nothing: the time is unreadable. */
std::optional<std::optional<double>> takeTime(std::vector<Piece> &pieces)
{
    const auto isKind = [&](size_t at, Piece::Kind kind) { return at < pieces.size() && pieces[at].kind == kind; };
    for (size_t i = 0; i < pieces.size(); ++i) {
        const bool half = isKind(i + 1, Piece::Morning) || isKind(i + 1, Piece::Afternoon);
        if (!isKind(i, Piece::Number) || (!isKind(i + 1, Piece::Colon) && !half))
            continue;
        int fields[3] = { pieces[i].value, 0, 0 };
        size_t end = i + 1;
        for (int field = 1; field < 3 && isKind(end, Piece::Colon) && isKind(end + 1, Piece::Number); ++field) {
            fields[field] = pieces[end + 1].value;
            end += 2;
        }
        if (isKind(end, Piece::Morning) || isKind(end, Piece::Afternoon)) {
            if (fields[0] > 12)
                return std::nullopt;
            fields[0] = fields[0] % 12 + (isKind(end, Piece::Afternoon) ? 12 : 0);
            ++end;
        }
        if (fields[0] > 23 || fields[1] > 59 || fields[2] > 59)
            return std::nullopt;
        pieces.erase(pieces.begin() + qint64(i), pieces.begin() + qint64(end));
        return std::optional<double>((fields[0] * 3600 + fields[1] * 60 + fields[2]) / double(kSecondsPerDay));
    }
    return std::optional<double>();
}

int fullYear(const Piece &piece)
{
    if (piece.digits > 2)
        return piece.value;
    return piece.value < 30 ? 2000 + piece.value : 1900 + piece.value;
}

std::optional<double> dayOf(int year, int month, int day)
{
    const QDate date(year, month, day);
    if (!date.isValid() || year < 100 || year > 9999)
        return std::nullopt;
    return double(kDayZero.daysTo(date));
}

enum class Order { MonthDayYear, DayMonthYear, YearMonthDay };

Order orderOf(const QLocale &locale)
{
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype day = format.indexOf(u'd');
    const qsizetype month = format.indexOf(u'M');
    const qsizetype year = format.indexOf(u'y');
    if (locale.language() == QLocale::C || (month < day && day < year))
        return Order::MonthDayYear;
    return year < month ? Order::YearMonthDay : Order::DayMonthYear;
}

std::optional<double> namedMonth(const std::vector<Piece> &numbers, int month)
{
    const int thisYear = QDate::currentDate().year();
    if (numbers.size() == 1) {
        if (numbers[0].digits > 2 || numbers[0].value > 31)
            return dayOf(fullYear(numbers[0]), month, 1);
        return dayOf(thisYear, month, numbers[0].value);
    }
    if (numbers.size() != 2)
        return std::nullopt;
    if (numbers[0].digits <= 2)
        if (const auto day = dayOf(fullYear(numbers[1]), month, numbers[0].value))
            return day;
    return dayOf(fullYear(numbers[0]), month, numbers[1].value);
}

std::optional<double> numericDate(const std::vector<Piece> &n, Order order)
{
    if (n.size() == 2) {
        const int thisYear = QDate::currentDate().year();
        const int first = order == Order::DayMonthYear ? 1 : 0;
        if (n[0].digits <= 2 && n[1].digits <= 2)
            if (const auto day = dayOf(thisYear, n[size_t(first)].value, n[size_t(1 - first)].value))
                return day;
        if (n[0].digits <= 2 && n[1].digits <= 2)
            if (const auto day = dayOf(thisYear, n[size_t(1 - first)].value, n[size_t(first)].value))
                return day;
        return n[1].digits > 2 ? dayOf(n[1].value, n[0].value, 1) : dayOf(fullYear(n[0]), n[1].value, 1);
    }
    if (n.size() != 3)
        return std::nullopt;
    if (n[0].digits > 2) {
        const auto day = dayOf(n[0].value, n[1].value, n[2].value);
        return day ? day : dayOf(n[0].value, n[2].value, n[1].value);
    }
    const auto monthFirst = [&] { return dayOf(fullYear(n[2]), n[0].value, n[1].value); };
    const auto dayFirst = [&] { return dayOf(fullYear(n[2]), n[1].value, n[0].value); };
    const auto yearFirst = [&] { return dayOf(fullYear(n[0]), n[1].value, n[2].value); };
    std::optional<double> day;
    if (order == Order::YearMonthDay)
        day = yearFirst();
    else
        day = order == Order::MonthDayYear ? monthFirst() : dayFirst();
    for (int attempt = 0; !day && attempt < 3; ++attempt)
        day = attempt == 0 ? monthFirst() : attempt == 1 ? dayFirst() : yearFirst();
    return day;
}

std::optional<double> parse(const QString &text, Order order, const QLocale &locale)
{
    std::optional<std::vector<Piece>> pieces = piecesOf(text.trimmed(), locale);
    if (!pieces || pieces->empty())
        return std::nullopt;
    const std::optional<std::optional<double>> time = takeTime(*pieces);
    if (!time)
        return std::nullopt;
    if (pieces->empty())
        return time->has_value() ? *time : std::nullopt;
    std::vector<Piece> numbers;
    int month = 0;
    for (const Piece &piece : *pieces) {
        if (piece.kind == Piece::Number)
            numbers.push_back(piece);
        else if (piece.kind == Piece::Month && month == 0)
            month = piece.value;
        else
            return std::nullopt;
    }
    const std::optional<double> day = month ? namedMonth(numbers, month) : numericDate(numbers, order);
    if (!day)
        return std::nullopt;
    return withTime(*day, time->value_or(0.0));
}

QString shortDateFormat(const QLocale &locale)
{
    if (locale.language() == QLocale::C)
        return u"M/d/yyyy"_s;
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(u"yyyy"_s))
        format.replace(u"yy"_s, u"yyyy"_s);
    return format;
}

QString longTimeFormat(const QLocale &locale)
{
    if (locale.language() == QLocale::C)
        return u"h:mm:ss AP"_s;
    QString format = locale.timeFormat(QLocale::ShortFormat);
    format.replace(u'\u202f', u' ');
    if (!format.contains(u's'))
        format.replace(u"mm"_s, u"mm:ss"_s);
    return format;
}

}

double withTime(double day, double fraction) { return day < 0 ? day - fraction : day + fraction; }

DateParts splitDate(double days)
{
    double whole = std::trunc(days);
    qint64 seconds = std::llround(std::fabs(days - whole) * kSecondsPerDay);
    if (seconds >= kSecondsPerDay) {
        seconds -= kSecondsPerDay;
        whole += 1;
    }
    DateParts parts;
    parts.date = kDayZero.addDays(qint64(whole));
    parts.hour = int(seconds / 3600);
    parts.minute = int(seconds / 60 % 60);
    parts.second = int(seconds % 60);
    return parts;
}

std::optional<double> makeDate(qint64 year, qint64 month, qint64 day)
{
    qint64 months = year * 12 + month - 1;
    year = months >= 0 ? months / 12 : (months - 11) / 12;
    month = months - year * 12 + 1;
    if (year < 0 || year > 10000)
        return std::nullopt;
    const QDate first(year == 0 ? 4 : int(year), int(month), 1);
    if (!first.isValid())
        return std::nullopt;
    const double days = double(kDayZero.daysTo(first)) + double(day - 1);
    if (days < kFirstDate || days >= kBehindLastDate)
        return std::nullopt;
    return days;
}

std::optional<double> parseDateLiteral(const QString &text)
{
    return parse(text, Order::MonthDayYear, QLocale(QLocale::English, QLocale::UnitedStates));
}

std::optional<double> parseDate(QStringView text, const QLocale &locale)
{
    if (text.size() > kLongestText)
        return std::nullopt;
    return parse(text.toString(), orderOf(locale), locale);
}

QString shortDateText(const QDate &date, const QLocale &locale)
{
    QString format = shortDateFormat(locale);
    if (date.year() < 1000)
        format.replace(u"yyyy"_s, u'\'' + QString::number(date.year()) + u'\''); // without leading zeros
    return locale.toString(date, format);
}

QString longDateText(const QDate &date, const QLocale &locale)
{
    if (locale.language() == QLocale::C)
        return QLocale(QLocale::English, QLocale::UnitedStates).toString(date, u"dddd, MMMM d, yyyy"_s);
    return locale.toString(date, QLocale::LongFormat);
}

QString longTimeText(const DateParts &parts, const QLocale &locale)
{
    return locale.toString(QTime(parts.hour, parts.minute, parts.second), longTimeFormat(locale));
}

QString dateText(double days, const QLocale &locale)
{
    const DateParts parts = splitDate(days);
    const bool hasTime = parts.hour || parts.minute || parts.second;
    if (parts.date == kDayZero)
        return longTimeText(parts, locale);
    const QString date = shortDateText(parts.date, locale);
    return hasTime ? date + u' ' + longTimeText(parts, locale) : date;
}

}
