#include "notify/MailQueue.h"

#include "core/Settings.h"
#include "monitor/CheckCycle.h"
#include "notify/Notifications.h"
#include "tests/platform/smtp/RealSmtpServer.h"
#include "tests/world/SimulatedWaits.h"
#include "tests/world/World.h"

#include <QJsonArray>
#include <QTcpServer>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

void setMail(const QString &key, const QString &value) { SaveSetting(u"Mail Options"_s, key, value); }

/** The real engine with real delivery over one check that the test lets fail and recover. */
struct MailWorld : World {
    Notifications notifications;
    RealSmtpServer &server;
    int before;
    QTcpServer target;
    quint16 port;
    int check;
    CheckCycle cycle;
    SimulatedWaits time;

    MailWorld(RealSmtpServer &s, int consecutive) : server(s), before(int(s.mails().size()))
    {
        vbMain().afterCheck = &notifications;
        setMail(u"SendOnFailure"_s, u"1"_s);
        setMail(u"SendOnConsecutiveFailure"_s, QString::number(consecutive));
        setMail(u"MailServer"_s, server.name());
        setMail(u"MailTo"_s, u"ops@example.com"_s);
        setMail(u"MailFrom"_s, u"kavro@example.com"_s);
        SaveSetting(u"Options"_s, u"Min_Between_Checks"_s, u"1"_s);
        target.listen(QHostAddress::LocalHost);
        port = target.serverPort();
        target.close();
        check = addCheck(addDevice(addGroup(u"g"_s), u"127.0.0.1"_s, u"web"_s), QString::number(port));
        cycle.loadControls();
        window.recordStatus = false;
    }
    ~MailWorld() { cycle.unloadControls(); }

    void run(int cycles)
    {
        for (int i = 0; i < cycles; ++i) {
            ASSERT_TRUE(time.runUntil([&] { return cycle.checkInProgress(); }));
            ASSERT_TRUE(time.runUntil([&] { return !cycle.checkInProgress(); }));
        }
    }
    void setUp(bool up)
    {
        if (up)
            ASSERT_TRUE(target.listen(QHostAddress::LocalHost, port));
        else
            target.close();
    }
    /** Subject and text of every mail of this world. */
    QStringList mails(int expected)
    {
        QStringList texts;
        for (const QJsonObject &mail : server.mails(before + expected).mid(before))
            texts << mail["to"_L1].toArray().first().toString() + u'|' + mail["subject"_L1].toString() + u'|'
                    + mail["text"_L1].toString();
        return texts;
    }
    QStringList emailEvents() { return rows(u"Select Event FROM tblEventLog WHERE Event_Type = 'Email'"_s); }
};

} // namespace

TEST(MailSemantics, OneMailAtTheNthFailureAndOneAtTheRecovery)
{
    RealSmtpServer server;
    for (const int n : { 1, 3, 5 }) {
        MailWorld world(server, n);
        const QString p = QString::number(world.port);
        const QString now = GeneralDate(world.now);
        const QString failure = u"ops@example.com|web:%1|web port %1 failed on %2 because connection refused.\r\n"_s
                                    .arg(p, now);
        world.cycle.Monitor_Initialize();
        world.run(n - 1);
        EXPECT_EQ(world.mails(0), QStringList()) << n;
        world.run(1);
        EXPECT_EQ(world.mails(1), QStringList{ failure }) << n;
        world.run(2);
        EXPECT_EQ(world.mails(1).size(), 1) << n;
        world.setUp(true);
        world.run(1);
        const QString recovery = u"ops@example.com|web:%1|web port %1 recovered on %2.\r\n"_s.arg(p, now);
        EXPECT_EQ(world.mails(2), (QStringList{ failure, recovery })) << n;
        world.run(2);
        EXPECT_EQ(world.mails(2).size(), 2) << n;
        EXPECT_EQ(world.emailEvents(), (QStringList{ u"web port %1 has failed."_s.arg(p),
                                                     u"web port %1 has recovered."_s.arg(p) })) << n;
        EXPECT_EQ(world.rows(u"Select ID FROM tblMailQue"_s), QStringList()) << n;
    }
}

TEST(MailSemantics, AFailureThatEndsBeforeTheNthCheckIsNotMailed)
{
    RealSmtpServer server;
    MailWorld world(server, 3);
    world.cycle.Monitor_Initialize();
    world.run(2);
    world.setUp(true);
    world.run(2);
    EXPECT_EQ(world.mails(0), QStringList());
    EXPECT_EQ(world.emailEvents(), QStringList());
}

