#pragma once

#include <QByteArray>
#include <QList>
#include <atomic>
#include <functional>
#include <mutex>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

/** A TCP server on loopback that does what a test says with every connection, one after the other. */
class RawServer
{
public:
    using Peer = std::function<void(int socket, const QByteArray &request)>;

    /** `peer` gets each connection with the request that came on it (headers and announced body). */
    explicit RawServer(Peer peer)
        : m_peer(std::move(peer))
        , m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ::bind(m_listener, reinterpret_cast<sockaddr *>(&address), sizeof address);
        ::listen(m_listener, 8);
        socklen_t length = sizeof address;
        ::getsockname(m_listener, reinterpret_cast<sockaddr *>(&address), &length);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { serve(); });
    }
    ~RawServer()
    {
        m_stop = true;
        m_thread.join();
        ::close(m_listener);
    }

    int port() const { return m_port; }
    bool isStopping() const { return m_stop; }
    QByteArray lastRequest()
    {
        const std::lock_guard lock(m_mutex);
        return m_lastRequest;
    }
    static void answer(int socket, const QByteArray &bytes)
    {
        for (qsizetype at = 0; at < bytes.size();) {
            const ssize_t count = ::send(socket, bytes.data() + at, size_t(bytes.size() - at), MSG_NOSIGNAL);
            if (count <= 0)
                return;
            at += count;
        }
    }

private:
    void serve()
    {
        while (!m_stop) {
            pollfd entry { m_listener, POLLIN, 0 };
            if (::poll(&entry, 1, 20) <= 0)
                continue;
            const int socket = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
            const QByteArray request = receive(socket);
            {
                const std::lock_guard lock(m_mutex);
                m_lastRequest = request;
            }
            m_peer(socket, request);
            ::close(socket);
        }
    }
    QByteArray receive(int socket) const
    {
        QByteArray request;
        char bytes[4096];
        while (!m_stop) {
            const qsizetype headers = request.indexOf("\r\n\r\n");
            const qsizetype length = request.toLower().indexOf("content-length:");
            const qsizetype announced
                = length < 0 ? 0 : request.mid(length + 15, 12).split('\r')[0].trimmed().toLongLong();
            if (headers >= 0 && request.size() >= headers + 4 + announced)
                return request;
            pollfd entry { socket, POLLIN, 0 };
            if (::poll(&entry, 1, 20) <= 0)
                continue;
            const ssize_t count = ::recv(socket, bytes, sizeof bytes, 0);
            if (count <= 0)
                return request;
            request.append(bytes, count);
        }
        return request;
    }

    Peer m_peer;
    int m_listener;
    int m_port = 0;
    std::atomic<bool> m_stop = false;
    std::mutex m_mutex;
    QByteArray m_lastRequest;
    std::thread m_thread;
};
