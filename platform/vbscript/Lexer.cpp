#include "platform/vbscript/Lexer.h"

#include "platform/vbscript/DateText.h"
#include "platform/vbscript/Memory.h"
#include "platform/vbscript/ScriptError.h"
#include "platform/vbscript/ScriptHost.h"

#include <QHash>
#include <algorithm>
#include <charconv>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vbs {

namespace {

constexpr int kLongestName = 255;

struct Word
{
    const char *text;
    Tok kind;
};

constexpr Word kWords[] = {
    { "and", Tok::And }, { "byref", Tok::ByRef }, { "byval", Tok::ByVal }, { "call", Tok::Call },
    { "case", Tok::Case }, { "class", Tok::Class }, { "const", Tok::Const }, { "dim", Tok::Dim }, { "do", Tok::Do },
    { "each", Tok::Each }, { "else", Tok::Else }, { "elseif", Tok::ElseIf }, { "empty", Tok::Empty },
    { "end", Tok::EndWord }, { "eqv", Tok::Eqv }, { "exit", Tok::Exit }, { "false", Tok::False },
    { "for", Tok::For }, { "function", Tok::Function }, { "get", Tok::Get }, { "goto", Tok::GoTo },
    { "if", Tok::If }, { "imp", Tok::Imp }, { "in", Tok::In }, { "is", Tok::Is }, { "let", Tok::Let },
    { "loop", Tok::Loop }, { "me", Tok::Me }, { "mod", Tok::Mod }, { "new", Tok::New }, { "next", Tok::Next },
    { "not", Tok::Not }, { "nothing", Tok::Nothing }, { "null", Tok::Null }, { "on", Tok::On },
    { "option", Tok::Option }, { "or", Tok::Or }, { "preserve", Tok::Preserve }, { "private", Tok::Private },
    { "public", Tok::Public }, { "redim", Tok::ReDim }, { "rem", Tok::Rem }, { "resume", Tok::Resume },
    { "select", Tok::Select }, { "set", Tok::Set }, { "stop", Tok::Stop }, { "sub", Tok::Sub },
    { "then", Tok::Then }, { "to", Tok::To }, { "true", Tok::True }, { "until", Tok::Until },
    { "wend", Tok::Wend }, { "while", Tok::While }, { "with", Tok::With }, { "xor", Tok::Xor },
    { "as", Tok::Reserved }, { "boolean", Tok::Reserved }, { "byte", Tok::Reserved },
    { "currency", Tok::Reserved }, { "debug", Tok::Reserved }, { "double", Tok::Reserved },
    { "endif", Tok::Reserved }, { "enum", Tok::Reserved }, { "event", Tok::Reserved },
    { "implements", Tok::Reserved }, { "integer", Tok::Reserved }, { "like", Tok::Reserved },
    { "long", Tok::Reserved }, { "lset", Tok::Reserved }, { "optional", Tok::Reserved },
    { "paramarray", Tok::Reserved }, { "raiseevent", Tok::Reserved }, { "rset", Tok::Reserved },
    { "shared", Tok::Reserved }, { "single", Tok::Reserved }, { "static", Tok::Reserved },
    { "type", Tok::Reserved }, { "typeof", Tok::Reserved }, { "variant", Tok::Reserved },
};

Tok wordKind(const QString &folded)
{
    static const QHash<QString, Tok> table = [] {
        QHash<QString, Tok> words;
        for (const Word &word : kWords)
            words.insert(QString::fromLatin1(word.text), word.kind);
        return words;
    }();
    return table.value(folded, Tok::Name);
}

bool isNameStart(QChar c) { return c.isLetter(); }
bool isNamePart(QChar c) { return c.isLetterOrNumber() || c == u'_'; }
bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }
bool isBlank(QChar c) { return c == u' ' || c == u'\t' || c == u'\u00a0' || c == u'\f' || c == u'\v'; }

int digitValue(QChar c)
{
    if (isDigit(c))
        return c.unicode() - u'0';
    const char16_t lower = c.unicode() | 0x20;
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : 99;
}

class Lexer
{
public:
    Lexer(QStringView text, SymbolTable &symbols, ScriptHost *host, memory::Charge &charge)
        : m_text(text), m_symbols(symbols), m_host(host), m_charge(charge) {}
    std::vector<Token> run();

private:
    QChar at(qsizetype offset = 0) const
    {
        return m_pos + offset < m_text.size() ? m_text[m_pos + offset] : QChar(u'\0');
    }
    bool atEnd() const { return m_pos >= m_text.size(); }
    bool atLineEnd() const { return atEnd() || at() == u'\r' || at() == u'\n'; }
    [[noreturn]] void fail(int number) const { throw compileError(number, m_line, int(m_pos - m_lineStart)); }
    void add(Tok kind, qsizetype length);
    Token &begin(Tok kind);
    void growTokens();
    void newLine();
    bool skipContinuation();
    void skipToLineEnd();
    bool startsStatement() const;
    bool followsOperand() const;
    void readWord();
    void readBracketed();
    void readNumber();
    bool readRadix();
    void readString();
    void readDate();
    void readSymbol();
    void readToken();

