#include <QFile>
#include <QMap>
#include <QStringList>
#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Rows = QList<QMap<QString, QString>>;

/** The rows of a table's source by column name; a row of the wrong length is reported and left out. */
Rows rowsOf(const QString &table)
{
    QFile file(QStringLiteral(KAVRO_DATA_FOLDER) + u"/database/%1.tsv"_s.arg(table));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    EXPECT_TRUE(lines.takeLast().isEmpty()) << "no line end at the end of " << qPrintable(table);
    const QStringList names = lines.takeFirst().split(u'\t');
    Rows rows;
    for (const QString &line : std::as_const(lines)) {
        const QStringList cells = line.split(u'\t');
        EXPECT_EQ(cells.size(), names.size()) << qPrintable(table + u": "_s + line);
        if (cells.size() != names.size())
            continue;
        QMap<QString, QString> row;
        for (int i = 0; i < cells.size(); ++i)
            row[names.at(i)] = cells.at(i);
        rows += row;
    }
    return rows;
}

QStringList tokensIn(const QString &text)
{
    QStringList tokens;
    for (qsizetype at = text.indexOf(u'<'); at >= 0; at = text.indexOf(u'<', at + 1))
        tokens += text.mid(at, text.indexOf(u'>', at) - at + 1);
    return tokens;
}

} // namespace

TEST(DefaultRows, PortCatalogueIsAscendingAndFitsItsStatements)
{
    const Rows rows = rowsOf(u"tblTCPPorts"_s);
    ASSERT_GE(rows.size(), 90);
    EXPECT_EQ(rows.first()[u"Port_Num"_s], u"0"_s);
    int last = -1;
    for (const auto &row : rows) {
        const int port = row[u"Port_Num"_s].toInt();
        EXPECT_GT(port, last);
        EXPECT_LE(port, 65535);
        EXPECT_EQ(row[u"Port_Type"_s], port == 0 ? u"ICMP"_s : u"TCP"_s) << port;
        const QString words = row[u"Port_Desc"_s];
        EXPECT_FALSE(words.isEmpty() || words.contains(u'\'')) << port;
        last = port;
    }
}

TEST(DefaultRows, EverySayingHasItsTokensAnAnimationAndAnOrder)
{
    // What the program replaces; a saying must hold exactly these tokens.
    const QMap<QString, QStringList> sayings = {
        { u"LogFileNotFound"_s, {} },
        { u"MonitorDecline"_s, {} },
        { u"MonitorOn"_s, {} },
        { u"MonitorOff"_s, {} },
        { u"AnnounceDateTime"_s, { u"<DATE>"_s, u"<TIME>"_s } },
        { u"DevicesFailed"_s, {} },
        { u"FailedDeviceList"_s, { u"<DEVICELIST>"_s } },
        { u"DevicesRecovered"_s, {} },
        { u"RecoveredDeviceList"_s, { u"<DEVICELIST>"_s } },
        { u"MaxFailedExceeded"_s, {} },
        { u"MaxRecoveredExceeded"_s, {} },
        { u"Status-OK"_s, {} },
        { u"Status-Failure"_s, { u"<PROBLEMS>"_s } },
        { u"Status-None"_s, {} },
        { u"MSAgentGreeting"_s, { u"<CHARACTER>"_s } },
        { u"AnnounceEmail"_s, {} },
        { u"SMTP-NoValidServer"_s, {} },
        { u"SMTPEmailError"_s, { u"<DEVICE>"_s, u"<ERROR>"_s } },
        { u"HTMLWriteError"_s, { u"<ERROR>"_s } },
        { u"HTMLOutputFileDoesNotExist"_s, {} },
        { u"CreateNewDB"_s, {} },
        { u"CompactDatabase"_s, {} },
        { u"Options-SMTP"_s, { u"<VAL>"_s } },
        { u"Options-AliasExample"_s, {} },
        { u"PortListError-InvalidPortNum"_s, { u"<NUMBER>"_s } },
        { u"PortListError-Delete"_s, {} },
    };
    const QStringList animations
        = { u"Acknowledge"_s, u"Alert"_s, u"Announce"_s, u"Congratulate"_s, u"Explain"_s, u"GetAttention"_s,
              u"Greet"_s, u"Pleased"_s, u"Sad"_s, u"Surprised"_s, u"Think"_s, u"Uncertain"_s, u"Wave"_s };
    QMap<QString, QStringList> found;
    QMap<QString, int> lastOrder;
    for (const auto &row : rowsOf(u"tblAgentAnnounce"_s)) {
        const QString saying = row[u"Saying"_s];
        const QString text = row[u"Speach"_s];
        found[saying] += tokensIn(text);
        EXPECT_EQ(row[u"PlayOrder"_s].toInt(), ++lastOrder[saying]) << qPrintable(saying);
        EXPECT_TRUE(animations.contains(row[u"Animation"_s])) << qPrintable(saying);
        // A stroke would make the voice choose at random, a backslash would begin a speech tag.
        EXPECT_FALSE(text.contains(u'|') || text.contains(u'\\')) << qPrintable(saying);
    }
    EXPECT_EQ(found, sayings);
}

TEST(DefaultRows, TheFirstCheckIsCompleteAndUnchecked)
{
    const auto group = rowsOf(u"tblGroup"_s).value(0);
    const auto device = rowsOf(u"tblDevices"_s).value(0);
    const auto check = rowsOf(u"tblPortMain"_s).value(0);
    const auto state = rowsOf(u"tblPortStatus"_s).value(0);
    EXPECT_EQ(device[u"Group_ID"_s], group[u"Group_ID"_s]);
    EXPECT_EQ(check[u"Device_ID"_s], device[u"Device_ID"_s]);
    EXPECT_EQ(state[u"Device_ID"_s], device[u"Device_ID"_s]);
    EXPECT_EQ(state[u"Port_ID"_s], check[u"Port_ID"_s]);
    EXPECT_EQ(check[u"Port_Num"_s], u"Ping"_s);
    EXPECT_EQ(check[u"Port_Desc"_s], rowsOf(u"tblTCPPorts"_s).value(0)[u"Port_Desc"_s]);
    EXPECT_EQ(group[u"Group_Icon"_s], u"14"_s);
    EXPECT_EQ(device[u"Device_Icon"_s], u"2"_s);
    EXPECT_EQ(device[u"Device_Status"_s], u"Not checked"_s);
    const QStringList zeros = { u"Port_Success"_s, u"Port_Failure"_s, u"Ping_Cur"_s, u"Ping_Min"_s,
        u"Ping_Max"_s, u"Ping_Avg"_s, u"Port_Mode"_s, u"Port_Icon_Flag"_s };
    for (const QString &column : zeros)
        EXPECT_EQ(state.value(column), u"0"_s) << qPrintable(column);
    EXPECT_EQ(state[u"Port_Icon"_s], u"5"_s);
    EXPECT_EQ(state[u"Port_Status"_s], u"Not checked"_s);
    EXPECT_TRUE(state[u"Port_Fail_Date"_s] == u"NULL"_s && state[u"Port_Rec_Date"_s] == u"NULL"_s);
}
