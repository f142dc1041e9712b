#include "platform/vbscript/CompilerPrivate.h"

#include "platform/vbscript/ScriptError.h"

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

struct Row
{
    Tok token;
    Op op;
    Op unless;
    Op when;
};

constexpr Row kBinary[] = {
    { Tok::Plus, Op::Add, {}, {} }, { Tok::Minus, Op::Subtract, {}, {} }, { Tok::Times, Op::Multiply, {}, {} },
    { Tok::Divide, Op::Divide, {}, {} }, { Tok::IntDivide, Op::IntDivide, {}, {} },
    { Tok::Mod, Op::Modulo, {}, {} }, { Tok::Power, Op::Power, {}, {} }, { Tok::Ampersand, Op::Concat, {}, {} },
    { Tok::And, Op::And, {}, {} }, { Tok::Or, Op::Or, {}, {} }, { Tok::Xor, Op::Xor, {}, {} },
    { Tok::Eqv, Op::Eqv, {}, {} }, { Tok::Imp, Op::Imp, {}, {} }, { Tok::Is, Op::Is, {}, {} },
    { Tok::Equal, Op::Equal, Op::UnlessEqual, Op::WhenEqual },
    { Tok::NotEqual, Op::NotEqual, Op::UnlessNotEqual, Op::WhenNotEqual },
    { Tok::Less, Op::Less, Op::UnlessLess, Op::WhenLess },
    { Tok::Greater, Op::Greater, Op::UnlessGreater, Op::WhenGreater },
    { Tok::LessEqual, Op::LessEqual, Op::UnlessLessEqual, Op::WhenLessEqual },
    { Tok::GreaterEqual, Op::GreaterEqual, Op::UnlessGreaterEqual, Op::WhenGreaterEqual },
};

const Row *rowOf(Tok token)
{
    for (const Row &row : kBinary)
        if (row.token == token)
            return &row;
    return nullptr;
}

}

/** True when evaluating it may run script code, which may change variables that were named before it. */
bool Compiler::runsCode(const Expr *expr)
{
    for (;; expr = expr->left) {
        switch (expr->kind) {
        case ExprKind::Literal: case ExprKind::Me: case ExprKind::Omitted: return false;
        case ExprKind::New: case ExprKind::Member: case ExprKind::WithMember: return true;
        case ExprKind::Name: {
            const Binding binding = bind(expr->name);
            return binding.kind == Binding::Procedure || binding.kind == Binding::Member
                || mayBecomeProcedure(binding, expr->name);
        }
        case ExprKind::Call: {
            if (expr->left->kind != ExprKind::Name || expr->left->name->folded == u"eval"_s)
                return true;
            const Binding::Kind kind = bind(expr->left->name).kind;
            // An element of a global array cannot be told from a call at this point; a local one can change
            // nothing either unless it holds an object.
            if (kind != Binding::Intrinsic && kind != Binding::Variable)
                return true;
            for (const Expr *argument : expr->args)
                if (runsCode(argument))
                    return true;
            return false;
        }
        case ExprKind::Binary:
            if (runsCode(expr->right))
                return true;
            break;
        case ExprKind::Unary: case ExprKind::Parenthesised: break;
        }
    }
}

/** Copies a variable's present value away if evaluating `later` might change the variable. */
Operand Compiler::protect(Operand operand, const Expr *later)
{
    const bool fixed = isTemporary(operand) || (operand & ~place::kIndexMask) == place::kConstant;
    if (fixed || !runsCode(later))
        return operand;
    const Operand copy = newTemporary();
    issue({ .op = Op::Copy, .a = copy, .b = operand });
    return copy;
}

/** The register for a result, after giving back all temporaries from `mark` on. */
Operand Compiler::result(Operand want, int temporaries)
{
    m_temporary = temporaries;
    return want != place::kNone ? want : newTemporary();
}

void Compiler::expressionTo(const Expr *expr, Operand target)
{
    const Operand value = expression(expr, target);
    if (value != target)
        issue({ .op = Op::Copy, .a = target, .b = value });
}

