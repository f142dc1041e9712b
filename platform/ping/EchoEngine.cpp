#include "platform/ping/EchoEngine.h"

#include "platform/ping/EchoAccess.h"
#include "platform/ping/IcmpHelper.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kNsPerMs = 1'000'000;
constexpr qint64 kRefusalLasts = 5'000 * kNsPerMs;
constexpr int kFullBufferPauseMs = 2;

qint64 clockNs(clockid_t clock)
{
    timespec now;
    clock_gettime(clock, &now);
    return qint64 { now.tv_sec } * 1'000'000'000 + now.tv_nsec;
}

qint64 monotonicNs()
{
    return clockNs(CLOCK_MONOTONIC);
}

// Neither "request" nor "pinging" may occur in these: the ping check counts time-outs by these words.
QString noAccessText()
{
    return u"no permission to send ICMP echoes: as root, run setcap cap_net_raw+ep kavro-icmp in the program "
           "folder, or sysctl -w \"net.ipv4.ping_group_range=0 2147483647\""_s;
}

QString sendErrorText(int error)
{
    switch (error) {
    case EHOSTUNREACH:
        return u"no route to host"_s;
    case ENETUNREACH:
        return u"network unreachable"_s;
    case ENETDOWN:
        return u"network is down"_s;
    case EACCES:
    case EPERM:
        return u"communication prohibited by this machine"_s;
    case EMSGSIZE:
        return u"packet size too large"_s;
    case EINVAL:
        return u"address not usable from this machine"_s;
    case EADDRNOTAVAIL:
        return u"no source address for this destination"_s;
    case ENOBUFS:
    case EAGAIN:
    case ENOMEM:
        return u"no buffer space for the packet"_s;
    default:
        return u"sending failed (error %1)"_s.arg(error);
    }
}

QString helperProgram()
{
    const QString &path = echoAccess().helperPath;
    return path.isEmpty() ? QCoreApplication::applicationDirPath() + u"/kavro-icmp"_s : path;
}

/** What a reply of this size takes of the receive buffer; the kernel rounds packets up and keeps books on
    them. */
qint64 bufferCost(int payload)
{
    return qint64 { payload } * 2 + 1024;
}

bool isCookie(std::span<const unsigned char> payload, quint64 cookie)
{
    const std::size_t size = std::min(payload.size(), sizeof cookie);
    return size == 0 || std::memcmp(payload.data(), &cookie, size) == 0;
}

int socketFamily(int fd)
{
    int domain = 0;
    socklen_t size = sizeof domain;
    return getsockopt(fd, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0 ? domain : AF_UNSPEC;
}

} // namespace

EchoRequest::EchoRequest(std::function<void(const EchoOutcome &)> done)
    : m_done(std::move(done)),
      m_engine(EchoEngine::shared())
{ }

EchoRequest::~EchoRequest()
{
    cancel();
}

void EchoRequest::start(const EchoTarget &target, int payload, int timeoutMs)
{
    cancel();
    m_target = target;
    m_payload = payload;
    m_timeoutMs = timeoutMs;
    m_waitingSince = 0;
    m_engine->enqueue(*this);
}

void EchoRequest::fail(const EchoOutcome &outcome)
{
    cancel();
    m_engine->endSoon(*this, outcome);
}

void EchoRequest::cancel()
{
    if (m_state != State::Idle)
        m_engine->forget(*this);
}

std::shared_ptr<EchoEngine> EchoEngine::shared()
{
    static std::weak_ptr<EchoEngine> current;
    auto engine = current.lock();
    if (!engine)
        current = engine = std::make_shared<EchoEngine>();
    return engine;
}

EchoEngine::EchoEngine()
{
    for (int i = 0; i < kMostInFlight; ++i)
        m_freeSequences.push_back(static_cast<quint16>(i));
    for (QTimer *timer : { &m_timeout, &m_soon, &m_retry }) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&m_timeout, &QTimer::timeout, this, &EchoEngine::checkTimeouts);
    connect(&m_soon, &QTimer::timeout, this, &EchoEngine::deliver);
    connect(&m_retry, &QTimer::timeout, this, &EchoEngine::pump);
}

EchoEngine::~EchoEngine() = default;

void EchoEngine::enqueue(EchoRequest &request)
{
    request.m_state = EchoRequest::State::Queued;
    m_waiting.push_back(&request);
    // The earlier ones still wait, so there is no room for this one either.
    if (m_waiting.size() == 1)
        pump();
}

void EchoEngine::endSoon(EchoRequest &request, EchoOutcome outcome)
{
    end(request, std::move(outcome));
    if (!m_soon.isActive())
        m_soon.start(0);
}

void EchoEngine::forget(EchoRequest &request)
{
    switch (std::exchange(request.m_state, EchoRequest::State::Idle)) {
    case EchoRequest::State::Queued:
        std::erase(m_waiting, &request);
        break;
    case EchoRequest::State::InFlight:
        release(*std::ranges::find(m_slots, &request, &Slot::request));
        pump();
        break;
    case EchoRequest::State::Ended:
        std::erase(m_ended, &request);
        break;
    case EchoRequest::State::Idle:
        break;
    }
}

