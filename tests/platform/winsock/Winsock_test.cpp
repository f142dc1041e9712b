// Real elements against the loopback and the far network (tests/world/far.conf), in a namespace of their own.
#include "platform/winsock/Winsock.h"

#include "platform/winsock/SocketErrors.h"

#include "tests/world/NetTest.h"

#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

void turnFor(int ms)
{
    turnUntil([] { return false; }, ms);
}

/** A listening socket on 127.0.0.1. */
class Listener
{
public:
    Listener() : m_fd(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        EXPECT_EQ(bind(m_fd, reinterpret_cast<sockaddr *>(&address), size), 0);
        EXPECT_EQ(listen(m_fd, 1024), 0);
        getsockname(m_fd, reinterpret_cast<sockaddr *>(&address), &size);
        m_port = ntohs(address.sin_port);
    }
    ~Listener() { close(m_fd); }
    int port() const { return m_port; }
    /** Takes the next connection and ends it, in order or with a reset; returns the port that it came
        from. */
    int acceptAndEnd(bool reset)
    {
        sockaddr_in peer {};
        socklen_t size = sizeof peer;
        const int fd = accept(m_fd, reinterpret_cast<sockaddr *>(&peer), &size);
        const linger hard { 1, 0 };
        if (reset)
            setsockopt(fd, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
        close(fd);
        return ntohs(peer.sin_port);
    }

private:
    int m_fd;
    int m_port = 0;
};

/** Elements with one ordered log of their events. */
class WinsockTest : public testing::Test
{
protected:
    Winsock &element(std::size_t index)
    {
        while (m_elements.size() <= index) {
            const int number = static_cast<int>(m_elements.size());
            auto &made = m_elements.emplace_back(std::make_unique<Winsock>(number));
            QObject::connect(made.get(), &Winsock::Connected, &m_context,
                             [this](int i) { record(u"%1 Connected"_s.arg(i), i); });
            QObject::connect(made.get(), &Winsock::Error, &m_context,
                             [this](int i, int error, const QString &text) {
                                 record(u"%1 Error %2 %3"_s.arg(i).arg(error).arg(text), i);
                             });
        }
        return *m_elements[index];
    }

    void record(const QString &line, int index)
    {
        m_log.append(line);
        if (m_handler)
            m_handler(index);
    }

    void start(std::size_t index, const QString &host, int port, int limitMs = 3000)
    {
        Winsock &socket = element(index);
        const qsizetype before = m_log.size();
        socket.SetLocalPort(0);
        socket.SetRemoteHost(host);
        socket.SetRemotePort(port);
        socket.SetAttemptTimeout(limitMs);
        socket.Connect();
        EXPECT_EQ(m_log.size(), before) << "event before Connect returned";
    }

    QStringList logOf(const QString &host, int port, int limitMs = 3000)
    {
        m_log.clear();
        start(0, host, port, limitMs);
        EXPECT_TRUE(turnUntil([this] { return !m_log.isEmpty(); })) << qPrintable(host) << port;
        turnFor(1); // an ending too many would come now
        return m_log;
    }

