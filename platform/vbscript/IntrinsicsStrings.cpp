#include "platform/vbscript/IntrinsicTables.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr qsizetype kLongestText = 100'000'000;

Value text(const QString &value) { return Value::string(value); }

void countWork(Engine &engine, qsizetype characters) { engine.spend(characters / 32); }

QString stringArgument(Engine &engine, Args &args, int index)
{
    QString value = args.text(index);
    countWork(engine, value.size());
    return value;
}

Value len(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        return Value::null();
    const Value value = engine.plain(args[0]);
    return Value::longInteger(qint32(value.is(Type::String) ? value.view().size() : toText(engine, value).size()));
}

Value lenB(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        return Value::null();
    return Value::longInteger(qint32(toBytes(engine, engine.plain(args[0])).size()));
}

int lengthArgument(Args &args, int index)
{
    const int length = args.integer(index);
    if (length < 0)
        throw ScriptError(err::kInvalidCall);
    return length;
}

Value left(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        return Value::null();
    const int length = lengthArgument(args, 1);
    const QString value = stringArgument(engine, args, 0);
    return text(value.left(length));
}

Value right(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        return Value::null();
    const int length = lengthArgument(args, 1);
    const QString value = stringArgument(engine, args, 0);
    return text(value.right(length));
}

Value mid(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        return Value::null();
    const int start = args.integer(1);
    const int length = args.has(2) ? lengthArgument(args, 2) : std::numeric_limits<int>::max();
    if (start < 1)
        throw ScriptError(err::kInvalidCall);
    const Value value = engine.plain(args[0]);
    if (value.is(Type::String)) // without copying a long text to take one character
        return Value::string(value.view().mid(std::min<qsizetype>(start - 1, value.view().size())).left(length));
    return text(toText(engine, value).mid(start - 1, length));
}

Value bytesPart(Engine &engine, Args &args, int mode)
{
    if (isNull(args, 0))
        return Value::null();
    const Value value = engine.plain(args[0]);
    const QByteArray bytes = toBytes(engine, value);
    QByteArray part;
    if (mode == 2) {
        const int start = args.integer(1);
        if (start < 1)
            throw ScriptError(err::kInvalidCall);
        part = bytes.mid(start - 1, args.has(2) ? lengthArgument(args, 2) : -1);
    } else {
        part = mode == 0 ? bytes.left(lengthArgument(args, 1)) : bytes.right(lengthArgument(args, 1));
    }
    if (value.is(Type::String) && part.size() % 2 == 0)
        return Value::string(reinterpret_cast<const char16_t *>(part.constData()), part.size() / 2);
    return Value::bytes(part);
}
Value leftB(Engine &engine, Args &args) { return bytesPart(engine, args, 0); }
Value rightB(Engine &engine, Args &args) { return bytesPart(engine, args, 1); }
Value midB(Engine &engine, Args &args) { return bytesPart(engine, args, 2); }

struct Search
{
    int start = 1;
    int first = 0; // index of the text among the arguments
    Qt::CaseSensitivity mode = Qt::CaseSensitive;
};

/** InStr takes its start in front, and only then a comparison mode behind. */
Search searchArguments(Args &args)
{
    Search search;
    if (args.count() > 2) {
        search.first = 1;
        search.start = args.integer(0);
        if (search.start < 1)
            throw ScriptError(err::kInvalidCall);
        search.mode = comparisonMode(args, 3);
    }
    return search;
}

Value inStr(Engine &engine, Args &args)
{
    const Search search = searchArguments(args);
    if (isNull(args, search.first) || isNull(args, search.first + 1))
        return Value::null();
    const QString where = stringArgument(engine, args, search.first);
    const QString what = args.text(search.first + 1);
    if (where.isEmpty() || search.start > where.size())
        return Value::longInteger(0);
    if (what.isEmpty())
        return Value::longInteger(search.start);
    return Value::longInteger(qint32(where.indexOf(what, search.start - 1, search.mode) + 1));
}

Value inStrB(Engine &engine, Args &args)
{
    const Search search = searchArguments(args);
    const QByteArray where = toBytes(engine, engine.plain(args[search.first]));
    const QByteArray what = toBytes(engine, engine.plain(args[search.first + 1]));
    if (where.isEmpty() || search.start > where.size())
        return Value::longInteger(0);
    return Value::longInteger(qint32(where.indexOf(what, search.start - 1) + 1));
}

