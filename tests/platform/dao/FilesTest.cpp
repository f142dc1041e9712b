#include "DaoFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

namespace {

class Files : public DaoFixture
{
protected:
    long openFailure(const QString &file, bool exclusive = false, QString *text = nullptr)
    {
        return failure([&] { dao::OpenDatabase(file, exclusive); }, text);
    }
    void write(const QString &name, const QByteArray &content)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QStringList names() const { return QDir(path(QString())).entryList(QDir::Files, QDir::Name); }
};

TEST_F(Files, ThatCannotBeOpened)
{
    write(u"empty.mdb"_s, {});
    write(u"text.mdb"_s, "something else altogether, and long enough");
    write(u"jet.mdb"_s, QByteArray("\0\1\0\0Standard Jet DB\0", 20) + QByteArray(2048, '\0'));
    write(u"damaged.mdb"_s, QByteArray("SQLite format 3", 16) + QByteArray(4096, '\x5a'));
    QString text;
    EXPECT_EQ(openFailure(path(u"none.mdb"_s), false, &text), 3024);
    EXPECT_EQ(text, u"Couldn't find file '%1'."_s.arg(path(u"none.mdb"_s)));
    EXPECT_EQ(openFailure(path(u"none/none.mdb"_s)), 3044);
    EXPECT_EQ(openFailure(path(QString())), 3055);
    EXPECT_EQ(openFailure(QString()), 3055);
    EXPECT_EQ(openFailure(path(u"empty.mdb"_s)), 3343);
    EXPECT_EQ(openFailure(path(u"text.mdb"_s), false, &text), 3343);
    EXPECT_FALSE(text.contains(u"kavro-import"_s));
    EXPECT_EQ(openFailure(path(u"jet.mdb"_s), false, &text), 3343);
    EXPECT_TRUE(text.contains(u"kavro-import"_s));
    EXPECT_EQ(openFailure(path(u"damaged.mdb"_s), true), 3049);
    ASSERT_EQ(dao::Errors().size(), 1);
    EXPECT_EQ(dao::Errors().constFirst().source, u"DAO.Workspace"_s);
    db->Close();
    EXPECT_EQ(names(),
              (QStringList {u"damaged.mdb"_s, u"empty.mdb"_s, u"jet.mdb"_s, u"test.mdb"_s, u"text.mdb"_s}))
        << "no lock file and no log stays behind";
}

TEST_F(Files, InTwoHandsOfOneProcess)
{
    EXPECT_EQ(openFailure(path(), false), 3356);
    EXPECT_EQ(openFailure(path(), true), 3356);
    db->Close();
    db = dao::OpenDatabase(path(), false);
    EXPECT_FALSE(db->IsExclusive());
    EXPECT_EQ(db->Name(), path());
    EXPECT_TRUE(names().contains(u"test.ldb"_s));
    EXPECT_EQ(openFailure(path(), true), 3704);
    const auto second = dao::OpenDatabase(path(), false);
    second->Execute(u"UPDATE tblGroup SET Group_Desc = 'second'"_s);
    second->CommitPending();
    EXPECT_EQ(rows(u"SELECT Group_Desc FROM tblGroup"_s), u"second\nsecond"_s);
    db->Close();
    EXPECT_EQ(openFailure(path(), true), 3704);
    second->Close();
    EXPECT_EQ(openFailure(path(), true), 0);
}

class OtherProcess
{
public:
    explicit OtherProcess(const QStringList &arguments)
    {
        m_process.start(QStringLiteral(KAVRO_LOCK_HOLDER), arguments);
        m_process.waitForReadyRead(10000);
        said = QString::fromLatin1(m_process.readLine()).trimmed();
    }
    ~OtherProcess() { release(); }
    void release()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.write("\n");
        m_process.waitForFinished(10000);
    }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished(10000);
    }
    QString said;

private:
    QProcess m_process;
};

