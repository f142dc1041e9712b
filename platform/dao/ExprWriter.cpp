#include "platform/dao/ExprWriter.h"

#include "platform/dao/Collation.h"
#include "platform/dao/Errors.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using ast::ExprKind;
using Type = ExprWriter::Type;

Type typeOf(Kind kind)
{
    switch (kind) {
    case Kind::YesNo:
        return Type::Boolean;
    case Kind::Date:
        return Type::Date;
    case Kind::Text:
        return Type::Text;
    case Kind::Memo:
        return Type::Memo;
    default:
        return Type::Number;
    }
}

bool isTextual(Type type) { return type == Type::Text || type == Type::Memo; }

/** True, False and their other spellings; empty for any other word. */
std::optional<bool> truthWord(const QString &word)
{
    for (const QStringView yes : {u"True", u"Yes", u"On"}) {
        if (word.compare(yes, Qt::CaseInsensitive) == 0)
            return true;
    }
    for (const QStringView no : {u"False", u"No", u"Off"}) {
        if (word.compare(no, Qt::CaseInsensitive) == 0)
            return false;
    }
    return {};
}

QByteArray collated(const ExprWriter::Written &text)
{
    // A column brings its own collation.
    return text.column ? text.sql : text.sql + " COLLATE " + kCollation;
}

} // namespace

void ExprWriter::finish() const
{
    if (!m_unknown.isEmpty())
        raise(3061, QString::number(m_unknown.size()));
}

QByteArray ExprWriter::parameter(Parameter p)
{
    m_plan.params.push_back(std::move(p));
    return '?' + QByteArray::number(qlonglong(m_plan.params.size()));
}

QByteArray ExprWriter::condition(const ast::Expr &expr)
{
    switch (expr.kind) {
    case ExprKind::Compare:
        return compare(expr);
    case ExprKind::Logic:
        return logic(expr);
    case ExprKind::Not:
        return "(NOT " + condition(*expr.args[0]) + ')';
    case ExprKind::Like:
        return like(expr);
    case ExprKind::IsNull:
        return '(' + value(*expr.args[0]).sql + (expr.negated ? " IS NOT NULL)" : " IS NULL)");
    case ExprKind::Between:
        return between(expr);
    case ExprKind::In:
        return inList(expr);
    default:
        break;
    }
    const Written written = value(expr);
    if (isTextual(written.type))
        raise(3464);
    return '(' + written.sql + ')';
}

ExprWriter::Written ExprWriter::value(const ast::Expr &expr)
{
    switch (expr.kind) {
    case ExprKind::Column:
        return name(expr);
    case ExprKind::Literal:
        return literal(expr);
    case ExprKind::Null:
        return {"NULL", Type::Null, {}};
    case ExprKind::Negate:
    case ExprKind::Binary:
        return numeric(expr);
    default:
        // SQLite's truth is 1, Jet's is -1.
        return {"(-" + condition(expr) + ')', Type::Boolean, {}};
    }
}

ExprWriter::Written ExprWriter::literal(const ast::Expr &expr)
{
    Parameter p;
    p.literal = expr.literal;
    switch (m_lexed.literals[size_t(expr.literal)].kind) {
    case TokenKind::Text:
        return {parameter(p), Type::Text, {}};
    case TokenKind::Date:
        return {parameter(p), Type::Date, {}};
    default:
        return {parameter(p), Type::Number, {}};
    }
}

ExprWriter::Written ExprWriter::name(const ast::Expr &expr)
{
    if (const auto ref = m_scope.resolve(expr))
        return {m_scope.sql(*ref), typeOf(m_scope.column(*ref).kind), ref};
    if (expr.table.isEmpty()) {
        if (const auto truth = truthWord(expr.name))
            return {*truth ? "-1" : "0", Type::Boolean, {}};
    }
    m_unknown.insert((expr.table + u'.' + expr.name).toCaseFolded());
    return {"NULL", Type::Null, {}};
}

ExprWriter::Written ExprWriter::numeric(const ast::Expr &expr)
{
    const Written left = value(*expr.args[0]);
    if (expr.kind == ExprKind::Negate) {
        if (isTextual(left.type))
            raise(3464);
        return {"(-" + left.sql + ')', left.type == Type::Null ? Type::Null : Type::Number, {}};
    }
    const Written right = value(*expr.args[1]);
    const bool joins = expr.op == u"&" || (expr.op == u"+" && isTextual(left.type) && isTextual(right.type));
    if (!joins && (isTextual(left.type) || isTextual(right.type)))
        raise(3464);
    const bool date
        = left.type == Type::Date && right.type == Type::Number && (expr.op == u"+" || expr.op == u"-");
    return {"jet_calc('" + expr.op.left(1).toUtf8() + "', " + left.sql + ", " + right.sql + ')',
            joins ? Type::Text : (date ? Type::Date : Type::Number),
            {}};
}

