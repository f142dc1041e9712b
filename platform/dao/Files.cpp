#include "platform/dao/Dao.h"

#include "platform/dao/Errors.h"
#include "platform/dao/FileLock.h"
#include "platform/dao/Schema.h"
#include "platform/dao/Sqlite.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

const QString kSource = u"DAO.Workspace"_s;

/** A file under construction: gone again unless it was finished. */
class Draft
{
public:
    explicit Draft(const QString &target)
        : m_target(target)
        , m_path(u"%1.%2.new"_s.arg(target).arg(QCoreApplication::applicationPid()))
    {
        removeFiles();
    }
    ~Draft() { removeFiles(); }
    Draft(const Draft &) = delete;
    Draft &operator=(const Draft &) = delete;

    const QString &path() const { return m_path; }
    void finish()
    {
        if (!QFile::rename(m_path, m_target))
            raise(3043);
    }

private:
    void removeFiles()
    {
        for (const QString &suffix : {QString(), u"-journal"_s, u"-wal"_s, u"-shm"_s})
            QFile::remove(m_path + suffix);
    }
    QString m_target;
    QString m_path;
};

void requireNewFile(const QString &path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || info.isDir())
        raise(3055);
    if (info.exists())
        raise(3204);
    if (!info.dir().exists())
        raise(3044, path);
}

/** Copies everything densely and sets the counters to the highest number in use. */
void copyInto(const QString &from, const QString &to)
{
    {
        sqlite::Connection source(from, false);
        sqlite::Statement copy(source.handle(), "VACUUM INTO ?");
        copy.bind(1, Value(to));
        copy.step();
    }
    sqlite::Connection target(to, false);
    const Schema schema = Schema::load(target);
    for (const auto &table : schema.tables()) {
        if (!table->hasAuto)
            continue;
        sqlite::Statement reset(target.handle(),
                                "UPDATE sqlite_sequence SET seq = (SELECT ifnull(max(" + table->key
                                    + "), 0) FROM " + table->sqlName + ") WHERE name = ?");
        reset.bind(1, Value(table->name));
        reset.step();
    }
}

} // namespace

void CompactDatabase(const QString &from, const QString &to)
{
    operation(kSource, [&] {
        const QFileInfo info(from);
        if (info.exists() && info == QFileInfo(to))
            raise(3204);
        requireNewFile(to);
        // Opening it exclusively checks path, format and whether anybody else has it open.
        OpenDatabase(from, true)->Close();
        const FileLock lock(from, true);
        Draft draft(to);
        copyInto(from, draft.path());
        draft.finish();
    });
}

void CreateDatabase(const QString &path, const QStringList &definitions)
{
    operation(kSource, [&] {
        requireNewFile(path);
        Draft draft(path);
        {
            sqlite::Connection connection(draft.path(), true);
            connection.run("PRAGMA journal_mode = MEMORY");
            connection.run("BEGIN");
            for (const QString &definition : definitions)
                connection.run(translateDefinition(definition));
            connection.run("COMMIT");
        }
        draft.finish();
    });
}

} // namespace dao