Value inStrRev(Engine &engine, Args &args)
{
    if (isNull(args, 0) || isNull(args, 1))
        return Value::null();
    const QString where = stringArgument(engine, args, 0);
    const QString what = args.text(1);
    const int start = args.integer(2, -1);
    const Qt::CaseSensitivity mode = comparisonMode(args, 3);
    if (start == 0 || start < -1)
        throw ScriptError(err::kInvalidCall);
    if (where.isEmpty() || start > where.size())
        return Value::longInteger(0);
    const qsizetype end = start == -1 ? where.size() : start;
    if (what.isEmpty())
        return Value::longInteger(qint32(end));
    if (what.size() > end)
        return Value::longInteger(0);
    return Value::longInteger(qint32(where.lastIndexOf(what, end - what.size(), mode) + 1));
}

Value replace(Engine &engine, Args &args)
{
    const QString where = stringArgument(engine, args, 0);
    const QString what = args.text(1);
    const QString with = args.text(2);
    const int start = args.integer(3, 1);
    const int most = args.integer(4, -1);
    const Qt::CaseSensitivity mode = comparisonMode(args, 5);
    if (start < 1 || most < -1)
        throw ScriptError(err::kInvalidCall);
    QString result;
    qsizetype from = start - 1;
    for (int count = 0; !what.isEmpty() && count != most; ++count) {
        const qsizetype found = where.indexOf(what, from, mode);
        if (found < 0)
            break;
        result += QStringView(where).mid(from, found - from);
        result += with;
        from = found + what.size();
        engine.spend(1 + (found - from + what.size() + with.size()) / 32);
        if (result.size() > kLongestText)
            throw ScriptError(err::kOutOfMemory);
    }
    return text(result + where.mid(from));
}

Value split(Engine &engine, Args &args)
{
    const QString where = stringArgument(engine, args, 0);
    const QString delimiter = args.text(1, u" "_s);
    const int most = args.integer(2, -1);
    const Qt::CaseSensitivity mode = comparisonMode(args, 3);
    if (most < -1)
        throw ScriptError(err::kInvalidCall);
    QList<Value> parts;
    if (where.isEmpty() || most == 0)
        return Value::array(parts);
    qsizetype from = 0;
    while (!delimiter.isEmpty() && parts.size() + 1 != most) {
        const qsizetype found = where.indexOf(delimiter, from, mode);
        if (found < 0)
            break;
        parts.append(Value::string(QStringView(where).mid(from, found - from)));
        from = found + delimiter.size();
        engine.spend(2);
    }
    parts.append(Value::string(QStringView(where).mid(from)));
    return Value::array(parts);
}

const ArrayData &listArgument(Args &args, int index)
{
    if (!args[index].is(Type::Array))
        throw ScriptError(err::kTypeMismatch);
    const ArrayData &array = *args[index].array();
    if (array.counts.size() > 1 || array.elementType == Type::Byte)
        throw ScriptError(array.counts.size() > 1 ? err::kInvalidCall : err::kTypeMismatch);
    return array;
}

Value join(Engine &engine, Args &args)
{
    const ArrayData &array = listArgument(args, 0);
    const QString delimiter = args.text(1, u" "_s);
    QString result;
    for (qint64 k = 0; k < array.size; ++k) {
        if (k > 0)
            result += delimiter;
        result += toText(engine, array.items[k]);
        engine.spend(2 + delimiter.size() / 32);
        if (result.size() > kLongestText)
            throw ScriptError(err::kOutOfMemory);
    }
    return text(result);
}

Value filter(Engine &engine, Args &args)
{
    const ArrayData &array = listArgument(args, 0);
    const QString what = args.text(1);
    const bool include = args.boolean(2, true);
    const Qt::CaseSensitivity mode = comparisonMode(args, 3);
    QList<Value> found;
    for (qint64 k = 0; k < array.size; ++k) {
        const QString item = toText(engine, array.items[k]);
        if (item.contains(what, mode) == include)
            found.append(Value::string(item));
        engine.spend(2 + item.size() / 32);
    }
    return Value::array(found);
}

template <class Change>
Value changed(Engine &engine, Args &args, Change change)
{
    if (isNull(args, 0))
        return Value::null();
    return text(change(stringArgument(engine, args, 0)));
}

QString withoutBlanks(QStringView value, bool atStart, bool atEnd)
{
    while (atStart && value.startsWith(u' '))
        value = value.mid(1);
    while (atEnd && value.endsWith(u' '))
        value.chop(1);
    return value.toString();
}

