#include "platform/vbscript/IntrinsicTables.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr int kEnglishUnitedStates = 1033;

Value array(Engine &, Args &args)
{
    QList<Value> items;
    for (int k = 0; k < args.count(); ++k)
        items.append(args[k]);
    return Value::array(items);
}

qint32 countOf(Args &args)
{
    if (!args[0].is(Type::Array))
        throw ScriptError(err::kTypeMismatch);
    const ArrayData &array = *args[0].array();
    const int dimension = args.integer(1, 1);
    if (dimension < 1 || dimension > array.counts.size())
        throw ScriptError(err::kSubscript);
    return array.counts[dimension - 1];
}
Value uBound(Engine &, Args &args) { return Value::longInteger(countOf(args) - 1); }
Value lBound(Engine &, Args &args)
{
    countOf(args);
    return Value::longInteger(0);
}

Value isArray(Engine &, Args &args) { return Value::boolean(args[0].is(Type::Array)); }
Value isObject(Engine &, Args &args) { return Value::boolean(args[0].is(Type::Object)); }

/** The value that a question about a value's kind is meant for: an object's default property if it has one. */
Value asked(Engine &engine, Args &args)
{
    const Value &value = args[0];
    const bool hasDefault = value.is(Type::Object) && !value.isNothing() && value.object()->hasDefaultMember();
    return hasDefault ? engine.plain(value) : value;
}
Value isEmpty(Engine &engine, Args &args) { return Value::boolean(asked(engine, args).is(Type::Empty)); }
Value isNullValue(Engine &engine, Args &args) { return Value::boolean(asked(engine, args).is(Type::Null)); }

Value isNumeric(Engine &engine, Args &args)
{
    const Value value = asked(engine, args);
    switch (value.type()) {
    case Type::Null: case Type::Date: case Type::Object: case Type::Array: case Type::Error:
        return Value::boolean(false);
    case Type::String: {
        const std::optional<double> number = parseNumber(value.view(), engine.locale());
        return Value::boolean(number && std::isfinite(*number));
    }
    default: return Value::boolean(true);
    }
}

QString nameOfType(const Value &value)
{
    switch (value.type()) {
    case Type::Empty: return u"Empty"_s;
    case Type::Null: return u"Null"_s;
    case Type::Integer: return u"Integer"_s;
    case Type::Long: return u"Long"_s;
    case Type::Single: return u"Single"_s;
    case Type::Double: return u"Double"_s;
    case Type::Currency: return u"Currency"_s;
    case Type::Date: return u"Date"_s;
    case Type::String: return u"String"_s;
    case Type::Error: return u"Error"_s;
    case Type::Boolean: return u"Boolean"_s;
    case Type::Byte: return u"Byte"_s;
    case Type::Array: return value.array()->elementType == Type::Byte ? u"Byte()"_s : u"Variant()"_s;
    case Type::Object: return value.isNothing() ? u"Nothing"_s : value.object()->typeName();
    default: return u"Unknown"_s;
    }
}
Value typeName(Engine &, Args &args) { return Value::string(nameOfType(args[0])); }

Value varType(Engine &engine, Args &args)
{
    const Value value = asked(engine, args);
    if (!value.is(Type::Array))
        return Value::integer(qint16(value.type()));
    return Value::integer(value.array()->elementType == Type::Byte ? 8209 : 8204);
}

Value rgb(Engine &, Args &args)
{
    qint32 colour = 0;
    for (int k = 2; k >= 0; --k) {
        const qint32 part = args.integer(k);
        if (part < 0)
            throw ScriptError(err::kInvalidCall);
        colour = colour * 256 + std::min(part, 255);
    }
    return Value::longInteger(colour);
}

Value scriptEngine(Engine &, Args &) { return Value::string(u"VBScript"_s); }
Value majorVersion(Engine &, Args &) { return Value::longInteger(5); }
Value minorVersion(Engine &, Args &) { return Value::longInteger(8); }
Value buildVersion(Engine &, Args &) { return Value::longInteger(16384); }

struct LocaleRow
{
    int number;
    const char *name;
};

