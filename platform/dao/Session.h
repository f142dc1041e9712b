#pragma once

#include "platform/dao/FileLock.h"
#include "platform/dao/Plan.h"
#include "platform/dao/Sqlite.h"

#include <QHash>
#include <QTimer>
#include <functional>
#include <memory>

namespace dao {

/** What a plan's parameters are bound to: the literals of one statement. */
struct Bindings {
    std::vector<Literal> literals;
    bool strict = false;
};

/** An open database file: connection, schema, plans and the transaction that writes join. */
class Session
{
public:
    Session(const QString &path, bool exclusive);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    const QString &path() const { return m_path; }
    bool isExclusive() const { return m_exclusive; }
    bool isOpen() const { return m_connection != nullptr; }
    /** The open connection, for a backup. */
    sqlite3 *handle() const { return m_connection->handle(); }
    /** Throws 3420 after close(), and what the last commit on a timer failed with. */
    void requireUsable();
    void close();
    void commitPending();

    /** The plan for a statement; the literals stay in lexed. */
    std::shared_ptr<const Plan> plan(const Lexed &lexed);
    std::shared_ptr<const Plan> tablePlan(const QString &name);

    std::shared_ptr<sqlite::Statement> prepare(const QByteArray &sql);
    void bind(sqlite::Statement &statement, const Plan &plan, const Bindings &bindings) const;
    qint64 lastInsertedKey() const;
    long changes() const;
    /** The number that the next new row of the table will get. */
    qint64 nextAuto(const Table &table);

    /** Joins the pending transaction, or begins one. Throws 3218 when another user keeps the file locked. */
    void beginWrite();
    /** To be called after writing: lets other users in where no event loop will. */
    void endWrite();
    /** Runs several writes so that all of them stand or none. */
    void atomically(const std::function<void()> &writes);

private:
    void openConnection();
    bool inTransaction() const;
    void scheduleCommit();
    void commitOnTimer();

    QString m_path;
    bool m_exclusive;
    std::unique_ptr<FileLock> m_lock;
    std::unique_ptr<sqlite::Connection> m_connection;
    Schema m_schema;
    QHash<QString, std::shared_ptr<const Plan>> m_plans;
    QHash<QByteArray, std::shared_ptr<sqlite::Statement>> m_statements;
    int m_nesting = 0; // of atomically()
    std::unique_ptr<QTimer> m_timer;
    std::exception_ptr m_commitFailure;
};

} // namespace dao
