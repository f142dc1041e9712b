#include "platform/vbscript/Value.h"

#include "platform/vbscript/Memory.h"
#include "platform/vbscript/Object.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

namespace vbs {

namespace {

constexpr qsizetype kLongestText = 0x3fffffff;
// Chains longer than this (lists of script objects) are taken apart in a loop instead of on the C++ stack.
constexpr int kDeepestRelease = 100;

struct Doomed
{
    Counted *counted;
    Type type;
};
thread_local int t_releaseDepth = 0;
thread_local std::vector<Doomed> t_doomed;

qint64 textBytes(qsizetype capacity) { return qint64(sizeof(StringData)) + 2 * capacity; }
qint64 textCharge(qsizetype capacity) { return memory::blockSize(textBytes(capacity)); }

/** What an array's elements cost. */
qint64 itemsCharge(Type element, qint64 size)
{
    return size ? memory::blockSize(element == Type::Byte ? size : size * qint64(sizeof(Value))) : 0;
}

StringData *newString(qsizetype length, qsizetype capacity)
{
    if (capacity > kLongestText)
        throw ScriptError(err::kOutOfMemory);
    memory::charge(textCharge(capacity));
    auto *data = new (std::malloc(size_t(textBytes(capacity)))) StringData;
    data->refs = 1;
    data->length = quint32(length);
    data->capacity = quint32(capacity);
    return data;
}

void freeString(StringData *data) noexcept
{
    memory::release(textCharge(data->capacity));
    std::free(data);
}

void destroy(Counted *counted, Type type) noexcept
{
    if (type == Type::String)
        freeString(static_cast<StringData *>(counted));
    else if (type == Type::Object)
        static_cast<Object *>(counted)->lastReleased();
    else
        delete static_cast<ArrayData *>(counted);
}

void destroyQueued() noexcept
{
    while (!t_doomed.empty()) {
        const Doomed next = t_doomed.back();
        t_doomed.pop_back();
        ++t_releaseDepth;
        destroy(next.counted, next.type);
        --t_releaseDepth;
    }
}

}

ArrayData::ArrayData(const QVarLengthArray<qint32, 4> &dimensions, Type element)
    : elementType(element), counts(dimensions)
{
    qint64 total = dimensions.isEmpty() ? 0 : 1;
    for (qint32 count : dimensions) {
        if (count && total > std::numeric_limits<qint32>::max() / count)
            throw ScriptError(err::kOutOfMemory);
        total *= count;
    }
    memory::charge(itemsCharge(element, total) + memory::blockSize(sizeof(ArrayData)));
    size = total;
    if (element == Type::Byte)
        bytes = QByteArray(total, '\0');
    else if (total)
        items = static_cast<Value *>(std::calloc(size_t(total), sizeof(Value))); // all bits zero is Empty
}

ArrayData::~ArrayData()
{
    for (qint64 i = 0; items && i < size; ++i)
        items[i].~Value();
    std::free(items);
    memory::release(memory::blockSize(sizeof(ArrayData)) + itemsCharge(elementType, size));
}

ArrayData *ArrayData::makeBytes(const QByteArray &contents)
{
    auto *data = new ArrayData({ qint32(contents.size()) }, Type::Byte);
    data->bytes = contents;
    return data;
}

ArrayData *ArrayData::clone() const
{
    auto *copy = new ArrayData(counts, elementType);
    copy->bytes = bytes;
    for (qint64 i = 0; items && i < size; ++i)
        copy->items[i] = items[i];
    return copy;
}

void ArrayData::resizeLast(qint32 count)
{
    const qint64 perLayer = counts.last() ? size / counts.last() : [this] {
        qint64 product = 1;
        for (qsizetype i = 0; i + 1 < counts.size(); ++i)
            product *= counts[i];
        return product;
    }();
    if (count && perLayer > std::numeric_limits<qint32>::max() / count)
        throw ScriptError(err::kOutOfMemory);
    const qint64 newSize = perLayer * count;
    const qint64 before = itemsCharge(elementType, size);
    const qint64 after = itemsCharge(elementType, newSize);
    if (after > before)
        memory::charge(after - before);
    if (elementType == Type::Byte) {
        bytes.resize(newSize);
        if (newSize > size)
            std::memset(bytes.data() + size, 0, size_t(newSize - size));
    } else {
        for (qint64 i = newSize; i < size; ++i)
            items[i] = Value();
        items = static_cast<Value *>(std::realloc(static_cast<void *>(items), size_t(newSize ? newSize : 1) * sizeof(Value)));
        if (newSize > size)
            std::memset(static_cast<void *>(items + size), 0, size_t(newSize - size) * sizeof(Value));
    }
    if (after < before)
        memory::release(before - after);
    size = newSize;
    counts.last() = count;
}

Value::Value(const Value &other) : m_type(other.m_type), m_index(other.m_index), m_number(other.m_number)
{
    if (isCounted())
        copyCounted(other);
}

void Value::copyCounted(const Value &other)
{
    if (!m_counted)
        return; // Nothing
    // An array with an element handed out may not be shared: writing through the element would change both.
    if (m_type == Type::Array && other.array()->pins) {
        m_type = Type::Empty;
        ArrayData *copy = other.array()->clone();
        copy->refs = 1;
        m_counted = copy;
        m_type = Type::Array;
        return;
    }
    ++m_counted->refs;
    if (m_type == Type::ElementReference)
        ++static_cast<ArrayData *>(m_counted)->pins;
}

Value &Value::operator=(const Value &other)
{
    if (this != &other) {
        Value copy(other);
        swap(copy);
    }
    return *this;
}

Value &Value::operator=(Value &&other) noexcept
{
    Value taken(std::move(other));
    swap(taken);
    return *this;
}

void Value::swap(Value &other) noexcept
{
    std::swap(m_type, other.m_type);
    std::swap(m_index, other.m_index);
    std::swap(m_number, other.m_number);
}

void Value::dropContents() noexcept
{
    if (!m_counted)
        return; // Nothing
    if (m_type == Type::ElementReference)
        --static_cast<ArrayData *>(m_counted)->pins;
    if (--m_counted->refs)
        return;
    const Type kind = m_type == Type::ElementReference ? Type::Array : m_type;
    if (t_releaseDepth >= kDeepestRelease) {
        t_doomed.push_back({ m_counted, kind });
        return;
    }
    ++t_releaseDepth;
    destroy(m_counted, kind);
    --t_releaseDepth;
    if (t_releaseDepth == 0 && !t_doomed.empty())
        destroyQueued();
}

Value Value::number(qint64 value)
{
    if (value == qint16(value))
        return integer(qint16(value));
    return value == qint32(value) ? longInteger(qint32(value)) : real(double(value));
}

Value Value::string(QStringView text)
{
    StringData *data = newString(text.size(), text.size());
    std::copy(text.utf16(), text.utf16() + text.size(), data->text());
    return Value(Type::String, static_cast<Counted *>(data));
}

Value Value::string(qsizetype count, QChar character)
{
    StringData *data = newString(count, count);
    std::fill_n(data->text(), count, character.unicode());
    return Value(Type::String, static_cast<Counted *>(data));
}

Value Value::string(QStringView first, QStringView second)
{
    const qsizetype length = first.size() + second.size();
    StringData *data = newString(length, length);
    char16_t *behind = std::copy(first.utf16(), first.utf16() + first.size(), data->text());
    std::copy(second.utf16(), second.utf16() + second.size(), behind);
    return Value(Type::String, static_cast<Counted *>(data));
}

Value Value::object(Object *object)
{
    if (object)
        ++object->refs;
    return Value(Type::Object, static_cast<Counted *>(object));
}

Value Value::array(ArrayData *data)
{
    ++data->refs;
    return Value(Type::Array, static_cast<Counted *>(data));
}

Value Value::array(const QList<Value> &items)
{
    Value result = array(new ArrayData({ qint32(items.size()) }, Type::Empty));
    ArrayData *data = result.arrayForWriting();
    for (qsizetype i = 0; i < items.size(); ++i)
        data->items[i] = items[i];
    return result;
}

Value Value::bytes(const QByteArray &bytes) { return array(ArrayData::makeBytes(bytes)); }

QStringView Value::view() const
{
    const auto *data = static_cast<const StringData *>(m_counted);
    return QStringView(data->text(), qsizetype(data->length));
}

Object *Value::object() const { return static_cast<Object *>(m_counted); }

ArrayData *Value::arrayForWriting()
{
    auto *data = static_cast<ArrayData *>(m_counted);
    if (data->isUnique())
        return data;
    ArrayData *copy = data->clone();
    ++copy->refs;
    --data->refs;
    m_counted = copy;
    return copy;
}

StringData *Value::stringForAppending(qsizetype extra)
{
    auto *data = static_cast<StringData *>(m_counted);
    const qsizetype needed = qsizetype(data->length) + extra;
    if (data->refs == 1 && needed <= qsizetype(data->capacity))
        return data;
    const qsizetype doubled = qMin<qsizetype>(needed * 2, needed + 8 * 1024 * 1024);
    StringData *grown = newString(data->length, qMax<qsizetype>(doubled, 32));
    std::memcpy(grown->text(), data->text(), size_t(data->length) * 2);
    if (--data->refs == 0)
        freeString(data);
    m_counted = grown;
    return grown;
}

void Value::append(QStringView text)
{
    StringData *data = stringForAppending(text.size());
    std::copy(text.utf16(), text.utf16() + text.size(), data->text() + data->length);
    data->length += quint32(text.size());
}

void ArrayBuilder::append(Value item)
{
    ArrayData *data = m_array.arrayForWriting();
    if (m_count == data->size)
        data->resizeLast(qint32(std::max<qint64>(8, std::min<qint64>(2 * m_count, m_count + 1024 * 1024))));
    data->items[m_count++] = std::move(item);
}

Value ArrayBuilder::take()
{
    m_array.arrayForWriting()->resizeLast(m_count);
    return std::move(m_array);
}

Value Value::reference(Value *target)
{
    Value result;
    result.m_type = Type::VariableReference;
    result.m_target = target;
    return result;
}

Value Value::elementReference(ArrayData *data, quint32 index)
{
    ++data->refs;
    ++data->pins;
    Value result(Type::ElementReference, static_cast<Counted *>(data));
    result.m_index = index;
    return result;
}

const Value &Value::target() const
{
    if (m_type == Type::VariableReference)
        return *m_target;
    return static_cast<ArrayData *>(m_counted)->items[m_index];
}

}
