#include "platform/vbscript/Operators.h"

#include "platform/vbscript/DateText.h"
#include "platform/vbscript/ScriptError.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr double kCurrencyScale = 10000.0;
constexpr double kLargestCurrency = 9.2233720368547e18;
constexpr double kLargestSingle = 3.402823466385289e38;

int rankOf(Type type)
{
    switch (type) {
    case Type::Byte: return 1;
    case Type::Integer: return 2;
    case Type::Long: return 3;
    case Type::Single: return 4;
    case Type::Double: return 5;
    default: return 6; // Currency
    }
}

Value wholeResult(qint64 value, Type atLeast)
{
    if (atLeast == Type::Byte && value == quint8(value))
        return Value::byte(quint8(value));
    if (atLeast != Type::Long && value == qint16(value))
        return Value::integer(qint16(value));
    return value == qint32(value) ? Value::longInteger(qint32(value)) : Value::real(double(value));
}

Value finite(double value)
{
    if (!std::isfinite(value))
        throw ScriptError(err::kOverflow);
    return Value::real(value);
}

Value singleResult(double value)
{
    return std::fabs(value) <= kLargestSingle ? Value::single(value) : finite(value);
}

double compute(Op op, double a, double b)
{
    return op == Op::Add ? a + b : op == Op::Subtract ? a - b : a * b;
}

Value wholeArithmetic(Op op, const Number &a, const Number &b)
{
    const Type wider = rankOf(a.type) >= rankOf(b.type) ? a.type : b.type;
    const qint64 result = op == Op::Add ? a.whole + b.whole
        : op == Op::Subtract            ? a.whole - b.whole
                                        : a.whole * b.whole;
    return wholeResult(result, wider);
}

Value currencyArithmetic(Op op, const Number &a, const Number &b)
{
    const bool otherReal = a.type == Type::Single || a.type == Type::Double || b.type == Type::Single
        || b.type == Type::Double;
    if (op == Op::Multiply && otherReal)
        return finite(a.asReal() * b.asReal());
    if (op == Op::Multiply)
        return currencyOf(a.asReal() * b.asReal());
    const auto scaled = [](const Number &n) {
        return n.type == Type::Currency ? n.whole : currencyOf(n.asReal()).whole();
    };
    qint64 result = 0;
    const bool overflow = op == Op::Add ? __builtin_add_overflow(scaled(a), scaled(b), &result)
                                        : __builtin_sub_overflow(scaled(a), scaled(b), &result);
    if (overflow)
        throw ScriptError(err::kOverflow);
    return Value::currency(result);
}

Value arithmetic(Op op, const Number &a, const Number &b)
{
    const bool dateA = a.type == Type::Date;
    const bool dateB = b.type == Type::Date;
    if (dateA || dateB) {
        const double result = compute(op, a.asReal(), b.asReal());
        const bool isDate = op == Op::Add || (op == Op::Subtract && !(dateA && dateB));
        return isDate ? dateValue(result) : finite(result);
    }
    if (a.isWhole() && b.isWhole())
        return wholeArithmetic(op, a, b);
    if (a.type == Type::Currency || b.type == Type::Currency)
        return currencyArithmetic(op, a, b);
    const double result = compute(op, a.asReal(), b.asReal());
    const auto small = [](const Number &n) { return n.type != Type::Double && n.type != Type::Long; };
    return small(a) && small(b) ? singleResult(result) : finite(result);
}

Value divide(const Number &a, const Number &b)
{
    const double divisor = b.asReal();
    if (divisor == 0)
        throw ScriptError(a.asReal() == 0 ? err::kOverflow : err::kDivisionByZero);
    const auto small = [](const Number &n) { return n.type == Type::Single || n.type == Type::Byte
                                                 || n.type == Type::Integer; };
    const double result = a.asReal() / divisor;
    const bool single = small(a) && small(b) && (a.type == Type::Single || b.type == Type::Single);
    return single ? singleResult(result) : finite(result);
}

/** Whole number and the smallest of Byte, Integer, Long that its type stands for. */
Number wholeNumber(const Number &n)
{
    if (n.isWhole())
        return n;
    return { Type::Long, toLongChecked(n.asReal()), 0 };
}

Value wholeDivide(Op op, const Number &left, const Number &right)
{
    const Number a = wholeNumber(left);
    const Number b = wholeNumber(right);
    if (b.whole == 0)
        throw ScriptError(err::kDivisionByZero);
    const qint64 result = op == Op::IntDivide ? a.whole / b.whole : a.whole % b.whole;
    if (result != qint32(result))
        throw ScriptError(err::kOverflow);
    return wholeResult(result, rankOf(a.type) >= rankOf(b.type) ? a.type : b.type);
}

