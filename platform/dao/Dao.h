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
    /** Writes what is pending, releases the file for others. Calls after it throw 3420. */
    void Close();

    /** Commits what was written since the last commit. Called by whoever is about to wait; cheap when nothing is. */
    void CommitPending();

private:
    friend std::unique_ptr<Database> OpenDatabase(const QString &, bool);
    explicit Database(std::unique_ptr<DatabasePrivate> d);
    std::unique_ptr<DatabasePrivate> d;
};

/** Opens an existing file. Throws 3024 (missing), 3044 (folder missing), 3343 (foreign format), 3356 / 3704 / 3045
    (exclusiveness), 3050 (cannot lock), 3055 (a folder), 3049 (damaged). */
std::unique_ptr<Database> OpenDatabase(const QString &path, bool exclusive);

/** Copies a closed database into a new file, dense and in key order. Throws 3196 / 3356 / 3704 / 3204 / 3024. */
void CompactDatabase(const QString &from, const QString &to);

/** Makes a new database file from CREATE TABLE / CREATE INDEX statements in the declared types of this layer
    (see data/database/schema.sql). Throws 3204 when the file exists. For the build and the importer. */
void CreateDatabase(const QString &path, const QStringList &definitions);

/** Called before every Execute, OpenRecordset, Update, Delete and Requery; may throw. For fault sweeps in tests. */
void SetAccessHook(std::function<void()> hook);

} // namespace dao
