#include "platform/dao/Sqlite.h"

#include "platform/dao/Collation.h"
#include "platform/dao/DateText.h"
#include "platform/dao/Errors.h"
#include "platform/dao/Functions.h"

using namespace Qt::StringLiterals;

namespace dao::sqlite {

namespace {

constexpr int kBusyMilliseconds = 2000;
constexpr int kMaxLength = 50'000'000;

QString message(sqlite3 *db) { return QString::fromUtf8(sqlite3_errmsg(db)); }

/** Checks are named after the DAO error that they stand for: "3163 Column". */
[[noreturn]] void raiseNamed(const QString &name)
{
    for (const long number : {3058, 3163, 3315}) {
        if (name.section(u' ', 0, 0).toLong() == number)
            dao::raise(number, name.section(u' ', 1));
    }
    dao::raise(3000, name);
}

/** "NOT NULL constraint failed: tblX.Column" and "CHECK constraint failed: 3163 Column". */
[[noreturn]] void raiseConstraint(sqlite3 *db, int extended)
{
    const QString text = message(db);
    const QString subject = text.section(u": "_s, 1);
    switch (extended) {
    case SQLITE_CONSTRAINT_NOTNULL:
        dao::raise(3314, subject.section(u'.', 1));
    case SQLITE_CONSTRAINT_CHECK:
        raiseNamed(subject);
    default:
        dao::raise(3022);
    }
}

[[noreturn]] void raiseGeneral(sqlite3 *db)
{
    const QString text = message(db);
    bool isNumber = false;
    // Functions of this layer report a DAO number as their message.
    if (const long number = text.toLong(&isNumber); isNumber)
        dao::raise(number);
    for (const QStringView limit : {u"too large", u"too many", u"at most", u"overflow"}) {
        if (text.contains(limit))
            dao::raise(3360);
    }
    dao::raise(3000, text);
}

} // namespace

void raise(sqlite3 *db, int code)
{
    switch (code & 0xff) {
    case SQLITE_CONSTRAINT:
        raiseConstraint(db, sqlite3_extended_errcode(db));
    case SQLITE_ERROR:
        raiseGeneral(db);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        dao::raise(3218);
    case SQLITE_READONLY:
    case SQLITE_PERM:
        dao::raise(3027);
    case SQLITE_FULL:
        dao::raise(3026);
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        dao::raise(3428);
    case SQLITE_TOOBIG:
        dao::raise(3163);
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
        dao::raise(3043);
    case SQLITE_MISMATCH:
        dao::raise(3421);
    default:
        dao::raise(3000, message(db));
    }
}

Statement::Statement(sqlite3 *db, const QByteArray &sql)
    : m_db(db)
{
    const int code = sqlite3_prepare_v3(db, sql.constData(), int(sql.size()), SQLITE_PREPARE_PERSISTENT,
                                        &m_handle, nullptr);
    if (code != SQLITE_OK)
        raise(db, code);
}

void Statement::bind(int i, const Value &value)
{
    struct Binder {
        sqlite3_stmt *s;
        int i;
        int operator()(std::monostate) const { return sqlite3_bind_null(s, i); }
        int operator()(qint64 v) const { return sqlite3_bind_int64(s, i, v); }
        int operator()(double v) const { return sqlite3_bind_double(s, i, v); }
        int operator()(bool v) const { return sqlite3_bind_int(s, i, v ? -1 : 0); }
        int operator()(const QDateTime &v) const { return sqlite3_bind_double(s, i, toOleDate(v)); }
        int operator()(const QString &v) const
        {
            const QByteArray utf8 = v.toUtf8();
            return sqlite3_bind_text(s, i, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
        }
    };
    const int code = std::visit(Binder {m_handle, i}, value.data());
    if (code != SQLITE_OK)
        raise(m_db, code);
}

bool Statement::step()
{
    const int code = sqlite3_step(m_handle);
    if (code == SQLITE_ROW)
        return true;
    if (code == SQLITE_DONE)
        return false;
    raise(m_db, code);
}

void Statement::reset() { sqlite3_reset(m_handle); }

QString Statement::text(int column) const
{
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(m_handle, column));
    return QString::fromUtf8(bytes, sqlite3_column_bytes(m_handle, column));
}

Value Statement::value(int column) const
{
    switch (sqlite3_column_type(m_handle, column)) {
    case SQLITE_INTEGER:
        return integer(column);
    case SQLITE_FLOAT:
        return number(column);
    case SQLITE_NULL:
        return {};
    default:
        return text(column);
    }
}

Connection::Connection(const QString &path, bool create)
{
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (create ? SQLITE_OPEN_CREATE : 0);
    const int code = sqlite3_open_v2(path.toUtf8().constData(), &m_db, flags, nullptr);
    if (code != SQLITE_OK) {
        close();
        dao::raise(3043);
    }
    sqlite3_busy_timeout(m_db, kBusyMilliseconds);
    sqlite3_limit(m_db, SQLITE_LIMIT_LENGTH, kMaxLength);
    // What a foreign file may hold besides tables must not run.
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    registerCollation(m_db);
    registerFunctions(m_db);
}

void Connection::run(const QByteArray &sql)
{
    Statement statement(m_db, sql);
    while (statement.step()) { }
}

void Connection::close()
{
    sqlite3_close_v2(m_db);
    m_db = nullptr;
}

} // namespace dao::sqlite
