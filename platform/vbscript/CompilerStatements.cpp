#include "platform/vbscript/CompilerPrivate.h"

#include "platform/vbscript/ScriptError.h"

using namespace Qt::StringLiterals;

namespace vbs {

void Compiler::block(const Block &body)
{
    ++m_depth;
    for (const Stmt *stmt : body) {
        m_scope.globals->spend(10);
        mark(stmt->line, stmt->column);
        statement(stmt);
        m_temporary = 0;
    }
    --m_depth;
}

void Compiler::statement(const Stmt *stmt)
{
    switch (stmt->kind) {
    case StmtKind::Empty: case StmtKind::Dim: case StmtKind::Const: return;
    case StmtKind::Let: return let(stmt);
    case StmtKind::Set: return assign(stmt, true);
    case StmtKind::Call: return callStatement(stmt);
    case StmtKind::If: return ifStatement(stmt);
    case StmtKind::Select: return selectStatement(stmt);
    case StmtKind::For: return forStatement(stmt);
    case StmtKind::ForEach: return forEachStatement(stmt);
    case StmtKind::Do: case StmtKind::While: return doStatement(stmt);
    case StmtKind::With: return withStatement(stmt);
    case StmtKind::Exit: return exitStatement(stmt);
    case StmtKind::ReDim: return reDimStatement(stmt);
    case StmtKind::OnErrorNext: issue({ .op = Op::OnErrorNext }); return;
    case StmtKind::OnErrorZero: issue({ .op = Op::OnErrorZero }); return;
    }
}

void Compiler::let(const Stmt *stmt) { assign(stmt, false); }

void Compiler::assign(const Stmt *stmt, bool isSet)
{
    const Expr *target = stmt->target;
    switch (target->kind) {
    case ExprKind::Name: return letName(target, stmt->value, isSet);
    case ExprKind::Member: case ExprKind::WithMember:
        return putMember(target, target->name, {}, stmt->value, isSet);
    case ExprKind::Call: return assignCall(target, stmt->value, isSet);
    default: throw compileError(1010, target->line, target->column);
    }
}

void Compiler::letName(const Expr *target, const Expr *value, bool isSet)
{
    const Binding binding = bind(target->name);
    if (binding.kind == Binding::Member)
        return putMember(nullptr, target->name, {}, value, isSet);
    if (binding.kind != Binding::Variable && binding.kind != Binding::OwnResult)
        return raise(err::kIllegalAssignment, target->name);
    declareImplicit(binding, target->name);
    if (!isSet && append(binding.operand, target, value))
        return;
    const bool computed = value->kind == ExprKind::Binary || (value->kind == ExprKind::Unary);
    // What an operator computes is never an object, so it may go straight into the variable.
    const Operand source = expression(value, !isSet && computed ? binding.operand : place::kNone);
    if (source == binding.operand && computed && !isSet)
        return;
    issue({ .op = isSet ? Op::Set : Op::Let, .a = binding.operand, .b = source,
        .d = isSet && value->kind == ExprKind::Name ? nameIndex(value->name) : -1 });
}

/** `s = s & a & b`: joins a and b first, so that they are added to the text that s holds already. */
bool Compiler::append(Operand target, const Expr *targetExpr, const Expr *value)
{
    std::vector<const Expr *> parts;
    const Expr *first = value;
    for (; first->kind == ExprKind::Binary && first->op == Tok::Ampersand; first = first->left)
        parts.push_back(first->right);
    if (parts.empty() || first->kind != ExprKind::Name || first->name != targetExpr->name)
        return false;
    bool runs = false;
    for (const Expr *part : parts)
        runs = runs || runsCode(part);
    const Operand before = runs ? newTemporary() : target;
    if (runs)
        issue({ .op = Op::Copy, .a = before, .b = target });
    const int temporaries = m_temporary;
    Operand tail = expression(parts.back());
    for (auto it = std::next(parts.rbegin()); it != parts.rend(); ++it) {
        tail = protect(tail, *it);
        const Operand right = expression(*it);
        const Operand joined = result(place::kNone, temporaries);
        issue({ .op = Op::Concat, .a = joined, .b = tail, .c = right });
        tail = joined;
    }
    issue({ .op = Op::Append, .a = target, .b = before, .c = tail });
    return true;
}

void Compiler::assignCall(const Expr *target, const Expr *value, bool isSet)
{
    const Expr *base = target->left;
    if (base->kind == ExprKind::Member || base->kind == ExprKind::WithMember)
        return putMember(base, base->name, target->args, value, isSet);
    if (base->kind == ExprKind::Name) {
        const Binding binding = bind(base->name);
        if (binding.kind == Binding::Member)
            return putMember(nullptr, base->name, target->args, value, isSet);
        if (binding.kind == Binding::Procedure || binding.kind == Binding::Intrinsic)
            return raise(binding.kind == Binding::Procedure ? err::kIllegalAssignment : err::kTypeMismatch,
                base->name);
        if (binding.kind == Binding::Undefined)
            return raise(err::kTypeMismatch, base->name);
        return putIndex(binding.operand, base->name, target->args, value, isSet);
    }
    const Operand reference = newTemporary();
    if (!referenceTo(base, reference))
        expressionTo(base, reference);
    putIndex(reference, nullptr, target->args, value, isSet);
}

void Compiler::putMember(const Expr *base, Symbol *name, const std::vector<Expr *> &args, const Expr *value,
    bool isSet)
{
    Operand object = place::kNone;
    if (base) {
        object = objectOf(base);
        for (const Expr *argument : args)
            object = protect(object, argument);
        object = protect(object, value);
    } else {
        object = newTemporary();
        issue({ .op = Op::Me, .a = object });
    }
    const Operand first = arguments(args, true);
    const Operand last = newTemporary();
    expressionTo(value, last);
    issue({ .op = isSet ? Op::PutMemberSet : Op::PutMemberLet, .n = quint8(args.size()),
        .b = args.empty() ? last : first, .c = object, .d = nameIndex(name) });
}

void Compiler::putIndex(Operand base, Symbol *name, const std::vector<Expr *> &args, const Expr *value, bool isSet)
{
    if (!isSet && args.size() == 1 && args.front()->kind != ExprKind::Omitted) {
        const Operand index = protect(expression(args.front()), value);
        const Operand source = expression(value);
        issue({ .op = Op::Store1, .a = base, .b = index, .c = source, .d = nameIndex(name) });
        return;
    }
    const Operand first = arguments(args, false);
    const Operand last = newTemporary();
    expressionTo(value, last);
    issue({ .op = isSet ? Op::PutIndexSet : Op::PutIndexLet, .n = quint8(args.size()),
        .b = args.empty() ? last : first, .c = base, .d = nameIndex(name) });
}

/** Statements that look like procedures; false when the name means something else here. */
bool Compiler::specialCall(Symbol *name, const std::vector<Expr *> &args)
{
    const bool execute = name->folded == u"execute"_s;
    const bool global = name->folded == u"executeglobal"_s;
    const bool erase = name->folded == u"erase"_s;
    const bool randomize = name->folded == u"randomize"_s;
    if (!execute && !global && !erase && !randomize)
        return false;
    if (m_code->locals.contains(name) || name->kind == GlobalKind::Procedure
        || (m_scope.owner && m_scope.owner->members.contains(name)))
        return false;
    if (erase) {
        for (const Expr *expr : args) {
            while (expr->kind == ExprKind::Parenthesised)
                expr = expr->left;
            const Operand target = newTemporary();
            argument(expr, target, true);
            issue({ .op = Op::Erase, .b = target,
                .d = nameIndex(expr->kind == ExprKind::Name ? expr->name : nullptr) });
        }
        if (args.empty())
            raise(err::kArgumentCount, name);
        return true;
    }
    if (args.size() > 1 || (args.empty() && !randomize)) {
        raise(err::kArgumentCount, name);
        return true;
    }
    const Operand text = args.empty() ? place::kNone : arguments(args, false);
    issue({ .op = execute ? Op::Execute : global ? Op::ExecuteGlobal : Op::Randomize, .b = text });
    return true;
}

void Compiler::callStatement(const Stmt *stmt)
{
    const Expr *target = stmt->target;
    static const std::vector<Expr *> none;
    const bool hasArguments = target->kind == ExprKind::Call;
    const Expr *base = hasArguments ? target->left : target;
    const std::vector<Expr *> &args = hasArguments ? target->args : none;
    if (base->kind == ExprKind::Name) {
        if (!specialCall(base->name, args))
            callNamed(base, args, place::kNone, true);
    } else if (base->kind == ExprKind::Member || base->kind == ExprKind::WithMember) {
        callMember(base, args, place::kNone, true);
    } else if (hasArguments) {
        call(target, place::kNone, true);
    } else {
        throw compileError(base->kind == ExprKind::Me ? 1037 : 1024, base->line, base->column);
    }
}

void Compiler::ifStatement(const Stmt *stmt)
{
    std::vector<int> ends;
    for (const Branch &branch : stmt->branches) {
        std::vector<int> skips;
        if (!branch.tests.empty()) {
            mark(branch.line, branch.column);
            jumpIf(branch.tests.front(), false, skips);
        }
        block(branch.body);
        if (&branch != &stmt->branches.back()) {
            // A place of its own: after an error in the last statement of the branch, this jump comes next.
            mark(stmt->endLine, stmt->endColumn);
            ends.push_back(issue({ .op = Op::Jump }));
        }
        for (int skip : skips)
            patch(skip);
    }
    for (int end : ends)
        patch(end);
}

void Compiler::selectStatement(const Stmt *stmt)
{
    const Operand hidden = newLocal();
    const Operand value = expression(stmt->value);
    // A literal is compared as one; anything else keeps its value while the cases are computed.
    const bool isLiteral = value != place::kNone && (value & ~place::kIndexMask) == place::kConstant;
    const Operand subject = isLiteral ? value : hidden;
    if (!isLiteral)
        issue({ .op = Op::Let, .a = subject, .b = value });
    m_temporary = 0;
    m_blocks.push_back({ .hidden = hidden });
    std::vector<int> ends;
    for (const Branch &branch : stmt->branches) {
        std::vector<int> hits;
        std::vector<int> skips;
        for (const Expr *test : branch.tests) {
            mark(test->line, test->column);
            hits.push_back(issue({ .op = Op::WhenEqual, .b = subject, .c = expression(test) }));
            m_temporary = 0;
        }
        if (!branch.tests.empty())
            skips.push_back(issue({ .op = Op::Jump }));
        for (int hit : hits)
            patch(hit);
        block(branch.body);
        mark(stmt->endLine, stmt->endColumn);
        ends.push_back(issue({ .op = Op::Jump }));
        for (int skip : skips)
            patch(skip);
    }
    for (int end : ends)
        patch(end);
    m_blocks.pop_back();
    mark(stmt->endLine, stmt->endColumn);
    issue({ .op = Op::Clear, .a = hidden });
}

Operand Compiler::loopVariable(const Expr *target)
{
    const Binding binding = bind(target->name);
    if (binding.kind == Binding::Variable || binding.kind == Binding::OwnResult) {
        declareImplicit(binding, target->name);
        return binding.operand;
    }
    raise(err::kIllegalAssignment, target->name);
    return newLocal();
}

void Compiler::closeLoop()
{
    for (int jump : m_blocks.back().leaving)
        patch(jump);
    m_blocks.pop_back();
}

void Compiler::forStatement(const Stmt *stmt)
{
    const Operand limit = newLocal();
    const Operand step = newLocal(); // must follow the limit
    issue({ .op = Op::Clear, .a = limit });
    const Operand variable = loopVariable(stmt->target);
    Operand from = protect(expression(stmt->value), stmt->limit);
    if (stmt->step)
        from = protect(from, stmt->step);
    Operand to = expression(stmt->limit);
    if (stmt->step) {
        to = protect(to, stmt->step);
        expressionTo(stmt->step, step);
    } else {
        issue({ .op = Op::Copy, .a = step, .b = constant(Value::integer(1)) });
    }
    issue({ .op = Op::Copy, .a = limit, .b = to });
    m_blocks.push_back({ .exit = ExitKind::For, .isLoop = true });
    m_blocks.back().leaving.push_back(issue({ .op = Op::ForPrepare, .a = variable, .b = limit, .c = from }));
    m_temporary = 0;
    const int top = here();
    block(stmt->body);
    mark(stmt->endLine, stmt->endColumn);
    issue({ .op = Op::ForNext, .a = variable, .b = limit, .d = top });
    closeLoop();
}

void Compiler::forEachStatement(const Stmt *stmt)
{
    const Operand walk = newLocal();
    const Operand variable = loopVariable(stmt->target);
    issue({ .op = Op::Clear, .a = walk });
    issue({ .op = Op::EachStart, .a = walk, .b = expression(stmt->value) });
    m_temporary = 0;
    m_blocks.push_back({ .exit = ExitKind::For, .isLoop = true, .hidden = walk });
    const int top = here();
    m_blocks.back().leaving.push_back(issue({ .op = Op::EachNext, .a = variable, .b = walk }));
    block(stmt->body);
    mark(stmt->endLine, stmt->endColumn);
    issue({ .op = Op::LoopJump, .d = top });
    closeLoop();
    mark(stmt->endLine, stmt->endColumn);
    issue({ .op = Op::Clear, .a = walk });
}

void Compiler::doStatement(const Stmt *stmt)
{
    m_blocks.push_back({ .exit = stmt->kind == StmtKind::Do ? ExitKind::Do : ExitKind::Sub, .isLoop = true });
    const int top = here();
    if (stmt->testFirst)
        jumpIf(stmt->value, stmt->until, m_blocks.back().leaving);
    block(stmt->body);
    mark(stmt->endLine, stmt->endColumn);
    if (stmt->value && !stmt->testFirst)
        jumpIf(stmt->value, stmt->until, m_blocks.back().leaving);
    issue({ .op = Op::LoopJump, .d = top });
    closeLoop();
}

void Compiler::withStatement(const Stmt *stmt)
{
    const Operand object = newLocal();
    issue({ .op = Op::Clear, .a = object });
    issue({ .op = Op::Copy, .a = object, .b = expression(stmt->value) });
    m_temporary = 0;
    issue({ .op = Op::RequireObject, .b = object,
        .d = nameIndex(stmt->value->kind == ExprKind::Name ? stmt->value->name : nullptr) });
    m_withs.push_back(object);
    m_blocks.push_back({ .hidden = object });
    block(stmt->body);
    m_blocks.pop_back();
    m_withs.pop_back();
    mark(stmt->endLine, stmt->endColumn);
    issue({ .op = Op::Clear, .a = object });
}

void Compiler::exitStatement(const Stmt *stmt)
{
    if (stmt->exit != ExitKind::Do && stmt->exit != ExitKind::For) {
        issue({ .op = Op::Return, .n = 1 });
        return;
    }
    for (auto it = m_blocks.rbegin(); it != m_blocks.rend(); ++it) {
        if (it->isLoop && it->exit == stmt->exit) {
            it->leaving.push_back(issue({ .op = Op::Jump }));
            return;
        }
        if (it->hidden != place::kNone)
            issue({ .op = Op::Clear, .a = it->hidden });
    }
}

/** ReDim declares a name that nothing else does, also under Option Explicit. */
void Compiler::declareByReDim(Symbol *name)
{
    const bool known = m_code->locals.contains(name) || m_localConstants.contains(name)
        || (m_scope.outer && m_scope.outer->locals.contains(name))
        || (m_scope.owner && m_scope.owner->members.contains(name)) || name->declared;
    if (known || !m_scope.optionExplicit)
        return;
    if (m_code->isGlobal) {
        m_scope.globals->globalSlot(name);
        name->kind = GlobalKind::Variable;
        name->declared = true;
    } else if (m_scope.outer) {
        capture(name, place::kNone);
    } else {
        m_code->locals.insert(name, newLocal());
    }
}

void Compiler::reDimStatement(const Stmt *stmt)
{
    for (const Declaration &declaration : stmt->declarations) {
        declareByReDim(declaration.name);
        const Binding binding = bind(declaration.name);
        if (binding.kind != Binding::Variable && binding.kind != Binding::OwnResult) {
            raise(err::kIllegalAssignment, declaration.name);
            continue;
        }
        declareImplicit(binding, declaration.name);
        const Operand first = arguments(declaration.bounds, false);
        issue({ .op = Op::ReDim, .n = quint8(declaration.bounds.size()), .a = binding.operand, .b = first,
            .d = stmt->preserve });
        m_temporary = 0;
    }
}

}
