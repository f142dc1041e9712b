#pragma once

#include <QObject>
#include <QString>
#include <memory>

class WinsockPrivate;

/** TCP client control: one connection attempt at a time, IPv4 and IPv6 (RFC 9293), no threads but name resolution. */
class Winsock : public QObject
{
    Q_OBJECT
public:
    enum State { sckClosed = 0, sckOpen = 1, sckResolvingHost = 4, sckHostResolved = 5, sckConnecting = 6,
                 sckConnected = 7, sckClosing = 8, sckError = 9 };

    explicit Winsock(int index, QObject *parent = nullptr);
    ~Winsock() override;

    int Index() const;
    State state() const;
    void SetLocalPort(int port); // 0: any
    void SetRemoteHost(const QString &host);
    void SetRemotePort(int port);
    /** The control's own limit of one attempt, name resolution included, in ms; 0: none. */
    void SetAttemptTimeout(int ms);
    /** Starts the attempt; returns at once, raises no event before it returns. */
    void Connect();
    /** Ends whatever goes on; no event of it comes afterwards. State becomes sckClosed. */
    void Close();

signals:
    void Connected(int index);
    /** number: the socket error number of the control; description: one plain sentence part. */
    void Error(int index, int number, const QString &description);

private:
    std::unique_ptr<WinsockPrivate> d;
};
