#include "platform/dao/Parser.h"

#include "platform/dao/Errors.h"

#include <array>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using namespace ast;

constexpr int kMaxDepth = 100;
constexpr size_t kMaxTokens = 4000;

// Words that cannot be names without brackets.
constexpr std::array kReserved = {
    u"SELECT", u"FROM",     u"WHERE", u"ORDER",  u"BY",     u"GROUP",  u"HAVING", u"UNION",   u"INNER",
    u"LEFT",   u"RIGHT",    u"JOIN",  u"ON",     u"AS",     u"AND",    u"OR",     u"NOT",     u"XOR",
    u"EQV",    u"IMP",      u"LIKE",  u"IS",     u"NULL",   u"IN",     u"MOD",    u"BETWEEN", u"INTO",
    u"VALUES", u"DISTINCT", u"SET",   u"INSERT", u"UPDATE", u"DELETE",
};

bool same(QStringView a, QStringView b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

bool isReserved(QStringView word)
{
    for (const char16_t *reserved : kReserved) {
        if (same(word, QStringView(reserved)))
            return true;
    }
    return false;
}

ExprPtr makeExpr(ExprKind kind, const QString &op = {}, ExprPtr a = {}, ExprPtr b = {})
{
    auto expr = std::make_unique<Expr>();
    expr->kind = kind;
    expr->op = op;
    if (a)
        expr->args.push_back(std::move(a));
    if (b)
        expr->args.push_back(std::move(b));
    return expr;
}

/** One level of operators that bind equally strong, weakest first. */
struct Level {
    ExprKind kind;
    std::array<const char16_t *, 2> ops;
};
constexpr Level kLogicLevels[] = {
    {ExprKind::Logic, {u"IMP", nullptr}}, {ExprKind::Logic, {u"EQV", nullptr}},
    {ExprKind::Logic, {u"OR", nullptr}},  {ExprKind::Logic, {u"XOR", nullptr}},
    {ExprKind::Logic, {u"AND", nullptr}},
};
constexpr Level kValueLevels[] = {
    {ExprKind::Binary, {u"&", nullptr}},   {ExprKind::Binary, {u"+", u"-"}},
    {ExprKind::Binary, {u"MOD", nullptr}}, {ExprKind::Binary, {u"\\", nullptr}},
    {ExprKind::Binary, {u"*", u"/"}},
};

class Parser
{
public:
    explicit Parser(const Lexed &lexed)
        : m_lexed(lexed)
    {
    }

    Statement run();

private:
    // Tokens
    const Token &token() const { return m_lexed.tokens[m_at]; }
    QStringView word() const { return m_lexed.view(token()); }
    bool is(const char16_t *text) const;
    bool accept(const char16_t *text);
    void expect(const char16_t *text, long otherwise);
    bool isName() const;
    QString takeName(long otherwise);
    void finish(long otherwise);

    // Statements
    void parseSelect(Statement &s);
    void parseInsert(Statement &s);
    void parseValues(Statement &s);
    void parseUpdate(Statement &s);
    void parseDelete(Statement &s);
    void parseItems(Statement &s);
    SelectItem parseItem();
    bool acceptStar(SelectItem &item);
    void parseWhere(Statement &s);
    void parseOrder(Statement &s);
    SetItem parseSetItem();

    // FROM
    void parseFrom(Statement &s, long otherwise);
    SourcePtr parseSource();
    SourcePtr parseJoinOperand(long otherwise);
    SourcePtr parseTable(long otherwise);
    bool acceptJoin(JoinKind &kind);

    // Expressions
    ExprPtr expression();
    ExprPtr nested() { return logic(0); }
    ExprPtr logic(size_t level);
    ExprPtr negation();
    ExprPtr comparison();
    ExprPtr predicate(ExprPtr left, bool &taken);
    ExprPtr value(size_t level);
    ExprPtr unary();
    ExprPtr power();
    ExprPtr operand();
    ExprPtr nameOperand();
    void requireOperator();
    [[noreturn]] void failExpression(const QString &message);
    [[noreturn]] void failOperand();

    struct Depth {
        explicit Depth(Parser &parser)
            : p(parser)
        {
            if (++p.m_depth > kMaxDepth)
                raise(3360);
        }
        ~Depth() { --p.m_depth; }
        Parser &p;
    };

    const Lexed &m_lexed;
    size_t m_at = 0;
    int m_depth = 0;
    qsizetype m_exprBegin = 0; // where the text that an expression's error quotes begins
    bool m_inList = false; // the quoted text leaves out the list's closing bracket
};

bool Parser::is(const char16_t *text) const
{
    const TokenKind kind = token().kind;
    return (kind == TokenKind::Name || kind == TokenKind::Symbol) && same(word(), QStringView(text));
}

bool Parser::accept(const char16_t *text)
{
    if (!is(text))
        return false;
    ++m_at;
    return true;
}

void Parser::expect(const char16_t *text, long otherwise)
{
    if (!accept(text))
        raise(otherwise);
}

bool Parser::isName() const
{
    return token().kind == TokenKind::QuotedName || (token().kind == TokenKind::Name && !isReserved(word()));
}

QString Parser::takeName(long otherwise)
{
    if (token().kind == TokenKind::OpenName)
        raise(3126, word().toString());
    if (!isName())
        raise(otherwise);
    const bool quoted = token().kind == TokenKind::QuotedName;
    const QString name = (quoted ? word().mid(1, word().size() - 2) : word()).toString();
    if (name.isEmpty())
        raise(3126, word().toString());
    ++m_at;
    return name;
}

void Parser::finish(long otherwise)
{
    if (token().kind == TokenKind::End)
        return;
    if (!accept(u";"))
        raise(otherwise);
    if (token().kind != TokenKind::End)
        raise(3142);
}

Statement Parser::run()
{
    if (m_lexed.tokens.size() > kMaxTokens)
        raise(3360);
    Statement s;
    if (accept(u"SELECT"))
        parseSelect(s);
    else if (accept(u"INSERT"))
        parseInsert(s);
    else if (accept(u"UPDATE"))
        parseUpdate(s);
    else if (accept(u"DELETE"))
        parseDelete(s);
    else
        raise(3129);
    return s;
}

void Parser::parseSelect(Statement &s)
{
    s.kind = StatementKind::Select;
    parseItems(s);
    expect(u"FROM", 3141);
    parseFrom(s, 3131);
    parseWhere(s);
    parseOrder(s);
    finish(s.order.empty() ? (s.where ? 3075 : 3131) : 3138);
}

void Parser::parseItems(Statement &s)
{
    do {
        s.items.push_back(parseItem());
    } while (accept(u","));
}

SelectItem Parser::parseItem()
{
    SelectItem item;
    if (acceptStar(item))
        return item;
    if (is(u"FROM") || is(u",") || token().kind == TokenKind::End
        || (token().kind == TokenKind::Name && !isName() && !is(u"NOT") && !is(u"NULL")))
        raise(3141);
    item.expr = expression();
    if (accept(u"AS"))
        item.alias = takeName(3141);
    else
        requireOperator();
    return item;
}

bool Parser::acceptStar(SelectItem &item)
{
    item.star = accept(u"*");
    if (item.star)
        return true;
    const size_t start = m_at;
    if (!isName())
        return false;
    item.table = takeName(3141);
    item.star = accept(u".") && accept(u"*");
    if (!item.star) {
        m_at = start;
        item.table.clear();
    }
    return item.star;
}

void Parser::parseInsert(Statement &s)
{
    s.kind = StatementKind::Insert;
    expect(u"INTO", 3134);
    s.target = takeName(3134);
    s.hasColumns = accept(u"(");
    if (s.hasColumns) {
        do {
            s.columns.push_back(takeName(3134));
        } while (accept(u","));
        expect(u")", 3134);
    }
    expect(u"VALUES", 3134);
    parseValues(s);
    finish(3134);
}

void Parser::parseValues(Statement &s)
{
    expect(u"(", 3134);
    m_inList = true;
    do {
        s.values.push_back(expression());
        requireOperator();
    } while (accept(u","));
    m_inList = false;
    expect(u")", 3134);
}

void Parser::parseUpdate(Statement &s)
{
    s.kind = StatementKind::Update;
    parseFrom(s, 3144);
    expect(u"SET", 3144);
    do {
        s.set.push_back(parseSetItem());
    } while (accept(u","));
    parseWhere(s);
    finish(s.where ? 3075 : 3144);
}

SetItem Parser::parseSetItem()
{
    SetItem item;
    item.column = takeName(3144);
    if (accept(u".")) {
        item.table = item.column;
        item.column = takeName(3144);
    }
    expect(u"=", 3144);
    item.value = expression();
    requireOperator();
    return item;
}

void Parser::parseDelete(Statement &s)
{
    s.kind = StatementKind::Delete;
    if (!is(u"FROM"))
        parseItems(s);
    expect(u"FROM", 3130);
    parseFrom(s, 3131);
    parseWhere(s);
    finish(s.where ? 3075 : 3131);
}

void Parser::parseWhere(Statement &s)
{
    if (!accept(u"WHERE"))
        return;
    if (token().kind == TokenKind::End || is(u";") || is(u"ORDER"))
        raise(3145);
    s.where = expression();
    requireOperator();
    if (token().kind != TokenKind::End && !is(u";") && !is(u"ORDER"))
        failExpression(u"Syntax error"_s);
}

void Parser::parseOrder(Statement &s)
{
    if (!accept(u"ORDER"))
        return;
    expect(u"BY", 3138);
    do {
        if (!isName() && !token().isLiteral())
            raise(3138);
        OrderItem item;
        item.expr = expression();
        item.descending = accept(u"DESC");
        if (!item.descending)
            accept(u"ASC");
        s.order.push_back(std::move(item));
    } while (accept(u","));
}

void Parser::parseFrom(Statement &s, long otherwise)
{
    do {
        if (!isName() && !is(u"(") && token().kind != TokenKind::OpenName)
            raise(otherwise);
        s.from.push_back(parseSource());
    } while (accept(u","));
}

SourcePtr Parser::parseSource()
{
    SourcePtr source = parseJoinOperand(3131);
    JoinKind kind = JoinKind::Inner;
    while (acceptJoin(kind)) {
        auto join = std::make_unique<Source>();
        join->join = kind;
        join->left = std::move(source);
        join->right = parseJoinOperand(3135);
        expect(u"ON", 3135);
        join->on = expression();
        requireOperator();
        source = std::move(join);
    }
    return source;
}

SourcePtr Parser::parseJoinOperand(long otherwise)
{
    const Depth depth(*this);
    if (!accept(u"("))
        return parseTable(otherwise);
    SourcePtr inner = parseSource();
    expect(u")", 3135);
    return inner;
}

SourcePtr Parser::parseTable(long otherwise)
{
    auto source = std::make_unique<Source>();
    source->table = takeName(otherwise);
    if (accept(u"AS") || (isName() && !is(u"OUTER")))
        source->alias = takeName(otherwise);
    return source;
}

bool Parser::acceptJoin(JoinKind &kind)
{
    if (accept(u"INNER")) {
        kind = JoinKind::Inner;
    } else if (is(u"LEFT") || is(u"RIGHT")) {
        kind = is(u"LEFT") ? JoinKind::Left : JoinKind::Right;
        ++m_at;
        accept(u"OUTER");
    } else {
        return false;
    }
    expect(u"JOIN", 3135);
    return true;
}

ExprPtr Parser::expression()
{
    m_exprBegin = token().begin;
    return nested();
}

ExprPtr Parser::logic(size_t level)
{
    if (level == std::size(kLogicLevels))
        return negation();
    ExprPtr left = logic(level + 1);
    const char16_t *op = kLogicLevels[level].ops[0];
    while (accept(op))
        left = makeExpr(ExprKind::Logic, QString::fromUtf16(op), std::move(left), logic(level + 1));
    return left;
}

ExprPtr Parser::negation()
{
    if (!accept(u"NOT"))
        return comparison();
    const Depth depth(*this);
    return makeExpr(ExprKind::Not, {}, negation());
}

ExprPtr Parser::comparison()
{
    ExprPtr left = value(0);
    for (bool taken = true; taken;)
        left = predicate(std::move(left), taken);
    return left;
}

ExprPtr Parser::predicate(ExprPtr left, bool &taken)
{
    for (const char16_t *op : {u"=", u"<>", u"<=", u">=", u"<", u">"}) {
        if (accept(op))
            return makeExpr(ExprKind::Compare, QString::fromUtf16(op), std::move(left), value(0));
    }
    if (accept(u"IS")) {
        ExprPtr isNull = makeExpr(ExprKind::IsNull, {}, std::move(left));
        isNull->negated = accept(u"NOT");
        if (!accept(u"NULL"))
            failExpression(u"Syntax error"_s);
        return isNull;
    }
    const size_t start = m_at;
    const bool negated = accept(u"NOT");
    ExprPtr result;
    if (accept(u"LIKE")) {
        result = makeExpr(ExprKind::Like, {}, std::move(left), value(0));
    } else if (accept(u"BETWEEN")) {
        result = makeExpr(ExprKind::Between, {}, std::move(left), value(0));
        if (!accept(u"AND"))
            failExpression(u"Syntax error"_s);
        result->args.push_back(value(0));
    } else if (accept(u"IN")) {
        result = makeExpr(ExprKind::In, {}, std::move(left));
        if (!accept(u"("))
            failExpression(u"Syntax error"_s);
        do {
            result->args.push_back(value(0));
        } while (accept(u","));
        if (!accept(u")"))
            failOperand();
    } else {
        m_at = start;
        taken = false;
        return left;
    }
    result->negated = negated;
    return result;
}

ExprPtr Parser::value(size_t level)
{
    if (level == std::size(kValueLevels))
        return unary();
    ExprPtr left = value(level + 1);
    for (bool again = true; again;) {
        again = false;
        for (const char16_t *op : kValueLevels[level].ops) {
            if (!op || !accept(op))
                continue;
            left = makeExpr(ExprKind::Binary, QString::fromUtf16(op), std::move(left), value(level + 1));
            again = true;
        }
    }
    return left;
}

ExprPtr Parser::unary()
{
    const Depth depth(*this);
    if (accept(u"-"))
        return makeExpr(ExprKind::Negate, {}, unary());
    if (accept(u"+"))
        return unary();
    return power();
}

ExprPtr Parser::power()
{
    ExprPtr left = operand();
    while (accept(u"^"))
        left = makeExpr(ExprKind::Binary, u"^"_s, std::move(left),
                        accept(u"-") ? makeExpr(ExprKind::Negate, {}, operand()) : operand());
    return left;
}

ExprPtr Parser::operand()
{
    if (token().isLiteral()) {
        ExprPtr literal = makeExpr(ExprKind::Literal);
        // An error in a list quotes it from the literal that breaks it.
        if (m_inList && m_depth <= 1)
            m_exprBegin = token().begin;
        literal->literal = token().literal;
        ++m_at;
        return literal;
    }
    if (accept(u"NULL"))
        return makeExpr(ExprKind::Null);
    if (accept(u"ON")) { // the constant; the ON of a join never stands where an operand does
        ExprPtr constant = makeExpr(ExprKind::Column);
        constant->name = u"On"_s;
        return constant;
    }
    if (accept(u"(")) {
        const Depth depth(*this);
        ExprPtr inner = nested();
        if (!accept(u")"))
            failOperand();
        return inner;
    }
    return nameOperand();
}

ExprPtr Parser::nameOperand()
{
    if (token().kind == TokenKind::OpenName)
        raise(3126, word().toString());
    if (!isName())
        failOperand();
    ExprPtr column = makeExpr(ExprKind::Column);
    column->name = takeName(3075);
    if (accept(u".")) {
        column->table = column->name;
        if (!isName())
            failOperand();
        column->name = takeName(3075);
    }
    if (is(u"("))
        raise(3085, column->name);
    return column;
}

/** After a whole expression an operand cannot follow. */
void Parser::requireOperator()
{
    const TokenKind kind = token().kind;
    if (isName() || token().isLiteral() || is(u"(") || is(u"NOT"))
        failExpression(u"Syntax error (missing operator)"_s);
    if (kind == TokenKind::OpenText || kind == TokenKind::OpenDate || kind == TokenKind::Unknown)
        failOperand();
}

void Parser::failOperand()
{
    switch (token().kind) {
    case TokenKind::OpenText:
        failExpression(u"Syntax error in string"_s);
    case TokenKind::OpenDate:
        failExpression(u"Syntax error in date"_s);
    case TokenKind::End:
        failExpression(u"Syntax error (missing operator)"_s);
    default:
        break;
    }
    if (isName() || token().isLiteral())
        failExpression(u"Syntax error (missing operator)"_s);
    failExpression(is(u",") ? u"Syntax error (comma)"_s : u"Syntax error"_s);
}

void Parser::failExpression(const QString &message)
{
    QStringView quoted = QStringView(m_lexed.text).mid(m_exprBegin).trimmed();
    if (quoted.endsWith(u';'))
        quoted = quoted.chopped(1).trimmed();
    if (m_inList && quoted.endsWith(u')'))
        quoted = quoted.chopped(1).trimmed();
    raise(3075, message, quoted.toString());
}

} // namespace

ast::Statement parse(const Lexed &lexed) { return Parser(lexed).run(); }

} // namespace dao
