#include "platform/vbscript/Parser.h"

#include "platform/vbscript/ScriptError.h"

#include <algorithm>

namespace vbs {

namespace {

bool closesOuterBlock(Tok word, Tok next)
{
    return word == Tok::Next || word == Tok::Loop || word == Tok::Wend || (word == Tok::EndWord && next != Tok::If);
}

}

Stmt *Parser::newStmt(StmtKind kind, Block &body)
{
    countNode(sizeof(Stmt) + sizeof(Stmt *));
    Stmt &stmt = m_unit->statementStore.emplace_back();
    stmt.kind = kind;
    stmt.line = current().line;
    stmt.column = current().column;
    body.push_back(&stmt);
    return &stmt;
}

void Parser::markEnd(Stmt *stmt)
{
    stmt->endLine = current().line;
    stmt->endColumn = current().column;
}

void Parser::expectEnd(Tok word, int error)
{
    expect(Tok::EndWord, 1014);
    expect(word, error);
}

/** Statements up to one of `until`, or to any word that can only close a block. */
void Parser::statements(Block &body, std::initializer_list<Tok> until)
{
    const int singleLine = std::exchange(m_singleLine, 0);
    for (skipSeparators(); std::find(until.begin(), until.end(), current().kind) == until.end(); skipSeparators()) {
        if (at(Tok::End))
            break;
        statement(body);
        expectStatementEnd();
    }
    m_singleLine = singleLine;
}

void Parser::statement(Block &body)
{
    const Nesting nesting(*this);
    switch (current().kind) {
    case Tok::Dim: ++m_pos; return dimStatement(body, false);
    case Tok::Const: return constStatement(body, false);
    case Tok::ReDim: return reDimStatement(body);
    case Tok::If: return ifStatement(body);
    case Tok::Select: return selectStatement(body);
    case Tok::For: return ahead(1).kind == Tok::Each ? forEachStatement(body) : forStatement(body);
    case Tok::Do: return doStatement(body);
    case Tok::While: return whileStatement(body);
    case Tok::With: return withStatement(body);
    case Tok::Exit: return exitStatement(body);
    case Tok::On: return onErrorStatement(body);
    case Tok::Set: return setStatement(body);
    case Tok::Call: return callStatement(body);
    case Tok::Stop: ++m_pos; return;
    case Tok::Name: case Tok::Me: case Tok::Dot: return assignmentOrCall(body);
    case Tok::Loop: fail(1038);
    case Tok::Next: fail(1055);
    default: fail(1024);
    }
}

void Parser::dimStatement(Block &body, bool isPrivate)
{
    Stmt *stmt = newStmt(StmtKind::Dim, body);
    stmt->declarations = dimList(isPrivate);
    for (const Declaration &declaration : stmt->declarations)
        declare(declaration);
}

void Parser::constStatement(Block &body, bool isPrivate)
{
    expect(Tok::Const, 1002);
    Stmt *stmt = newStmt(StmtKind::Const, body);
    do {
        Declaration declaration;
        declaration.line = current().line;
        declaration.column = current().column;
        declaration.isPrivate = isPrivate;
        declaration.isConstant = true;
        declaration.name = expectName();
        expect(Tok::Equal, 1011);
        declaration.value = constantValue();
        if (!atStatementEnd() && !at(Tok::Comma))
            fail(1045);
        stmt->declarations.push_back(declaration);
        declare(declaration);
    } while (accept(Tok::Comma));
}

void Parser::reDimStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::ReDim, body);
    ++m_pos;
    stmt->preserve = accept(Tok::Preserve);
    do {
        Declaration declaration;
        declaration.line = current().line;
        declaration.column = current().column;
        declaration.name = expectName();
        expect(Tok::LeftParen, 1005);
        do
            declaration.bounds.push_back(expression());
        while (accept(Tok::Comma));
        expect(Tok::RightParen, 1006);
        if (declaration.bounds.size() > 60)
            fail(1001);
        stmt->declarations.push_back(std::move(declaration));
    } while (accept(Tok::Comma));
}

void Parser::ifStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::If, body);
    ++m_pos;
    Branch branch;
    branch.line = stmt->line;
    branch.column = stmt->column;
    branch.tests.push_back(expression());
    expect(Tok::Then, 1017);
    stmt->branches.push_back(std::move(branch));
    if (at(Tok::Line) || at(Tok::Colon))
        blockIf(stmt);
    else
        singleLineIf(stmt);
}