Value lCase(Engine &e, Args &a) { return changed(e, a, [](const QString &s) { return s.toLower(); }); }
Value uCase(Engine &e, Args &a)
{
    return changed(e, a, [](QString s) {
        for (QChar &c : s) // one by one: the length stays
            c = c.toUpper();
        return s;
    });
}
Value lTrim(Engine &e, Args &a) { return changed(e, a, [](const QString &s) { return withoutBlanks(s, true, false); }); }
Value rTrim(Engine &e, Args &a) { return changed(e, a, [](const QString &s) { return withoutBlanks(s, false, true); }); }
Value trim(Engine &e, Args &a) { return changed(e, a, [](const QString &s) { return withoutBlanks(s, true, true); }); }

Value repeated(Engine &engine, qsizetype count, QChar c)
{
    if (count > kLongestText)
        throw ScriptError(err::kOutOfMemory);
    countWork(engine, count);
    return text(QString(count, c));
}

Value space(Engine &engine, Args &args) { return repeated(engine, lengthArgument(args, 0), u' '); }

Value string(Engine &engine, Args &args)
{
    const Value what = engine.plain(args[1]);
    if (isNull(args, 0) || what.is(Type::Null))
        return Value::null();
    const int count = lengthArgument(args, 0);
    if (!what.is(Type::String))
        return repeated(engine, count, QChar(char16_t(toLong(engine, what) & 0xff)));
    if (what.view().isEmpty())
        throw ScriptError(err::kInvalidCall);
    return repeated(engine, count, what.view().front());
}

Value strComp(Engine &engine, Args &args)
{
    const Qt::CaseSensitivity mode = comparisonMode(args, 2);
    if (isNull(args, 0) || isNull(args, 1))
        return Value::null();
    const QString a = stringArgument(engine, args, 0);
    const QString b = stringArgument(engine, args, 1);
    const int order = mode == Qt::CaseSensitive ? a.compare(b) : a.toCaseFolded().compare(b.toCaseFolded());
    return Value::integer(order < 0 ? -1 : order > 0 ? 1 : 0);
}

Value strReverse(Engine &engine, Args &args)
{
    QString value = stringArgument(engine, args, 0);
    std::reverse(value.begin(), value.end());
    return text(value);
}

Value escape(Engine &engine, Args &args)
{
    const QString value = stringArgument(engine, args, 0);
    QString result;
    for (const QChar c : value) {
        const char16_t code = c.unicode();
        const bool plain = code < 0x80 && (c.isLetterOrNumber() || QStringView(u"@*_+-./").contains(c));
        if (plain)
            result += c;
        else if (code <= 0xff)
            result += u'%' + QString::number(code, 16).rightJustified(2, u'0').toUpper();
        else
            result += u"%u"_s + QString::number(code, 16).rightJustified(4, u'0').toUpper();
    }
    return text(result);
}

Value unescape(Engine &engine, Args &args)
{
    const QString value = stringArgument(engine, args, 0);
    QString result;
    for (qsizetype k = 0; k < value.size(); ++k) {
        const bool wide = value[k] == u'%' && k + 1 < value.size() && value[k + 1].toLower() == u'u';
        const qsizetype digits = wide ? 4 : 2;
        const qsizetype at = k + (wide ? 2 : 1);
        bool ok = value[k] == u'%' && at + digits <= value.size();
        const ushort code = ok ? value.mid(at, digits).toUShort(&ok, 16) : ushort(0);
        if (ok) {
            result += QChar(code);
            k = at + digits - 1;
        } else {
            result += value[k];
        }
    }
    return text(result);
}

}

std::span<const Intrinsic> stringFunctions()
{
    static constexpr Intrinsic kTable[] = {
        { "Len", 1, 1, len }, { "LenB", 1, 1, lenB }, { "Left", 2, 2, left }, { "Right", 2, 2, right },
        { "Mid", 2, 3, mid }, { "LeftB", 2, 2, leftB }, { "RightB", 2, 2, rightB }, { "MidB", 2, 3, midB },
        { "InStr", 2, 4, inStr }, { "InStrB", 2, 4, inStrB }, { "InStrRev", 2, 4, inStrRev },
        { "Replace", 3, 6, replace }, { "Split", 1, 4, split }, { "Join", 1, 2, join }, { "Filter", 2, 4, filter },
        { "LCase", 1, 1, lCase }, { "UCase", 1, 1, uCase }, { "LTrim", 1, 1, lTrim }, { "RTrim", 1, 1, rTrim },
        { "Trim", 1, 1, trim }, { "Space", 1, 1, space }, { "String", 2, 2, string },
        { "StrComp", 2, 3, strComp }, { "StrReverse", 1, 1, strReverse }, { "Escape", 1, 1, escape },
        { "Unescape", 1, 1, unescape },
    };
    return kTable;
}

}
