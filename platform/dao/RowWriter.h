#pragma once

#include "platform/dao/Session.h"

#include <map>

namespace dao {

/** The rows that one row of a query is made of: the key in each table of FROM, or none where the row is
 * missing. */
using RowKeys = std::vector<std::optional<qint64>>;

/** Columns to be written, by table of FROM and column. */
using Assigned = std::map<std::pair<int, int>, Value>;

/** Writes through a query: changes the rows that exist, adds those that are missing, from the preserved side
   of the joins outwards. A new row of a joined table takes its join columns from its parent. */
class RowWriter
{
public:
    RowWriter(Session &session, const Plan &plan)
        : m_session(session)
        , m_plan(plan)
    {
    }

    /** Keys of added rows are entered into keys. Throws 3167, 3314, 3022, 3100, 3332 …; nothing is written
     * then. */
    void write(RowKeys &keys, const Assigned &assigned) { write(keys, assigned, false); }
    /** Writes a wholly new row: the outermost table gets one even if nothing is assigned to it. */
    void writeNew(RowKeys &keys, const Assigned &assigned) { write(keys, assigned, true); }
    /** Deletes the row of the last table that has one. */
    void remove(const RowKeys &keys);
    /** Reads a table's row again; empty when it is gone. */
    std::vector<Value> read(int from, qint64 key);

private:
    void write(RowKeys &keys, const Assigned &assigned, bool isNew);
    void change(int from, qint64 key, const Assigned &assigned);
    qint64 add(int from, const RowKeys &keys, const Assigned &assigned);
    Value parentValue(const Link &link, const RowKeys &keys);
    void checkJoinColumns(const Assigned &assigned) const;

    Session &m_session;
    const Plan &m_plan;
};

/** A column's value as its kind reads it from SQLite; a date stays a day number, because making thousands of
    local times takes longer than reading them. */
Value readColumn(const sqlite::Statement &statement, int index, Kind kind);

} // namespace dao
