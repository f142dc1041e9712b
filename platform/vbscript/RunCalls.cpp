#include "platform/vbscript/EngineFrame.h"
#include "platform/vbscript/Operators.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vbs {

/** What the script calls an operand, for messages; empty for intermediate results. */
QString Engine::operandName(Operand operand) const
{
    const Frame &frame = m_frames[m_frameCount - 1];
    const Operand index = operand & place::kIndexMask;
    if (operand == place::kNone)
        return {};
    if (operand < place::kConstant) {
        for (auto it = frame.code->locals.cbegin(); it != frame.code->locals.cend(); ++it)
            if (*it == index)
                return it.key()->text;
    } else if ((operand & ~place::kIndexMask) == place::kGlobal) {
        for (const auto &symbol : m_symbols.all())
            if (symbol->slot == int(index))
                return symbol->text;
    } else if ((operand & ~place::kIndexMask) == place::kField) {
        const auto &members = frame.instance()->definition().members;
        for (auto it = members.cbegin(); it != members.cend(); ++it)
            if (it->field == int(index))
                return it.key()->text;
    } else if (const Value &value = frame.code->constants[index]; value.is(Type::Object)) {
        for (auto it = m_predefined.cbegin(); it != m_predefined.cend(); ++it)
            if (it->object() == value.object())
                return it.key()->text;
    }
    return {};
}

/** holder.name as messages show it; the name alone where the holder has none. */
QString Engine::memberName(Operand holder, const Symbol *name) const
{
    const QString base = operandName(holder);
    return base.isEmpty() ? name->text : base + u'.' + name->text;
}

Object *Engine::objectAt(Operand operand)
{
    const Value &value = at(operand).resolved();
    if (!value.is(Type::Object))
        throw ScriptError(err::kObjectRequired, operandName(operand));
    if (value.isNothing())
        throw ScriptError(err::kObjectNotSet, operandName(operand));
    return value.object();
}

bool Engine::callProcedureByName(const Instruction &i)
{
    Symbol *name = m_frames[m_frameCount - 1].code->names[size_t(i.d)];
    if (!name->procedure || name->kind != GlobalKind::Procedure) {
        dropArguments(i.b, i.n);
        throw ScriptError(err::kTypeMismatch, name->text);
    }
    pushCall(name->procedure.get(), nullptr, &at(i.b), i.n, i.a);
    return true;
}

bool Engine::readImplicit(const Instruction &i)
{
    Value &source = at(i.b);
    Symbol *name = m_frames[m_frameCount - 1].code->names[size_t(i.d)];
    const Value &value = source.resolved();
    if (name->kind == GlobalKind::Procedure && value.is(Type::Object)
        && dynamic_cast<ProcedureReference *>(value.object())) {
        pushCall(name->procedure.get(), nullptr, &at(i.c), 0, i.a);
        return true;
    }
    if (!i.n) {
        store(i.a, take(i.b));
        return false;
    }
    if (m_frames[m_frameCount - 1].code->isGlobal)
        declareGlobal(i);
    at(i.a) = source.isReference() ? source : Value::reference(&source);
    return false;
}

bool Engine::callIntrinsic(const Instruction &i)
{
    const Intrinsic &function = intrinsicAt(i.d);
    spend(1);
    if (i.n < function.minArgs || i.n > function.maxArgs)
        throw ScriptError(err::kArgumentCount, QString::fromLatin1(function.name));
    Args args(*this, i.n ? &at(i.b) : nullptr, i.n);
    Value result;
    try {
        result = function.run(*this, args);
    } catch (const ScriptError &error) {
        const bool ownDetail = error.number() == err::kCannotCreate || error.isCompileError() || error.line()
            || (!error.culprit().isEmpty() && !error.culprit().startsWith(u'['))
            || error.source() != u"Microsoft VBScript runtime error"_s;
        if (ownDetail)
            throw;
        throw ScriptError(error.number(), QString::fromLatin1(function.name));
    }
    dropArguments(i.b, i.n);
    store(i.a, std::move(result));
    return false;
}

