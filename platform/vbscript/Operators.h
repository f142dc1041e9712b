#pragma once

#include "platform/vbscript/Code.h"
#include "platform/vbscript/ScriptHost.h"

#include "platform/vbscript/Value.h"

#include <optional>

namespace vbs {

/** A number on its way through an operator: whole numbers and currency in `whole`, the others in `real`. */
struct Number
{
    Type type = Type::Integer;
    qint64 whole = 0;
    double real = 0;

    bool isWhole() const { return type == Type::Byte || type == Type::Integer || type == Type::Long; }
    double asReal() const;
};

/** Operands are plain values (no references, no objects). Throws 6, 11, 13 as the language does. */
Value binaryOperation(ScriptHost &host, Op op, const Value &a, const Value &b);
Value unaryOperation(ScriptHost &host, Op op, const Value &a);
/** -1, 0, 1, or kUnordered when a side is Null. A hard side is a literal of the source text. */
constexpr int kUnordered = 2;
int compareValues(ScriptHost &host, const Value &a, bool hardA, const Value &b, bool hardB);
bool holds(Op comparison, int order);

/** Parts of conversions that intrinsics share. */
Number toNumber(ScriptHost &host, const Value &value);
std::optional<double> parseNumber(QStringView text, const QLocale &locale);
QString realText(double value, int digits, const QLocale &locale);
QString currencyText(qint64 scaled, const QLocale &locale);
qint64 roundHalfEven(double value);
qint32 toLongChecked(double value);
Value dateValue(double days);
/** Currency of a number, half to even at four decimals; 6 when it does not fit. */
Value currencyOf(double value);
QString quotedCulprit(const Value &value);

}
