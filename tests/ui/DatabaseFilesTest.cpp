#include "tests/ui/WindowWorld.h"

#include "core/DatabaseSchema.h"
#include "core/Settings.h"
#include "platform/dao/FileSteps.h"
#include "platform/desktop/ScriptedBoxes.h"

#include <QDir>
#include <QFile>
#include <QProgressDialog>
#include <QPushButton>

#include <sys/mount.h>

using namespace Qt::StringLiterals;

namespace {

const QString kReload = u"The file you specified is already loaded.  "
                        "Re-loading the database will reset the counters.  Continue with re-load."_s;
const QString kCompact = u"You are about to compact the database.\r\nContinue with database compaction?"_s;

/** Says yes to everything and remembers it. */
class YesDialogs : public Dialogs
{
public:
    QStringList texts;
    Answer messageBox(const QString &text, const QString &, Icon, Buttons buttons) override
    {
        texts << text;
        return buttons == Ok ? AnswerOk : AnswerYes;
    }
    bool shellOpen(const QString &) override { return true; }
    bool hasProgramFor(const QString &) override { return true; }
};

/** Every row of every table, but for what the commands log about themselves. */
QStringList contents(dao::Database &database)
{
    QStringList all;
    for (const schema::Table &table : schema::tables()) {
        for (dao::Recordset rows = database.OpenRecordset(table.name); !rows.Eof(); rows.MoveNext()) {
            QStringList cells(table.name);
            for (int i = 0; i < table.columns.size(); ++i)
                cells << (rows.Field(i).isNull() ? u"Null"_s : rows.Field(i).text());
            if (!cells.contains(u"Database compacted."_s))
                all << cells.join(u'|');
        }
    }
    all.sort();
    return all;
}

/** The same of a file; what it cannot be opened for when it cannot. */
QStringList contentsOf(const QString &path)
{
    try {
        return contents(*dao::OpenDatabase(path, true));
    } catch (const VbError &error) {
        return { u"not readable: "_s + error.description() };
    }
}

void copyFolder(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    for (const QString &name : QDir(from).entryList(QDir::Files))
        QFile::copy(from + u'/' + name, to + u'/' + name);
}

} // namespace

class DatabaseFilesTest : public WindowWorld
{
protected:
    SmallNetwork net { world };
    desktop::ScriptedBoxes pickers { [](const QString &fault) { ADD_FAILURE() << fault.toStdString(); } };

    void pickOpen(const QString &file) { pickers.expectOpenFile(u"Kavro 2.0 - Open Database"_s, file); }
    void pickSave(const QString &file) { pickers.expectSaveFile(u"Kavro 2.0 - Save Database As..."_s, file); }
    /** Runs a command to its end. */
    void command(const char *name)
    {
        trigger(name);
        ASSERT_TRUE(time->runUntil([&] {
            emit window->commands().done();
            return action("mnuFileOpen").isEnabled();
        }));
    }
    void openFile(const QString &file)
    {
        pickOpen(file);
        command("mnuFileOpen");
    }
    void saveAs(const QString &file)
    {
        pickSave(file);
        command("mnuFileSaveAs");
    }
    /** A database with one group of that label. */
    QString another(const QString &name, const QString &label)
    {
        const QString file = world.path(name);
        World::makeDatabase(file);
        const auto made = dao::OpenDatabase(file, true);
        made->Execute(u"INSERT INTO tblGroup (Group_Label) VALUES ('"_s + label + u"')"_s);
        return file;
    }
    QString startup() { return GetSetting(u"Startup"_s, u"Database"_s); }
    QStringList fileNames() { return QDir(world.folder.path()).entryList({ u"*db*"_s, u"*.new*"_s }, QDir::Files); }
};

TEST_F(DatabaseFilesTest, NewOnlySpeaks)
{
    open();
    const QStringList files = fileNames();
    trigger("mnuFileNew");
    EXPECT_EQ(world.announcer.log, QStringList(u"speak CreateNewDB"_s));
    EXPECT_EQ(fileNames(), files);
    EXPECT_EQ(startup(), world.path(u"defaultDB.mdb"_s));
}

