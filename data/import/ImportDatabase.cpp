#include "data/import/ImportDatabase.h"

#include "core/DatabaseSchema.h"
#include "data/import/FieldText.h"
#include "platform/dao/Dao.h"
#include "platform/dao/FileSteps.h"
#include "platform/jet/JetFile.h"

#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxNotes = 200;
constexpr int kCommitAfterRows = 1000;
constexpr int kProgressAfterRows = 100;

bool sameName(const QString &one, const QString &other) { return one.compare(other, Qt::CaseInsensitive) == 0; }

void note(ImportedTable &table, const QString &text)
{
    if (table.notes.size() < kMaxNotes)
        table.notes << text;
    else
        ++table.notesLeftOut;
}

/** Counts rows over all tables. */
class Counter
{
public:
    Counter(const ImportProgress &progress, qint64 total)
        : m_progress(progress)
        , m_total(total)
    {
    }
    void count()
    {
        if (m_progress && ++m_done % kProgressAfterRows == 0)
            m_progress(std::min(m_done, m_total), m_total);
    }

private:
    const ImportProgress &m_progress;
    qint64 m_total;
    qint64 m_done = 0;
};

/** Takes the rows of one table over. */
class TableImport
{
public:
    TableImport(dao::Database &database, const schema::Table &target, const jet::Table &source)
        : m_database(database)
        , m_target(target)
    {
        report.name = target.name;
        report.rowsExpected = source.rowCount;
        for (const schema::Column &column : target.columns)
            m_places << placeOf(source, column);
        for (const QString &name : source.columns) {
            const bool known = std::any_of(target.columns.begin(), target.columns.end(),
                                           [&](const schema::Column &column) { return sameName(column.name, name); });
            if (!known)
                note(report, u"column %1 is unknown, left out"_s.arg(name));
        }
    }

    void write(const jet::Row &row);
    ImportedTable report;

private:
    int placeOf(const jet::Table &source, const schema::Column &column)
    {
        for (int i = 0; i < source.columns.size(); ++i) {
            if (sameName(source.columns[i], column.name))
                return i;
        }
        note(report, u"column %1 is missing, filled with its default"_s.arg(column.name));
        return -1;
    }
    QString where(const jet::Row &row) const;

    dao::Database &m_database;
    const schema::Table &m_target;
    QList<int> m_places; // of the target's columns in the source
};

/** A row in a message: counted from 1, with its key where that can be read. */
QString TableImport::where(const jet::Row &row) const
{
    const QString counted = u"row "_s + QString::number(report.rowsRead);
    const auto *key = m_places.constFirst() < 0 ? nullptr : std::get_if<qint64>(&row[m_places.constFirst()]);
    return key ? u"%1 (%2 %3)"_s.arg(counted, m_target.columns.constFirst().name).arg(*key) : counted;
}

void TableImport::write(const jet::Row &row)
{
    ++report.rowsRead;
    const auto isLost = [](const jet::Field &field) { return std::holds_alternative<jet::Unreadable>(field); };
    if (std::all_of(row.begin(), row.end(), isLost))
        return note(report, where(row) + u": damaged, left out"_s);
    QStringList names;
    QStringList literals;
    for (int i = 0; i < m_places.size(); ++i) {
        if (m_places[i] < 0)
            continue;
        const schema::Column &column = m_target.columns[i];
        const FieldText text = fieldText(column, row[m_places[i]]);
        if (!text.problem.isEmpty())
            note(report, where(row) + u", column "_s + column.name + u": "_s + text.problem);
        if (text.literal.isEmpty())
            continue;
        names << column.name;
        literals << text.literal;
    }
    try {
        const QString head = u"INSERT INTO %1 (%2) VALUES ("_s.arg(m_target.name, names.join(u", "));
        m_database.Execute(head + literals.join(u", ") + u')', dao::dbFailOnError);
        ++report.rowsWritten;
    } catch (const VbError &error) {
        // A full disk is not a fault of the row.
        if (error.number() != 3022 && error.number() != 3058 && error.number() != 3163 && error.number() != 3349
            && error.number() != 3421)
            throw;
        note(report, where(row) + u": left out, "_s + error.description());
    }
    if (report.rowsRead % kCommitAfterRows == 0)
        m_database.CommitPending();
}

