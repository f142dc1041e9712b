#pragma once

#include "platform/vbscript/Compiler.h"
#include "platform/vbscript/Object.h"
#include "platform/vbscript/ScriptError.h"
#include "platform/vbscript/ScriptHost.h"

#include <chrono>
#include <map>
#include <memory>

namespace vbs {

class ErrObject;
class Instance;

/** State of the Err object. */
struct ErrState
{
    int number = 0;
    QString description;
    QString source;
    QString helpFile;
    int helpContext = 0;
};

/**
 * The VBScript engine: one global module, its variables and procedures, and the loop that runs them. Not for use
 * by more than one thread. Script errors leave it as ScriptError, an expired limit as ScriptTimeout; it stays usable.
 */
class Engine final : public ScriptHost, public GlobalScope
{
public:
    Engine();
    ~Engine() override;
    Q_DISABLE_COPY_MOVE(Engine)

    /** Compiles a text into the module and runs its global statements. Definitions replace those of the same name. */
    void addCode(QStringView text);
    /** Calls a procedure of the module; error 5 if there is none. */
    Value runProcedure(const QString &name, const QList<Value> &arguments = {});
    Value evaluate(QStringView text);
    bool hasProcedure(const QString &name) const;
    /** Makes an object known under a global name. */
    void addObject(const QString &name, const Value &object);
    /** Forgets all code, variables and objects; Class_Terminate runs. */
    void reset();

    /** Limit of one outermost call in ms; -1: none. */
    void setTimeLimit(int milliseconds) { m_timeLimit = milliseconds; }
    void setUserInterfaceAllowed(bool allowed) { m_userInterface = allowed; }
    void setLocale(const QLocale &locale) { m_locale = locale; }

    // ScriptHost
    qint64 millisecondsLeft() const override;
    void checkDeadline() override;
    void spend(qint64 units) override
    {
        m_budget -= units;
        if (m_budget <= 0)
            poll();
    }
    bool userInterfaceAllowed() const override { return m_userInterface; }
    const QLocale &locale() const override { return m_locale; }
    Value plain(const Value &value) override;
    Value callObject(Object *object, const QList<Value> &arguments) override;
    Value createObject(const QString &progId) override;

    // GlobalScope
    SymbolTable &symbols() override { return m_symbols; }
    int globalSlot(Symbol *name) override;
    Value globalConstant(Symbol *name) const override { return m_globals[name->slot]; }
    Value predefinedObject(Symbol *name) const override { return m_predefined.value(name); }

    // For intrinsics and script objects
    ErrState &err() { return m_err; }
    Value makeProcedureReference(const QString &name);
    Value callMemberOf(Instance *instance, Symbol *name, Access access, Args &args);
    Value callProcedure(Procedure *procedure, Instance *me, const QList<Value> &arguments);
    void terminate(Instance *instance) noexcept;
    double &lastRandom() { return m_lastRandom; }
    quint32 &randomState() { return m_randomState; }
    Instance *&instances() { return m_instances; }

private:
    struct Frame;
    class Outermost;
    using Locals = std::map<Symbol *, std::unique_ptr<Value>>;

    // Definitions (Engine.cpp)
    CodePointer define(const std::shared_ptr<Unit> &unit, const CompileScope &scope);
    void defineVariable(const Declaration &declaration, QSet<Symbol *> &changed);
    void defineProcedure(const std::shared_ptr<Unit> &unit, ProcedureAst *ast, QSet<Symbol *> &changed);
    void defineClass(const std::shared_ptr<Unit> &unit, ClassAst *ast, QSet<Symbol *> &changed);
    void compileClass(ClassDefinition &definition);
    std::shared_ptr<Procedure> makeProcedure(const std::shared_ptr<Unit> &unit, ProcedureAst *ast,
        ClassDefinition *owner);
    void changeKind(Symbol *name, GlobalKind kind, QSet<Symbol *> &changed);
    void rebindLocals(Frame &frame, const QSet<Symbol *> &changed);
    void invalidate(const QSet<Symbol *> &changed);
    void compile(Procedure &procedure);
    void clearGlobals();