TEST_F(DatabaseFilesTest, OpenAnother)
{
    open();
    select(NodeLevel::Port, net.portKey);
    const QStringList before = contents(db());
    const QString file = another(u"other.mdb"_s, u"Elsewhere"_s);
    const int generation = vbMain().databaseGeneration;
    openFile(file);
    EXPECT_EQ(pickers.pickers().constLast().folder, ProgramFolder());
    EXPECT_EQ(pickers.pickers().constLast().name, u"defaultDB.mdb"_s);
    EXPECT_EQ(pickers.pickers().constLast().filter, u"mdb (*.mdb)|*.mdb"_s);
    EXPECT_EQ(window->windowTitle(), u"Kavro_2000 - other.mdb"_s);
    EXPECT_EQ(startup(), file);
    EXPECT_EQ(vbMain().databasePath, file);
    EXPECT_GT(vbMain().databaseGeneration, generation);
    EXPECT_TRUE(db().IsExclusive());
    EXPECT_EQ(treeLines().size(), 2);
    EXPECT_EQ(tree().currentLevel(), NodeLevel::Root);
    EXPECT_EQ(listLines(), QStringList(u"Group:1 | 14 | Elsewhere | Group |  | No Problems Detected"_s));
    EXPECT_EQ(contentsOf(world.path(u"defaultDB.mdb"_s)), before);

    SaveSetting(u"Options"_s, u"DBExclusive"_s, u"0"_s);
    openFile(world.path(u"defaultDB.mdb"_s));
    EXPECT_FALSE(db().IsExclusive());
}

TEST_F(DatabaseFilesTest, OpenTheOpenOneAgainAsksAndResetsTheModes)
{
    open();
    world.sql(u"UPDATE tblPortStatus SET Port_Mode = -1, Port_Icon_Flag = -3"_s);
    const QString file = vbMain().databasePath;
    const QString link = world.path(u"link.mdb"_s);
    QFile::link(file, link);
    world.dialogs.expect(kReload, Dialogs::AnswerNo);
    openFile(link);
    EXPECT_EQ(distinct(u"Select Port_Mode, Port_Icon_Flag FROM tblPortStatus"_s), QStringList(u"-1|-3"_s));
    world.dialogs.expect(kReload, Dialogs::AnswerYes);
    openFile(file);
    EXPECT_EQ(distinct(u"Select Port_Mode, Port_Icon_Flag FROM tblPortStatus"_s), QStringList(u"0|0"_s));
    EXPECT_EQ(world.dialogs.shown.constLast().icon, Dialogs::Question);
}

TEST_F(DatabaseFilesTest, WhatCannotBeOpenedLeavesTheOldOneOpen)
{
    open();
    const QString old = vbMain().databasePath;
    openFile(QString()); // cancelled
    world.dialogs.expect(u"The Database name you provided is not valid."_s);
    openFile(world.path(u"none.mdb"_s));
    EXPECT_EQ(world.dialogs.shown.constLast().icon, Dialogs::Information);

    const QString incomplete = world.path(u"incomplete.mdb"_s);
    dao::CreateDatabase(incomplete, schema::definitions().mid(0, 3));
    const QString held = another(u"held.mdb"_s, u"g"_s);
    const auto holder = dao::OpenDatabase(held, false);
    QFile(world.path(u"empty.mdb"_s)).open(QIODevice::WriteOnly);
    QFile torn(world.path(u"torn.mdb"_s));
    torn.open(QIODevice::WriteOnly);
    torn.write(QByteArray("SQLite format 3", 16) + QByteArray(4096, '\x5a'));
    torn.close();
    const std::pair<QString, QString> kCases[] = {
        { u"empty.mdb"_s, u"Unrecognized database format"_s },
        { u"torn.mdb"_s, u"Can't open database"_s },
        { u"log.txt"_s, u"Unrecognized database format"_s },
        { u"."_s, u"Not a valid file name."_s },
        { u"held.mdb"_s, u"already opened by user"_s },
        { u"incomplete.mdb"_s, u"cannot find the input table"_s },
    };
    for (const auto &[name, reason] : kCases) {
        world.dialogs.expect(reason);
        openFile(world.path(name));
        EXPECT_TRUE(world.dialogs.shown.constLast().text.endsWith(u"defaultDB.mdb stays open."_s));
        EXPECT_EQ(world.dialogs.shown.constLast().icon, Dialogs::Exclamation);
        EXPECT_EQ(vbMain().databasePath, old);
        EXPECT_EQ(startup(), old);
        EXPECT_EQ(world.rows(u"Select Group_ID FROM tblGroup"_s).size(), 2);
    }
}

