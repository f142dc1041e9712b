#include "platform/vbscript/Engine.h"

#include "platform/vbscript/EngineFrame.h"
#include "platform/vbscript/ErrObject.h"
#include "platform/vbscript/Memory.h"
#include "platform/vbscript/ObjectFactory.h"
#include "platform/vbscript/RegExpObject.h"

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr int kMostGlobals = 16000;
constexpr size_t kStackValues = 1024 * 1024;
constexpr size_t kMostFrames = 20000;
constexpr int kDeepestNative = 150;
constexpr qint64 kBudget = 4000; // units of work between two looks at the clock

void registerObjectsOnce()
{
    static const bool done = [] {
        registerObject(u"VBScript.RegExp"_s, [](ScriptHost &) -> Object * { return new RegExpObject; });
        registerAdministratorObjects();
        return true;
    }();
    Q_UNUSED(done);
}

}

/** Marks the outermost call of the host, to which the time limit applies. */
class Engine::Outermost
{
public:
    explicit Outermost(Engine &engine) : m_engine(engine)
    {
        if (m_engine.m_outermost++ > 0)
            return;
        m_engine.m_abort = false;
        m_engine.m_limited = m_engine.m_timeLimit >= 0;
        m_engine.m_deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(m_engine.m_timeLimit);
        m_engine.m_budget = kBudget;
    }
    ~Outermost()
    {
        if (--m_engine.m_outermost > 0)
            return;
        m_engine.m_limited = m_engine.m_abort = false;
        memory::returnFreed();
    }
    Q_DISABLE_COPY_MOVE(Outermost)
    /** At the end of the work: a Class_Terminate may have used up the time without anybody having noticed. */
    void finish() const
    {
        if (m_engine.m_abort && m_engine.m_outermost == 1)
            throw ScriptTimeout();
    }

private:
    Engine &m_engine;
};

Engine::Engine() : m_frames(std::make_unique<Frame[]>(kMostFrames)), m_locale(QLocale::system())
{
    registerObjectsOnce();
    m_stack = static_cast<Value *>(std::calloc(kStackValues, sizeof(Value)));
    m_stackEnd = m_stack + kStackValues;
    m_globals = static_cast<Value *>(std::calloc(kMostGlobals, sizeof(Value)));
    m_predefined.insert(m_symbols.intern(u"Err"), Value::object(new ErrObject(*this)));
}

Engine::~Engine()
{
    reset();
    m_predefined.clear();
    std::free(m_stack);
    std::free(m_globals);
}

void Engine::reset()
{
    const Outermost outermost(*this);
    clearGlobals();
    m_result = Value();
    // What objects in rings still hold goes now; their Class_Terminate runs while everything is there.
    std::vector<Value> alive;
    for (Instance *instance = m_instances; instance; instance = instance->next())
        alive.push_back(Value::object(instance));
    for (const Value &value : alive) {
        auto *instance = static_cast<Instance *>(value.object());
        if (instance->definition().terminate && instance->beginTerminate())
            terminate(instance);
        instance->clearFields();
    }
    alive.clear();
    for (Instance *instance = m_instances; instance; instance = instance->next())
        instance->forgetEngine();
    m_instances = nullptr;
    for (const auto &symbol : m_symbols.all()) {
        symbol->kind = GlobalKind::None;
        symbol->declared = false;
        symbol->procedure.reset();
        symbol->classDefinition.reset();
    }
    m_err = {};
}

void Engine::clearGlobals()
{
    for (int i = 0; i < m_globalCount; ++i)
        m_globals[i] = Value();
}

void Engine::addObject(const QString &name, const Value &object)
{
    m_predefined.insert(m_symbols.intern(name), object);
}

int Engine::globalSlot(Symbol *name)
{
    if (name->slot < 0) {
        if (m_globalCount >= kMostGlobals)
            throw ScriptError(err::kOutOfMemory);
        name->slot = m_globalCount++;
    }
    return name->slot;
}

// Definitions

