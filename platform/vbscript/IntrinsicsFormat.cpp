#include "platform/vbscript/DateText.h"
#include "platform/vbscript/IntrinsicTables.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr int kDefaultDigits = 2;

struct Style
{
    int digits = kDefaultDigits;
    bool leadingZero = true;
    bool parentheses = false;
    bool groups = true;
};

bool triState(Args &args, int index, bool byLocale)
{
    const int choice = args.integer(index, -2);
    if (choice < -2 || choice > 0)
        throw ScriptError(err::kInvalidCall);
    return choice == -2 ? byLocale : choice == -1;
}

Style styleOf(Args &args, bool parenthesesByLocale)
{
    Style style;
    const int digits = args.integer(1, -1);
    if (digits < -1 || digits > 255)
        throw ScriptError(err::kInvalidCall);
    style.digits = digits < 0 ? kDefaultDigits : digits;
    style.leadingZero = triState(args, 2, true);
    style.parentheses = triState(args, 3, parenthesesByLocale);
    style.groups = triState(args, 4, true);
    return style;
}

bool isPlainLocale(const QLocale &locale) { return locale.language() == QLocale::C; }

/** Decimal digits of a number rounded half away from zero on its 15 significant digits. */
QString decimalDigits(double magnitude, int digits)
{
    if (digits > 15 || magnitude >= 1e15)
        return QString::number(magnitude, 'f', digits);
    const double scale = std::pow(10.0, digits);
    const QString exact = QString::number(magnitude * scale, 'g', 15);
    const double rounded = std::floor(exact.toDouble() + 0.5);
    if (rounded >= 1e15)
        return QString::number(magnitude, 'f', digits);
    QString text = QString::number(rounded, 'f', 0);
    if (digits > 0) {
        text = text.rightJustified(digits + 1, u'0');
        text.insert(text.size() - digits, u'.');
    }
    return text;
}

/** The number without its sign, with the locale's separators. */
QString magnitudeText(double magnitude, const Style &style, const QLocale &locale, bool &isZero)
{
    const QString digits = decimalDigits(magnitude, style.digits);
    isZero = digits.count(u'0') + digits.count(u'.') == digits.size();
    QString whole = digits.section(u'.', 0, 0);
    const QString fraction = digits.section(u'.', 1);
    if (whole == u"0" && !style.leadingZero && !fraction.isEmpty())
        whole.clear();
    const QString group = isPlainLocale(locale) ? u","_s : locale.groupSeparator();
    for (qsizetype at = whole.size() - 3; style.groups && at > 0; at -= 3)
        whole.insert(at, group);
    return fraction.isEmpty() ? whole : whole + locale.decimalPoint() + fraction;
}

QString numberText(double value, const Style &style, const QLocale &locale, const QString &suffix)
{
    bool isZero = false;
    const QString text = magnitudeText(std::fabs(value), style, locale, isZero) + suffix;
    if (value >= 0 || isZero)
        return text;
    return style.parentheses ? u'(' + text + u')' : u'-' + text;
}

Value formatNumber(Engine &engine, Args &args)
{
    const Style style = styleOf(args, false);
    return Value::string(numberText(args.real(0), style, engine.locale(), {}));
}

Value formatPercent(Engine &engine, Args &args)
{
    const Style style = styleOf(args, false);
    return Value::string(numberText(args.real(0) * 100.0, style, engine.locale(), u"%"_s));
}

Value formatCurrency(Engine &engine, Args &args)
{
    const QLocale &locale = engine.locale();
    const bool american = isPlainLocale(locale) || locale.territory() == QLocale::UnitedStates;
    const Style style = styleOf(args, american);
    const double value = args.real(0);
    bool isZero = false;
    const QString amount = magnitudeText(std::fabs(value), style, locale, isZero);
    const QString symbol = isPlainLocale(locale) ? u"$"_s : locale.currencySymbol();
    // Where the symbol stands is only to be had from an example.
    const bool inFront = isPlainLocale(locale) || locale.toCurrencyString(1.0).indexOf(symbol) == 0;
    const QString text = inFront ? symbol + amount : amount + u'\u00a0' + symbol;
    if (value >= 0 || isZero)
        return Value::string(text);
    return Value::string(style.parentheses ? u'(' + text + u')' : u'-' + text);
}

Value formatDateTime(Engine &engine, Args &args)
{
    const int format = args.integer(1, 0);
    if (format < 0 || format > 4)
        throw ScriptError(err::kInvalidCall);
    if (isNull(args, 0))
        return Value::null();
    const double days = toDate(engine, args[0]);
    const DateParts parts = splitDate(days);
    switch (format) {
    case 1: return Value::string(longDateText(parts.date, engine.locale()));
    case 2: return Value::string(shortDateText(parts.date, engine.locale()));
    case 3: return Value::string(longTimeText(parts, engine.locale()));
    case 4: return Value::string(u"%1:%2"_s.arg(parts.hour, 2, 10, QChar(u'0')).arg(parts.minute, 2, 10, QChar(u'0')));
    default: return Value::string(dateText(days, engine.locale()));
    }
}

}

std::span<const Intrinsic> formatFunctions()
{
    static constexpr Intrinsic kTable[] = {
        { "FormatNumber", 1, 5, formatNumber }, { "FormatCurrency", 1, 5, formatCurrency },
        { "FormatPercent", 1, 5, formatPercent }, { "FormatDateTime", 1, 2, formatDateTime },
    };
    return kTable;
}

}
