#include "RawServer.h"

#include "platform/vbscript/Engine.h"
#include "platform/vbscript/ScriptControl.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** Runs an example as the program does at the end of two cycles, with one of its settings changed. */
class Example
{
public:
    explicit Example(const QString &name)
        : m_code(QString::fromUtf8(contents(QStringLiteral(KAVRO_EXAMPLES "/") + name)))
    {
        QObject::connect(&m_control, &ScriptControl::Error, &m_control,
            [this] { m_errors.append(m_control.Fault().description); });
    }
    void set(const QString &constant, const QString &value)
    {
        const QString start = u"Const "_s + constant + u" = "_s;
        const qsizetype at = m_code.indexOf(start) + start.size();
        ASSERT_GE(at, start.size()) << constant.toStdString();
        m_code.replace(at, m_code.indexOf(u'\n', at) - at, u'"' + value + u'"');
    }
    /** Errors of both runs. */
    QStringList run()
    {
        for (int cycle = 0; cycle < 2; ++cycle) {
            if (m_control.AddCode(m_code))
                m_control.Run(u"Main"_s);
        }
        return m_errors;
    }

private:
    QString m_code;
    ScriptControl m_control;
    QStringList m_errors;
};

}

TEST(Examples, AppendToFile)
{
    const QTemporaryDir folder;
    Example example(u"append-to-file.vbs"_s);
    example.set(u"kFile"_s, folder.filePath(u"log"_s));
    EXPECT_EQ(example.run(), QStringList());
    EXPECT_EQ(contents(folder.filePath(u"log"_s)).count(" check finished\r\n"), 2);
}

TEST(Examples, RunCommand)
{
    const QTemporaryDir folder;
    Example good(u"run-command.vbs"_s);
    good.set(u"kCommand"_s, u"touch "_s + folder.filePath(u"done"_s));
    EXPECT_EQ(good.run(), QStringList());
    EXPECT_TRUE(QFile::exists(folder.filePath(u"done"_s)));
    Example bad(u"run-command.vbs"_s);
    bad.set(u"kCommand"_s, u"false"_s);
    EXPECT_EQ(bad.run().value(1), u"The command ended with code 1."_s);
}

TEST(Examples, CallWebhook)
{
    RawServer server([](int socket, const QByteArray &request) {
        const bool known = request.startsWith("POST /hooks/kavro ");
        RawServer::answer(
            socket, known ? "HTTP/1.1 204 No Content\r\n\r\n" : "HTTP/1.1 404 Not Found\r\n\r\n");
    });
    const QString base = u"http://127.0.0.1:%1"_s.arg(server.port());
    Example good(u"call-webhook.vbs"_s);
    good.set(u"kUrl"_s, base + u"/hooks/kavro"_s);
    EXPECT_EQ(good.run(), QStringList());
    EXPECT_TRUE(server.lastRequest().contains("\"event\":\"CheckFinish\",\"time\":\"2"))
        << server.lastRequest().constData();
    Example bad(u"call-webhook.vbs"_s);
    bad.set(u"kUrl"_s, base + u"/elsewhere"_s);
    EXPECT_EQ(bad.run().value(0), u"The service answered 404."_s);
}

TEST(Examples, StatesToCsv)
{
    const QTemporaryDir folder;
    const QString database = folder.filePath(u"states.db"_s);
    QProcess sqlite;
    sqlite.start(u"sqlite3"_s,
        { database,
            u"CREATE TABLE tblDevices (Device_ID, Device_Name, Device_Alias);"
            "CREATE TABLE tblPortMain (Port_ID, Device_ID, Port_Num);"
            "CREATE TABLE tblPortStatus (Port_ID, Port_Status, Port_Last_Error, Port_Success, Port_Failure);"
            "INSERT INTO tblDevices VALUES (1, 'web', 'Web \"new\"'), (2, 'mail', NULL);"
            "INSERT INTO tblPortMain VALUES (1, 1, '80'), (2, 2, 'Ping');"
            "INSERT INTO tblPortStatus VALUES (1, 'Failed', 'refused, twice', 3, 4), (2, 'Connected', '', 5, 0);"_s });
    ASSERT_TRUE(sqlite.waitForFinished() && sqlite.exitCode() == 0)
        << sqlite.readAllStandardError().constData();
    const QString csv = folder.filePath(u"states.csv"_s);
    Example good(u"states-to-csv.vbs"_s);
    good.set(u"kDatabase"_s, database);
    good.set(u"kFile"_s, csv);
    EXPECT_EQ(good.run(), QStringList());
    const QByteArray expected = "Device,Alias,Check,State,Last error,Successes,Failures\r\n"
                                "mail,,Ping,Connected,,5,0\r\n"
                                "web,\"Web \"\"new\"\"\",80,Failed,\"refused, twice\",3,4\r\n";
    EXPECT_EQ(contents(csv), expected);
    Example bad(u"states-to-csv.vbs"_s);
    bad.set(u"kDatabase"_s, folder.filePath(u"absent.db"_s));
    bad.set(u"kFile"_s, csv);
    EXPECT_EQ(bad.run().size(), 2);
    EXPECT_EQ(contents(csv), expected);
}

TEST(Examples, RestartService)
{
    const QTemporaryDir folder;
    const QString log = folder.filePath(u"log"_s);
    const QString up = folder.filePath(u"up"_s);
    Example example(u"restart-service.vbs"_s);
    example.set(u"kStatus"_s, u"test -e "_s + folder.path() + u'/');
    example.set(u"kRestart"_s, u"touch "_s + folder.path() + u'/');
    example.set(u"kService"_s, u"up"_s);
    example.set(u"kFile"_s, log);
    EXPECT_EQ(example.run(), QStringList());
    EXPECT_TRUE(QFile::exists(up));
    EXPECT_EQ(contents(log).count(" up was down; restart done\r\n"), 1);
}