    QObject m_context;
    std::vector<std::unique_ptr<Winsock>> m_elements;
    QStringList m_log;
    std::function<void(int)> m_handler;
};

struct Row {
    const char *name;
    QString host;
    int port;
    QString event;
    int limitMs = 3000;
};

const Row kRows[] = {
    { "open", u"10.99.1.1"_s, 80, u"0 Connected"_s },
    { "open, IPv6", u"fd99::1:1"_s, 80, u"0 Connected"_s },
    { "mapped", u"::ffff:10.99.1.1"_s, 80, u"0 Connected"_s },
    { "blanks around", u" 10.99.1.1 "_s, 80, u"0 Connected"_s },
    { "refused", u"10.99.1.1"_s, 22, u"0 Error 10061 connection refused"_s },
    { "refused, IPv6", u"fd99::1:1"_s, 22, u"0 Error 10061 connection refused"_s },
    { "refused on the loopback", u"127.0.0.1"_s, 1, u"0 Error 10061 connection refused"_s },
    { "reset after accepting", u"10.99.1.1"_s, 24, u"0 Connected"_s },
    { "reset after accepting, IPv6", u"fd99::1:1"_s, 24, u"0 Connected"_s },
    { "silent", u"10.99.1.1"_s, 23, u"0 Error 10060 connection timed out"_s, 80 },
    { "silent, IPv6", u"fd99::4:1"_s, 23, u"0 Error 10060 connection timed out"_s, 80 },
    { "port unreachable", u"10.99.1.1"_s, 25, u"0 Error 10061 connection refused"_s },
    { "prohibited", u"10.99.1.1"_s, 26, u"0 Error 10065 no route to host"_s },
    { "prohibited, IPv6", u"fd99::3:1"_s, 26, u"0 Error 10013 connection prohibited"_s },
    { "no route", u"172.16.0.1"_s, 80, u"0 Error 10051 network unreachable"_s },
    { "unknown name", u"nowhere.test"_s, 80, u"0 Error 11001 host not found"_s },
    { "no name at all", u"a b..c"_s, 80, u"0 Error 11001 host not found"_s },
    { "empty name", u" "_s, 80, u"0 Error 10049 host name is missing"_s },
    { "port 0", u"127.0.0.1"_s, 0, u"0 Error 10022 port number 0 is not valid"_s },
    { "port too large", u"127.0.0.1"_s, 70000, u"0 Error 10022 port number 70000 is not valid"_s },
    { "negative port", u"127.0.0.1"_s, -1, u"0 Error 10022 port number -1 is not valid"_s },
    { "name", u"four.test"_s, 80, u"0 Connected"_s },
    { "second address answers", u"dead-then-alive.test"_s, 80, u"0 Connected"_s },
    { "error of the last address", u"dead-then-alive.test"_s, 22, u"0 Error 10061 connection refused"_s },
};

} // namespace

TEST_F(WinsockTest, EveryKindOfPeer)
{
    for (const Row &row : kRows) {
        EXPECT_EQ(logOf(row.host, row.port, row.limitMs), QStringList { row.event }) << row.name;
        const bool isError = row.event.contains(u"Error"_s);
        EXPECT_EQ(element(0).state() == Winsock::sckError, isError) << row.name;
        element(0).Close();
        EXPECT_EQ(element(0).state(), Winsock::sckClosed) << row.name;
    }
}

TEST_F(WinsockTest, StatesOfAnAttempt)
{
    element(0);
    EXPECT_EQ(element(0).state(), Winsock::sckClosed);
    start(0, u"four.test"_s, 80);
    EXPECT_EQ(element(0).state(), Winsock::sckResolvingHost);
    start(1, u"10.99.4.1"_s, 80);
    EXPECT_EQ(element(1).state(), Winsock::sckConnecting);
    ASSERT_TRUE(turnUntil([this] { return element(0).state() == Winsock::sckConnected; }));
    turnFor(30);
    EXPECT_EQ(element(0).state(), Winsock::sckConnected);
    element(0).Close();

    // What the peer does afterwards shows in the state, and raises no event.
    for (const bool reset : { false, true }) {
        Listener listener;
        EXPECT_EQ(logOf(u"127.0.0.1"_s, listener.port()), QStringList { u"0 Connected"_s });
        listener.acceptAndEnd(reset);
        EXPECT_TRUE(turnUntil([this] { return element(0).state() == Winsock::sckClosing; }, 1000)) << reset;
        EXPECT_EQ(m_log.size(), 1);
    }
}

TEST_F(WinsockTest, APeerThatResetsBeforeAnybodyLooksHasConnected)
{
    Listener listener;
    start(0, u"127.0.0.1"_s, listener.port());
    listener.acceptAndEnd(true);
    start(1, u"10.99.1.1"_s, 24);
    QThread::msleep(40);
    ASSERT_TRUE(turnUntil([this] { return m_log.size() == 2; }));
    EXPECT_EQ(m_log.filter(u"Connected"_s).size(), 2) << qPrintable(m_log.join(u'|'));
}

TEST_F(WinsockTest, LocalPort)
{
    Listener listener, other;
    element(0).SetLocalPort(other.port()); // taken by a listener
    element(0).SetRemoteHost(u"127.0.0.1"_s);
    element(0).SetRemotePort(listener.port());
    element(0).Connect();
    ASSERT_TRUE(turnUntil([this] { return m_log.size() == 1; }));
    EXPECT_EQ(m_log.first(), u"0 Error 10048 local port in use"_s);
    element(0).SetLocalPort(45678);
    element(0).Connect();
    ASSERT_TRUE(turnUntil([this] { return m_log.size() == 2; }));
    EXPECT_EQ(m_log.last(), u"0 Connected"_s);
    EXPECT_EQ(listener.acceptAndEnd(false), 45678);
}