TEST_F(DatabaseFilesTest, SaveAs)
{
    open();
    WriteLog(u"before"_s, u"Message"_s, 0, 0);
    const QString old = vbMain().databasePath;
    const QStringList before = contents(db());
    world.dialogs.expect(u"File in use.  Please specify a different file name."_s);
    saveAs(old);
    EXPECT_EQ(world.dialogs.shown.constLast().icon, Dialogs::Information);

    const QString copy = world.path(u"copy.mdb"_s);
    saveAs(copy);
    EXPECT_EQ(vbMain().databasePath, copy);
    EXPECT_EQ(startup(), old);
    EXPECT_TRUE(db().IsExclusive());
    EXPECT_EQ(contents(db()), before);
    WriteLog(u"after"_s, u"Message"_s, 0, 0);
    EXPECT_EQ(contentsOf(old), before);

    const QString other = another(u"other.mdb"_s, u"Elsewhere"_s);
    const QStringList otherRows = contentsOf(other);
    world.dialogs.expect(u"Overwrite existing file?"_s, Dialogs::AnswerNo);
    saveAs(other);
    EXPECT_EQ(contentsOf(other), otherRows);
    EXPECT_EQ(vbMain().databasePath, copy);
    const QStringList now = contents(db());
    world.dialogs.expect(u"Overwrite existing file?"_s, Dialogs::AnswerYes);
    saveAs(other);
    EXPECT_EQ(contents(db()), now);
    EXPECT_EQ(contentsOf(copy), now);
    const QStringList left { u"copy.mdb"_s, u"defaultDB.mdb"_s, u"other.ldb"_s, u"other.mdb"_s, u"other.mdb-wal"_s };
    EXPECT_EQ(fileNames(), left);
}

TEST_F(DatabaseFilesTest, SaveAsDoesNotTakeAFileFromSomebodyElse)
{
    open();
    const QString other = another(u"other.mdb"_s, u"Elsewhere"_s);
    const QStringList rows = contentsOf(other);
    {
        const auto holder = dao::OpenDatabase(other, false);
        world.dialogs.expect(u"Overwrite existing file?"_s, Dialogs::AnswerYes);
        world.dialogs.expect(u"already opened by user"_s);
        saveAs(other);
    }
    EXPECT_EQ(contentsOf(other), rows);
    EXPECT_EQ(vbMain().databasePath, world.path(u"defaultDB.mdb"_s));
}

TEST_F(DatabaseFilesTest, SaveAsOntoAFileWhoseProgramWasKilledLeavesNothingOfItsLog)
{
    open();
    const QStringList rows = contents(db());
    const QString target = world.path(u"target.mdb"_s);
    {
        // A copy of an open database with its log is what a killed program leaves.
        const QString file = another(u"other.mdb"_s, u"Elsewhere"_s);
        const auto running = dao::OpenDatabase(file, true);
        running->Execute(u"INSERT INTO tblGroup (Group_Label) VALUES ('Late')"_s);
        running->CommitPending();
        QFile::copy(file, target);
        QFile::copy(file + u"-wal"_s, target + u"-wal"_s);
    }
    ASSERT_GT(QFileInfo(target + u"-wal"_s).size(), 0);
    world.dialogs.expect(u"Overwrite existing file?"_s, Dialogs::AnswerYes);
    saveAs(target);
    EXPECT_EQ(vbMain().databasePath, target);
    EXPECT_EQ(contents(db()), rows);
}

