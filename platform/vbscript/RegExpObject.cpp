#include "platform/vbscript/RegExpObject.h"

#include <QList>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

/** For Each over an array of values. */
class ListEnumerator final : public Enumerator
{
public:
    explicit ListEnumerator(Value items) : m_items(std::move(items)) {}
    bool next(Value &item) override
    {
        if (m_at >= m_items.array()->size)
            return false;
        item = m_items.array()->items[m_at++];
        return true;
    }

private:
    Value m_items;
    qint64 m_at = 0;
};

/** Matches and SubMatches: a count, items by number, For Each. */
class MatchList final : public NativeObject<MatchList>
{
public:
    MatchList(const char *typeName, Value items) : m_typeName(typeName), m_items(std::move(items)) {}
    static std::span<const Member<MatchList>> members()
    {
        static constexpr Member<MatchList> kMembers[] = {
            { "Item", 1, 1, &MatchList::item, nullptr, true },
            { "Count", 0, 0, &MatchList::count },
        };
        return kMembers;
    }
    QString typeName() const override { return QString::fromLatin1(m_typeName); }
    std::unique_ptr<Enumerator> enumerate(ScriptHost &) override { return std::make_unique<ListEnumerator>(m_items); }

private:
    Value item(Args &args)
    {
        const int index = args.integer(0);
        if (index < 0 || index >= m_items.array()->size)
            throw ScriptError(err::kInvalidCall);
        return m_items.array()->items[index];
    }
    Value count(Args &) { return Value::longInteger(qint32(m_items.array()->size)); }

    const char *m_typeName;
    Value m_items;
};

QStringView groupText(QStringView text, const std::vector<qint32> &captures, size_t group)
{
    const qint32 from = captures[2 * group];
    const qint32 to = captures[2 * group + 1];
    return from < 0 || to < 0 ? QStringView() : text.mid(from, to - from);
}

/** The groups of a match; one that took no part is Empty. */
QList<Value> groupValues(QStringView text, const std::vector<qint32> &captures)
{
    QList<Value> groups;
    for (size_t k = 1; 2 * k + 1 < captures.size(); ++k)
        groups.append(captures[2 * k] < 0 ? Value() : Value::string(groupText(text, captures, k)));
    return groups;
}

class MatchObject final : public NativeObject<MatchObject>
{
public:
    MatchObject(QStringView text, const std::vector<qint32> &captures)
        : m_value(Value::string(groupText(text, captures, 0))), m_groups(Value::array(groupValues(text, captures))),
          m_first(captures[0]) {}
    static std::span<const Member<MatchObject>> members()
    {
        static constexpr Member<MatchObject> kMembers[] = {
            { "Value", 0, 0, &MatchObject::value, nullptr, true },
            { "FirstIndex", 0, 0, &MatchObject::firstIndex },
            { "Length", 0, 0, &MatchObject::length },
            { "SubMatches", 0, 0, &MatchObject::subMatches },
        };
        return kMembers;
    }
    QString typeName() const override { return u"IMatch2"_s; }

private:
    Value value(Args &) { return m_value; }
    Value firstIndex(Args &) { return Value::longInteger(m_first); }
    Value length(Args &) { return Value::longInteger(qint32(m_value.view().size())); }
    Value subMatches(Args &) { return Value::object(new MatchList("ISubMatches", m_groups)); }

    Value m_value;
    Value m_groups;
    qint32 m_first;
};

