#pragma once

#include "platform/vbscript/Symbols.h"
#include "platform/vbscript/Value.h"

#include <vector>

namespace vbs {

class ScriptHost;
namespace memory {
class Charge;
}

/** Kinds of tokens; reserved words have their own. */
enum class Tok : quint8 {
    End, Line, Colon, Name, Literal,
    LeftParen, RightParen, Comma, Dot,
    Equal, NotEqual, Less, Greater, LessEqual, GreaterEqual,
    Plus, Minus, Times, Divide, IntDivide, Power, Ampersand,
    And, ByRef, ByVal, Call, Case, Class, Const, Dim, Do, Each, Else, ElseIf, Empty, EndWord, Eqv, Exit, False, For,
    Function, Get, GoTo, If, Imp, In, Is, Let, Loop, Me, Mod, New, Next, Not, Nothing, Null, On, Option, Or,
    Preserve, Private, Public, ReDim, Rem, Resume, Select, Set, Stop, Sub, Then, To, True, Until, Wend, While, With,
    Xor, Reserved
};

struct Token
{
    Tok kind = Tok::End;
    bool spaceBefore = false;
    int line = 1;
    int column = 0;
    Symbol *name = nullptr; // names and reserved words (a reserved word may be a member name)
    Value value;            // literals
};

/** Splits a script text into tokens, whose memory it charges; ends with Line, End. Throws ScriptError (compile) with its position. */
std::vector<Token> tokenize(QStringView text, SymbolTable &symbols, ScriptHost *host, memory::Charge &charge);

/** A compile error at a position. */
class ScriptError compileError(int number, int line, int column);

}