TEST_F(Files, InTheHandsOfAnotherProcess)
{
    EXPECT_EQ(OtherProcess({path(), u"shared"_s}).said, u"3356"_s);
    db->Close();
    {
        OtherProcess other({path(), u"exclusive"_s});
        ASSERT_EQ(other.said, u"open"_s);
        EXPECT_EQ(openFailure(path(), false), 3356);
        EXPECT_EQ(failure([&] { dao::CompactDatabase(path(), path(u"compact.mdb"_s)); }), 3356);
        other.kill();
    }
    EXPECT_EQ(openFailure(path(), true), 0) << "the kernel lets go of what a killed process held";
    OtherProcess other({path(), u"shared"_s});
    ASSERT_EQ(other.said, u"open"_s);
    EXPECT_EQ(openFailure(path(), true), 3704);
    EXPECT_EQ(openFailure(path(), false), 0);
    other.release();
    EXPECT_EQ(openFailure(path(), true), 0);
}

TEST_F(Files, LockedForWritingByAnotherProcess)
{
    db->Close();
    db = dao::OpenDatabase(path(), false);
    OtherProcess other({path(), u"shared"_s, u"UPDATE tblGroup SET Group_Desc = 'other'"_s});
    ASSERT_EQ(other.said, u"open"_s);
    EXPECT_EQ(rows(u"SELECT Group_Desc FROM tblGroup"_s), u"Main room\n"_s) << "reading goes on";
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(failure([&] { run(u"UPDATE tblGroup SET Group_Desc = 'mine'"_s); }), 3218);
    EXPECT_GE(clock.elapsed(), 1500);
    EXPECT_LE(clock.elapsed(), 4000);
    other.release();
    EXPECT_EQ(rows(u"SELECT Group_Desc FROM tblGroup"_s), u"other\nother"_s);
    EXPECT_EQ(run(u"UPDATE tblGroup SET Group_Desc = 'mine'"_s), 2);
}

/** What another connection would read right now. */
bool isCommitted(const QString &file, const QString &text)
{
    const auto reader = dao::OpenDatabase(file, false);
    return reader->OpenRecordset(u"SELECT Group_Desc FROM tblGroup"_s).Field(0).text() == text;
}

void turnEventLoop(int ms)
{
    QElapsedTimer clock;
    clock.start();
    do
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    while (clock.elapsed() < ms);
}

TEST_F(Files, SharedWritesAreVisibleAfterOneTurn)
{
    db->Close();
    db = dao::OpenDatabase(path(), false);
    run(u"UPDATE tblGroup SET Group_Desc = 'a'"_s);
    EXPECT_FALSE(isCommitted(path(), u"a"_s));
    turnEventLoop(0);
    EXPECT_TRUE(isCommitted(path(), u"a"_s));
    run(u"UPDATE tblGroup SET Group_Desc = 'b'"_s);
    db->CommitPending();
    EXPECT_TRUE(isCommitted(path(), u"b"_s));
}

TEST_F(Files, ExclusiveWritesAreSafeAfterHalfASecond)
{
    // A copy of file and log is what a crash at this moment would leave.
    const auto afterCrash = [this](const QString &copy) {
        QFile::copy(path(), path(copy));
        QFile::copy(path() + u"-wal"_s, path(copy) + u"-wal"_s);
        return path(copy);
    };
    run(u"UPDATE tblGroup SET Group_Desc = 'a'"_s);
    EXPECT_FALSE(isCommitted(afterCrash(u"early.mdb"_s), u"a"_s));
    turnEventLoop(700);
    EXPECT_TRUE(isCommitted(afterCrash(u"late.mdb"_s), u"a"_s));
    run(u"UPDATE tblGroup SET Group_Desc = 'b'"_s);
    db.reset();
    EXPECT_TRUE(isCommitted(path(), u"b"_s)) << "leaving commits";
}

