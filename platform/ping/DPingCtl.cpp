#include "platform/ping/DPingCtl.h"

#include "platform/ping/EchoEngine.h"

#include <QHostInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLargestPayload = 65500;
constexpr int kResolveLimitMs = 10'000;

/** The address to send to: IPv4 before IPv6, whatever the order of the resolver's answer. */
std::optional<EchoTarget> chooseTarget(const QList<QHostAddress> &addresses)
{
    std::optional<EchoTarget> chosen;
    for (const QHostAddress &address : addresses) {
        const auto target = EchoTarget::from(address);
        if (target
            && (!chosen || (chosen->family() == icmp::Family::V6 && target->family() == icmp::Family::V4)))
            chosen = target;
    }
    return chosen;
}

} // namespace

class DPingCtlPrivate : public QObject
{
    Q_OBJECT
public:
    DPingCtlPrivate(DPingCtl *owner, int number)
        : q(owner),
          index(number),
          request([this](const EchoOutcome &outcome) { requestEnded(outcome); })
    {
        resolveLimit.setSingleShot(true);
        connect(&resolveLimit, &QTimer::timeout, this, [this] {
            stop();
            endWithMessage(u"Host name lookup timed out"_s);
        });
    }
    ~DPingCtlPrivate() override { stop(); }

    void ping(const QString &name);
    void stop();

    DPingCtl *q;
    int index;
    int timeoutMs = 1000;
    int payload = 32;
    int count = 1;
    bool busy = false;

private slots:
    void resolved(const QHostInfo &info);

private:
    void resolve();
    void sendTo(const EchoTarget &address);
    void refuse(const QString &text) { request.fail({ EchoOutcome::Hopeless, 0, text }); }
    void requestEnded(const EchoOutcome &outcome);
    void endWithMessage(const QString &text);
    QString timeoutText() const;

    QString host;
    EchoTarget target {};
    int remaining = 0; // requests of this ping that have not failed yet
    int lookupId = -1;
    QTimer resolveLimit;
    EchoRequest request;
};

void DPingCtlPrivate::ping(const QString &name)
{
    stop();
    busy = true;
    host = name;
    remaining = std::max(count, 1);
    const QString wanted = name.trimmed();
    QHostAddress literal;
    if (wanted.isEmpty())
        return refuse(u"Host name is missing"_s);
    if (payload > kLargestPayload)
        return refuse(u"packet size %1 is too large"_s.arg(payload));
    if (!literal.setAddress(wanted))
        return resolve();
    if (const auto address = EchoTarget::from(literal))
        sendTo(*address);
    else
        refuse(u"Host not found"_s);
}

void DPingCtlPrivate::resolve()
{
    resolveLimit.start(kResolveLimitMs);
    // By name of the slot, because Qt 6.4 leaks the function object of an abandoned lookup.
    lookupId = QHostInfo::lookupHost(host.trimmed(), this, SLOT(resolved(QHostInfo)));
}

void DPingCtlPrivate::resolved(const QHostInfo &info)
{
    // An answer may already be on its way when its lookup is abandoned.
    if (info.lookupId() != lookupId)
        return;
    lookupId = -1;
    resolveLimit.stop();
    if (const auto address = chooseTarget(info.addresses()))
        sendTo(*address);
    else
        endWithMessage(u"Host not found"_s);
}

void DPingCtlPrivate::sendTo(const EchoTarget &address)
{
    target = address;
    request.start(target, std::max(payload, 0), std::max(timeoutMs, 1));
}

void DPingCtlPrivate::stop()
{
    busy = false;
    request.cancel();
    resolveLimit.stop();
    if (lookupId >= 0)
        QHostInfo::abortHostLookup(std::exchange(lookupId, -1));
}

void DPingCtlPrivate::requestEnded(const EchoOutcome &outcome)
{
    if (outcome.kind == EchoOutcome::Replied) {
        busy = false;
        const QString name = host; // a handler may delete this element
        emit q->Reply(index, name, 0, outcome.roundTripMs);
        return;
    }
    --remaining;
    if (outcome.kind == EchoOutcome::Hopeless || remaining == 0)
        return endWithMessage(outcome.kind == EchoOutcome::TimedOut ? timeoutText() : outcome.text);
    // The next request goes out before the event is raised, so that a handler that stops the element stops it
    // too.
    sendTo(target);
    emit q->Message(index,
                    outcome.kind == EchoOutcome::TimedOut ? u"Request timed out."_s
                                                          : u"Request failed: "_s + outcome.text);
}

void DPingCtlPrivate::endWithMessage(const QString &text)
{
    busy = false;
    emit q->Message(index, text);
}

QString DPingCtlPrivate::timeoutText() const
{
    QString name = host.simplified();
    name.remove(u'\''); // the text may end up in a statement that breaks on one
    return u"Pinging %1: no reply"_s.arg(name);
}

DPingCtl::DPingCtl(int index, QObject *parent)
    : QObject(parent),
      d(std::make_unique<DPingCtlPrivate>(this, index))
{ }

DPingCtl::~DPingCtl() = default;

int DPingCtl::Index() const
{
    return d->index;
}

int DPingCtl::Busy() const
{
    return d->busy ? 1 : 0;
}

void DPingCtl::SetTimeout(int ms)
{
    d->timeoutMs = ms;
}

void DPingCtl::SetPacketSize(int bytes)
{
    d->payload = bytes;
}

void DPingCtl::SetCount(int requests)
{
    d->count = requests;
}

void DPingCtl::Ping(const QString &host)
{
    d->ping(host);
}

void DPingCtl::Stop()
{
    d->stop();
}

#include "DPingCtl.moc"