    QStringView m_text;
    SymbolTable &m_symbols;
    ScriptHost *m_host;
    memory::Charge &m_charge;
    std::vector<Token> m_tokens;
    qsizetype m_pos = 0;
    qsizetype m_lineStart = 0;
    int m_line = 1;
    bool m_space = false;
};

void Lexer::growTokens()
{
    const size_t before = m_tokens.capacity();
    const size_t after = std::max<size_t>(64, before + before / 2);
    m_charge.resize(qint64((before + after) * sizeof(Token))); // both are there while the tokens move
    m_tokens.reserve(after);
    m_charge.resize(qint64(after * sizeof(Token)));
}

Token &Lexer::begin(Tok kind)
{
    Token token;
    token.kind = kind;
    token.spaceBefore = m_space;
    token.line = m_line;
    token.column = int(m_pos - m_lineStart);
    if (m_tokens.size() == m_tokens.capacity())
        growTokens();
    if (m_host)
        m_host->spend(10);
    m_tokens.push_back(std::move(token));
    m_space = false;
    return m_tokens.back();
}

void Lexer::add(Tok kind, qsizetype length)
{
    begin(kind);
    m_pos += length;
}

void Lexer::newLine()
{
    m_pos += at() == u'\r' && at(1) == u'\n' ? 2 : 1;
    ++m_line;
    m_lineStart = m_pos;
}

bool Lexer::skipContinuation()
{
    qsizetype ahead = 1;
    while (isBlank(at(ahead)))
        ++ahead;
    const bool lineEnd = m_pos + ahead >= m_text.size() || at(ahead) == u'\r' || at(ahead) == u'\n';
    if (at() != u'_' || !lineEnd)
        return false;
    m_pos += ahead;
    if (!atEnd())
        newLine();
    m_space = true;
    return true;
}

void Lexer::skipToLineEnd()
{
    while (!atLineEnd())
        ++m_pos;
}

bool Lexer::startsStatement() const
{
    if (m_tokens.empty())
        return true;
    const Tok last = m_tokens.back().kind;
    return last == Tok::Line || last == Tok::Colon || last == Tok::Then || last == Tok::Else;
}

bool Lexer::followsOperand() const
{
    if (m_tokens.empty())
        return false;
    const Tok last = m_tokens.back().kind;
    return last == Tok::Name || last == Tok::Literal || last == Tok::RightParen || last == Tok::Me
        || last == Tok::True || last == Tok::False || last == Tok::Empty || last == Tok::Null;
}

void Lexer::readWord()
{
    qsizetype length = 1;
    while (isNamePart(at(length)))
        ++length;
    if (length > kLongestName)
        fail(1030);
    const QStringView word = m_text.mid(m_pos, length);
    const Tok kind = wordKind(word.toString().toCaseFolded());
    const bool isMember = !m_tokens.empty() && m_tokens.back().kind == Tok::Dot;
    if (kind == Tok::Rem && startsStatement())
        return skipToLineEnd();
    Token &token = begin(isMember ? Tok::Name : kind);
    token.name = m_symbols.intern(word);
    m_pos += length;
}

void Lexer::readBracketed()
{
    const qsizetype end = m_text.indexOf(u']', m_pos);
    const QStringView name = end < 0 ? QStringView() : m_text.mid(m_pos + 1, end - m_pos - 1);
    if (end < 0 || name.contains(u'\n') || name.contains(u'\r'))
        fail(1007);
    if (name.size() > kLongestName)
        fail(1030);
    begin(Tok::Name).name = m_symbols.intern(name);
    m_pos = end + 1;
}

void Lexer::readNumber()
{
    qsizetype length = 0;
    bool whole = true;
    const auto digits = [&] {
        while (isDigit(at(length)))
            ++length;
    };
    digits();
    if (at(length) == u'.') {
        whole = false;
        ++length;
        digits();
    }
    // A keyword may follow without a blank: `1To`, `2Else`.
    const auto atKeyword = [&] {
        qsizetype end = length;
        while (isNamePart(at(end)))
            ++end;
        return wordKind(m_text.mid(m_pos + length, end - length).toString().toCaseFolded()) != Tok::Name;
    };
    if (at(length).toLower() == u'e' && !atKeyword()) {
        const qsizetype sign = at(length + 1) == u'+' || at(length + 1) == u'-' ? 1 : 0;
        if (!isDigit(at(length + 1 + sign)))
            fail(1031);
        whole = false;
        length += 1 + sign;
        digits();
    }
    if (isNameStart(at(length)) && !atKeyword())
        fail(1031);
    const QByteArray latin = m_text.mid(m_pos, length).toLatin1();
    bool fits = false;
    const double number = latin.toDouble(&fits);
    if (!fits || !std::isfinite(number))
        fail(1031);
    Token &token = begin(Tok::Literal);
    token.value = whole && number <= 2147483647.0 ? Value::number(qint64(number)) : Value::real(number);
    m_pos += length;
}

