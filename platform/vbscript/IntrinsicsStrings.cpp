#include "platform/vbscript/IntrinsicTables.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr qsizetype kPiece = 1 << 16; // characters between two looks at the clock

/** An argument as text: a string's own characters where it is one, so that long texts are not copied. */
class Text
{
public:
    Text(Engine &engine, Args &args, int index) : m_value(engine.plain(args[index]))
    {
        if (!m_value.is(Type::String))
            m_value = Value::string(toText(engine, m_value));
    }
    Text(Engine &engine, const Value &value) : m_value(engine.plain(value))
    {
        if (!m_value.is(Type::String))
            m_value = Value::string(toText(engine, m_value));
    }
    QStringView view() const { return m_value.view(); }
    qsizetype size() const { return view().size(); }

private:
    Value m_value;
};

/** A text that was put together, without the room for more. */
Value finished(Value text)
{
    const qsizetype size = text.view().size();
    return text.stringForAppending(0)->capacity > quint32(size + size / 4) ? Value::string(text.view()) : text;
}

/** Position of `what` at or behind `from`, -1 when there is none; looked for piece by piece. */
qsizetype indexIn(Engine &engine, QStringView where, QStringView what, qsizetype from, Qt::CaseSensitivity mode)
{
    for (; from + what.size() <= where.size(); from += kPiece) {
        const qsizetype found = where.mid(from, kPiece + what.size() - 1).indexOf(what, 0, mode);
        engine.spend(1 + (found >= 0 ? found : kPiece) / 16);
        if (found >= 0)
            return from + found;
    }
    return -1;
}

/** Last position of `what` that ends at or before `end`. */
qsizetype lastIndexIn(Engine &engine, QStringView where, QStringView what, qsizetype end, Qt::CaseSensitivity mode)
{
    for (; end >= what.size(); end -= kPiece) {
        const qsizetype start = std::max<qsizetype>(0, end - kPiece - what.size() + 1);
        const qsizetype found = where.mid(start, end - start).lastIndexOf(what, -1, mode);
        engine.spend(1 + kPiece / 16);
        if (found >= 0)
            return start + found;
    }
    return -1;
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
    const Value value = engine.plain(args[0]);
    const bool isText = value.is(Type::String);
    return Value::longInteger(qint32(isText ? 2 * value.view().size() : toBytes(engine, value).size()));
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
    return Value::string(Text(engine, args, 0).view().left(length));
}

Value right(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        return Value::null();
    const int length = lengthArgument(args, 1);
    return Value::string(Text(engine, args, 0).view().right(length));
}

Value mid(Engine &engine, Args &args)
{
    if (isNull(args, 0))
        return Value::null();
    const int start = args.integer(1);
    const int length = args.has(2) ? lengthArgument(args, 2) : std::numeric_limits<int>::max();
    if (start < 1)
        throw ScriptError(err::kInvalidCall);
    const Text value(engine, args, 0);
    return Value::string(value.view().mid(std::min<qsizetype>(start - 1, value.size())).left(length));
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
    const Text where(engine, args, search.first);
    const Text what(engine, args, search.first + 1);
    if (search.start > where.size())
        return Value::longInteger(0);
    if (what.size() == 0)
        return Value::longInteger(search.start);
    return Value::longInteger(
        qint32(indexIn(engine, where.view(), what.view(), search.start - 1, search.mode) + 1));
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
    const Text where(engine, args, 0);
    const Text what(engine, args, 1);
    const int start = args.integer(2, -1);
    const Qt::CaseSensitivity mode = comparisonMode(args, 3);
    if (start == 0 || start < -1)
        throw ScriptError(err::kInvalidCall);
    if (where.size() == 0 || start > where.size())
        return Value::longInteger(0);
    const qsizetype end = start == -1 ? where.size() : start;
    if (what.size() == 0)
        return Value::longInteger(qint32(end));
    return Value::longInteger(qint32(lastIndexIn(engine, where.view(), what.view(), end, mode) + 1));
}

Value replace(Engine &engine, Args &args)
{
    const Text where(engine, args, 0);
    const Text what(engine, args, 1);
    const Text with(engine, args, 2);
    const int start = args.integer(3, 1);
    const int most = args.integer(4, -1);
    const Qt::CaseSensitivity mode = comparisonMode(args, 5);
    if (start < 1 || most < -1)
        throw ScriptError(err::kInvalidCall);
    Value result = Value::string(QStringView());
    qsizetype from = std::min<qsizetype>(start - 1, where.size());
    for (int count = 0; what.size() > 0 && count != most; ++count) {
        const qsizetype found = indexIn(engine, where.view(), what.view(), from, mode);
        if (found < 0)
            break;
        result.append(where.view().mid(from, found - from));
        result.append(with.view());
        from = found + what.size();
        engine.spend(with.size() / 32);
    }
    result.append(where.view().mid(from));
    return finished(std::move(result));
}

Value split(Engine &engine, Args &args)
{
    const Text where(engine, args, 0);
    const QString delimiter = args.text(1, u" "_s);
    const int most = args.integer(2, -1);
    const Qt::CaseSensitivity mode = comparisonMode(args, 3);
    if (most < -1)
        throw ScriptError(err::kInvalidCall);
    ArrayBuilder parts;
    if (where.size() == 0 || most == 0)
        return parts.take();
    qsizetype from = 0;
    while (!delimiter.isEmpty() && parts.count() + 1 != most) {
        const qsizetype found = indexIn(engine, where.view(), delimiter, from, mode);
        if (found < 0)
            break;
        parts.append(Value::string(where.view().mid(from, found - from)));
        from = found + delimiter.size();
    }
    parts.append(Value::string(where.view().mid(from)));
    return parts.take();
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
    Value result = Value::string(QStringView());
    for (qint64 k = 0; k < array.size; ++k) {
        const Text item(engine, array.items[k]);
        if (k > 0)
            result.append(delimiter);
        result.append(item.view());
        engine.spend(2 + (delimiter.size() + item.size()) / 32);
    }
    return finished(std::move(result));
}

