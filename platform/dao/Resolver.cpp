#include "platform/dao/Resolver.h"

#include "platform/dao/Errors.h"
#include "platform/dao/FromWriter.h"
#include "platform/dao/Parser.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using namespace ast;

class Resolver
{
public:
    Resolver(const Lexed &lexed, const Schema &schema)
        : m_schema(schema)
        , m_statement(parse(lexed))
        , m_plan(std::make_shared<Plan>())
        , m_exprs(m_scope, lexed, *m_plan)
        , m_from(m_scope, m_exprs)
    {
    }

    std::shared_ptr<const Plan> run();

private:
    void openScope();
    QByteArray where();

    void resolveSelect();
    void addItem(const SelectItem &item, QList<QByteArray> &columns);
    void addStar(const QString &table, QList<QByteArray> &columns);
    void addColumn(ColumnRef ref, QList<QByteArray> &columns);
    void addExpression(const SelectItem &item, QList<QByteArray> &columns);
    void nameOutputs();
    QByteArray orderBy();
    QByteArray orderTerm(const Expr &expr);

    void resolveInsert();
    void resolveUpdate();
    Target target(const SetItem &item) const;
    bool updatesPlainly() const;
    void writePlainUpdate();
    void writeJoinedUpdate();
    void resolveDelete();
    void deleteTargets();

    QByteArray keyList() const;

    const Schema &m_schema;
    Statement m_statement;
    std::shared_ptr<Plan> m_plan;
    Scope m_scope;
    ExprWriter m_exprs;
    FromWriter m_from;
};

std::shared_ptr<const Plan> Resolver::run()
{
    switch (m_statement.kind) {
    case StatementKind::Select:
        resolveSelect();
        break;
    case StatementKind::Insert:
        resolveInsert();
        break;
    case StatementKind::Update:
        resolveUpdate();
        break;
    case StatementKind::Delete:
        resolveDelete();
        break;
    }
    m_exprs.finish();
    return m_plan;
}

void Resolver::openScope()
{
    for (const SourcePtr &source : m_statement.from)
        m_scope.add(*source, m_schema);
    for (int i = 0; i < m_scope.size(); ++i)
        m_plan->tables.push_back(&m_scope.table(i));
    if (m_statement.from.size() == 1)
        m_from.describe(*m_statement.from.front(), *m_plan);
}

QByteArray Resolver::where()
{
    return m_statement.where ? " WHERE " + m_exprs.condition(*m_statement.where) : QByteArray();
}

QByteArray Resolver::keyList() const
{
    QList<QByteArray> keys;
    for (int i = 0; i < m_scope.size(); ++i)
        keys.append(m_scope.keySql(i));
    return keys.join(", ");
}

void Resolver::resolveSelect()
{
    openScope();
    m_plan->updatable = m_statement.from.size() == 1;
    QList<QByteArray> columns;
    for (const SelectItem &item : m_statement.items)
        addItem(item, columns);
    nameOutputs();
    QByteArray sql = "SELECT " + columns.join(", ");
    if (m_plan->updatable)
        sql += ", " + keyList();
    sql += m_from.write(m_statement.from, m_statement.where.get());
    sql += where();
    m_plan->sql = sql + orderBy();
}

void Resolver::addItem(const SelectItem &item, QList<QByteArray> &columns)
{
    if (item.star)
        return addStar(item.table, columns);
    if (item.expr->kind == ExprKind::Column) {
        if (const auto ref = m_scope.resolve(*item.expr)) {
            addColumn(*ref, columns);
            m_plan->outputs.back().name = item.alias;
            return;
        }
    }
    addExpression(item, columns);
}

void Resolver::addStar(const QString &table, QList<QByteArray> &columns)
{
    const int only = table.isEmpty() ? -1 : m_scope.find(table);
    if (!table.isEmpty() && only < 0)
        raise(3078, table);
    for (int from = 0; from < m_scope.size(); ++from) {
        if (only >= 0 && from != only)
            continue;
        for (int column = 0; column < int(m_scope.table(from).columns.size()); ++column)
            addColumn({from, column}, columns);
    }
}

void Resolver::addColumn(ColumnRef ref, QList<QByteArray> &columns)
{
    const Column &column = m_scope.column(ref);
    columns.append(m_scope.sql(ref));
    Output output;
    output.qualifiedName = m_scope.exposedName(ref.from) + u'.' + column.name;
    output.from = ref.from;
    output.column = ref.column;
    output.kind = column.kind;
    m_plan->outputs.push_back(output);
}

