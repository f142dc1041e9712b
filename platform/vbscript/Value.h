#pragma once

#include <QByteArray>
#include <QString>
#include <QVarLengthArray>
#include <utility>

namespace vbs {

class Object;
class Value;

/** Kind of a value; the numbers are those that VarType returns. */
enum class Type : quint8 {
    Empty = 0, Null = 1, Integer = 2, Long = 3, Single = 4, Double = 5, Currency = 6, Date = 7, String = 8,
    Object = 9, Error = 10, Boolean = 11, Byte = 17,
    Array = 18,            // VarType gives 8192 + element type
    VariableReference = 30, // never seen by scripts: a ByRef argument on its way
    ElementReference = 31
};

/** Base of everything that values hold by count. */
struct Counted
{
    quint32 refs = 0;
};

/** Text of a string value; grows in place while only one value holds it. */
struct StringData : Counted
{
    quint32 length = 0;
    quint32 capacity = 0;
    char16_t *text() { return reinterpret_cast<char16_t *>(this + 1); }
    const char16_t *text() const { return reinterpret_cast<const char16_t *>(this + 1); }
};

/** An array; the first index runs fastest. Assigning shares it, writing to a shared one copies it first. */
struct ArrayData : Counted
{
    ArrayData(const QVarLengthArray<qint32, 4> &counts, Type element);
    ~ArrayData();
    Q_DISABLE_COPY_MOVE(ArrayData)

    static ArrayData *makeBytes(const QByteArray &bytes);
    ArrayData *clone() const;
    /** True while only one value holds it (elements handed out ByRef do not count). */
    bool isUnique() const { return refs - pins <= 1; }
    /** Same contents with the last dimension changed to `count` elements. */
    void resizeLast(qint32 count);

    quint32 pins = 0;          // elements handed out ByRef: the array may not change its shape meanwhile
    Type elementType = Type::Empty; // Empty stands for Variant; else Byte
    QVarLengthArray<qint32, 4> counts; // elements per dimension; none: not dimensioned yet
    qint64 size = 0;
    Value *items = nullptr;    // Variant elements
    QByteArray bytes;          // Byte elements
};

/**
 * A Variant: 16 bytes, counted contents. Copies share strings and arrays; arrays behave as values because
 * whoever writes asks for a private one first (arrayForWriting).
 */
class Value
{
public:
    Value() noexcept : m_number(0) {}
    Value(const Value &other);
    Value(Value &&other) noexcept : m_type(other.m_type), m_index(other.m_index), m_number(other.m_number)
    {
        other.m_type = Type::Empty;
    }
    ~Value()
    {
        if (isCounted())
            dropContents();
    }
    Value &operator=(const Value &other);
    Value &operator=(Value &&other) noexcept;

    static Value null() { return Value(Type::Null, qint64(0)); }
    static Value boolean(bool value) { return Value(Type::Boolean, qint64(value ? -1 : 0)); }
    static Value byte(quint8 value) { return Value(Type::Byte, qint64(value)); }
    static Value integer(qint16 value) { return Value(Type::Integer, qint64(value)); }
    static Value longInteger(qint32 value) { return Value(Type::Long, qint64(value)); }
    /** Integer when it fits 16 bits, else Long, else Double. */
    static Value number(qint64 value);
    static Value single(double value) { return Value(Type::Single, double(float(value))); }
    static Value real(double value) { return Value(Type::Double, value); }
    static Value date(double days) { return Value(Type::Date, days); }
    /** value × 10000. */
    static Value currency(qint64 scaled) { return Value(Type::Currency, scaled); }
    static Value error(qint32 code) { return Value(Type::Error, qint64(code)); }
    /** An argument that was left out. */
    static Value missing() { return error(qint32(0x80020004)); }
    static Value string(QStringView text);
    /** The same character so many times. */
    static Value string(qsizetype count, QChar character);
    /** Both, joined. */
    static Value string(QStringView first, QStringView second);
    static Value string(const char16_t *text, qsizetype length) { return string(QStringView(text, length)); }
    /** Takes part in the count of `object`; nullptr is Nothing. */
    static Value object(Object *object);
    static Value array(ArrayData *data);
    /** Zero-based Variant array of one dimension. */
    static Value array(const QList<Value> &items);
    static Value bytes(const QByteArray &bytes);