TEST_F(DatabaseFilesTest, Compact)
{
    open();
    for (int i = 0; i < 2000; ++i)
        WriteLog(QString(200, u'x'), u"Message"_s, 0, 0);
    world.sql(u"DELETE * FROM tblEventLog"_s);
    const QStringList before = contents(db());
    openFile(another(u"other.mdb"_s, u"g"_s));
    openFile(world.path(u"defaultDB.mdb"_s)); // the log is part of the file now
    QFile stale(world.path(u"Temp.mdb"_s));
    stale.open(QIODevice::WriteOnly);
    stale.write("left behind");
    stale.close();
    const QString path = vbMain().databasePath;
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    const qint64 size = QFileInfo(path).size();

    world.dialogs.expect(kCompact, Dialogs::AnswerNo);
    command("mnuCompactDatabase");
    EXPECT_TRUE(stale.exists());
    world.announcer.log.clear();
    world.dialogs.expect(kCompact, Dialogs::AnswerYes);
    trigger("mnuCompactDatabase");
    EXPECT_EQ(window->statusPanels().panelText(StatusBar::Progress), u"Compacting Database.  Please wait..."_s);
    EXPECT_FALSE(action("mnuFileSaveAs").isEnabled());
    time->runFor(1000);
    EXPECT_EQ(window->statusPanels().panelText(StatusBar::Progress), u"Ready"_s);
    EXPECT_EQ(world.announcer.log, QStringList(u"speak CompactDatabase"_s));
    EXPECT_FALSE(stale.exists());
    EXPECT_EQ(contents(db()), before);
    EXPECT_EQ(world.rows(u"Select Event_Type, Event FROM tblEventLog"_s),
        QStringList(u"Information|Database compacted."_s));
    EXPECT_EQ(QFile::permissions(path) & QFile::ReadOther, QFile::Permissions());
    db().Close();
    EXPECT_LT(QFileInfo(path).size(), size / 2);
    QFile log(world.logFile());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().endsWith("Information...Database compacted.\n"));
}

TEST_F(DatabaseFilesTest, CompactSparesADatabaseThatBearsTheTemporaryName)
{
    open();
    saveAs(world.path(u"Temp.mdb"_s));
    const QStringList before = contents(db());
    world.dialogs.expect(kCompact, Dialogs::AnswerYes);
    command("mnuCompactDatabase");
    EXPECT_EQ(vbMain().databasePath, world.path(u"Temp.mdb"_s));
    EXPECT_EQ(contents(db()), before);
}

TEST_F(DatabaseFilesTest, CompactWhileOthersHaveItOpen)
{
    SaveSetting(u"Options"_s, u"DBExclusive"_s, u"0"_s);
    open();
    openFile(another(u"shared.mdb"_s, u"g"_s));
    const QStringList before = contents(db());
    const auto other = dao::OpenDatabase(vbMain().databasePath, false);
    world.dialogs.expect(kCompact, Dialogs::AnswerYes);
    world.dialogs.expect(u"already opened by user"_s);
    command("mnuCompactDatabase");
    EXPECT_EQ(contents(db()), before);
    EXPECT_EQ(contents(*other), before);
}

// Files of the older edition

namespace {

const QString kConvert = u"old.mdb was made by an older edition of the program and cannot be used as it is.\r\n"
                         "Convert it to old_converted.mdb and open the copy?  The old file stays as it is."_s;

QString jetSample() { return QStringLiteral(KAVRO_JET_FILES) + u"/monitor_v2003.mdb"_s; }

} // namespace

TEST_F(DatabaseFilesTest, OpenAGenuineJetFile)
{
    open();
    const QString old = world.path(u"old.mdb"_s);
    const QString converted = world.path(u"old_converted.mdb"_s);
    QFile::copy(jetSample(), old);
    world.dialogs.expect(kConvert, Dialogs::AnswerNo);
    openFile(old);
    EXPECT_FALSE(QFileInfo::exists(converted));

    world.dialogs.expect(kConvert, Dialogs::AnswerYes);
    world.dialogs.expect(u"tblGroup: 4 rows read, 4 rows written"_s);
    openFile(old);
    EXPECT_EQ(vbMain().databasePath, converted);
    EXPECT_EQ(startup(), converted);
    EXPECT_EQ(window->windowTitle(), u"Kavro_2000 - old_converted.mdb"_s);
    EXPECT_EQ(listLines().size(), 4);
    EXPECT_EQ(world.rows(u"Select Device_ID FROM tblDevices"_s).size(), 24);
    QFile report(converted + u".txt"_s);
    ASSERT_TRUE(report.open(QIODevice::ReadOnly));
    EXPECT_TRUE(report.readAll().contains("row 24 (Device_ID 24), column MSAgent_Referr_Device"));

    // The name is taken now.
    world.dialogs.expect(kConvert, Dialogs::AnswerYes);
    pickers.expectOpenFile(u"Kavro 2.0 - Open Database"_s, old);
    pickSave(converted);
    world.dialogs.expect(u"old_converted.mdb exists already."_s);
    pickSave(QString());
    command("mnuFileOpen");
    EXPECT_EQ(vbMain().databasePath, converted);
}

