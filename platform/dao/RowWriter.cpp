#include "platform/dao/RowWriter.h"

#include "platform/dao/Convert.h"
#include "platform/dao/Errors.h"

namespace dao {

namespace {

/** The assignments to one table of FROM. */
auto columnsOf(const Assigned &assigned, int from)
{
    return std::pair(assigned.lower_bound({from, 0}), assigned.lower_bound({from + 1, 0}));
}

} // namespace

Value readColumn(const sqlite::Statement &statement, int index, Kind kind)
{
    if (statement.isNull(index))
        return {};
    switch (kind) {
    case Kind::Auto:
    case Kind::Integer:
        return statement.integer(index);
    case Kind::Number:
    case Kind::Date:
        return statement.number(index);
    case Kind::YesNo:
        return statement.integer(index) != 0;
    default:
        return statement.text(index);
    }
}

void RowWriter::write(RowKeys &keys, const Assigned &assigned, bool isNew)
{
    checkJoinColumns(assigned);
    RowKeys written = keys;
    const auto writeAll = [&] {
        for (const int from : m_plan.writeOrder) {
            const auto [first, last] = columnsOf(assigned, from);
            if (first == last && !(isNew && from == m_plan.writeOrder.front()))
                continue;
            auto &key = written[size_t(from)];
            if (key)
                change(from, *key, assigned);
            else
                key = add(from, written, assigned);
        }
    };
    // One table's statement undoes itself.
    if (m_plan.tables.size() == 1) {
        m_session.beginWrite();
        writeAll();
    } else {
        m_session.atomically(writeAll);
    }
    m_session.endWrite();
    keys = written;
}

void RowWriter::checkJoinColumns(const Assigned &assigned) const
{
    for (const Link &link : m_plan.links) {
        const auto parent = assigned.find({link.parent, link.parentColumn});
        if (parent != assigned.end() && parent->second.isNull())
            raise(3100, m_plan.tables[size_t(link.parent)]->columns[size_t(link.parentColumn)].name);
    }
}

void RowWriter::change(int from, qint64 key, const Assigned &assigned)
{
    const Table &table = *m_plan.tables[size_t(from)];
    const auto [first, last] = columnsOf(assigned, from);
    QByteArray sql = "UPDATE " + table.sqlName + " SET ";
    int count = 0;
    for (auto it = first; it != last; ++it) {
        sql += (count == 0 ? "" : ", ") + quoteName(table.columns[size_t(it->first.second)].name) + " = ?";
        ++count;
    }
    sqlite::Use statement(m_session.prepare(sql + " WHERE " + table.key + " = ?"));
    int i = 0;
    for (auto it = first; it != last; ++it)
        statement->bind(++i, it->second);
    statement->bind(++i, Value(key));
    statement->step();
    if (m_session.changes() == 0)
        raise(3167);
}

qint64 RowWriter::add(int from, const RowKeys &keys, const Assigned &assigned)
{
    const Table &table = *m_plan.tables[size_t(from)];
    std::map<int, Value> values;
    for (const Link &link : m_plan.links) {
        if (link.child == from)
            values[link.childColumn] = parentValue(link, keys);
    }
    const auto [first, last] = columnsOf(assigned, from);
    for (auto it = first; it != last; ++it)
        values.insert({it->first.second, it->second});
    QByteArray names;
    QByteArray marks;
    for (const auto &[column, value] : values) {
        names += (names.isEmpty() ? "" : ", ") + quoteName(table.columns[size_t(column)].name);
        marks += marks.isEmpty() ? "?" : ", ?";
    }
    sqlite::Use statement(m_session.prepare(
        "INSERT INTO " + table.sqlName
        + (names.isEmpty() ? QByteArray(" DEFAULT VALUES") : " (" + names + ") VALUES (" + marks + ')')));
    int i = 0;
    for (const auto &[column, value] : values)
        statement->bind(++i, value);
    statement->step();
    return m_session.lastInsertedKey();
}

Value RowWriter::parentValue(const Link &link, const RowKeys &keys)
{
    const auto &key = keys[size_t(link.parent)];
    if (!key)
        raise(3332);
    const std::vector<Value> row = read(link.parent, *key);
    if (row.empty())
        raise(3167);
    return row[size_t(link.parentColumn)];
}

std::vector<Value> RowWriter::read(int from, qint64 key)
{
    const Table &table = *m_plan.tables[size_t(from)];
    QByteArray names;
    for (const Column &column : table.columns)
        names += (names.isEmpty() ? "" : ", ") + quoteName(column.name);
    sqlite::Use statement(
        m_session.prepare("SELECT " + names + " FROM " + table.sqlName + " WHERE " + table.key + " = ?"));
    statement->bind(1, Value(key));
    std::vector<Value> row;
    if (!statement->step())
        return row;
    for (int i = 0; i < int(table.columns.size()); ++i)
        row.push_back(readColumn(*statement, i, table.columns[size_t(i)].kind));
    return row;
}

void RowWriter::remove(const RowKeys &keys)
{
    for (auto from = m_plan.writeOrder.rbegin(); from != m_plan.writeOrder.rend(); ++from) {
        const auto &key = keys[size_t(*from)];
        if (!key)
            continue;
        const Table &table = *m_plan.tables[size_t(*from)];
        m_session.beginWrite();
        {
            sqlite::Use statement(
                m_session.prepare("DELETE FROM " + table.sqlName + " WHERE " + table.key + " = ?"));
            statement->bind(1, Value(*key));
            statement->step();
        }
        if (m_session.changes() == 0)
            raise(3167);
        m_session.endWrite();
        return;
    }
}

} // namespace dao
