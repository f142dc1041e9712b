#include "platform/vbscript/objects/Makers.h"
#include "platform/vbscript/objects/Support.h"

#include <bit>
#include <span>
#include <vector>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

/** Scripting.Dictionary: pairs in the order of their insertion, found through an open-addressing index. */
class Dictionary : public NativeObject<Dictionary>
{
public:
    QString typeName() const override { return u"Dictionary"_s; }
    static std::span<const Member<Dictionary>> members();
    std::unique_ptr<Enumerator> enumerate(ScriptHost &host) override;

private:
    struct Entry
    {
        Value key;
        Value item;
        size_t hash = 0;
        bool live = false;
    };
    static constexpr qint32 kFree = -1;
    static constexpr size_t kSmallestIndex = 16;

    size_t hashOf(const Value &key) const;
    bool sameKey(const Value &left, const Value &right) const;
    qint32 find(const Value &key) const;
    Entry &insert(const Value &key);
    void rebuild(size_t indexSize);
    void growIfFull();
    void removeAt(qint32 position);
    /** The argument as a key: what a script passed by reference is copied. Arrays are no keys. */
    static Value keyOf(Args &args, int index);

    Value add(Args &args);
    Value exists(Args &args);
    Value item(Args &args);
    void putItem(Args &args);
    void putKey(Args &args);
    Value items(Args &args);
    Value keys(Args &args);
    Value count(Args &args);
    Value remove(Args &args);
    Value removeAll(Args &args);
    Value compareMode(Args &args);
    void putCompareMode(Args &args);
    Value listOf(ScriptHost &host, Value Entry::*part) const;

    std::vector<Entry> m_entries;
    std::vector<qint32> m_index; // positions in m_entries; size is a power of two
    qint32 m_live = 0;
    int m_compareMode = 0;
    memory::Charge m_charge;
};

class KeyWalk : public Enumerator
{
public:
    explicit KeyWalk(const Value &keys) : m_keys(keys) {}
    bool next(Value &item) override
    {
        if (m_at >= m_keys.array()->size)
            return false;
        item = m_keys.array()->items[m_at++];
        return true;
    }

private:
    Value m_keys;
    qint64 m_at = 0;
};

bool isNumeric(const Value &value)
{
    switch (value.type()) {
    case Type::Integer:
    case Type::Long:
    case Type::Byte:
    case Type::Boolean:
    case Type::Single:
    case Type::Double:
    case Type::Currency: case Type::Date:
        return true;
    default:
        return false;
    }
}

double numberOf(const Value &value)
{
    if (value.is(Type::Currency))
        return double(value.whole()) / 10000;
    const bool isReal = value.is(Type::Single) || value.is(Type::Double) || value.is(Type::Date);
    return isReal ? value.realPart() : double(value.whole());
}

size_t Dictionary::hashOf(const Value &key) const
{
    if (key.is(Type::String))
        return m_compareMode ? qHash(key.view().toString().toCaseFolded()) : qHash(key.view());
    if (isNumeric(key))
        return qHash(numberOf(key) + 0.0); // -0 is 0
    return key.is(Type::Object) ? qHash(quintptr(key.object())) : qHash(int(key.type()));
}

bool Dictionary::sameKey(const Value &left, const Value &right) const
{
    if (isNumeric(left))
        return isNumeric(right) && numberOf(left) == numberOf(right);
    if (left.type() != right.type())
        return false;
    if (left.is(Type::String))
        return left.view().compare(right.view(), m_compareMode ? Qt::CaseInsensitive : Qt::CaseSensitive)
            == 0;
    return !left.is(Type::Object) || left.object() == right.object();
}

qint32 Dictionary::find(const Value &key) const
{
    if (m_index.empty())
        return kFree;
    const size_t hash = hashOf(key);
    const size_t mask = m_index.size() - 1;
    for (size_t slot = hash & mask; m_index[slot] != kFree; slot = (slot + 1) & mask) {
        const Entry &entry = m_entries[size_t(m_index[slot])];
        if (entry.live && entry.hash == hash && sameKey(entry.key, key))
            return m_index[slot];
    }
    return kFree;
}

void Dictionary::rebuild(size_t indexSize)
{
    m_charge.resize(qint64(indexSize * (sizeof(qint32) + sizeof(Entry))));
    std::erase_if(m_entries, [](const Entry &entry) { return !entry.live; });
    m_entries.reserve(indexSize / 2);
    m_index.assign(indexSize, kFree);
    for (size_t i = 0; i < m_entries.size(); ++i) {
        size_t slot = m_entries[i].hash & (indexSize - 1);
        while (m_index[slot] != kFree)
            slot = (slot + 1) & (indexSize - 1);
        m_index[slot] = qint32(i);
    }
}

void Dictionary::growIfFull()
{
    if (m_entries.size() < m_index.size() / 2)
        return;
    rebuild(qMax(kSmallestIndex, std::bit_ceil(size_t(m_live) * 4 + 1)));
}

