#include "notify/SmtpDelivery.h"

#include "core/Settings.h"
#include "core/Waits.h"
#include "notify/MailQueue.h"
#include "tests/platform/smtp/RealSmtpServer.h"
#include "tests/platform/smtp/ScriptedSmtpServer.h"
#include "tests/world/World.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QSet>
#include <QThread>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// ms. A gap is some 5 ms; a busy machine may add to it. Waiting inside a call would last the whole time-out.
constexpr int kLongestGap = 150;

/** The real event loop, but nobody waits longer than 2 ms. */
class QuickPolls : public waits::Driver
{
public:
    QuickPolls() : m_loop(waits::driver()), m_previous(waits::setDriver(this)) {}
    ~QuickPolls() override { waits::setDriver(m_previous); }
    void arm(waits::Wakeup &wakeup, int ms) override { m_loop.arm(wakeup, std::min(ms, 2)); }
    void disarm(waits::Wakeup &wakeup) override { m_loop.disarm(wakeup); }

private:
    waits::Driver &m_loop;
    waits::Driver *m_previous;
};

/** A queue of mails and a delivery that runs on the real event loop, watched for gaps. */
struct DeliveryWorld : World {
    QuickPolls polls;
    SmtpDelivery delivery;
    Task<void> task;
    qint64 longestGap = 0;

    explicit DeliveryWorld(const QString &servers, int mails = 3)
    {
        SaveSetting(u"Mail Options"_s, u"SendOnFailure"_s, u"1"_s);
        SaveSetting(u"Mail Options"_s, u"MailServer"_s, servers);
        SaveSetting(u"Mail Options"_s, u"MailFrom"_s, u"kavro@example.com"_s);
        SaveSetting(u"Mail Options"_s, u"MailTimeOut"_s, u"200"_s);
        for (int i = 0; i < mails; ++i)
            QueMail(u"ops@example.com"_s, u"mail %1"_s.arg(i), u"body\r\n"_s, u"host%1"_s.arg(i), u"80"_s);
    }

    /** One run of the drain. */
    void drain()
    {
        task = delivery.ProcessMailQue();
        task.start();
        const QDeadlineTimer limit(20000);
        while (task.isRunning() && !limit.hasExpired()) {
            QElapsedTimer gap;
            gap.start();
            QCoreApplication::processEvents();
            longestGap = std::max(longestGap, gap.elapsed());
            QThread::usleep(20);
        }
        ASSERT_FALSE(task.isRunning());
        task.result();
    }
    QStringList queue() { return rows(u"Select Mail_Subject FROM tblMailQue ORDER BY ID"_s); }
    QStringList errors() { return rows(u"Select Event FROM tblEventLog WHERE Event_Type = 'SMTP Error'"_s); }
};

QStringList subjects(const QByteArrayList &mails)
{
    QStringList list;
    for (const QByteArray &mail : mails) {
        const qsizetype at = mail.indexOf("Subject: ") + 9;
        list << QString::fromUtf8(mail.mid(at, mail.indexOf("\r\n", at) - at));
    }
    return list;
}

QString sentence(int mail, const QString &reason)
{
    return u"The notification email for host%1 port 80 was not sent because %2."_s.arg(QString::number(mail), reason);
}

const QStringList kThree{ u"mail 0"_s, u"mail 1"_s, u"mail 2"_s };

} // namespace

TEST(MailDelivery, WithoutAServerItSwitchesItselfOff)
{
    DeliveryWorld world{ QString() };
    world.drain();
    EXPECT_EQ(world.announcer.log, QStringList{ u"speak SMTP-NoValidServer"_s });
    EXPECT_EQ(world.errors(), QStringList{ u"You did not indicate what SMTP server to use.  SMTP mail notification has"
                                           " been disabled."_s });
    EXPECT_EQ(GetSetting(u"Mail Options"_s, u"SendOnFailure"_s), u"0"_s);
    EXPECT_EQ(world.queue(), kThree);
    SaveSetting(u"Mail Options"_s, u"MailServer"_s, u" :: "_s);
    world.drain();
    EXPECT_EQ(world.errors().size(), 1) << "blank elements are no servers and no error";
}

