#pragma once

#include "platform/dao/Dao.h"
#include "platform/dao/RowWriter.h"

#include <QSet>

namespace dao {

class RecordsetPrivate
{
public:
    RecordsetPrivate(std::shared_ptr<Session> session, std::shared_ptr<const Plan> plan, Bindings bindings);

    /** Throws 3420 when the recordset or its database is closed. */
    void requireOpen() const;
    void requireRow() const;
    void requireUpdatable() const;
    bool isEof() const { return m_current >= rowCount(); }
    int rowCount() const { return int(m_rows.size()); }

    /** Index of a result column; throws 3265. */
    int outputOf(const QString &name) const;
    int outputOf(int index) const;
    Value field(int output) const;
    void set(int output, const Value &value);
    void run();
    void edit();
    void addNew();
    void update();
    void remove();
    void moveTo(int row);

    enum class Buffer { None, Edit, New };

    std::shared_ptr<Session> m_session;
    std::shared_ptr<const Plan> m_plan;
    Bindings m_bindings;

    struct Row {
        std::vector<Value> values;
        RowKeys keys;
        bool deleted = false;
    };
    std::vector<Row> m_rows;
    int m_current = 0; // -1: before the first
    int m_visited = 0; // rows seen so far
    bool m_open = true;

    Buffer m_buffer = Buffer::None;
    std::vector<Value> m_edited; // the row as it will be
    Assigned m_assigned;

private:
    const std::vector<Value> &currentValues() const;
    Value newRowValue(const Output &output) const;
    void refresh(Row &row, const RowKeys &before);
};

} // namespace dao
