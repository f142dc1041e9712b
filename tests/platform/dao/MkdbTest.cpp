#include "DaoFixture.h"

#include <QDir>
#include <QProcess>

namespace {

class DatabaseMaker : public DaoFixture
{
protected:
    void SetUp() override
    {
        DaoFixture::SetUp();
        QDir(path(QString())).mkdir(u"rows"_s);
    }
    void writeRows(const QString &table, const QByteArray &text)
    {
        QFile file(path(u"rows/"_s + table + u".tsv"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    int make(QString *said = nullptr)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(KAVRO_MKDB),
                      {QStringLiteral(KAVRO_SCHEMA), path(u"rows"_s), path(u"made.mdb"_s)});
        process.waitForFinished(20000);
        if (said)
            *said = QString::fromUtf8(process.readAll()).trimmed();
        return process.exitCode();
    }
};

TEST_F(DatabaseMaker, LoadsRows)
{
    writeRows(u"tblTCPPorts"_s, "Port_Num\tPort_Desc\tPort_Type\n21\tO'Neill's\tTCP\n0\t\tNULL\n");
    writeRows(u"tblScripts"_s, "Script_Event\tScript\nOnFailure\tSub Main\\n\\tx = \"a\\\\b\"\\nEnd Sub\n");
    QString said;
    ASSERT_EQ(make(&said), 0) << said;
    db = dao::OpenDatabase(path(u"made.mdb"_s), true);
    EXPECT_EQ(rows(u"tblTCPPorts"_s), u"21|O'Neill's|TCP\n0||Null"_s);
    EXPECT_EQ(rows(u"tblScripts"_s), u"OnFailure|Sub Main\n\tx = \"a\\b\"\nEnd Sub"_s);
    EXPECT_EQ(rows(u"tblGroup"_s), QString());
}

TEST_F(DatabaseMaker, NamesFileAndLineOfAnError)
{
    struct Row {
        const char *rows;
        int line;
    };
    for (const Row &row :
         {Row {"Port_Num\tPort_Desc\n1\ta\n1\tb\n", 3}, Row {"Port_Num\tPort_Desc\nx\ta\n", 2},
          Row {"Port_Num\tPort_Desc\n1\n", 2}, Row {"Port_Num\tNothing\n1\ta\n", 2}}) {
        writeRows(u"tblTCPPorts"_s, row.rows);
        QString said;
        EXPECT_EQ(make(&said), 1) << row.rows;
        EXPECT_TRUE(said.contains(u"tblTCPPorts.tsv:%1: "_s.arg(row.line))) << said;
        EXPECT_EQ(QDir(path(QString())).entryList({u"made*"_s}), QStringList()) << "no partial file";
    }
}

} // namespace
