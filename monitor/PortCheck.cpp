#include "monitor/PortCheck.h"

#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/Trap.h"
#include "platform/winsock/Winsock.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int kNextSearch = 100; // ms until the sockets are searched again when none of them reports
constexpr int kNextLook = 50;    // ms between looks in the closing step
constexpr int kMostSockets = 4096;
}

PortCheck::PortCheck()
    : m_hostTimer([this] {
          m_timedOut = true;
          m_hostTimer.setEnabled(false);
          m_socketFinished.fire();
      })
{
}

PortCheck::~PortCheck() = default;

void PortCheck::loadControls()
{
    const int wanted = std::clamp(GetSettingInt(u"Options"_s, u"PortSockets"_s), 1, kMostSockets);
    while (int(Winsock1.size()) > wanted)
        Winsock1.pop_back();
    while (int(Winsock1.size()) < wanted) {
        auto socket = std::make_unique<Winsock>(int(Winsock1.size()));
        QObject::connect(socket.get(), &Winsock::Connected, socket.get(), [this](int index) { connectArrived(index); });
        QObject::connect(socket.get(), &Winsock::Error, socket.get(),
                         [this](int index, int, const QString &text) { errorArrived(index, text); });
        Winsock1.push_back(std::move(socket));
    }
    m_slots.resize(Winsock1.size());
}

void PortCheck::unloadControls()
{
    m_hostTimer.setEnabled(false);
    if (Winsock1.empty())
        return;
    Winsock1.resize(1);
    m_slots.assign(1, Slot());
    Winsock1.front()->Close();
}

ResultTable PortCheck::takeResults() { return std::exchange(m_results, ResultTable(portResult::Count)); }

Task<void> PortCheck::Check_Ports(ResultTable list) { return Trap("Check_Ports", checkAll(std::move(list))); }

/** The number of seconds as text with "000" behind it, as the interval of the timer is made. */
int PortCheck::hostTimeOutMs()
{
    return int(std::min<qint64>(dao::Value(GetSetting(u"Options"_s, u"HostTimeOut"_s) + "000"_L1).integer(), 0x7fffffff));
}

Task<void> PortCheck::checkAll(ResultTable list)
{
    loadControls(); // the number of sockets may have been changed since the last phase
    m_results.clear();
    m_attemptLimit = hostTimeOutMs();
    for (int row = 0; row < list.rows() && vbMain().monitoring; ++row) {
        co_await waits::Yield();
        const int element = co_await findFreeSocket();
        if (!vbMain().monitoring)
            break; // switched off while waiting: what was not started is not started any more
        const QString &host = list.at(portList::Host, row);
        vbMain().window->setStatusText("Check in progress... ("_L1 + host + u')');
        startConnection(element, host, list.at(portList::Port, row), list.at(portList::PortId, row));
    }
    co_await closePortSockets();
}

int PortCheck::freeSocket() const
{
    for (int element = 0; element < int(Winsock1.size()); ++element) {
        if (m_slots[size_t(element)].busy != u"1"_s && Winsock1[size_t(element)]->state() == Winsock::sckClosed)
            return element;
    }
    return -1;
}

Task<int> PortCheck::findFreeSocket()
{
    int element = freeSocket();
    while (element < 0) {
        co_await waits::WaitFor(m_socketFinished, kNextSearch);
        element = freeSocket();
    }
    co_return element;
}

void PortCheck::startConnection(int element, const QString &host, const QString &port, const QString &portId)
{
    m_slots[size_t(element)] = { portId, u"1"_s };
    Winsock &socket = *Winsock1[size_t(element)];
    socket.SetLocalPort(0);
    socket.SetRemoteHost(host);
    socket.SetRemotePort(port.toInt()); // a text that is no number becomes port 0, which the control refuses
    socket.SetAttemptTimeout(m_attemptLimit);
    socket.Connect();
}

Task<void> PortCheck::closePortSockets()
{
    // One deadline for the whole rest of the phase, counted from the start of the last connection.
    m_timedOut = false;
    m_hostTimer.setInterval(m_attemptLimit);
    m_hostTimer.setEnabled(true);
    vbMain().window->setStatusText(u"Check in progress...(Closing Port Sockets)"_s);
    for (int element = 0; element < int(Winsock1.size()); ++element)
        co_await awaitOutcome(element);
    m_hostTimer.setEnabled(false);
}

Task<void> PortCheck::awaitOutcome(int element)
{
    const auto state = [&] { return Winsock1[size_t(element)]->state(); };
    while (!m_timedOut && state() > Winsock::sckClosed && state() <= Winsock::sckConnected)
        co_await waits::WaitFor(m_socketFinished, kNextLook);
    if (state() != Winsock::sckClosed)
        finish(element, u"Failed"_s, u"connection timed out"_s);
}

void PortCheck::connectArrived(int element)
{
    Trap("Winsock1_Connect", [&] { finish(element, u"Connected"_s, QString()); });
}

void PortCheck::errorArrived(int element, const QString &text)
{
    Trap("Winsock1_Error", [&] { finish(element, u"Failed"_s, text); });
}

/** Ends the socket's attempt with one result and frees it. */
void PortCheck::finish(int element, const QString &status, const QString &error)
{
    Winsock1[size_t(element)]->Close();
    Slot &slot = m_slots[size_t(element)];
    m_results.addRow({ slot.portId, status, error });
    slot.busy.clear();
    m_socketFinished.fire();
}
