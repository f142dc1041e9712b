#pragma once

#include "platform/ping/EchoSocket.h"

#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

class EchoEngine;
class IcmpHelper;

/** How a request ended. */
struct EchoOutcome {
    enum Kind {
        Replied,
        TimedOut,
        Failed,  // this request; another one may fare better
        Hopeless // no request of this ping can succeed
    } kind
        = Failed;
    double roundTripMs = 0;
    QString text; // Failed and Hopeless: one plain sentence part
};

/** One echo request at a time. The outcome arrives from the event loop, never from within start(). */
class EchoRequest
{
public:
    explicit EchoRequest(std::function<void(const EchoOutcome &)> done);
    ~EchoRequest();
    EchoRequest(const EchoRequest &) = delete;
    EchoRequest &operator=(const EchoRequest &) = delete;

    /** Sends an echo with so many bytes of payload as soon as there is room for it; its time-out in ms counts
        from the sending. */
    void start(const EchoTarget &target, int payload, int timeoutMs);
    /** Ends with this outcome as if the network had said so. */
    void fail(const EchoOutcome &outcome);
    /** No outcome arrives afterwards. */
    void cancel();

private:
    friend class EchoEngine;
    enum class State { Idle, Queued, InFlight, Ended };

    std::function<void(const EchoOutcome &)> m_done;
    std::shared_ptr<EchoEngine> m_engine;
    State m_state = State::Idle;
    EchoTarget m_target {};
    int m_payload = 0;
    int m_timeoutMs = 0;
    qint64 m_waitingSince = 0; // ns, monotonic: since the system has had no room for the packet
    EchoOutcome m_outcome;
};

/** Sends the requests of all elements over one socket per family and matches what comes back. Lives as long
    as there is a request object. */
class EchoEngine : public QObject, private EchoSink, public std::enable_shared_from_this<EchoEngine>
{
    Q_OBJECT
public:
    static std::shared_ptr<EchoEngine> shared();
    EchoEngine();
    ~EchoEngine() override;

    void enqueue(EchoRequest &request);
    void endSoon(EchoRequest &request, EchoOutcome outcome);
    void forget(EchoRequest &request);

private:
    // An unpaced burst of more loses live replies in switches, small routers and receive buffers.
    static constexpr int kMostInFlight = 128;

    struct Slot {
        EchoRequest *request = nullptr;
        quint16 sequence = 0;
        quint64 cookie = 0;
        qint64 sentAt = 0;     // ns, monotonic
        qint64 sentAtReal = 0; // ns, clock of the kernel's time stamps
        qint64 deadline = 0;   // ns, monotonic
    };
    enum class Access { Untried, Asking, Ready, Refused };
    struct Line {
        explicit Line(icmp::Family family) : socket(family) { }
        EchoSocket socket;
        Access access = Access::Untried;
        QString refusal;
        qint64 retryAt = 0; // ns, monotonic: when a refusal is put to the test again
        std::unique_ptr<QSocketNotifier> notifier;
    };

    Line &lineOf(icmp::Family family) { return m_lines[family == icmp::Family::V4 ? 0 : 1]; }
    void prepare(icmp::Family family);
    void openLine(icmp::Family family);
    void startLine(Line &line);
    void refuseLine(Line &line, const QString &text);
    void askHelper();
    void takeFromHelper(const std::vector<int> &sockets);

    void pump();
    bool hasRoomFor(const EchoRequest &request, const Line &line) const;
    bool send(EchoRequest &request, Line &line);
    std::span<unsigned char> buildPacket(const EchoRequest &request, const Line &line, const Slot &slot);
    void armTimeout(qint64 deadline);
    void checkTimeouts();
    void drain();

    Slot *find(const icmp::Received &received, std::span<const unsigned char> address);
    void release(Slot &slot);
    void end(EchoRequest &request, EchoOutcome outcome);
    void deliver();

    void replyArrived(const icmp::Received &reply, std::span<const unsigned char> source,
                      qint64 receivedAt) override;
    void errorArrived(const icmp::Received &error, const char *text) override;

    std::array<Line, 2> m_lines { Line(icmp::Family::V4), Line(icmp::Family::V6) };
    std::array<Slot, kMostInFlight> m_slots;
    std::deque<quint16> m_freeSequences; // one per free slot; the slot is the sequence modulo their number
    qint64 m_bytesInFlight = 0;
    std::deque<EchoRequest *> m_waiting;
    std::deque<EchoRequest *> m_ended;
    std::vector<unsigned char> m_packet;
    std::unique_ptr<IcmpHelper> m_helper;
    QTimer m_timeout;       // earliest deadline, or earlier
    qint64 m_timeoutAt = 0; // ns, monotonic; 0: not armed
    QTimer m_soon;          // outcomes that no packet announces
    QTimer m_retry;         // the system had no room for a packet
};
