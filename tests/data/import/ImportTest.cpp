#include "tests/data/import/JetSample.h"

#include "core/DatabaseSchema.h"
#include "data/import/ImportDatabase.h"
#include "platform/dao/Dao.h"
#include "platform/dao/DateText.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>
#include <bit>
#include <cmath>
#include <limits>

namespace {

QString real(double value) { return QString::number(value, 'g', 17); }

/** A value of the truth as the database shows it in a column of that kind. */
QString expectedCell(const QJsonValue &value, schema::Kind kind)
{
    using enum schema::Kind;
    if (kind == YesNo) // kept as a text in this file; other texts than the two words count as False
        return value.toBool() || value.toString() == u"True" ? u"True"_s : u"False"_s;
    if (value.isNull())
        return u"Null"_s;
    if (kind == Date)
        return QDateTime::fromString(value.toString(), Qt::ISODate).toString(Qt::ISODate);
    return value.isDouble() ? real(value.toDouble()) : value.toString();
}

QString storedCell(const dao::Value &value, schema::Kind kind)
{
    using enum schema::Kind;
    if (value.isNull())
        return u"Null"_s;
    if (kind == YesNo)
        return value.boolean() ? u"True"_s : u"False"_s;
    if (kind == Date)
        return value.dateTime().toString(Qt::ISODate);
    return kind == Text || kind == Memo ? value.text() : real(value.number());
}

QStringList storedRows(dao::Database &database, const schema::Table &table)
{
    QStringList lines;
    for (dao::Recordset rows = database.OpenRecordset(table.name); !rows.Eof(); rows.MoveNext()) {
        QStringList cells;
        for (int i = 0; i < table.columns.size(); ++i)
            cells << storedCell(rows.Field(i), table.columns[i].kind);
        lines << cells.join(u'|');
    }
    return lines;
}

QStringList expectedRows(const QJsonArray &rows, const schema::Table &table)
{
    QStringList lines;
    for (const QJsonValue &row : rows) {
        QStringList cells;
        for (int i = 0; i < table.columns.size(); ++i)
            cells << expectedCell(row.toArray()[i], table.columns[i].kind);
        lines << cells.join(u'|');
    }
    return lines;
}

} // namespace

class ImportTest : public JetSample
{
protected:
    QString made = path(u"new.mdb"_s);

    const ImportedTable &table(const ImportReport &report, const QString &name)
    {
        const auto found = std::find_if(report.tables.begin(), report.tables.end(),
                                        [&](const ImportedTable &each) { return each.name == name; });
        EXPECT_NE(found, report.tables.end());
        return *found;
    }
    QStringList rows(const QString &sql)
    {
        QStringList lines;
        const auto database = dao::OpenDatabase(made, true);
        for (dao::Recordset found = database->OpenRecordset(sql); !found.Eof(); found.MoveNext())
            lines << (found.Field(0).isNull() ? u"Null"_s : found.Field(0).text());
        return lines;
    }
};

TEST_F(ImportTest, EveryRowOfAGenuineFile)
{
    const QJsonObject truth = QJsonDocument::fromJson(bytesOf(sample("monitor_v2003.json"))).object();
    ASSERT_EQ(truth.size(), schema::tables().size());
    qint64 progressCalls = 0;
    const ImportReport report = ImportDatabase(sample(), made, [&](qint64 done, qint64 total) {
        ++progressCalls;
        EXPECT_LE(done, total);
    });
    EXPECT_GT(progressCalls, 10);
    const auto database = dao::OpenDatabase(made, true);
    for (const schema::Table &each : schema::tables()) {
        const QStringList expected = expectedRows(truth[each.name].toArray(), each);
        const QStringList stored = storedRows(*database, each);
        ASSERT_EQ(stored.size(), expected.size()) << each.name.toStdString();
        for (int i = 0; i < stored.size(); ++i)
            ASSERT_EQ(stored[i], expected[i]) << each.name.toStdString() << " row " << i;
        EXPECT_EQ(table(report, each.name).rowsRead, expected.size());
        EXPECT_EQ(table(report, each.name).rowsWritten, expected.size());
        EXPECT_EQ(table(report, each.name).notes.size(), each.name == u"tblDevices" ? 24 : 0);
    }
    EXPECT_EQ(table(report, u"tblDevices"_s).notes.value(9),
              u"row 10 (Device_ID 10), column MSAgent_Referr_Device: \"the \"big\" one\" is neither True nor False, "
              "False instead"_s);
    EXPECT_TRUE(report.skipped.contains(u"system table MSysACEs"_s));
    EXPECT_FALSE(report.isComplete());
    database->Execute(u"INSERT INTO tblGroup (Group_Label) VALUES ('next')"_s);
    dao::Recordset next = database->OpenRecordset(u"Select Group_ID FROM tblGroup WHERE Group_Label = 'next'"_s);
    EXPECT_EQ(next.Field(0).integer(), 5) << "numbers go on after the highest one";
}

