#include "platform/dao/Lexer.h"

namespace dao {

namespace {

bool isBlank(QChar c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }

bool isNameStart(QChar c) { return c.isLetter() || c == u'_' || c.isSurrogate(); }

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

bool isNamePart(QChar c) { return isNameStart(c) || c.isDigit() || c.isMark() || c == u'$'; }

class Scanner
{
public:
    explicit Scanner(const QString &text)
    {
        m_out.text = text;
        m_out.tokens.reserve(48);
        m_out.shape.reserve(text.size() + 16);
    }

    Lexed run()
    {
        while (skipBlanks()) {
            m_begin = m_at;
            scanToken();
        }
        m_begin = m_at;
        m_out.tokens.push_back({TokenKind::End, m_at, m_at, -1});
        return std::move(m_out);
    }

private:
    QChar peek(qsizetype ahead = 0) const
    {
        const qsizetype i = m_at + ahead;
        return i < m_out.text.size() ? m_out.text.at(i) : QChar();
    }
    bool atEnd() const { return m_at >= m_out.text.size(); }

    bool skipBlanks()
    {
        while (!atEnd() && isBlank(peek()))
            ++m_at;
        return !atEnd();
    }

    void scanToken()
    {
        const QChar c = peek();
        if (isNameStart(c))
            scanName();
        else if (isDigit(c) || (c == u'.' && isDigit(peek(1))))
            scanNumber();
        else if (c == u'\'' || c == u'"')
            scanText(c);
        else if (c == u'#')
            scanDate();
        else if (c == u'[')
            scanQuotedName();
        else
            scanSymbol();
    }

    void scanName()
    {
        while (!atEnd() && isNamePart(peek()))
            ++m_at;
        add(TokenKind::Name);
    }

    void skipDigits()
    {
        while (isDigit(peek()))
            ++m_at;
    }

    void scanNumber()
    {
        skipDigits();
        bool real = false;
        if (peek() == u'.') {
            real = true;
            ++m_at;
            skipDigits();
        }
        const bool sign = peek(1) == u'+' || peek(1) == u'-';
        if ((peek() == u'e' || peek() == u'E') && isDigit(peek(sign ? 2 : 1))) {
            real = true;
            m_at += sign ? 2 : 1;
            skipDigits();
        }
        addNumber(real);
    }

    void addNumber(bool real)
    {
        const QStringView text = QStringView(m_out.text).mid(m_begin, m_at - m_begin);
        bool fits = false;
        const qint64 whole = real ? 0 : text.toLongLong(&fits);
        if (fits)
            addLiteral(TokenKind::Integer, Value(whole));
        else
            addLiteral(TokenKind::Real, Value(text.toDouble()));
    }

    void scanText(QChar quote)
    {
        const qsizetype start = ++m_at;
        bool doubled = false;
        for (;; ++m_at) {
            if (atEnd())
                return add(TokenKind::OpenText);
            if (peek() != quote)
                continue;
            if (peek(1) != quote)
                break;
            doubled = true;
            ++m_at;
        }
        QString value = m_out.text.mid(start, m_at - start);
        if (doubled)
            value.replace(QString(2, quote), QString(quote));
        ++m_at;
        addLiteral(TokenKind::Text, Value(value));
    }

    void scanDate()
    {
        const qsizetype start = ++m_at;
        while (!atEnd() && peek() != u'#')
            ++m_at;
        if (atEnd())
            return add(TokenKind::OpenDate);
        const QString inside = m_out.text.mid(start, m_at - start);
        ++m_at;
        addLiteral(TokenKind::Date, Value(inside));
    }

    void scanQuotedName()
    {
        while (!atEnd() && peek() != u']')
            ++m_at;
        if (atEnd())
            return add(TokenKind::OpenName);
        ++m_at;
        add(TokenKind::QuotedName);
    }

    void scanSymbol()
    {
        const QChar c = peek();
        ++m_at;
        if (!QStringView(u"(),.;*=<>+-/\\^&").contains(c))
            return add(TokenKind::Unknown);
        if ((c == u'<' && (peek() == u'=' || peek() == u'>')) || (c == u'>' && peek() == u'='))
            ++m_at;
        add(TokenKind::Symbol);
    }

    void add(TokenKind kind)
    {
        m_out.tokens.push_back({kind, m_begin, m_at, -1});
        m_out.shape.append(m_out.text.constData() + m_begin, int(m_at - m_begin));
        m_out.shape.append(u' ');
    }

    void addLiteral(TokenKind kind, Value value)
    {
        m_out.tokens.push_back({kind, m_begin, m_at, int(m_out.literals.size())});
        m_out.literals.push_back({kind, std::move(value)});
        // A control character cannot occur in a name, so no statement can spell this mark.
        m_out.shape.append(QChar(1));
        m_out.shape.append(QChar(u'a' + int(kind)));
    }

    Lexed m_out;
    qsizetype m_at = 0;
    qsizetype m_begin = 0;
};

} // namespace

Lexed lex(const QString &text) { return Scanner(text).run(); }

} // namespace dao
