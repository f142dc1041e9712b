#include "platform/dao/Dao.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

// Any text may be handed to Execute and OpenRecordset. Whatever it is: nothing but a VbError comes out, the
// tables stay as they were defined, and no file appears.

namespace {

void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

QStringList definitions()
{
    QFile file(QStringLiteral(KAVRO_SCHEMA));
    require(file.open(QIODevice::ReadOnly), "schema");
    QString text;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        if (!line.startsWith(u"--"_s))
            text += line + u'\n';
    }
    return text.trimmed().chopped(1).split(u";\n"_s);
}

/** The definitions in the file, read past the layer under test. */
QByteArray readMaster(const QString &path)
{
    sqlite3 *db = nullptr;
    QByteArray all;
    require(sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK,
            "second opening");
    sqlite3_exec(
        db,
        "SELECT type, name, sql FROM sqlite_master UNION ALL SELECT 'version', user_version, 0 FROM "
        "pragma_user_version",
        [](void *out, int n, char **cells, char **) {
            for (int i = 0; i < n; ++i)
                static_cast<QByteArray *>(out)->append(cells[i] ? cells[i] : "Null").append('\n');
            return 0;
        },
        &all, nullptr);
    sqlite3_close(db);
    return all;
}

class World
{
public:
    World()
        : m_path(m_folder.filePath(u"fuzz.mdb"_s))
    {
        dao::CreateDatabase(m_path, definitions());
        m_db = dao::OpenDatabase(m_path, false);
        m_master = readMaster(m_path);
        m_files = files();
    }

    void feed(const QString &sql)
    {
        guarded([&] { m_db->Execute(sql, m_round % 2 ? dao::dbFailOnError : 0); });
        guarded([&] { walk(m_db->OpenRecordset(sql)); });
        if (++m_round % 200 == 0)
            check();
    }

private:
    template <class F>
    static void guarded(F &&body)
    {
        try {
            body();
        } catch (const VbError &error) {
            require(dao::Errors().size() == 1 && dao::Errors().constFirst().number == error.number(),
                    "error collection");
            if (error.number() == 3000)
                std::fprintf(stderr, "%s\n", qPrintable(error.description()));
            require(error.number() != 3000, "SQLite refused generated SQL");
        }
    }

    static void walk(dao::Recordset rs)
    {
        for (int rows = 0; !rs.Eof() && rows < 5; ++rows, rs.MoveNext()) {
            for (int i = 0; i < rs.FieldNames().size(); ++i)
                rs.Field(i).text();
        }
        rs.AddNew();
        for (const QString &name : rs.FieldNames())
            guarded([&] { rs.Set(name, u"7"_s); });
        rs.Update();
    }

    QStringList files() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    }

    void check()
    {
        m_db->CommitPending();
        require(readMaster(m_path) == m_master, "table definitions changed");
        require(files() == m_files, "files appeared or vanished");
        for (const QString &table : {u"tblGroup"_s, u"tblDevices"_s, u"tblPortMain"_s, u"tblPortStatus"_s,
                                     u"tblEventLog"_s, u"tblPortEmailTemplate"_s, u"tblMailQue"_s,
                                     u"tblTCPPorts"_s, u"tblScripts"_s, u"tblAgentAnnounce"_s}) {
            m_db->Execute(u"DELETE * FROM "_s + table);
            for (int i = 0; i < 3; ++i) {
                auto rs = m_db->OpenRecordset(table);
                rs.AddNew();
                guarded([&] { rs.Set(rs.FieldNames().at(1), i); });
                guarded([&] { rs.Update(); });
            }
        }
        m_db->CommitPending();
    }

    QTemporaryDir m_folder;
    QString m_path;
    std::unique_ptr<dao::Database> m_db;
    QByteArray m_master;
    QStringList m_files;
    unsigned m_round = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static World world;
    world.feed(QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size)));
    return 0;
}
