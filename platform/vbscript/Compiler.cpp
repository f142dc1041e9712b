#include "platform/vbscript/CompilerPrivate.h"

#include "platform/vbscript/Memory.h"
#include "platform/vbscript/Object.h"
#include "platform/vbscript/ScriptError.h"

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr int kMostLocals = 8000;

}

Operand Compiler::newLocal()
{
    if (m_localCount >= kMostLocals)
        throw compileError(1001, m_ast ? m_ast->line : 1, 0);
    return Operand(m_localCount++);
}

Operand Compiler::newTemporary()
{
    if (m_temporary >= kMostLocals)
        throw compileError(1001, m_ast ? m_ast->line : 1, 0);
    m_mostTemporaries = std::max(m_mostTemporaries, m_temporary + 1);
    return Operand(kTemporaries + m_temporary++);
}

Operand Compiler::constant(const Value &value)
{
    QString key = QString::number(int(value.type())) + u':';
    if (value.is(Type::String))
        key += value.toQString();
    else if (!value.is(Type::Object))
        key += QString::number(value.whole());
    else
        key += QString::number(quintptr(value.object()));
    const auto known = m_constantIndex.constFind(key);
    if (known != m_constantIndex.constEnd())
        return *known;
    if (m_code->constants.size() >= place::kIndexMask)
        throw compileError(1001, m_ast ? m_ast->line : 1, 0);
    const Operand operand = Operand(place::kConstant | m_code->constants.size());
    m_code->constants.push_back(value);
    m_constantIndex.insert(key, operand);
    return operand;
}

int Compiler::nameIndex(Symbol *name)
{
    if (!name)
        return -1;
    const auto known = m_nameIndex.constFind(name);
    if (known != m_nameIndex.constEnd())
        return *known;
    m_code->names.push_back(name);
    m_nameIndex.insert(name, int(m_code->names.size() - 1));
    return int(m_code->names.size() - 1);
}

int Compiler::issue(const Instruction &instruction)
{
    m_code->instructions.push_back(instruction);
    return here() - 1;
}

void Compiler::mark(int line, int column)
{
    std::vector<Mark> &marks = m_code->marks;
    if (!marks.empty() && marks.back().at == here())
        marks.pop_back();
    marks.push_back({ here(), line, column });
}

void Compiler::raise(int number, Symbol *name)
{
    issue({ .op = Op::RaiseError, .b = Operand(number), .d = nameIndex(name) });
}

/** Moves the intermediate registers behind the locals, now that their number is known. */
CodePointer Compiler::finish()
{
    const Operand first = Operand(m_localCount);
    const auto settle = [first](Operand &operand) {
        if (operand >= kTemporaries && operand < place::kConstant)
            operand = Operand(operand - kTemporaries + first);
    };
    for (Instruction &instruction : m_code->instructions) {
        if (instruction.op == Op::RaiseError)
            continue; // b is a number there
        settle(instruction.a);
        settle(instruction.b);
        settle(instruction.c);
    }
    m_code->firstTemporary = m_localCount;
    m_code->registerCount = m_localCount + m_mostTemporaries + 1;
    const qint64 bytes = qint64(sizeof(Code) + m_code->instructions.size() * sizeof(Instruction)
        + m_code->marks.size() * sizeof(Mark));
    memory::charge(bytes);
    m_code->charged = bytes;
    return m_code;
}

void Compiler::start(const ProcedureAst &ast)
{
    m_ast = &ast;
    m_code->owner = m_scope.owner;
    m_code->optionExplicit = m_scope.optionExplicit;
    m_code->name = ast.name;
}

void Compiler::declareLocals(const ProcedureAst &ast)
{
    for (const Parameter &parameter : ast.parameters) {
        m_code->locals.insert(parameter.name, newLocal());
        m_code->byValue.push_back(parameter.byValue);
        m_code->anyByValue = m_code->anyByValue || parameter.byValue;
    }
    m_code->parameterCount = int(ast.parameters.size());
    for (const Declaration &declaration : ast.declarations) {
        if (declaration.isConstant)
            m_localConstants.insert(declaration.name, declaration.value);
        if (!m_code->locals.contains(declaration.name))
            m_code->locals.insert(declaration.name, newLocal());
    }
}

void Compiler::declareArrays(const ProcedureAst &ast)
{
    for (const Declaration &declaration : ast.declarations) {
        if (!declaration.isArray)
            continue;
        m_code->shapes.push_back(declaration.counts);
        const Operand target = bind(declaration.name).operand;
        issue({ .op = Op::DimArray, .n = m_code->isGlobal, .a = target, .d = int(m_code->shapes.size() - 1) });
    }
}

CodePointer Compiler::procedure(const ProcedureAst &ast)
{
    start(ast);
    declareLocals(ast);
    if (ast.kind == ProcedureKind::Function || ast.kind == ProcedureKind::PropertyGet) {
        // A local of the function's own name stands for its result.
        const Operand result = m_code->locals.contains(ast.name) ? m_code->locals.value(ast.name) : newLocal();
        m_code->result = result;
        m_code->locals.insert(ast.name, result);
    }
    mark(ast.line, ast.column);
    declareArrays(ast);
    // Constants are folded into the code; only texts run by Execute and Eval look them up here.
    for (const Declaration &declaration : ast.declarations)
        if (declaration.isConstant)
            issue({ .op = Op::Copy, .a = m_code->locals.value(declaration.name), .b = constant(declaration.value) });
    block(ast.body);
    mark(ast.endLine, ast.endColumn);
    issue({ .op = Op::Return });
    return finish();
}