void Engine::changeKind(Symbol *name, GlobalKind kind, QSet<Symbol *> &changed)
{
    if (name->kind != kind || !name->declared)
        changed.insert(name);
    if (name->kind != kind && name->slot >= 0)
        m_globals[name->slot] = Value();
    name->kind = kind;
    name->declared = true;
}

void Engine::defineVariable(const Declaration &declaration, QSet<Symbol *> &changed)
{
    Symbol *name = declaration.name;
    if (!declaration.isConstant) {
        // What a text used before it was declared keeps its value.
        const bool kept = name->kind == GlobalKind::Variable;
        changeKind(name, GlobalKind::Variable, changed);
        globalSlot(name);
        if (!kept)
            m_globals[name->slot] = Value();
        return;
    }
    changeKind(name, GlobalKind::Constant, changed);
    Value &value = m_globals[globalSlot(name)];
    changed.insert(name);
    value = declaration.value;
}

std::shared_ptr<Procedure> Engine::makeProcedure(const std::shared_ptr<Unit> &unit, ProcedureAst *ast,
    ClassDefinition *owner)
{
    auto procedure = std::make_shared<Procedure>();
    procedure->name = ast->name;
    procedure->ast = ast;
    procedure->unit = unit;
    procedure->owner = owner;
    procedure->optionExplicit = unit->optionExplicit;
    return procedure;
}

void Engine::defineProcedure(const std::shared_ptr<Unit> &unit, ProcedureAst *ast, QSet<Symbol *> &changed)
{
    changeKind(ast->name, GlobalKind::Procedure, changed);
    ast->name->procedure = makeProcedure(unit, ast, nullptr);
    // Code that took the name for a variable finds the procedure in its place.
    if (ast->name->slot >= 0)
        m_globals[ast->name->slot] = Value::object(new ProcedureReference(*this, ast->name->procedure));
}

void Engine::defineClass(const std::shared_ptr<Unit> &unit, ClassAst *ast, QSet<Symbol *> &changed)
{
    changeKind(ast->name, GlobalKind::Class, changed);
    auto definition = std::make_shared<ClassDefinition>();
    definition->name = ast->name;
    definition->unit = unit;
    for (const Declaration &field : ast->fields) {
        ClassMember &member = definition->members[field.name];
        member.isPrivate = field.isPrivate;
        member.field = definition->fieldCount++;
        if (field.isArray)
            definition->arrays.push_back({ member.field, field.counts });
    }
    for (ProcedureAst *method : ast->members) {
        ClassMember &member = definition->members[method->name];
        auto procedure = makeProcedure(unit, method, definition.get());
        if (method->kind == ProcedureKind::PropertyLet)
            member.let = procedure;
        else if (method->kind == ProcedureKind::PropertySet)
            member.set = procedure;
        else
            member.get = procedure;
        member.isPrivate = member.isPrivate || method->isPrivate;
        if (method->isDefault)
            definition->defaultMember = method->name;
        if (method->kind == ProcedureKind::Sub && method->name->folded == u"class_initialize")
            definition->initialize = procedure;
        if (method->kind == ProcedureKind::Sub && method->name->folded == u"class_terminate")
            definition->terminate = procedure;
    }
    ast->name->classDefinition = definition;
}

void Engine::compile(Procedure &procedure)
{
    procedure.code = compileProcedure(
        { this, procedure.owner, nullptr, procedure.optionExplicit, procedure.unit->runsTexts, {} }, *procedure.ast);
}

void Engine::compileClass(ClassDefinition &definition)
{
    for (const ClassMember &member : std::as_const(definition.members))
        for (const auto &procedure : { member.get, member.let, member.set })
            if (procedure)
                compile(*procedure);
}

