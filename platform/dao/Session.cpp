#include "platform/dao/Session.h"

#include "platform/dao/Convert.h"
#include "platform/dao/DateText.h"
#include "platform/dao/Errors.h"
#include "platform/dao/Resolver.h"

#include <QCoreApplication>
#include <QScopedValueRollback>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr int kCommitAfterMilliseconds = 500;
constexpr int kMaxPlans = 256;
constexpr int kMaxStatements = 512;

Value literalValue(const Literal &literal)
{
    if (literal.kind != TokenKind::Date)
        return literal.value;
    const QString inside = literal.value.text();
    const auto when = parseDateLiteral(inside);
    if (!when)
        raise(3075, u"Syntax error in date"_s, u'#' + inside + u'#');
    return *when;
}

Value negated(const Value &value)
{
    if (const auto *whole = std::get_if<qint64>(&value.data()))
        return -*whole;
    return -value.number();
}

Value parameterValue(const Parameter &parameter, const Bindings &bindings)
{
    if (parameter.isStrict)
        return Value(bindings.strict ? 1 : 0);
    Value value = parameter.literal < 0 ? parameter.constant
                                        : literalValue(bindings.literals[size_t(parameter.literal)]);
    if (!parameter.store)
        return value;
    try {
        return convertTo(parameter.store->kind, parameter.negated ? negated(value) : value);
    } catch (const VbError &) {
        if (bindings.strict)
            throw;
        return convertTo(parameter.store->kind, Value());
    }
}

} // namespace

Session::Session(const QString &path, bool exclusive)
    : m_path(path)
    , m_exclusive(exclusive)
{
    m_lock = std::make_unique<FileLock>(path, exclusive);
    try {
        openConnection();
    } catch (const VbError &error) {
        const bool damaged = error.number() == 3428 || error.number() == 3000 || error.number() == 3043;
        m_statements.clear();
        m_connection.reset();
        if (damaged)
            raise(3049, path);
        throw;
    }
}

Session::~Session()
{
    try {
        close();
    } catch (const VbError &) {
        // A destructor has nobody to tell; SQLite rolls back what could not be written.
    }
}

void Session::openConnection()
{
    m_connection = std::make_unique<sqlite::Connection>(m_path, false);
    // The locking mode must stand before the first access: only then does the log do without shared memory.
    m_connection->run(m_exclusive ? "PRAGMA locking_mode = EXCLUSIVE" : "PRAGMA locking_mode = NORMAL");
    m_connection->run("PRAGMA journal_mode = WAL");
    m_connection->run("PRAGMA synchronous = NORMAL");
    m_connection->run("PRAGMA cache_size = -16000");
    m_connection->run("PRAGMA temp_store = MEMORY");
    m_schema = Schema::load(*m_connection);
}

void Session::requireUsable()
{
    if (!isOpen())
        raise(3420);
    if (m_commitFailure)
        std::rethrow_exception(std::exchange(m_commitFailure, nullptr));
}

void Session::close()
{
    if (!isOpen())
        return;
    m_timer.reset();
    std::exception_ptr failure;
    try {
        commitPending();
        // While others stay, this is what brings the log into the file, for whoever copies it now.
        if (!m_exclusive)
            m_connection->run("PRAGMA wal_checkpoint(PASSIVE)");
    } catch (const VbError &) {
        failure = std::current_exception();
    }
    m_plans.clear();
    m_statements.clear();
    m_connection.reset();
    m_lock.reset();
    if (failure)
        std::rethrow_exception(failure);
}

std::shared_ptr<const Plan> Session::plan(const Lexed &lexed)
{
    const auto known = m_plans.constFind(lexed.shape);
    if (known != m_plans.constEnd())
        return *known;
    auto made = resolve(lexed, m_schema);
    if (m_plans.size() >= kMaxPlans)
        m_plans.clear();
    m_plans.insert(lexed.shape, made);
    return made;
}

std::shared_ptr<const Plan> Session::tablePlan(const QString &name) { return resolveTable(name, m_schema); }

std::shared_ptr<sqlite::Statement> Session::prepare(const QByteArray &sql)
{
    const auto known = m_statements.constFind(sql);
    if (known != m_statements.constEnd())
        return *known;
    auto made = std::make_shared<sqlite::Statement>(m_connection->handle(), sql);
    if (m_statements.size() >= kMaxStatements)
        m_statements.clear();
    m_statements.insert(sql, made);
    return made;
}

void Session::bind(sqlite::Statement &statement, const Plan &plan, const Bindings &bindings) const
{
    // Names that are looked at but not used leave parameters that no SQL mentions.
    const size_t used = std::min(plan.params.size(), size_t(statement.parameterCount()));
    for (size_t i = 0; i < used; ++i)
        statement.bind(int(i) + 1, parameterValue(plan.params[i], bindings));
}

qint64 Session::lastInsertedKey() const { return sqlite3_last_insert_rowid(m_connection->handle()); }

long Session::changes() const { return long(sqlite3_changes64(m_connection->handle())); }

qint64 Session::nextAuto(const Table &table)
{
    sqlite::Use statement(prepare("SELECT seq + 1 FROM sqlite_sequence WHERE name = ?"));
    statement->bind(1, Value(table.name));
    return statement->step() ? statement->integer(0) : 1;
}

void Session::beginWrite()
{
    if (inTransaction())
        return;
    sqlite::Use(prepare("BEGIN IMMEDIATE"))->step();
    scheduleCommit();
}

void Session::endWrite()
{
    // Without an event loop nothing would ever let the other users in.
    if (m_nesting == 0 && !m_exclusive && !QCoreApplication::instance())
        commitPending();
}

/** SQLite's own answer: a failure as grave as a full disk ends the transaction by itself. */
bool Session::inTransaction() const { return !sqlite3_get_autocommit(m_connection->handle()); }

/** Shared users must not be locked out for longer than one turn of the event loop. */
void Session::scheduleCommit()
{
    if (!QCoreApplication::instance())
        return;
    if (!m_timer) {
        m_timer = std::make_unique<QTimer>();
        m_timer->setSingleShot(true);
        QObject::connect(m_timer.get(), &QTimer::timeout, m_timer.get(), [this] { commitOnTimer(); });
    }
    m_timer->start(m_exclusive ? kCommitAfterMilliseconds : 0);
}

void Session::commitOnTimer()
{
    try {
        commitPending();
    } catch (const VbError &) {
        // Nobody above the event loop can take it; the next operation reports it.
        m_commitFailure = std::current_exception();
    }
}

void Session::commitPending()
{
    if (!isOpen() || !inTransaction())
        return;
    if (m_timer)
        m_timer->stop();
    try {
        sqlite::Use(prepare("COMMIT"))->step();
    } catch (const VbError &) {
        if (inTransaction())
            sqlite::Use(prepare("ROLLBACK"))->step();
        throw;
    }
}

void Session::atomically(const std::function<void()> &writes)
{
    beginWrite();
    sqlite::Use(prepare("SAVEPOINT several"))->step();
    const QScopedValueRollback<int> nesting(m_nesting, m_nesting + 1);
    try {
        writes();
    } catch (...) {
        if (inTransaction()) {
            sqlite::Use(prepare("ROLLBACK TO several"))->step();
            sqlite::Use(prepare("RELEASE several"))->step();
        }
        throw;
    }
    sqlite::Use(prepare("RELEASE several"))->step();
}

} // namespace dao