    Type type() const { return m_type; }
    bool is(Type type) const { return m_type == type; }
    bool isCounted() const { return (kCountedTypes >> unsigned(m_type)) & 1u; }
    /** Neither counted nor a reference: may be overwritten as it stands. */
    bool isSimple() const
    {
        return !((kCountedTypes | 1u << unsigned(Type::VariableReference)) >> unsigned(m_type) & 1u);
    }
    /** Overwrites a simple value with another simple value. */
    void copySimple(const Value &other)
    {
        m_type = other.m_type;
        m_number = other.m_number;
    }
    bool isReference() const { return m_type >= Type::VariableReference; }
    bool isMissing() const { return m_type == Type::Error && m_number == qint32(0x80020004); }
    bool isWhole() const { return m_type == Type::Integer || m_type == Type::Long; }
    bool isNothing() const { return m_type == Type::Object && !m_counted; }

    /** Contents; the type must be the right one. */
    qint64 whole() const { return m_number; }     // Integer, Long, Byte, Boolean, Error, Currency (× 10000)
    double realPart() const { return m_real; }    // Single, Double, Date
    QStringView view() const;                     // String
    QString toQString() const { return view().toString(); }
    Object *object() const;                       // Object, nullptr is Nothing
    const ArrayData *array() const { return static_cast<const ArrayData *>(m_counted); }
    /** A declared array of fixed size; what is assigned from it is free again. */
    bool isFixedArray() const { return m_type == Type::Array && m_index; }
    void setFixedArray(bool fixed) { m_index = fixed; }
    /** The array, made this value's own if it was shared. */
    ArrayData *arrayForWriting();

    /** The String contents for appending `extra` characters in place: private, with room. Type must be String. */
    StringData *stringForAppending(qsizetype extra);

    /** Adds to a String, in place while nobody else holds it. */
    void append(QStringView text);

    /** A ByRef argument that stands for `target` (which outlives the call). */
    static Value reference(Value *target);
    static Value elementReference(ArrayData *data, quint32 index);
    /** What a reference stands for; the value itself otherwise. */
    const Value &resolved() const { return isReference() ? target() : *this; }
    Value &resolved() { return isReference() ? const_cast<Value &>(target()) : *this; }

    void swap(Value &other) noexcept;
    /** Overwrite a simple value. */
    void setWhole(Type type, qint64 value)
    {
        m_type = type;
        m_number = value;
    }
    void setReal(Type type, double value)
    {
        m_type = type;
        m_real = value;
    }

private:
    Value(Type type, qint64 value) : m_type(type), m_number(value) {}
    Value(Type type, double value) : m_type(type), m_real(value) {}
    Value(Type type, Counted *counted) : m_type(type), m_counted(counted) {}
    const Value &target() const;
    void dropContents() noexcept;
    void copyCounted(const Value &other);

    static constexpr quint32 kCountedTypes = 1u << unsigned(Type::String) | 1u << unsigned(Type::Object)
        | 1u << unsigned(Type::Array) | 1u << unsigned(Type::ElementReference);

    Type m_type = Type::Empty;
    quint32 m_index = 0;
    union {
        qint64 m_number;
        double m_real;
        Counted *m_counted;
        Value *m_target;
    };
};

/** A zero-based array whose length shows at the end only; its memory is counted while it grows. */
class ArrayBuilder
{
public:
    void append(Value item);
    qint32 count() const { return m_count; }
    Value take();

private:
    Value m_array = Value::array(new ArrayData({ 0 }, Type::Empty));
    qint32 m_count = 0;
};

}

Q_DECLARE_TYPEINFO(vbs::Value, Q_RELOCATABLE_TYPE);
