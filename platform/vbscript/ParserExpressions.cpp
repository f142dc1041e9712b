#include "platform/vbscript/Parser.h"

#include "platform/vbscript/ScriptError.h"

namespace vbs {

namespace {

constexpr int kDeepestExpression = 200;
constexpr int kComparison = 7;
constexpr int kPowerRank = 14;
constexpr size_t kMostArguments = 250;

/** Rank of a binary operator, 0 for anything else; higher binds tighter. */
int rankOf(Tok kind)
{
    switch (kind) {
    case Tok::Imp: return 1;
    case Tok::Eqv: return 2;
    case Tok::Xor: return 3;
    case Tok::Or: return 4;
    case Tok::And: return 5;
    case Tok::Equal: case Tok::NotEqual: case Tok::Less: case Tok::Greater: case Tok::LessEqual:
    case Tok::GreaterEqual: case Tok::Is:
        return kComparison;
    case Tok::Ampersand: return 8;
    case Tok::Plus: case Tok::Minus: return 9;
    case Tok::Mod: return 10;
    case Tok::IntDivide: return 11;
    case Tok::Times: case Tok::Divide: return 12;
    case Tok::Power: return kPowerRank;
    default: return 0;
    }
}

}

Expr *Parser::newExpr(ExprKind kind)
{
    countNode(sizeof(Expr));
    Expr &expr = m_unit->expressionStore.emplace_back();
    expr.kind = kind;
    expr.line = current().line;
    expr.column = current().column;
    return &expr;
}

void Parser::setDepth(Expr *expr, int depth)
{
    if (depth > kDeepestExpression)
        failAt(1001, expr->line, expr->column);
    expr->depth = depth;
}

Expr *Parser::literal(const Value &value)
{
    Expr *expr = newExpr(ExprKind::Literal);
    expr->value = value;
    ++m_pos;
    return expr;
}

Expr *Parser::binary(int lowest)
{
    const Nesting nesting(*this);
    Expr *left = unary();
    for (int rank = rankOf(current().kind); rank >= lowest && rank > 0; rank = rankOf(current().kind)) {
        Expr *expr = newExpr(ExprKind::Binary);
        expr->op = current().kind;
        ++m_pos;
        expr->left = left;
        expr->right = binary(rank + 1);
        // The compiler walks down the left side in a loop, so only the right side counts as depth.
        setDepth(expr, std::max(left->depth, expr->right->depth + 1));
        left = expr;
    }
    return left;
}

Expr *Parser::unary()
{
    if (!at(Tok::Not) && !at(Tok::Minus) && !at(Tok::Plus))
        return postfix(primary(), nullptr, nullptr);
    Expr *expr = newExpr(ExprKind::Unary);
    expr->op = current().kind;
    ++m_pos;
    expr->left = binary(expr->op == Tok::Not ? kComparison : kPowerRank);
    setDepth(expr, expr->left->depth + 1);
    return expr;
}

Expr *Parser::primary()
{
    switch (current().kind) {
    case Tok::Literal: return literal(current().value);
    case Tok::True: return literal(Value::boolean(true));
    case Tok::False: return literal(Value::boolean(false));
    case Tok::Null: return literal(Value::null());
    case Tok::Empty: return literal(Value());
    case Tok::Nothing: return literal(Value::object(nullptr));
    case Tok::Name: {
        Expr *expr = newExpr(ExprKind::Name);
        expr->name = expectName();
        return expr;
    }
    case Tok::Me: {
        if (!m_class && (!m_insideClass || m_procedure))
            fail(1037);
        Expr *expr = newExpr(ExprKind::Me);
        ++m_pos;
        return expr;
    }
    case Tok::Dot: {
        Expr *expr = newExpr(ExprKind::WithMember);
        ++m_pos;
        expr->name = expectName();
        return expr;
    }
    case Tok::New: {
        Expr *expr = newExpr(ExprKind::New);
        ++m_pos;
        expr->name = expectName();
        return expr;
    }
    case Tok::LeftParen: {
        Expr *expr = newExpr(ExprKind::Parenthesised);
        ++m_pos;
        expr->left = expression();
        setDepth(expr, expr->left->depth + 1);
        expect(Tok::RightParen, 1006);
        return expr;
    }
    default: fail(1023);
    }
}

/** Reads `(…)` and `.name` behind an operand. The caller may ask where the last parenthesis stood. */
Expr *Parser::postfix(Expr *base, size_t *lastParen, Expr **beforeParen)
{
    bool settled = false; // `foo (a).b`: the parenthesis behind a blank starts the argument
    for (;;) {
        if (at(Tok::LeftParen) && base->kind != ExprKind::Literal && base->kind != ExprKind::Parenthesised) {
            if (lastParen && !settled) {
                *lastParen = m_pos;
                *beforeParen = base;
            }
            Expr *expr = newExpr(ExprKind::Call);
            ++m_pos;
            expr->left = base;
            expr->args = arguments(Tok::RightParen);
            expect(Tok::RightParen, 1006);
            int depth = base->depth + 1;
            for (const Expr *argument : expr->args)
                depth = std::max(depth, argument->depth + 1);
            setDepth(expr, depth);
            base = expr;
        } else if (at(Tok::Dot) && !current().spaceBefore) {
            settled = settled || (lastParen && *beforeParen && m_tokens[*lastParen].spaceBefore);
            if (lastParen && !settled)
                *beforeParen = nullptr;
            Expr *expr = newExpr(ExprKind::Member);
            ++m_pos;
            expr->left = base;
            expr->name = expectName();
            setDepth(expr, base->depth + 1);
            base = expr;
        } else {
            return base;
        }
    }
}

std::vector<Expr *> Parser::arguments(Tok end)
{
    std::vector<Expr *> list;
    const auto atEnd = [&] { return end == Tok::RightParen ? at(end) : atStatementEnd(); };
    if (atEnd())
        return list;
    for (;;) {
        if (at(Tok::Comma) || (atEnd() && !list.empty()))
            list.push_back(newExpr(ExprKind::Omitted));
        else
            list.push_back(expression());
        if (list.size() > kMostArguments)
            fail(1001);
        if (!accept(Tok::Comma))
            return list;
    }
}

/** The right side of a Const: a literal, with a sign or parentheses at most. */
Value Parser::constantValue()
{
    const Nesting nesting(*this);
    if (accept(Tok::LeftParen)) {
        Value value = constantValue();
        expect(Tok::RightParen, 1006);
        return value;
    }
    if (at(Tok::Minus) || at(Tok::Plus)) {
        const bool negative = at(Tok::Minus);
        ++m_pos;
        Value value = constantValue();
        if (!negative)
            return value;
        if (value.isWhole())
            return value.is(Type::Integer) && value.whole() != -32768 ? Value::integer(qint16(-value.whole()))
                                                                      : Value::number(-value.whole());
        if (value.is(Type::Double) || value.is(Type::Date))
            return value.is(Type::Date) ? Value::date(-value.realPart()) : Value::real(-value.realPart());
        fail(1045);
    }
    switch (current().kind) {
    case Tok::Literal: case Tok::True: case Tok::False: case Tok::Null: case Tok::Empty: case Tok::Nothing:
        return primary()->value;
    default: fail(1045);
    }
}

}
