#include "platform/vbscript/EngineFrame.h"
#include "platform/vbscript/Memory.h"
#include "platform/vbscript/Operators.h"
#include "platform/vbscript/RegExpObject.h"

#include <QTime>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

/** What the hidden register of a For Each holds. */
class Walk final : public Object
{
public:
    explicit Walk(std::unique_ptr<Enumerator> items) : m_items(std::move(items)) {}
    bool next(Value &item) { return m_items->next(item); }
    QString typeName() const override { return u"Object"_s; }
    int findMember(QStringView) const override { return kNoMember; }
    Value invoke(int, Access, Args &) override { throw ScriptError(err::kNoSuchMember); }

private:
    std::unique_ptr<Enumerator> m_items;
};

class ArrayEnumerator final : public Enumerator
{
public:
    /** `holder` is a reference into the array where it belongs to a variable, so that its shape is locked. */
    ArrayEnumerator(Value holder, const ArrayData *array) : m_holder(std::move(holder)), m_array(array) {}
    bool next(Value &item) override
    {
        if (m_at >= m_array->size)
            return false;
        item = m_array->elementType == Type::Byte ? Value::byte(quint8(m_array->bytes[m_at]))
                                                  : m_array->items[m_at];
        ++m_at;
        return true;
    }

private:
    Value m_holder;
    const ArrayData *m_array;
    qint64 m_at = 0;
};

constexpr int kKeepIfArray = 1;

}

void Engine::eachStart(const Instruction &i)
{
    Value &group = at(i.b).resolved();
    std::unique_ptr<Enumerator> items;
    if (group.is(Type::Array)) {
        const bool variable = i.b < place::kConstant
            ? i.b < m_frames[m_frameCount - 1].code->firstTemporary
            : (i.b & ~place::kIndexMask) != place::kConstant;
        const bool lock = variable && group.array()->items;
        ArrayData *array = lock ? writableArray(group) : nullptr;
        Value holder = lock ? Value::elementReference(array, 0) : Value(group);
        const ArrayData *data = lock ? array : holder.array();
        items = std::make_unique<ArrayEnumerator>(std::move(holder), data);
    } else if (group.is(Type::Object) && !group.isNothing()) {
        items = Value(group).object()->enumerate(*this);
    } else if (group.is(Type::Object)) {
        throw ScriptError(err::kObjectNotSet, operandName(i.b));
    } else {
        throw ScriptError(err::kNotCollection, operandName(i.b));
    }
    dropTemporary(i.b);
    at(i.a) = Value::object(new Walk(std::move(items)));
}

bool Engine::eachNext(const Instruction &i)
{
    const Value walk = at(i.b);
    if (!walk.is(Type::Object)) {
        // The header has failed and the script goes on after errors: the body has run once, that is all.
        if (!m_frames[m_frameCount - 1].resumeNext)
            throw ScriptError(err::kForNotInitialized);
        m_err = { err::kForNotInitialized, errorText(err::kForNotInitialized),
            ScriptError(err::kForNotInitialized).source(), {}, 0 };
        return false;
    }
    Value item;
    if (!static_cast<Walk *>(walk.object())->next(item))
        return false;
    store(i.a, std::move(item));
    return true;
}

void Engine::newObject(const Instruction &i)
{
    Symbol *name = m_frames[m_frameCount - 1].code->names[size_t(i.d)];
    spend(2);
    if (!name->classDefinition || name->kind != GlobalKind::Class) {
        if (name->folded != u"regexp")
            throw ScriptError(err::kClassNotDefined, name->text);
        store(i.a, Value::object(new RegExpObject));
        return;
    }
    const std::shared_ptr<ClassDefinition> definition = name->classDefinition;
    auto *instance = new Instance(*this, definition);
    const Value object = Value::object(instance);
    for (const ClassDefinition::ArrayField &array : definition->arrays) {
        Value &field = instance->fields()[array.field];
        field = Value::array(new ArrayData(array.counts, Type::Empty));
        field.setFixedArray(!array.counts.isEmpty());
    }
    if (definition->initialize)
        callProcedure(definition->initialize.get(), instance, {});
    store(i.a, object);
}

void Engine::dimArray(const Instruction &i)
{
    Value &variable = at(i.a).resolved();
    if (i.n == kKeepIfArray && variable.is(Type::Array))
        return;
    const auto &shape = m_frames[m_frameCount - 1].code->shapes[size_t(i.d)];
    Value array = Value::array(new ArrayData(shape, Type::Empty));
    array.setFixedArray(!shape.isEmpty());
    variable = std::move(array);
}

void Engine::reDim(const Instruction &i)
{
    QVarLengthArray<qint32, 4> counts;
    for (int k = 0; k < i.n; ++k) {
        const qint32 bound = toLong(*this, at(Operand(i.b + k)));
        if (bound < -1 || bound == 0x7fffffff)
            throw ScriptError(err::kSubscript);
        counts.append(bound + 1);
    }
    dropArguments(i.b, i.n);
    Value &variable = at(i.a).resolved();
    const bool isArray = variable.is(Type::Array);
    if (variable.isFixedArray() || (isArray && variable.array()->pins))
        throw ScriptError(err::kArrayLocked);
    const bool preserve = i.d && isArray && !variable.array()->counts.isEmpty();
    if (!preserve) {
        Value array = Value::array(new ArrayData(counts, Type::Empty));
        spend(array.array()->size / 16);
        variable = std::move(array);
        return;
    }
    const auto &old = variable.array()->counts;
    if (old.size() != counts.size() || !std::equal(old.begin(), old.end() - 1, counts.begin()))
        throw ScriptError(err::kSubscript);
    spend(variable.array()->size / 16);
    writableArray(variable)->resizeLast(counts.last());
}