QByteArray ExprWriter::compare(const ast::Expr &expr)
{
    const Written left = value(*expr.args[0]);
    const ast::Expr &other = *expr.args[1];
    const Written right = expr.op == u"=" ? bareWord(other, left) : value(other);
    return comparePair(expr.op.toUtf8(), left, right);
}

/** The right side of =. A word that names no column, against a text column, means its own text: node keys end
   in words as well as in numbers, and the statements that are built from them expect the row. */
ExprWriter::Written ExprWriter::bareWord(const ast::Expr &expr, const Written &left)
{
    const bool isWord = expr.kind == ExprKind::Column && expr.table.isEmpty();
    if (!isWord || !left.column || !isTextual(left.type) || m_scope.resolve(expr) || truthWord(expr.name))
        return value(expr);
    Parameter p;
    p.constant = expr.name;
    return {parameter(p), Type::Text, {}};
}

QByteArray ExprWriter::comparePair(const QByteArray &op, Written left, Written right)
{
    const bool leftText = isTextual(left.type);
    const bool rightText = isTextual(right.type);
    if (left.type == Type::Null || right.type == Type::Null)
        return '(' + left.sql + ' ' + op + ' ' + right.sql + ')';
    if (leftText != rightText) {
        // A text column is compared with a number's text; a quoted text is never compared with a number.
        Written &text = leftText ? left : right;
        Written &number = leftText ? right : left;
        if (!text.column || number.type == Type::Date)
            raise(3464);
        number.sql = "jet_text(" + number.sql + ')';
    }
    if (!leftText && !rightText)
        return '(' + left.sql + ' ' + op + ' ' + right.sql + ')';
    const bool bring = !left.column && !right.column;
    return '(' + (bring ? collated(left) : left.sql) + ' ' + op + ' ' + right.sql + ')';
}

QByteArray ExprWriter::like(const ast::Expr &expr)
{
    const QByteArray text = value(*expr.args[0]).sql;
    const QByteArray pattern = value(*expr.args[1]).sql;
    return (expr.negated ? "(NOT jet_like(" : "(jet_like(") + text + ", " + pattern + "))";
}

QByteArray ExprWriter::between(const ast::Expr &expr)
{
    const Written middle = value(*expr.args[0]);
    const QByteArray low = comparePair(">=", middle, value(*expr.args[1]));
    const QByteArray high = comparePair("<=", middle, value(*expr.args[2]));
    return (expr.negated ? "(NOT (" : "((") + low + " AND " + high + "))";
}

QByteArray ExprWriter::inList(const ast::Expr &expr)
{
    const Written left = value(*expr.args[0]);
    QByteArray any;
    for (size_t i = 1; i < expr.args.size(); ++i)
        any += (any.isEmpty() ? "" : " OR ") + comparePair("=", left, value(*expr.args[i]));
    return (expr.negated ? "(NOT (" : "((") + any + "))";
}

QByteArray ExprWriter::logic(const ast::Expr &expr)
{
    const QByteArray left = condition(*expr.args[0]);
    const QByteArray right = condition(*expr.args[1]);
    if (expr.op == u"XOR")
        return "((NOT " + left + ") <> (NOT " + right + "))";
    if (expr.op == u"EQV")
        return "((NOT " + left + ") = (NOT " + right + "))";
    if (expr.op == u"IMP")
        return "((NOT " + left + ") OR " + right + ')';
    return '(' + left + ' ' + expr.op.toUtf8() + ' ' + right + ')';
}

bool ExprWriter::isConstant(const ast::Expr &expr)
{
    if (expr.kind == ExprKind::Negate)
        return expr.args[0]->kind == ExprKind::Literal;
    return expr.kind == ExprKind::Literal || expr.kind == ExprKind::Null;
}

QByteArray ExprWriter::stored(const ast::Expr &expr, const Column &column)
{
    Parameter p;
    p.store = &column;
    if (isConstant(expr)) {
        p.negated = expr.kind == ExprKind::Negate;
        p.literal = p.negated ? expr.args[0]->literal : expr.literal;
        return parameter(p);
    }
    if (expr.kind == ExprKind::Column && !m_scope.resolve(expr) && expr.table.isEmpty()) {
        if (const auto truth = truthWord(expr.name)) {
            p.constant = *truth;
            return parameter(p);
        }
    }
    Parameter strict;
    strict.isStrict = true;
    const QByteArray written = value(expr).sql;
    return "jet_store(" + QByteArray::number(int(column.kind)) + ", " + written + ", " + parameter(strict)
        + ')';
}

} // namespace dao