TEST_F(DatabaseFilesTest, AJetFileThatCannotBeConverted)
{
    open();
    const QString old = world.path(u"old.mdb"_s);
    QFile::copy(jetSample(), old);
    QFile damaged(old);
    ASSERT_TRUE(damaged.resize(5000));
    world.dialogs.expect(kConvert, Dialogs::AnswerYes);
    world.dialogs.expect(u"old.mdb could not be converted."_s);
    openFile(old);
    EXPECT_EQ(vbMain().databasePath, world.path(u"defaultDB.mdb"_s));
    EXPECT_EQ(fileNames().filter(u"old"_s), QStringList(u"old.mdb"_s));
}

TEST_F(DatabaseFilesTest, CancellingAConversionLeavesNothing)
{
    open();
    const QString old = world.path(u"old.mdb"_s);
    QFile::copy(jetSample(), old);
    world.dialogs.expect(kConvert, Dialogs::AnswerYes);
    pickOpen(old);
    trigger("mnuFileOpen");
    auto *progressBox = window->findChild<QProgressDialog *>();
    ASSERT_TRUE(progressBox);
    progressBox->findChild<QPushButton *>()->click();
    ASSERT_TRUE(time->runUntil([&] { return !window->findChild<QProgressDialog *>(); }));
    EXPECT_EQ(vbMain().databasePath, world.path(u"defaultDB.mdb"_s));
    EXPECT_EQ(fileNames().filter(u"old"_s), QStringList(u"old.mdb"_s));
}

TEST_F(DatabaseFilesTest, ClosingTheWindowEndsAConversion)
{
    open();
    const QString old = world.path(u"old.mdb"_s);
    QFile::copy(jetSample(), old);
    world.dialogs.expect(kConvert, Dialogs::AnswerYes);
    pickOpen(old);
    trigger("mnuFileOpen");
    EXPECT_FALSE(action("mnuFileSaveAs").isEnabled());
    window.reset();
    vbMain().window = &world.window;
    EXPECT_EQ(fileNames().filter(u"old"_s).filter(u".new"_s), QStringList());
}

// Faults at every step

namespace {

struct Exchange {
    const char *name;
    void (*run)(desktop::ScriptedBoxes &pickers, frmMain &window, const QString &target);
    bool targetExists = false;
};

void save(desktop::ScriptedBoxes &pickers, frmMain &window, const QString &target)
{
    pickers.expectSaveFile(u"Kavro 2.0 - Save Database As..."_s, target);
    window.commands().action("mnuFileSaveAs")->trigger();
}

const Exchange kExchanges[] = {
    { "save_as", save },
    { "save_as_over_another", save, true },
    { "compact", [](desktop::ScriptedBoxes &, frmMain &window, const QString &) {
         window.commands().action("mnuCompactDatabase")->trigger();
     } },
    { "open", [](desktop::ScriptedBoxes &pickers, frmMain &window, const QString &target) {
         pickers.expectOpenFile(u"Kavro 2.0 - Open Database"_s, target);
         window.commands().action("mnuFileOpen")->trigger();
     }, true },
};

} // namespace

class ExchangeSweep : public DatabaseFilesTest, public testing::WithParamInterface<Exchange>
{
protected:
    YesDialogs yes;
    QString source = world.path(u"source.mdb"_s);
    QString target = world.path(u"target.mdb"_s);
    QStringList rows;
    QStringList targetRows;
    int ends = 0;

    ~ExchangeSweep() override { dao::files::setStepHook({}); }