constexpr LocaleRow kLocales[] = {
    { 1033, "en-US" }, { 2057, "en-GB" }, { 3081, "en-AU" }, { 4105, "en-CA" }, { 1031, "de-DE" }, { 3079, "de-AT" },
    { 2055, "de-CH" }, { 1036, "fr-FR" }, { 3084, "fr-CA" }, { 4108, "fr-CH" }, { 1040, "it-IT" },
    { 3082, "es-ES" }, { 2058, "es-MX" }, { 1043, "nl-NL" }, { 1030, "da-DK" }, { 1053, "sv-SE" },
    { 1044, "nb-NO" }, { 1035, "fi-FI" }, { 1045, "pl-PL" }, { 1046, "pt-BR" }, { 2070, "pt-PT" },
    { 1049, "ru-RU" }, { 1029, "cs-CZ" }, { 1038, "hu-HU" }, { 1055, "tr-TR" }, { 1041, "ja-JP" },
    { 2052, "zh-CN" }, { 1042, "ko-KR" }, { 1032, "el-GR" },
};

int localeNumber(const QLocale &locale)
{
    for (const LocaleRow &row : kLocales)
        if (locale.bcp47Name() == QLatin1String(row.name) || locale.name().replace(u'_', u'-') == QLatin1String(row.name))
            return row.number;
    return kEnglishUnitedStates;
}

Value getLocale(Engine &engine, Args &) { return Value::longInteger(localeNumber(engine.locale())); }

Value setLocale(Engine &engine, Args &args)
{
    const qint32 before = localeNumber(engine.locale());
    const Value wanted = args.has(0) ? engine.plain(args[0]) : Value::longInteger(0);
    const QString name = wanted.is(Type::String) ? wanted.toQString() : QString();
    const int number = name.isEmpty() ? toLong(engine, wanted) : -1;
    if (number == 0 || number == 1024 || number == 2048) {
        engine.setLocale(QLocale::system());
        return Value::longInteger(before);
    }
    for (const LocaleRow &row : kLocales) {
        const QString known = QString::fromLatin1(row.name);
        if (row.number == number || name.compare(known, Qt::CaseInsensitive) == 0
            || name.compare(known.left(2), Qt::CaseInsensitive) == 0) {
            engine.setLocale(QLocale(known));
            return Value::longInteger(before);
        }
    }
    throw ScriptError(447);
}

Value getRef(Engine &engine, Args &args) { return engine.makeProcedureReference(args.text(0)); }
Value createObject(Engine &engine, Args &args) { return engine.createObject(args.text(0)); }

Value getObject(Engine &, Args &args)
{
    // Files and monikers bind to components of another system; nothing here can be bound to.
    if (args.has(0) && !args.text(0).isEmpty())
        throw ScriptError(err::kClassNotFound, args.text(0));
    throw ScriptError(err::kCannotCreate, args.text(1, QString()));
}

Value eval(Engine &engine, Args &args) { return engine.evaluate(args.text(0)); }

/** Dialogs: refused while nothing may be shown, and this engine has none of its own to show. */
Value dialog(Engine &, Args &) { throw ScriptError(err::kPermissionDenied); }
Value loadPicture(Engine &, Args &) { throw ScriptError(err::kInvalidPicture); }

}

std::span<const Intrinsic> otherFunctions()
{
    static constexpr Intrinsic kTable[] = {
        { "Array", 0, 255, array }, { "UBound", 1, 2, uBound }, { "LBound", 1, 2, lBound },
        { "IsArray", 1, 1, isArray }, { "IsObject", 1, 1, isObject }, { "IsEmpty", 1, 1, isEmpty },
        { "IsNull", 1, 1, isNullValue }, { "IsNumeric", 1, 1, isNumeric }, { "TypeName", 1, 1, typeName },
        { "VarType", 1, 1, varType }, { "RGB", 3, 3, rgb }, { "ScriptEngine", 0, 0, scriptEngine },
        { "ScriptEngineMajorVersion", 0, 0, majorVersion }, { "ScriptEngineMinorVersion", 0, 0, minorVersion },
        { "ScriptEngineBuildVersion", 0, 0, buildVersion }, { "GetLocale", 0, 0, getLocale },
        { "SetLocale", 0, 1, setLocale }, { "GetRef", 1, 1, getRef }, { "CreateObject", 1, 2, createObject },
        { "GetObject", 0, 2, getObject }, { "Eval", 1, 1, eval }, { "MsgBox", 1, 5, dialog },
        { "InputBox", 1, 7, dialog }, { "LoadPicture", 1, 1, loadPicture },
    };
    return kTable;
}

}