/** Compiles an expression; what stands in a variable or constant already is not copied. */
Operand Compiler::expression(const Expr *expr, Operand want)
{
    switch (expr->kind) {
    case ExprKind::Literal: return constant(expr->value);
    case ExprKind::Omitted: return constant(Value::missing());
    case ExprKind::Name: return nameValue(expr, want);
    case ExprKind::Parenthesised: return expression(expr->left, want);
    case ExprKind::Unary: return unary(expr, want);
    case ExprKind::Binary: return binary(expr, want);
    case ExprKind::Me: {
        const Operand target = result(want, m_temporary);
        issue({ .op = Op::Me, .a = target });
        return target;
    }
    case ExprKind::New: {
        const Operand target = result(want, m_temporary);
        issue({ .op = Op::New, .a = target, .d = nameIndex(expr->name) });
        return target;
    }
    case ExprKind::Member: case ExprKind::WithMember: return callMember(expr, {}, want, false);
    case ExprKind::Call: return call(expr, want, false);
    }
    return place::kNone;
}

/** Execute and ExecuteGlobal may make a procedure of a name that the text around them does not declare. */
bool Compiler::mayBecomeProcedure(const Binding &binding, Symbol *name) const
{
    return binding.undeclared && m_scope.runsTexts && !m_implicit.contains(name);
}

/** The value of a name that nothing declares, or a call if it has become a procedure meanwhile. */
Operand Compiler::readImplicit(const Binding &binding, Symbol *name, Operand want, bool byReference)
{
    const int temporaries = m_temporary;
    const Operand first = arguments({}, false);
    const Operand target = result(want, temporaries);
    issue({ .op = Op::ReadImplicit, .n = byReference, .a = target, .b = binding.operand, .c = first,
        .d = nameIndex(name) });
    return target;
}

Operand Compiler::nameValue(const Expr *expr, Operand want)
{
    const Binding binding = bind(expr->name);
    if (binding.kind == Binding::Variable && mayBecomeProcedure(binding, expr->name))
        return readImplicit(binding, expr->name, want, false);
    switch (binding.kind) {
    case Binding::Variable: case Binding::Constant: case Binding::OwnResult: return binding.operand;
    default: return callNamed(expr, {}, want, false);
    }
}

Operand Compiler::unary(const Expr *expr, Operand want)
{
    const int temporaries = m_temporary;
    if (expr->op == Tok::Minus && expr->left->kind == ExprKind::Literal) {
        const Value &value = expr->left->value;
        if (value.is(Type::Integer) && value.whole() != -32768)
            return constant(Value::integer(qint16(-value.whole())));
        if (value.is(Type::Long) && value.whole() != -2147483648LL)
            return constant(Value::longInteger(qint32(-value.whole())));
        if (value.is(Type::Double))
            return constant(Value::real(-value.realPart()));
    }
    const Operand operand = expression(expr->left);
    const Op op = expr->op == Tok::Not ? Op::Not : expr->op == Tok::Minus ? Op::Negate : Op::Identity;
    const Operand target = result(want, temporaries);
    issue({ .op = op, .a = target, .b = operand });
    return target;
}

Operand Compiler::binary(const Expr *expr, Operand want)
{
    // Long chains lean to the left; they are walked in a loop so that their length is no depth.
    std::vector<const Expr *> chain;
    for (; expr->kind == ExprKind::Binary; expr = expr->left)
        chain.push_back(expr);
    const int temporaries = m_temporary;
    Operand left = expression(expr);
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
        left = protect(left, (*it)->right);
        const Operand right = expression((*it)->right);
        const bool last = std::next(it) == chain.rend();
        const Operand target = result(last ? want : place::kNone, temporaries);
        issue({ .op = rowOf((*it)->op)->op, .a = target, .b = left, .c = right });
        left = target;
    }
    return left;
}