Value power(const Number &a, const Number &b)
{
    const double base = a.asReal();
    const double exponent = b.asReal();
    if ((base < 0 && exponent != std::trunc(exponent)) || (base == 0 && exponent < 0))
        throw ScriptError(err::kInvalidCall);
    return finite(std::pow(base, exponent));
}

Value concat(ScriptHost &host, const Value &a, const Value &b)
{
    if (a.is(Type::Null) && b.is(Type::Null))
        return Value::null();
    if (a.is(Type::String) && a.view().isEmpty() && b.is(Type::String))
        return b;
    const auto converted = [&host](const Value &value) {
        return value.is(Type::String) || value.is(Type::Null) ? QString() : toText(host, value);
    };
    const QString left = converted(a);
    const QString right = converted(b);
    Value result = Value::string(a.is(Type::String) ? a.view() : QStringView(left),
        b.is(Type::String) ? b.view() : QStringView(right));
    host.spend(result.view().size() / 64);
    return result;
}

/** Bits of a logical operand; strings may be numbers or truth values. */
struct Bits
{
    Type type;
    qint32 bits;
};

Bits bitsOf(ScriptHost &host, const Value &value)
{
    switch (value.type()) {
    case Type::Boolean: case Type::Byte: case Type::Integer: case Type::Long:
        return { value.type(), qint32(value.whole()) };
    case Type::Empty: return { Type::Integer, 0 };
    case Type::String: {
        const std::optional<double> number = parseNumber(value.view(), host.locale());
        if (!number)
            return { Type::Boolean, toBoolean(host, value) ? -1 : 0 };
        return { Type::Long, toLongChecked(*number) };
    }
    default: return { Type::Long, toLongChecked(toNumber(host, value).asReal()) };
    }
}

qint32 combine(Op op, qint32 a, qint32 b)
{
    switch (op) {
    case Op::And: return a & b;
    case Op::Or: return a | b;
    case Op::Xor: return a ^ b;
    case Op::Eqv: return ~(a ^ b);
    default: return ~a | b; // Imp
    }
}

Value fromBits(Type type, qint32 bits)
{
    switch (type) {
    case Type::Boolean: return Value::boolean(bits != 0);
    case Type::Byte: return Value::byte(quint8(bits));
    case Type::Integer: return Value::integer(qint16(bits));
    default: return Value::longInteger(bits);
    }
}

/** One side is Null: the result is known only where the other side decides alone. */
Value logicalWithNull(ScriptHost &host, Op op, const Value &a, const Value &b)
{
    if (a.is(Type::Null) && b.is(Type::Null))
        return Value::null();
    const bool left = !a.is(Type::Null);
    const Bits known = bitsOf(host, left ? a : b);
    const bool decides = (op == Op::And && known.bits == 0) || (op == Op::Or && known.bits == -1)
        || (op == Op::Imp && (left ? known.bits == 0 : known.bits == -1));
    if (!decides)
        return Value::null();
    return fromBits(known.type, op == Op::And ? 0 : -1);
}

Value logical(ScriptHost &host, Op op, const Value &a, const Value &b)
{
    if (a.is(Type::Null) || b.is(Type::Null))
        return logicalWithNull(host, op, a, b);
    const Bits left = bitsOf(host, a);
    const Bits right = bitsOf(host, b);
    Type type = Type::Long;
    if (left.type == right.type)
        type = left.type;
    else if (left.type != Type::Long && right.type != Type::Long)
        type = Type::Integer;
    return fromBits(type, combine(op, left.bits, right.bits));
}

Value add(ScriptHost &host, const Value &a, const Value &b)
{
    if (a.is(Type::String) && b.is(Type::String))
        return concat(host, a, b);
    if (a.is(Type::String) && b.is(Type::Empty))
        return a;
    if (a.is(Type::Empty) && b.is(Type::String))
        return b;
    return arithmetic(Op::Add, toNumber(host, a), toNumber(host, b));
}

int order(double a, double b) { return a < b ? -1 : a > b ? 1 : 0; }

int compareText(QStringView a, QStringView b)
{
    const qsizetype common = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < common; ++i)
        if (a[i] != b[i])
            return a[i] < b[i] ? -1 : 1;
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

int compareNumbers(const Number &a, const Number &b)
{
    if (a.type == Type::Currency && b.type == Type::Currency)
        return a.whole == b.whole ? 0 : a.whole < b.whole ? -1 : 1;
    return order(a.asReal(), b.asReal());
}

