#pragma once

#include <QString>
#include <memory>
#include <vector>

/** What the parser makes of a statement. Literals stay outside and are named by their index. */
namespace dao::ast {

enum class ExprKind {
    Column, // table (may be empty), name
    Literal, // literal
    Null,
    Negate, // args[0]
    Binary, // op: + - * / \ ^ & MOD
    Compare, // op: = <> < > <= >=
    Logic, // op: AND OR XOR EQV IMP
    Not,
    Like, // args[0] LIKE args[1]
    IsNull,
    Between, // args[0] BETWEEN args[1] AND args[2]
    In, // args[0] IN (args[1] …)
};

struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

struct Expr {
    ExprKind kind = ExprKind::Null;
    QString op;
    QString table;
    QString name;
    int literal = -1;
    bool negated = false; // NOT LIKE, IS NOT NULL, NOT BETWEEN, NOT IN
    std::vector<ExprPtr> args;
};

enum class JoinKind { Inner, Left, Right };

/** A table of FROM, or a join of two sources. */
struct Source {
    QString table; // empty for a join
    QString alias;
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<Source> left;
    std::unique_ptr<Source> right;
    ExprPtr on;
    int index = -1; // position in FROM, set while resolving

    bool isTable() const { return !left; }
    const QString &exposedName() const { return alias.isEmpty() ? table : alias; }
};
using SourcePtr = std::unique_ptr<Source>;

struct SelectItem {
    bool star = false; // * or table.*
    QString table;
    ExprPtr expr;
    QString alias;
};

struct OrderItem {
    ExprPtr expr;
    bool descending = false;
};

struct SetItem {
    QString table;
    QString column;
    ExprPtr value;
};

enum class StatementKind { Select, Insert, Update, Delete };

struct Statement {
    StatementKind kind = StatementKind::Select;
    std::vector<SelectItem> items; // SELECT; DELETE: what stands before FROM
    std::vector<SourcePtr> from; // SELECT and DELETE; UPDATE: the tables before SET
    ExprPtr where;
    std::vector<OrderItem> order;
    std::vector<SetItem> set;
    QString target; // INSERT
    bool hasColumns = false;
    std::vector<QString> columns;
    std::vector<ExprPtr> values;
};

} // namespace dao::ast