TEST_F(ImportTest, OverwritesNothingAndLeavesNothingHalfDone)
{
    write(u"new.mdb"_s, "mine");
    EXPECT_THROW(ImportDatabase(sample(), made), VbError);
    EXPECT_EQ(bytesOf(made), "mine");
    QFile::remove(made);
    QFile::link(path(u"nowhere"_s), made);
    EXPECT_THROW(ImportDatabase(sample(), made), VbError);
    QFile::remove(made);
    EXPECT_THROW(ImportDatabase(sample("monitor_v2003.json"), made), jet::Error);
    EXPECT_THROW(ImportDatabase(path(u"none.mdb"_s), made), jet::Error);
    EXPECT_THROW(ImportDatabase(sample(), path(u"none/new.mdb"_s)), VbError);
    EXPECT_THROW(ImportDatabase(sample(), made, [](qint64, qint64) { throw VbError(61, u"Disk full"_s); }), VbError);
    EXPECT_EQ(QDir(path(QString())).entryList(QDir::Files), QStringList());
}

TEST_F(ImportTest, DatesOfAllTimes)
{
    struct Case {
        double days;
        const char *text; // what a reader of the database sees
    };
    constexpr double kSecond = 1.0 / 86400;
    const Case kCases[] = {
        {-1.25, "1899-12-29T06:00:00"},
        {-0.75, "1899-12-30T18:00:00"},
        {0, "1899-12-30T00:00:00"},
        {-657434, "0100-01-01T00:00:00"},
        {2958465 + 86399 * kSecond, "9999-12-31T23:59:59"},
        {36925 + 0.4 * kSecond, "2001-02-03T00:00:00"},
        {36925 + 86399.7 * kSecond, "2001-02-04T00:00:00"},
        {-657435, "Null"},
        {2958466, "Null"},
        {1e300, "Null"},
        {std::numeric_limits<double>::quiet_NaN(), "Null"},
    };
    const double first = dao::toOleDate(QDateTime(QDate(2001, 2, 3), QTime(4, 5, 6)));
    QByteArray old(sizeof first, '\0');
    qToLittleEndian(std::bit_cast<quint64>(first), old.data());
    QByteArray bytes = bytesOf(sample());
    const qsizetype at = bytes.indexOf(old);
    ASSERT_GE(at, 0);
    for (const Case &each : kCases) {
        qToLittleEndian(std::bit_cast<quint64>(each.days), bytes.data() + at);
        const ImportReport report = ImportDatabase(write(u"old.mdb"_s, bytes), made);
        {
            const auto database = dao::OpenDatabase(made, true);
            EXPECT_EQ(storedRows(*database, schema::tables()[5]).constFirst().section(u'|', 3, 3),
                      QString::fromLatin1(each.text)) << each.days;
        }
        QStringList notes;
        if (qstrcmp(each.text, "Null") == 0)
            notes << u"row 1 (Device_ID 1), column Event_Date: no date, Null instead"_s;
        EXPECT_EQ(table(report, u"tblEventLog"_s).notes, notes);
        QFile::remove(made);
    }
}

TEST_F(ImportTest, MissingAndUnknownColumnsAndTables)
{
    QByteArray bytes = bytesOf(sample());
    const auto rename = [&](std::u16string_view from, std::u16string_view to) {
        const QByteArray oldName(reinterpret_cast<const char *>(from.data()), 2 * qsizetype(from.size()));
        const QByteArray newName(reinterpret_cast<const char *>(to.data()), oldName.size());
        ASSERT_GE(bytes.indexOf(oldName), 0);
        bytes.replace(oldName, newName);
    };
    rename(u"Port_Icon_Flag", u"Port_Icon_Flug");
    rename(u"tblScripts", u"tblScraps_");
    const ImportReport report = ImportDatabase(write(u"old.mdb"_s, bytes), made);
    EXPECT_EQ(table(report, u"tblPortStatus"_s).notes,
              (QStringList {u"column Port_Icon_Flag is missing, filled with its default"_s,
                            u"column Port_Icon_Flug is unknown, left out"_s}));
    EXPECT_EQ(table(report, u"tblScripts"_s).notes, QStringList(u"the table is missing, left empty"_s));
    EXPECT_TRUE(report.skipped.contains(u"table tblScraps_ (3 rows)"_s));
    EXPECT_EQ(rows(u"Select Port_Icon_Flag FROM tblPortStatus"_s), QStringList(60, u"0"_s));
    EXPECT_EQ(report.lines().last().left(37), u"Not part of the program, left out: ta"_s);
}

