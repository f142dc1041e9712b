#include "platform/smtp/cKavroSMTP.h"

#include "tests/platform/smtp/RealSmtpServer.h"
#include "tests/platform/smtp/ScriptedSmtpServer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kTimeOut = 250; // ms
// ms. A gap is some 5 ms; a busy machine may add to it. Waiting inside a call would last the whole time-out.
constexpr int kLongestGap = 150;

/** A control with its events written down, and a watch on the event loop. */
struct Client {
    cKavroSMTP control;
    QStringList events;
    qint64 longestGap = 0;

    Client()
    {
        QObject::connect(&control, &cKavroSMTP::SendComplete, &control, [this] { events << u"sent"_s; });
        QObject::connect(&control, &cKavroSMTP::Error, &control, [this](const QString &text) { events << text; });
    }

    void prepare(const QString &server, int timeOut = kTimeOut)
    {
        control.Reset();
        control.SetTimeOut(timeOut);
        control.SetServer(server);
        control.SetRecipient(u"ops@example.com;boss@example.com"_s);
        control.SetSender(u"monitor@example.com"_s);
        control.SetSubject(u"web:80"_s);
        control.SetBody(u".dot first\r\nweb port 80 failed.\r\n"_s);
    }

    /** Sends and waits for the end; the events of this one mail. */
    QStringList send(const QString &server, int timeOut = kTimeOut)
    {
        prepare(server, timeOut);
        return finish();
    }

    QStringList finish()
    {
        control.Send();
        EXPECT_TRUE(control.Busy());
        EXPECT_EQ(events, QStringList()) << "an event before Send returned";
        const QDeadlineTimer limit(8000);
        while (control.Busy() && !limit.hasExpired())
            turn();
        settle();
        return std::exchange(events, {});
    }

    void settle()
    {
        for (int i = 0; i < 20; ++i)
            turn();
    }

    void turn()
    {
        QElapsedTimer gap;
        gap.start();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        longestGap = std::max(longestGap, gap.elapsed());
        QThread::usleep(200);
    }
};

} // namespace

TEST(SmtpControl, DeliversToAScriptedServerWithDotsAndTwoRecipients)
{
    ScriptedSmtpServer server;
    Client client;
    EXPECT_EQ(client.send(server.name()), QStringList{ u"sent"_s });
    ASSERT_EQ(server.mails.size(), 1);
    EXPECT_TRUE(server.mails.first().endsWith("\r\n\r\n..dot first\r\nweb port 80 failed.\r\n"));
    EXPECT_EQ(server.commands.mid(1), (QByteArrayList{ "MAIL FROM:<monitor@example.com>", "RCPT TO:<ops@example.com>",
                                                       "RCPT TO:<boss@example.com>", "DATA", "QUIT" }));
    EXPECT_LE(client.longestGap, kLongestGap);
}

/** Every stage × refused for now, refused for good, silent, cut. */
TEST(SmtpControl, FaultsAtEveryStage)
{
    const QByteArrayList stages{ "GREETING", "EHLO", "MAIL", "RCPT", "DATA", "BODY", "END" };
    for (const QByteArray &stage : stages) {
        const struct {
            QByteArray answer;
            const char *error;
        } faults[] = {
            { "451-it's me\r\n451 4.3.0 try later.\r\n", "451 it`s me 4.3.0 try later" },
            { "550 5.1.1 no such user\r\n", "550 5.1.1 no such user" },
            { ScriptedSmtpServer::kSilence, "the mail server did not answer in time" },
            { ScriptedSmtpServer::kCut, "the mail server closed the connection" },
            { "what?\r\n", nullptr }, // any one error, or the time-out
        };
        for (const auto &fault : faults) {
            ScriptedSmtpServer server;
            server.answers[stage] = fault.answer;
            if (stage == "EHLO")
                server.answers["HELO"] = fault.answer; // which is tried next
            Client client;
            const QStringList events = client.send(server.name());
            const std::string where = (stage + " " + fault.answer).toStdString();
            if (fault.error) {
                EXPECT_EQ(events, QStringList{ QString::fromLatin1(fault.error) }) << where;
            }
            EXPECT_EQ(events.size(), 1) << where;
            EXPECT_EQ(server.connections, 1) << "tried twice: " << where;
            EXPECT_EQ(server.mails.size(), 0) << where;
            EXPECT_LE(client.longestGap, kLongestGap) << where;
        }
    }
}

