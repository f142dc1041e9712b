#pragma once

#include "platform/dao/ExprWriter.h"

namespace dao {

/** Writes a FROM clause. Outer joins whose missing rows the condition drops anyway become inner ones, and
   bracketed joins become a plain chain where that means the same, because SQLite scans where it could look up
   otherwise. */
class FromWriter
{
public:
    FromWriter(const Scope &scope, ExprWriter &exprs)
        : m_scope(scope)
        , m_exprs(exprs)
    {
    }

    /** where may be null. Throws 3080, 3118, 3258, 3296 for joins that Jet refuses. */
    QByteArray write(std::vector<ast::SourcePtr> &from, const ast::Expr *where);

    /** Which columns a new row of a joined table takes from its parent, and the order of writing; to be taken
       before write(), which changes the joins. */
    void describe(const ast::Source &source, Plan &plan) const;

private:
    struct Step {
        bool outer = false;
        int table = 0;
        std::vector<const ast::Expr *> on;
    };
    using Chain = std::vector<Step>;

    void check(const ast::Source &source) const;
    void checkCondition(const ast::Expr &on, TableSet tables) const;
    void reduce(ast::Source &source, TableSet rejected) const;
    std::optional<Chain> flatten(const ast::Source &source) const;
    std::optional<Chain> append(Chain left, Chain right, const ast::Source &join) const;
    QByteArray writeChain(const Chain &chain);
    QByteArray writeTree(const ast::Source &source);
    QByteArray writeTable(int from) const;
    void describeCondition(const ast::Expr &on, TableSet parents, bool outer, Plan &plan) const;

    const Scope &m_scope;
    ExprWriter &m_exprs;
};

} // namespace dao
