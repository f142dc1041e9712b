#pragma once

#include <QString>
#include <QStringList>
#include <functional>

/** What became of one table. */
struct ImportedTable {
    QString name;
    qint64 rowsRead = 0;
    qint64 rowsWritten = 0;
    qint64 rowsExpected = 0; // by the old file's own count
    QStringList notes;       // columns missing or unknown, values changed, rows lost; in order
    qint64 notesLeftOut = 0; // beyond a number that nobody reads any more
};

struct ImportReport {
    QList<ImportedTable> tables;
    QStringList skipped; // what the old file holds besides, each with its kind

    /** The report for people, a line each. */
    QStringList lines() const;
    /** Whether every row and value of the program's own tables came over as it was. */
    bool isComplete() const;
};

/** Called with the rows done and the rows there are. */
using ImportProgress = std::function<void(qint64 done, qint64 total)>;

/** Makes a new database from a genuine Jet file. Throws jet::Error when the old file cannot be read or has none of
    the program's tables, and VbError when the new one exists already or cannot be written; nothing is left of it
    then. */
ImportReport ImportDatabase(const QString &from, const QString &to, const ImportProgress &progress = {});