bool Lexer::readRadix()
{
    const QChar mark = at(1).toLower();
    const int radix = mark == u'h' ? 16 : 8;
    const qsizetype prefix = mark == u'h' || mark == u'o' ? 2 : 1;
    const bool bare = prefix == 1;
    if (digitValue(at(prefix)) >= radix) {
        if (followsOperand() || (bare && !isDigit(at(1))))
            return false;
        fail(1031);
    }
    if (followsOperand() && (bare || !m_space))
        return false;
    qsizetype length = prefix;
    quint64 number = 0;
    for (; digitValue(at(length)) < radix; ++length) {
        number = number * quint64(radix) + quint64(digitValue(at(length)));
        if (number > 0xffffffffu)
            fail(1031);
    }
    if (isNamePart(at(length))) {
        if (followsOperand())
            return false;
        fail(1031);
    }
    const bool isLong = at(length) == u'&';
    Token &token = begin(Tok::Literal);
    if (!isLong && number <= 0xffff)
        token.value = Value::integer(qint16(number));
    else
        token.value = Value::longInteger(qint32(quint32(number)));
    m_pos += length + (isLong ? 1 : 0);
    return true;
}

void Lexer::readString()
{
    QString text;
    qsizetype i = m_pos + 1;
    for (;; ++i) {
        const QChar c = i < m_text.size() ? m_text[i] : QChar(u'\n');
        if (c == u'\n' || c == u'\r') {
            m_pos = i;
            fail(1033);
        }
        if (c != u'"')
            text += c;
        else if (i + 1 < m_text.size() && m_text[i + 1] == u'"')
            text += m_text[++i];
        else
            break;
    }
    begin(Tok::Literal).value = Value::string(text);
    m_pos = i + 1;
}

void Lexer::readDate()
{
    const qsizetype end = m_text.indexOf(u'#', m_pos + 1);
    const QStringView text = end < 0 ? QStringView() : m_text.mid(m_pos + 1, end - m_pos - 1);
    const std::optional<double> days = parseDateLiteral(text.toString());
    if (!days)
        fail(1002);
    begin(Tok::Literal).value = Value::date(*days);
    m_pos = end + 1;
}

void Lexer::readSymbol()
{
    struct Pair
    {
        const char16_t text[3];
        Tok kind;
    };
    static constexpr Pair kPairs[] = { { u"<>", Tok::NotEqual }, { u"><", Tok::NotEqual }, { u"<=", Tok::LessEqual },
        { u"=<", Tok::LessEqual }, { u">=", Tok::GreaterEqual }, { u"=>", Tok::GreaterEqual } };
    for (const Pair &pair : kPairs)
        if (at() == pair.text[0] && at(1) == pair.text[1])
            return add(pair.kind, 2);
    switch (at().unicode()) {
    case u'(': return add(Tok::LeftParen, 1);
    case u')': return add(Tok::RightParen, 1);
    case u',': return add(Tok::Comma, 1);
    case u'.': return add(Tok::Dot, 1);
    case u'=': return add(Tok::Equal, 1);
    case u'<': return add(Tok::Less, 1);
    case u'>': return add(Tok::Greater, 1);
    case u'+': return add(Tok::Plus, 1);
    case u'-': return add(Tok::Minus, 1);
    case u'*': return add(Tok::Times, 1);
    case u'/': return add(Tok::Divide, 1);
    case u'\\': return add(Tok::IntDivide, 1);
    case u'^': return add(Tok::Power, 1);
    case u'&': return add(Tok::Ampersand, 1);
    case u':': return add(Tok::Colon, 1);
    default: fail(1032);
    }
}

void Lexer::readToken()
{
    const QChar c = at();
    if (isNameStart(c))
        return readWord();
    if (isDigit(c) || (c == u'.' && isDigit(at(1))))
        return readNumber();
    if (c == u'"')
        return readString();
    if (c == u'#')
        return readDate();
    if (c == u'[')
        return readBracketed();
    if (c == u'&' && readRadix())
        return;
    readSymbol();
}

std::vector<Token> Lexer::run()
{
    if (at() == u'\ufeff')
        ++m_pos;
    while (!atEnd()) {
        const QChar c = at();
        const bool lineStart = m_tokens.empty() || m_tokens.back().kind == Tok::Line;
        if (isBlank(c)) {
            ++m_pos;
            m_space = true;
        } else if (c == u'\r' || c == u'\n') {
            begin(Tok::Line);
            newLine();
        } else if (c == u'\'' || (lineStart && m_text.mid(m_pos).startsWith(u"<!--"))) {
            skipToLineEnd();
        } else if (c == u'_' && skipContinuation()) {
            continue;
        } else if (c == u'\0' && m_pos + 1 == m_text.size()) {
            ++m_pos;
        } else {
            readToken();
        }
    }
    begin(Tok::Line);
    begin(Tok::End);
    return std::move(m_tokens);
}

}

ScriptError compileError(int number, int line, int column)
{
    ScriptError error(number);
    error.setCompileError();
    error.setPosition(line, column);
    return error;
}

std::vector<Token> tokenize(QStringView text, SymbolTable &symbols, ScriptHost *host, memory::Charge &charge)
{
    return Lexer(text, symbols, host, charge).run();
}

}