/** A running procedure that has not assigned to a name which nothing declared sees the new global in its place. */
void Engine::rebindLocals(Frame &frame, const QSet<Symbol *> &changed)
{
    if (frame.code->isGlobal)
        return;
    for (Symbol *name : changed) {
        const auto local = frame.code->locals.constFind(name);
        if (local == frame.code->locals.constEnd() || !frame.code->globalNames.contains(name)
            || name->kind == GlobalKind::Class || !frame.registers[*local].is(Type::Empty))
            continue;
        Value &global = m_globals[globalSlot(name)];
        if (name->kind == GlobalKind::Procedure)
            global = Value::object(new ProcedureReference(*this, name->procedure));
        frame.registers[*local] = Value::reference(&global);
    }
}

/** Code that was compiled while a name meant something else is compiled again at its next call. */
void Engine::invalidate(const QSet<Symbol *> &changed)
{
    if (changed.isEmpty())
        return;
    const auto check = [&](const std::shared_ptr<Procedure> &procedure) {
        if (procedure && procedure->code && procedure->code->globalNames.intersects(changed))
            procedure->code = {};
    };
    for (size_t k = 0; k < m_frameCount; ++k)
        rebindLocals(m_frames[k], changed);
    for (const auto &symbol : m_symbols.all()) {
        check(symbol->procedure);
        if (!symbol->classDefinition)
            continue;
        for (const ClassMember &member : std::as_const(symbol->classDefinition->members)) {
            check(member.get);
            check(member.let);
            check(member.set);
        }
    }
}

/** Brings the definitions of a text into force and compiles its global statements. */
CodePointer Engine::define(const std::shared_ptr<Unit> &unit, const CompileScope &scope)
{
    QSet<Symbol *> changed;
    for (ClassAst *ast : unit->classes)
        defineClass(unit, ast, changed);
    if (!scope.outer) {
        for (const Declaration &declaration : unit->main.declarations)
            defineVariable(declaration, changed);
        for (ProcedureAst *ast : unit->procedures)
            defineProcedure(unit, ast, changed);
    }
    invalidate(changed);
    CodePointer code = compileMain(scope, unit->main);
    for (ClassAst *ast : unit->classes)
        compileClass(*ast->name->classDefinition);
    if (!scope.outer)
        for (ProcedureAst *ast : unit->procedures)
            compile(*ast->name->procedure);
    return code;
}

// Calls of the host

void Engine::addCode(QStringView text)
{
    const Outermost outermost(*this);
    const std::shared_ptr<Unit> unit = parseScript(text, m_symbols, this);
    const CodePointer code = define(unit, { this, nullptr, nullptr, unit->optionExplicit, unit->runsTexts, {} });
    runCode(code);
    outermost.finish();
}

Value Engine::evaluate(QStringView text)
{
    const Outermost outermost(*this);
    const std::shared_ptr<Unit> unit = parseExpression(text, m_symbols, this);
    Value result = runCode(compileEval({ this, nullptr, nullptr, false, false, {} }, unit->expression));
    outermost.finish();
    return result;
}

bool Engine::hasProcedure(const QString &name) const
{
    const Symbol *symbol = m_symbols.find(name.toCaseFolded());
    return symbol && symbol->kind == GlobalKind::Procedure;
}

Value Engine::runProcedure(const QString &name, const QList<Value> &arguments)
{
    const Outermost outermost(*this);
    if (!hasProcedure(name))
        throw ScriptError(err::kInvalidCall, name);
    Value result = callProcedure(m_symbols.intern(name)->procedure.get(), nullptr, arguments);
    outermost.finish();
    return result;
}

// Frames

Value *Engine::stackTop() const
{
    if (m_frameCount == 0)
        return m_stack;
    const Frame &frame = m_frames[m_frameCount - 1];
    return frame.registers + frame.code->registerCount;
}

Engine::Frame &Engine::pushFrame(Code *code, Value *registers, Instance *me, Operand target)
{
    if (m_frameCount >= kMostFrames || registers + code->registerCount > m_stackEnd)
        throw ScriptError(err::kOutOfStack);
    Frame &frame = m_frames[m_frameCount++];
    frame.code = CodePointer(code);
    frame.registers = registers;
    frame.pc = code->instructions.data();
    frame.target = target;
    frame.isBottom = false;
    frame.resumeNext = false;
    frame.scope = m_frameCount - 1;
    if (me)
        frame.me = Value::object(me);
    return frame;
}