qint64 Engine::elementOffset(const ArrayData &array, const Value *arguments, int count)
{
    if (count != array.counts.size() || count == 0)
        throw ScriptError(err::kSubscript);
    qint64 offset = 0;
    qint64 layer = 1;
    for (int k = 0; k < count; ++k) {
        const Value &value = arguments[k].resolved();
        const qint32 index = value.isWhole() ? qint32(value.whole()) : toLong(*this, value);
        if (index < 0 || index >= array.counts[k])
            throw ScriptError(err::kSubscript, u"[number: %1]"_s.arg(index));
        offset += layer * index;
        layer *= array.counts[k];
    }
    return offset;
}

Value Engine::element(const ArrayData &array, qint64 offset) const
{
    if (array.elementType == Type::Byte)
        return Value::byte(quint8(array.bytes[offset]));
    return array.items[offset];
}

/** The array for writing; copying a shared one counts as work. */
ArrayData *Engine::writableArray(Value &value)
{
    if (!value.array()->isUnique())
        spend(value.array()->size / 4);
    return value.arrayForWriting();
}

bool Engine::index1(const Instruction &i)
{
    const Value &base = at(i.b).resolved();
    if (base.is(Type::Array)) {
        const ArrayData &array = *base.array();
        const Value &index = at(i.c);
        Value &target = at(i.a);
        // The common case first: one dimension, a whole index, a simple element.
        if (array.counts.size() == 1 && index.isWhole() && array.items && quint64(index.whole()) < quint64(array.size)
            && target.isSimple() && array.items[index.whole()].isSimple()) {
            target.copySimple(array.items[index.whole()]);
            if (i.b < place::kConstant)
                dropTemporary(i.b);
            return false;
        }
        Value result = element(array, elementOffset(array, &index, 1));
        dropTemporary(i.b);
        dropTemporary(i.c);
        store(i.a, std::move(result));
        return false;
    }
    // A call after all: the argument goes to the free registers.
    const Value callee = base;
    Frame &frame = m_frames[m_frameCount - 1];
    Value argument;
    if (i.n) {
        Value &source = at(i.c);
        argument = source.isReference() ? source : Value::reference(&source);
    } else {
        argument = take(i.c);
    }
    const Operand first = Operand(frame.code->registerCount - 1);
    frame.registers[first] = std::move(argument);
    if (!callee.is(Type::Object))
        throw ScriptError(err::kTypeMismatch, operandName(i.b));
    dropTemporary(i.b);
    return callValueOf(callee, frame.registers + first, 1, i.a, i.b, first);
}

bool Engine::callValue(const Instruction &i)
{
    const Value callee = at(i.c).resolved();
    dropTemporary(i.c);
    return callValueOf(callee, &at(i.b), i.n, i.a, i.c, i.b);
}

/** An array element, a procedure behind a value, or an object's default member. */
bool Engine::callValueOf(const Value &callee, Value *arguments, int count, Operand target, Operand culprit,
    Operand firstArgument)
{
    if (callee.is(Type::Array) && target != place::kNone) {
        Value result = element(*callee.array(), elementOffset(*callee.array(), arguments, count));
        dropArguments(firstArgument, count);
        store(target, std::move(result));
        return false;
    }
    if (!callee.is(Type::Object))
        throw ScriptError(err::kTypeMismatch, operandName(culprit));
    if (callee.isNothing())
        throw ScriptError(err::kObjectNotSet, operandName(culprit));
    Object *object = callee.object();
    if (auto *reference = dynamic_cast<ProcedureReference *>(object)) {
        pushCall(reference->procedure(), nullptr, arguments, count, target);
        return true;
    }
    if (auto *instance = dynamic_cast<Instance *>(object)) {
        Symbol *name = instance->definition().defaultMember;
        const auto procedure = name ? instance->definition().members[name].get : nullptr;
        if (!procedure)
            throw ScriptError(err::kNoSuchMember, operandName(culprit));
        pushCall(procedure.get(), instance, arguments, count, target);
        return true;
    }
    if (!object->hasDefaultMember())
        throw ScriptError(err::kNoSuchMember, operandName(culprit));
    Args args(*this, arguments, count);
    Value result = object->invoke(Object::kDefaultMember, target == place::kNone ? Access::Call : Access::Get, args);
    dropArguments(firstArgument, count);
    if (target != place::kNone)
        store(target, std::move(result));
    return false;
}