void Parser::lineStatements(Block &body)
{
    while (!at(Tok::Line) && !at(Tok::End) && !at(Tok::Else) && !(at(Tok::EndWord) && ahead(1).kind == Tok::If)) {
        if (at(Tok::Colon) && closesOuterBlock(ahead(1).kind, ahead(2).kind))
            return; // `If a Then b : Next`: the word behind the colon ends what stands around the If
        if (accept(Tok::Colon))
            continue;
        statement(body);
        expectStatementEnd();
    }
}

void Parser::singleLineIf(Stmt *stmt)
{
    ++m_singleLine;
    lineStatements(stmt->branches.back().body);
    if (accept(Tok::Else)) {
        stmt->branches.emplace_back();
        lineStatements(stmt->branches.back().body);
    }
    markEnd(stmt);
    if (at(Tok::EndWord) && ahead(1).kind == Tok::If)
        m_pos += 2;
    --m_singleLine;
}

void Parser::blockIf(Stmt *stmt)
{
    for (;;) {
        statements(stmt->branches.back().body, { Tok::ElseIf, Tok::Else, Tok::EndWord });
        if (stmt->branches.back().tests.empty() || at(Tok::EndWord) || at(Tok::End))
            break;
        Branch branch;
        branch.line = current().line;
        branch.column = current().column;
        if (accept(Tok::ElseIf)) {
            branch.tests.push_back(expression());
            expect(Tok::Then, 1017);
        } else {
            expect(Tok::Else, 1014);
        }
        stmt->branches.push_back(std::move(branch));
    }
    markEnd(stmt);
    const bool startsLine = m_tokens[m_pos - 1].kind == Tok::Line || current().line == stmt->line;
    if (at(Tok::EndWord) && ahead(1).kind == Tok::If && !startsLine)
        fail(1042);
    expectEnd(Tok::If, 1012);
}

void Parser::selectStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::Select, body);
    ++m_pos;
    expect(Tok::Case, 1021);
    stmt->value = expression();
    expectStatementEnd();
    skipSeparators();
    while (at(Tok::Case)) {
        Branch branch;
        branch.line = current().line;
        branch.column = current().column;
        ++m_pos;
        if (!accept(Tok::Else)) {
            do
                branch.tests.push_back(expression());
            while (accept(Tok::Comma));
        }
        if (at(Tok::Is) || at(Tok::To))
            fail(1002);
        stmt->branches.push_back(std::move(branch));
        statements(stmt->branches.back().body, { Tok::Case, Tok::EndWord });
        if (stmt->branches.back().tests.empty() && at(Tok::Case))
            fail(1002);
    }
    markEnd(stmt);
    expectEnd(Tok::Select, 1022);
}

void Parser::forStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::For, body);
    ++m_pos;
    Symbol *variable = current().name;
    Expr *target = newExpr(ExprKind::Name);
    target->name = expectName();
    if (at(Tok::LeftParen) || at(Tok::Dot))
        fail(1040);
    if (std::find(m_forVariables.begin(), m_forVariables.end(), variable) != m_forVariables.end())
        failAt(1040, target->line, target->column);
    stmt->target = target;
    expect(Tok::Equal, 1011);
    stmt->value = expression();
    expect(Tok::To, 1013);
    stmt->limit = expression();
    if (atName(m_stepWord)) {
        ++m_pos;
        stmt->step = expression();
    }
    expectStatementEnd();
    closeFor(stmt, variable);
}

void Parser::forEachStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::ForEach, body);
    m_pos += 2;
    Symbol *variable = current().name;
    Expr *target = newExpr(ExprKind::Name);
    target->name = expectName();
    if (at(Tok::LeftParen) || at(Tok::Dot))
        fail(1040);
    stmt->target = target;
    expect(Tok::In, 1046);
    stmt->value = expression();
    expectStatementEnd();
    closeFor(stmt, variable);
}

void Parser::closeFor(Stmt *stmt, Symbol *variable)
{
    m_forVariables.push_back(variable);
    ++m_forDepth;
    statements(stmt->body, { Tok::Next });
    --m_forDepth;
    m_forVariables.pop_back();
    markEnd(stmt);
    expect(Tok::Next, 1020);
}

void Parser::doStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::Do, body);
    ++m_pos;
    const auto condition = [&] {
        stmt->until = at(Tok::Until);
        ++m_pos;
        stmt->value = expression();
    };
    if (at(Tok::While) || at(Tok::Until)) {
        condition();
        stmt->testFirst = true;
    } else if (!atStatementEnd()) {
        fail(1028);
    }
    expectStatementEnd();
    ++m_doDepth;
    statements(stmt->body, { Tok::Loop });
    --m_doDepth;
    markEnd(stmt);
    expect(Tok::Loop, 1019);
    if (!stmt->value && (at(Tok::While) || at(Tok::Until)))
        condition();
    else if (!atStatementEnd())
        fail(stmt->value ? 1025 : 1028);
}

