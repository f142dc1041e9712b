#pragma once

#include "platform/vbscript/Ast.h"
#include "platform/vbscript/Symbols.h"
#include "platform/vbscript/Value.h"

#include <QHash>
#include <QSet>
#include <memory>
#include <vector>

namespace vbs {

/**
 * An operand: the upper two bits choose the place, the others the index there. Registers hold a procedure's
 * parameters, its variables and, above them, intermediate results, each of which is used exactly once.
 */
using Operand = quint16;

namespace place {
constexpr int kShift = 14;
constexpr Operand kIndexMask = (1u << kShift) - 1;
constexpr Operand kRegister = 0;
constexpr Operand kConstant = 1u << kShift;
constexpr Operand kGlobal = 2u << kShift;
constexpr Operand kField = 3u << kShift;
constexpr Operand kNone = 0xffff;
}

enum class Op : quint8 {
    // a ← b
    Let, Set, Copy, Reference,
    // a ← b op c
    Add, Subtract, Multiply, Divide, IntDivide, Modulo, Power, Concat, And, Or, Xor, Eqv, Imp, Is,
    Equal, NotEqual, Less, Greater, LessEqual, GreaterEqual,
    Append, // a ← b & c where b is a copy of a taken before c was computed
    // a ← op b
    Negate, Identity, Not,
    // to d
    Jump, LoopJump, JumpFalse, JumpTrue,
    // to d unless / when b op c
    UnlessEqual, UnlessNotEqual, UnlessLess, UnlessGreater, UnlessLessEqual, UnlessGreaterEqual,
    WhenEqual, WhenNotEqual, WhenLess, WhenGreater, WhenLessEqual, WhenGreaterEqual,
    ForPrepare, ForNext, EachStart, EachNext,
    // a ← result; n arguments from register b on; c: what is called; d: name
    Call, ReadImplicit, CallIntrinsic, CallValue, GetMember, CallMember, ElementReference,
    Index1,  // a ← b(c); d: name
    Store1,  // a(b) = c; d: name
    // c(arguments) = value, c.name(arguments) = value; the value stands behind the arguments
    PutIndexLet, PutIndexSet, PutMemberLet, PutMemberSet,
    New, Me, Clear, RequireObject,
    DimArray, ReDim, Erase,
    OnErrorNext, OnErrorZero,
    Execute, ExecuteGlobal, Eval, Randomize,
    CheckDefined, DeclareGlobal, RaiseError,
    Return
};

struct Instruction
{
    Op op;
    quint8 n = 0;
    Operand a = place::kNone;
    Operand b = place::kNone;
    Operand c = place::kNone;
    qint32 d = -1;
};

/** Where a statement starts: the positions of errors, and what On Error Resume Next goes on with. */
struct Mark
{
    qint32 at;
    qint32 line;
    qint32 column;
};

struct ClassDefinition;

/** A local name that a text run by Execute shares with its surroundings. */
struct Capture
{
    Operand own;
    Operand outer;  // kNone: a name that only Execute has brought in
    Symbol *name;
};

/** Compiled procedure or text. Counted, because it may be replaced while it runs. */
struct Code : Counted
{
    Code();
    ~Code();
    Q_DISABLE_COPY_MOVE(Code)

    std::vector<Instruction> instructions;
    std::vector<Value> constants;
    std::vector<Symbol *> names;
    std::vector<Mark> marks;
    std::vector<QVarLengthArray<qint32, 4>> shapes; // of fixed arrays
    std::vector<Capture> captures;
    std::vector<bool> byValue;           // per parameter
    bool anyByValue = false;
    int parameterCount = 0;
    int firstTemporary = 0;
    int registerCount = 0;
    int result = -1;                     // register of the return value
    bool isGlobal = false;               // text that runs in global scope
    bool optionExplicit = false;
    QHash<Symbol *, Operand> locals;     // what Execute can see
    QSet<Symbol *> globalNames;          // names whose new global meaning makes this code stale
    ClassDefinition *owner = nullptr;
    Symbol *name = nullptr;
    qint64 charged = 0;
};

/** Shared ownership of Code. */
class CodePointer
{
public:
    CodePointer() = default;
    explicit CodePointer(Code *code) : m_code(code) { retain(); }
    CodePointer(const CodePointer &other) : m_code(other.m_code) { retain(); }
    CodePointer(CodePointer &&other) noexcept : m_code(std::exchange(other.m_code, nullptr)) {}
    ~CodePointer() { drop(); }
    CodePointer &operator=(CodePointer other) noexcept
    {
        std::swap(m_code, other.m_code);
        return *this;
    }
    Code *get() const { return m_code; }
    Code *operator->() const { return m_code; }
    explicit operator bool() const { return m_code; }

private:
    void retain()
    {
        if (m_code)
            ++m_code->refs;
    }
    void drop()
    {
        if (m_code && --m_code->refs == 0)
            delete m_code;
    }
    Code *m_code = nullptr;
};

/** A procedure as the engine knows it. */
struct Procedure
{
    Symbol *name = nullptr;
    ProcedureAst *ast = nullptr;
    std::shared_ptr<Unit> unit;        // keeps `ast`
    ClassDefinition *owner = nullptr;  // of a method
    CodePointer code;                  // null: to be compiled (again) before the next call
    bool optionExplicit = false;
};

struct ClassMember
{
    bool isPrivate = false;
    int field = -1;
    std::shared_ptr<Procedure> get; // method or Property Get
    std::shared_ptr<Procedure> let;
    std::shared_ptr<Procedure> set;
};

struct ClassDefinition
{
    Symbol *name = nullptr;
    QHash<Symbol *, ClassMember> members;
    struct ArrayField
    {
        int field;
        QVarLengthArray<qint32, 4> counts;
    };
    std::vector<ArrayField> arrays;
    int fieldCount = 0;
    std::shared_ptr<Procedure> initialize;
    std::shared_ptr<Procedure> terminate;
    Symbol *defaultMember = nullptr;
    std::shared_ptr<Unit> unit;
};

}
