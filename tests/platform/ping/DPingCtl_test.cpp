// Real elements against the loopback and the far network (tests/world/far.conf), in a namespace of their own.
#include "platform/ping/DPingCtl.h"

#include "platform/ping/EchoAccess.h"

#include "tests/world/NetTest.h"

#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

void turnFor(int ms)
{
    turnUntil([] { return false; }, ms);
}

/** Elements with one ordered log of their events. */
class PingTest : public testing::Test
{
protected:
    ~PingTest() override
    {
        m_elements.clear(); // the sockets go with the last element
        setEchoAccess({});
    }

    DPingCtl &element(std::size_t index)
    {
        while (m_elements.size() <= index) {
            const int number = static_cast<int>(m_elements.size());
            auto &made = m_elements.emplace_back(std::make_unique<DPingCtl>(number));
            QObject::connect(made.get(), &DPingCtl::Reply, &m_context,
                             [this](int i, const QString &host, int status, double ms) {
                                 m_times.push_back(ms);
                                 record(u"%1 Reply %2 %3"_s.arg(i).arg(host).arg(status), i);
                             });
            QObject::connect(made.get(), &DPingCtl::Message, &m_context,
                             [this](int i, const QString &text) { record(u"%1 %2"_s.arg(i).arg(text), i); });
        }
        return *m_elements[index];
    }

    void record(const QString &line, int index)
    {
        m_log.append(line);
        if (m_handler)
            m_handler(index);
    }

    bool isIdle() const
    {
        return std::all_of(m_elements.begin(), m_elements.end(),
                           [](const auto &e) { return !e || !e->Busy(); });
    }

    QStringList logOf(const QString &host, int count = 1, int timeout = 150, int size = 32)
    {
        m_log.clear();
        m_times.clear();
        DPingCtl &ping = element(0);
        ping.SetCount(count);
        ping.SetTimeout(timeout);
        ping.SetPacketSize(size);
        ping.Ping(host);
        EXPECT_TRUE(m_log.isEmpty()) << "event before Ping returned";
        EXPECT_EQ(ping.Busy(), 1);
        EXPECT_TRUE(turnUntil([this] { return isIdle(); })) << qPrintable(host);
        turnFor(1); // an ending too many would come now
        return m_log;
    }

    QObject m_context;
    std::vector<std::unique_ptr<DPingCtl>> m_elements;
    QStringList m_log;
    std::vector<double> m_times;
    std::function<void(int)> m_handler;
};

struct AccessRow {
    const char *name;
    EchoAccess access;
};

const AccessRow kAccesses[] = {
    { "datagram", { true, false, u"/nonexistent"_s } },
    { "raw", { false, true, u"/nonexistent"_s } },
    { "helper", { false, false, QString() } },
};

struct HostRow {
    const char *name;
    QString host;
    QStringList log;
    int count = 1;
    int size = 32;
};

const QString kHuge = u"packet size 65501 is too large"_s;