Value filter(Engine &engine, Args &args)
{
    const ArrayData &array = listArgument(args, 0);
    const Text what(engine, args, 1);
    const bool include = args.boolean(2, true);
    const Qt::CaseSensitivity mode = comparisonMode(args, 3);
    ArrayBuilder found;
    for (qint64 k = 0; k < array.size; ++k) {
        const Text item(engine, array.items[k]);
        if ((indexIn(engine, item.view(), what.view(), 0, mode) >= 0) == include)
            found.append(Value::string(item.view()));
    }
    return found.take();
}

/** Null, or the text with each character changed; one by one, so that the length stays. */
template <class Change>
Value eachChanged(Engine &engine, Args &args, Change change)
{
    if (isNull(args, 0))
        return Value::null();
    const Text original(engine, args, 0);
    Value result = Value::string(original.view());
    char16_t *characters = result.stringForAppending(0)->text();
    for (qsizetype k = 0; k < original.size(); ++k) {
        characters[k] = change(QChar(characters[k])).unicode();
        if (k % kPiece == 0)
            engine.spend(kPiece / 8);
    }
    return result;
}
Value lCase(Engine &e, Args &a) { return eachChanged(e, a, [](QChar c) { return c.toLower(); }); }
Value uCase(Engine &e, Args &a) { return eachChanged(e, a, [](QChar c) { return c.toUpper(); }); }

Value withoutBlanks(Engine &engine, Args &args, bool atStart, bool atEnd)
{
    if (isNull(args, 0))
        return Value::null();
    const Text original(engine, args, 0);
    QStringView value = original.view();
    while (atStart && value.startsWith(u' '))
        value = value.mid(1);
    while (atEnd && value.endsWith(u' '))
        value.chop(1);
    engine.spend(original.size() / 16);
    return Value::string(value);
}
Value lTrim(Engine &e, Args &a) { return withoutBlanks(e, a, true, false); }
Value rTrim(Engine &e, Args &a) { return withoutBlanks(e, a, false, true); }
Value trim(Engine &e, Args &a) { return withoutBlanks(e, a, true, true); }

Value repeated(Engine &engine, qsizetype count, QChar c)
{
    engine.spend(count / 32);
    return Value::string(count, c);
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

/** -1, 0 or 1. */
int compared(Engine &engine, QStringView a, QStringView b, Qt::CaseSensitivity mode)
{
    const auto folded = [mode](QChar c) { return mode == Qt::CaseSensitive ? c : c.toCaseFolded(); };
    const qsizetype common = std::min(a.size(), b.size());
    for (qsizetype k = 0; k < common; ++k) {
        if (k % kPiece == 0)
            engine.spend(kPiece / 8);
        if (a[k] != b[k] && folded(a[k]) != folded(b[k]))
            return folded(a[k]) < folded(b[k]) ? -1 : 1;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

Value strComp(Engine &engine, Args &args)
{
    const Qt::CaseSensitivity mode = comparisonMode(args, 2);
    if (isNull(args, 0) || isNull(args, 1))
        return Value::null();
    const Text a(engine, args, 0);
    const Text b(engine, args, 1);
    return Value::integer(qint16(compared(engine, a.view(), b.view(), mode)));
}

Value strReverse(Engine &engine, Args &args)
{
    Value result = Value::string(Text(engine, args, 0).view());
    StringData *data = result.stringForAppending(0);
    std::reverse(data->text(), data->text() + data->length);
    engine.spend(data->length / 16);
    return result;
}

Value escape(Engine &engine, Args &args)
{
    const Text value(engine, args, 0);
    Value result = Value::string(QStringView());
    for (const QChar c : value.view()) {
        const char16_t code = c.unicode();
        const bool plain = code < 0x80 && (c.isLetterOrNumber() || QStringView(u"@*_+-./").contains(c));
        engine.spend(plain ? 1 : 5);
        if (plain)
            result.append(QStringView(&c, 1));
        else if (code <= 0xff)
            result.append(u'%' + QString::number(code, 16).rightJustified(2, u'0').toUpper());
        else
            result.append(u"%u"_s + QString::number(code, 16).rightJustified(4, u'0').toUpper());
    }
    return finished(std::move(result));
}

Value unescape(Engine &engine, Args &args)
{
    const Text original(engine, args, 0);
    const QStringView value = original.view();
    Value result = Value::string(QStringView());
    for (qsizetype k = 0; k < value.size(); ++k) {
        const bool wide = value[k] == u'%' && k + 1 < value.size() && value[k + 1].toLower() == u'u';
        const qsizetype digits = wide ? 4 : 2;
        const qsizetype at = k + (wide ? 2 : 1);
        bool ok = value[k] == u'%' && at + digits <= value.size();
        const QChar code = ok ? QChar(value.mid(at, digits).toUShort(&ok, 16)) : value[k];
        result.append(QStringView(ok ? &code : &value.data()[k], 1));
        k += ok ? at + digits - 1 - k : 0;
        engine.spend(1);
    }
    return finished(std::move(result));
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
