#pragma once

#include "platform/dao/Value.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <memory>
#include <vector>

namespace dao {

namespace sqlite {
class Connection;
}

enum class Kind { Auto, Integer, Number, YesNo, Date, Text, Memo };

struct Column {
    QString name;
    Kind kind = Kind::Text;
    int size = 255; // characters, Text only
    bool required = false;
    bool nonEmpty = false; // "" is refused
    Value defaultValue;
};

struct Table {
    QString name;
    QByteArray sqlName; // quoted for SQLite
    /** The whole-number column that names a row, quoted: the declared key or a hidden one. A column and not
       "rowid", because SQLite finds the latter not inside bracketed joins. */
    QByteArray key;
    int keyColumn = -1; // the declared column that is the key, or -1
    bool hasAuto = false;
    std::vector<Column> columns;

    int indexOf(const QString &column) const { return m_index.value(column.toCaseFolded(), -1); }
    void addColumn(Column column);

private:
    QHash<QString, int> m_index;
};

/** The tables of an open database, read once: nothing can change them while it is open. */
class Schema
{
public:
    static Schema load(sqlite::Connection &connection);
    /** Without regard to case; null when there is none. */
    const Table *find(const QString &name) const;
    const std::vector<std::unique_ptr<Table>> &tables() const { return m_tables; }

private:
    std::vector<std::unique_ptr<Table>> m_tables;
    QHash<QString, const Table *> m_index;
};

/** The name as SQLite must read it, whatever characters it holds. */
QByteArray quoteName(const QString &name);

/** SQLite's CREATE statement for a definition in the declared types of this layer:
    CREATE TABLE name (column AUTO | INTEGER | NUMBER | YESNO | DATE | TEXT(n) | MEMO [NOT NULL] [NOT EMPTY]
    [PRIMARY KEY] [UNIQUE] [DEFAULT literal], …) or CREATE [UNIQUE] INDEX name ON table (column, …).
    Throws 3290 when it cannot be read. */
QByteArray translateDefinition(const QString &definition);

/** Name of the key column of tables that declare none. */
inline constexpr char16_t kHiddenKey[] = u"~Key";

} // namespace dao
