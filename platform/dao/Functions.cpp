#include "platform/dao/Functions.h"

#include "platform/dao/Convert.h"
#include "platform/dao/DateText.h"
#include "platform/dao/Errors.h"
#include "platform/dao/Like.h"

#include <cmath>
#include <sqlite3.h>

namespace dao {

namespace {

Value argument(sqlite3_value *v)
{
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
        return Value(qint64(sqlite3_value_int64(v)));
    case SQLITE_FLOAT:
        return sqlite3_value_double(v);
    case SQLITE_NULL:
        return {};
    default: {
        const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(v));
        return QString::fromUtf8(text, sqlite3_value_bytes(v));
    }
    }
}

void answer(sqlite3_context *context, const Value &value)
{
    struct Writer {
        sqlite3_context *c;
        void operator()(std::monostate) const { sqlite3_result_null(c); }
        void operator()(qint64 v) const { sqlite3_result_int64(c, v); }
        void operator()(double v) const { sqlite3_result_double(c, v); }
        void operator()(bool v) const { sqlite3_result_int(c, v ? -1 : 0); }
        void operator()(const QDateTime &v) const { sqlite3_result_double(c, toOleDate(v)); }
        void operator()(const QString &v) const
        {
            const QByteArray utf8 = v.toUtf8();
            sqlite3_result_text(c, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
        }
    };
    std::visit(Writer {context}, value.data());
}

Value wholeOrReal(double result)
{
    if (!std::isfinite(result))
        return {};
    constexpr double kExact = 9007199254740992.0;
    if (result == std::floor(result) && std::fabs(result) < kExact)
        return qint64(result);
    return result;
}

/** \ and MOD work on operands rounded to whole numbers. */
Value calculateWhole(char op, double a, double b)
{
    const double left = std::nearbyint(a);
    const double right = std::nearbyint(b);
    if (right == 0)
        return {};
    return wholeOrReal(op == '\\' ? std::trunc(left / right) : std::fmod(left, right));
}

Value calculate(char op, const Value &a, const Value &b)
{
    if (op == '&')
        return a.isNull() && b.isNull() ? Value() : Value(asText(a).text() + asText(b).text());
    if (a.isNull() || b.isNull())
        return {};
    if (op == '+' && a.isText() && b.isText())
        return a.text() + b.text();
    const double left = a.number();
    const double right = b.number();
    switch (op) {
    case '+':
        return wholeOrReal(left + right);
    case '-':
        return wholeOrReal(left - right);
    case '*':
        return wholeOrReal(left * right);
    case '/':
        return right == 0 ? Value() : wholeOrReal(left / right);
    case '^':
        return wholeOrReal(std::pow(left, right));
    default:
        return calculateWhole(op, left, right);
    }
}

/** Runs a function body; a failure becomes the DAO number as the statement's message. */
template <class F>
void guarded(sqlite3_context *context, F &&body)
{
    try {
        body();
    } catch (const VbError &error) {
        const QByteArray number = QByteArray::number(qlonglong(error.number() == 13 ? 3464 : error.number()));
        sqlite3_result_error(context, number.constData(), int(number.size()));
    }
}

// jet_like(text, pattern)
void jetLike(sqlite3_context *context, int, sqlite3_value **args)
{
    const Value text = asText(argument(args[0]));
    const Value pattern = asText(argument(args[1]));
    if (!text.isNull() && !pattern.isNull())
        sqlite3_result_int(context, likeMatches(text.text(), pattern.text()));
}

// jet_text(value)
void jetText(sqlite3_context *context, int, sqlite3_value **args)
{
    answer(context, asText(argument(args[0])));
}

// jet_calc(operator, a, b)
void jetCalc(sqlite3_context *context, int, sqlite3_value **args)
{
    guarded(context, [&] {
        const auto *op = sqlite3_value_text(args[0]);
        // "MOD" is the one operator that is not its own first letter.
        answer(context, calculate(char(op[0]), argument(args[1]), argument(args[2])));
    });
}

// jet_store(kind, value, strict): what does not convert is an error when strict, Null otherwise
void jetStore(sqlite3_context *context, int, sqlite3_value **args)
{
    const auto kind = Kind(sqlite3_value_int(args[0]));
    guarded(context, [&] {
        try {
            answer(context, convertTo(kind, argument(args[1])));
        } catch (const VbError &) {
            if (sqlite3_value_int(args[2]))
                throw;
            answer(context, convertTo(kind, Value()));
        }
    });
}

} // namespace

Value asText(const Value &value) { return value.isNull() || value.isText() ? value : Value(value.text()); }

void registerFunctions(sqlite3 *db)
{
    struct Row {
        const char *name;
        int args;
        void (*function)(sqlite3_context *, int, sqlite3_value **);
    };
    constexpr Row kRows[] = {{"jet_like", 2, jetLike},
                             {"jet_text", 1, jetText},
                             {"jet_calc", 3, jetCalc},
                             {"jet_store", 3, jetStore}};
    for (const Row &row : kRows) {
        const int code
            = sqlite3_create_function_v2(db, row.name, row.args, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                                         row.function, nullptr, nullptr, nullptr);
        if (code != SQLITE_OK)
            raise(3043);
    }
}

} // namespace dao
