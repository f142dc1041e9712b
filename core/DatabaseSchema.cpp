#include "core/DatabaseSchema.h"

#include "platform/dao/Dao.h"

#include <QFile>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

// Not inside the namespace: the macro declares a function of the global one.
static void loadResource() { Q_INIT_RESOURCE(database); }

namespace schema {

namespace {

constexpr std::pair<QLatin1StringView, Kind> kKinds[] = {
    { "AUTO"_L1, Kind::Auto }, { "INTEGER"_L1, Kind::Integer }, { "NUMBER"_L1, Kind::Number },
    { "YESNO"_L1, Kind::YesNo }, { "DATE"_L1, Kind::Date }, { "TEXT"_L1, Kind::Text }, { "MEMO"_L1, Kind::Memo },
};

QStringList readDefinitions()
{
    loadResource();
    QFile file(u":/database/schema.sql"_s);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the schema is not part of the program");
    return dao::SplitDefinitions(QString::fromUtf8(file.readAll()));
}

Kind kindNamed(QStringView word)
{
    const auto found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [&](const auto &row) { return row.first == word; });
    Q_ASSERT(found != std::end(kKinds));
    return found->second;
}

QList<Table> readTables()
{
    static const QRegularExpression head(u"^CREATE TABLE (\\w+)"_s);
    static const QRegularExpression column(
        u"(\\w+)\\s+(AUTO|INTEGER|NUMBER|YESNO|DATE|TEXT|MEMO)\\b(?:\\((\\d+)\\))?"_s);
    QList<Table> tables;
    for (const QString &definition : definitions()) {
        const QRegularExpressionMatch table = head.match(definition);
        if (!table.hasMatch())
            continue;
        tables.append({ table.captured(1), {} });
        for (auto found = column.globalMatch(definition, table.capturedEnd()); found.hasNext();) {
            const QRegularExpressionMatch match = found.next();
            tables.last().columns.append(
                { match.captured(1), kindNamed(match.capturedView(2)), match.captured(3).toInt() });
        }
    }
    return tables;
}

} // namespace

const QStringList &definitions()
{
    static const QStringList all = readDefinitions();
    return all;
}

const QList<Table> &tables()
{
    static const QList<Table> all = readTables();
    return all;
}

void require(dao::Database &database)
{
    for (const Table &table : tables()) {
        QStringList names;
        for (const Column &column : table.columns)
            names << column.name;
        // No row is wanted, only the engine's word on the names.
        database.OpenRecordset(u"SELECT %1 FROM %2 WHERE %3 IS NULL AND %3 IS NOT NULL"_s.arg(
            names.join(u", "), table.name, names.constFirst()));
    }
}

} // namespace schema
