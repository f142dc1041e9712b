#include "platform/winsock/ConnectEngine.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <ctime>
#include <net/if.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr qint64 kNsPerMs = 1'000'000;

qint64 monotonicNs()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64 { now.tv_sec } * 1'000'000'000 + now.tv_nsec;
}

union SocketAddress {
    sockaddr any;
    sockaddr_in v4;
    sockaddr_in6 v6;
    socklen_t size() const { return any.sa_family == AF_INET ? sizeof v4 : sizeof v6; }
};

quint32 scopeNumber(const QString &scope)
{
    bool isNumber = false;
    const quint32 number = scope.toUInt(&isNumber);
    return isNumber ? number : if_nametoindex(scope.toUtf8().constData());
}

SocketAddress socketAddress(const QHostAddress &address, quint16 port)
{
    SocketAddress result {};
    bool isV4 = false;
    const quint32 v4 = address.toIPv4Address(&isV4); // mapped addresses too
    if (isV4) {
        result.v4.sin_family = AF_INET;
        result.v4.sin_port = htons(port);
        result.v4.sin_addr.s_addr = htonl(v4);
        return result;
    }
    const Q_IPV6ADDR v6 = address.toIPv6Address();
    result.v6.sin6_family = AF_INET6;
    result.v6.sin6_port = htons(port);
    std::memcpy(&result.v6.sin6_addr, &v6, sizeof result.v6.sin6_addr);
    if (!address.scopeId().isEmpty())
        result.v6.sin6_scope_id = scopeNumber(address.scopeId());
    return result;
}

int bindLocal(int fd, sa_family_t family, quint16 port)
{
    const int on = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    SocketAddress local {};
    local.any.sa_family = family;
    (family == AF_INET ? local.v4.sin_port : local.v6.sin6_port) = htons(port);
    return bind(fd, &local.any, local.size()) == 0 ? 0 : errno;
}

/** A peer that accepts and resets at once has connected: a reset can only follow a completed handshake, a
    reset that answers the first packet is a refusal (ECONNREFUSED). */
int connectOutcome(int error)
{
    return error == ECONNRESET || error == EPIPE ? 0 : error;
}

} // namespace

ConnectAttempt::ConnectAttempt(std::function<void(int)> done)
    : m_done(std::move(done)),
      m_engine(ConnectEngine::shared())
{ }

ConnectAttempt::~ConnectAttempt()
{
    close();
}

void ConnectAttempt::start(const QList<QHostAddress> &addresses, quint16 port, quint16 localPort)
{
    m_addresses = addresses;
    m_next = 0;
    m_port = port;
    m_localPort = localPort;
    m_state = State::Connecting;
    const int error = tryNext();
    if (error != EINPROGRESS)
        m_engine->endSoon(*this, error);
}

void ConnectAttempt::setLimit(int ms)
{
    m_engine->setDeadline(*this, ms);
}

void ConnectAttempt::fail(int systemError)
{
    m_engine->endSoon(*this, systemError);
}

void ConnectAttempt::close()
{
    if (m_state != State::Idle || m_deadline != 0)
        m_engine->forget(*this);
    m_state = State::Idle;
    closeSocket();
}

// A plain close, although it leaves a TIME_WAIT entry for a minute: closing with a reset (SO_LINGER 0) would
// make every check an error in the log of the checked server. The entries are harmless, because ephemeral
// ports run out per destination address and port only, and one destination is checked once in a cycle.
void ConnectAttempt::closeSocket()
{
    if (m_isWatched)
        m_engine->unwatch(*this);
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

void ConnectAttempt::watch()
{
    if (m_state == State::Open)
        m_engine->watch(*this, EPOLLRDHUP);
}

int ConnectAttempt::tryNext()
{
    int error = EADDRNOTAVAIL;
    while (m_next < m_addresses.size()) {
        error = tryAddress(m_addresses.at(m_next++));
        if (error == 0 || error == EINPROGRESS)
            break;
        closeSocket();
    }
    return error;
}

int ConnectAttempt::tryAddress(const QHostAddress &address)
{
    const SocketAddress remote = socketAddress(address, m_port);
    m_fd = socket(remote.any.sa_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP);
    if (m_fd < 0)
        return errno;
    if (m_localPort != 0) {
        if (const int error = bindLocal(m_fd, remote.any.sa_family, m_localPort))
            return error;
    }
    int error = ::connect(m_fd, &remote.any, remote.size()) == 0 ? 0 : errno;
    // Within this machine the handshake is complete by now, but only the second call says so; that is cheaper
    // than waiting for the event.
    if (error == EINPROGRESS)
        error = ::connect(m_fd, &remote.any, remote.size()) == 0 ? 0 : errno;
    if (error != EALREADY)
        return connectOutcome(error);
    const int watchError = m_engine->watch(*this, EPOLLOUT);
    return watchError ? watchError : EINPROGRESS;
}

std::shared_ptr<ConnectEngine> ConnectEngine::shared()
{
    static std::weak_ptr<ConnectEngine> current;
    auto engine = current.lock();
    if (!engine)
        current = engine = std::make_shared<ConnectEngine>();
    return engine;
}

ConnectEngine::ConnectEngine() : m_epoll(epoll_create1(EPOLL_CLOEXEC))
{
    for (QTimer *timer : { &m_soon, &m_limit }) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&m_soon, &QTimer::timeout, this, &ConnectEngine::deliver);
    connect(&m_limit, &QTimer::timeout, this, &ConnectEngine::checkLimits);
    if (m_epoll < 0)
        return; // every attempt will say so
    m_notifier = std::make_unique<QSocketNotifier>(m_epoll, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        readEvents();
        deliver();
    });
}