void Resolver::addExpression(const SelectItem &item, QList<QByteArray> &columns)
{
    using Type = ExprWriter::Type;
    const ExprWriter::Written written = m_exprs.value(*item.expr);
    columns.append(written.sql);
    Output output;
    output.name
        = item.alias.isEmpty() ? u"Expr"_s + QString::number(1000 + m_plan->outputs.size()) : item.alias;
    output.kind = written.type == Type::Boolean ? Kind::YesNo
        : written.type == Type::Date            ? Kind::Date
        : written.type == Type::Number          ? Kind::Number
                                                : Kind::Memo;
    m_plan->outputs.push_back(output);
}

/** Columns of one name are told apart by their tables; all others bear the bare name, or their alias. */
void Resolver::nameOutputs()
{
    QHash<QString, int> bareNames;
    const auto bareName = [this](const Output &o) { return m_scope.column({o.from, o.column}).name; };
    for (const Output &output : m_plan->outputs) {
        if (output.name.isEmpty())
            ++bareNames[bareName(output).toCaseFolded()];
    }
    for (size_t i = 0; i < m_plan->outputs.size(); ++i) {
        Output &output = m_plan->outputs[i];
        if (output.name.isEmpty()) {
            const QString bare = bareName(output);
            output.name = bareNames.value(bare.toCaseFolded()) > 1 ? output.qualifiedName : bare;
        } else if (m_plan->outputIndex.contains(output.name.toCaseFolded())
                   || bareNames.contains(output.name.toCaseFolded())) {
            raise(3062, output.name);
        }
        m_plan->outputIndex.insert(output.name.toCaseFolded(), int(i));
    }
    // A unique column is found by its qualified name as well.
    for (size_t i = 0; i < m_plan->outputs.size(); ++i) {
        const QString qualified = m_plan->outputs[i].qualifiedName.toCaseFolded();
        if (!qualified.isEmpty() && !m_plan->outputIndex.contains(qualified))
            m_plan->outputIndex.insert(qualified, int(i));
    }
}

QByteArray Resolver::orderBy()
{
    QList<QByteArray> terms;
    for (const OrderItem &item : m_statement.order)
        terms.append(orderTerm(*item.expr) + (item.descending ? " DESC" : ""));
    // Equal rows, and rows that nothing orders, come in the tables' own order every time.
    for (int i = 0; i < m_scope.size(); ++i)
        terms.append(m_scope.keySql(i));
    return " ORDER BY " + terms.join(", ");
}

QByteArray Resolver::orderTerm(const Expr &expr)
{
    if (expr.kind == ExprKind::Column && expr.table.isEmpty() && !m_scope.resolve(expr)) {
        const int output = m_plan->outputIndex.value(expr.name.toCaseFolded(), -1);
        if (output >= 0)
            return QByteArray::number(output + 1);
    }
    if (expr.kind == ExprKind::Literal)
        raise(3138);
    const ExprWriter::Written written = m_exprs.value(expr);
    if (written.type == ExprWriter::Type::Memo && written.column)
        raise(3117, m_scope.column(*written.column).name);
    return written.sql;
}

void Resolver::resolveInsert()
{
    const Table *table = m_schema.find(m_statement.target);
    if (!table)
        raise(3078, m_statement.target);
    std::vector<int> columns;
    for (const QString &name : m_statement.columns) {
        columns.push_back(table->indexOf(name));
        if (columns.back() < 0)
            raise(3127, name);
        if (std::count(columns.begin(), columns.end(), columns.back()) > 1)
            raise(3134);
    }
    for (int i = 0; !m_statement.hasColumns && i < int(table->columns.size()); ++i)
        columns.push_back(i);
    if (columns.size() != m_statement.values.size())
        raise(3346);
    QList<QByteArray> names;
    QList<QByteArray> values;
    for (size_t i = 0; i < columns.size(); ++i) {
        const Column &column = table->columns[size_t(columns[i])];
        names.append(quoteName(column.name));
        values.append(m_exprs.stored(*m_statement.values[i], column));
    }
    const QByteArray rest
        = "INTO " + table->sqlName + " (" + names.join(", ") + ") VALUES (" + values.join(", ") + ')';
    m_plan->action = Action::Write;
    m_plan->sql = "INSERT " + rest;
    m_plan->lenientSql = "INSERT OR IGNORE " + rest;
}

Target Resolver::target(const SetItem &item) const
{
    const auto ref = m_scope.resolve(item.table, item.column);
    if (!ref)
        raise(3061, u"1"_s);
    if (m_scope.column(*ref).kind == Kind::Auto)
        raise(3113, m_scope.column(*ref).name);
    return {ref->from, ref->column};
}

