#include "platform/dao/Convert.h"
#include "platform/dao/DateText.h"
#include "platform/dao/Errors.h"
#include "platform/dao/RecordsetPrivate.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

const QString kSource = u"DAO.Recordset"_s;
const QString kFieldSource = u"DAO.Field"_s;

} // namespace

RecordsetPrivate::RecordsetPrivate(std::shared_ptr<Session> session, std::shared_ptr<const Plan> plan,
                                   Bindings bindings)
    : m_session(std::move(session))
    , m_plan(std::move(plan))
    , m_bindings(std::move(bindings))
{
    run();
}

void RecordsetPrivate::requireOpen() const
{
    if (!m_open)
        raise(3420);
    m_session->requireUsable();
}

void RecordsetPrivate::requireRow() const
{
    if (m_current < 0 || isEof())
        raise(3021);
}

void RecordsetPrivate::requireUpdatable() const
{
    if (!m_plan->updatable)
        raise(3027);
}

void RecordsetPrivate::run()
{
    sqlite::Use statement(m_session->prepare(m_plan->sql));
    m_session->bind(*statement, *m_plan, m_bindings);
    const size_t columns = m_plan->outputs.size();
    const size_t keys = m_plan->updatable ? m_plan->tables.size() : 0;
    m_rows.clear();
    while (statement->step()) {
        Row &row = m_rows.emplace_back();
        row.values.reserve(columns);
        for (size_t i = 0; i < columns; ++i)
            row.values.push_back(readColumn(*statement, int(i), m_plan->outputs[i].kind));
        for (size_t i = columns; i < columns + keys; ++i) {
            const bool missing = statement->isNull(int(i));
            row.keys.push_back(missing ? std::nullopt : std::optional(statement->integer(int(i))));
        }
    }
    m_buffer = Buffer::None;
    m_current = 0;
    m_visited = std::min(1, rowCount());
}

int RecordsetPrivate::outputOf(const QString &name) const
{
    // Most callers spell the name as the table does; comparing costs less than folding.
    for (size_t i = 0; i < m_plan->outputs.size(); ++i) {
        if (m_plan->outputs[i].name == name)
            return int(i);
    }
    const int output = m_plan->outputIndex.value(name.toCaseFolded(), -1);
    if (output < 0)
        raise(3265);
    return output;
}

int RecordsetPrivate::outputOf(int index) const
{
    if (index < 0 || index >= int(m_plan->outputs.size()))
        raise(3265);
    return index;
}

const std::vector<Value> &RecordsetPrivate::currentValues() const
{
    if (m_buffer != Buffer::None)
        return m_edited;
    requireRow();
    const Row &row = m_rows[size_t(m_current)];
    if (row.deleted)
        raise(3167);
    return row.values;
}

Value RecordsetPrivate::field(int output) const
{
    const Value &value = currentValues()[size_t(output)];
    const auto *days = std::get_if<double>(&value.data());
    return days && m_plan->outputs[size_t(output)].kind == Kind::Date ? Value(fromOleDate(*days)) : value;
}

void RecordsetPrivate::set(int output, const Value &value)
{
    if (m_buffer == Buffer::None)
        raise(3020);
    const Output &out = m_plan->outputs[size_t(output)];
    if (out.from < 0)
        raise(3113, out.name);
    const Column &column = m_plan->tables[size_t(out.from)]->columns[size_t(out.column)];
    // A missing row's join column comes from its parent and cannot be told otherwise.
    const bool isChildKey = std::any_of(m_plan->links.begin(), m_plan->links.end(), [&](const Link &link) {
        return link.outer && link.child == out.from && link.childColumn == out.column;
    });
    if (column.kind == Kind::Auto || isChildKey)
        raise(3113, column.name);
    const Value stored = convertFor(column, value);
    m_edited[size_t(output)] = stored;
    m_assigned[{out.from, out.column}] = stored;
}

void RecordsetPrivate::edit()
{
    requireRow();
    requireUpdatable();
    const Row &row = m_rows[size_t(m_current)];
    if (row.deleted)
        raise(3167);
    m_edited = row.values;
    m_assigned.clear();
    m_buffer = Buffer::Edit;
}

void RecordsetPrivate::addNew()
{
    requireUpdatable();
    m_edited.clear();
    m_assigned.clear();
    for (const Output &output : m_plan->outputs)
        m_edited.push_back(newRowValue(output));
    m_buffer = Buffer::New;
}

Value RecordsetPrivate::newRowValue(const Output &output) const
{
    if (output.from < 0)
        return {};
    const Table &table = *m_plan->tables[size_t(output.from)];
    const Column &column = table.columns[size_t(output.column)];
    if (column.kind == Kind::Auto)
        return m_session->nextAuto(table);
    // Rows that join columns would make exist only once something is assigned to them.
    const bool optional = std::any_of(m_plan->links.begin(), m_plan->links.end(),
                                      [&](const Link &l) { return l.child == output.from; });
    return optional ? Value() : column.defaultValue;
}