const HostRow kHosts[] = {
    { "loopback", u"127.0.0.1"_s, { u"0 Reply 127.0.0.1 0"_s } },
    { "another loopback address", u"127.8.9.1"_s, { u"0 Reply 127.8.9.1 0"_s } },
    { "IPv6 loopback", u"::1"_s, { u"0 Reply ::1 0"_s } },
    { "scope", u"::1%lo"_s, { u"0 Reply ::1%lo 0"_s } },
    { "mapped", u"::ffff:127.0.0.1"_s, { u"0 Reply ::ffff:127.0.0.1 0"_s } },
    { "unspecified", u"0.0.0.0"_s, { u"0 Reply 0.0.0.0 0"_s } },
    { "blanks around", u" 127.0.0.1 "_s, { u"0 Reply  127.0.0.1  0"_s } },
    { "empty payload", u"127.0.0.1"_s, { u"0 Reply 127.0.0.1 0"_s }, 1, 0 },
    { "payload smaller than the cookie", u"::1"_s, { u"0 Reply ::1 0"_s }, 1, 3 },
    { "largest payload", u"127.0.0.1"_s, { u"0 Reply 127.0.0.1 0"_s }, 1, 65500 },
    { "largest payload, IPv6", u"::1"_s, { u"0 Reply ::1 0"_s }, 1, 65500 },
    { "too large", u"127.0.0.1"_s, { u"0 "_s + kHuge }, 3, 65501 },
    { "name", u"localhost"_s, { u"0 Reply localhost 0"_s } },
    { "name with IPv6 only", u"six.test"_s, { u"0 Reply six.test 0"_s } },
    { "name with a dead IPv6 and a live IPv4 address", u"both.test"_s, { u"0 Reply both.test 0"_s } },
    { "unknown name", u"nowhere.test"_s, { u"0 Host not found"_s }, 3 },
    { "no name at all", u"a b..c"_s, { u"0 Host not found"_s } },
    { "empty", u" "_s, { u"0 Host name is missing"_s }, 3 },
    { "one reply ends it", u"10.99.1.1"_s, { u"0 Reply 10.99.1.1 0"_s }, 3 },
    { "silent", u"10.99.4.1"_s, { u"0 Pinging 10.99.4.1: no reply"_s } },
    { "silent, three requests",
      u"10.99.4.1"_s,
      { u"0 Request timed out."_s, u"0 Request timed out."_s, u"0 Pinging 10.99.4.1: no reply"_s },
      3 },
    { "silent, IPv6", u"fd99::4:1"_s, { u"0 Pinging fd99::4:1: no reply"_s } },
    { "the third is answered",
      u"10.99.5.1"_s,
      { u"0 Request timed out."_s, u"0 Request timed out."_s, u"0 Reply 10.99.5.1 0"_s },
      3 },
    { "unreachable", u"10.99.2.1"_s, { u"0 destination host unreachable"_s } },
    { "unreachable, two requests",
      u"10.99.2.1"_s,
      { u"0 Request failed: destination host unreachable"_s, u"0 destination host unreachable"_s },
      2 },
    { "unreachable, IPv6", u"fd99::2:1"_s, { u"0 destination host unreachable"_s } },
    { "prohibited", u"10.99.3.1"_s, { u"0 communication administratively prohibited"_s } },
    { "prohibited, IPv6", u"fd99::3:1"_s, { u"0 communication administratively prohibited"_s } },
    { "no route",
      u"172.16.0.1"_s,
      { u"0 Request failed: network unreachable"_s, u"0 network unreachable"_s },
      2 },
    { "duplicate reply", u"10.99.7.1"_s, { u"0 Reply 10.99.7.1 0"_s } },
    { "reply from elsewhere", u"10.99.7.2"_s, { u"0 Pinging 10.99.7.2: no reply"_s } },
    { "reply with other content", u"10.99.7.3"_s, { u"0 Pinging 10.99.7.3: no reply"_s } },
    { "a count below one is one", u"10.99.1.1"_s, { u"0 Reply 10.99.1.1 0"_s }, 0 },
};

} // namespace

TEST_F(PingTest, EveryHostByEveryAccess)
{
    for (const AccessRow &way : kAccesses) {
        m_elements.clear();
        setEchoAccess(way.access);
        for (const HostRow &row : kHosts)
            EXPECT_EQ(logOf(row.host, row.count, 60, row.size), row.log) << way.name << ": " << row.name;
    }
}

TEST_F(PingTest, ReportsTheRoundTripTime)
{
    for (const QString &host : { u"10.99.1.1"_s, u"fd99::1:1"_s }) {
        logOf(host);
        ASSERT_EQ(m_times.size(), 1U);
        EXPECT_GE(m_times[0], 10.0);
        EXPECT_LT(m_times[0], 40.0);
    }
    logOf(u"127.0.0.1"_s);
    EXPECT_GT(m_times.at(0), 0.0);
    EXPECT_LT(m_times.at(0), 5.0);
}

TEST_F(PingTest, WithoutAnyAccessSaysWhatToDo)
{
    for (const QString &helper : { u"/nonexistent"_s, u"/bin/true"_s, u"/bin/false"_s }) {
        m_elements.clear();
        setEchoAccess({ false, false, helper });
        const QStringList log = logOf(u"127.0.0.1"_s, 3);
        ASSERT_EQ(log.size(), 1) << qPrintable(helper);
        const QString text = log.first().toLower();
        EXPECT_TRUE(text.contains(u"setcap cap_net_raw+ep kavro-icmp"_s)) << qPrintable(text);
        EXPECT_FALSE(text.contains(u"request"_s) || text.contains(u"pinging"_s) || text.contains(u'\''));
        EXPECT_EQ(logOf(u"::1"_s, 3), log);
    }
}

