#pragma once

#include "platform/dao/Value.h"

#include <QByteArray>
#include <memory>
#include <sqlite3.h>

/** SQLite's C interface, as thin as it can be had. Failing calls throw the matching DAO error. */
namespace dao::sqlite {

/** Throws the DAO error for a failed call. */
[[noreturn]] void raise(sqlite3 *db, int code);

/** One prepared statement. */
class Statement
{
public:
    Statement(sqlite3 *db, const QByteArray &sql);
    ~Statement() { sqlite3_finalize(m_handle); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    int parameterCount() const { return sqlite3_bind_parameter_count(m_handle); }
    /** Binds parameter number i, counted from 1. */
    void bind(int i, const Value &value);
    /** True while there is a row. */
    bool step();
    void reset();

    bool isNull(int column) const { return sqlite3_column_type(m_handle, column) == SQLITE_NULL; }
    qint64 integer(int column) const { return sqlite3_column_int64(m_handle, column); }
    double number(int column) const { return sqlite3_column_double(m_handle, column); }
    QString text(int column) const;
    /** The column by the type that SQLite holds it in. */
    Value value(int column) const;

private:
    sqlite3 *m_db;
    sqlite3_stmt *m_handle = nullptr;
};

/** Resets a statement at the end of its use, also when an error leaves the scope. */
class Use
{
public:
    explicit Use(std::shared_ptr<Statement> statement)
        : m_statement(std::move(statement))
    {
    }
    ~Use() { m_statement->reset(); }
    Use(const Use &) = delete;
    Use &operator=(const Use &) = delete;
    Statement *operator->() const { return m_statement.get(); }
    Statement &operator*() const { return *m_statement; }

private:
    std::shared_ptr<Statement> m_statement;
};

/** One connection. The collation and functions of this layer are registered in it. */
class Connection
{
public:
    /** Opens an existing file, or makes one with create. */
    Connection(const QString &path, bool create);
    ~Connection() { close(); }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    sqlite3 *handle() const { return m_db; }
    /** Runs a statement that is part of this layer; never foreign text. */
    void run(const QByteArray &sql);
    void close();

private:
    sqlite3 *m_db = nullptr;
};

} // namespace dao::sqlite
