#pragma once

#include "platform/vbscript/Lexer.h"
#include "platform/vbscript/Memory.h"
#include "platform/vbscript/Value.h"

#include <deque>
#include <memory>
#include <vector>

namespace vbs {

enum class ExprKind : quint8 {
    Literal, Name, Me, Member, WithMember, Call, Unary, Binary, Parenthesised, New, Omitted
};

/** Expression. Nodes live in their unit's store and never own each other, so nothing recurses to free them. */
struct Expr
{
    ExprKind kind = ExprKind::Literal;
    Tok op = Tok::End;      // Unary, Binary
    int depth = 1;
    int line = 0;
    int column = 0;
    Symbol *name = nullptr; // Name, Member, WithMember, New
    Value value;            // Literal
    Expr *left = nullptr;   // Unary, Binary, Parenthesised; base of Member and Call
    Expr *right = nullptr;  // Binary
    std::vector<Expr *> args; // Call
};

enum class StmtKind : quint8 {
    Empty, Let, Set, Call, If, Select, For, ForEach, Do, While, With, Exit, Dim, ReDim, Const, OnErrorNext,
    OnErrorZero
};

enum class ExitKind : quint8 { Do, For, Sub, Function, Property };

struct Stmt;
using Block = std::vector<Stmt *>;

/** A condition or case list with its statements. */
struct Branch
{
    std::vector<Expr *> tests; // none: Else
    Block body;
    int line = 0;
    int column = 0;
};

/** A declared name: variable, array with fixed bounds, array without, or constant. */
struct Declaration
{
    Symbol *name = nullptr;
    bool isArray = false;
    bool isPrivate = false;
    bool isConstant = false;
    QVarLengthArray<qint32, 4> counts; // Dim: elements per dimension
    std::vector<Expr *> bounds;        // ReDim
    Value value;                       // Const
    int line = 0;
    int column = 0;
};

struct Stmt
{
    StmtKind kind = StmtKind::Empty;
    int line = 0;
    int column = 0;
    int endLine = 0; // of the closing line of a block
    int endColumn = 0;
    Expr *target = nullptr; // assignment target, call, loop variable
    Expr *value = nullptr;  // right side, condition, subject
    Expr *limit = nullptr;  // For
    Expr *step = nullptr;
    bool testFirst = false; // Do: the condition stands at the top
    bool until = false;
    bool preserve = false;
    ExitKind exit = ExitKind::Do;
    std::vector<Branch> branches;
    std::vector<Declaration> declarations;
    Block body;
};

enum class ProcedureKind : quint8 { Sub, Function, PropertyGet, PropertyLet, PropertySet };

struct Parameter
{
    Symbol *name = nullptr;
    bool byValue = false;
};

struct ProcedureAst
{
    ProcedureKind kind = ProcedureKind::Sub;
    Symbol *name = nullptr;
    bool isPrivate = false;
    bool isDefault = false;
    std::vector<Parameter> parameters;
    Block body;
    std::vector<Declaration> declarations; // every Dim and Const of the body, whatever block it stands in
    int line = 0;
    int column = 0;
    int endLine = 0;
    int endColumn = 0;
};

struct ClassAst
{
    Symbol *name = nullptr;
    std::vector<Declaration> fields;
    std::vector<ProcedureAst *> members;
    int line = 0;
    int column = 0;
};

/** One parsed script text; procedures keep it alive because they may be compiled again. */
struct Unit
{
    bool optionExplicit = false;
    bool runsTexts = false; // uses Execute or ExecuteGlobal: names may become procedures while it runs
    ProcedureAst main; // the global statements
    std::vector<ProcedureAst *> procedures;
    std::vector<ClassAst *> classes;
    Expr *expression = nullptr; // Eval

    memory::Charge charge; // for the nodes below
    std::deque<Expr> expressionStore;
    std::deque<Stmt> statementStore;
    std::deque<ProcedureAst> procedureStore;
    std::deque<ClassAst> classStore;
};

/**
 * Parses a script text; `host` counts the work where there is one; inside a class the global statements may use Me.
 * Throws ScriptError (compile) with line and column.
 */
std::shared_ptr<Unit> parseScript(QStringView text, SymbolTable &symbols, ScriptHost *host = nullptr,
    bool insideClass = false);
/** Parses one expression (Eval). */
std::shared_ptr<Unit> parseExpression(QStringView text, SymbolTable &symbols, ScriptHost *host = nullptr,
    bool insideClass = false);

}
