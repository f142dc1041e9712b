#pragma once

#include "platform/dao/Ast.h"
#include "platform/dao/Schema.h"

#include <optional>

namespace dao {

/** A set of tables of FROM, one bit each. */
using TableSet = quint64;

struct ColumnRef {
    int from = 0;
    int column = 0;
};

/** The tables of a FROM clause and what a name means among them. */
class Scope
{
public:
    /** Numbers the table sources in FROM order. Throws 3078, 3074, 3360. */
    void add(ast::Source &source, const Schema &schema);

    int size() const { return int(m_tables.size()); }
    const Table &table(int from) const { return *m_tables[size_t(from)].table; }
    const QString &exposedName(int from) const { return m_tables[size_t(from)].name; }
    const Column &column(ColumnRef ref) const { return table(ref.from).columns[size_t(ref.column)]; }
    /** Table of FROM by its exposed name, or -1. */
    int find(const QString &exposedName) const;
    /** Empty when the name is no column; throws 3079 when it is one of several tables. */
    std::optional<ColumnRef> resolve(const QString &table, const QString &name) const;
    std::optional<ColumnRef> resolve(const ast::Expr &expr) const { return resolve(expr.table, expr.name); }

    /** The SQL of a column: its table's generated alias and its quoted name. */
    QByteArray sql(ColumnRef ref) const;
    static QByteArray alias(int from) { return 't' + QByteArray::number(from); }
    /** The SQL of a table's key column. */
    QByteArray keySql(int from) const { return alias(from) + '.' + table(from).key; }

private:
    struct Entry {
        QString name;
        const Table *table;
    };
    std::vector<Entry> m_tables;
};

/** The tables that the expression names. */
TableSet tablesOf(const ast::Expr &expr, const Scope &scope);

/** The tables whose missing row (every column Null) keeps the condition from being true. */
TableSet rejectedNulls(const ast::Expr &condition, const Scope &scope);

inline TableSet tableBit(int from) { return TableSet(1) << from; }

} // namespace dao
