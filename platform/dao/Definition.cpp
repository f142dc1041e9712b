#include "platform/dao/Schema.h"

#include "platform/dao/Collation.h"
#include "platform/dao/Errors.h"
#include "platform/dao/Lexer.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

struct TypeRow {
    const char16_t *word;
    const char
        *sql; // the first word tells the kind when the file is read again, the last one SQLite's affinity
};
constexpr TypeRow kTypes[] = {
    {u"INTEGER", "INTEGER"}, {u"NUMBER", "NUMBER REAL"}, {u"YESNO", "YESNO INTEGER NOT NULL"},
    {u"DATE", "DATE REAL"},  {u"MEMO", "MEMO TEXT"},
};

class DefinitionReader
{
public:
    explicit DefinitionReader(const QString &definition)
        : m_lexed(lex(definition))
    {
    }

    QByteArray run()
    {
        expect(u"CREATE");
        const bool unique = accept(u"UNIQUE");
        QByteArray sql;
        if (!unique && accept(u"TABLE"))
            sql = table();
        else
            sql = index(unique);
        accept(u";");
        if (token().kind != TokenKind::End)
            raise(3142);
        return sql;
    }

private:
    const Token &token() const { return m_lexed.tokens[m_at]; }
    QStringView word() const { return m_lexed.view(token()); }

    bool accept(const char16_t *text)
    {
        if (token().isLiteral() || word().compare(QStringView(text), Qt::CaseInsensitive) != 0)
            return false;
        ++m_at;
        return true;
    }

    void expect(const char16_t *text)
    {
        if (!accept(text))
            raise(3290);
    }

    QString name()
    {
        const bool quoted = token().kind == TokenKind::QuotedName;
        if (!quoted && token().kind != TokenKind::Name)
            raise(3290);
        const QString text = (quoted ? word().mid(1, word().size() - 2) : word()).toString();
        ++m_at;
        return text;
    }

    QByteArray table()
    {
        const QByteArray tableName = quoteName(name());
        QByteArray body;
        expect(u"(");
        do {
            const QByteArray next = column();
            body += (body.isEmpty() ? "" : ", ") + next;
        } while (accept(u","));
        expect(u")");
        if (!m_hasKey)
            body.prepend(quoteName(QString::fromUtf16(kHiddenKey)) + " INTEGER PRIMARY KEY, ");
        return "CREATE TABLE " + tableName + " (" + body + ")";
    }

    QByteArray index(bool unique)
    {
        expect(u"INDEX");
        QByteArray sql = unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
        sql += quoteName(name());
        expect(u"ON");
        sql += " ON " + quoteName(name()) + " (";
        expect(u"(");
        do {
            sql += quoteName(name()) + ',';
        } while (accept(u","));
        expect(u")");
        sql.back() = ')';
        return sql;
    }

    QByteArray column()
    {
        const QString columnName = name();
        const QByteArray quoted = quoteName(columnName);
        if (accept(u"AUTO")) {
            m_hasKey = true;
            return quoted + " INTEGER PRIMARY KEY AUTOINCREMENT";
        }
        if (accept(u"TEXT")) {
            const QByteArray type = textType(columnName);
            return quoted + type + rules(columnName, false);
        }
        for (const TypeRow &row : kTypes) {
            if (accept(row.word)) {
                const bool memo = QByteArrayView(row.sql).startsWith("MEMO");
                return quoted + ' ' + row.sql + (memo ? collate() : QByteArray())
                    + rules(columnName, row.word[0] == u'Y');
            }
        }
        raise(3290);
    }

    static QByteArray collate() { return QByteArray(" COLLATE ") + kCollation; }

    QByteArray textType(const QString &columnName)
    {
        QByteArray size = "255";
        if (accept(u"(")) {
            if (token().kind != TokenKind::Integer)
                raise(3290);
            size = word().toUtf8();
            ++m_at;
            expect(u")");
        }
        const QByteArray quoted = quoteName(columnName);
        QByteArray type = " TEXT(" + size + ')';
        // The constraint's name carries the DAO number, because SQLite reports nothing else.
        QByteArray checks = collate() + " CONSTRAINT " + quoteName(u"3163 "_s + columnName) + " CHECK(length("
            + quoted + ") <= " + size + ')';
        if (token().kind == TokenKind::Name && word() == u"NOT"
            && m_lexed.view(m_lexed.tokens[m_at + 1]).compare(u"EMPTY"_s, Qt::CaseInsensitive) == 0) {
            m_at += 2;
            type = " TEXT NONEMPTY(" + size + ')';
            checks += " CONSTRAINT " + quoteName(u"3315 "_s + columnName) + " CHECK(" + quoted + " <> '')";
        }
        return type + checks;
    }

    QByteArray rules(const QString &columnName, bool yesNo)
    {
        QByteArray sql;
        bool hasDefault = false;
        for (;;) {
            if (accept(u"NOT")) {
                expect(u"NULL");
                sql += " NOT NULL";
            } else if (accept(u"PRIMARY")) {
                expect(u"KEY");
                // Not SQLite's own primary key: that one fills a missing whole number in silently.
                sql += " UNIQUE CONSTRAINT " + quoteName(u"3058 "_s + columnName) + " CHECK("
                    + quoteName(columnName) + " IS NOT NULL)";
            } else if (accept(u"UNIQUE")) {
                sql += " UNIQUE";
            } else if (accept(u"DEFAULT")) {
                hasDefault = true;
                sql += " DEFAULT " + literal();
            } else {
                return sql + (yesNo && !hasDefault ? " DEFAULT 0" : "");
            }
        }
    }

    QByteArray literal()
    {
        const QByteArray sign = accept(u"-") ? "-" : "";
        const bool isTrue = word().compare(u"True"_s, Qt::CaseInsensitive) == 0;
        if (isTrue || word().compare(u"False"_s, Qt::CaseInsensitive) == 0) {
            ++m_at;
            return isTrue ? "-1" : "0";
        }
        if (!token().isLiteral() || token().kind == TokenKind::Date)
            raise(3290);
        const Literal &value = m_lexed.literals[size_t(token().literal)];
        const bool isText = token().kind == TokenKind::Text;
        const QByteArray text = word().toUtf8();
        ++m_at;
        return isText ? '\'' + value.value.text().replace(u"'"_s, u"''"_s).toUtf8() + '\'' : sign + text;
    }

    Lexed m_lexed;
    size_t m_at = 0;
    bool m_hasKey = false;
};

} // namespace

QByteArray translateDefinition(const QString &definition) { return DefinitionReader(definition).run(); }

} // namespace dao
