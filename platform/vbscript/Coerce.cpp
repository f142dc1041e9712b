#include "platform/vbscript/Object.h"
#include "platform/vbscript/Operators.h"

#include "platform/vbscript/DateText.h"
#include "platform/vbscript/Memory.h"
#include "platform/vbscript/ScriptError.h"

#include <charconv>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr int kSingleDigits = 7;
constexpr int kDoubleDigits = 15;
constexpr qsizetype kLongestNumber = 10000; // longer texts are no numbers that anybody has written

bool isBlank(QChar c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == u'\u00a0'; }

QStringView trimmed(QStringView text)
{
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

std::optional<double> parseRadix(QStringView text)
{
    const QChar mark = text.size() > 1 ? text[1].toLower() : QChar();
    const int radix = mark == u'h' ? 16 : 8;
    const QStringView digits = text.mid(mark == u'h' || mark == u'o' ? 2 : 1);
    bool ok = false;
    const QString plain = digits.endsWith(u'&') ? digits.chopped(1).toString() : digits.toString();
    const quint32 number = plain.toUInt(&ok, radix);
    if (!ok || plain.startsWith(u'+') || plain.startsWith(u'-'))
        return std::nullopt;
    if (number <= 0xffff && !digits.endsWith(u'&'))
        return qint16(number);
    return qint32(number);
}

/** Digits with separators and exponent; nothing if it is anything else. */
std::optional<double> parsePlain(QStringView text, QStringView decimal, QStringView group)
{
    QByteArray latin;
    bool point = false;
    bool exponent = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c >= u'0' && c <= u'9') {
            latin += char(c.unicode());
        } else if (!exponent && !point && text.mid(i).startsWith(decimal)) {
            point = true;
            latin += '.';
        } else if (!exponent && !latin.isEmpty() && (c == u'e' || c == u'E' || c == u'd' || c == u'D')) {
            exponent = true;
            latin += 'e';
        } else if (exponent && latin.endsWith('e') && (c == u'+' || c == u'-')) {
            latin += char(c.unicode());
        } else if (!exponent && !point && !latin.isEmpty() && text.mid(i).startsWith(group)) {
            continue;
        } else {
            return std::nullopt;
        }
    }
    double number = 0;
    const auto end = latin.constData() + latin.size();
    const auto [stop, error] = std::from_chars(latin.constData(), end, number);
    if (latin.isEmpty() || stop != end || error == std::errc::invalid_argument)
        return std::nullopt;
    if (error == std::errc::result_out_of_range)
        return latin.contains("e-") ? 0.0 : std::numeric_limits<double>::infinity();
    return number;
}

}

std::optional<double> parseNumber(QStringView text, const QLocale &locale)
{
    text = trimmed(text);
    if (text.size() > kLongestNumber)
        return std::nullopt;
    if (text.startsWith(u'&'))
        return parseRadix(text);
    bool negative = false;
    const QString currency = locale.language() == QLocale::C ? u"$"_s : locale.currencySymbol();
    if (text.startsWith(u'(') && text.endsWith(u')')) {
        negative = true;
        text = trimmed(text.mid(1).chopped(1));
    }
    bool sign = false;
    for (bool again = true; again && !text.isEmpty();) {
        again = false;
        if (!sign && (text.front() == u'-' || text.front() == u'+')) {
            negative = negative != (text.front() == u'-');
            sign = again = true;
            text = trimmed(text.mid(1));
        } else if (!currency.isEmpty() && text.startsWith(currency)) {
            again = true;
            text = trimmed(text.mid(currency.size()));
        } else if (!sign && (text.back() == u'-' || text.back() == u'+')) {
            negative = negative != (text.back() == u'-');
            sign = again = true;
            text = trimmed(text.chopped(1));
        } else if (!currency.isEmpty() && text.endsWith(currency)) {
            again = true;
            text = trimmed(text.chopped(currency.size()));
        }
    }
    const QString group = locale.language() == QLocale::C ? u","_s : locale.groupSeparator();
    const std::optional<double> number = parsePlain(text, locale.decimalPoint(), group);
    return number && negative ? -*number : number;
}

QString realText(double value, int digits, const QLocale &locale)
{
    if (value == 0)
        return u"0"_s; // no negative zero
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits).ptr;
    QString text = QString::fromLatin1(buffer, end - buffer).toUpper();
    const QString decimal = locale.decimalPoint();
    if (decimal != u".")
        text.replace(u'.', decimal);
    return text;
}