TEST_F(Files, AreCompacted)
{
    run(u"DELETE * FROM tblMailQue WHERE ID = 2"_s);
    for (int i = 0; i < 2000; ++i)
        run(u"INSERT INTO tblScripts (Script_Event, Script) VALUES ('%1', '%2')"_s.arg(i).arg(
            QString(200, u'x')));
    run(u"DELETE * FROM tblScripts WHERE Script_Event <> 'OnFailure'"_s);
    EXPECT_EQ(failure([&] { dao::CompactDatabase(path(), path(u"open.mdb"_s)); }), 3356);
    db->Close();
    const qint64 before = QFileInfo(path()).size();
    dao::CompactDatabase(path(), path(u"small.mdb"_s));
    EXPECT_LT(QFileInfo(path(u"small.mdb"_s)).size(), before / 2);
    EXPECT_EQ(QFileInfo(path()).size(), before);
    EXPECT_EQ(failure([&] { dao::CompactDatabase(path(), path(u"small.mdb"_s)); }), 3204);
    EXPECT_EQ(failure([&] { dao::CompactDatabase(path(), path()); }), 3204);
    EXPECT_EQ(failure([&] { dao::CompactDatabase(path(u"none.mdb"_s), path(u"new.mdb"_s)); }), 3024);
    EXPECT_EQ(failure([&] { dao::CompactDatabase(path(), path(u"none/new.mdb"_s)); }), 3044);
    EXPECT_EQ(names(), (QStringList {u"small.mdb"_s, u"test.mdb"_s}));
    db = dao::OpenDatabase(path(u"small.mdb"_s), true);
    EXPECT_EQ(rows(u"tblScripts"_s), u"OnFailure|Sub Main : End Sub"_s);
    EXPECT_EQ(rows(u"SELECT Device_Name FROM tblDevices WHERE Device_Name = 'GAMMA'"_s), u"Gamma"_s);
    run(u"INSERT INTO tblMailQue (Mail_To) VALUES ('x')"_s);
    EXPECT_EQ(rows(u"SELECT ID FROM tblMailQue"_s), u"1\n2"_s) << "numbers go on after the highest in use";
}

TEST_F(Files, ThatAreDamagedLeaveNoHalfCopy)
{
    db->Close();
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(4096);
    file.write(QByteArray(int(file.size()) - 4096, '\x5a'));
    file.close();
    EXPECT_NE(failure([&] { dao::CompactDatabase(path(), path(u"copy.mdb"_s)); }), 0);
    EXPECT_EQ(names(), QStringList {u"test.mdb"_s});
}

TEST_F(Files, AreMadeFromDefinitions)
{
    EXPECT_EQ(failure([&] { create(path()); }), 3204);
    EXPECT_EQ(failure([&] { dao::CreateDatabase(path(u"bad.mdb"_s), {u"CREATE TABLE a (b COLOUR)"_s}); }),
              3290);
    EXPECT_EQ(failure([&] { dao::CreateDatabase(path(u"bad.mdb"_s), {u"CREATE TABLE a (b MEMO); x"_s}); }),
              3142);
    EXPECT_FALSE(QFile::exists(path(u"bad.mdb"_s)));
    dao::CreateDatabase(
        path(u"own.mdb"_s),
        {u"CREATE TABLE [odd name] (ID AUTO, [the \"text\"] TEXT(3) NOT EMPTY DEFAULT 'it''s', n INTEGER NOT NULL, yes YESNO DEFAULT True)"_s,
         u"CREATE UNIQUE INDEX one ON [odd name] (n)"_s});
    db = dao::OpenDatabase(path(u"own.mdb"_s), true);
    const QString insert = u"INSERT INTO [odd name] (n, [the \"text\"]) VALUES (%1, '%2')"_s;
    EXPECT_EQ(failure([&] { run(insert.arg(u"Null"_s, u"a"_s), dao::dbFailOnError); }), 3314);
    EXPECT_EQ(failure([&] { run(insert.arg(u"1"_s, QString()), dao::dbFailOnError); }), 3315);
    EXPECT_EQ(failure([&] { run(insert.arg(u"1"_s, u"abcd"_s), dao::dbFailOnError); }), 3163);
    EXPECT_EQ(run(insert.arg(u"1"_s, u"abc"_s)), 1);
    EXPECT_EQ(failure([&] { run(insert.arg(u"1"_s, u"abc"_s), dao::dbFailOnError); }), 3022);
    auto rs = db->OpenRecordset(u"odd name"_s);
    EXPECT_EQ(rs.FieldNames().join(u','), u"ID,the \"text\",n,yes"_s);
    rs.AddNew();
    EXPECT_EQ(rs.Field(u"the \"text\""_s).text(), u"it's"_s);
    EXPECT_TRUE(rs.Field(u"yes"_s).boolean());
    EXPECT_EQ(failure([&] { rs.Set(u"the \"text\""_s, QString()); }), 3315);
}

} // namespace