ConnectEngine::~ConnectEngine()
{
    m_notifier.reset();
    if (m_epoll >= 0)
        ::close(m_epoll);
}

int ConnectEngine::watch(ConnectAttempt &attempt, quint32 events)
{
    epoll_event event {};
    // One report: until it is worked off, a ready socket must not keep waking the event loop.
    event.events = events | EPOLLONESHOT;
    event.data.ptr = &attempt;
    if (m_epoll < 0)
        return EMFILE;
    const int operation = attempt.m_isWatched ? EPOLL_CTL_MOD : EPOLL_CTL_ADD;
    if (epoll_ctl(m_epoll, operation, attempt.m_fd, &event) != 0)
        return errno;
    attempt.m_isWatched = true;
    return 0;
}

/** Closing the socket is not enough: a child process that is just being started still holds it, and its
    events would go on coming. */
void ConnectEngine::unwatch(ConnectAttempt &attempt)
{
    epoll_ctl(m_epoll, EPOLL_CTL_DEL, attempt.m_fd, nullptr);
    attempt.m_isWatched = false;
}

void ConnectEngine::endSoon(ConnectAttempt &attempt, int outcome)
{
    end(attempt, outcome);
    if (!m_soon.isActive())
        m_soon.start(0);
}

void ConnectEngine::setDeadline(ConnectAttempt &attempt, int ms)
{
    if (attempt.m_deadline != 0)
        std::erase(m_limited, &attempt);
    attempt.m_deadline = ms > 0 ? monotonicNs() + ms * kNsPerMs : 0;
    if (attempt.m_deadline == 0)
        return;
    m_limited.push_back(&attempt);
    armLimit(attempt.m_deadline);
}

void ConnectEngine::forget(ConnectAttempt &attempt)
{
    setDeadline(attempt, 0);
    if (attempt.m_state == ConnectAttempt::State::Ended)
        std::erase(m_ended, &attempt);
}

/** Only notes what has become of the sockets, so that no handler can close one whose event is still
    unread. */
void ConnectEngine::readEvents()
{
    constexpr int kBatch = 64;
    epoll_event events[kBatch];
    int count = 0;
    do {
        count = epoll_wait(m_epoll, events, kBatch, 0);
        for (int i = 0; i < count; ++i)
            socketReady(*static_cast<ConnectAttempt *>(events[i].data.ptr));
    } while (count == kBatch);
}

void ConnectEngine::socketReady(ConnectAttempt &attempt)
{
    if (attempt.m_state == ConnectAttempt::State::Open)
        attempt.m_state = ConnectAttempt::State::Closing;
    if (attempt.m_state != ConnectAttempt::State::Connecting)
        return;
    int error = 0;
    socklen_t size = sizeof error;
    if (getsockopt(attempt.m_fd, SOL_SOCKET, SO_ERROR, &error, &size) != 0)
        error = errno;
    error = connectOutcome(error);
    if (error != 0) {
        attempt.closeSocket();
        const int next = attempt.m_next < attempt.m_addresses.size() ? attempt.tryNext() : error;
        if (next == EINPROGRESS)
            return;
        error = next;
    }
    end(attempt, error);
}

/** The timer is never moved back when an attempt ends: firing once for nothing is cheaper than arming it for
    each. */
void ConnectEngine::armLimit(qint64 deadline)
{
    if (m_limitAt != 0 && m_limitAt <= deadline)
        return;
    m_limitAt = deadline;
    const qint64 ms = (deadline - monotonicNs() + kNsPerMs - 1) / kNsPerMs;
    m_limit.start(static_cast<int>(std::clamp<qint64>(ms, 0, INT_MAX)));
}

void ConnectEngine::checkLimits()
{
    m_limitAt = 0;
    readEvents(); // connections that opened in time may still be unread if the thread was busy
    const qint64 now = monotonicNs();
    qint64 earliest = 0;
    for (ConnectAttempt *attempt : std::vector(m_limited)) {
        if (attempt->m_deadline <= now) {
            attempt->closeSocket();
            end(*attempt, ETIMEDOUT);
        } else if (earliest == 0 || attempt->m_deadline < earliest) {
            earliest = attempt->m_deadline;
        }
    }
    if (earliest != 0)
        armLimit(earliest);
    deliver();
}

void ConnectEngine::end(ConnectAttempt &attempt, int outcome)
{
    setDeadline(attempt, 0);
    attempt.m_state = ConnectAttempt::State::Ended;
    attempt.m_outcome = outcome;
    m_ended.push_back(&attempt);
}

/** The handlers may do anything: start and close attempts, delete elements, run an event loop of their own.
    So each outcome is taken off the list before it is told, and what ends meanwhile waits for the next
    turn. */
void ConnectEngine::deliver()
{
    const auto self = shared_from_this();
    for (std::size_t count = m_ended.size(); count > 0 && !m_ended.empty(); --count) {
        ConnectAttempt &attempt = *m_ended.front();
        m_ended.pop_front();
        const int outcome = attempt.m_outcome;
        attempt.m_state = outcome == 0 ? ConnectAttempt::State::Open : ConnectAttempt::State::Idle;
        if (outcome != 0)
            attempt.closeSocket();
        if (!m_ended.empty() && !m_soon.isActive())
            m_soon.start(0); // for the others, should the handler run an event loop
        const auto done = attempt.m_done;
        done(outcome);
    }
    if (m_ended.empty())
        m_soon.stop();
}
