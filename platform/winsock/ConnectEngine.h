#pragma once

#include <QHostAddress>
#include <QSocketNotifier>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <netinet/in.h>
#include <optional>
#include <vector>

class ConnectEngine;

/** One attempt at a time to open a TCP connection to the first of several addresses that accepts it. The
    outcome arrives from the event loop, never from within start(). */
class ConnectAttempt
{
public:
    /** done is told 0 for an open connection or the errno of the last address that was tried. */
    explicit ConnectAttempt(std::function<void(int)> done);
    ~ConnectAttempt();
    ConnectAttempt(const ConnectAttempt &) = delete;
    ConnectAttempt &operator=(const ConnectAttempt &) = delete;

    void start(const QList<QHostAddress> &addresses, quint16 port, quint16 localPort);
    /** The attempt fails with ETIMEDOUT after so many milliseconds, counted from now; 0 takes the limit off.
        May be set before start(): then it runs while the addresses are still being looked for. */
    void setLimit(int ms);
    /** Ends with this errno as if the network had said so. */
    void fail(int systemError);
    /** Closes the connection or gives the attempt up; no outcome arrives afterwards. */
    void close();
    /** False as soon as the peer has ended or reset an open connection. */
    bool isOpen() const { return m_state == State::Open; }
    /** Keeps looking at an open connection, so that isOpen() can tell. */
    void watch();

private:
    friend class ConnectEngine;
    enum class State { Idle, Connecting, Ended, Open, Closing };

    /** Tries the addresses that are left; 0: connected, EINPROGRESS: under way, else the last errno. */
    int tryNext();
    int tryAddress(const QHostAddress &address);
    void closeSocket();

    std::function<void(int)> m_done;
    std::shared_ptr<ConnectEngine> m_engine;
    State m_state = State::Idle;
    int m_fd = -1;
    bool m_isWatched = false;
    QList<QHostAddress> m_addresses;
    qsizetype m_next = 0;
    quint16 m_port = 0;
    quint16 m_localPort = 0;
    int m_outcome = 0;
    qint64 m_deadline = 0; // ns, monotonic; 0: none
};

/** Watches the sockets of all attempts through one epoll instance: hundreds of notifiers would make every
    turn of the event loop slow. Lives as long as there is an attempt object. */
class ConnectEngine : public QObject, public std::enable_shared_from_this<ConnectEngine>
{
    Q_OBJECT
public:
    static std::shared_ptr<ConnectEngine> shared();
    ConnectEngine();
    ~ConnectEngine() override;

    /** Reports the attempt once, when its socket becomes one of these epoll events. Returns 0 or an errno. */
    int watch(ConnectAttempt &attempt, quint32 events);
    void unwatch(ConnectAttempt &attempt);
    void endSoon(ConnectAttempt &attempt, int outcome);
    void setDeadline(ConnectAttempt &attempt, int ms);
    void forget(ConnectAttempt &attempt);

private:
    void readEvents();
    void socketReady(ConnectAttempt &attempt);
    void armLimit(qint64 deadline);
    void checkLimits();
    void end(ConnectAttempt &attempt, int outcome);
    void deliver();

    int m_epoll = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::vector<ConnectAttempt *> m_limited; // attempts with a deadline, in no order
    std::deque<ConnectAttempt *> m_ended;
    QTimer m_soon;        // outcomes that no socket announces
    QTimer m_limit;       // earliest deadline, or earlier
    qint64 m_limitAt = 0; // ns, monotonic; 0: not armed
};
