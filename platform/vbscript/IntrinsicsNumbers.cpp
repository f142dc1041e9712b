#include "platform/vbscript/IntrinsicTables.h"

#include <QTime>
#include <cmath>
#include <cstring>

namespace vbs {

void seedRandom(quint32 &state, double seed)
{
    quint64 bits = 0;
    std::memcpy(&bits, &seed, sizeof bits);
    const auto high = quint32(bits >> 32);
    const quint32 mixed = (high ^ (high >> 16)) & 0xffff;
    state = (state & 0xff) | mixed << 8;
}

namespace {

constexpr quint32 kRandomMask = 0xffffff;
constexpr double kLargestExponent = 709.782712893384;

Value sameType(const Number &number, double value)
{
    switch (number.type) {
    case Type::Single: return Value::single(value);
    case Type::Date: return dateValue(value);
    case Type::Currency: return currencyOf(value);
    default: return Value::real(value);
    }
}

Value abs(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        return Value::null();
    const Value value = engine.plain(args[0]);
    const Number number = toNumber(engine, value);
    if (number.isWhole() ? number.whole < 0 : number.asReal() < 0)
        return unaryOperation(engine, Op::Negate, value);
    return unaryOperation(engine, Op::Identity, value);
}

Value sgn(Engine &, Args &args)
{
    if (isNull(args, 0))
        return Value::null();
    const double value = args.real(0);
    return Value::integer(value < 0 ? -1 : value > 0 ? 1 : 0);
}

Value wholePart(Engine &engine, Args &args, double (*part)(double))
{
    if (isNull(args, 0))
        return Value::null();
    const Value value = engine.plain(args[0]);
    const Number number = toNumber(engine, value);
    if (number.isWhole())
        return unaryOperation(engine, Op::Identity, value);
    return sameType(number, part(number.asReal()));
}
Value intPart(Engine &engine, Args &args) { return wholePart(engine, args, std::floor); }
Value fix(Engine &engine, Args &args) { return wholePart(engine, args, std::trunc); }

Value round(Engine &engine, Args &args)
{
    const int digits = args.integer(1, 0);
    if (digits < 0)
        throw ScriptError(err::kInvalidCall);
    if (isNull(args, 0))
        return Value::null();
    const Value value = engine.plain(args[0]);
    const Number number = toNumber(engine, value);
    if (number.isWhole())
        return unaryOperation(engine, Op::Identity, value);
    if (digits > 15)
        return sameType(number, number.asReal());
    const double scale = std::pow(10.0, digits);
    const double scaled = number.asReal() * scale;
    // Half of what the text of the number says, not of the binary fraction that stands for it.
    const double decimal = std::fabs(scaled) < 1e15
        ? QByteArray::number(scaled, 'g', 15).toDouble()
        : scaled;
    return sameType(number, std::nearbyint(decimal) / scale);
}

Value function(Args &args, double (*apply)(double))
{
    if (isNull(args, 0))
        throw ScriptError(err::kInvalidNull);
    return Value::real(apply(args.real(0)));
}
Value sin(Engine &, Args &args) { return function(args, std::sin); }
Value cos(Engine &, Args &args) { return function(args, std::cos); }
Value tan(Engine &, Args &args) { return function(args, std::tan); }
Value atn(Engine &, Args &args) { return function(args, std::atan); }

Value sqr(Engine &, Args &args)
{
    if (args.real(0) < 0)
        throw ScriptError(err::kInvalidCall);
    return function(args, std::sqrt);
}

Value log(Engine &, Args &args)
{
    if (args.real(0) <= 0)
        throw ScriptError(err::kInvalidCall);
    return function(args, std::log);
}

Value exp(Engine &, Args &args)
{
    if (args.real(0) > kLargestExponent)
        throw ScriptError(err::kOverflow);
    return function(args, std::exp);
}

Value rnd(Engine &engine, Args &args)
{
    quint32 &state = engine.randomState();
    const double choice = args.has(0) ? args.real(0) : 1.0;
    if (choice < 0) {
        const auto single = float(choice);
        quint32 bits = 0;
        std::memcpy(&bits, &single, sizeof bits);
        state = (bits + (bits >> 24)) & kRandomMask;
    }
    if (choice != 0)
        state = quint32((quint64(state) * 1140671485u + 12820163u) & kRandomMask);
    return Value::single(double(state) / double(kRandomMask + 1));
}

}

std::span<const Intrinsic> numberFunctions()
{
    static constexpr Intrinsic kTable[] = {
        { "Abs", 1, 1, abs }, { "Sgn", 1, 1, sgn }, { "Int", 1, 1, intPart }, { "Fix", 1, 1, fix },
        { "Round", 1, 2, round }, { "Sqr", 1, 1, sqr }, { "Log", 1, 1, log }, { "Exp", 1, 1, exp },
        { "Sin", 1, 1, sin }, { "Cos", 1, 1, cos }, { "Tan", 1, 1, tan }, { "Atn", 1, 1, atn },
        { "Rnd", 0, 1, rnd },
    };
    return kTable;
}

}