QString currencyText(qint64 scaled, const QLocale &locale)
{
    const bool negative = scaled < 0;
    const quint64 magnitude = negative ? quint64(0) - quint64(scaled) : quint64(scaled);
    QString text = QString::number(magnitude / 10000);
    QString fraction = u"%1"_s.arg(magnitude % 10000, 4, 10, QChar(u'0'));
    while (fraction.endsWith(u'0'))
        fraction.chop(1);
    if (!fraction.isEmpty())
        text += locale.decimalPoint() + fraction;
    return negative ? u'-' + text : text;
}

QString quotedCulprit(const Value &value)
{
    switch (value.type()) {
    case Type::Empty: return u"[undefined]"_s;
    case Type::Null: return u"[null]"_s;
    case Type::String: return u"[string: \""_s + value.view().left(80).toString() + u"\"]"_s;
    case Type::Object: return u"[object]"_s;
    default: return u"[number: "_s + QString::number(value.whole()) + u']';
    }
}

QString toText(ScriptHost &host, const Value &original)
{
    const Value &value = original.resolved();
    switch (value.type()) {
    case Type::String:
        memory::requireRoom(2 * value.view().size());
        return value.toQString();
    case Type::Empty: return QString(u""_s);
    case Type::Null: throw ScriptError(err::kInvalidNull);
    case Type::Boolean: return value.whole() ? u"True"_s : u"False"_s;
    case Type::Byte: case Type::Integer: case Type::Long: return QString::number(value.whole());
    case Type::Single: return realText(value.realPart(), kSingleDigits, host.locale());
    case Type::Double: return realText(value.realPart(), kDoubleDigits, host.locale());
    case Type::Currency: return currencyText(value.whole(), host.locale());
    case Type::Date: return dateText(value.realPart(), host.locale());
    case Type::Object: return toText(host, host.plain(value));
    case Type::Array:
        if (value.array()->elementType == Type::Byte) {
            QByteArray bytes = value.array()->bytes;
            if (bytes.size() % 2)
                bytes += '\0';
            return QString::fromUtf16(reinterpret_cast<const char16_t *>(bytes.constData()), bytes.size() / 2);
        }
        throw ScriptError(err::kTypeMismatch);
    default: throw ScriptError(err::kTypeMismatch);
    }
}

Number toNumber(ScriptHost &host, const Value &original)
{
    const Value &value = original.resolved();
    switch (value.type()) {
    case Type::Empty: return { Type::Integer, 0, 0 };
    case Type::Boolean: return { Type::Integer, value.whole(), 0 };
    case Type::Byte: case Type::Integer: case Type::Long: case Type::Currency: return { value.type(), value.whole(), 0 };
    case Type::Single: case Type::Double: case Type::Date: return { value.type(), 0, value.realPart() };
    case Type::Null: throw ScriptError(err::kInvalidNull);
    case Type::String: {
        if (const std::optional<double> number = parseNumber(value.view(), host.locale())) {
            if (!std::isfinite(*number))
                throw ScriptError(err::kOverflow);
            return { Type::Double, 0, *number };
        }
        throw ScriptError(err::kTypeMismatch, quotedCulprit(value));
    }
    case Type::Object: return toNumber(host, host.plain(value));
    default: throw ScriptError(err::kTypeMismatch);
    }
}

double toReal(ScriptHost &host, const Value &value) { return toNumber(host, value).asReal(); }

qint32 toLong(ScriptHost &host, const Value &value)
{
    const Number number = toNumber(host, value);
    return number.isWhole() ? qint32(number.whole) : toLongChecked(number.asReal());
}

bool toBoolean(ScriptHost &host, const Value &original)
{
    const Value &value = original.resolved();
    if (value.is(Type::Boolean))
        return value.whole();
    if (value.is(Type::String)) {
        const QStringView text = value.view();
        if (text.compare(u"true", Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(u"false", Qt::CaseInsensitive) == 0)
            return false;
    }
    return toNumber(host, value).asReal() != 0;
}

QByteArray toBytes(ScriptHost &host, const Value &original)
{
    const Value &value = original.resolved();
    if (value.is(Type::Array) && value.array()->elementType == Type::Byte)
        return value.array()->bytes;
    const QString converted = value.is(Type::String) ? QString() : toText(host, value);
    const QStringView text = value.is(Type::String) ? value.view() : QStringView(converted);
    memory::requireRoom(2 * text.size());
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
}

Object *toObject(const Value &original)
{
    const Value &value = original.resolved();
    if (!value.is(Type::Object))
        throw ScriptError(err::kObjectRequired);
    if (value.isNothing())
        throw ScriptError(err::kObjectNotSet);
    return value.object();
}

}
