#include "platform/smtp/CurlLoop.h"

#include <optional>

CurlLoop::Watch::Watch(CurlLoop &loop, curl_socket_t socket)
    : read(new QSocketNotifier(socket, QSocketNotifier::Read, &loop)),
      write(new QSocketNotifier(socket, QSocketNotifier::Write, &loop))
{
    listen(CURL_POLL_NONE);
    connect(read, &QSocketNotifier::activated, &loop, [&loop, socket] { loop.act(socket, CURL_CSELECT_IN); });
    connect(write, &QSocketNotifier::activated, &loop, [&loop, socket] { loop.act(socket, CURL_CSELECT_OUT); });
}

CurlLoop::Watch::~Watch()
{
    // One of them may be the one whose signal led here.
    listen(CURL_POLL_NONE);
    read->deleteLater();
    write->deleteLater();
}

void CurlLoop::Watch::listen(int what)
{
    read->setEnabled(what & CURL_POLL_IN);
    write->setEnabled(what & CURL_POLL_OUT);
}

CurlLoop::CurlLoop(std::function<void(CURLcode)> finished)
    : m_multi(curl_multi_init()), m_finished(std::move(finished))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &CurlLoop::onSocket);
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERFUNCTION, &CurlLoop::onTimer);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);
}

CurlLoop::~CurlLoop() { curl_multi_cleanup(m_multi); }

void CurlLoop::add(CURL *easy) { curl_multi_add_handle(m_multi, easy); }

void CurlLoop::remove(CURL *easy) { curl_multi_remove_handle(m_multi, easy); }

int CurlLoop::onSocket(CURL *, curl_socket_t socket, int what, void *self, void *)
{
    auto &loop = *static_cast<CurlLoop *>(self);
    if (what == CURL_POLL_REMOVE) {
        loop.m_watches.erase(socket);
        return 0;
    }
    std::unique_ptr<Watch> &watch = loop.m_watches[socket];
    if (!watch)
        watch = std::make_unique<Watch>(loop, socket);
    watch->listen(what);
    return 0;
}

int CurlLoop::onTimer(CURLM *, long ms, void *self)
{
    QTimer &timer = static_cast<CurlLoop *>(self)->m_timer;
    if (ms < 0)
        timer.stop();
    else
        timer.start(int(ms));
    return 0;
}

void CurlLoop::act(curl_socket_t socket, int flags)
{
    int running = 0;
    curl_multi_socket_action(m_multi, socket, flags, &running);
    std::optional<CURLcode> result;
    int left = 0;
    while (const CURLMsg *message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg == CURLMSG_DONE)
            result = message->data.result;
    }
    if (result)
        m_finished(*result); // may remove the handle and even delete this
}
