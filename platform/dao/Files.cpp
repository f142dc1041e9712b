#include "platform/dao/Dao.h"

#include "platform/dao/Errors.h"
#include "platform/dao/FileLock.h"
#include "platform/dao/FileSteps.h"
#include "platform/dao/Schema.h"
#include "platform/dao/Sqlite.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

const QString kSource = u"DAO.Workspace"_s;

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

/** Opening it exclusively checks path, format and whether anybody else has it open; closing brings everything
    into the one file. */
void settle(const QString &path) { OpenDatabase(path, true)->Close(); }

void compactLocked(const QString &from, const QString &to)
{
    files::Draft draft(to);
    files::step("compact", from);
    copyInto(from, draft.path());
    draft.finish();
}

/** A log that could not be brought into the file would belong to whatever takes the file's name next. */
void requireNoLog(const QString &path)
{
    if (QFileInfo(files::resolved(path) + u"-wal"_s).size() > 0)
        raise(3043);
}

void removeQuietly(const QString &path)
{
    try {
        files::removeDatabase(path);
    } catch (const VbError &) {
        // The next attempt removes it; the error that led here is the one to tell.
    }
}

} // namespace

void CompactDatabase(const QString &from, const QString &to)
{
    operation(kSource, [&] {
        if (files::isSame(from, to))
            raise(3204);
        requireNewFile(to);
        settle(from);
        const FileLock lock(from, true);
        compactLocked(from, to);
    });
}

void CompactInPlace(const QString &path, const QString &temporary)
{
    operation(kSource, [&] {
        settle(path);
        // Held to the end: what somebody else wrote in between would be lost.
        const FileLock lock(path, true);
        compactLocked(path, temporary);
        try {
            requireNoLog(path);
            files::moveOver(temporary, path);
        } catch (...) {
            removeQuietly(temporary);
            throw;
        }
    });
}

void CreateDatabase(const QString &path, const QStringList &definitions)
{
    operation(kSource, [&] {
        requireNewFile(path);
        files::Draft draft(path);
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

QStringList SplitDefinitions(const QString &text)
{
    static const QRegularExpression comments(u"--[^\\n]*"_s);
    static const QRegularExpression ends(u";\\s*(\\n|$)"_s);
    QStringList definitions;
    for (const QString &part : QString(text).remove(comments).split(ends, Qt::SkipEmptyParts)) {
        if (!part.trimmed().isEmpty())
            definitions.append(part.trimmed());
    }
    return definitions;
}

} // namespace dao