/** Starts a procedure whose arguments stand at the start of its registers already. */
void Engine::pushCall(Procedure *procedure, Instance *me, Value *arguments, int count, Operand target)
{
    if (!procedure->code)
        compile(*procedure);
    Code *code = procedure->code.get();
    if (count != code->parameterCount)
        throw ScriptError(err::kArgumentCount, procedure->name->text);
    pushFrame(code, arguments, me, target);
    Value *const end = arguments + code->registerCount;
    for (Value *free = arguments + count; free != end; ++free)
        new (free) Value;
    for (int i = 0; code->anyByValue && i < count; ++i)
        if (code->byValue[size_t(i)] && arguments[i].isReference())
            arguments[i] = Value(arguments[i].resolved());
    --m_budget;
}

void Engine::popFrame() noexcept
{
    Frame &frame = m_frames[m_frameCount - 1];
    Value *const end = frame.registers + frame.code->registerCount;
    for (Value *value = frame.registers; value != end; ++value)
        if (!value->isSimple())
            *value = Value();
    if (frame.extras)
        frame.extras.reset();
    if (!frame.me.isSimple())
        frame.me = Value();
    --m_frameCount;
    frame.code = {};
}

void Engine::unwind(size_t bottom) noexcept
{
    while (m_frameCount > bottom)
        popFrame();
}

void Engine::clearTemporaries(Frame &frame) noexcept
{
    for (int i = frame.code->firstTemporary; i < frame.code->registerCount; ++i)
        frame.registers[i] = Value();
}

/** Finds who goes on after an error; false: nobody above `bottom`. */
bool Engine::recover(ScriptError &error, size_t bottom)
{
    for (; m_frameCount > bottom; popFrame()) {
        Frame &frame = m_frames[m_frameCount - 1];
        const std::vector<Mark> &marks = frame.code->marks;
        const auto where = qint32(frame.pc - frame.code->instructions.data());
        const auto next = std::upper_bound(marks.begin(), marks.end(), where,
            [](qint32 at, const Mark &mark) { return at < mark.at; });
        if (error.line() == 0 && next != marks.begin())
            error.setPosition(std::prev(next)->line, std::prev(next)->column);
        m_err = { error.number(), error.description(), error.source(), error.helpFile(), error.helpContext() };
        if (!frame.resumeNext)
            continue;
        clearTemporaries(frame);
        const qint32 on = next == marks.end() ? qint32(frame.code->instructions.size() - 1) : next->at;
        frame.pc = frame.code->instructions.data() + on;
        return true;
    }
    return false;
}

Value Engine::runCode(const CodePointer &code)
{
    const size_t bottom = m_frameCount;
    Value *registers = stackTop();
    pushFrame(code.get(), registers, nullptr, place::kNone).isBottom = true;
    for (int i = 0; i < code->registerCount; ++i)
        new (registers + i) Value;
    run(bottom);
    return std::move(m_result);
}

Value Engine::callProcedure(Procedure *procedure, Instance *me, const QList<Value> &arguments)
{
    const Outermost outermost(*this);
    const size_t bottom = m_frameCount;
    Value *registers = stackTop();
    if (registers + arguments.size() + 1 > m_stackEnd)
        throw ScriptError(err::kOutOfStack);
    for (qsizetype i = 0; i < arguments.size(); ++i)
        new (registers + i) Value(arguments[i]);
    try {
        pushCall(procedure, me, registers, int(arguments.size()), place::kNone);
    } catch (...) {
        for (qsizetype i = 0; i < arguments.size() && m_frameCount == bottom; ++i)
            registers[i] = Value();
        throw;
    }
    m_frames[m_frameCount - 1].isBottom = true;
    run(bottom);
    return std::move(m_result);
}