void Resolver::resolveUpdate()
{
    openScope();
    for (const SetItem &item : m_statement.set)
        m_plan->targets.push_back(target(item));
    if (updatesPlainly())
        writePlainUpdate();
    else if (m_statement.from.size() == 1)
        writeJoinedUpdate();
    else
        raise(3073);
}

/** One table's rows get constants, or there is only one table: SQLite's own UPDATE does it. */
bool Resolver::updatesPlainly() const
{
    if (m_scope.size() == 1)
        return true;
    const int table = m_plan->targets.front().from;
    const auto isChild = [table](const Link &link) { return link.outer && link.child == table; };
    return m_statement.from.size() == 1
        && std::all_of(m_plan->targets.begin(), m_plan->targets.end(),
                       [table](Target t) { return t.from == table; })
        && std::all_of(m_statement.set.begin(), m_statement.set.end(),
                       [](const SetItem &item) { return ExprWriter::isConstant(*item.value); })
        && std::none_of(m_plan->links.begin(), m_plan->links.end(), isChild);
}

void Resolver::writePlainUpdate()
{
    const int from = m_plan->targets.front().from;
    const Table &table = m_scope.table(from);
    const bool single = m_scope.size() == 1;
    QList<QByteArray> sets;
    for (size_t i = 0; i < m_statement.set.size(); ++i) {
        const Column &column = table.columns[size_t(m_plan->targets[i].column)];
        sets.append(quoteName(column.name) + " = " + m_exprs.stored(*m_statement.set[i].value, column));
    }
    QByteArray rest
        = table.sqlName + (single ? " AS " + Scope::alias(0) : QByteArray()) + " SET " + sets.join(", ");
    if (single) {
        rest += where();
    } else {
        const QByteArray tables = m_from.write(m_statement.from, m_statement.where.get());
        rest += " WHERE " + table.key + " IN (SELECT " + m_scope.keySql(from) + tables + where() + ')';
    }
    m_plan->action = Action::Write;
    m_plan->sql = "UPDATE " + rest;
    m_plan->lenientSql = "UPDATE OR IGNORE " + rest;
}

void Resolver::writeJoinedUpdate()
{
    QList<QByteArray> values;
    for (size_t i = 0; i < m_statement.set.size(); ++i) {
        const Target t = m_plan->targets[i];
        values.append(m_exprs.stored(*m_statement.set[i].value, m_scope.column({t.from, t.column})));
    }
    const QByteArray from = m_from.write(m_statement.from, m_statement.where.get());
    m_plan->action = Action::JoinedUpdate;
    m_plan->sql = "SELECT " + keyList() + ", " + values.join(", ") + from + where();
}

void Resolver::resolveDelete()
{
    openScope();
    deleteTargets();
    if (m_scope.size() == 1) {
        m_plan->action = Action::Write;
        m_plan->sql = "DELETE FROM " + m_scope.table(0).sqlName + " AS " + Scope::alias(0) + where();
        m_plan->lenientSql = m_plan->sql;
        return;
    }
    QList<QByteArray> keys;
    for (const Target &t : m_plan->targets)
        keys.append(m_scope.keySql(t.from));
    const QByteArray from = m_from.write(m_statement.from, m_statement.where.get());
    m_plan->action = Action::JoinedDelete;
    m_plan->sql = "SELECT DISTINCT " + keys.join(", ") + from + where();
}

/** The tables named by table.*; with several tables in FROM nothing else says which rows go. */
void Resolver::deleteTargets()
{
    const auto add = [this](int from) {
        const auto known = [from](const Target &t) { return t.from == from; };
        if (std::none_of(m_plan->targets.begin(), m_plan->targets.end(), known))
            m_plan->targets.push_back({from, 0});
    };
    for (const SelectItem &item : m_statement.items) {
        if (!item.star) {
            m_exprs.value(*item.expr);
            continue;
        }
        const int from = item.table.isEmpty() ? (m_scope.size() == 1 ? 0 : -1) : m_scope.find(item.table);
        if (from < 0 && !item.table.isEmpty())
            raise(3078, item.table);
        if (from >= 0)
            add(from);
    }
    if (m_scope.size() == 1)
        add(0);
    if (m_plan->targets.empty())
        raise(3128);
}

} // namespace

std::shared_ptr<const Plan> resolve(const Lexed &lexed, const Schema &schema)
{
    return Resolver(lexed, schema).run();
}

std::shared_ptr<const Plan> resolveTable(const QString &name, const Schema &schema)
{
    const Table *table = schema.find(name);
    if (!table)
        return {};
    return resolve(lex(u"SELECT * FROM ["_s + table->name + u']'), schema);
}

} // namespace dao