const jet::Table *find(const QList<jet::Table> &tables, const QString &name)
{
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const jet::Table &table) { return sameName(table.name, name); });
    return found == tables.end() ? nullptr : &*found;
}

ImportedTable importTable(jet::File &file, dao::Database &database, const schema::Table &target, Counter &counter)
{
    const jet::Table *source = find(file.tables(), target.name);
    if (!source || source->columns.isEmpty()) {
        ImportedTable missing;
        missing.name = target.name;
        note(missing, u"the table%1, left empty"_s.arg(source ? u"'s definition is damaged"_s : u" is missing"_s));
        return missing;
    }
    TableImport import(database, target, *source);
    try {
        file.read(*source, [&](const jet::Row &row) {
            import.write(row);
            counter.count();
        });
    } catch (const jet::Error &error) {
        note(import.report, error.text());
    }
    const qint64 lost = import.report.rowsExpected - import.report.rowsRead;
    if (lost > 0)
        note(import.report, u"%1 more rows are counted in the file but cannot be found"_s.arg(lost));
    return import.report;
}

/** Everything in the file that no table of the program takes. */
QStringList skippedObjects(const jet::File &file)
{
    QStringList skipped;
    for (const jet::Table &table : file.tables()) {
        const auto &known = schema::tables();
        if (std::none_of(known.begin(), known.end(),
                         [&](const schema::Table &own) { return sameName(own.name, table.name); }))
            skipped << u"table %1 (%2 rows)"_s.arg(table.name).arg(table.rowCount);
    }
    for (const jet::OtherObject &object : file.otherObjects())
        skipped << object.kind + u' ' + object.name;
    return skipped;
}

qint64 countRows(const jet::File &file)
{
    qint64 total = 0;
    bool any = false;
    for (const schema::Table &table : schema::tables()) {
        const jet::Table *source = find(file.tables(), table.name);
        any = any || source;
        total += source ? source->rowCount : 0;
    }
    if (!any)
        throw jet::Error(u"The file has none of the tables of this program."_s);
    return total;
}

} // namespace

ImportReport ImportDatabase(const QString &from, const QString &to, const ImportProgress &progress)
{
    if (QFileInfo(to).exists() || QFileInfo(to).isSymLink())
        throw VbError(3204, u"Database already exists."_s);
    jet::File file(from);
    Counter counter(progress, countRows(file));
    ImportReport report;
    dao::files::Draft draft(to);
    dao::CreateDatabase(draft.path(), schema::definitions());
    const auto database = dao::OpenDatabase(draft.path(), true);
    for (const schema::Table &table : schema::tables())
        report.tables << importTable(file, *database, table, counter);
    report.skipped = skippedObjects(file);
    database->Close();
    draft.finish();
    return report;
}

QStringList ImportReport::lines() const
{
    QStringList lines;
    for (const ImportedTable &table : tables) {
        lines << u"%1: %2 rows read, %3 rows written"_s.arg(table.name).arg(table.rowsRead).arg(table.rowsWritten);
        for (const QString &text : table.notes)
            lines << u"  "_s + text;
        if (table.notesLeftOut > 0)
            lines << u"  and %1 more notes"_s.arg(table.notesLeftOut);
    }
    if (!skipped.isEmpty())
        lines << u"Not part of the program, left out: "_s + skipped.join(u", ");
    return lines;
}

bool ImportReport::isComplete() const
{
    return std::all_of(tables.begin(), tables.end(), [](const ImportedTable &table) { return table.notes.isEmpty(); });
}
