#pragma once

#include "platform/vbscript/Ast.h"

#include <initializer_list>
#include <optional>

namespace vbs {

/** Recursive descent over the tokens of one text; see Ast.h for what comes out. */
class Parser
{
public:
    Parser(QStringView text, SymbolTable &symbols, ScriptHost *host, bool insideClass);
    std::shared_ptr<Unit> script();
    std::shared_ptr<Unit> expressionOnly();

private:
    class Nesting;

    // Tokens
    const Token &current() const { return m_tokens[m_pos]; }
    const Token &ahead(size_t count) const { return m_tokens[std::min(m_pos + count, m_tokens.size() - 1)]; }
    bool at(Tok kind) const { return current().kind == kind; }
    void countNode(size_t bytes);
    bool accept(Tok kind);
    void expect(Tok kind, int error);
    [[noreturn]] void fail(int error) const;
    [[noreturn]] static void failAt(int error, int line, int column);
    bool atName(const Symbol *word) const { return at(Tok::Name) && current().name == word; }
    Symbol *expectName();
    bool atStatementEnd() const;
    void expectStatementEnd();
    void skipSeparators();

    // Expressions (ParserExpressions.cpp)
    Expr *newExpr(ExprKind kind);
    Expr *expression() { return binary(1); }
    Expr *binary(int lowest);
    Expr *unary();
    Expr *primary();
    Expr *literal(const Value &value);
    Expr *postfix(Expr *base, size_t *lastParen, Expr **beforeParen);
    std::vector<Expr *> arguments(Tok end);
    void setDepth(Expr *expr, int depth);
    Value constantValue();

    // Statements (ParserStatements.cpp)
    void statements(Block &body, std::initializer_list<Tok> until);
    void statement(Block &body);
    bool simpleStatement(Block &body);
    Stmt *newStmt(StmtKind kind, Block &body);
    void dimStatement(Block &body, bool isPrivate);
    void constStatement(Block &body, bool isPrivate);
    void reDimStatement(Block &body);
    void ifStatement(Block &body);
    void singleLineIf(Stmt *stmt);
    void blockIf(Stmt *stmt);
    void lineStatements(Block &body);
    void selectStatement(Block &body);
    void forStatement(Block &body);
    void forEachStatement(Block &body);
    void closeFor(Stmt *stmt, Symbol *variable);
    void doStatement(Block &body);
    void whileStatement(Block &body);
    void withStatement(Block &body);
    void exitStatement(Block &body);
    void onErrorStatement(Block &body);
    void setStatement(Block &body);
    void callStatement(Block &body);
    void assignmentOrCall(Block &body);
    void markEnd(Stmt *stmt);
    void expectEnd(Tok word, int error);

    // Definitions (ParserDefinitions.cpp)
    void globalStatement();
    void optionStatement();
    void visibleDefinition();
    bool atProperty() const;
    ProcedureAst *procedure(bool isPrivate, bool isDefault, bool explicitPublic);
    void parameters(ProcedureAst *ast);
    ProcedureKind procedureKind();
    void procedureEnd(ProcedureAst *ast);
    void addProcedure(ProcedureAst *ast);
    void classDefinition();
    void classMember(ClassAst *ast);
    void checkClass(const ClassAst *ast) const;
    std::vector<Declaration> dimList(bool isPrivate);
    Declaration dimItem(bool isPrivate);
    void declare(const Declaration &declaration);

    std::shared_ptr<Unit> m_unit = std::make_shared<Unit>();
    SymbolTable &m_symbols;
    ScriptHost *m_host;
    bool m_insideClass; // the text is run by Execute or Eval in a method
    memory::Charge m_tokenCharge;
    std::vector<Token> m_tokens;
    qint64 m_nodeBytes = 0;
    qint64 m_charged = 0; // of the nodes; at least as much
    size_t m_pos = 0;
    ProcedureAst *m_procedure = nullptr; // null: global statements
    ClassAst *m_class = nullptr;
    std::vector<Symbol *> m_forVariables;
    int m_forDepth = 0;
    int m_doDepth = 0;
    int m_withDepth = 0;
    int m_singleLine = 0;
    int m_depth = 0;
    const Symbol *m_defaultWord;
    const Symbol *m_propertyWord;
    const Symbol *m_explicitWord;
    const Symbol *m_errorWord;
    const Symbol *m_stepWord;
};

/** Counts nested constructs so that no text can exhaust the C++ stack. */
class Parser::Nesting
{
public:
    explicit Nesting(Parser &parser) : m_parser(parser)
    {
        if (++m_parser.m_depth > kDeepest) {
            --m_parser.m_depth;
            m_parser.fail(1001);
        }
    }
    ~Nesting() { --m_parser.m_depth; }
    Q_DISABLE_COPY_MOVE(Nesting)

    static constexpr int kDeepest = 200;

private:
    Parser &m_parser;
};

}