void RecordsetPrivate::update()
{
    if (m_buffer == Buffer::None)
        raise(3020);
    RowWriter writer(*m_session, *m_plan);
    if (m_buffer == Buffer::New) {
        Row row;
        row.keys.resize(m_plan->tables.size());
        row.values = m_edited;
        const RowKeys before = row.keys;
        writer.writeNew(row.keys, m_assigned);
        refresh(row, before);
        // The new row comes last; whoever was at the end stays at the end.
        const bool atEnd = isEof();
        m_rows.push_back(std::move(row));
        if (atEnd)
            m_current = rowCount();
    } else {
        Row &row = m_rows[size_t(m_current)];
        const RowKeys before = row.keys;
        writer.write(row.keys, m_assigned);
        row.values = m_edited;
        refresh(row, before);
    }
    m_buffer = Buffer::None;
}

/** Shows what the database has made of rows that were added: numbers, defaults and join columns. */
void RecordsetPrivate::refresh(Row &row, const RowKeys &before)
{
    if (row.keys == before)
        return;
    RowWriter reader(*m_session, *m_plan);
    for (size_t from = 0; from < row.keys.size(); ++from) {
        if (row.keys[from] == before[from])
            continue;
        const std::vector<Value> stored = reader.read(int(from), *row.keys[from]);
        for (size_t i = 0; i < m_plan->outputs.size() && !stored.empty(); ++i) {
            const Output &output = m_plan->outputs[i];
            if (output.from == int(from))
                row.values[i] = stored[size_t(output.column)];
        }
    }
}

void RecordsetPrivate::remove()
{
    requireRow();
    requireUpdatable();
    Row &row = m_rows[size_t(m_current)];
    if (row.deleted)
        raise(3167);
    m_buffer = Buffer::None;
    RowWriter(*m_session, *m_plan).remove(row.keys);
    row.deleted = true;
}

void RecordsetPrivate::moveTo(int row)
{
    m_buffer = Buffer::None;
    m_current = row;
    m_visited = std::max(m_visited, std::min(row + 1, rowCount()));
}

Recordset::Recordset(std::unique_ptr<RecordsetPrivate> p)
    : d(std::move(p))
{
}
Recordset::Recordset(Recordset &&) noexcept = default;
Recordset &Recordset::operator=(Recordset &&) noexcept = default;
Recordset::~Recordset() = default;

bool Recordset::Bof() const { return d->rowCount() == 0 || d->m_current < 0; }

bool Recordset::Eof() const { return d->isEof(); }

void Recordset::MoveFirst()
{
    operation(kSource, [&] {
        d->requireOpen();
        if (d->rowCount() == 0)
            raise(3021);
        d->moveTo(0);
    });
}

void Recordset::MoveNext()
{
    operation(kSource, [&] {
        d->requireOpen();
        if (d->isEof())
            raise(3021);
        d->moveTo(d->m_current + 1);
    });
}

void Recordset::MoveLast()
{
    operation(kSource, [&] {
        d->requireOpen();
        if (d->rowCount() == 0)
            raise(3021);
        d->moveTo(d->rowCount() - 1);
    });
}

long Recordset::RecordCount() const { return d->m_visited; }

QStringList Recordset::FieldNames() const
{
    QStringList names;
    for (const Output &output : d->m_plan->outputs)
        names.append(output.name);
    return names;
}

Value Recordset::Field(const QString &name) const
{
    return operation(kFieldSource, [&] {
        d->requireOpen();
        return d->field(d->outputOf(name));
    });
}

Value Recordset::Field(int index) const
{
    return operation(kFieldSource, [&] {
        d->requireOpen();
        return d->field(d->outputOf(index));
    });
}

void Recordset::Set(const QString &name, const Value &value)
{
    operation(kFieldSource, [&] {
        d->requireOpen();
        d->set(d->outputOf(name), value);
    });
}

void Recordset::Edit()
{
    operation(kSource, [&] {
        d->requireOpen();
        d->edit();
    });
}

void Recordset::AddNew()
{
    operation(kSource, [&] {
        d->requireOpen();
        d->addNew();
    });
}

void Recordset::Update()
{
    operation(kSource, [&] {
        d->requireOpen();
        callAccessHook();
        d->update();
    });
}

void Recordset::CancelUpdate()
{
    operation(kSource, [&] {
        d->requireOpen();
        if (d->m_buffer == RecordsetPrivate::Buffer::None)
            raise(3020);
        d->m_buffer = RecordsetPrivate::Buffer::None;
    });
}

void Recordset::Delete()
{
    operation(kSource, [&] {
        d->requireOpen();
        callAccessHook();
        d->remove();
    });
}

void Recordset::Requery()
{
    operation(kSource, [&] {
        d->requireOpen();
        callAccessHook();
        d->run();
    });
}

void Recordset::Close()
{
    operation(kSource, [&] {
        d->requireOpen();
        d->m_open = false;
        d->m_rows.clear();
    });
}

} // namespace dao
