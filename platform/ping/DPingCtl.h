#pragma once

#include <QObject>
#include <QString>
#include <memory>

class DPingCtlPrivate;

/** ICMP echo control, IPv4 and IPv6 (RFC 792, RFC 4443). All elements share one socket per family.
    Every ping() ends with exactly one reply event, or with one message event per failed request. */
class DPingCtl : public QObject
{
    Q_OBJECT
public:
    explicit DPingCtl(int index, QObject *parent = nullptr);
    ~DPingCtl() override;

    int Index() const;
    /** Zero when idle. */
    int Busy() const;
    void SetTimeout(int ms);      // per request
    void SetPacketSize(int bytes); // echo payload, 0 to 65500
    void SetCount(int requests);
    /** Starts asynchronous echo requests to a host name or address; returns at once, raises no event before it returns. */
    void Ping(const QString &host);
    /** Ends the current ping; no event of it comes afterwards. */
    void Stop();

signals:
    /** status -1: no valid reply; time in ms with a fraction. */
    void Reply(int index, const QString &host, int status, double roundTripMs);
    /** One per failed request. Contains "Pinging" when the last request timed out, "Request" when one of several did. */
    void Message(int index, const QString &text);

private:
    std::unique_ptr<DPingCtlPrivate> d;
};
