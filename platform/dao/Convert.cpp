#include "platform/dao/Convert.h"

#include "platform/dao/DateText.h"
#include "platform/dao/Errors.h"

#include <cmath>
#include <limits>

namespace dao {

namespace {

/** Value's own conversions speak Visual Basic's numbers; a column answers with DAO's. */
template <class F>
auto converted(F &&read)
{
    try {
        return read();
    } catch (const VbError &error) {
        raise(error.number() == 6 ? 3349 : 3421);
    }
}

Value toLong(const Value &value)
{
    const qint64 whole = converted([&] { return value.integer(); });
    if (whole < std::numeric_limits<qint32>::min() || whole > std::numeric_limits<qint32>::max())
        raise(3349);
    return whole;
}

Value toDate(const Value &value)
{
    const QDateTime when = converted([&] { return value.dateTime(); });
    if (!when.isValid() || when.date().year() < 100 || when.date().year() > 9999)
        raise(3421);
    // Stored dates are whole seconds, so that comparing them at the same second is exact.
    return fromOleDate(toOleDate(when));
}

} // namespace

Value convertTo(Kind kind, const Value &value)
{
    if (value.isNull())
        return kind == Kind::YesNo ? Value(false) : Value();
    switch (kind) {
    case Kind::Auto:
    case Kind::Integer:
        return toLong(value);
    case Kind::Number:
        return converted([&] { return value.number(); });
    case Kind::YesNo:
        return converted([&] { return value.boolean(); });
    case Kind::Date:
        return toDate(value);
    case Kind::Text:
    case Kind::Memo:
        break;
    }
    return value.isText() ? value : Value(value.text());
}

Value convertFor(const Column &column, const Value &value)
{
    Value result = convertTo(column.kind, value);
    if (!result.isText())
        return result;
    const QString text = result.text();
    if (column.kind == Kind::Text && text.size() > column.size)
        raise(3163);
    if (column.nonEmpty && text.isEmpty())
        raise(3315, column.name);
    return result;
}

} // namespace dao
