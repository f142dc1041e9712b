#include "platform/dao/Dao.h"

#include "platform/dao/Convert.h"
#include "platform/dao/Errors.h"
#include "platform/dao/FileSteps.h"
#include "platform/dao/RecordsetPrivate.h"
#include "platform/dao/RowWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <set>

using namespace Qt::StringLiterals;

namespace dao {

class DatabasePrivate
{
public:
    explicit DatabasePrivate(std::shared_ptr<Session> s)
        : session(std::move(s))
    {
    }

    void execute(const QString &sql, bool strict);

    std::shared_ptr<Session> session;
    long affected = 0;

private:
    long write(const Plan &plan, const Bindings &bindings);
    long updateJoined(const Plan &plan, const Bindings &bindings);
    long deleteJoined(const Plan &plan, const Bindings &bindings);
};

namespace {

const QString kSource = u"DAO.Database"_s;
const QString kWorkspace = u"DAO.Workspace"_s;

constexpr int kMaxNameLength = 64;

/** The keys and values of a joined UPDATE, taken before anything is changed. */
struct PendingRow {
    RowKeys keys;
    Assigned assigned;
};

std::vector<PendingRow> collectUpdates(Session &session, const Plan &plan, const Bindings &bindings)
{
    sqlite::Use statement(session.prepare(plan.sql));
    session.bind(*statement, plan, bindings);
    std::vector<PendingRow> rows;
    const int tables = int(plan.tables.size());
    while (statement->step()) {
        PendingRow row;
        for (int i = 0; i < tables; ++i)
            row.keys.push_back(statement->isNull(i) ? std::nullopt : std::optional(statement->integer(i)));
        for (int i = 0; i < int(plan.targets.size()); ++i) {
            const Target &t = plan.targets[size_t(i)];
            row.assigned[{t.from, t.column}] = statement->value(tables + i);
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

/** The distinct keys of every table that a joined DELETE names. */
std::vector<std::set<qint64>> collectDeletes(Session &session, const Plan &plan, const Bindings &bindings)
{
    sqlite::Use statement(session.prepare(plan.sql));
    session.bind(*statement, plan, bindings);
    std::vector<std::set<qint64>> keys(plan.targets.size());
    while (statement->step()) {
        for (int i = 0; i < int(keys.size()); ++i) {
            if (!statement->isNull(i))
                keys[size_t(i)].insert(statement->integer(i));
        }
    }
    return keys;
}

constexpr qsizetype kHeadLength = 20;

bool isJetHead(const QByteArray &head)
{
    const QByteArray name = head.mid(4, 15);
    return name == "Standard Jet DB" || name == "Standard ACE DB";
}

/** Throws unless the path names an SQLite file. */
void checkFile(const QString &path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || info.isDir())
        raise(3055);
    if (!info.dir().exists())
        raise(3044, path);
    if (!info.exists())
        raise(3024, path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        raise(3043);
    const QByteArray head = file.read(kHeadLength);
    if (head.startsWith(QByteArray("SQLite format 3", 16)))
        return;
    if (isJetHead(head)) {
        throw VbError(
            3343,
            errorText(3343, path)
                + u" It is a genuine Jet database; turn it into one of this program with the command "
                  u"kavro-import."_s);
    }
    raise(3343, path);
}

/** Puts the draft in the place of a file that nobody has open. */
void replaceUnused(files::Draft &draft, const QString &target)
{
    const QString old = files::resolved(target);
    if (!QFileInfo::exists(old))
        return draft.finish();
    try {
        // What its last user left in a log belongs into the old file for as long as there is one.
        OpenDatabase(old, true)->Close();
    } catch (const VbError &error) {
        if (error.number() == 3356 || error.number() == 3704)
            throw;
        // Whatever else it is, it was to be overwritten.
    }
    const FileLock lock(old, true);
    files::removeSideFiles(old);
    draft.finishReplacing();
}

} // namespace

void DatabasePrivate::execute(const QString &sql, bool strict)
{
    affected = 0;
    Lexed lexed = lex(sql);
    const auto plan = session->plan(lexed);
    const Bindings bindings {std::move(lexed.literals), strict};
    switch (plan->action) {
    case Action::Select:
        raise(3065);
    case Action::Write:
        affected = write(*plan, bindings);
        break;
    case Action::JoinedUpdate:
        affected = updateJoined(*plan, bindings);
        break;
    case Action::JoinedDelete:
        affected = deleteJoined(*plan, bindings);
        break;
    }
    session->endWrite();
}

long DatabasePrivate::write(const Plan &plan, const Bindings &bindings)
{
    sqlite::Use statement(session->prepare(bindings.strict ? plan.sql : plan.lenientSql));
    session->bind(*statement, plan, bindings);
    session->beginWrite();
    statement->step();
    return session->changes();
}

long DatabasePrivate::updateJoined(const Plan &plan, const Bindings &bindings)
{
    std::set<std::pair<int, qint64>> changed; // table of FROM, key
    session->atomically([&] {
        std::set<RowKeys> done;
        RowWriter writer(*session, plan);
        for (PendingRow &row : collectUpdates(*session, plan, bindings)) {
            if (!done.insert(row.keys).second)
                continue;
            try {
                writer.write(row.keys, row.assigned);
                for (const Target &t : plan.targets)
                    changed.insert({t.from, row.keys[size_t(t.from)].value()});
            } catch (const VbError &) {
                if (bindings.strict)
                    throw;
            }
        }
    });
    return long(changed.size());
}

long DatabasePrivate::deleteJoined(const Plan &plan, const Bindings &bindings)
{
    long count = 0;
    session->atomically([&] {
        const auto keys = collectDeletes(*session, plan, bindings);
        for (size_t i = 0; i < keys.size(); ++i) {
            const Table &table = *plan.tables[size_t(plan.targets[i].from)];
            const QByteArray sql = "DELETE FROM " + table.sqlName + " WHERE " + table.key + " = ?";
            for (const qint64 key : keys[i]) {
                sqlite::Use statement(session->prepare(sql));
                statement->bind(1, Value(key));
                statement->step();
                count += session->changes();
            }
        }
    });
    return count;
}

Database::Database(std::unique_ptr<DatabasePrivate> p)
    : d(std::move(p))
{
}

Database::~Database() = default;

void Database::Execute(const QString &sql, int options)
{
    operation(kSource, [&] {
        d->session->requireUsable();
        callAccessHook();
        d->execute(sql, (options & dbFailOnError) != 0);
    });
}

Recordset Database::OpenRecordset(const QString &sql)
{
    return operation(kSource, [&] {
        d->session->requireUsable();
        callAccessHook();
        Bindings bindings;
        auto plan = sql.size() <= kMaxNameLength ? d->session->tablePlan(sql) : nullptr;
        if (!plan) {
            Lexed lexed = lex(sql);
            plan = d->session->plan(lexed);
            bindings.literals = std::move(lexed.literals);
        }
        if (plan->action != Action::Select)
            raise(3219);
        return Recordset(std::make_unique<RecordsetPrivate>(d->session, plan, std::move(bindings)));
    });
}

long Database::RecordsAffected() const { return d->affected; }

QString Database::Name() const { return d->session->path(); }

bool Database::IsExclusive() const { return d->session->isExclusive(); }

bool Database::IsOpen() const { return d->session->isOpen(); }

void Database::Close()
{
    operation(kSource, [&] {
        d->session->requireUsable();
        d->session->close();
    });
}

void Database::CommitPending()
{
    // Not an operation: whoever waits must not wipe the error that somebody is about to look at.
    d->session->commitPending();
}

bool IsJetFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && isJetHead(file.read(kHeadLength));
}

std::unique_ptr<Database> OpenDatabase(const QString &path, bool exclusive)
{
    return operation(kWorkspace, [&] {
        files::step("open", path);
        checkFile(path);
        auto session = std::make_shared<Session>(path, exclusive);
        return std::unique_ptr<Database>(new Database(std::make_unique<DatabasePrivate>(std::move(session))));
    });
}

class Backup::Private
{
public:
    Private(std::shared_ptr<Session> s, const QString &to)
        : session(std::move(s))
        , target(to)
        , draft(to)
        , connection(draft.path(), true)
    {
        // The draft is worth nothing before it is complete, and is then synced as a whole.
        connection.run("PRAGMA journal_mode = OFF");
        connection.run("PRAGMA synchronous = OFF");
        handle = sqlite3_backup_init(connection.handle(), "main", session->handle(), "main");
        if (!handle)
            sqlite::raise(connection.handle(), sqlite3_errcode(connection.handle()));
    }
    ~Private() { sqlite3_backup_finish(handle); }

    std::shared_ptr<Session> session;
    QString target;
    files::Draft draft;
    sqlite::Connection connection;
    sqlite3_backup *handle = nullptr;
};

Backup::Backup(Database &from, const QString &to)
{
    operation(kWorkspace, [&] {
        const QFileInfo info(to);
        if (to.isEmpty() || info.isDir())
            raise(3055);
        if (!info.dir().exists())
            raise(3044, to);
        if (files::isSame(from.Name(), to))
            raise(3204);
        from.d->session->requireUsable();
        files::step("backup", to);
        d = std::make_unique<Private>(from.d->session, to);
    });
}

Backup::~Backup() = default;

bool Backup::step(int pages)
{
    return operation(kWorkspace, [&] {
        d->session->requireUsable();
        // A backup cannot read past what its own connection has not committed.
        d->session->commitPending();
        const int code = sqlite3_backup_step(d->handle, pages);
        if (code != SQLITE_OK && code != SQLITE_DONE)
            sqlite::raise(d->connection.handle(), code);
        return code == SQLITE_DONE;
    });
}

void Backup::finish()
{
    operation(kWorkspace, [&] {
        const int code = sqlite3_backup_finish(std::exchange(d->handle, nullptr));
        if (code != SQLITE_OK)
            sqlite::raise(d->connection.handle(), code);
        d->connection.close();
        replaceUnused(d->draft, d->target);
    });
}

} // namespace dao