/** Jumps when the condition is true (`when`) or not true; adds the jump to the list to patch. */
void Compiler::jumpIf(const Expr *condition, bool when, std::vector<int> &jumps)
{
    const int temporaries = m_temporary;
    while (condition->kind == ExprKind::Parenthesised)
        condition = condition->left;
    const Row *row = condition->kind == ExprKind::Binary ? rowOf(condition->op) : nullptr;
    if (row && row->unless != Op {}) {
        const Operand left = protect(expression(condition->left), condition->right);
        const Operand right = expression(condition->right);
        jumps.push_back(issue({ .op = when ? row->when : row->unless, .b = left, .c = right }));
    } else {
        const Operand value = expression(condition);
        jumps.push_back(issue({ .op = when ? Op::JumpTrue : Op::JumpFalse, .b = value }));
    }
    m_temporary = temporaries;
}

/** Puts a ByRef argument for a variable or an array element into `target`; false for anything else. */
bool Compiler::referenceTo(const Expr *expr, Operand target)
{
    if (expr->kind == ExprKind::Name) {
        const Binding binding = bind(expr->name);
        if (binding.kind != Binding::Variable && binding.kind != Binding::OwnResult)
            return false;
        if (mayBecomeProcedure(binding, expr->name)) {
            readImplicit(binding, expr->name, target, true);
            return true;
        }
        declareImplicit(binding, expr->name);
        issue({ .op = Op::Reference, .a = target, .b = binding.operand });
        return true;
    }
    if (expr->kind != ExprKind::Call)
        return false;
    const Expr *base = expr->left;
    const int temporaries = m_temporary;
    Operand callee = place::kNone;
    if (base->kind == ExprKind::Name) {
        const Binding binding = bind(base->name);
        if (binding.kind != Binding::Variable)
            return false;
        callee = binding.operand;
    } else if (base->kind == ExprKind::Call) {
        callee = newTemporary();
        if (!referenceTo(base, callee))
            expressionTo(base, callee);
    } else {
        return false;
    }
    const Operand first = arguments(expr->args, false);
    issue({ .op = Op::ElementReference, .n = quint8(expr->args.size()), .a = target, .b = first, .c = callee,
        .d = nameIndex(base->kind == ExprKind::Name ? base->name : nullptr) });
    m_temporary = temporaries;
    return true;
}

void Compiler::argument(const Expr *expr, Operand target, bool byReference)
{
    if (byReference && referenceTo(expr, target))
        return;
    expressionTo(expr, target);
}

/** Arguments in consecutive registers; the first one, also when there is none. */
Operand Compiler::arguments(const std::vector<Expr *> &args, bool byReference)
{
    const Operand first = Operand(kTemporaries + m_temporary);
    for (const Expr *expr : args) {
        const Operand target = newTemporary();
        argument(expr, target, byReference);
    }
    if (args.empty()) {
        newTemporary(); // the callee's frame starts here
        --m_temporary;
    }
    return first;
}

Operand Compiler::call(const Expr *expr, Operand want, bool statement)
{
    const Expr *base = expr->left;
    if (base->kind == ExprKind::Name)
        return callNamed(base, expr->args, want, statement);
    if (base->kind == ExprKind::Member || base->kind == ExprKind::WithMember)
        return callMember(base, expr->args, want, statement);
    const int temporaries = m_temporary;
    const Operand callee = expression(base);
    const Operand value = callValue(callee, nullptr, expr->args, place::kNone, statement);
    const Operand target = result(want, temporaries);
    if (target != value && value != place::kNone)
        issue({ .op = Op::Copy, .a = target, .b = value });
    return target;
}

Operand Compiler::callNamed(const Expr *base, const std::vector<Expr *> &args, Operand want, bool statement)
{
    const Binding binding = bind(base->name);
    const int temporaries = m_temporary;
    switch (binding.kind) {
    case Binding::Intrinsic: return intrinsic(binding.index, base->name, args, want);
    case Binding::Member: return ownMember(base->name, args, want, statement);
    case Binding::OwnResult:
        if (m_scope.owner && m_scope.owner->members.contains(base->name))
            return ownMember(base->name, args, want, statement);
        break;
    case Binding::Procedure: break;
    case Binding::Undefined: {
        raise(err::kTypeMismatch, base->name);
        return constant(Value());
    }
    default: return callValue(binding.operand, base->name, args, want, statement);
    }
    const Operand first = arguments(args, true);
    const Operand target = result(want, temporaries);
    issue({ .op = Op::Call, .n = quint8(args.size()), .a = statement ? place::kNone : target, .b = first,
        .d = nameIndex(base->name) });
    return target;
}

