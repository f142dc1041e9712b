#pragma once

#include "platform/dao/Lexer.h"
#include "platform/dao/Schema.h"

#include <optional>

namespace dao {

/** Where the value of an SQLite parameter comes from. */
struct Parameter {
    int literal = -1; // a literal of the statement, or the constant below
    Value constant;
    bool negated = false;
    bool isStrict = false; // 1 when rows that cannot be written are errors
    const Column *store = nullptr; // converted for this column
};

/** One column of a result. */
struct Output {
    QString name;
    QString qualifiedName; // table.column, or empty
    int from = -1; // table of FROM that it shows unchanged, or -1
    int column = -1;
    Kind kind = Kind::Text;
};

/** An equality of an outermost-first join: a new child row takes its column from the parent row. */
struct Link {
    int parent = 0;
    int parentColumn = 0;
    int child = 0;
    int childColumn = 0;
    bool outer = false;
};

/** A column that a statement sets, by table of FROM. */
struct Target {
    int from = 0;
    int column = 0;
};

enum class Action { Select, Write, JoinedUpdate, JoinedDelete };

/** A statement understood: SQLite's SQL, what to bind, and what its rows mean. Depends on the statement's
   shape only, so that all statements of one shape share it. */
struct Plan {
    Action action = Action::Select;
    QByteArray sql;
    QByteArray lenientSql; // Write: skips rows that cannot be written
    std::vector<Parameter> params;
    std::vector<const Table *> tables; // those of FROM, in order

    // Select
    std::vector<Output> outputs; // the tables' keys follow in the row when updatable
    QHash<QString, int> outputIndex;
    bool updatable = false;

    // Select and JoinedUpdate: how rows of a join are written
    std::vector<Link> links;
    std::vector<int> writeOrder; // tables of FROM, preserved side first

    // JoinedUpdate: the keys of all tables, then these values. JoinedDelete: the keys of these tables.
    std::vector<Target> targets;
};

} // namespace dao