    // Frames (Engine.cpp)
    Value *stackTop() const;
    Frame &pushFrame(Code *code, Value *registers, Instance *me, Operand target);
    void pushCall(Procedure *procedure, Instance *me, Value *arguments, int count, Operand target);
    void popFrame() noexcept;
    void unwind(size_t bottom) noexcept;
    bool recover(ScriptError &error, size_t bottom);
    void clearTemporaries(Frame &frame) noexcept;
    Value runCode(const CodePointer &code);
    void run(size_t bottom);
    void loop();
    void poll();

    // Parts of the loop (Run.cpp, RunCalls.cpp)
    Value &at(Operand operand) const;
    Value take(Operand operand);
    void dropTemporary(Operand operand);
    void dropArguments(Operand first, int count);
    void store(Operand target, Value value);
    void slowBinary(const Instruction &i);
    bool slowCompare(const Instruction &i);
    bool truth(Operand operand);
    void slowLet(const Instruction &i);
    void setObject(const Instruction &i);
    void appendText(const Instruction &i);
    void forPrepare(const Instruction &i, bool &enter);
    bool forNextSlow(const Instruction &i);
    void eachStart(const Instruction &i);
    bool eachNext(const Instruction &i);
    void isOperator(const Instruction &i);
    bool callIntrinsic(const Instruction &i);
    bool callProcedureByName(const Instruction &i);
    bool readImplicit(const Instruction &i);
    bool callValue(const Instruction &i);
    bool callValueOf(const Value &callee, Value *arguments, int count, Operand target, Operand culprit,
        Operand firstArgument);
    bool getMember(const Instruction &i);
    bool getInstanceMember(const Instruction &i, Instance *instance, Symbol *name);
    bool putMember(const Instruction &i, bool isSet);
    bool putInstanceMember(const Instruction &i, Instance *instance, Symbol *name, bool isSet, Value value);
    bool index1(const Instruction &i);
    void store1(const Instruction &i);
    void putIndex(const Instruction &i, bool isSet);
    void putElement(Value &base, Value *arguments, int count, Value value, bool isSet, Operand culprit);
    void elementReference(const Instruction &i);
    ArrayData *writableArray(Value &value);
    qint64 elementOffset(const ArrayData &array, const Value *arguments, int count);
    Value element(const ArrayData &array, qint64 offset) const;
    Object *objectAt(Operand operand);
    void newObject(const Instruction &i);
    void dimArray(const Instruction &i);
    void reDim(const Instruction &i);
    void erase(const Instruction &i);
    void execute(const Instruction &i, bool global);
    void eval(const Instruction &i);
    void defineLocals(Frame &scopeFrame, const std::shared_ptr<Unit> &unit);
    CompileScope scopeOf(const Frame &frame) const;
    Frame &pushText(const CodePointer &code, Frame &from, Operand target);
    void checkDefined(const Instruction &i);
    void declareGlobal(const Instruction &i);
    Value &extraLocal(Frame &scopeFrame, Symbol *name);
    QString operandName(Operand operand) const;
    QString memberName(Operand holder, const Symbol *name) const;
    void randomize(const Instruction &i);

    SymbolTable m_symbols;
    Value *m_globals = nullptr;
    int m_globalCount = 0;
    QHash<Symbol *, Value> m_predefined;
    Value *m_stack = nullptr;
    Value *m_stackEnd = nullptr;
    std::unique_ptr<Frame[]> m_frames;
    size_t m_frameCount = 0;
    Value *m_place[4] = {};
    Value m_result;
    ErrState m_err;
    Instance *m_instances = nullptr;
    QLocale m_locale;
    std::chrono::steady_clock::time_point m_deadline;
    qint64 m_budget = 0;
    int m_timeLimit = -1;
    int m_outermost = 0;
    int m_nativeDepth = 0;
    bool m_limited = false;
    bool m_abort = false;
    bool m_userInterface = false;
    double m_lastRandom = 0;
    quint32 m_randomState = 327680;
};

/** Sets what Rnd gives next from a number (Randomize). */
void seedRandom(quint32 &state, double seed);

}