Dictionary::Entry &Dictionary::insert(const Value &key)
{
    growIfFull();
    const size_t hash = hashOf(key);
    size_t slot = hash & (m_index.size() - 1);
    while (m_index[slot] != kFree)
        slot = (slot + 1) & (m_index.size() - 1);
    m_index[slot] = qint32(m_entries.size());
    m_entries.push_back({ key, Value(), hash, true });
    ++m_live;
    return m_entries.back();
}

void Dictionary::removeAt(qint32 position)
{
    // Taken out first: letting go of an object may run script code that comes back here.
    const Entry gone = std::move(m_entries[size_t(position)]);
    m_entries[size_t(position)].live = false;
    --m_live;
}

Value Dictionary::keyOf(Args &args, int index)
{
    if (args[index].is(Type::Array))
        throw ScriptError(err::kInvalidCall);
    if (args[index].is(Type::String))
        args.host().spend(args[index].view().size() / 32);
    return args[index].isMissing() ? Value() : args[index];
}

Value Dictionary::add(Args &args)
{
    const Value key = keyOf(args, 0);
    if (find(key) != kFree)
        throw ScriptError(err::kKeyExists);
    insert(key).item = args[1];
    return {};
}

Value Dictionary::exists(Args &args) { return Value::boolean(find(keyOf(args, 0)) != kFree); }

Value Dictionary::item(Args &args)
{
    const Value key = keyOf(args, 0);
    const qint32 position = find(key);
    return position == kFree ? insert(key).item : m_entries[size_t(position)].item;
}

void Dictionary::putItem(Args &args)
{
    const Value key = keyOf(args, 0);
    Value value = args.newValue().resolved();
    const qint32 position = find(key);
    Entry &entry = position == kFree ? insert(key) : m_entries[size_t(position)];
    entry.item.swap(value);
}

void Dictionary::putKey(Args &args)
{
    const Value oldKey = keyOf(args, 0);
    const Value newKey = args.newValue().resolved();
    if (newKey.is(Type::Array))
        throw ScriptError(err::kInvalidCall);
    const qint32 position = find(oldKey);
    if (position == kFree)
        throw ScriptError(err::kElementNotFound);
    const qint32 taken = find(newKey);
    if (taken != kFree && taken != position)
        throw ScriptError(err::kKeyExists);
    m_entries[size_t(position)].key = newKey; // keeps its place in the order
    m_entries[size_t(position)].hash = hashOf(newKey);
    args.host().spend(qint64(m_index.size()));
    rebuild(m_index.size());
}

Value Dictionary::listOf(ScriptHost &host, Value Entry::*part) const
{
    host.spend(m_live);
    Value result = Value::array(new ArrayData({ m_live }, Type::Empty));
    Value *next = result.arrayForWriting()->items;
    for (const Entry &entry : m_entries) {
        if (entry.live)
            *next++ = entry.*part;
    }
    return result;
}

Value Dictionary::items(Args &args) { return listOf(args.host(), &Entry::item); }

Value Dictionary::keys(Args &args) { return listOf(args.host(), &Entry::key); }

Value Dictionary::count(Args &) { return Value::longInteger(m_live); }

Value Dictionary::remove(Args &args)
{
    const qint32 position = find(keyOf(args, 0));
    if (position == kFree)
        throw ScriptError(err::kElementNotFound);
    removeAt(position);
    return {};
}

Value Dictionary::removeAll(Args &)
{
    const std::vector<Entry> gone = std::move(m_entries);
    m_entries = {};
    m_index = {};
    m_live = 0;
    m_charge.resize(0);
    return {};
}

Value Dictionary::compareMode(Args &) { return Value::longInteger(m_compareMode); }

void Dictionary::putCompareMode(Args &args)
{
    const qint32 mode = toLong(args.host(), args.newValue());
    if (m_live > 0 || mode < 0 || mode > 2)
        throw ScriptError(err::kInvalidCall);
    m_compareMode = mode;
}

std::unique_ptr<Enumerator> Dictionary::enumerate(ScriptHost &host)
{
    return std::make_unique<KeyWalk>(listOf(host, &Entry::key));
}

std::span<const Member<Dictionary>> Dictionary::members()
{
    using D = Dictionary;
    static constexpr Member<D> table[] = {
        { "Item", 1, 1, &D::item, &D::putItem, true },
        { "Add", 2, 2, &D::add },
        { "Exists", 1, 1, &D::exists },
        { "Items", 0, 0, &D::items },
        { "Keys", 0, 0, &D::keys },
        { "Key", 1, 1, nullptr, &D::putKey },
        { "Count", 0, 0, &D::count },
        { "Remove", 1, 1, &D::remove },
        { "RemoveAll", 0, 0, &D::removeAll },
        { "CompareMode", 0, 0, &D::compareMode, &D::putCompareMode },
    };
    return table;
}

}

Object *makeDictionary(ScriptHost &) { return new Dictionary; }

}