/** A server that says nothing after the mail was taken, or after it refused, must not hold anything up. */
TEST(SmtpControl, SilenceAfterTheLastWord)
{
    const struct {
        QByteArray stage;
        QByteArray answer;
        const char *event;
    } rows[] = {
        { "END", "250 queued\r\n", "sent" },
        { "RCPT", "550 no\r\n", "550 no" },
        { "GREETING", "554 go away\r\n", "554 go away" },
        { "GREETING", "354 odd\r\n", "the mail server gave an answer that is not understood" },
    };
    for (const auto &row : rows) {
        ScriptedSmtpServer server;
        server.answers["QUIT"] = ScriptedSmtpServer::kSilence;
        server.answers[row.stage] = row.answer;
        Client client;
        QElapsedTimer time;
        time.start();
        EXPECT_EQ(client.send(server.name(), 3000), QStringList{ QString::fromLatin1(row.event) }) << row.event;
        EXPECT_LT(time.elapsed(), 1000) << row.event;
        EXPECT_LE(client.longestGap, kLongestGap) << row.event;
    }
}

/** The step to encryption, which any server of the list may offer. */
TEST(SmtpControl, EncryptionThatDoesNotComeAbout)
{
    const struct {
        QByteArray answer;
        const char *query;
        const char *event;
    } rows[] = {
        { "220 go\r\n", "", "the mail server did not answer in time" }, // and not another word
        { "454 not now\r\n", "", "sent" },
        { "454 not now\r\n", "?tls=required", "454 not now" },
        { "220 go\r\n250 slipped in\r\n", "", "the mail server gave an answer that is not understood" },
    };
    for (const auto &row : rows) {
        ScriptedSmtpServer server;
        server.answers["EHLO"] = "250-test\r\n250 STARTTLS\r\n";
        server.answers["STAR"] = row.answer;
        server.silentAfter = row.answer.startsWith('2') ? "STAR" : QByteArray();
        Client client;
        EXPECT_EQ(client.send(server.name() + QString::fromLatin1(row.query)),
                  QStringList{ QString::fromLatin1(row.event) }) << row.answer.constData();
        EXPECT_LE(client.longestGap, kLongestGap) << row.answer.constData();
    }
}

TEST(SmtpControl, WithoutAServerOrAnAddress)
{
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    const QString refused = "127.0.0.1:"_L1 + QString::number(closed.serverPort());
    closed.close();
    Client client;
    EXPECT_EQ(client.send(refused), QStringList{ u"the mail server refused the connection"_s });
    EXPECT_EQ(client.send(u"no-such-host.invalid"_s, 5000), QStringList{ u"the mail server was not found"_s });
    EXPECT_EQ(client.send(u"not a server"_s), QStringList{ u"the name of the mail server is not understood"_s });

    ScriptedSmtpServer server;
    client.prepare(server.name());
    client.control.SetRecipient(u"a@x.org\r\nRCPT TO:<b@x.org>"_s);
    EXPECT_EQ(client.finish(), QStringList{ u"the recipient is not a mail address"_s });
    client.prepare(server.name());
    client.control.SetSender(u"a b"_s);
    EXPECT_EQ(client.finish(), QStringList{ u"the sender is not a mail address"_s });
    EXPECT_EQ(server.connections, 0);
    client.prepare(server.name());
    client.control.SetSender(QString());
    EXPECT_EQ(client.finish(), QStringList{ u"sent"_s }) << "nobody to answer to is legal";
    EXPECT_EQ(server.commands.value(1), "MAIL FROM:<>");
    EXPECT_LE(client.longestGap, kLongestGap);
}

TEST(SmtpControl, ResetEndsWhatGoesOnWithoutAnEvent)
{
    for (const char *stage : { "GREETING", "MAIL", "END" }) {
        ScriptedSmtpServer server;
        server.answers[stage] = ScriptedSmtpServer::kSilence;
        Client client;
        client.prepare(server.name(), 5000);
        client.control.Send();
        const QDeadlineTimer running(100);
        while (!running.hasExpired())
            client.turn();
        client.control.Reset();
        EXPECT_FALSE(client.control.Busy());
        client.settle();
        EXPECT_EQ(client.events, QStringList()) << stage;
        server.answers.clear();
        EXPECT_EQ(client.send(server.name()), QStringList{ u"sent"_s }) << stage;
    }
}

