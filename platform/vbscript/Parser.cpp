#include "platform/vbscript/Parser.h"

#include "platform/vbscript/ScriptError.h"
#include "platform/vbscript/ScriptHost.h"

namespace vbs {

Parser::Parser(QStringView text, SymbolTable &symbols, ScriptHost *host, bool insideClass)
    : m_symbols(symbols), m_host(host), m_insideClass(insideClass),
      m_tokens(tokenize(text, symbols, host, m_tokenCharge)), m_defaultWord(symbols.intern(u"Default")),
      m_propertyWord(symbols.intern(u"Property")), m_explicitWord(symbols.intern(u"Explicit")),
      m_errorWord(symbols.intern(u"Error")), m_stepWord(symbols.intern(u"Step"))
{
}

/** Counts the nodes of the tree as work and as the script's memory. */
void Parser::countNode(size_t bytes)
{
    if (m_host)
        m_host->spend(10);
    m_nodeBytes += qint64(bytes);
    if (m_nodeBytes < m_charged)
        return;
    m_charged = m_nodeBytes + m_nodeBytes / 2;
    m_unit->charge.resize(m_charged);
}

bool Parser::accept(Tok kind)
{
    if (!at(kind))
        return false;
    ++m_pos;
    return true;
}

void Parser::expect(Tok kind, int error)
{
    if (!accept(kind))
        fail(error);
}

void Parser::fail(int error) const { failAt(error, current().line, current().column); }

void Parser::failAt(int error, int line, int column) { throw compileError(error, line, column); }

Symbol *Parser::expectName()
{
    if (!at(Tok::Name))
        fail(1010);
    return m_tokens[m_pos++].name;
}

bool Parser::atStatementEnd() const
{
    if (at(Tok::Line) || at(Tok::Colon) || at(Tok::End))
        return true;
    return m_singleLine > 0 && (at(Tok::Else) || (at(Tok::EndWord) && ahead(1).kind == Tok::If));
}

void Parser::expectStatementEnd()
{
    if (!atStatementEnd())
        fail(1025);
}

void Parser::skipSeparators()
{
    while (at(Tok::Line) || at(Tok::Colon))
        ++m_pos;
}

std::shared_ptr<Unit> Parser::script()
{
    for (const Token &token : m_tokens)
        if (token.kind == Tok::Name && token.name->folded.startsWith(u"execute"))
            m_unit->runsTexts = true;
    skipSeparators();
    if (at(Tok::Option))
        optionStatement();
    for (skipSeparators(); !at(Tok::End); skipSeparators())
        globalStatement();
    m_unit->main.endLine = current().line;
    return m_unit;
}

std::shared_ptr<Unit> Parser::expressionOnly()
{
    skipSeparators();
    m_unit->expression = expression();
    skipSeparators();
    if (!at(Tok::End))
        fail(1025);
    return m_unit;
}

std::shared_ptr<Unit> parseScript(QStringView text, SymbolTable &symbols, ScriptHost *host, bool insideClass)
{
    return Parser(text, symbols, host, insideClass).script();
}

std::shared_ptr<Unit> parseExpression(QStringView text, SymbolTable &symbols, ScriptHost *host, bool insideClass)
{
    return Parser(text, symbols, host, insideClass).expressionOnly();
}

}
