#pragma once

#include "platform/dao/Value.h"
#include "platform/dao/VbError.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

/** Jet SQL and DAO recordsets on one SQLite file. Every failing call throws VbError with the DAO number and text. */
namespace dao {

struct Error {
    long number = 0;
    QString description;
    QString source; // "DAO.Database", "DAO.Recordset", "DAO.Field" or "DAO.Workspace"
};

/** The engine's error collection; cleared at the start of every operation, filled by the one that fails. */
const QList<Error> &Errors();

/** Execute option: a row that cannot be written is an error and undoes the statement. */
inline constexpr int dbFailOnError = 128;

class DatabasePrivate;
class RecordsetPrivate;

/** The rows of one SELECT, copied at opening (rows deleted meanwhile do not break a walk).
    Fields are found by output name without regard to case; an unknown name is error 3265. */
class Recordset
{
public:
    Recordset(Recordset &&) noexcept;
    Recordset &operator=(Recordset &&) noexcept;
    ~Recordset();

    bool Bof() const;
    bool Eof() const; // "EOF" itself is a macro of <cstdio>
    void MoveFirst();
    void MoveNext();
    void MoveLast();
    /** Rows visited so far, all of them after MoveLast. */
    long RecordCount() const;
    QStringList FieldNames() const;

    /** The current row's field, or the edit buffer's between Edit/AddNew and Update. Throws 3021 without a row. */
    Value Field(const QString &name) const;
    Value Field(int index) const;
    /** Assigns in the edit buffer. Throws 3020 without Edit/AddNew, 3421 when the type does not convert. */
    void Set(const QString &name, const Value &value);

    void Edit();
    void AddNew();
    void Update();
    void CancelUpdate();
    void Delete();
    /** Runs the query again; the first row becomes current. */
    void Requery();
    void Close();

private:
    friend class Database;
    explicit Recordset(std::unique_ptr<RecordsetPrivate> d);
    std::unique_ptr<RecordsetPrivate> d;
};

/** One open database file. */
class Database
{
public:
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    /** Runs exactly one action statement (INSERT, UPDATE, DELETE). */
    void Execute(const QString &sql, int options = 0);
    /** Opens a SELECT or a bare table name. */
    Recordset OpenRecordset(const QString &sql);
    /** Rows changed by the last Execute. */
    long RecordsAffected() const;
    QString Name() const;
    bool IsExclusive() const;
    bool IsOpen() const;
    /** Writes what is pending, releases the file for others. Calls after it throw 3420. */
    void Close();

    /** Commits what was written since the last commit. Called by whoever is about to wait; cheap when nothing is. */
    void CommitPending();

private:
    friend std::unique_ptr<Database> OpenDatabase(const QString &, bool);
    friend class Backup;
    explicit Database(std::unique_ptr<DatabasePrivate> d);
    std::unique_ptr<DatabasePrivate> d;
};

/** Opens an existing file. Throws 3024 (missing), 3044 (folder missing), 3343 (foreign format), 3356 / 3704 / 3045
    (exclusiveness), 3050 (cannot lock), 3055 (a folder), 3049 (damaged). */
std::unique_ptr<Database> OpenDatabase(const QString &path, bool exclusive);

/** Copies a closed database into a new file, dense and in key order. Throws 3196 / 3356 / 3704 / 3204 / 3024. */
void CompactDatabase(const QString &from, const QString &to);

/** Compacts a closed database by way of a temporary file (removed by the caller if it is a stale one). Whatever
    happens, the path holds the old or the new file, complete. Throws as CompactDatabase. */
void CompactInPlace(const QString &path, const QString &temporary);

/** A copy of an open database, made piece by piece while the database stays in use: what is written meanwhile
    through the same Database is in it. Nothing is left behind unless it is finished. */
class Backup
{
public:
    /** Throws 3204 for the database's own file, 3044, 3055. */
    Backup(Database &from, const QString &to);
    ~Backup();
    Backup(const Backup &) = delete;
    Backup &operator=(const Backup &) = delete;

    /** Copies some more pages; true when the copy is complete. */
    bool step(int pages);
    /** Puts the copy under its name, in the place of a file that nobody has open (else 3356 / 3704). */
    void finish();

private:
    class Private;
    std::unique_ptr<Private> d;
};

/** Whether the file is one of the former edition's own format, which an import turns into one of this layer. */
bool IsJetFile(const QString &path);

/** Makes a new database file from CREATE TABLE / CREATE INDEX statements in the declared types of this layer
    (see data/database/schema.sql). Throws 3204 when the file exists. For the build and the importer. */
void CreateDatabase(const QString &path, const QStringList &definitions);

/** The single statements of a text of definitions, without its "--" comments. */
QStringList SplitDefinitions(const QString &text);

/** Called before every Execute, OpenRecordset, Update, Delete and Requery; may throw. For fault sweeps in tests. */
void SetAccessHook(std::function<void()> hook);

} // namespace dao