bool Engine::getMember(const Instruction &i)
{
    const Value holder = Value::object(objectAt(i.c));
    Object *object = holder.object();
    Symbol *name = m_frames[m_frameCount - 1].code->names[size_t(i.d)];
    dropTemporary(i.c);
    if (auto *instance = dynamic_cast<Instance *>(object))
        return getInstanceMember(i, instance, name);
    const int member = object->findMember(name->folded);
    if (member == Object::kNoMember)
        throw ScriptError(err::kNoSuchMember, memberName(i.c, name));
    const bool separate = i.n > 0 && !object->takesArguments(member);
    Args args(*this, &at(i.b), separate ? 0 : i.n);
    Value result = object->invoke(member, i.a == place::kNone && !separate ? Access::Call : Access::Get, args);
    if (separate)
        return callValueOf(result, &at(i.b), i.n, i.a, place::kNone, i.b);
    dropArguments(i.b, i.n);
    if (i.a != place::kNone)
        store(i.a, std::move(result));
    return false;
}

bool Engine::getInstanceMember(const Instruction &i, Instance *instance, Symbol *name)
{
    ClassDefinition &definition = instance->definition();
    const auto found = definition.members.constFind(name);
    const bool inside = m_frames[m_frameCount - 1].code->owner == &definition;
    if (found == definition.members.constEnd() || (found->isPrivate && !inside))
        throw ScriptError(err::kNoSuchMember, memberName(i.c, name));
    if (found->field >= 0) {
        const Value &field = instance->fields()[found->field];
        if (i.n == 0 && !(i.a == place::kNone && field.is(Type::Object))) {
            if (i.a != place::kNone)
                store(i.a, field);
            return false;
        }
        const Value callee = field;
        return callValueOf(callee, &at(i.b), i.n, i.a, place::kNone, i.b);
    }
    if (!found->get)
        throw ScriptError(err::kNoSuchMember, memberName(i.c, name));
    const std::shared_ptr<Procedure> procedure = found->get;
    // Arguments behind a property that takes none belong to what it returns.
    if (i.n > 0 && procedure->ast->parameters.empty() && procedure->ast->kind == ProcedureKind::PropertyGet) {
        const Value result = callProcedure(procedure.get(), instance, {});
        return callValueOf(result, &at(i.b), i.n, i.a, place::kNone, i.b);
    }
    pushCall(procedure.get(), instance, &at(i.b), i.n, i.a);
    return true;
}

bool Engine::putMember(const Instruction &i, bool isSet)
{
    const Value holder = Value::object(objectAt(i.c));
    Object *object = holder.object();
    Symbol *name = m_frames[m_frameCount - 1].code->names[size_t(i.d)];
    dropTemporary(i.c);
    const Operand last = Operand(i.b + i.n);
    Value value = take(last);
    if (isSet && !value.is(Type::Object))
        throw ScriptError(err::kObjectRequired);
    if (auto *instance = dynamic_cast<Instance *>(object))
        return putInstanceMember(i, instance, name, isSet, std::move(value));
    const int member = object->findMember(name->folded);
    if (!isSet && value.is(Type::Object) && !object->takesObjects(member))
        value = plain(value);
    if (member == Object::kNoMember)
        throw ScriptError(err::kNoSuchMember, memberName(i.c, name));
    if (i.n > 0 && !object->takesArguments(member)) {
        Args none(*this, nullptr, 0);
        Value base = object->invoke(member, Access::Get, none);
        putElement(base, &at(i.b), i.n, std::move(value), isSet, place::kNone);
    } else {
        Args args(*this, &at(i.b), i.n, &value);
        object->invoke(member, isSet ? Access::Set : Access::Let, args);
    }
    dropArguments(i.b, i.n);
    return false;
}

