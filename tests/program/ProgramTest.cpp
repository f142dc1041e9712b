// The built program as a black box: own home folder, no display, real listeners.
#include "tests/world/World.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTcpServer>
#include <gtest/gtest.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

/** A home folder with a database of one host: an answering port, a refused one and a ping. */
struct Home {
    QTemporaryDir folder;
    QTcpServer server;
    quint16 refused = 0;

    Home()
    {
        server.listen(QHostAddress::LocalHost);
        QTcpServer other;
        other.listen(QHostAddress::LocalHost);
        refused = other.serverPort();
        QDir(folder.path()).mkpath(u"config/kavro2000"_s);
        set(u"Startup/Database"_s, database());
        set(u"Options/LogFile"_s, logFile());
        QFile log(logFile());
        log.open(QIODevice::WriteOnly);
        World world;
        World::makeDatabase(database());
        UseDatabase(dao::OpenDatabase(database(), true), database());
        const int device = world.addDevice(world.addGroup(u"Local"_s), u"127.0.0.1"_s, u"Here"_s);
        for (const QString &port : { u"Ping"_s, QString::number(server.serverPort()), QString::number(refused) })
            world.addCheck(device, port);
        set(u"Options/MonitorFinish"_s, u"1"_s);
        dao::Recordset scripts = db().OpenRecordset(u"tblScripts"_s);
        scripts.AddNew();
        scripts.Set(u"Script_Event"_s, u"CheckFinish"_s);
        scripts.Set(u"Script"_s, u"Sub Main\r\nCreateObject(\"Scripting.FileSystemObject\").CreateTextFile(\""_s
                                     + scriptFile() + u"\").Write \"ran\"\r\nEnd Sub\r\n"_s);
        scripts.Update();
    }
    QString scriptFile() const { return folder.filePath(u"script.txt"_s); }
    QString database() const { return folder.filePath(u"net.mdb"_s); }
    QString logFile() const { return folder.filePath(u"net.log"_s); }
    QString settingsFile() const { return folder.filePath(u"config/kavro2000/Kavro_2000.ini"_s); }
    void set(const QString &key, const QString &value) { QSettings(settingsFile(), QSettings::IniFormat).setValue(key, value); }
    QString setting(const QString &key) const { return QSettings(settingsFile(), QSettings::IniFormat).value(key).toString(); }
    QStringList rows(const QString &select) const
    {
        World world;
        UseDatabase(dao::OpenDatabase(database(), true), database());
        return world.rows(select);
    }
};

struct Program {
    QProcess process;
    QString output;

    Program(const Home &home, const QStringList &arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : { "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM" })
            environment.remove(QString::fromLatin1(name));
        environment.insert(u"HOME"_s, home.folder.path());
        environment.insert(u"XDG_CONFIG_HOME"_s, home.folder.filePath(u"config"_s));
        environment.insert(u"XDG_DATA_HOME"_s, home.folder.filePath(u"data"_s));
        environment.insert(u"XDG_RUNTIME_DIR"_s, home.folder.path());
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(KAVRO_PROGRAM), arguments);
    }
    bool waitFor(const QString &text, int limitMs = 15000)
    {
        QElapsedTimer time;
        time.start();
        while (!output.contains(text) && time.elapsed() < limitMs && process.state() != QProcess::NotRunning) {
            process.waitForReadyRead(100);
            output += QString::fromUtf8(process.readAllStandardOutput());
        }
        process.waitForReadyRead(1);
        output += QString::fromUtf8(process.readAllStandardOutput());
        return output.contains(text);
    }
    int end(int signal)
    {
        ::kill(pid_t(process.processId()), signal);
        return exitCode();
    }
    int exitCode()
    {
        EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished(10000)) << "does not end";
        output += QString::fromUtf8(process.readAllStandardOutput());
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
};

QString contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

TEST(Program, MonitorsWithoutADisplayAndLeavesEverythingSavedOnSignals)
{
    for (const int signal : { SIGTERM, SIGINT }) {
        Home home;
        Program program(home, { u"-A"_s });
        ASSERT_TRUE(program.waitFor(u"Next Check In 5 Minutes."_s)) << program.output.toStdString();
        EXPECT_EQ(program.end(signal), 0);
        const QString failure = u"Here port %1 failed because connection refused."_s.arg(home.refused);
        for (const QString &text : { u"Monitoring Started."_s, failure, u"Force Shutdown Detected.  Program Stopped."_s,
                                     u"Program Stopped."_s }) {
            EXPECT_TRUE(program.output.contains(text)) << text.toStdString() << "\n" << program.output.toStdString();
        }
        EXPECT_EQ(home.rows(u"Select Port_Status, Port_Last_Error FROM tblPortStatus ORDER BY Port_ID"_s).mid(1),
                  (QStringList{ u"Connected|"_s, u"Failed|connection refused"_s }));
        EXPECT_EQ(home.rows(u"Select Event_Type FROM tblEventLog WHERE Event = 'Program Stopped.'"_s),
                  QStringList{ u"Information"_s });
        EXPECT_TRUE(contents(home.logFile()).contains(u" Failure..."_s + failure)) << contents(home.logFile()).toStdString();
        EXPECT_EQ(contents(home.scriptFile()), u"ran"_s) << "the script of the event did not run";
        EXPECT_EQ(home.setting(u"Settings/ViewMode"_s), u"0"_s);
        EXPECT_FALSE(home.setting(u"Settings/MainWidth"_s).isEmpty()) << "the layout was not saved";
    }
}

TEST(Program, ASecondCopyOfTheSameUserEndsAtOnceWithoutTouchingAnything)
{
    Home home;
    Program first(home, {});
    ASSERT_TRUE(first.waitFor(u"Program Started."_s)) << first.output.toStdString();
    Program second(home, { u"-A"_s });
    EXPECT_TRUE(second.waitFor(u"Kavro_2000 is already loaded.  Unable to load program again."_s));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(first.process.state(), QProcess::Running);

    first.process.kill(); // what a killed copy leaves behind must not keep the next one out
    first.process.waitForFinished();
    Program third(home, {});
    EXPECT_TRUE(third.waitFor(u"Program Started."_s)) << third.output.toStdString();
    EXPECT_EQ(third.end(SIGTERM), 0);
}

TEST(Program, ADatabaseHeldByAnotherProgramIsNamedAndEndsTheStart)
{
    Home home;
    const auto held = dao::OpenDatabase(home.database(), true);
    Program program(home, {});
    EXPECT_TRUE(program.waitFor(u"An error has occured in the Main subroutine."_s)) << program.output.toStdString();
    EXPECT_TRUE(program.waitFor(u"3356"_s));
    EXPECT_EQ(program.exitCode(), 1);
}