TEST(MailDelivery, InOrderThroughTheOnlyNamedServer)
{
    ScriptedSmtpServer server;
    DeliveryWorld world(u":: "_s + server.name() + u" ::   "_s);
    world.drain();
    EXPECT_EQ(subjects(server.mails), kThree);
    EXPECT_EQ(world.queue(), QStringList());
    EXPECT_EQ(world.errors(), QStringList());
    EXPECT_EQ(world.window.take().mid(0, 1),
              QStringList{ u"status Sending Email...(host0 port 80 using %1)"_s.arg(server.name()) });
    EXPECT_LE(world.longestGap, kLongestGap);
}

TEST(MailDelivery, EveryFaultKeepsTheQueueAndLogsOneLineAMail)
{
    struct Fault {
        QByteArray stage, answer;
        const char *reason;
    };
    const Fault faults[] = {
        { "MAIL", "451 Try Later.\r\n", "451 try later" },
        { "RCPT", "550 It's Unknown\r\n", "550 it`s unknown" },
        { "GREETING", ScriptedSmtpServer::kSilence, "the mail server did not answer in time" },
        { "END", ScriptedSmtpServer::kSilence, "the mail server did not answer in time" },
        { "BODY", ScriptedSmtpServer::kCut, "the mail server closed the connection" },
    };
    for (const Fault &fault : faults) {
        ScriptedSmtpServer server;
        server.answers[fault.stage] = fault.answer;
        DeliveryWorld world(server.name(), 2);
        world.drain();
        const QString reason = QString::fromLatin1(fault.reason);
        EXPECT_EQ(world.errors(), (QStringList{ sentence(0, reason), sentence(1, reason) })) << fault.reason;
        EXPECT_EQ(world.queue(), kThree.mid(0, 2)) << fault.reason;
        EXPECT_EQ(server.mails.size(), 0) << fault.reason;
        EXPECT_EQ(world.announcer.log.size(), 2) << fault.reason;
        EXPECT_LE(world.longestGap, kLongestGap) << fault.reason;

        // The next run, oldest first, and the same mail once more is recognisable as the same.
        server.answers.clear();
        server.commands.clear();
        world.drain();
        EXPECT_EQ(subjects(server.mails), kThree.mid(0, 2)) << fault.reason;
        EXPECT_EQ(world.queue(), QStringList()) << fault.reason;
    }
}

TEST(MailDelivery, TheSecondServerGetsWhatTheFirstDidNotTake)
{
    ScriptedSmtpServer first, second;
    QTcpServer dead;
    dead.listen(QHostAddress::LocalHost);
    const QString deadName = "127.0.0.1:"_L1 + QString::number(dead.serverPort());
    dead.close();
    DeliveryWorld refused(deadName + "::"_L1 + second.name());
    refused.drain();
    EXPECT_EQ(subjects(second.mails), kThree);
    EXPECT_EQ(refused.queue(), QStringList());
    EXPECT_EQ(refused.errors().size(), 3);
    second.mails.clear();

    DeliveryWorld partly(first.name() + "::"_L1 + second.name());
    first.answers["END"] = "452 full\r\n";
    QObject::connect(&first, &QTcpServer::newConnection, &first, [&] {
        if (first.connections > 1)
            first.answers.clear(); // takes all but the first
    });
    partly.drain();
    EXPECT_EQ(subjects(first.mails), kThree.mid(1));
    EXPECT_EQ(subjects(second.mails), kThree.mid(0, 1));
    EXPECT_EQ(partly.errors(), QStringList{ sentence(0, u"452 full"_s) });
}

