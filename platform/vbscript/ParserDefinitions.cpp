#include "platform/vbscript/Parser.h"

#include "platform/vbscript/ScriptError.h"

#include <QHash>
#include <algorithm>

namespace vbs {

namespace {

constexpr int kMostDimensions = 60;

bool hasName(const std::vector<Declaration> &declarations, const Symbol *name)
{
    return std::any_of(declarations.begin(), declarations.end(),
        [name](const Declaration &declaration) { return declaration.name == name; });
}

}

void Parser::optionStatement()
{
    ++m_pos;
    if (!atName(m_explicitWord))
        fail(1002);
    ++m_pos;
    m_unit->optionExplicit = true;
    expectStatementEnd();
}

void Parser::globalStatement()
{
    switch (current().kind) {
    case Tok::Sub: case Tok::Function:
        addProcedure(procedure(false, false, false));
        break;
    case Tok::Class: classDefinition(); break;
    case Tok::Public: case Tok::Private: visibleDefinition(); break;
    case Tok::Name:
        if (atProperty() && ahead(1).kind != Tok::Name)
            fail(1048);
        [[fallthrough]];
    default: statement(m_unit->main.body);
    }
    expectStatementEnd();
}

void Parser::visibleDefinition()
{
    const bool isPrivate = at(Tok::Private);
    ++m_pos;
    if (atProperty())
        fail(1048);
    if (atName(m_defaultWord) && (ahead(1).kind == Tok::Sub || ahead(1).kind == Tok::Function))
        ++m_pos;
    if (at(Tok::Sub) || at(Tok::Function))
        addProcedure(procedure(isPrivate, false, false));
    else if (at(Tok::Const))
        constStatement(m_unit->main.body, isPrivate);
    else
        dimStatement(m_unit->main.body, isPrivate);
}

/** A declaration counts for its whole procedure (or text), wherever it stands. */
void Parser::declare(const Declaration &declaration)
{
    ProcedureAst &scope = m_procedure ? *m_procedure : m_unit->main;
    bool taken = hasName(scope.declarations, declaration.name);
    for (const Parameter &parameter : scope.parameters)
        taken = taken || parameter.name == declaration.name;
    if (!m_procedure) {
        for (const ClassAst *other : m_unit->classes)
            taken = taken || other->name == declaration.name;
        for (const ProcedureAst *other : m_unit->procedures)
            taken = taken || other->name == declaration.name;
    }
    if (taken)
        failAt(1041, declaration.line, declaration.column);
    scope.declarations.push_back(declaration);
}

Declaration Parser::dimItem(bool isPrivate)
{
    Declaration declaration;
    declaration.line = current().line;
    declaration.column = current().column;
    declaration.isPrivate = isPrivate;
    declaration.name = expectName();
    if (!accept(Tok::LeftParen))
        return declaration;
    declaration.isArray = true;
    if (accept(Tok::RightParen))
        return declaration;
    do {
        if (!at(Tok::Literal) || !current().value.isWhole())
            fail(1026);
        if (current().value.whole() < 0 || current().value.whole() >= 0x7fffffff
            || declaration.counts.size() >= kMostDimensions)
            fail(1026);
        declaration.counts.append(qint32(current().value.whole() + 1));
        ++m_pos;
    } while (accept(Tok::Comma));
    expect(Tok::RightParen, 1006);
    return declaration;
}

std::vector<Declaration> Parser::dimList(bool isPrivate)
{
    std::vector<Declaration> list;
    do
        list.push_back(dimItem(isPrivate));
    while (accept(Tok::Comma));
    return list;
}

bool Parser::atProperty() const
{
    if (!at(Tok::Name) || current().name != m_propertyWord)
        return false;
    const Tok next = ahead(1).kind;
    return next == Tok::Get || next == Tok::Let || next == Tok::Set || next == Tok::Name;
}

ProcedureKind Parser::procedureKind()
{
    if (accept(Tok::Sub))
        return ProcedureKind::Sub;
    if (accept(Tok::Function))
        return ProcedureKind::Function;
    ++m_pos; // Property
    if (accept(Tok::Get))
        return ProcedureKind::PropertyGet;
    if (accept(Tok::Let))
        return ProcedureKind::PropertyLet;
    expect(Tok::Set, 1049);
    return ProcedureKind::PropertySet;
}

void Parser::parameters(ProcedureAst *ast)
{
    if (!accept(Tok::LeftParen) || accept(Tok::RightParen))
        return;
    do {
        Parameter parameter;
        parameter.byValue = at(Tok::ByVal);
        if (at(Tok::ByVal) || at(Tok::ByRef))
            ++m_pos;
        const Token &token = current();
        parameter.name = expectName();
        for (const Parameter &other : ast->parameters)
            if (other.name == parameter.name)
                failAt(1041, token.line, token.column);
        if (accept(Tok::LeftParen))
            expect(Tok::RightParen, 1006);
        ast->parameters.push_back(parameter);
        if (ast->parameters.size() > 250)
            fail(1001);
    } while (accept(Tok::Comma));
    expect(Tok::RightParen, 1006);
}

void Parser::procedureEnd(ProcedureAst *ast)
{
    ast->endLine = current().line;
    ast->endColumn = current().column;
    expect(Tok::EndWord, 1014);
    if (ast->kind == ProcedureKind::Sub)
        return expect(Tok::Sub, 1016);
    if (ast->kind == ProcedureKind::Function)
        return expect(Tok::Function, 1015);
    if (!atName(m_propertyWord))
        fail(1050);
    ++m_pos;
}

ProcedureAst *Parser::procedure(bool isPrivate, bool isDefault, bool explicitPublic)
{
    countNode(sizeof(ProcedureAst));
    ProcedureAst *ast = &m_unit->procedureStore.emplace_back();
    ast->line = current().line;
    ast->column = current().column;
    ast->kind = procedureKind();
    ast->isPrivate = isPrivate;
    ast->isDefault = isDefault;
    if (isDefault && !explicitPublic)
        fail(1057);
    if (isDefault && (ast->kind == ProcedureKind::PropertyLet || ast->kind == ProcedureKind::PropertySet))
        fail(1058);
    ast->name = expectName();
    parameters(ast);
    const bool writes = ast->kind == ProcedureKind::PropertyLet || ast->kind == ProcedureKind::PropertySet;
    if (writes && ast->parameters.empty())
        fail(1054);
    ProcedureAst *outer = std::exchange(m_procedure, ast);
    const int forDepth = std::exchange(m_forDepth, 0);
    const int doDepth = std::exchange(m_doDepth, 0);
    const std::vector<Symbol *> forVariables = std::exchange(m_forVariables, {});
    // The body may start on the line of the header, with or without a colon.
    statements(ast->body, { Tok::EndWord });
    m_forVariables = forVariables;
    m_forDepth = forDepth;
    m_doDepth = doDepth;
    m_procedure = outer;
    procedureEnd(ast);
    return ast;
}

void Parser::addProcedure(ProcedureAst *ast)
{
    if (hasName(m_unit->main.declarations, ast->name))
        failAt(1041, ast->line, ast->column);
    for (const ClassAst *other : m_unit->classes)
        if (other->name == ast->name)
            failAt(1041, ast->line, ast->column);
    auto &list = m_unit->procedures;
    // Of two procedures of one name the later one counts.
    std::erase_if(list, [ast](const ProcedureAst *other) { return other->name == ast->name; });
    list.push_back(ast);
}

void Parser::classDefinition()
{
    countNode(sizeof(ClassAst));
    ClassAst *ast = &m_unit->classStore.emplace_back();
    ast->line = current().line;
    ast->column = current().column;
    ++m_pos;
    ast->name = expectName();
    expectStatementEnd();
    bool taken = hasName(m_unit->main.declarations, ast->name);
    for (const ClassAst *other : m_unit->classes)
        taken = taken || other->name == ast->name;
    for (const ProcedureAst *other : m_unit->procedures)
        taken = taken || other->name == ast->name;
    if (taken)
        failAt(1041, ast->line, ast->column);
    m_class = ast;
    for (skipSeparators(); !at(Tok::EndWord) && !at(Tok::End); skipSeparators()) {
        classMember(ast);
        expectStatementEnd();
    }
    m_class = nullptr;
    expectEnd(Tok::Class, 1047);
    checkClass(ast);
    m_unit->classes.push_back(ast);
}

void Parser::classMember(ClassAst *ast)
{
    const bool isPrivate = at(Tok::Private);
    const bool isPublic = at(Tok::Public);
    const bool isDim = accept(Tok::Dim);
    if (isPrivate || isPublic)
        ++m_pos;
    const Tok next = ahead(1).kind;
    const bool isDefault = atName(m_defaultWord)
        && (next == Tok::Sub || next == Tok::Function || (next == Tok::Name && ahead(1).name == m_propertyWord));
    if (isDefault)
        ++m_pos;
    else if (atName(m_defaultWord) && (next == Tok::Name || next == Tok::Dim || next == Tok::Const))
        fail(1056);
    if (!isDim && (at(Tok::Sub) || at(Tok::Function) || atProperty())) {
        ast->members.push_back(procedure(isPrivate, isDefault, isPublic));
        return;
    }
    if (!isDim && !isPrivate && !isPublic)
        fail(1002);
    if (at(Tok::Const))
        fail(1002);
    for (Declaration &declaration : dimList(isPrivate)) {
        if (hasName(ast->fields, declaration.name))
            failAt(1041, declaration.line, declaration.column);
        ast->fields.push_back(std::move(declaration));
    }
}

void Parser::checkClass(const ClassAst *ast) const
{
    const auto readers = [](const ProcedureAst *member) {
        return member->kind != ProcedureKind::PropertyLet && member->kind != ProcedureKind::PropertySet;
    };
    int defaults = 0;
    QHash<Symbol *, size_t> indices; // number of arguments of a property apart from the new value
    QHash<Symbol *, int> kinds;      // procedure kinds seen, as bits
    for (const ProcedureAst *member : ast->members) {
        if (member->isDefault && ++defaults > 1)
            failAt(1052, member->line, member->column);
        const bool lifetime = member->name->folded == QLatin1String("class_initialize")
            || member->name->folded == QLatin1String("class_terminate");
        if (lifetime && member->kind == ProcedureKind::Sub && !member->parameters.empty())
            failAt(1053, member->line, member->column);
        const bool isProperty = member->kind >= ProcedureKind::PropertyGet;
        const int bit = isProperty ? 1 << int(member->kind) : 0xff;
        if ((kinds[member->name] & bit) || hasName(ast->fields, member->name))
            failAt(1041, member->line, member->column);
        kinds[member->name] |= bit;
        if (!isProperty)
            continue;
        const size_t count = member->parameters.size() - (readers(member) ? 0 : 1);
        if (indices.contains(member->name) && indices[member->name] != count)
            failAt(1051, member->line, member->column);
        indices[member->name] = count;
    }
}

}