// ---- sockets

void EchoEngine::prepare(icmp::Family family)
{
    Line &line = lineOf(family);
    if (line.access == Access::Refused && monotonicNs() >= line.retryAt)
        line.access = Access::Untried;
    if (line.access == Access::Untried)
        openLine(family);
}

void EchoEngine::openLine(icmp::Family family)
{
    Line &line = lineOf(family);
    const int error = line.socket.open();
    if (error == 0)
        return startLine(line);
    if (error != EACCES && error != EPERM) {
        const bool isMissing = error == EAFNOSUPPORT || error == EPROTONOSUPPORT;
        const QString name = family == icmp::Family::V4 ? u"IPv4"_s : u"IPv6"_s;
        return refuseLine(line,
                          isMissing ? u"%1 is not available on this machine"_s.arg(name)
                                    : u"no ICMP socket to be had (error %1)"_s.arg(error));
    }
    line.access = Access::Asking;
    const Line &other = lineOf(family == icmp::Family::V4 ? icmp::Family::V6 : icmp::Family::V4);
    if (other.access != Access::Asking)
        askHelper();
}

void EchoEngine::startLine(Line &line)
{
    line.access = Access::Ready;
    line.notifier = std::make_unique<QSocketNotifier>(line.socket.descriptor(), QSocketNotifier::Read);
    connect(line.notifier.get(), &QSocketNotifier::activated, this, &EchoEngine::drain);
}

void EchoEngine::refuseLine(Line &line, const QString &text)
{
    line.access = Access::Refused;
    line.refusal = text;
    line.retryAt = monotonicNs() + kRefusalLasts;
}

void EchoEngine::askHelper()
{
    m_helper = std::make_unique<IcmpHelper>(
        helperProgram(), [this](const std::vector<int> &sockets) { takeFromHelper(sockets); });
}

void EchoEngine::takeFromHelper(const std::vector<int> &sockets)
{
    for (const int fd : sockets) {
        const int domain = socketFamily(fd);
        Line &line = lineOf(domain == AF_INET ? icmp::Family::V4 : icmp::Family::V6);
        if ((domain != AF_INET && domain != AF_INET6) || line.access == Access::Ready) {
            ::close(fd);
            continue;
        }
        line.socket.adopt(fd);
        startLine(line);
    }
    for (Line &line : m_lines) {
        if (line.access == Access::Asking)
            refuseLine(line, noAccessText());
    }
    pump();
}

// ---- sending

void EchoEngine::pump()
{
    while (!m_waiting.empty()) {
        EchoRequest &next = *m_waiting.front();
        prepare(next.m_target.family());
        Line &line = lineOf(next.m_target.family());
        if (line.access == Access::Asking)
            return;
        if (line.access == Access::Refused) {
            m_waiting.pop_front();
            endSoon(next, { EchoOutcome::Hopeless, 0, line.refusal });
            continue;
        }
        if (!hasRoomFor(next, line) || !send(next, line))
            return;
    }
}

bool EchoEngine::hasRoomFor(const EchoRequest &request, const Line &line) const
{
    if (m_freeSequences.size() == kMostInFlight)
        return true; // even the largest packet travels alone
    return !m_freeSequences.empty()
        && m_bytesInFlight + bufferCost(request.m_payload) <= line.socket.receiveBuffer();
}

/** False if the system has no room for the packet now; the request then waits in front. */
bool EchoEngine::send(EchoRequest &request, Line &line)
{
    const quint16 sequence = m_freeSequences.front();
    Slot &slot = m_slots[sequence % kMostInFlight];
    slot.sequence = sequence;
    slot.cookie = QRandomGenerator::global()->generate64();
    const auto packet = buildPacket(request, line, slot);
    slot.sentAtReal = clockNs(CLOCK_REALTIME);
    slot.sentAt = monotonicNs();
    const int error = line.socket.send(request.m_target, packet);
    if (error == EAGAIN || error == ENOBUFS) {
        if (request.m_waitingSince == 0)
            request.m_waitingSince = slot.sentAt;
        if (slot.sentAt - request.m_waitingSince < request.m_timeoutMs * kNsPerMs) {
            m_retry.start(kFullBufferPauseMs);
            return false;
        }
    }
    m_waiting.pop_front();
    if (error != 0) {
        endSoon(request, { EchoOutcome::Failed, 0, sendErrorText(error) });
        return true;
    }
    m_freeSequences.pop_front();
    slot.request = &request;
    slot.deadline = slot.sentAt + request.m_timeoutMs * kNsPerMs;
    request.m_state = EchoRequest::State::InFlight;
    m_bytesInFlight += bufferCost(request.m_payload);
    armTimeout(slot.deadline);
    return true;
}

std::span<unsigned char> EchoEngine::buildPacket(const EchoRequest &request, const Line &line,
                                                 const Slot &slot)
{
    const std::size_t payload = static_cast<std::size_t>(request.m_payload);
    const std::size_t size = icmp::kEchoHeaderSize + payload;
    if (m_packet.size() < size) {
        m_packet.resize(size);
        for (std::size_t i = icmp::kEchoHeaderSize; i < size; ++i)
            m_packet[i] = static_cast<unsigned char>('a' + i % 23);
    }
    const std::span packet(m_packet.data(), size);
    std::memcpy(packet.data() + icmp::kEchoHeaderSize, &slot.cookie, std::min(payload, sizeof slot.cookie));
    icmp::writeEchoRequest(request.m_target.family(), line.socket.ident(), slot.sequence, packet);
    return packet;
}

