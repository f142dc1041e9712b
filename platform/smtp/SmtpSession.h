#pragma once

#include "platform/smtp/CurlLoop.h"
#include "platform/smtp/MailTransaction.h"
#include "platform/smtp/SmtpServer.h"

#include <QList>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>

/** One connection that delivers one mail. libcurl brings it to the point where mail can be handed over; destroying
    the session closes it. */
class SmtpSession : public QObject
{
public:
    struct Envelope {
        QString sender;
        QStringList recipients;
        QByteArray message; // dot-stuffed, with its end mark
    };
    /** finished gets an empty text when the server has taken the mail. It is called once, and must not destroy the
        session on the spot. */
    SmtpSession(const SmtpServer &server, const Envelope &envelope, int timeOutMs,
                std::function<void(const QString &error)> finished);
    ~SmtpSession() override;
    void start();

private:
    void setOptions();
    void setSecurity();
    static curl_socket_t openSocket(void *self, curlsocktype purpose, curl_sockaddr *address);
    static int closeSocket(void *self, curl_socket_t socket);
    static int watchOutgoing(CURL *easy, curl_infotype type, char *data, size_t size, void *self);
    static size_t readReply(char *data, size_t size, size_t count, void *self);
    static size_t discard(char *data, size_t size, size_t count, void *self);

    void connected(CURLcode result);
    void beginTransaction();
    void readMore();
    void writeMore();
    void conclude(MailTransaction::Outcome outcome);
    void finish(const QString &error);
    QString reasonOf(CURLcode result) const;

    SmtpServer m_server;
    Envelope m_envelope;
    int m_timeOut;
    std::function<void(const QString &)> m_finished;
    QList<curl_socket_t> m_sockets; // all that libcurl has open
    ReplyReader m_greetings;        // the answers that libcurl gets
    bool m_takesUtf8 = false;       // the server announced SMTPUTF8
    bool m_inMulti = false;
    CURL *m_easy;
    CurlLoop m_loop;
    QTimer m_limit;
    std::unique_ptr<MailTransaction> m_transaction;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
    QByteArray m_output;
};
