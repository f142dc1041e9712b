#include "data/import/FieldText.h"

#include "platform/dao/DateText.h"
#include "platform/dao/Value.h"
#include "platform/dao/VbError.h"

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

// The dates that there are: 1 January 100 up to the end of 9999.
constexpr double kFirstDay = -657434;
constexpr double kEndOfDays = 2958466;
constexpr int kQuotedLength = 40;

const QString kNull = u"NULL"_s;

QString number(double value) { return QString::number(value, 'g', 17); }

QString quoted(QString text) { return u'\'' + text.replace(u"'"_s, u"''"_s) + u'\''; }

/** A value in a message: in quotes and not too long. */
QString shown(const dao::Value &value)
{
    const QString text = value.text();
    return u'"' + (text.size() > kQuotedLength ? text.left(kQuotedLength) + u'…' : text) + u'"';
}

/** The field in the form that the storage layer converts from; a date stays a day number. */
dao::Value plain(const jet::Field &field)
{
    struct Reader {
        dao::Value operator()(std::monostate) const { return {}; }
        dao::Value operator()(bool v) const { return v; }
        dao::Value operator()(qint64 v) const { return v; }
        dao::Value operator()(double v) const { return v; }
        dao::Value operator()(jet::Date v) const { return v.days; }
        dao::Value operator()(const QString &v) const { return v; }
        dao::Value operator()(const jet::Unreadable &) const { return {}; }
    };
    return std::visit(Reader {}, field);
}

bool isExistingDate(double days) { return days >= kFirstDay && days < kEndOfDays; }

FieldText unreadable(const QString &why, const QString &instead = {}) { return {instead, why}; }

FieldText integerText(const dao::Value &value)
{
    const qint64 whole = value.integer();
    if (whole < std::numeric_limits<qint32>::min() || whole > std::numeric_limits<qint32>::max())
        return unreadable(shown(value) + u" is too large, Null instead"_s, kNull);
    const bool rounded = double(whole) != value.number();
    return {QString::number(whole), rounded ? shown(value) + u" rounded to "_s + QString::number(whole) : QString()};
}

FieldText numberText(const dao::Value &value)
{
    const double real = value.number();
    if (!std::isfinite(real))
        return unreadable(u"no number, Null instead"_s, kNull);
    return {number(real), {}};
}

/** A flag that was kept as a text is one by the words True and False alone. */
FieldText yesNoText(const dao::Value &value)
{
    if (!value.isText())
        return {value.boolean() ? u"True"_s : u"False"_s, {}};
    if (value.text().compare(u"True"_s, Qt::CaseInsensitive) == 0)
        return {u"True"_s, {}};
    if (value.text().compare(u"False"_s, Qt::CaseInsensitive) == 0)
        return {u"False"_s, {}};
    return unreadable(shown(value) + u" is neither True nor False, False instead"_s, u"False"_s);
}

FieldText dateText(const dao::Value &value)
{
    const double days = value.isText() ? dao::toOleDate(value.dateTime()) : value.number();
    if (!isExistingDate(days))
        return unreadable(u"no date, Null instead"_s, kNull);
    return {number(days), {}};
}

FieldText textText(const schema::Column &column, const jet::Field &field, const dao::Value &value)
{
    const auto *date = std::get_if<jet::Date>(&field);
    const bool isDate = date && isExistingDate(date->days);
    const QString text = isDate ? dao::generalDateText(dao::fromOleDate(date->days)) : value.text();
    if (column.kind == schema::Kind::Memo || text.size() <= column.size)
        return {quoted(text), {}};
    return {quoted(text.left(column.size)), u"longer than %1 characters, cut off"_s.arg(column.size)};
}

FieldText convert(const schema::Column &column, const jet::Field &field)
{
    const dao::Value value = plain(field);
    switch (column.kind) {
    case schema::Kind::Auto:
    case schema::Kind::Integer:
        return integerText(value);
    case schema::Kind::Number:
        return numberText(value);
    case schema::Kind::YesNo:
        return yesNoText(value);
    case schema::Kind::Date:
        return dateText(value);
    case schema::Kind::Text:
    case schema::Kind::Memo:
        break;
    }
    return textText(column, field, value);
}

} // namespace

FieldText fieldText(const schema::Column &column, const jet::Field &field)
{
    const bool isKey = column.kind == schema::Kind::Auto;
    const QString newNumber = u"a new number instead"_s;
    if (const auto *lost = std::get_if<jet::Unreadable>(&field))
        return unreadable(u"unreadable (%1), %2"_s.arg(lost->reason, isKey ? newNumber : u"the default instead"_s));
    if (std::holds_alternative<std::monostate>(field))
        return isKey ? unreadable(u"missing, "_s + newNumber)
                     : FieldText {column.kind == schema::Kind::YesNo ? u"False"_s : kNull, {}};
    try {
        return convert(column, field);
    } catch (const VbError &) {
        return unreadable(shown(plain(field)) + u" does not fit, "_s + (isKey ? newNumber : u"Null instead"_s),
                          isKey ? QString() : kNull);
    }
}
