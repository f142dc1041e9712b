#pragma once

#include "platform/dao/Value.h"

#include <QString>
#include <vector>

/** Cuts a Jet statement into tokens and lifts its literals out. */
namespace dao {

enum class TokenKind {
    End,
    Name, // also every keyword
    QuotedName, // [name]
    Integer,
    Real,
    Text,
    Date,
    Symbol, // one of ( ) , . ; * = < > <= >= <> + - / \ ^ &
    OpenText, // a literal or bracket that the text's end cuts off
    OpenDate,
    OpenName,
    Unknown,
};

struct Token {
    TokenKind kind = TokenKind::End;
    qsizetype begin = 0;
    qsizetype end = 0;
    int literal = -1; // index into Lexed::literals

    bool isLiteral() const { return literal >= 0; }
};

/** A literal of the statement; a date keeps its text until it is needed. */
struct Literal {
    TokenKind kind = TokenKind::Text;
    Value value;
};

struct Lexed {
    QString text;
    std::vector<Token> tokens; // the last one is End
    std::vector<Literal> literals;
    /** The statement with its literals lifted out: statements of one shape share it. */
    QString shape;

    QStringView view(const Token &token) const
    {
        return QStringView(text).mid(token.begin, token.end - token.begin);
    }
};

/** Never fails: what cannot be read becomes an Open… or Unknown token, which the parser reports in its place.
 */
Lexed lex(const QString &text);

} // namespace dao
