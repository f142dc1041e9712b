#include "platform/dao/Schema.h"

#include "platform/dao/Sqlite.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

struct ColumnRow {
    QString name;
    QString type;
    bool notNull = false;
    QString defaultText;
    bool isKey = false;
};

/** The kind that a declared type stands for; types of foreign files are taken by their affinity. */
Kind kindOf(const QString &type)
{
    struct Row {
        const char16_t *word;
        Kind kind;
    };
    static constexpr Row kRows[] = {
        {u"YESNO", Kind::YesNo},   {u"DATE", Kind::Date},   {u"MEMO", Kind::Memo},
        {u"INT", Kind::Integer},   {u"TEXT(", Kind::Text},  {u"CHAR", Kind::Text},
        {u"NONEMPTY", Kind::Text}, {u"TEXT", Kind::Memo},   {u"CLOB", Kind::Memo},
        {u"NUMBER", Kind::Number}, {u"REAL", Kind::Number}, {u"DOUB", Kind::Number},
        {u"FLOA", Kind::Number},
    };
    for (const Row &row : kRows) {
        if (type.contains(QStringView(row.word), Qt::CaseInsensitive))
            return row.kind;
    }
    return Kind::Memo;
}

int sizeOf(const QString &type)
{
    const int size = type.section(u'(', 1).section(u')', 0, 0).toInt();
    return size > 0 ? size : 255;
}

Value defaultOf(Kind kind, QString text)
{
    if (text.isEmpty() || text.compare(u"NULL"_s, Qt::CaseInsensitive) == 0)
        return kind == Kind::YesNo ? Value(false) : Value();
    if (text.startsWith(u'\'') && text.endsWith(u'\'') && text.size() > 1)
        return text.mid(1, text.size() - 2).replace(u"''"_s, u"'"_s);
    if (kind == Kind::YesNo)
        return text.toDouble() != 0;
    if (kind == Kind::Integer)
        return text.toLongLong();
    return kind == Kind::Number ? Value(text.toDouble()) : Value(text);
}

std::vector<ColumnRow> readColumns(sqlite::Connection &connection, const QString &table)
{
    sqlite::Statement statement(connection.handle(),
                                "SELECT name, type, \"notnull\", dflt_value, pk FROM pragma_table_info(?)");
    statement.bind(1, Value(table));
    std::vector<ColumnRow> rows;
    while (statement.step()) {
        rows.push_back({statement.text(0), statement.text(1), statement.integer(2) != 0, statement.text(3),
                        statement.integer(4) != 0});
    }
    return rows;
}

Column makeColumn(const ColumnRow &row)
{
    Column column;
    column.name = row.name;
    column.kind = kindOf(row.type);
    column.size = sizeOf(row.type);
    column.required = row.notNull && column.kind != Kind::YesNo;
    column.nonEmpty = row.type.contains(u"NONEMPTY"_s, Qt::CaseInsensitive);
    column.defaultValue = defaultOf(column.kind, row.defaultText);
    return column;
}

std::unique_ptr<Table> readTable(sqlite::Connection &connection, const QString &name, const QString &sql)
{
    auto table = std::make_unique<Table>();
    table->name = name;
    table->sqlName = quoteName(name);
    table->key = "rowid";
    for (const ColumnRow &row : readColumns(connection, name)) {
        const bool isRowKey = row.isKey && row.type.compare(u"INTEGER"_s, Qt::CaseInsensitive) == 0;
        if (isRowKey)
            table->key = quoteName(row.name);
        if (row.name == QStringView(kHiddenKey))
            continue;
        Column column = makeColumn(row);
        if (isRowKey) {
            table->keyColumn = int(table->columns.size());
            table->hasAuto = sql.contains(u"AUTOINCREMENT"_s, Qt::CaseInsensitive);
            column.required = !table->hasAuto;
            if (table->hasAuto)
                column.kind = Kind::Auto;
        }
        table->addColumn(std::move(column));
    }
    return table;
}

} // namespace

void Table::addColumn(Column column)
{
    m_index.insert(column.name.toCaseFolded(), int(columns.size()));
    columns.push_back(std::move(column));
}

Schema Schema::load(sqlite::Connection &connection)
{
    Schema schema;
    sqlite::Statement statement(connection.handle(),
                                "SELECT name, sql FROM sqlite_master WHERE type = 'table' AND name "
                                "NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid");
    while (statement.step())
        schema.m_tables.push_back(readTable(connection, statement.text(0), statement.text(1)));
    for (const auto &table : schema.m_tables)
        schema.m_index.insert(table->name.toCaseFolded(), table.get());
    return schema;
}

const Table *Schema::find(const QString &name) const { return m_index.value(name.toCaseFolded(), nullptr); }

QByteArray quoteName(const QString &name)
{
    QString quoted = name;
    quoted.replace(u'"', u"\"\""_s);
    return '"' + quoted.toUtf8() + '"';
}

} // namespace dao