/** A string beside a number: literals count as what the other side is; otherwise a number is less. */
int compareMixed(ScriptHost &host, const Value &text, bool hardText, const Value &number, bool hardNumber)
{
    if (hardNumber)
        return compareNumbers(toNumber(host, text), toNumber(host, number));
    if (hardText)
        return compareText(text.view(), toText(host, number));
    return 1;
}

}

double Number::asReal() const
{
    if (type == Type::Currency)
        return double(whole) / kCurrencyScale;
    return isWhole() ? double(whole) : real;
}

qint64 roundHalfEven(double value) { return std::llrint(value); }

qint32 toLongChecked(double value)
{
    const double rounded = std::nearbyint(value);
    if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0))
        throw ScriptError(err::kOverflow);
    return qint32(rounded);
}

Value dateValue(double days)
{
    if (!(days >= kFirstDate && days < kBehindLastDate))
        throw ScriptError(err::kOverflow);
    return Value::date(days);
}

Value currencyOf(double value)
{
    const double scaled = value * kCurrencyScale;
    if (!(std::fabs(scaled) < kLargestCurrency))
        throw ScriptError(err::kOverflow);
    // Half of what the text of the number says: 1.00005 is no exact binary fraction.
    const double decimal = std::fabs(scaled) < 1e15 ? QByteArray::number(scaled, 'g', 15).toDouble() : scaled;
    return Value::currency(std::llrint(decimal));
}

Value binaryOperation(ScriptHost &host, Op op, const Value &a, const Value &b)
{
    switch (op) {
    case Op::Concat: return concat(host, a, b);
    case Op::And: case Op::Or: case Op::Xor: case Op::Eqv: case Op::Imp: return logical(host, op, a, b);
    default: break;
    }
    if (a.is(Type::Null) || b.is(Type::Null))
        return Value::null();
    if (op == Op::Add)
        return add(host, a, b);
    const Number left = toNumber(host, a);
    const Number right = toNumber(host, b);
    switch (op) {
    case Op::Divide: return divide(left, right);
    case Op::IntDivide: case Op::Modulo: return wholeDivide(op, left, right);
    case Op::Power: return power(left, right);
    default: return arithmetic(op, left, right);
    }
}

Value unaryOperation(ScriptHost &host, Op op, const Value &a)
{
    if (a.is(Type::Null))
        return a;
    if (op == Op::Not) {
        const Bits operand = bitsOf(host, a);
        return fromBits(operand.type, ~operand.bits);
    }
    const Number n = toNumber(host, a);
    if (op == Op::Identity)
        return a.is(Type::String) || a.is(Type::Boolean) || a.is(Type::Empty)
            ? (n.isWhole() ? wholeResult(n.whole, n.type) : Value::real(n.real))
            : a;
    if (n.isWhole())
        return wholeResult(-n.whole, n.type);
    if (n.type == Type::Currency)
        return Value::currency(n.whole == std::numeric_limits<qint64>::min() ? throw ScriptError(err::kOverflow)
                                                                              : -n.whole);
    if (n.type == Type::Date)
        return dateValue(-n.real);
    return n.type == Type::Single ? Value::single(-n.real) : Value::real(-n.real);
}

int compareValues(ScriptHost &host, const Value &a, bool hardA, const Value &b, bool hardB)
{
    if (a.is(Type::Null) || b.is(Type::Null))
        return kUnordered;
    const bool textA = a.is(Type::String);
    const bool textB = b.is(Type::String);
    if (textA && textB)
        return compareText(a.view(), b.view());
    if (a.is(Type::Empty) && textB)
        return b.view().isEmpty() ? 0 : -1;
    if (b.is(Type::Empty) && textA)
        return a.view().isEmpty() ? 0 : 1;
    if (a.is(Type::Array) || b.is(Type::Array))
        throw ScriptError(err::kTypeMismatch);
    if (textA)
        return compareMixed(host, a, hardA, b, hardB);
    if (textB)
        return -compareMixed(host, b, hardB, a, hardA);
    return compareNumbers(toNumber(host, a), toNumber(host, b));
}

bool holds(Op comparison, int result)
{
    if (result == kUnordered)
        return false;
    switch (comparison) {
    case Op::Equal: case Op::UnlessEqual: case Op::WhenEqual: return result == 0;
    case Op::NotEqual: case Op::UnlessNotEqual: case Op::WhenNotEqual: return result != 0;
    case Op::Less: case Op::UnlessLess: case Op::WhenLess: return result < 0;
    case Op::Greater: case Op::UnlessGreater: case Op::WhenGreater: return result > 0;
    case Op::LessEqual: case Op::UnlessLessEqual: case Op::WhenLessEqual: return result <= 0;
    default: return result >= 0;
    }
}

}