TEST_F(PingTest, AHelperThatNeverEndsIsGivenUp)
{
    QTemporaryDir folder;
    QFile script(folder.filePath(u"helper"_s));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\nexec sleep 60\n");
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    setEchoAccess({ false, false, script.fileName() });
    element(1).Ping(u"127.0.0.1"_s);
    turnFor(20);
    element(1).Stop(); // while the helper is being asked
    QElapsedTimer clock;
    clock.start();
    const QStringList log = logOf(u"127.0.0.1"_s);
    EXPECT_LT(clock.elapsed(), 4000);
    ASSERT_EQ(log.size(), 1);
    EXPECT_TRUE(log.first().contains(u"no permission"_s));
}

TEST_F(PingTest, TimeOutsAreKept)
{
    for (const int timeout : { 30, 200 }) {
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(logOf(u"10.99.4.1"_s, 2, timeout).size(), 2);
        EXPECT_GE(clock.elapsed(), 2 * timeout);
        EXPECT_LT(clock.elapsed(), 2 * timeout + 60);
    }
}

TEST_F(PingTest, ALateReplyCountsForNobody)
{
    EXPECT_EQ(logOf(u"10.99.6.1"_s, 1, 30), QStringList { u"0 Pinging 10.99.6.1: no reply"_s });
    EXPECT_EQ(logOf(u"10.99.6.1"_s, 1, 500), QStringList { u"0 Reply 10.99.6.1 0"_s });
    EXPECT_GE(m_times.at(0), 80.0);
}

// The reply lies in the socket while the thread does something else; the kernel's time stamp tells when it
// came.
TEST_F(PingTest, ABusyThreadDoesNotSpoilTheResult)
{
    element(0).SetTimeout(50);
    element(0).Ping(u"10.99.1.1"_s);
    QThread::msleep(100);
    ASSERT_TRUE(turnUntil([this] { return isIdle(); }));
    EXPECT_EQ(m_log, QStringList { u"0 Reply 10.99.1.1 0"_s });
    EXPECT_LT(m_times.at(0), 40.0);

    element(0).Ping(u"10.99.6.1"_s); // this one came, but not in time
    QThread::msleep(150);
    ASSERT_TRUE(turnUntil([this] { return isIdle(); }));
    EXPECT_EQ(m_log.last(), u"0 Pinging 10.99.6.1: no reply"_s);
}

TEST_F(PingTest, StopIsSilent)
{
    for (const QString &host :
         { u"127.0.0.1"_s, u"10.99.1.1"_s, u"172.16.0.1"_s, u"nowhere.test"_s, u""_s }) {
        element(0).Ping(host);
        element(0).Stop();
        EXPECT_EQ(element(0).Busy(), 0);
    }
    turnFor(40);
    EXPECT_EQ(m_log, QStringList());
    // A new ping replaces the one that is under way.
    element(0).Ping(u"10.99.2.1"_s);
    element(0).Ping(u"nowhere.test"_s);
    EXPECT_EQ(logOf(u"127.0.0.1"_s), QStringList { u"0 Reply 127.0.0.1 0"_s });
}

TEST_F(PingTest, HandlersMayDoAnything)
{
    m_handler = [this](int) { element(0).Stop(); };
    EXPECT_EQ(logOf(u"10.99.4.1"_s, 3, 30), QStringList { u"0 Request timed out."_s });
    turnFor(60);
    EXPECT_EQ(m_log.size(), 1);

    int left = 3; // pings again from within the event, a failure that comes at once included
    m_handler = [&](int) {
        if (--left > 0)
            element(0).Ping(left == 2 ? u"172.16.0.1"_s : u"::1"_s);
    };
    EXPECT_EQ(logOf(u"127.0.0.1"_s),
              QStringList({ u"0 Reply 127.0.0.1 0"_s, u"0 network unreachable"_s, u"0 Reply ::1 0"_s }));

    // All replies lie in one batch when the first handler deletes the other elements and its own.
    for (std::size_t i = 0; i < 8; ++i)
        element(i).Ping(u"127.0.0.1"_s);
    m_log.clear();
    m_handler = [this](int) {
        for (auto &e : m_elements)
            e.reset();
    };
    ASSERT_TRUE(turnUntil([this] { return !m_log.isEmpty(); }));
    turnFor(20);
    EXPECT_EQ(m_log, QStringList { u"0 Reply 127.0.0.1 0"_s });
    m_handler = nullptr;
    m_elements.clear();
}