TEST(SmtpControl, RealServerReadsTheMessage)
{
    RealSmtpServer server;
    Client client;
    client.prepare(server.name(), 5000);
    client.control.SetSender(u"müller@example.com"_s);
    client.control.SetSubject(u"Gerät:80\r\nBcc: x@example.com"_s);
    client.control.SetBody(u".\r\nSüd = 5\r\n"_s);
    EXPECT_EQ(client.finish(), QStringList{ u"sent"_s });
    const QJsonObject mail = server.mails(1).value(0);
    EXPECT_EQ(mail["from"_L1].toString(), u"müller@example.com"_s);
    EXPECT_EQ(mail["subject"_L1].toString(), u"Gerät:80  Bcc: x@example.com"_s);
    EXPECT_EQ(mail["text"_L1].toString(), u".\r\nSüd = 5\r\n"_s);
    EXPECT_EQ(mail["defects"_L1].toArray(), QJsonArray());
    EXPECT_FALSE(mail["headers"_L1].toArray().contains(u"Bcc"_s));
}

TEST(SmtpControl, EncryptionAndLogin)
{
    QTemporaryDir folder;
    const QString trusted = RealSmtpServer::makeCertificate(folder.path(), u"trusted"_s);
    const QString foreign = RealSmtpServer::makeCertificate(folder.path(), u"foreign"_s);
    qputenv("SSL_CERT_FILE", trusted.toLocal8Bit());
    const QString login = u"user:s3cret"_s;
    RealSmtpServer plain;
    RealSmtpServer offers({ u"--starttls"_s }, foreign);
    RealSmtpServer good({ u"--starttls"_s, u"--auth"_s, login }, trusted);
    RealSmtpServer bad({ u"--starttls"_s, u"--auth"_s, login }, foreign);
    RealSmtpServer secure({ u"--smtps"_s, u"--auth"_s, login }, trusted);
    RealSmtpServer insecure({ u"--smtps"_s }, foreign);
    const QString untrusted = u"the certificate of the mail server could not be verified"_s;
    const QString none = u"the mail server offers no encryption"_s;
    const struct {
        RealSmtpServer &server;
        QString element;
        QString event;
        bool tls;
    } rows[] = {
        { plain, u"%1"_s, u"sent"_s, false },
        { plain, u"%1?tls=required"_s, none, false },
        { plain, u"smtp://user:s3cret@%1"_s, none, false },
        { offers, u"%1"_s, u"sent"_s, true }, // between mail servers any certificate will do
        { offers, u"%1?tls=required"_s, untrusted, false },
        { good, u"smtp://user:s3cret@%1"_s, u"sent"_s, true },
        { good, u"smtp://user:wr0ng@%1"_s, u"535 5.7.8 it`s the wrong password: ***"_s, false },
        { bad, u"smtp://user:s3cret@%1"_s, untrusted, false },
        { secure, u"smtps://user:s3cret@%1"_s, u"sent"_s, true },
        { insecure, u"smtps://%1"_s, untrusted, false },
        { plain, u"smtps://%1"_s, u"no encrypted connection with the mail server came about"_s, false },
    };
    for (const auto &row : rows) {
        Client client;
        const int before = int(row.server.mails().size());
        const QString element = row.element.arg(row.server.name());
        EXPECT_EQ(client.send(element, 3000), QStringList{ row.event }) << qPrintable(element);
        EXPECT_LE(client.longestGap, kLongestGap) << qPrintable(element);
        const int arrived = row.event == "sent"_L1 ? 1 : 0;
        const QList<QJsonObject> mails = row.server.mails(before + arrived);
        EXPECT_EQ(mails.size(), before + arrived) << qPrintable(element);
        if (arrived) {
            EXPECT_EQ(mails.constLast()["tls"_L1].toBool(), row.tls) << qPrintable(element);
        }
    }
    qunsetenv("SSL_CERT_FILE");
}
