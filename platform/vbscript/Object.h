#pragma once

#include "platform/vbscript/ScriptError.h"
#include "platform/vbscript/ScriptHost.h"
#include "platform/vbscript/Value.h"

#include <QHash>
#include <QString>
#include <memory>

namespace vbs {

/** How a member is used. Let and Set carry the new value apart from the arguments. */
enum class Access : quint8 { Get, Call, Let, Set };

/** Arguments of a member call. Indices beyond the end read as missing. */
class Args
{
public:
    Args(ScriptHost &host, Value *values, int count, const Value *newValue = nullptr)
        : m_host(host), m_values(values), m_count(count), m_newValue(newValue) {}

    ScriptHost &host() const { return m_host; }
    int count() const { return m_count; }
    /** False when the argument was left out. */
    bool has(int index) const { return index < m_count && !m_values[index].resolved().isMissing(); }
    const Value &operator[](int index) const { return index < m_count ? m_values[index].resolved() : missing(); }
    /** The value on the right of an assignment (Let, Set). */
    const Value &newValue() const { return *m_newValue; }
    /** Writes to the caller's variable where the argument came ByRef; else nowhere. */
    void assign(int index, const Value &value);

    QString text(int index) const { return toText(m_host, (*this)[index]); }
    QString text(int index, const QString &otherwise) const { return has(index) ? text(index) : otherwise; }
    qint32 integer(int index) const { return toLong(m_host, (*this)[index]); }
    qint32 integer(int index, qint32 otherwise) const { return has(index) ? integer(index) : otherwise; }
    double real(int index) const { return toReal(m_host, (*this)[index]); }
    bool boolean(int index) const { return toBoolean(m_host, (*this)[index]); }
    bool boolean(int index, bool otherwise) const { return has(index) ? boolean(index) : otherwise; }

private:
    static const Value &missing();

    ScriptHost &m_host;
    Value *m_values;
    int m_count;
    const Value *m_newValue;
};

/** Walk of For Each. */
class Enumerator
{
public:
    virtual ~Enumerator() = default;
    /** Puts the next item into `item`; false at the end. */
    virtual bool next(Value &item) = 0;
};

/**
 * Anything that a script can hold with Set. Counted by the values that hold it; made with `new` and handed out as
 * Value::object(). Memory of the object itself is charged; larger contents through memory::Charge.
 */
class Object : public Counted
{
public:
    static constexpr int kNoMember = -1;
    static constexpr int kDefaultMember = -2; // asked for by callers, resolved by invoke

    Object() = default;
    virtual ~Object();
    Q_DISABLE_COPY_MOVE(Object)
    static void *operator new(std::size_t size);
    static void operator delete(void *memory, std::size_t size);

    /** What TypeName shows. */
    virtual QString typeName() const = 0;
    /** Number of a member by its name, without regard to case; kNoMember when there is none. */
    virtual int findMember(QStringView name) const = 0;
    virtual bool hasDefaultMember() const { return false; }
    /** False: arguments behind this member belong to the default member of what it returns. */
    virtual bool takesArguments(int member) const { return member != kNoMember; }
    /** True: this property takes an object as it is even without Set, instead of its default value. */
    virtual bool takesObjects(int) const { return false; }
    /**
     * Uses a member. `member` came from findMember, or is kDefaultMember. Throws ScriptError: 438 for a use that
     * the member does not have, 450 for a wrong number of arguments, or its own.
     */
    virtual Value invoke(int member, Access access, Args &args) = 0;
    /** For Each; 451 unless overridden. */
    virtual std::unique_ptr<Enumerator> enumerate(ScriptHost &host);
    /** The last value let go of it. */
    virtual void lastReleased() { delete this; }
};

/** Keeps an object alive from native code. */
template <class T>
class Ref
{
public:
    Ref() = default;
    explicit Ref(T *object) : m_value(object ? Value::object(object) : Value()), m_object(object) {}
    T *get() const { return m_object; }
    T *operator->() const { return m_object; }
    explicit operator bool() const { return m_object; }
    Value value() const { return Value::object(m_object); }

private:
    Value m_value;
    T *m_object = nullptr;
};

/** One row of a native object's member table. A null function: that use is not offered (438). */
template <class T>
struct Member
{
    const char *name;
    int minArgs = 0;
    int maxArgs = 0;
    Value (T::*get)(Args &) = nullptr; // property read, function, or Sub (returns Value())
    void (T::*put)(Args &) = nullptr;  // property write; args.newValue() is the value, Let and Set alike
    bool isDefault = false;
};

/**
 * Base of native objects whose members stand in a table. T offers
 * `static std::span<const Member<T>> members();` (any range with begin, end and size) and typeName().
 */
template <class T>
class NativeObject : public Object
{
public:
    int findMember(QStringView name) const override
    {
        return index().value(name.toString().toCaseFolded(), kNoMember);
    }
    bool hasDefaultMember() const override { return defaultMember() >= 0; }
    bool takesArguments(int member) const override
    {
        return member < 0 || (std::begin(T::members()) + member)->maxArgs > 0;
    }
    Value invoke(int member, Access access, Args &args) override
    {
        if (member == kDefaultMember)
            member = defaultMember();
        if (member < 0)
            throw ScriptError(err::kNoSuchMember, typeName());
        const Member<T> &row = *(std::begin(T::members()) + member);
        const bool writes = access == Access::Let || access == Access::Set;
        if (writes ? !row.put : !row.get)
            throw ScriptError(err::kNoSuchMember, QString::fromLatin1(row.name));
        if (args.count() < row.minArgs || args.count() > row.maxArgs)
            throw ScriptError(err::kArgumentCount, QString::fromLatin1(row.name));
        if (!writes)
            return (static_cast<T *>(this)->*row.get)(args);
        (static_cast<T *>(this)->*row.put)(args);
        return {};
    }

private:
    static int defaultMember()
    {
        static const int found = [] {
            int position = 0;
            for (const Member<T> &row : T::members()) {
                if (row.isDefault)
                    return position;
                ++position;
            }
            return int(kNoMember);
        }();
        return found;
    }
    static const QHash<QString, int> &index()
    {
        static const QHash<QString, int> table = [] {
            QHash<QString, int> names;
            for (const Member<T> &row : T::members())
                names.insert(QString::fromLatin1(row.name).toCaseFolded(), int(names.size()));
            return names;
        }();
        return table;
    }
};

}
