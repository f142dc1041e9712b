#include "platform/winsock/Winsock.h"

#include "platform/winsock/ConnectEngine.h"
#include "platform/winsock/SocketErrors.h"

#include <QHostInfo>
#include <QPointer>
#include <cerrno>

using namespace Qt::StringLiterals;

class WinsockPrivate : public QObject
{
    Q_OBJECT
public:
    WinsockPrivate(Winsock *owner, int number)
        : q(owner),
          index(number),
          attempt([this](int outcome) { attemptEnded(outcome); })
    { }
    ~WinsockPrivate() override { close(); }

    void connectToHost();
    void close();

    Winsock *q;
    int index;
    Winsock::State state = Winsock::sckClosed;
    int localPort = 0;
    QString remoteHost;
    int remotePort = 0;
    int limitMs = 0;
    ConnectAttempt attempt;

private slots:
    void resolved(const QHostInfo &info);

private:
    void connectToAddresses(const QList<QHostAddress> &addresses);
    void refuse(const SocketError &error);
    void attemptEnded(int outcome);

    SocketError refusal {}; // why there was nothing to try; number 0: there was something
    int lookupId = -1;
};

void WinsockPrivate::connectToHost()
{
    close();
    const QString host = remoteHost.trimmed();
    state = Winsock::sckConnecting;
    if (remotePort < 1 || remotePort > 65535)
        return refuse(portNumberError(remotePort));
    if (host.isEmpty())
        return refuse({ 10049, u"host name is missing"_s });
    attempt.setLimit(limitMs);
    QHostAddress literal;
    if (literal.setAddress(host))
        return connectToAddresses({ literal });
    state = Winsock::sckResolvingHost;
    // By name of the slot, because Qt 6.4 leaks the function object of an abandoned lookup.
    lookupId = QHostInfo::lookupHost(host, this, SLOT(resolved(QHostInfo)));
}

void WinsockPrivate::resolved(const QHostInfo &info)
{
    // An answer may already be on its way when its lookup is abandoned.
    if (info.lookupId() != lookupId)
        return;
    lookupId = -1;
    if (info.addresses().isEmpty())
        return refuse(hostNotFoundError());
    connectToAddresses(info.addresses());
}

void WinsockPrivate::connectToAddresses(const QList<QHostAddress> &addresses)
{
    state = Winsock::sckConnecting;
    const bool isLocalPort = localPort > 0 && localPort <= 65535;
    attempt.start(addresses, static_cast<quint16>(remotePort),
                  static_cast<quint16>(isLocalPort ? localPort : 0));
}

void WinsockPrivate::refuse(const SocketError &error)
{
    refusal = error;
    attempt.fail(EINVAL);
}

void WinsockPrivate::attemptEnded(int outcome)
{
    if (lookupId >= 0)
        QHostInfo::abortHostLookup(std::exchange(lookupId, -1));
    if (outcome != 0) {
        const SocketError error = refusal.number != 0 ? refusal : socketError(outcome);
        state = Winsock::sckError;
        emit q->Error(index, error.number, error.text);
        return;
    }
    state = Winsock::sckConnected;
    const QPointer<Winsock> alive(q);
    emit q->Connected(index);
    // Most users close at once, so only a connection that they keep costs the watching.
    if (alive)
        attempt.watch();
}

void WinsockPrivate::close()
{
    state = Winsock::sckClosed;
    refusal = {};
    attempt.close();
    if (lookupId >= 0)
        QHostInfo::abortHostLookup(std::exchange(lookupId, -1));
}

Winsock::Winsock(int index, QObject *parent)
    : QObject(parent),
      d(std::make_unique<WinsockPrivate>(this, index))
{ }

Winsock::~Winsock() = default;

int Winsock::Index() const
{
    return d->index;
}

Winsock::State Winsock::state() const
{
    if (d->state == sckConnected && !d->attempt.isOpen())
        return sckClosing;
    return d->state;
}

void Winsock::SetLocalPort(int port)
{
    d->localPort = port;
}

void Winsock::SetRemoteHost(const QString &host)
{
    d->remoteHost = host;
}

void Winsock::SetRemotePort(int port)
{
    d->remotePort = port;
}

void Winsock::SetAttemptTimeout(int ms)
{
    d->limitMs = ms;
}

void Winsock::Connect()
{
    d->connectToHost();
}

void Winsock::Close()
{
    d->close();
}

#include "Winsock.moc"
