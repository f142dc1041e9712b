#include "notify/vbHTML.h"

#include "core/Settings.h"
#include "notify/HtmlTemplate.h"
#include "tests/world/World.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/** A world with a template and a page, and the two lists of changes. */
struct PageWorld : World {
    QString page = path(u"page.html"_s);
    ResultTable failedNow{ 6 };
    ResultTable recoveredNow{ 5 };
    qint64 longestGap = 0;

    PageWorld()
    {
        SaveSetting(u"Options"_s, u"HTMLOutput"_s, u"1"_s);
        SaveSetting(u"Options"_s, u"HTMLFile"_s, page);
    }

    void setTemplate(const QByteArray &text)
    {
        QFile file(path(u"HTML_Template_IE5.html"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    void run()
    {
        Task<void> task = CreateHTMLOutput(failedNow, recoveredNow);
        QElapsedTimer gap;
        gap.start();
        task.start();
        for (;;) {
            longestGap = std::max(longestGap, gap.elapsed());
            if (!task.isRunning())
                break;
            gap.restart();
            QCoreApplication::processEvents();
        }
        task.result();
    }
    QByteArray written()
    {
        QFile file(page);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no page)");
    }
    QByteArray expand(const QByteArray &text)
    {
        setTemplate(text);
        run();
        return written();
    }
    void set(const QString &table, const QString &field, const dao::Value &value)
    {
        dao::Recordset row = db().OpenRecordset(u"Select * FROM "_s + table);
        row.Edit();
        row.Set(field, value);
        row.Update();
    }
};

/** Sections on one line each, so that a page can be compared as a whole. */
QByteArray sections(const QByteArray &group, const QByteArray &device, const QByteArray &port)
{
    return "<!--BEGINGROUP-->\n" + group + "\n<!--ENDGROUP-->\n<!--BEGINDEVICE-->\n" + device
        + "\n<!--ENDDEVICE-->\n<!--BEGINPORT-->\n" + port + "\n<!--ENDPORT-->\n";
}

/** The lines without those that are markers. */
QByteArrayList bare(const QByteArray &page)
{
    QByteArrayList lines;
    for (const QByteArray &line : page.split('\n')) {
        const QByteArray text = line.trimmed();
        if (!text.isEmpty() && !text.startsWith("<!--BEGIN") && !text.startsWith("<!--END"))
            lines << text;
    }
    return lines;
}

} // namespace

TEST(HtmlTemplate, LinesGoToTheirSections)
{
    const HtmlTemplate texts = SplitTemplate(u"top\r\n  <!--BEGINGROUP-->  \ngroup\r <!--BEGINDEVICE-->\ndevice\n"
                                             "<!--BEGINPORT-->\ninner\n<!--ENDPORT-->\n<!--ENDDEVICE-->\nrest of group\n"
                                             "<!--ENDGROUP-->\n<!--BEGINPORT-->\n port \n<!--ENDPORT-->\n"
                                             "x <!--BEGINPORT-->\nbottom"_s);
    EXPECT_EQ(texts.page, u"top\r\n<!--WRITEDETAILS-->\r\n<!--ENDGROUP-->\r\n<!--ENDPORT-->\r\n"
                          "x <!--BEGINPORT-->\r\nbottom\r\n"_s);
    EXPECT_EQ(texts.group, u"  <!--BEGINGROUP-->  \r\ngroup\r\n<!--ENDDEVICE-->\r\nrest of group\r\n"_s);
    EXPECT_EQ(texts.device, u" <!--BEGINDEVICE-->\r\ndevice\r\n<!--BEGINPORT-->\r\ninner\r\n<!--ENDPORT-->\r\n"_s);
    EXPECT_EQ(texts.port, u"<!--BEGINPORT-->\r\n port \r\n"_s);
}

TEST(StatusPage, PagePlaceholders)
{
    PageWorld world;
    world.failedNow.addRow({ u"a"_s, u"80"_s, u"r"_s, u"True"_s, u"1"_s, u"1"_s });
    world.addDevice(world.addGroup(u"g"_s), u"never shown"_s);
    SaveSetting(u"MSAgent"_s, u"ShowCharacter"_s, u"0"_s);
    EXPECT_EQ(world.expand("<!--WRITEHEADER-->\n<!--LASTCHECK-->|<!--LASTCHECK-->\n<!--CURRDATE-->\n"
                           "<!--FAILEDDEVICES--> <!--RECOVEREDDEVICES-->\n<!--WRITEAGENT-->\n<!--lastcheck-->\n"),
              QByteArray("<meta HTTP-EQUIV='Refresh' CONTENT='300,page.html'>\r\nNOW|NOW\r\n03, 14, 2026\r\n1 0\r\n"
                         "'' No Activity To Announce\r\n<!--lastcheck-->\r\n")
                  .replace("NOW", GeneralDate(world.now).toUtf8()));
    EXPECT_EQ(world.window.take(), QStringList{ u"status Creating HTML Output..."_s });
    SaveSetting(u"Options"_s, u"HTMLOutput"_s, u"0"_s);
    EXPECT_TRUE(world.expand("changed\n").contains("NOW") == false);
    EXPECT_FALSE(world.written().contains("changed")) << "the page is switched off";
}

TEST(StatusPage, RefreshTag)
{
    const struct {
        const char *minutes;
        const char *path;
        const char *content;
    } rows[] = {
        { "5", "/a/b/page.html", "300,page.html" },
        { "0.5", "C:\\pages\\page.html", "30,page.html" },
        { "0.01", "page.html", "1,page.html" },
        { "1", "/a/it's 100%<#1>.html", "60,it%27s 100%25%3C%231%3E.html" },
    };
    World world;
    for (const auto &row : rows) {
        SaveSetting(u"Options"_s, u"HTMLRefresh"_s, QString::fromLatin1(row.minutes));
        EXPECT_EQ(HTML_Header(QString::fromLatin1(row.path)),
                  u"<meta HTTP-EQUIV='Refresh' CONTENT='%1'>"_s.arg(QString::fromLatin1(row.content)));
    }
}

TEST(StatusPage, DetailsInOrderWithEveryPlaceholder)
{
    PageWorld world;
    const int first = world.addGroup(u"first"_s);
    world.addGroup(u"second"_s);
    const int device = world.addDevice(first, u"host"_s, u"alias"_s);
    world.addCheck(device, u"Ping"_s);
    world.addCheck(device, u"80"_s);
    const int hidden = world.addDevice(first, u"hidden"_s);
    world.addCheck(hidden, u"1"_s);
    world.sql(u"UPDATE tblDevices SET HTML_Output = False WHERE Device_ID = "_s + QString::number(hidden));
    world.sql(u"UPDATE tblDevices SET MSAgent_Referr_Device = False, Device_Desc = '', Device_Status = 'Recovered'"_s);
    world.sql(u"UPDATE tblPortStatus SET Port_Success = 2, Port_Failure = 1, Ping_Min = 1, Ping_Max = 20,"
              " Ping_Avg = 2.34567891, Port_Last_Error = 'because', Port_Icon = 6"_s);
    world.sql(u"UPDATE tblPortStatus SET Port_Fail_Date = #3/14/2026 10:11:12# WHERE Port_ID = 1"_s);
    const QByteArray page = world.expand(
        sections("G <!--GROUPNAME-->,<!--GROUPDESC-->",
                 "D <!--DEVICENAME-->,<!--DEVICESTATUS-->,<!--DEVICETYPE-->,<!--DEVICEDESC-->,class=\"DevNormal\"",
                 "P XXX <!--PORTNAME-->,<!--PORTTYPE-->,<!--PORTDESC-->,<!--PORTLASTERROR-->,<!--PORTSTATUS-->,"
                 "<!--PORTFAILEDON-->,<!--PORTRECON-->,<!--PORTUPTIME-->,<!--PORTSUMMARY-->,<!--PINGDETAILS-->,"
                 "class=\"PortNormal\" XXX <!--LASTCHECK-->"));
    const QByteArray now = GeneralDate(world.now).toUtf8();
    const QByteArray failedOn = GeneralDate(QDateTime(QDate(2026, 3, 14), QTime(10, 11, 12))).toUtf8();
    EXPECT_EQ(bare(page),
              (QByteArrayList{
                  "G first,first description", "D alias,Recovered,Device,&nbsp;,class='DevRec'",
                  "P ID2 80,Port,test check,because,Not checked,-,-,66.67%,2 of 3 times.,,class='PortRec' ID2 " + now,
                  "P ID1 Ping,Ping,test check,because,Not checked," + failedOn
                      + ",-,66.67%,2 of 3 times.,[PING TTL: 1 min/20 max/2.346 average],class='PortRec' ID1 " + now,
                  "G second,second description" }));
}

TEST(StatusPage, ClassesUptimeAndEmptyValues)
{
    PageWorld world;
    const int device = world.addDevice(world.addGroup(u"g"_s), u"host"_s);
    world.addCheck(device, u"80"_s);
    const std::pair<const char *, const char *> devices[] = {
        { "No Problems Detected", "DevOK" }, { "Recovered", "DevRec" },   { "Problems Detected", "DevFailed" },
        { "Disabled", "DevDis" },            { "Not checked", "DevNormal" }, { "recovered", "DevNormal" },
    };
    for (const auto &[text, name] : devices) {
        world.set(u"tblDevices"_s, u"Device_Status"_s, QString::fromLatin1(text));
        EXPECT_EQ(bare(world.expand(sections({}, "class=\"DevNormal\"", {}))),
                  QByteArrayList{ QByteArray("class='") + name + '\'' }) << text;
    }
    const std::pair<int, const char *> ports[] = { { 7, "PortFailed" }, { 6, "PortRec" }, { 5, "PortOK" },
                                                   { 13, "PortDis" },   { 0, "PortNormal" } };
    for (const auto &[icon, name] : ports) {
        world.set(u"tblPortStatus"_s, u"Port_Icon"_s, icon);
        EXPECT_EQ(bare(world.expand(sections({}, {}, "class=\"PortNormal\" class='PortNormal'"))),
                  QByteArrayList{ QByteArray("class='") + name + "' class='PortNormal'" }) << icon;
    }
    world.set(u"tblPortMain"_s, u"Port_Desc"_s, dao::Value::null());
    EXPECT_EQ(bare(world.expand(sections({}, {}, "<!--PORTDESC--> <!--PORTLASTERROR--> <!--PORTUPTIME--> <!--PORTSUMMARY-->"
                                                 " [<!--PINGDETAILS-->]"))),
              QByteArrayList{ "&nbsp; - 0.00% 0 of 0 times. []" });
}

TEST(StatusPage, TwoDevicePlacesAndNone)
{
    PageWorld world;
    world.addDevice(world.addGroup(u"g"_s), u"host"_s);
    EXPECT_EQ(bare(world.expand("<!--BEGINDEVICE-->\n<!--DEVICENAME-->\n<!--ENDDEVICE-->\nmiddle\n<!--BEGINDEVICE-->\n"
                                "<!--ENDDEVICE-->\nend\n")),
              (QByteArrayList{ "host", "middle", "host", "end" }));
    EXPECT_EQ(world.expand("no <!--DEVICENAME--> marker"), "no <!--DEVICENAME--> marker\r\n");
}

TEST(StatusPage, TextsCannotBecomeMarkup)
{
    PageWorld world;
    const QString evil = u"<b class=\"PortNormal\">'&XXX<!--PORTNAME--><!--LASTCHECK--></script>"_s;
    const QByteArray safe = "&lt;b class=&quot;PortNormal&quot;&gt;&#39;&amp;XXX&lt;!--PORTNAME--&gt;"
                            "&lt;!--LASTCHECK--&gt;&lt;/script&gt;";
    const int device = world.addDevice(world.addGroup(u"g"_s), u"host"_s);
    world.addCheck(device, u"80"_s);
    world.set(u"tblGroup"_s, u"Group_Label"_s, evil);
    world.set(u"tblDevices"_s, u"Device_Desc"_s, evil);
    world.set(u"tblPortMain"_s, u"Port_Desc"_s, evil);
    world.set(u"tblPortStatus"_s, u"Port_Last_Error"_s, evil);
    EXPECT_EQ(bare(world.expand(sections("<!--GROUPNAME-->", "<!--DEVICEDESC-->", "<!--PORTDESC-->|<!--PORTLASTERROR-->"))),
              (QByteArrayList{ safe, safe, safe + '|' + safe }));
    world.failedNow.addRow({ evil, u"80"_s, u"a\r\nAgentChar.Hide"_s, u"True"_s, u"1"_s, u"1"_s });
    const QString script = HTML_Agent(world.failedNow, world.recoveredNow);
    EXPECT_FALSE(script.contains(u'<'));
    EXPECT_EQ(script.count("\r\n"_L1), 7);
}

TEST(StatusPage, AgentLines)
{
    PageWorld world;
    EXPECT_EQ(HTML_Agent(world.failedNow, world.recoveredNow), u"'' No Activity To Announce"_s);
    world.failedNow.addRow({ u"a.b"_s, u"80"_s, u"it broke"_s, u"True"_s, u"1"_s, u"1"_s });
    world.recoveredNow.addRow({ u"say \"hi\""_s, u"Ping"_s, u"True"_s, u"2"_s, u"2"_s });
    SaveSetting(u"MSAgent"_s, u"AnnounceDate"_s, u"1"_s);
    const QLocale locale = QLocale::system();
    EXPECT_EQ(HTML_Agent(world.failedNow, world.recoveredNow).split(u"\r\n"_s),
              (QStringList{
                  u"On Error Resume Next"_s, u"AgentChar.Show"_s, u"AgentChar.Play \"Explain\""_s,
                  "AgentChar.Speak \"The date is "_L1 + locale.toString(world.now.date(), QLocale::LongFormat) + ".\""_L1,
                  "AgentChar.Speak \"The time is "_L1 + locale.toString(world.now.time(), QLocale::ShortFormat) + ".\""_L1,
                  u"AgentChar.Play \"Surprised\""_s,
                  u"AgentChar.Speak \"There was a problem connecting to the following devices:  \""_s,
                  uR"(AgentChar.Speak "\map=" + Chr(34) + "a\pau=50\ dot \pau=25\b" + Chr(34) + "=" + Chr(34) + "a.b" + Chr(34) + "\ port 80 because it broke.\pau=800\")"_s,
                  u"AgentChar.Play \"Pleased\""_s,
                  u"AgentChar.Speak \"The following devices have recovered:  \""_s,
                  uR"(AgentChar.Speak "\map=" + Chr(34) + "say " + Chr(34) + "hi" + Chr(34) + "" + Chr(34) + "=" + Chr(34) + "say " + Chr(34) + "hi" + Chr(34) + "" + Chr(34) + "\ port Ping.\pau=800\")"_s,
                  u"AgentChar.Hide"_s, QString() }));
    SaveSetting(u"MSAgent"_s, u"ShowCharacter"_s, u"0"_s);
    EXPECT_EQ(HTML_Agent(world.failedNow, world.recoveredNow), u"'' No Activity To Announce"_s);
}

TEST(StatusPage, MissingTemplateSwitchesThePageOff)
{
    PageWorld world;
    world.sql(u"INSERT INTO tblAgentAnnounce (Saying, Speach, PlayOrder, Animation) VALUES ('HTMLWriteError',"
              " '<ERROR>', 1, 'Sad')"_s);
    const QString spoken = u"line the HTML template file you specified does not exits"_s;
    world.run();
    EXPECT_EQ(world.announcer.log, QStringList{ spoken + " and the HTML output path is not valid|Sad||"_L1 });
    EXPECT_EQ(world.written(), "(no page)");
    EXPECT_EQ(GetSetting(u"Options"_s, u"HTMLOutput"_s), u"0"_s);

    SaveSetting(u"Options"_s, u"HTMLOutput"_s, u"1"_s);
    QFile old(world.page);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    world.run();
    EXPECT_EQ(world.announcer.log.constLast(), spoken + "|Sad||"_L1);
    EXPECT_EQ(world.written(), "<HTML><BODY><CENTER><H1>Kavro 2000 - Error Has Occured</H1></CENTER><HR>An error occurred "
                               "while writing the HTML output file because the HTML template file you specified does not "
                               "exist.<BR><HR></BODY></HTML>");
    EXPECT_EQ(world.rows(u"Select Event_Type, Event FROM tblEventLog"_s),
              QStringList(2, u"Warning|Error writing HTML output file.  HTML output has been disabled"_s));
}

/** A reader that opened the page before keeps the old one whole; nothing else stays in the folder. */
TEST(StatusPage, IsReplacedAsAWhole)
{
    PageWorld world;
    world.expand(QByteArray(200000, 'a') + "\n");
    QFile reader(world.page);
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    reader.read(10);
    world.expand("b\n");
    EXPECT_EQ(reader.readAll(), QByteArray(199990, 'a') + "\r\n");
    EXPECT_EQ(world.written(), "b\r\n");
    EXPECT_EQ(QDir(world.folder.path()).entryList({ u"page*"_s }), QStringList{ u"page.html"_s });
    EXPECT_TRUE(QFile::permissions(world.page) & QFile::ReadOwner);

    // Cancelled while writing: the old page stays, no rest is left.
    world.setTemplate(QByteArray(30'000'000, 'c'));
    {
        Task<void> task = CreateHTMLOutput(world.failedNow, world.recoveredNow);
        task.start();
        EXPECT_TRUE(task.isRunning());
    }
    EXPECT_EQ(world.written(), "b\r\n");
    EXPECT_EQ(QDir(world.folder.path()).entryList({ u"page*"_s }), QStringList{ u"page.html"_s });

    SaveSetting(u"Options"_s, u"HTMLFile"_s, world.path(u"no/such/folder/page.html"_s));
    world.setTemplate("x");
    world.dialogs.expect(u"error has occured in the WriteHTMLOutput subroutine"_s);
    EXPECT_THROW(world.run(), ProgramEnded);
}

TEST(StatusPage, ViewOpensThePageWhateverItsCase)
{
    World world;
    ViewHTML();
    EXPECT_EQ(world.announcer.log, QStringList{ u"speak HTMLOutputFileDoesNotExist"_s });
    QFile page(world.path(u"KavroMonitor.html"_s));
    ASSERT_TRUE(page.open(QIODevice::WriteOnly));
    ViewHTML();
    EXPECT_EQ(world.dialogs.opened, QStringList{ page.fileName() });
}

TEST(StatusPage, AThousandDevices)
{
    PageWorld world;
    const int group = world.addGroup(u"g"_s);
    constexpr int kDevices = 1000;
    int portId = 0;
    for (int i = 0; i < kDevices; ++i) {
        const QString device = QString::number(world.addDevice(group, u"host%1.example.com"_s.arg(i)));
        for (int port = 0; port <= 10; ++port) {
            world.sql(u"INSERT INTO tblPortMain (Device_ID, Port_Num, Port_Type, Port_Desc) VALUES (%1, '%2', 'TCP', 'd')"_s
                          .arg(device, port == 0 ? u"Ping"_s : QString::number(8000 + port)));
            world.sql(u"INSERT INTO tblPortStatus (Port_ID, Device_ID, Port_Icon, Port_Status)"
                      " VALUES (%1, %2, 5, 'Connected')"_s.arg(QString::number(++portId), device));
        }
    }
    db().CommitPending();
    ASSERT_TRUE(QFile::copy(QStringLiteral(KAVRO_TEMPLATE), world.path(u"HTML_Template_IE5.html"_s)));
    QElapsedTimer clock;
    clock.start();
    world.run();
    printf("page of %lld bytes in %lld ms, longest gap %lld ms\n", static_cast<long long>(world.written().size()),
           static_cast<long long>(clock.elapsed()), static_cast<long long>(world.longestGap));
    EXPECT_EQ(world.written().count("<span class=\"mark\">Connected"), 11 * kDevices);
#ifndef __SANITIZE_ADDRESS__
    EXPECT_LE(clock.elapsed(), 500);
    EXPECT_LE(world.longestGap, 150); // some 5 ms, and what a busy machine adds
#endif
}