TEST_F(ImportTest, TheOldestKindOfFile)
{
    const ImportReport report = ImportDatabase(sample("jet3.mdb"), made);
    const auto database = dao::OpenDatabase(made, true);
    EXPECT_EQ(storedRows(*database, schema::tables()[0]),
              (QStringList {u"1|Rechenzentrum Köln|Null|Null"_s, u"7|Dépôt €||16"_s,
                            u"9|Grown out of its page|"_s + QString(200, u'y') + u"|15"_s}))
        << "a deleted row and column, an added column, a moved row";
    const QStringList devices = storedRows(*database, schema::tables()[1]);
    ASSERT_EQ(devices.size(), 40);
    for (int i = 0; i < 40; ++i) {
        const QStringList cells {QString::number(i + 1), u"1"_s, u"host%1"_s.arg(i), QString(5 * i, u'a'),
                                 QString(6 * i, u'b'), u"Not checked"_s, u"2"_s, i % 2 == 0 ? u"True"_s : u"False"_s, u"False"_s,
                                 i % 3 == 0 ? u"True"_s : u"False"_s};
        EXPECT_EQ(devices[i], cells.join(u'|')) << "a row of any length";
    }
    const QStringList events = storedRows(*database, schema::tables()[5]);
    ASSERT_EQ(events.size(), 300);
    const char *dates[] = {"1899-12-29T06:00:00", "1899-12-30T12:00:00", "9999-12-31T23:59:59", "0100-01-01T00:00:00",
                           "2001-02-03T04:05:06", "2001-02-08T00:00:00"};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(events[i].section(u'|', 3, 3), QString::fromLatin1(dates[i]));
    QString chain;
    for (int i = 0; i < 1000; ++i)
        chain += u"line %1\r\n"_s.arg(i);
    EXPECT_EQ(storedRows(*database, schema::tables()[9]),
              (QStringList {u"inline|Sub Main\r\n'ä\r\nEnd Sub"_s, u"page|"_s + QString(1500, u'p'),
                            u"chain|"_s + chain, u"empty|"_s, u"none|Null"_s}));
    EXPECT_EQ(report.skipped, (QStringList {u"system table MSysObjects"_s, u"query qryOld"_s}));
    EXPECT_EQ(table(report, u"tblMailQue"_s).notes, QStringList(u"the table is missing, left empty"_s));
}

TEST_F(ImportTest, MemosWhosePagesAreDamaged)
{
    // The chain's last page points back to its first one, or the memo claims to be longer than it is.
    const QByteArray whole = bytesOf(sample("jet3.mdb"));
    constexpr int kOldPage = 2048;
    const qsizetype last = whole.indexOf("line 999\r\n") / kOldPage;
    const qsizetype head = whole.indexOf(QByteArray("\xa2\x26\0\0", 4)); // its length, 9890
    ASSERT_GT(last, 0);
    ASSERT_GT(head, 0);
    QByteArray longer = whole;
    longer[head + 1] = 0x40;
    QByteArray cyclic = longer;
    const qsizetype row = last * kOldPage + (word(cyclic, last * kOldPage + 10) & 0x1fff);
    cyclic.replace(row, 4, cyclic.mid(head + 4, 4));
    for (const QByteArray &bytes : {longer, cyclic}) {
        const ImportReport report = ImportDatabase(write(u"old.mdb"_s, bytes), made);
        EXPECT_EQ(table(report, u"tblScripts"_s).notes,
                  QStringList(u"row 3, column Script: unreadable (the pages that hold it are damaged), "
                              "the default instead"_s));
        EXPECT_EQ(rows(u"Select Script FROM tblScripts WHERE Script_Event = 'chain'"_s), QStringList(u"Null"_s));
        QFile::remove(made);
    }
}