CodePointer Compiler::main(const ProcedureAst &ast)
{
    start(ast);
    m_code->isGlobal = !m_scope.outer;
    if (m_scope.outer) {
        for (const Declaration &declaration : ast.declarations) {
            if (declaration.isConstant)
                m_localConstants.insert(declaration.name, declaration.value);
            else
                capture(declaration.name, m_scope.outer->locals.value(declaration.name, place::kNone));
        }
    }
    mark(1, 0);
    declareArrays(ast);
    block(ast.body);
    mark(ast.endLine, 0);
    issue({ .op = Op::Return });
    return finish();
}

CodePointer Compiler::eval(const Expr *expr)
{
    m_code->owner = m_scope.owner;
    m_code->optionExplicit = m_scope.optionExplicit;
    m_code->isGlobal = !m_scope.outer;
    m_code->result = newLocal();
    mark(expr->line, expr->column);
    expressionTo(expr, Operand(m_code->result));
    issue({ .op = Op::Return });
    return finish();
}

Operand Compiler::capture(Symbol *name, Operand outer)
{
    const Operand own = newLocal();
    m_code->locals.insert(name, own);
    m_code->captures.push_back({ own, outer, name });
    return own;
}

Binding Compiler::bind(Symbol *name)
{
    const auto constantHere = m_localConstants.constFind(name);
    if (constantHere != m_localConstants.constEnd())
        return { Binding::Constant, constant(*constantHere), -1 };
    const auto local = m_code->locals.constFind(name);
    if (local != m_code->locals.constEnd()) {
        const bool isResult = m_code->result >= 0 && *local == Operand(m_code->result) && m_ast && m_ast->name == name;
        return { isResult ? Binding::OwnResult : Binding::Variable, *local, -1, m_code->globalNames.contains(name) };
    }
    if (m_scope.outer && m_scope.outer->locals.contains(name))
        return variable(capture(name, m_scope.outer->locals.value(name)));
    if (m_scope.outer && m_scope.isExtra(name))
        return variable(capture(name, place::kNone));
    if (m_scope.owner) {
        const auto found = m_scope.owner->members.constFind(name);
        if (found != m_scope.owner->members.constEnd()) {
            if (found->field >= 0)
                return variable(Operand(place::kField | found->field));
            return { Binding::Member, place::kNone, -1 };
        }
    }
    return bindGlobal(name);
}

Binding Compiler::bindGlobal(Symbol *name)
{
    m_code->globalNames.insert(name);
    switch (name->kind) {
    case GlobalKind::Procedure: return { Binding::Procedure, place::kNone, -1 };
    case GlobalKind::Constant: return { Binding::Constant, constant(m_scope.globals->globalConstant(name)), -1 };
    case GlobalKind::Class: return { Binding::Undefined, place::kNone, -1 };
    case GlobalKind::Variable:
        if (name->declared || !m_scope.optionExplicit)
            return variable(Operand(place::kGlobal | m_scope.globals->globalSlot(name)));
        break;
    case GlobalKind::None: break;
    }
    const int intrinsic = findIntrinsic(name->folded);
    if (intrinsic >= 0)
        return { Binding::Intrinsic, place::kNone, intrinsic };
    if (const Value *value = findIntrinsicConstant(name->folded))
        return { Binding::Constant, constant(*value), -1 };
    const Value object = m_scope.globals->predefinedObject(name);
    if (!object.is(Type::Empty))
        return { Binding::Constant, constant(object), -1 };
    return bindImplicit(name);
}

/** A name that nothing declares: a global in global text, else a local of this call. */
Binding Compiler::bindImplicit(Symbol *name)
{
    if (m_code->isGlobal || m_scope.optionExplicit) {
        const Operand operand = Operand(place::kGlobal | m_scope.globals->globalSlot(name));
        if (m_scope.optionExplicit)
            issue({ .op = Op::CheckDefined, .d = nameIndex(name) });
        return { Binding::Variable, operand, -1, !m_scope.optionExplicit };
    }
    if (m_scope.outer)
        return variable(capture(name, place::kNone));
    const Operand operand = newLocal();
    m_code->locals.insert(name, operand);
    return { Binding::Variable, operand, -1, true };
}

/** Assigning is what makes a global of an undeclared name; until then procedures take it for a local of theirs. */
void Compiler::declareImplicit(const Binding &binding, Symbol *name)
{
    if (!binding.undeclared || !m_code->isGlobal || m_implicit.contains(name))
        return;
    issue({ .op = Op::DeclareGlobal, .d = nameIndex(name) });
    if (m_depth <= 1)
        m_implicit.insert(name);
}

CodePointer compileProcedure(const CompileScope &scope, const ProcedureAst &ast)
{
    return Compiler(scope).procedure(ast);
}

CodePointer compileMain(const CompileScope &scope, const ProcedureAst &ast) { return Compiler(scope).main(ast); }

CodePointer compileEval(const CompileScope &scope, const Expr *expression)
{
    return Compiler(scope).eval(expression);
}

}
