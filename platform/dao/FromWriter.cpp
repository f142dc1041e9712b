#include "platform/dao/FromWriter.h"

#include "platform/dao/Errors.h"

namespace dao {

namespace {

using ast::JoinKind;
using ast::Source;

TableSet tablesIn(const Source &source)
{
    return source.isTable() ? tableBit(source.index) : tablesIn(*source.left) | tablesIn(*source.right);
}

bool holdsInnerJoin(const Source &source)
{
    return !source.isTable()
        && (source.join == JoinKind::Inner || holdsInnerJoin(*source.left) || holdsInnerJoin(*source.right));
}

} // namespace

QByteArray FromWriter::write(std::vector<ast::SourcePtr> &from, const ast::Expr *where)
{
    const TableSet rejected = where ? rejectedNulls(*where, m_scope) : 0;
    QByteArray sql;
    for (ast::SourcePtr &source : from) {
        check(*source);
        reduce(*source, rejected);
        const auto chain = flatten(*source);
        sql += (sql.isEmpty() ? " FROM " : ", ") + (chain ? writeChain(*chain) : writeTree(*source));
    }
    return sql;
}

void FromWriter::check(const Source &source) const
{
    if (source.isTable())
        return;
    check(*source.left);
    check(*source.right);
    checkCondition(*source.on, tablesIn(source));
    const bool leftMissing = source.join == JoinKind::Right;
    if (source.join != JoinKind::Inner && holdsInnerJoin(leftMissing ? *source.left : *source.right))
        raise(3258);
}

/** A join condition is made of comparisons of columns of the joined tables. */
void FromWriter::checkCondition(const ast::Expr &on, TableSet tables) const
{
    if (on.kind == ast::ExprKind::Logic && on.op == u"AND") {
        checkCondition(*on.args[0], tables);
        checkCondition(*on.args[1], tables);
        return;
    }
    if (on.kind != ast::ExprKind::Compare)
        raise(3296);
    for (const ast::ExprPtr &side : on.args) {
        const auto ref = side->kind == ast::ExprKind::Column ? m_scope.resolve(*side) : std::nullopt;
        if (ref && !(tableBit(ref->from) & tables))
            raise(3080, m_scope.exposedName(ref->from));
        if (ref && m_scope.column(*ref).kind == Kind::Memo)
            raise(3118, m_scope.column(*ref).name);
        if (side->kind == ast::ExprKind::Column && !ref && !side->table.isEmpty()
            && m_scope.find(side->table) < 0)
            raise(3080, side->table);
    }
}

void FromWriter::reduce(Source &source, TableSet rejected) const
{
    if (source.isTable())
        return;
    if (source.join == JoinKind::Right) {
        std::swap(source.left, source.right);
        source.join = JoinKind::Left;
    }
    if (source.join == JoinKind::Left && (rejected & tablesIn(*source.right)))
        source.join = JoinKind::Inner;
    const TableSet on = rejectedNulls(*source.on, m_scope);
    reduce(*source.left, source.join == JoinKind::Inner ? rejected | on : rejected);
    reduce(*source.right, rejected | on);
}

std::optional<FromWriter::Chain> FromWriter::flatten(const Source &source) const
{
    if (source.isTable())
        return Chain {{false, source.index, {}}};
    auto left = flatten(*source.left);
    auto right = flatten(*source.right);
    if (!left || !right)
        return {};
    return append(std::move(*left), std::move(*right), source);
}

/** a JOIN (b LEFT JOIN c) is (a JOIN b) LEFT JOIN c as long as each condition looks only at tables before it
   and no missing b lets a c in. */
std::optional<FromWriter::Chain> FromWriter::append(Chain left, Chain right, const Source &join) const
{
    const TableSet allowed = tablesIn(*join.left) | tableBit(right.front().table);
    if (tablesOf(*join.on, m_scope) & ~allowed)
        return {};
    const bool outer = join.join == JoinKind::Left;
    TableSet before = tableBit(right.front().table);
    for (size_t i = 1; outer && i < right.size(); ++i) {
        TableSet rejected = 0;
        for (const ast::Expr *on : right[i].on)
            rejected |= rejectedNulls(*on, m_scope);
        if (!right[i].outer || !(rejected & before))
            return {};
        before |= tableBit(right[i].table);
    }
    right.front().outer = outer;
    right.front().on.push_back(join.on.get());
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

QByteArray FromWriter::writeChain(const Chain &chain)
{
    QByteArray sql = writeTable(chain.front().table);
    for (size_t i = 1; i < chain.size(); ++i) {
        sql += (chain[i].outer ? " LEFT JOIN " : " JOIN ") + writeTable(chain[i].table) + " ON ";
        QByteArray on;
        for (const ast::Expr *condition : chain[i].on)
            on += (on.isEmpty() ? "" : " AND ") + m_exprs.condition(*condition);
        sql += on;
    }
    return sql;
}

QByteArray FromWriter::writeTree(const Source &source)
{
    if (source.isTable())
        return writeTable(source.index);
    const QByteArray left = writeTree(*source.left);
    const QByteArray right = writeTree(*source.right);
    const bool outer = source.join == JoinKind::Left;
    const QByteArray bracketed = source.right->isTable() ? right : '(' + right + ')';
    return left + (outer ? " LEFT JOIN " : " JOIN ") + bracketed + " ON " + m_exprs.condition(*source.on);
}

QByteArray FromWriter::writeTable(int from) const
{
    return m_scope.table(from).sqlName + " AS " + Scope::alias(from);
}

void FromWriter::describe(const Source &source, Plan &plan) const
{
    if (source.isTable()) {
        plan.writeOrder.push_back(source.index);
        return;
    }
    const bool swapped = source.join == JoinKind::Right;
    const Source &parent = swapped ? *source.right : *source.left;
    describe(parent, plan);
    describe(swapped ? *source.left : *source.right, plan);
    describeCondition(*source.on, tablesIn(parent), source.join != JoinKind::Inner, plan);
}

void FromWriter::describeCondition(const ast::Expr &on, TableSet parents, bool outer, Plan &plan) const
{
    if (on.kind == ast::ExprKind::Logic) {
        for (const ast::ExprPtr &side : on.args)
            describeCondition(*side, parents, outer, plan);
        return;
    }
    if (on.kind != ast::ExprKind::Compare || on.op != u"=" || on.args[0]->kind != ast::ExprKind::Column
        || on.args[1]->kind != ast::ExprKind::Column)
        return;
    auto parent = m_scope.resolve(*on.args[0]);
    auto child = m_scope.resolve(*on.args[1]);
    if (!parent || !child)
        return;
    if (!(parents & tableBit(parent->from)))
        std::swap(parent, child);
    plan.links.push_back({parent->from, parent->column, child->from, child->column, outer});
}

} // namespace dao