void Engine::erase(const Instruction &i)
{
    Value &variable = at(i.b).resolved();
    if (!variable.is(Type::Array)) {
        const auto &names = m_frames[m_frameCount - 1].code->names;
        throw ScriptError(err::kTypeMismatch, i.d >= 0 ? names[size_t(i.d)]->text : QString());
    }
    if (variable.isFixedArray()) {
        ArrayData *array = writableArray(variable);
        for (qint64 k = 0; k < array->size; ++k)
            array->items[k] = Value();
    } else {
        if (variable.array()->pins > (at(i.b).is(Type::ElementReference) ? 1u : 0u))
            throw ScriptError(err::kArrayLocked);
        variable = Value::array(new ArrayData({}, Type::Empty));
    }
    dropTemporary(i.b);
}

void Engine::randomize(const Instruction &i)
{
    const double seed = i.b == place::kNone
        ? double(QTime::currentTime().msecsSinceStartOfDay()) / 1000.0
        : toReal(*this, at(i.b));
    if (i.b != place::kNone)
        dropTemporary(i.b);
    seedRandom(m_randomState, seed);
}

void Engine::checkDefined(const Instruction &i)
{
    const Symbol *name = m_frames[m_frameCount - 1].code->names[size_t(i.d)];
    if (!name->declared)
        throw ScriptError(err::kUndefinedVariable, name->text);
}

void Engine::declareGlobal(const Instruction &i)
{
    Symbol *name = m_frames[m_frameCount - 1].code->names[size_t(i.d)];
    if (name->kind != GlobalKind::None)
        return;
    name->kind = GlobalKind::Variable;
    invalidate({ name });
}

// Execute, ExecuteGlobal, Eval

CompileScope Engine::scopeOf(const Frame &frame) const
{
    const Code *root = m_frames[frame.scope].code.get();
    const Locals *extras = m_frames[frame.scope].extras.get();
    const auto isExtra = [extras](Symbol *name) { return extras && extras->count(name) > 0; };
    return { const_cast<Engine *>(this), root->owner, root->isGlobal ? nullptr : root, frame.code->optionExplicit, true,
        isExtra };
}

Value &Engine::extraLocal(Frame &scopeFrame, Symbol *name)
{
    if (!scopeFrame.extras)
        scopeFrame.extras = std::make_unique<Locals>();
    std::unique_ptr<Value> &cell = (*scopeFrame.extras)[name];
    if (!cell)
        cell = std::make_unique<Value>();
    return *cell;
}

/** Starts a text in the scope of `from`; names that both know are references to the variables there. */
Engine::Frame &Engine::pushText(const CodePointer &code, Frame &from, Operand target)
{
    const size_t scope = from.scope;
    Value *registers = stackTop();
    const Value me = from.me;
    Frame &frame = pushFrame(code.get(), registers, nullptr, target);
    frame.me = me;
    for (int k = 0; k < code->registerCount; ++k)
        new (registers + k) Value;
    if (code->isGlobal)
        return frame;
    frame.scope = scope;
    for (const Capture &capture : code->captures) {
        if (capture.outer != place::kNone) {
            Value &outer = m_frames[scope].registers[capture.outer];
            registers[capture.own] = outer.isReference() ? outer : Value::reference(&outer);
        } else {
            registers[capture.own] = Value::reference(&extraLocal(m_frames[scope], capture.name));
        }
    }
    return frame;
}

/** Procedures that Execute defines inside a procedure belong to that call. */
void Engine::defineLocals(Frame &scopeFrame, const std::shared_ptr<Unit> &unit)
{
    for (ProcedureAst *ast : unit->procedures) {
        const auto procedure = makeProcedure(unit, ast, nullptr);
        compile(*procedure);
        const Value reference = Value::object(new ProcedureReference(*this, procedure));
        const auto local = scopeFrame.code->locals.constFind(ast->name);
        if (local != scopeFrame.code->locals.constEnd())
            scopeFrame.registers[*local].resolved() = reference;
        else
            extraLocal(scopeFrame, ast->name) = reference;
    }
}

void Engine::execute(const Instruction &i, bool global)
{
    const QString text = toText(*this, at(i.b));
    const memory::Charge passing(2 * text.size());
    dropTemporary(i.b);
    spend(text.size());
    Frame &frame = m_frames[m_frameCount - 1];
    const std::shared_ptr<Unit> unit = parseScript(text, m_symbols, this, !global && frame.me.is(Type::Object));
    CompileScope scope = scopeOf(frame);
    if (global)
        scope = { this, nullptr, nullptr, frame.code->optionExplicit, true, {} };
    scope.optionExplicit = scope.optionExplicit || unit->optionExplicit;
    const CodePointer code = define(unit, scope);
    if (scope.outer)
        defineLocals(m_frames[frame.scope], unit);
    pushText(code, frame, place::kNone);
    if (global)
        m_frames[m_frameCount - 1].me = Value();
}

void Engine::eval(const Instruction &i)
{
    const QString text = toText(*this, at(i.b));
    const memory::Charge passing(2 * text.size());
    dropTemporary(i.b);
    spend(text.size());
    Frame &frame = m_frames[m_frameCount - 1];
    const std::shared_ptr<Unit> unit = parseExpression(text, m_symbols, this, frame.me.is(Type::Object));
    pushText(compileEval(scopeOf(frame), unit->expression), frame, i.a);
}

}
