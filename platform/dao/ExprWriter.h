#pragma once

#include "platform/dao/Lexer.h"
#include "platform/dao/Plan.h"
#include "platform/dao/Scope.h"

#include <QSet>

namespace dao {

/** Writes expressions as SQL for SQLite. Values become parameters; names become columns of the scope. */
class ExprWriter
{
public:
    enum class Type { Null, Number, Boolean, Date, Text, Memo };

    struct Written {
        QByteArray sql;
        Type type = Type::Null;
        std::optional<ColumnRef> column; // set when it is nothing but a column
    };

    ExprWriter(const Scope &scope, const Lexed &lexed, Plan &plan)
        : m_scope(scope)
        , m_lexed(lexed)
        , m_plan(plan)
    {
    }

    /** SQL that is true, false or Null, for WHERE and ON. */
    QByteArray condition(const ast::Expr &expr);
    /** SQL with the expression's value. */
    Written value(const ast::Expr &expr);
    /** SQL with the value as the column stores it. */
    QByteArray stored(const ast::Expr &expr, const Column &column);
    /** Whether stored() is a mere parameter: the same for every row. */
    static bool isConstant(const ast::Expr &expr);

    /** Throws 3061 with the number of names that were no columns. */
    void finish() const;

private:
    QByteArray parameter(Parameter p);
    Written literal(const ast::Expr &expr);
    Written name(const ast::Expr &expr);
    Written numeric(const ast::Expr &expr);
    QByteArray compare(const ast::Expr &expr);
    QByteArray comparePair(const QByteArray &op, Written left, Written right);
    Written bareWord(const ast::Expr &expr, const Written &left);
    QByteArray like(const ast::Expr &expr);
    QByteArray between(const ast::Expr &expr);
    QByteArray inList(const ast::Expr &expr);
    QByteArray logic(const ast::Expr &expr);

    const Scope &m_scope;
    const Lexed &m_lexed;
    Plan &m_plan;
    QSet<QString> m_unknown;
};

} // namespace dao