    /** A fresh pair of files, of which the source is open with its last rows still in the log. */
    void prepare()
    {
        vbMain().db.reset();
        dao::files::removeDatabase(source);
        dao::files::removeDatabase(target);
        World::makeDatabase(source);
        if (GetParam().targetExists)
            another(u"target.mdb"_s, u"Target"_s);
        targetRows = GetParam().targetExists ? contentsOf(target) : QStringList();
        UseDatabase(dao::OpenDatabase(source, true), source);
        for (int i = 0; i < 50; ++i)
            world.sql(u"INSERT INTO tblEventLog (Event) VALUES ('event %1')"_s.arg(i));
        rows = contents(db());
        db().CommitPending();
        vbMain().dialogs = &yes;
        setEndProgramHook([this](int code) {
            ++ends;
            throw ProgramEnded { code };
        });
    }
    void runCommand()
    {
        try {
            GetParam().run(pickers, *window, target);
            time->runFor(3000);
        } catch (const ProgramEnded &) {
            // Counted where it happens.
        }
    }
    void expectOldOrNew(const QString &folder, const std::string &where)
    {
        const bool opens = GetParam().name == std::string("open");
        EXPECT_EQ(contentsOf(folder + u"/source.mdb"_s), rows) << where;
        if (!QFileInfo::exists(folder + u"/target.mdb"_s)) {
            EXPECT_FALSE(GetParam().targetExists) << where;
            return;
        }
        const QStringList found = contentsOf(folder + u"/target.mdb"_s);
        EXPECT_TRUE(found == targetRows || (!opens && found == rows))
            << where << ": " << found.size() << " rows, " << found.value(0).toStdString();
    }
};

TEST_P(ExchangeSweep, AFailingStepLosesNothing)
{
    open();
    int failing = 0;
    for (bool met = true; met; ++failing) {
        prepare();
        int steps = 0;
        QString failed;
        dao::files::setStepHook([&](const QString &step) {
            if (steps++ != failing)
                return;
            failed = step;
            throw VbError(57, u"Device I/O error"_s);
        });
        runCommand();
        dao::files::setStepHook({});
        met = !failed.isEmpty();
        const std::string where = "step " + std::to_string(failing) + ": " + failed.toStdString();
        EXPECT_EQ(ends, 0) << where;
        ASSERT_TRUE(vbMain().db && vbMain().db->IsOpen()) << where;
        const bool opened = GetParam().name == std::string("open") && vbMain().databasePath == target;
        EXPECT_EQ(contents(db()), opened ? targetRows : rows)
            << where;
        // What cannot be opened and is to be overwritten anyway is no reason to complain.
        const bool ignored = failed == u"open "_s + target && vbMain().databasePath == target && failing == 1;
        EXPECT_EQ(met && !ignored, yes.texts.join(u' ').contains(u"Device I/O"_s)) << where;
        yes.texts.clear();
        db().Close();
        expectOldOrNew(world.folder.path(), where);
        EXPECT_FALSE(QFileInfo::exists(world.path(u"Temp.mdb"_s))) << where;
    }
    EXPECT_GE(failing, 2);
}

TEST_P(ExchangeSweep, APowerCutAtAnyStepLeavesTheOldOrTheNewFile)
{
    open();
    prepare();
    QTemporaryDir snapshots;
    QStringList steps;
    const auto snapshot = [&](const QString &step) {
        copyFolder(world.folder.path(), snapshots.filePath(QString::number(steps.size())));
        steps << step;
    };
    dao::files::setStepHook(snapshot);
    runCommand();
    dao::files::setStepHook({});
    snapshot(u"end"_s);
    EXPECT_EQ(ends, 0);
    for (int i = 0; i < steps.size(); ++i) {
        expectOldOrNew(snapshots.filePath(QString::number(i)), "before " + steps[i].toStdString());
        // A file gets its name only after its content is safe, and the name is made safe in turn.
        if (steps[i].startsWith(u"rename "_s)) {
            EXPECT_TRUE(steps.value(i - 1).startsWith(u"sync "_s)) << steps[i].toStdString();
            EXPECT_EQ(steps.value(i + 1), u"sync "_s + world.folder.path());
        }
    }
}

