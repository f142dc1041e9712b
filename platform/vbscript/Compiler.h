#pragma once

#include "platform/vbscript/Code.h"
#include "platform/vbscript/Intrinsics.h"

#include <functional>

namespace vbs {

/** Global names as the compiler needs them. */
class GlobalScope
{
public:
    virtual ~GlobalScope() = default;
    virtual SymbolTable &symbols() = 0;
    /** Counts compiling as work of the script. */
    virtual void spend(qint64 units) = 0;
    /** Place of a global variable, made when it has none. */
    virtual int globalSlot(Symbol *name) = 0;
    virtual Value globalConstant(Symbol *name) const = 0;
    /** The object behind a predefined name (Err), Empty for others. */
    virtual Value predefinedObject(Symbol *name) const = 0;
};

/** Where a text is compiled. */
struct CompileScope
{
    GlobalScope *globals = nullptr;
    ClassDefinition *owner = nullptr; // inside a class
    const Code *outer = nullptr;      // Execute, Eval: the procedure that they stand in
    bool optionExplicit = false;
    bool runsTexts = false;           // the text uses Execute or ExecuteGlobal
    std::function<bool(Symbol *)> isExtra = {}; // names that Execute has brought into the procedure before
};

/** Compiles one procedure, the global statements of a text, or one expression. */
CodePointer compileProcedure(const CompileScope &scope, const ProcedureAst &ast);
CodePointer compileMain(const CompileScope &scope, const ProcedureAst &ast);
CodePointer compileEval(const CompileScope &scope, const Expr *expression);

}
