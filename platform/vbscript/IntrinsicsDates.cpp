#include "platform/vbscript/DateText.h"
#include "platform/vbscript/IntrinsicTables.h"

#include <QDateTime>
#include <QTime>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr double kSecondsPerDay = 86400.0;

enum class Unit { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Unit unitOf(const QString &interval)
{
    static const QHash<QString, Unit> kUnits = {
        { u"yyyy"_s, Unit::Year }, { u"q"_s, Unit::Quarter }, { u"m"_s, Unit::Month }, { u"y"_s, Unit::DayOfYear },
        { u"d"_s, Unit::Day }, { u"w"_s, Unit::Weekday }, { u"ww"_s, Unit::Week }, { u"h"_s, Unit::Hour },
        { u"n"_s, Unit::Minute }, { u"s"_s, Unit::Second },
    };
    const auto found = kUnits.constFind(interval.toLower());
    if (found == kUnits.constEnd())
        throw ScriptError(err::kInvalidCall);
    return *found;
}

double today() { return *makeDate(QDate::currentDate().year(), QDate::currentDate().month(), QDate::currentDate().day()); }
double timeNow() { return double(QTime::currentTime().msecsSinceStartOfDay() / 1000) / kSecondsPerDay; }

Value dateNow(Engine &, Args &) { return Value::date(today()); }
Value timeOnly(Engine &, Args &) { return Value::date(timeNow()); }
Value now(Engine &, Args &) { return Value::date(today() + timeNow()); }
Value timer(Engine &, Args &)
{
    return Value::single(double(QTime::currentTime().msecsSinceStartOfDay()) / 1000.0);
}

template <class Part>
Value datePart(Engine &engine, Args &args, Part part)
{
    if (isNull(args, 0))
        return Value::null();
    return Value::integer(qint16(part(splitDate(toDate(engine, args[0])))));
}
Value year(Engine &e, Args &a) { return datePart(e, a, [](const DateParts &p) { return p.date.year(); }); }
Value month(Engine &e, Args &a) { return datePart(e, a, [](const DateParts &p) { return p.date.month(); }); }
Value day(Engine &e, Args &a) { return datePart(e, a, [](const DateParts &p) { return p.date.day(); }); }
Value hour(Engine &e, Args &a) { return datePart(e, a, [](const DateParts &p) { return p.hour; }); }
Value minute(Engine &e, Args &a) { return datePart(e, a, [](const DateParts &p) { return p.minute; }); }
Value second(Engine &e, Args &a) { return datePart(e, a, [](const DateParts &p) { return p.second; }); }

/** First day of the week: 1 Sunday … 7 Saturday, 0 what the locale says. */
int firstDay(Engine &engine, Args &args, int index, int otherwise)
{
    const int first = args.integer(index, otherwise);
    if (first < 0 || first > 7)
        throw ScriptError(err::kInvalidCall);
    if (first > 0)
        return first;
    return engine.locale().language() == QLocale::C ? 1 : int(engine.locale().firstDayOfWeek()) % 7 + 1;
}

int weekdayFrom(const QDate &date, int first) { return (date.dayOfWeek() % 7 + 1 - first + 7) % 7 + 1; }

Value weekday(Engine &engine, Args &args)
{
    const int first = firstDay(engine, args, 1, 1);
    return datePart(engine, args, [first](const DateParts &parts) { return weekdayFrom(parts.date, first); });
}

QLocale namesOf(const Engine &engine)
{
    const bool plain = engine.locale().language() == QLocale::C;
    return plain ? QLocale(QLocale::English, QLocale::UnitedStates) : engine.locale();
}

Value weekdayName(Engine &engine, Args &args)
{
    const int number = args.integer(0);
    const bool brief = args.boolean(1, false);
    const int first = firstDay(engine, args, 2, 0);
    if (number < 1 || number > 7)
        throw ScriptError(err::kInvalidCall);
    const int sundayBased = (first + number - 2) % 7; // 0 Sunday
    return Value::string(namesOf(engine).dayName(sundayBased == 0 ? 7 : sundayBased,
        brief ? QLocale::ShortFormat : QLocale::LongFormat));
}

Value monthName(Engine &engine, Args &args)
{
    const int number = args.integer(0);
    const bool brief = args.boolean(1, false);
    if (number < 1 || number > 12)
        throw ScriptError(err::kInvalidCall);
    return Value::string(namesOf(engine).monthName(number, brief ? QLocale::ShortFormat : QLocale::LongFormat));
}

/** A part of a date or a time: rolls over, but only within 16 bits. */
qint32 partOf(Args &args, int index)
{
    const qint32 part = args.integer(index);
    if (part != qint16(part))
        throw ScriptError(err::kOverflow);
    return part;
}

Value dateSerial(Engine &, Args &args)
{
    qint64 years = partOf(args, 0);
    if (years >= 0 && years < 100)
        years += years < 30 ? 2000 : 1900;
    const auto days = makeDate(years, partOf(args, 1), partOf(args, 2));
    if (!days)
        throw ScriptError(err::kInvalidCall);
    return Value::date(*days);
}

Value timeSerial(Engine &, Args &args)
{
    const double seconds = partOf(args, 0) * 3600.0 + partOf(args, 1) * 60.0 + partOf(args, 2);
    const double days = std::floor(seconds / kSecondsPerDay);
    const double rest = (seconds - days * kSecondsPerDay) / kSecondsPerDay;
    return dateValue(seconds < 0 && days == -1 ? (seconds / kSecondsPerDay) : withTime(days, rest));
}

double parsedDate(Engine &engine, Args &args)
{
    const Value value = engine.plain(args[0]);
    if (!value.is(Type::String))
        return toDate(engine, value);
    if (const auto days = parseDate(value.view(), engine.locale()))
        return *days;
    throw ScriptError(err::kTypeMismatch);
}

Value dateOnly(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        throw ScriptError(err::kInvalidNull);
    return Value::date(std::trunc(parsedDate(engine, args)));
}

Value timeOf(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        throw ScriptError(err::kInvalidNull);
    const double days = parsedDate(engine, args);
    return Value::date(std::fabs(days - std::trunc(days)));
}

double addMonths(double days, double months)
{
    const DateParts parts = splitDate(days);
    if (std::fabs(months) > 12 * 10000.0)
        throw ScriptError(err::kInvalidCall);
    const QDate moved = parts.date.addMonths(int(months));
    const auto result = moved.isValid() ? makeDate(moved.year(), moved.month(), moved.day()) : std::nullopt;
    if (!result)
        throw ScriptError(err::kInvalidCall);
    return withTime(*result, std::fabs(days - std::trunc(days)));
}

/** Days as a number that grows evenly with time, also before day zero. */
double even(double days) { return days < 0 ? std::trunc(days) + std::fabs(days - std::trunc(days)) : days; }
double fromEven(double value)
{
    const double day = std::floor(value);
    return withTime(day, value - day);
}

Value dateAdd(Engine &engine, Args &args)
{
    const Unit unit = unitOf(args.text(0));
    if (isNull(args, 2))
        return Value::null();
    const double count = std::nearbyint(args.real(1));
    const double days = toDate(engine, args[2]);
    const auto shifted = [&](double seconds) {
        const double total = even(days) + seconds / kSecondsPerDay;
        if (!(total >= kFirstDate && total < kBehindLastDate))
            throw ScriptError(err::kInvalidCall);
        return Value::date(fromEven(total));
    };
    switch (unit) {
    case Unit::Year: return Value::date(addMonths(days, count * 12));
    case Unit::Quarter: return Value::date(addMonths(days, count * 3));
    case Unit::Month: return Value::date(addMonths(days, count));
    case Unit::Week: return shifted(count * 7 * kSecondsPerDay);
    case Unit::Hour: return shifted(count * 3600);
    case Unit::Minute: return shifted(count * 60);
    case Unit::Second: return shifted(count);
    default: return shifted(count * kSecondsPerDay);
    }
}

qint64 dayNumber(const DateParts &parts) { return QDate(1899, 12, 30).daysTo(parts.date); }

qint64 secondsOf(const DateParts &parts)
{
    return dayNumber(parts) * 86400 + parts.hour * 3600 + parts.minute * 60 + parts.second;
}

qint64 floorDivide(qint64 a, qint64 b) { return a / b - (a % b != 0 && (a < 0) != (b < 0) ? 1 : 0); }

Value dateDiff(Engine &engine, Args &args)
{
    const Unit unit = unitOf(args.text(0));
    if (isNull(args, 1) || isNull(args, 2))
        return Value::null();
    const DateParts a = splitDate(toDate(engine, args[1]));
    const DateParts b = splitDate(toDate(engine, args[2]));
    const int first = firstDay(engine, args, 3, 1);
    const qint64 years = b.date.year() - a.date.year();
    qint64 result = 0;
    switch (unit) {
    case Unit::Year: result = years; break;
    case Unit::Quarter: result = years * 4 + (b.date.month() - 1) / 3 - (a.date.month() - 1) / 3; break;
    case Unit::Month: result = years * 12 + b.date.month() - a.date.month(); break;
    case Unit::DayOfYear: case Unit::Day: result = dayNumber(b) - dayNumber(a); break;
    case Unit::Weekday: result = (dayNumber(b) - dayNumber(a)) / 7; break;
    case Unit::Week: {
        const auto weekStart = [first](const DateParts &p) { return dayNumber(p) - weekdayFrom(p.date, first) + 1; };
        result = (weekStart(b) - weekStart(a)) / 7;
        break;
    }
    case Unit::Hour: result = floorDivide(secondsOf(b), 3600) - floorDivide(secondsOf(a), 3600); break;
    case Unit::Minute: result = floorDivide(secondsOf(b), 60) - floorDivide(secondsOf(a), 60); break;
    case Unit::Second: result = secondsOf(b) - secondsOf(a); break;
    }
    if (result != qint32(result))
        throw ScriptError(err::kOverflow);
    return Value::longInteger(qint32(result));
}

/** Day on which week 1 of a year begins: with 1 January, with the first four days, or the first whole week. */
QDate firstWeek(int year, int firstDayOfWeek, int rule)
{
    const QDate newYear(year, 1, 1);
    const int position = weekdayFrom(newYear, firstDayOfWeek);
    const QDate start = newYear.addDays(1 - position);
    const int daysInYear = 8 - position;
    const bool counts = rule == 1 || (rule == 2 && daysInYear >= 4) || (rule == 3 && daysInYear == 7);
    return counts ? start : start.addDays(7);
}

int weekOf(const QDate &date, int firstDayOfWeek, int rule)
{
    QDate start = firstWeek(date.year(), firstDayOfWeek, rule);
    if (date < start)
        start = firstWeek(date.year() - 1, firstDayOfWeek, rule);
    else if (rule != 1 && date >= firstWeek(date.year() + 1, firstDayOfWeek, rule))
        start = firstWeek(date.year() + 1, firstDayOfWeek, rule);
    return int(start.daysTo(date) / 7) + 1;
}

Value datePartOf(Engine &engine, Args &args)
{
    const Unit unit = unitOf(args.text(0));
    if (isNull(args, 1))
        return Value::null();
    const DateParts parts = splitDate(toDate(engine, args[1]));
    const int first = firstDay(engine, args, 2, 1);
    int rule = args.integer(3, 1);
    if (rule < 0 || rule > 3)
        throw ScriptError(err::kInvalidCall);
    rule = rule == 0 ? 1 : rule;
    switch (unit) {
    case Unit::Year: return Value::integer(qint16(parts.date.year()));
    case Unit::Quarter: return Value::integer(qint16((parts.date.month() - 1) / 3 + 1));
    case Unit::Month: return Value::integer(qint16(parts.date.month()));
    case Unit::DayOfYear: return Value::integer(qint16(parts.date.dayOfYear()));
    case Unit::Day: return Value::integer(qint16(parts.date.day()));
    case Unit::Weekday: return Value::integer(qint16(weekdayFrom(parts.date, first)));
    case Unit::Week: return Value::integer(qint16(weekOf(parts.date, first, rule)));
    case Unit::Hour: return Value::integer(qint16(parts.hour));
    case Unit::Minute: return Value::integer(qint16(parts.minute));
    default: return Value::integer(qint16(parts.second));
    }
}

Value isDate(Engine &engine, Args &args)
{
    Value value = args[0];
    if (value.is(Type::Object)) {
        if (value.isNothing() || !value.object()->hasDefaultMember())
            return Value::boolean(false);
        value = engine.plain(value);
    }
    return Value::boolean(value.is(Type::Date)
        || (value.is(Type::String) && parseDate(value.view(), engine.locale()).has_value()));
}

}

std::span<const Intrinsic> dateFunctions()
{
    static constexpr Intrinsic kTable[] = {
        { "Date", 0, 0, dateNow }, { "Time", 0, 0, timeOnly }, { "Now", 0, 0, now }, { "Timer", 0, 0, timer },
        { "Year", 1, 1, year }, { "Month", 1, 1, month }, { "Day", 1, 1, day }, { "Hour", 1, 1, hour },
        { "Minute", 1, 1, minute }, { "Second", 1, 1, second }, { "Weekday", 1, 2, weekday },
        { "WeekdayName", 1, 3, weekdayName }, { "MonthName", 1, 2, monthName }, { "DateSerial", 3, 3, dateSerial },
        { "TimeSerial", 3, 3, timeSerial }, { "DateValue", 1, 1, dateOnly }, { "TimeValue", 1, 1, timeOf },
        { "DateAdd", 3, 3, dateAdd }, { "DateDiff", 3, 5, dateDiff }, { "DatePart", 2, 4, datePartOf },
        { "IsDate", 1, 1, isDate },
    };
    return kTable;
}

}
