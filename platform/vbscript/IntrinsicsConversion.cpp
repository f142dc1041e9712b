#include "platform/vbscript/DateText.h"
#include "platform/vbscript/IntrinsicTables.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace vbs {

double toDate(ScriptHost &host, const Value &original)
{
    const Value value = host.plain(original);
    if (value.is(Type::String)) {
        if (const auto days = parseDate(value.view(), host.locale()))
            return *days;
        if (const auto number = parseNumber(value.view(), host.locale()))
            return dateValue(*number).realPart();
        throw ScriptError(err::kTypeMismatch, quotedCulprit(value));
    }
    return dateValue(toReal(host, value)).realPart();
}

namespace {

constexpr double kLargestSingle = 3.402823466385289e38;

qint64 wholeWithin(Args &args, qint64 lowest, qint64 highest)
{
    const Number number = toNumber(args.host(), args[0]);
    const double rounded = number.isWhole() ? double(number.whole) : std::nearbyint(number.asReal());
    if (!(rounded >= double(lowest) && rounded <= double(highest)))
        throw ScriptError(err::kOverflow);
    return qint64(rounded);
}

Value cBool(Engine &engine, Args &args)
{
    const Value value = engine.plain(args[0]);
    return Value::boolean(toBoolean(engine, value));
}
Value cByte(Engine &engine, Args &args)
{
    if (engine.plain(args[0]).is(Type::Boolean))
        return Value::byte(args.boolean(0) ? 255 : 0);
    return Value::byte(quint8(wholeWithin(args, 0, 255)));
}
Value cInt(Engine &, Args &args) { return Value::integer(qint16(wholeWithin(args, -32768, 32767))); }
Value cLng(Engine &, Args &args)
{
    return Value::longInteger(qint32(wholeWithin(args, -2147483648LL, 2147483647LL)));
}
Value cDbl(Engine &, Args &args) { return Value::real(args.real(0)); }

Value cSng(Engine &, Args &args)
{
    const double value = args.real(0);
    if (std::fabs(value) > kLargestSingle)
        throw ScriptError(err::kOverflow);
    return Value::single(value);
}

Value cCur(Engine &, Args &args)
{
    const Number number = toNumber(args.host(), args[0]);
    return number.type == Type::Currency ? Value::currency(number.whole) : currencyOf(number.asReal());
}

Value cDate(Engine &engine, Args &args) { return Value::date(toDate(engine, args[0])); }

Value cStr(Engine &engine, Args &args)
{
    const Value value = engine.plain(args[0]);
    return value.is(Type::String) ? value : Value::string(toText(engine, value));
}

Value inRadix(Args &args, int radix)
{
    if (isNull(args, 0))
        return Value::null();
    const Number number = toNumber(args.host(), args[0]);
    const qint32 value = number.isWhole() ? qint32(number.whole) : toLongChecked(number.asReal());
    const bool small = number.type == Type::Integer || number.type == Type::Byte;
    const quint32 bits = small ? quint16(value) : quint32(value);
    return Value::string(QString::number(bits, radix).toUpper());
}
Value hex(Engine &, Args &args) { return inRadix(args, 16); }
Value oct(Engine &, Args &args) { return inRadix(args, 8); }

QChar firstCharacter(Args &args)
{
    const QString text = args.text(0);
    if (text.isEmpty())
        throw ScriptError(err::kInvalidCall);
    return text.front();
}

// The upper half of the single-byte code page of western Windows systems.
constexpr char16_t kCodePage[32] = {
    0x20ac, 0x81, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8d, 0x017d,
    0x8f, 0x90, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022, 0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x9d,
    0x017e, 0x0178
};

Value asc(Engine &, Args &args)
{
    const char16_t c = firstCharacter(args).unicode();
    for (int k = 0; k < 32; ++k)
        if (kCodePage[k] == c)
            return Value::integer(qint16(0x80 + k));
    return Value::integer(c <= 0xff ? qint16(c) : qint16('?'));
}
Value ascW(Engine &, Args &args) { return Value::integer(qint16(firstCharacter(args).unicode())); }

Value ascB(Engine &engine, Args &args)
{
    const QByteArray bytes = toBytes(engine, engine.plain(args[0]));
    if (bytes.isEmpty())
        throw ScriptError(err::kInvalidCall);
    return Value::byte(quint8(bytes[0]));
}

Value chr(Engine &, Args &args)
{
    const int code = args.integer(0);
    if (code < 0 || code > 255)
        throw ScriptError(err::kInvalidCall);
    const char16_t c = code >= 0x80 && code < 0xa0 ? kCodePage[code - 0x80] : char16_t(code);
    return Value::string(&c, 1);
}

Value chrW(Engine &, Args &args)
{
    const int code = args.integer(0);
    if (code < -32768 || code > 65535)
        throw ScriptError(err::kInvalidCall);
    const auto c = char16_t(quint16(code));
    return Value::string(&c, 1);
}

Value chrB(Engine &, Args &args)
{
    const int code = args.integer(0);
    if (code < 0 || code > 255)
        throw ScriptError(err::kInvalidCall);
    return Value::bytes(QByteArray(1, char(code)));
}

}

std::span<const Intrinsic> conversionFunctions()
{
    static constexpr Intrinsic kTable[] = {
        { "CBool", 1, 1, cBool }, { "CByte", 1, 1, cByte }, { "CInt", 1, 1, cInt }, { "CLng", 1, 1, cLng },
        { "CSng", 1, 1, cSng }, { "CDbl", 1, 1, cDbl }, { "CCur", 1, 1, cCur }, { "CDate", 1, 1, cDate },
        { "CStr", 1, 1, cStr }, { "Hex", 1, 1, hex }, { "Oct", 1, 1, oct }, { "Asc", 1, 1, asc },
        { "AscW", 1, 1, ascW }, { "AscB", 1, 1, ascB }, { "Chr", 1, 1, chr }, { "ChrW", 1, 1, chrW },
        { "ChrB", 1, 1, chrB },
    };
    return kTable;
}

}