Operand Compiler::callValue(Operand callee, Symbol *name, const std::vector<Expr *> &args, Operand want,
    bool statement)
{
    const int temporaries = m_temporary;
    if (args.size() == 1 && !statement && args.front()->kind != ExprKind::Omitted
        && (args.front()->kind != ExprKind::Name && args.front()->kind != ExprKind::Call)) {
        const Operand index = expression(args.front());
        const Operand target = result(want, temporaries);
        issue({ .op = Op::Index1, .a = target, .b = callee, .c = index, .d = nameIndex(name) });
        return target;
    }
    if (args.size() == 1 && !statement && args.front()->kind == ExprKind::Name) {
        const Binding binding = bind(args.front()->name);
        // A variable as the only argument: an index in most cases, a ByRef argument if a procedure is called.
        if (binding.kind == Binding::Variable || binding.kind == Binding::Constant) {
            const Operand target = result(want, temporaries);
            issue({ .op = Op::Index1, .n = binding.kind == Binding::Variable, .a = target, .b = callee,
                .c = binding.operand, .d = nameIndex(name) });
            return target;
        }
    }
    const Operand first = arguments(args, true);
    const Operand target = result(want, temporaries);
    issue({ .op = Op::CallValue, .n = quint8(args.size()), .a = statement ? place::kNone : target, .b = first,
        .c = callee, .d = nameIndex(name) });
    return target;
}

Operand Compiler::intrinsic(int index, Symbol *name, const std::vector<Expr *> &args, Operand want)
{
    if (name->folded == u"eval"_s)
        return evalCall(args, want);
    const int temporaries = m_temporary;
    const Operand first = arguments(args, false);
    const Operand target = result(want, temporaries);
    issue({ .op = Op::CallIntrinsic, .n = quint8(args.size()), .a = target, .b = first, .c = place::kNone, .d = index });
    return target;
}

Operand Compiler::evalCall(const std::vector<Expr *> &args, Operand want)
{
    const int temporaries = m_temporary;
    if (args.size() != 1)
        raise(err::kArgumentCount, nullptr);
    const Operand text = arguments(args, false);
    const Operand target = result(want, temporaries);
    issue({ .op = Op::Eval, .a = target, .b = text });
    return target;
}

Operand Compiler::withObject()
{
    if (!m_withs.empty())
        return m_withs.back();
    raise(err::kUnqualified, nullptr);
    return constant(Value());
}

/** The object in front of a dot. */
Operand Compiler::objectOf(const Expr *base)
{
    if (base->kind == ExprKind::WithMember)
        return withObject();
    return expression(base->left);
}

Operand Compiler::callMember(const Expr *base, const std::vector<Expr *> &args, Operand want, bool statement)
{
    const int temporaries = m_temporary;
    Operand object = objectOf(base);
    for (const Expr *argument : args)
        object = protect(object, argument);
    const Operand value = member(object, base->name, args, place::kNone, statement);
    const Operand target = result(want, temporaries);
    Instruction &last = m_code->instructions.back();
    if (!statement && last.a == value)
        last.a = target;
    return target;
}

Operand Compiler::member(Operand object, Symbol *name, const std::vector<Expr *> &args, Operand want, bool statement)
{
    const int temporaries = m_temporary;
    const Operand first = arguments(args, true);
    const Operand target = result(want, temporaries);
    issue({ .op = statement ? Op::CallMember : Op::GetMember, .n = quint8(args.size()),
        .a = statement ? place::kNone : target, .b = first, .c = object, .d = nameIndex(name) });
    return target;
}

Operand Compiler::ownMember(Symbol *name, const std::vector<Expr *> &args, Operand want, bool statement)
{
    const int temporaries = m_temporary;
    const Operand me = newTemporary();
    issue({ .op = Op::Me, .a = me });
    const Operand value = member(me, name, args, place::kNone, statement);
    const Operand target = result(want, temporaries);
    Instruction &last = m_code->instructions.back();
    if (!statement && last.a == value)
        last.a = target;
    return target;
}

}