TEST_P(ExchangeSweep, OnlyTheLossOfBothFilesEndsTheProgram)
{
    open();
    prepare();
    bool broken = false;
    dao::files::setStepHook([&](const QString &) {
        // From the moment the database is closed nothing can be opened or written any more.
        broken = broken || !vbMain().db || !vbMain().db->IsOpen();
        if (broken)
            throw VbError(57, u"Device I/O error"_s);
    });
    runCommand();
    dao::files::setStepHook({});
    const bool closes = GetParam().name == std::string("compact");
    EXPECT_EQ(ends, closes ? 1 : 0);
    EXPECT_EQ(closes, yes.texts.join(u' ').contains(u"An error has occured in the CompactDatabase subroutine."_s));
    if (vbMain().db && vbMain().db->IsOpen())
        db().Close();
    expectOldOrNew(world.folder.path(), "end");
}

INSTANTIATE_TEST_SUITE_P(Sweep, ExchangeSweep, testing::ValuesIn(kExchanges),
    [](const auto &test) { return std::string(test.param.name); });

/** A file system of its own, small and soon full. */
class SmallDisk
{
public:
    explicit SmallDisk(const QString &path, const char *size)
        : m_path(QFile::encodeName(path))
    {
        QDir().mkpath(path);
        m_mounted = ::mount("none", m_path.constData(), "tmpfs", 0, size) == 0;
    }
    ~SmallDisk() { ::umount2(m_path.constData(), MNT_DETACH); }
    bool isMounted() const { return m_mounted; }
    bool makeReadOnly() const
    {
        return ::mount("none", m_path.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }

private:
    QByteArray m_path;
    bool m_mounted = false;
};

TEST_F(DatabaseFilesTest, FullAndReadOnlyDisks)
{
    open();
    for (int i = 0; i < 3000; ++i)
        world.sql(u"INSERT INTO tblEventLog (Event) VALUES ('%1')"_s.arg(QString(400, u'x')));
    db().CommitPending();
    const QStringList rows = contents(db());
    const QString small = world.path(u"small"_s);
    const SmallDisk disk(small, "size=600k");
    ASSERT_TRUE(disk.isMounted()) << "needs a mount namespace";
    const QString old = another(u"small/old.mdb"_s, u"Old"_s);
    const QStringList oldRows = contentsOf(old);

    // The copy does not fit.
    world.dialogs.expect(u"Overwrite existing file?"_s, Dialogs::AnswerYes);
    world.dialogs.expect(u"stays open"_s);
    saveAs(old);
    EXPECT_EQ(contentsOf(old), oldRows);
    EXPECT_EQ(QDir(small).entryList(QDir::Files), QStringList(u"old.mdb"_s));

    // The temporary file of a compaction does not fit; then it fits and lies on another file system.
    SaveSetting(u"Options"_s, u"LogFile"_s, world.logFile());
    setProgramFolder(small);
    world.dialogs.expect(kCompact, Dialogs::AnswerYes);
    world.dialogs.expect(u"could not be compacted"_s);
    command("mnuCompactDatabase");
    EXPECT_EQ(contents(db()), rows);
    world.sql(u"DELETE * FROM tblEventLog"_s);
    const QStringList fewer = contents(db());
    world.dialogs.expect(kCompact, Dialogs::AnswerYes);
    command("mnuCompactDatabase");
    EXPECT_EQ(contents(db()), fewer);
    EXPECT_EQ(vbMain().databasePath, world.path(u"defaultDB.mdb"_s));
    EXPECT_EQ(QDir(small).entryList(QDir::Files), QStringList(u"old.mdb"_s));

    ASSERT_TRUE(disk.makeReadOnly());
    world.dialogs.expect(u"stays open"_s);
    saveAs(small + u"/new.mdb"_s);
    world.dialogs.expect(u"stays open"_s);
    openFile(old);
    world.dialogs.expect(kCompact, Dialogs::AnswerYes);
    world.dialogs.expect(u"could not be compacted"_s);
    command("mnuCompactDatabase");
    EXPECT_EQ(contents(db()), fewer);
    setProgramFolder(world.folder.path());
}