/** What a cycle left that was mailed already is not mailed again by one that is switched off before it has results. */
TEST(MailSemantics, ACycleSwitchedOffEarlyMailsNothingAgain)
{
    RealSmtpServer server;
    MailWorld world(server, 1);
    world.cycle.Monitor_Initialize();
    world.run(1);
    ASSERT_EQ(world.mails(1).size(), 1);
    ASSERT_TRUE(world.time.runUntil([&] { return world.cycle.checkInProgress(); }));
    world.cycle.Monitor_Stop();
    ASSERT_TRUE(world.time.runUntil([&] { return !world.cycle.checkInProgress(); }));
    EXPECT_EQ(world.mails(1).size(), 1);
    EXPECT_EQ(world.emailEvents().size(), 1);
}

TEST(MailSemantics, TemplatesAndSwitches)
{
    RealSmtpServer server;
    const auto portTemplate = [](MailWorld &world, const QString &address, const QString &subject) {
        world.sql(u"INSERT INTO tblPortEmailTemplate (Port_ID, Device_ID, Email_Address, Email_Subject, Email_Failure,"
                  " Email_Recovery) VALUES (%1, 1, '%2', '%3', 'down: <REASON>', 'up')"_s
                      .arg(QString::number(world.check), address, subject));
    };
    const QString global = u"ops@example.com|web:PORT|web port PORT failed on DATE because connection refused.\r\n"_s;
    struct Row {
        const char *name;
        std::function<void(MailWorld &)> prepare;
        QStringList mails;
        int events;
    };
    const Row rows[] = {
        { "port template",
          [&](MailWorld &w) { portTemplate(w, u"port@example.com"_s, u"<PORT> of <DEVICE> <NOTHING>"_s); },
          { u"port@example.com|PORT of web <NOTHING>|down: connection refused\r\n"_s }, 1 },
        { "port template without subject", [&](MailWorld &w) { portTemplate(w, u"port@example.com"_s, {}); },
          { global }, 1 },
        { "port template without address", [&](MailWorld &w) { portTemplate(w, {}, u"x"_s); }, { global }, 1 },
        { "body ends with a line end of its own",
          [](MailWorld &) { setMail(u"MailFailedMask"_s, u"down\r\n"_s); },
          { u"ops@example.com|web:PORT|down\r\n\r\n"_s }, 1 },
        { "tokens in values are expanded by later passes",
          [](MailWorld &w) {
              w.sql(u"UPDATE tblDevices SET Device_Alias = '<PORT><DEVICE>'"_s);
              setMail(u"MailFailedMask"_s, u"<DEVICE> <device>"_s);
          },
          { u"ops@example.com|PORT<DEVICE>:PORT|PORT<DEVICE> <device>\r\n"_s }, 1 },
        { "notify off", [](MailWorld &w) { w.sql(u"UPDATE tblPortMain SET Port_Email_Notify = False"_s); }, {}, 0 },
        { "disabled port", [](MailWorld &w) { w.sql(u"UPDATE tblPortStatus SET Port_Icon = 13"_s); }, {}, 0 },
        { "SendOnFailure off", [](MailWorld &) { setMail(u"SendOnFailure"_s, u"0"_s); }, {}, 0 },
        { "SendUsingSMTP off", [](MailWorld &) { setMail(u"SendUsingSMTP"_s, u"0"_s); }, {}, 1 },
    };
    for (const Row &row : rows) {
        MailWorld world(server, 1);
        row.prepare(world);
        world.cycle.Monitor_Initialize();
        world.run(1);
        QStringList expected = row.mails;
        expected.replaceInStrings(u"PORT"_s, QString::number(world.port));
        expected.replaceInStrings(u"DATE"_s, GeneralDate(world.now));
        expected.replaceInStrings(u'<' + QString::number(world.port) + u'>', u"<PORT>"_s);
        EXPECT_EQ(world.mails(int(expected.size())), expected) << row.name;
        EXPECT_EQ(world.emailEvents().size(), row.events) << row.name;
        EXPECT_EQ(world.announcer.log.contains(u"speak AnnounceEmail"_s), row.events > 0) << row.name;
        EXPECT_EQ(world.rows(u"Select ID FROM tblMailQue"_s), QStringList()) << row.name;
    }
}

TEST(MailQueue, AnApostropheIsFatalAndSaysWhere)
{
    World world;
    world.dialogs.expect(u"error has occured in the QueMail subroutine"_s);
    EXPECT_THROW(QueMail(u"a@x"_s, u"it's"_s, u"b"_s, u"d"_s, u"80"_s), ProgramEnded);
}