TEST_F(PingTest, AHandlerMayRunAnEventLoop)
{
    for (std::size_t i = 0; i < 4; ++i)
        element(i).Ping(u"127.0.0.1"_s);
    m_handler = [this](int index) {
        if (index == 0) {
            EXPECT_TRUE(turnUntil([this] { return m_log.size() == 4; }, 1000));
        }
    };
    ASSERT_TRUE(turnUntil([this] { return isIdle(); }));
    EXPECT_EQ(m_log,
              QStringList({ u"0 Reply 127.0.0.1 0"_s, u"1 Reply 127.0.0.1 0"_s, u"2 Reply 127.0.0.1 0"_s,
                            u"3 Reply 127.0.0.1 0"_s }));
}

// The kernel reports an ICMP error about one request as the failure of the next call on the shared socket.
TEST_F(PingTest, ErrorsReachTheRightRequest)
{
    const QStringList hosts { u"10.99.1.%1"_s, u"10.99.2.%1"_s, u"fd99::1:%1"_s, u"fd99::3:%1"_s,
                              u"10.99.4.%1"_s };
    const QStringList events { u"Reply"_s, u"destination host unreachable"_s, u"Reply"_s,
                               u"communication administratively prohibited"_s, u"Pinging"_s };
    for (const AccessRow &way : kAccesses) {
        m_elements.clear();
        m_log.clear();
        setEchoAccess(way.access);
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < 60; ++i) {
                element(static_cast<std::size_t>(i)).SetTimeout(100);
                element(static_cast<std::size_t>(i)).Ping(hosts.at(i % 5).arg(i + 1));
            }
            ASSERT_TRUE(turnUntil([this] { return isIdle(); }));
        }
        ASSERT_EQ(m_log.size(), 180);
        element(1).Ping(u"10.99.2.1"_s);
        QThread::msleep(30); // the error waits in the socket when the next request is sent
        element(0).Ping(u"10.99.1.1"_s);
        ASSERT_TRUE(turnUntil([this] { return isIdle(); }));
        for (const QString &line : m_log)
            EXPECT_TRUE(line.section(u' ', 1).startsWith(events.at(line.section(u' ', 0, 0).toInt() % 5)))
                << way.name << ": " << qPrintable(line);
    }
}

// No more than 128 requests are under way, and the time-out of those that wait counts from their sending.
TEST_F(PingTest, RequestsWaitForTheirTurn)
{
    QElapsedTimer clock;
    clock.start();
    for (std::size_t i = 0; i < 300; ++i) {
        element(i).SetTimeout(100);
        element(i).Ping(u"10.99.4.%1"_s.arg(i % 250));
    }
    ASSERT_TRUE(turnUntil([this] { return isIdle(); }));
    EXPECT_GE(clock.elapsed(), 300);
    EXPECT_LT(clock.elapsed(), 420);
    ASSERT_EQ(m_log.size(), 300);
    for (int i = 0; i < 300; ++i)
        EXPECT_TRUE(m_log.at(i).startsWith(u"%1 Pinging"_s.arg(i))) << qPrintable(m_log.at(i));
}

TEST_F(PingTest, AThousandPings)
{
    constexpr std::size_t kElements = 256;
    for (const bool datagram : { true, false }) {
        m_elements.clear();
        m_log.clear();
        setEchoAccess({ datagram, !datagram, u"/nonexistent"_s });
        int started = 0;
        const auto next = [&](int i) {
            if (started < 1000)
                element(static_cast<std::size_t>(i)).Ping(u"10.99.1.%1"_s.arg(started++ % 250 + 1));
        };
        m_handler = next;
        element(kElements - 1);
        QElapsedTimer clock;
        clock.start();
        for (std::size_t i = 0; i < kElements; ++i)
            next(static_cast<int>(i));
        ASSERT_TRUE(turnUntil([this] { return m_log.size() == 1000; }));
        EXPECT_LT(clock.elapsed(), 1000);
        RecordProperty(datagram ? "datagram_ms" : "raw_ms", static_cast<int>(clock.elapsed()));
        EXPECT_EQ(m_log.filter(u"Reply"_s).size(), 1000);
    }
}
