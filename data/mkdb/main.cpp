#include "platform/dao/Dao.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

using namespace Qt::StringLiterals;

// kavro-mkdb SCHEMA.sql ROWS_DIR OUT.mdb: makes a database from a schema and one tblXxx.tsv per table with
// rows.

namespace {

QString readText(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw VbError(53, path + u": "_s + file.errorString());
    return QString::fromUtf8(file.readAll());
}

/** \n, \t and \\ in a cell. */
QString unescaped(const QString &cell)
{
    QString text;
    for (qsizetype i = 0; i < cell.size(); ++i) {
        if (cell[i] != u'\\' || i + 1 == cell.size()) {
            text += cell[i];
            continue;
        }
        const QChar next = cell[++i];
        text += next == u'n' ? QChar(u'\n') : next == u't' ? QChar(u'\t') : next;
    }
    return text;
}

QString literal(const QString &cell)
{
    return cell == u"NULL" ? cell : u'\'' + unescaped(cell).replace(u"'"_s, u"''"_s) + u'\'';
}

void loadRow(dao::Database &db, const QString &table, const QString &columns, qsizetype count,
             const QString &line)
{
    const QStringList cells = line.split(u'\t');
    if (cells.size() != count)
        throw VbError(3346, u"%1 columns, but %2 values."_s.arg(count).arg(cells.size()));
    QStringList values;
    for (const QString &cell : cells)
        values.append(literal(cell));
    db.Execute(u"INSERT INTO ["_s + table + u"] ("_s + columns + u") VALUES ("_s + values.join(u", ") + u')',
               dao::dbFailOnError);
}

void loadTable(dao::Database &db, const QString &path)
{
    QStringList lines = readText(path).split(u'\n');
    while (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    if (lines.isEmpty())
        return;
    const QStringList names = lines.constFirst().split(u'\t');
    const QString columns = u'[' + names.join(u"], [") + u']';
    for (qsizetype i = 1; i < lines.size(); ++i) {
        try {
            loadRow(db, QFileInfo(path).baseName(), columns, names.size(), lines[i]);
        } catch (const VbError &error) {
            throw VbError(error.number(),
                          u"%1:%2: %3"_s.arg(path, QString::number(i + 1), error.description()));
        }
    }
}

void make(const QString &schema, const QString &rows, const QString &target)
{
    const QString draft = target + u".draft"_s;
    QFile::remove(draft);
    try {
        dao::CreateDatabase(draft, dao::SplitDefinitions(readText(schema)));
        const auto db = dao::OpenDatabase(draft, true);
        for (const QString &file : QDir(rows).entryList({u"tbl*.tsv"_s}, QDir::Files, QDir::Name))
            loadTable(*db, rows + u'/' + file);
        db->Close();
    } catch (const VbError &) {
        QFile::remove(draft);
        throw;
    }
    QFile::remove(target);
    if (!QFile::rename(draft, target))
        throw VbError(75, target + u": Path/File access error"_s);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 4) {
        std::fputs("usage: kavro-mkdb SCHEMA.sql ROWS_DIR OUT.mdb\n", stderr);
        return 2;
    }
    try {
        make(args[1], args[2], args[3]);
    } catch (const VbError &error) {
        std::fprintf(stderr, "kavro-mkdb: %s\n", qPrintable(error.description()));
        return 1;
    }
    return 0;
}