/** What `$1`, `$&` … of a replacement text stand for. */
QString expanded(const QString &with, QStringView text, const std::vector<qint32> &captures)
{
    const auto part = [&](size_t group) { return groupText(text, captures, group); };
    const size_t groups = captures.size() / 2;
    QString result;
    for (qsizetype k = 0; k < with.size(); ++k) {
        const QChar next = with[k] == u'$' && k + 1 < with.size() ? with[k + 1] : QChar();
        const auto digit = [&](qsizetype at) {
            return at < with.size() && with[at] >= u'0' && with[at] <= u'9' ? with[at].unicode() - u'0' : -1;
        };
        const int one = next.isNull() ? -1 : digit(k + 1);
        const int two = one >= 0 && digit(k + 2) >= 0 ? one * 10 + digit(k + 2) : -1;
        if (two >= 1 && size_t(two) < groups) {
            result += part(size_t(two));
            k += 2;
        } else if (one >= 1 && size_t(one) < groups) {
            result += part(size_t(one));
            ++k;
        } else if (next == u'&') {
            result += part(0);
            ++k;
        } else if (next == u'`') {
            result += text.left(captures[0]);
            ++k;
        } else if (next == u'\'') {
            result += text.mid(captures[1]);
            ++k;
        } else {
            result += with[k];
            k += next == u'$' ? 1 : 0;
        }
    }
    return result;
}

}

std::span<const Member<RegExpObject>> RegExpObject::members()
{
    using R = RegExpObject;
    static constexpr Member<R> kMembers[] = {
        { "Pattern", 0, 0, &R::pattern, &R::setPattern }, { "Global", 0, 0, &R::global, &R::setGlobal },
        { "IgnoreCase", 0, 0, &R::ignoreCase, &R::setIgnoreCase },
        { "MultiLine", 0, 0, &R::multiLine, &R::setMultiLine }, { "Test", 1, 1, &R::test },
        { "Execute", 1, 1, &R::execute }, { "Replace", 2, 2, &R::replace },
    };
    return kMembers;
}

void RegExpObject::setPattern(Args &args)
{
    m_pattern = toText(args.host(), args.newValue());
    m_regex.reset();
}

void RegExpObject::setIgnoreCase(Args &args)
{
    m_options.ignoreCase = toBoolean(args.host(), args.newValue());
    m_regex.reset();
}

void RegExpObject::setMultiLine(Args &args)
{
    m_options.multiLine = toBoolean(args.host(), args.newValue());
    m_regex.reset();
}

const Regex &RegExpObject::compiled()
{
    if (!m_regex) {
        auto regex = std::make_unique<Regex>(m_pattern, m_options);
        m_charge.resize(regex->bytes() + 4 * m_pattern.size());
        m_regex = std::move(regex);
    }
    return *m_regex;
}

Value RegExpObject::test(Args &args)
{
    std::vector<qint32> captures;
    const QString text = args.text(0);
    return Value::boolean(compiled().find(args.host(), text, 0, captures));
}

Value RegExpObject::execute(Args &args)
{
    const QString text = args.text(0);
    const Regex &regex = compiled();
    ArrayBuilder found;
    std::vector<qint32> captures;
    qsizetype from = 0;
    while (from <= text.size() && regex.find(args.host(), text, from, captures)) {
        found.append(Value::object(new MatchObject(text, captures)));
        args.host().spend(20);
        from = captures[1] > captures[0] ? captures[1] : captures[1] + 1;
        if (!m_global)
            break;
    }
    return Value::object(new MatchList("IMatchCollection2", found.take()));
}

Value RegExpObject::replace(Args &args)
{
    const QString text = args.text(0);
    const Value with = args[1];
    const bool calls = with.is(Type::Object);
    const QString pattern = calls ? QString() : args.text(1);
    const Regex &regex = compiled();
    Value result = Value::string(QStringView());
    std::vector<qint32> captures;
    qsizetype from = 0;
    qsizetype copied = 0;
    while (from <= text.size() && regex.find(args.host(), text, from, captures)) {
        result.append(QStringView(text).mid(copied, captures[0] - copied));
        if (calls) {
            QList<Value> parts = groupValues(text, captures);
            parts.prepend(Value::string(groupText(text, captures, 0)));
            parts.append(Value::longInteger(captures[0]));
            parts.append(Value::string(text));
            result.append(toText(args.host(), args.host().callObject(toObject(with), parts)));
        } else {
            result.append(expanded(pattern, text, captures));
        }
        copied = captures[1];
        from = captures[1] > captures[0] ? captures[1] : captures[1] + 1;
        args.host().spend(2 + pattern.size() / 32);
        if (!m_global)
            break;
    }
    result.append(QStringView(text).mid(copied));
    return result;
}

}