/** The timer is never moved back when a reply comes: firing once for nothing is cheaper than arming it for
    each. */
void EchoEngine::armTimeout(qint64 deadline)
{
    if (m_timeoutAt != 0 && m_timeoutAt <= deadline)
        return;
    m_timeoutAt = deadline;
    const qint64 ms = (deadline - monotonicNs() + kNsPerMs - 1) / kNsPerMs;
    m_timeout.start(static_cast<int>(std::clamp<qint64>(ms, 0, INT_MAX)));
}

void EchoEngine::checkTimeouts()
{
    const auto self = shared_from_this();
    m_timeoutAt = 0;
    // Replies that came in time may still lie in the sockets if the thread was busy.
    for (Line &line : m_lines) {
        if (line.access == Access::Ready)
            line.socket.drain(*this);
    }
    const qint64 now = monotonicNs();
    qint64 earliest = 0;
    for (Slot &slot : m_slots) {
        if (!slot.request)
            continue;
        if (slot.deadline <= now) {
            EchoRequest &request = *slot.request;
            release(slot);
            end(request, { EchoOutcome::TimedOut, 0, QString() });
        } else if (earliest == 0 || slot.deadline < earliest) {
            earliest = slot.deadline;
        }
    }
    if (earliest != 0)
        armTimeout(earliest);
    pump();
    deliver();
}

// ---- receiving

void EchoEngine::drain()
{
    const auto self = shared_from_this();
    for (Line &line : m_lines) {
        if (line.access == Access::Ready)
            line.socket.drain(*this);
    }
    pump();
    deliver();
}

EchoEngine::Slot *EchoEngine::find(const icmp::Received &received, std::span<const unsigned char> address)
{
    Slot &slot = m_slots[received.sequence % kMostInFlight];
    if (!slot.request || slot.sequence != received.sequence)
        return nullptr;
    const EchoTarget &target = slot.request->m_target;
    const bool isOurs = received.ident == lineOf(target.family()).socket.ident();
    return isOurs && std::ranges::equal(target.bytes(), address) ? &slot : nullptr;
}

void EchoEngine::release(Slot &slot)
{
    m_bytesInFlight -= bufferCost(slot.request->m_payload);
    slot.request = nullptr;
    m_freeSequences.push_back(static_cast<quint16>(slot.sequence + kMostInFlight));
}

void EchoEngine::replyArrived(const icmp::Received &reply, std::span<const unsigned char> source,
                              qint64 receivedAt)
{
    Slot *slot = find(reply, source);
    const std::size_t expected = slot ? static_cast<std::size_t>(slot->request->m_payload) : 0;
    if (!slot || reply.payload.size() < std::min(expected, sizeof slot->cookie)
        || !isCookie(reply.payload.first(std::min(expected, reply.payload.size())), slot->cookie))
        return;
    // The kernel's stamp is the better one, unless somebody has set the clock meanwhile.
    const qint64 longest = monotonicNs() - slot->sentAt;
    const qint64 stamped = receivedAt - slot->sentAtReal;
    const qint64 elapsed = receivedAt != 0 && stamped >= 0 && stamped <= longest ? stamped : longest;
    EchoRequest &request = *slot->request;
    if (elapsed > request.m_timeoutMs * kNsPerMs)
        return; // too late; the time-out is about to be noticed
    release(*slot);
    end(request, { EchoOutcome::Replied, static_cast<double>(elapsed) / kNsPerMs, QString() });
}

void EchoEngine::errorArrived(const icmp::Received &error, const char *text)
{
    Slot *slot = find(error, error.destination);
    if (!slot)
        return;
    EchoRequest &request = *slot->request;
    release(*slot);
    end(request, { EchoOutcome::Failed, 0, QString::fromLatin1(text) });
}

void EchoEngine::end(EchoRequest &request, EchoOutcome outcome)
{
    request.m_state = EchoRequest::State::Ended;
    request.m_outcome = std::move(outcome);
    m_ended.push_back(&request);
}

/** The handlers may do anything: start and stop requests, delete elements, run an event loop of their own. So
    each outcome is taken off the list before it is told, and what ends meanwhile waits for the next turn. */
void EchoEngine::deliver()
{
    const auto self = shared_from_this();
    for (std::size_t count = m_ended.size(); count > 0 && !m_ended.empty(); --count) {
        EchoRequest &request = *m_ended.front();
        m_ended.pop_front();
        request.m_state = EchoRequest::State::Idle;
        if (!m_ended.empty() && !m_soon.isActive())
            m_soon.start(0); // for the others, should the handler run an event loop
        const auto done = request.m_done;
        const EchoOutcome outcome = request.m_outcome;
        done(outcome);
    }
    if (m_ended.empty())
        m_soon.stop();
}
