#include "platform/dao/Scope.h"

#include "platform/dao/Errors.h"

#include <algorithm>

namespace dao {

namespace {

constexpr int kMaxTables = 32;

TableSet unionOf(const ast::Expr &expr, const Scope &scope, TableSet (*of)(const ast::Expr &, const Scope &))
{
    TableSet set = 0;
    for (const ast::ExprPtr &arg : expr.args)
        set |= of(*arg, scope);
    return set;
}

/** The tables of which one Null makes the whole value Null. */
TableSet strictTables(const ast::Expr &expr, const Scope &scope)
{
    switch (expr.kind) {
    case ast::ExprKind::Column:
        return tablesOf(expr, scope);
    case ast::ExprKind::Negate:
        return strictTables(*expr.args[0], scope);
    case ast::ExprKind::Binary:
        return expr.op == u'&' ? 0 : unionOf(expr, scope, strictTables);
    default:
        return 0;
    }
}

} // namespace

void Scope::add(ast::Source &source, const Schema &schema)
{
    if (!source.isTable()) {
        add(*source.left, schema);
        add(*source.right, schema);
        return;
    }
    const Table *table = schema.find(source.table);
    if (!table)
        raise(3078, source.table);
    if (find(source.exposedName()) >= 0)
        raise(3074, source.exposedName());
    if (size() == kMaxTables)
        raise(3360);
    source.index = size();
    m_tables.push_back({source.alias.isEmpty() ? table->name : source.alias, table});
}

int Scope::find(const QString &exposedName) const
{
    for (int i = 0; i < size(); ++i) {
        if (m_tables[size_t(i)].name.compare(exposedName, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

std::optional<ColumnRef> Scope::resolve(const QString &table, const QString &name) const
{
    std::optional<ColumnRef> found;
    const int only = table.isEmpty() ? -1 : find(table);
    if (!table.isEmpty() && only < 0)
        return found;
    for (int i = 0; i < size(); ++i) {
        const int column = only < 0 || i == only ? m_tables[size_t(i)].table->indexOf(name) : -1;
        if (column < 0)
            continue;
        if (found)
            raise(3079, name);
        found = ColumnRef {i, column};
    }
    return found;
}

QByteArray Scope::sql(ColumnRef ref) const { return alias(ref.from) + '.' + quoteName(column(ref).name); }

TableSet tablesOf(const ast::Expr &expr, const Scope &scope)
{
    if (expr.kind != ast::ExprKind::Column)
        return unionOf(expr, scope, tablesOf);
    const auto ref = scope.resolve(expr);
    return ref ? tableBit(ref->from) : 0;
}

TableSet rejectedNulls(const ast::Expr &condition, const Scope &scope)
{
    switch (condition.kind) {
    case ast::ExprKind::Column:
    case ast::ExprKind::Negate:
    case ast::ExprKind::Binary:
        return strictTables(condition, scope);
    case ast::ExprKind::Compare:
    case ast::ExprKind::Like:
        return unionOf(condition, scope, strictTables);
    case ast::ExprKind::Between:
    case ast::ExprKind::In:
        return strictTables(*condition.args[0], scope);
    case ast::ExprKind::IsNull:
        return condition.negated ? strictTables(*condition.args[0], scope) : 0;
    case ast::ExprKind::Not: {
        const ast::Expr &inner = *condition.args[0];
        const bool plain = inner.kind == ast::ExprKind::Compare || inner.kind == ast::ExprKind::Like;
        return plain ? rejectedNulls(inner, scope) : 0;
    }
    case ast::ExprKind::Logic:
        if (condition.op == u"AND")
            return unionOf(condition, scope, rejectedNulls);
        if (condition.op == u"OR")
            return rejectedNulls(*condition.args[0], scope) & rejectedNulls(*condition.args[1], scope);
        return 0;
    default:
        return 0;
    }
}

} // namespace dao