TEST_F(WinsockTest, LimitsAreKept)
{
    QElapsedTimer clock;
    clock.start();
    start(0, u"10.99.4.1"_s, 80, 200);
    start(1, u"10.99.4.2"_s, 80, 50);
    start(2, u"10.99.4.3"_s, 80, 0); // none but the kernel's own
    start(3, u"10.99.1.1"_s, 80, 50);
    ASSERT_TRUE(turnUntil([this] { return m_log.size() == 3; }));
    EXPECT_GE(clock.elapsed(), 200);
    EXPECT_LT(clock.elapsed(), 260);
    EXPECT_EQ(m_log,
              QStringList({ u"3 Connected"_s, u"1 Error 10060 connection timed out"_s,
                            u"0 Error 10060 connection timed out"_s }));
    EXPECT_EQ(element(2).state(), Winsock::sckConnecting);
    turnFor(100); // an open connection has no limit
    EXPECT_EQ(m_log.size(), 3);
}

TEST_F(WinsockTest, ABusyThreadDoesNotSpoilTheResult)
{
    start(0, u"10.99.1.1"_s, 80, 50);
    QThread::msleep(100);
    ASSERT_TRUE(turnUntil([this] { return !m_log.isEmpty(); }));
    EXPECT_EQ(m_log, QStringList { u"0 Connected"_s });
}

// The resolver hangs on a hosts file that is a pipe without a writer.
TEST_F(WinsockTest, AResolverThatDoesNotAnswerIsGivenUp)
{
    QTemporaryDir folder;
    const QByteArray pipe = folder.filePath(u"hosts"_s).toLocal8Bit();
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    ASSERT_EQ(mount(pipe.constData(), "/etc/hosts", nullptr, MS_BIND, nullptr), 0);
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(logOf(u"slow.test"_s, 80, 100), QStringList { u"0 Error 10060 connection timed out"_s });
    EXPECT_LT(clock.elapsed(), 400);
    start(0, u"slower.test"_s, 80, 5000);
    EXPECT_EQ(element(0).state(), Winsock::sckResolvingHost);
    element(0).Close();
    ASSERT_EQ(umount2("/etc/hosts", MNT_DETACH), 0);
    // Lets the waiting threads go on; whoever has opened the pipe by now reads its end.
    const auto release = [&] {
        const int writer = open(pipe.constData(), O_WRONLY | O_NONBLOCK);
        if (writer >= 0)
            close(writer);
        return writer < 0;
    };
    turnUntil(release, 500);
    EXPECT_EQ(m_log.size(), 1);
}

TEST_F(WinsockTest, CloseIsSilent)
{
    Listener listener;
    const std::pair<QString, int> peers[] = { { u"127.0.0.1"_s, listener.port() },
                                              { u"127.0.0.1"_s, 1 },
                                              { u"10.99.1.1"_s, 80 },
                                              { u"172.16.0.1"_s, 80 },
                                              { u"nowhere.test"_s, 80 },
                                              { u""_s, 80 },
                                              { u"10.99.1.1"_s, 0 } };
    for (const auto &[host, port] : peers) {
        start(0, host, port);
        element(0).Close();
        EXPECT_EQ(element(0).state(), Winsock::sckClosed);
    }
    turnFor(40);
    EXPECT_EQ(m_log, QStringList());
    // A new attempt replaces the one that is under way.
    start(0, u"10.99.1.1"_s, 22);
    EXPECT_EQ(logOf(u"127.0.0.1"_s, listener.port()), QStringList { u"0 Connected"_s });
}