TEST(MailDelivery, WhatIsSpokenAndThatPasswordsStayHidden)
{
    RealSmtpServer server({ u"--auth"_s, u"user:s3cret"_s, u"--starttls"_s },
                          RealSmtpServer::makeCertificate(QTemporaryDir().path(), u"none"_s));
    DeliveryWorld world(u"smtp://user:s3cret@%1"_s.arg(server.name()), 1);
    world.sql(u"INSERT INTO tblAgentAnnounce (Saying, Speach, PlayOrder, Animation) VALUES ('SMTPEmailError',"
              " '<DEVICE>: <ERROR>', 1, 'Sad')"_s);
    world.drain();
    const QString reason = u"the certificate of the mail server could not be verified"_s;
    EXPECT_EQ(world.announcer.log, QStringList{ u"line host0 port 80: %1|Sad||"_s.arg(reason) });
    EXPECT_EQ(world.errors(), QStringList{ sentence(0, reason) });
    const QString told = world.window.take().join(u'\n') + world.rows(u"Select Event FROM tblEventLog"_s).join(u'\n');
    EXPECT_TRUE(told.contains("using smtp://"_L1 + server.name()));
    EXPECT_FALSE(told.contains("s3cret"_L1) || told.contains("user"_L1));
    EXPECT_EQ(QFile::permissions(SettingsFilePath()) & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
    SaveSetting(u"MSAgent"_s, u"AnnounceSMTPErrors"_s, u"0"_s);
    world.drain();
    EXPECT_EQ(world.announcer.log.size(), 1);
}

/** The cycle that waits for a mail is cancelled; the mail arrives all the same and must not be sent again. */
TEST(MailDelivery, ACancelledRunLeavesNoMailToBeSentTwice)
{
    ScriptedSmtpServer server;
    DeliveryWorld world(server.name());
    world.task = world.delivery.ProcessMailQue();
    world.task.start();
    while (server.commands.isEmpty())
        QCoreApplication::processEvents();
    world.task = {};
    world.drain();
    EXPECT_EQ(subjects(server.mails), kThree);
    EXPECT_EQ(world.queue(), QStringList());
}

/** Another database is opened while a mail is under way: its queue is not touched by what belonged to the other. */
TEST(MailDelivery, AnotherDatabaseEndsTheRun)
{
    ScriptedSmtpServer server;
    DeliveryWorld world(server.name());
    const QString other = world.path(u"other.mdb"_s);
    World::makeDatabase(other);
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        if (server.connections > 1)
            return;
        UseDatabase(dao::OpenDatabase(other, true), other);
        QueMail(u"x@example.com"_s, u"of the other"_s, u"b"_s, u"h"_s, u"1"_s);
    });
    world.drain();
    EXPECT_EQ(server.mails.size(), 1);
    EXPECT_EQ(world.queue(), QStringList{ u"of the other"_s });
}

TEST(MailDelivery, AThousandMailsInOrder)
{
    constexpr int kMails = 1000;
    ScriptedSmtpServer server;
    DeliveryWorld world(server.name(), kMails);
    QElapsedTimer clock;
    clock.start();
    world.drain();
    const double perMail = double(clock.elapsed()) / kMails;
    QStringList expected;
    for (int i = 0; i < kMails; ++i)
        expected << u"mail %1"_s.arg(i);
    EXPECT_EQ(subjects(server.mails), expected);
    EXPECT_EQ(world.queue(), QStringList());
    EXPECT_EQ(server.connections, kMails);
    printf("%.2f ms a mail with a poll of 2 ms, longest gap %lld ms\n", perMail,
           static_cast<long long>(world.longestGap));
    QSet<QByteArray> ids;
    for (const QByteArray &mail : std::as_const(server.mails)) {
        const qsizetype at = mail.indexOf("Message-ID: ");
        ids.insert(mail.mid(at, mail.indexOf("\r\n", at) - at));
    }
    EXPECT_EQ(ids.size(), kMails);
}
