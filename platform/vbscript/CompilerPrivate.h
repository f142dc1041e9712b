#pragma once

#include "platform/vbscript/Compiler.h"

namespace vbs {

/** What a name means where it stands. */
struct Binding
{
    enum Kind { Variable, Constant, Procedure, OwnResult, Member, Intrinsic, Undefined } kind = Variable;
    Operand operand = place::kNone; // Variable, Constant, OwnResult
    int index = -1;                 // Intrinsic
    bool undeclared = false;        // Variable: nothing declares the name
};

class Compiler
{
public:
    explicit Compiler(const CompileScope &scope) : m_scope(scope), m_code(new Code) {}
    CodePointer procedure(const ProcedureAst &ast);
    CodePointer main(const ProcedureAst &ast);
    CodePointer eval(const Expr *expression);

private:
    struct OpenBlock
    {
        ExitKind exit = ExitKind::Sub; // Do and For can be left
        bool isLoop = false;
        Operand hidden = place::kNone; // register to clear when the block is left
        std::vector<int> leaving = {}; // jumps to patch
    };

    // Frame (Compiler.cpp)
    CodePointer finish();
    void start(const ProcedureAst &ast);
    void declareLocals(const ProcedureAst &ast);
    void declareArrays(const ProcedureAst &ast);
    Operand newLocal();
    Operand newTemporary();
    Operand constant(const Value &value);
    int nameIndex(Symbol *name);
    int issue(const Instruction &instruction);
    void mark(int line, int column);
    void patch(int at) { m_code->instructions[size_t(at)].d = here(); }
    int here() const { return int(m_code->instructions.size()); }
    void raise(int number, Symbol *name);

    // Names (Compiler.cpp)
    Binding bind(Symbol *name);
    Binding bindGlobal(Symbol *name);
    Binding bindImplicit(Symbol *name);
    Operand capture(Symbol *name, Operand outer);
    void declareImplicit(const Binding &binding, Symbol *name);
    static Binding variable(Operand operand) { return { Binding::Variable, operand, -1 }; }

    // Expressions (CompilerExpressions.cpp)
    Operand expression(const Expr *expr, Operand want = place::kNone);
    void expressionTo(const Expr *expr, Operand target);
    bool mayBecomeProcedure(const Binding &binding, Symbol *name) const;
    Operand readImplicit(const Binding &binding, Symbol *name, Operand want, bool byReference);
    Operand nameValue(const Expr *expr, Operand want);
    Operand binary(const Expr *expr, Operand want);
    Operand unary(const Expr *expr, Operand want);
    Operand call(const Expr *expr, Operand want, bool statement);
    Operand callNamed(const Expr *base, const std::vector<Expr *> &args, Operand want, bool statement);
    Operand callMember(const Expr *base, const std::vector<Expr *> &args, Operand want, bool statement);
    Operand callValue(Operand callee, Symbol *name, const std::vector<Expr *> &args, Operand want, bool statement);
    Operand intrinsic(int index, Symbol *name, const std::vector<Expr *> &args, Operand want);
    Operand evalCall(const std::vector<Expr *> &args, Operand want);
    Operand member(Operand object, Symbol *name, const std::vector<Expr *> &args, Operand want, bool statement);
    Operand ownMember(Symbol *name, const std::vector<Expr *> &args, Operand want, bool statement);
    Operand withObject();
    Operand objectOf(const Expr *base);
    Operand result(Operand want, int temporaries);
    Operand arguments(const std::vector<Expr *> &args, bool byReference);
    void argument(const Expr *expr, Operand target, bool byReference);
    bool referenceTo(const Expr *expr, Operand target);
    bool runsCode(const Expr *expr);
    bool isTemporary(Operand operand) const { return operand < place::kConstant && operand >= kTemporaries; }
    Operand protect(Operand operand, const Expr *later);
    void jumpIf(const Expr *condition, bool when, std::vector<int> &jumps);

    // Statements (CompilerStatements.cpp)
    void block(const Block &body);
    void statement(const Stmt *stmt);
    void let(const Stmt *stmt);
    void letName(const Expr *target, const Expr *value, bool isSet);
    bool append(Operand target, const Expr *targetExpr, const Expr *value);
    void assign(const Stmt *stmt, bool isSet);
    void assignCall(const Expr *target, const Expr *value, bool isSet);
    void putMember(const Expr *base, Symbol *name, const std::vector<Expr *> &args, const Expr *value, bool isSet);
    void putIndex(Operand base, Symbol *name, const std::vector<Expr *> &args, const Expr *value, bool isSet);
    void callStatement(const Stmt *stmt);
    bool specialCall(Symbol *name, const std::vector<Expr *> &args);
    void ifStatement(const Stmt *stmt);
    void selectStatement(const Stmt *stmt);
    void forStatement(const Stmt *stmt);
    void forEachStatement(const Stmt *stmt);
    void doStatement(const Stmt *stmt);
    void withStatement(const Stmt *stmt);
    void exitStatement(const Stmt *stmt);
    void reDimStatement(const Stmt *stmt);
    void declareByReDim(Symbol *name);
    void closeLoop();
    Operand loopVariable(const Expr *target);

    static constexpr Operand kTemporaries = 0x2000; // until the number of locals is known

    CompileScope m_scope;
    CodePointer m_code;
    const ProcedureAst *m_ast = nullptr;
    QHash<Symbol *, Value> m_localConstants;
    QHash<QString, Operand> m_constantIndex;
    QHash<Symbol *, int> m_nameIndex;
    std::vector<OpenBlock> m_blocks;
    std::vector<Operand> m_withs;
    QSet<Symbol *> m_implicit; // undeclared names that have become globals on every way to this point
    int m_depth = 0;           // of blocks; 1: statements that run whatever happens
    int m_localCount = 0;
    int m_temporary = 0;
    int m_mostTemporaries = 0;
};

}