TEST_F(WinsockTest, HandlersMayDoAnything)
{
    Listener listener;
    int left = 4; // connects again from within the event, to peers that answer at once
    m_handler = [&](int) {
        element(0).Close();
        if (--left > 0)
            start(0, u"127.0.0.1"_s, left == 2 ? 1 : listener.port());
    };
    start(0, u"127.0.0.1"_s, listener.port());
    ASSERT_TRUE(turnUntil([&] { return left == 0; }));
    EXPECT_EQ(m_log,
              QStringList({ u"0 Connected"_s, u"0 Connected"_s, u"0 Error 10061 connection refused"_s,
                            u"0 Connected"_s }));

    // The others are told although the first handler runs an event loop.
    m_log.clear();
    m_handler = nullptr;
    for (std::size_t i = 0; i < 4; ++i)
        start(i, u"127.0.0.1"_s, listener.port());
    m_handler = [this](int index) {
        if (index == 0) {
            EXPECT_TRUE(turnUntil([this] { return m_log.size() == 4; }, 1000));
        }
    };
    ASSERT_TRUE(turnUntil([this] { return m_log.size() == 4; }));

    // All have connected when the first handler deletes the other elements and its own.
    m_log.clear();
    m_handler = nullptr;
    for (std::size_t i = 0; i < 8; ++i)
        start(i, u"10.99.1.1"_s, 80);
    QThread::msleep(30);
    m_handler = [this](int) {
        for (auto &e : m_elements)
            e.reset();
    };
    ASSERT_TRUE(turnUntil([this] { return !m_log.isEmpty(); }));
    turnFor(20);
    EXPECT_EQ(m_log.size(), 1);
    m_handler = nullptr;
    m_elements.clear();
}

TEST_F(WinsockTest, RunningOutOfDescriptorsIsAnError)
{
    Listener listener;
    start(0, u"10.99.1.1"_s, 80);
    ASSERT_TRUE(turnUntil([this] { return m_log.size() == 1; }));
    const int lowest = dup(0);
    close(lowest);
    rlimit before;
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit tight { static_cast<rlim_t>(lowest) + 3, before.rlim_max };
    setrlimit(RLIMIT_NOFILE, &tight);
    for (std::size_t i = 1; i <= 5; ++i)
        start(i, u"127.0.0.1"_s, listener.port());
    ASSERT_TRUE(turnUntil([this] { return m_log.size() == 6; }));
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(m_log.filter(u"Error 10024 too many open sockets"_s).size(), 2) << qPrintable(m_log.join(u'|'));
    element(5).Close();
    element(5).Connect();
    ASSERT_TRUE(turnUntil([this] { return m_log.size() == 7; }));
    EXPECT_EQ(m_log.last(), u"5 Connected"_s);
}

TEST_F(WinsockTest, HundredsOfSockets)
{
    constexpr int kTotal = 3000, kSockets = 512;
    int started = 0;
    QElapsedTimer clock;
    const auto next = [&](int i) {
        element(static_cast<std::size_t>(i)).Close();
        if (started < kTotal) {
            const int port = started % 3 == 0 ? 22 : 1000 + started % 7;
            start(static_cast<std::size_t>(i), u"10.99.1.%1"_s.arg(started++ % 250 + 1), port);
        }
    };
    element(kSockets - 1);
    m_handler = next;
    clock.start();
    for (int i = 0; i < kSockets; ++i)
        next(i);
    ASSERT_TRUE(turnUntil([this] { return m_log.size() == kTotal; }));
    EXPECT_LT(clock.elapsed(), 3000);
    RecordProperty("ms", static_cast<int>(clock.elapsed()));
    EXPECT_EQ(m_log.filter(u"refused"_s).size(), kTotal / 3);
    EXPECT_EQ(m_log.filter(u"Connected"_s).size(), kTotal - kTotal / 3);
}

TEST(SocketErrors, TextsAreOnePlainSentencePart)
{
    for (int error = 1; error < 140; ++error) {
        const SocketError e = socketError(error);
        EXPECT_GE(e.number, 10000);
        EXPECT_FALSE(e.text.isEmpty());
        EXPECT_FALSE(e.text.contains(u'\'') || e.text.contains(u'\n') || e.text.contains(u'\r'));
        EXPECT_EQ(e.text, e.text.toLower());
    }
    EXPECT_EQ(socketError(ETIMEDOUT).number, 10060);
    EXPECT_EQ(socketError(ENETUNREACH).text, u"network unreachable"_s);
    EXPECT_EQ(socketError(139).text, u"connection failed (error 139)"_s);
}