bool Engine::putInstanceMember(const Instruction &i, Instance *instance, Symbol *name, bool isSet, Value value)
{
    ClassDefinition &definition = instance->definition();
    const auto found = definition.members.constFind(name);
    const bool inside = m_frames[m_frameCount - 1].code->owner == &definition;
    if (found == definition.members.constEnd() || (found->isPrivate && !inside))
        throw ScriptError(err::kNoSuchMember, memberName(i.c, name));
    if (found->field < 0) {
        const auto procedure = isSet ? found->set : found->let;
        if (!procedure && i.n > 0 && found->get && found->get->ast->parameters.empty()) {
            Value base = callProcedure(found->get.get(), instance, {});
            putElement(base, &at(i.b), i.n, std::move(value), isSet, place::kNone);
            dropArguments(i.b, i.n);
            return false;
        }
        if (!procedure)
            throw ScriptError(err::kNoSuchMember, memberName(i.c, name));
        if (!isSet && value.is(Type::Object))
            value = plain(value);
        at(Operand(i.b + i.n)) = std::move(value);
        pushCall(procedure.get(), instance, &at(i.b), i.n + 1, place::kNone);
        return true;
    }
    Value &field = instance->fields()[found->field];
    if (i.n > 0) {
        putElement(field, &at(i.b), i.n, std::move(value), isSet, place::kNone);
        dropArguments(i.b, i.n);
        return false;
    }
    if (!isSet && value.is(Type::Object))
        value = plain(value);
    if (field.isFixedArray())
        throw ScriptError(err::kTypeMismatch, name->text);
    instance->fields()[found->field] = std::move(value);
    return false;
}

void Engine::store1(const Instruction &i)
{
    Value &base = at(i.a).resolved();
    const Value &index = at(i.b);
    const Value &source = at(i.c);
    if (base.is(Type::Array) && index.isWhole() && source.isSimple() && !source.is(Type::VariableReference)) {
        const ArrayData &array = *base.array();
        if (array.isUnique() && array.counts.size() == 1 && array.items
            && quint64(index.whole()) < quint64(array.size) && array.items[index.whole()].isSimple()) {
            array.items[index.whole()].copySimple(source);
            dropTemporary(i.a);
            return;
        }
    }
    Value value = take(i.c);
    Value argument = index.resolved();
    putElement(at(i.a).resolved(), &argument, 1, std::move(value), false, i.a);
    dropTemporary(i.a);
    dropTemporary(i.b);
}

void Engine::putIndex(const Instruction &i, bool isSet)
{
    const Operand last = Operand(i.b + i.n);
    Value value = take(last);
    if (isSet && !value.is(Type::Object))
        throw ScriptError(err::kObjectRequired);
    putElement(at(i.c).resolved(), &at(i.b), i.n, std::move(value), isSet, i.c);
    dropTemporary(i.c);
    dropArguments(i.b, i.n);
}

/** base(arguments) = value: an array element or an object's default property. */
void Engine::putElement(Value &base, Value *arguments, int count, Value value, bool isSet, Operand culprit)
{
    if (!isSet && value.is(Type::Object))
        value = plain(value);
    if (base.is(Type::Array)) {
        const qint64 offset = elementOffset(*base.array(), arguments, count);
        ArrayData *array = writableArray(base);
        if (array->elementType == Type::Byte) {
            array->bytes[offset] = char(quint8(toLong(*this, value)));
            return;
        }
        // What stood there may run Class_Terminate when it goes: it goes after the array is right again.
        const Value former = std::exchange(array->items[offset], std::move(value));
        return;
    }
    if (!base.is(Type::Object))
        throw ScriptError(err::kTypeMismatch, operandName(culprit));
    if (base.isNothing())
        throw ScriptError(err::kObjectNotSet, operandName(culprit));
    const Value alive = base;
    if (!alive.object()->hasDefaultMember())
        throw ScriptError(err::kNoSuchMember, operandName(culprit));
    Args args(*this, arguments, count, &value);
    alive.object()->invoke(Object::kDefaultMember, isSet ? Access::Set : Access::Let, args);
}

/** An element for handing over ByRef; a value where it turns out to be a call. */
void Engine::elementReference(const Instruction &i)
{
    Value &base = at(i.c).resolved();
    if (!base.is(Type::Array)) {
        const Value callee = base;
        if (!callee.is(Type::Object))
            throw ScriptError(err::kTypeMismatch, operandName(i.c));
        dropTemporary(i.c);
        QList<Value> values;
        for (int k = 0; k < i.n; ++k)
            values.append(Value(at(Operand(i.b + k)).resolved()));
        dropArguments(i.b, i.n);
        store(i.a, callObject(toObject(callee), values));
        return;
    }
    const qint64 offset = elementOffset(*base.array(), &at(i.b), i.n);
    if (base.array()->elementType == Type::Byte) {
        at(i.a) = element(*base.array(), offset);
    } else {
        Value reference = Value::elementReference(writableArray(base), quint32(offset));
        dropTemporary(i.c);
        at(i.a) = std::move(reference);
    }
    dropArguments(i.b, i.n);
}

}
