#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <curl/curl.h>

#include <functional>
#include <map>
#include <memory>

/** libcurl's multi interface on the Qt event loop: no thread, no waiting. */
class CurlLoop : public QObject
{
public:
    /** finished is called from the event loop, never from inside libcurl. */
    explicit CurlLoop(std::function<void(CURLcode)> finished);
    ~CurlLoop() override;

    void add(CURL *easy);
    /** Ends whatever the handle was doing; finished is not called for it. */
    void remove(CURL *easy);

private:
    /** The notifiers of one of libcurl's sockets. */
    struct Watch {
        Watch(CurlLoop &loop, curl_socket_t socket);
        ~Watch();
        void listen(int what);
        QSocketNotifier *read;
        QSocketNotifier *write;
    };

    static int onSocket(CURL *easy, curl_socket_t socket, int what, void *self, void *perSocket);
    static int onTimer(CURLM *multi, long ms, void *self);
    void act(curl_socket_t socket, int flags);

    CURLM *m_multi;
    QTimer m_timer;
    std::map<curl_socket_t, std::unique_ptr<Watch>> m_watches;
    std::function<void(CURLcode)> m_finished;
};
