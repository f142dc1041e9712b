// The command on files that are damaged in any way: it always ends, and leaves a whole new file or none.
#include "tests/data/import/JetSample.h"

#include "platform/dao/Dao.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <sys/stat.h>

namespace {

struct Outcome {
    int exitCode = -1;
    QString output;
    QString error;
};

} // namespace

class DamagedFilesTest : public JetSample
{
protected:
    QString made = path(u"new.mdb"_s);

    Outcome run(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral(KAVRO_IMPORT), arguments);
        EXPECT_TRUE(process.waitForFinished(110000)) << "it does not come to an end";
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
    /** Imports these bytes and checks what is left. */
    Outcome import(const QByteArray &bytes, const std::string &what)
    {
        QFile::remove(made);
        const Outcome outcome = run({write(u"old.mdb"_s, bytes), made});
        QStringList expected {u"old.mdb"_s};
        if (outcome.exitCode == 0) {
            expected.prepend(u"new.mdb"_s);
            EXPECT_NO_THROW(dao::OpenDatabase(made, true)->OpenRecordset(u"tblEventLog"_s)) << what;
        } else {
            EXPECT_TRUE(outcome.error.contains(u"kavro-import: "_s)) << what;
        }
        EXPECT_EQ(QDir(path(QString())).entryList(QDir::Files), expected) << what;
        return outcome;
    }
};

TEST_F(DamagedFilesTest, ReportAndUsage)
{
    const Outcome good = run({u"--progress"_s, sample(), made});
    EXPECT_EQ(good.exitCode, 0);
    EXPECT_TRUE(good.output.contains(u"@"_s));
    EXPECT_TRUE(good.output.contains(u"tblEventLog: 5000 rows read, 5000 rows written\n"_s));
    EXPECT_EQ(good.error, QString());
    const Outcome again = run({sample(), made});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_EQ(again.error, u"kavro-import: %1: Database already exists.\n"_s.arg(made));
    EXPECT_EQ(run({sample()}).exitCode, 2);
}

TEST_F(DamagedFilesTest, WhatIsNoDatabaseOrHardlyOne)
{
    const QByteArray whole = bytesOf(sample());
    EXPECT_EQ(import({}, "empty").exitCode, 1);
    EXPECT_EQ(import(QByteArray(100000, '\0'), "zeros").exitCode, 1);
    EXPECT_EQ(import(whole.left(100), "head").exitCode, 1);
    EXPECT_EQ(import(whole.left(4096) + QByteArray(whole.size() - 4096, '\0'), "zeros after the head").exitCode, 1);
    QByteArray future = whole;
    future[0x14] = 9;
    EXPECT_TRUE(import(future, "future").error.contains(u"unknown version"_s));
}

TEST_F(DamagedFilesTest, TruncatedFilesTellWhatIsMissing)
{
    const QByteArray whole = bytesOf(sample());
    for (int part = 1; part < 20; ++part) {
        const Outcome outcome = import(whole.left(whole.size() * part / 20 + part), "part " + std::to_string(part));
        if (outcome.exitCode == 0 && part < 19) {
            EXPECT_TRUE(outcome.output.contains(QRegularExpression(u"cannot be found|left empty"_s))) << part;
        }
    }
}

TEST_F(DamagedFilesTest, AnyBytesChanged)
{
    const QByteArray files[] = {bytesOf(sample()), bytesOf(sample("jet3.mdb"))};
    const int rounds = qEnvironmentVariableIsSet("KAVRO_ROUNDS") ? qEnvironmentVariableIntValue("KAVRO_ROUNDS") : 40;
    QRandomGenerator random(quint32(qEnvironmentVariableIntValue("KAVRO_SEED")) + 1);
    int readable = 0;
    for (int round = 0; round < rounds; ++round) {
        QByteArray bytes = files[round % 2];
        // Catalogue, definitions and maps are in the first pages: that is where it hurts.
        const qsizetype reach = round % 4 == 0 ? 64 * kPage : bytes.size();
        for (int change = 0; change < 1 << (round % 8); ++change) {
            const qsizetype at = qsizetype(random.bounded(quint32(reach - 0x80))) + 0x80;
            bytes[at] = round % 3 == 0 ? char(bytes[at] ^ 1 << random.bounded(8)) : char(random.bounded(256));
        }
        readable += import(bytes, "round " + std::to_string(round)).exitCode == 0;
    }
    EXPECT_GT(readable, rounds / 4);
}

TEST_F(DamagedFilesTest, EndedFromOutside)
{
    // Reading from a pipe that never says anything: the import waits until it is told to end.
    const QString pipe = path(u"pipe.mdb"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QProcess process;
    process.start(QStringLiteral(KAVRO_IMPORT), {pipe, made});
    ASSERT_TRUE(process.waitForStarted());
    QFile writer(pipe);
    ASSERT_TRUE(writer.open(QIODevice::WriteOnly | QIODevice::Unbuffered)); // once the import has opened its end
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_NE(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardError().contains("The import was ended."));
    EXPECT_EQ(QDir(path(QString())).entryList(QDir::Files), QStringList());
}