void Parser::whileStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::While, body);
    ++m_pos;
    stmt->value = expression();
    stmt->testFirst = true;
    expectStatementEnd();
    statements(stmt->body, { Tok::Wend });
    markEnd(stmt);
    expect(Tok::Wend, 1018);
}

void Parser::withStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::With, body);
    ++m_pos;
    stmt->value = expression();
    expectStatementEnd();
    ++m_withDepth;
    statements(stmt->body, { Tok::EndWord });
    --m_withDepth;
    markEnd(stmt);
    expectEnd(Tok::With, 1029);
}

void Parser::exitStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::Exit, body);
    ++m_pos;
    const bool inProcedure = m_procedure;
    const auto kindIs = [&](ProcedureKind kind) { return inProcedure && m_procedure->kind == kind; };
    bool allowed = false;
    if (accept(Tok::Do)) {
        stmt->exit = ExitKind::Do;
        allowed = m_doDepth > 0;
    } else if (accept(Tok::For)) {
        stmt->exit = ExitKind::For;
        allowed = m_forDepth > 0;
    } else if (accept(Tok::Sub)) {
        stmt->exit = ExitKind::Sub;
        allowed = kindIs(ProcedureKind::Sub);
    } else if (accept(Tok::Function)) {
        stmt->exit = ExitKind::Function;
        allowed = kindIs(ProcedureKind::Function);
    } else if (atName(m_propertyWord)) {
        ++m_pos;
        stmt->exit = ExitKind::Property;
        allowed = inProcedure && !kindIs(ProcedureKind::Sub) && !kindIs(ProcedureKind::Function);
    }
    if (!allowed)
        failAt(1039, stmt->line, stmt->column);
}

void Parser::onErrorStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::OnErrorNext, body);
    ++m_pos;
    if (!atName(m_errorWord))
        fail(1002);
    ++m_pos;
    if (accept(Tok::Resume)) {
        expect(Tok::Next, 1020);
        return;
    }
    expect(Tok::GoTo, 1002);
    if (!at(Tok::Literal) || !current().value.is(Type::Integer) || current().value.whole() != 0)
        fail(1002);
    ++m_pos;
    stmt->kind = StmtKind::OnErrorZero;
}

void Parser::setStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::Set, body);
    ++m_pos;
    if (!at(Tok::Name) && !at(Tok::Dot) && !at(Tok::Me))
        fail(1010);
    stmt->target = postfix(primary(), nullptr, nullptr);
    if (stmt->target->kind == ExprKind::Me)
        fail(1037);
    expect(Tok::Equal, 1011);
    stmt->value = expression();
}

void Parser::callStatement(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::Call, body);
    ++m_pos;
    if (!at(Tok::Name) && !at(Tok::Dot) && !at(Tok::Me))
        fail(1010);
    stmt->target = postfix(primary(), nullptr, nullptr);
}

/** A statement that starts with a name: what it is shows only behind the whole chain. */
void Parser::assignmentOrCall(Block &body)
{
    Stmt *stmt = newStmt(StmtKind::Call, body);
    size_t lastParen = 0;
    Expr *beforeParen = nullptr;
    Expr *target = postfix(primary(), &lastParen, &beforeParen);
    if (at(Tok::Equal)) {
        if (target->kind == ExprKind::Me)
            fail(1037);
        ++m_pos;
        stmt->kind = StmtKind::Let;
        stmt->target = target;
        stmt->value = expression();
        return;
    }
    stmt->target = target;
    const bool startsArgument = beforeParen && target->left != beforeParen;
    if (atStatementEnd() && !startsArgument) {
        if (target->kind != ExprKind::Call)
            return;
        if (target->args.size() > 1)
            fail(1044);
        // `foo(x)` hands over a value: the parentheses belong to the argument.
        for (Expr *&argument : target->args) {
            Expr *wrapped = newExpr(ExprKind::Parenthesised);
            wrapped->left = argument;
            argument = wrapped;
        }
        return;
    }
    if (beforeParen) {
        m_pos = lastParen; // the parentheses were the start of the first argument
        target = beforeParen;
    }
    Expr *call = newExpr(ExprKind::Call);
    call->line = stmt->line;
    call->column = stmt->column;
    call->left = target;
    call->args = arguments(Tok::Line);
    stmt->target = call;
}

}