void Engine::run(size_t bottom)
{
    if (m_nativeDepth >= kDeepestNative) {
        unwind(bottom);
        throw ScriptError(err::kOutOfStack);
    }
    ++m_nativeDepth;
    struct Restore
    {
        Engine &engine;
        Value *place[4];
        explicit Restore(Engine &e) : engine(e) { std::copy(e.m_place, e.m_place + 4, place); }
        ~Restore()
        {
            std::copy(place, place + 4, engine.m_place);
            --engine.m_nativeDepth;
        }
    } const restore(*this);
    try {
        for (;;) {
            try {
                loop();
                return;
            } catch (ScriptError &error) {
                if (!recover(error, bottom))
                    throw;
            }
        }
    } catch (...) {
        unwind(bottom);
        throw;
    }
}

void Engine::poll()
{
    m_budget = kBudget;
    checkDeadline();
}

qint64 Engine::millisecondsLeft() const
{
    if (!m_limited)
        return -1;
    const auto left = m_deadline - std::chrono::steady_clock::now();
    return std::max<qint64>(0, std::chrono::duration_cast<std::chrono::milliseconds>(left).count());
}

void Engine::checkDeadline()
{
    if (m_abort || (m_limited && std::chrono::steady_clock::now() >= m_deadline)) {
        m_abort = true;
        throw ScriptTimeout();
    }
}

// Objects

Value Engine::plain(const Value &original)
{
    Value value = original.resolved();
    for (int depth = 0; value.is(Type::Object); ++depth) {
        if (value.isNothing())
            throw ScriptError(err::kObjectNotSet);
        if (!value.object()->hasDefaultMember() || depth > 20)
            throw ScriptError(err::kNoSuchMember);
        Args none(*this, nullptr, 0);
        value = Value(value).object()->invoke(Object::kDefaultMember, Access::Get, none);
    }
    return value;
}

Value Engine::callObject(Object *object, const QList<Value> &arguments)
{
    QList<Value> values = arguments;
    Args args(*this, values.data(), int(values.size()));
    return object->invoke(Object::kDefaultMember, Access::Call, args);
}

Value Engine::createObject(const QString &progId) { return vbs::createObject(*this, progId); }

Value Engine::makeProcedureReference(const QString &name)
{
    if (!hasProcedure(name))
        throw ScriptError(err::kInvalidCall, u"GetRef"_s);
    return Value::object(new ProcedureReference(*this, m_symbols.intern(name)->procedure));
}

/** A member of a script's object used by native code. */
Value Engine::callMemberOf(Instance *instance, Symbol *name, Access access, Args &args)
{
    const Value alive = Value::object(instance);
    const auto found = instance->definition().members.constFind(name);
    if (found == instance->definition().members.constEnd() || (found->isPrivate && name != instance->definition().defaultMember))
        throw ScriptError(err::kNoSuchMember, name->text);
    if (found->field >= 0) {
        if (access == Access::Let || access == Access::Set)
            instance->fields()[found->field] = args.newValue();
        return instance->fields()[found->field];
    }
    QList<Value> values;
    for (int i = 0; i < args.count(); ++i)
        values.append(args[i]);
    if (access == Access::Let || access == Access::Set)
        values.append(args.newValue());
    const auto &procedure = access == Access::Let ? found->let : access == Access::Set ? found->set : found->get;
    if (!procedure)
        throw ScriptError(err::kNoSuchMember, name->text);
    return callProcedure(procedure.get(), instance, values);
}

/** Runs Class_Terminate. It may run while an error is on its way, so nothing leaves it. */
void Engine::terminate(Instance *instance) noexcept
{
    const ErrState before = m_err;
    try {
        Value result = std::move(m_result);
        callProcedure(instance->definition().terminate.get(), instance, {});
        m_result = std::move(result);
    } catch (const ScriptError &) {
        // There is nobody to whom an error in Class_Terminate could be told.
    } catch (...) {
        m_abort = true; // out of time (or ended): the next look at the clock says so
        m_budget = 0;
    }
    m_err = before;
}

}
