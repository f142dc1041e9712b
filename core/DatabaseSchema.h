#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace dao {
class Database;
}

/** What a database of this program consists of, read from the same definitions that make a new one. */
namespace schema {

enum class Kind { Auto, Integer, Number, YesNo, Date, Text, Memo };

struct Column {
    QString name;
    Kind kind;
    int size = 0; // of a text, in characters
};

struct Table {
    QString name;
    QList<Column> columns;
};

/** The CREATE statements, for dao::CreateDatabase. */
const QStringList &definitions();
/** The tables in the order of their definition. */
const QList<Table> &tables();
/** Throws the engine's error for a table or column that the open database lacks. */
void require(dao::Database &database);

} // namespace schema
