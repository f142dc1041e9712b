#include "monitor/PingCheck.h"

#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/Trap.h"
#include "platform/ping/DPingCtl.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int kNextLook = 100; // ms until the elements are looked at again when none of them reports
constexpr int kMostControls = 4096;
}

PingCheck::PingCheck() = default;
PingCheck::~PingCheck() = default;

void PingCheck::loadControls()
{
    const int wanted = std::clamp(GetSettingInt(u"Options"_s, u"PingControls"_s), 1, kMostControls);
    while (int(DPingCtl1.size()) > wanted)
        DPingCtl1.pop_back();
    while (int(DPingCtl1.size()) < wanted) {
        auto control = std::make_unique<DPingCtl>(int(DPingCtl1.size()));
        QObject::connect(control.get(), &DPingCtl::Reply, control.get(),
                         [this](int index, const QString &, int status, double ms) { replyArrived(index, status, ms); });
        QObject::connect(control.get(), &DPingCtl::Message, control.get(),
                         [this](int index, const QString &text) { messageArrived(index, text); });
        DPingCtl1.push_back(std::move(control));
    }
    m_slots.resize(DPingCtl1.size());
}

void PingCheck::unloadControls()
{
    if (DPingCtl1.empty())
        return;
    DPingCtl1.resize(1);
    m_slots.assign(1, Slot());
    DPingCtl1.front()->Stop();
}

ResultTable PingCheck::takeResults() { return std::exchange(m_results, ResultTable(pingResult::Count)); }

Task<void> PingCheck::Check_Ping(ResultTable list) { return Trap("Check_Ping", checkAll(std::move(list))); }

Task<void> PingCheck::checkAll(ResultTable list)
{
    loadControls(); // the number of elements may have been changed since the last phase
    m_results.clear();
    const Parameters parameters{ GetSettingInt(u"Options"_s, u"PingPacketSize"_s),
                                 GetSettingInt(u"Options"_s, u"PingCount"_s),
                                 GetSettingInt(u"Options"_s, u"PingTimeOut"_s) };
    for (int row = 0; row < list.rows() && vbMain().monitoring; ++row) {
        co_await waits::Yield();
        const int element = co_await findFreeElement();
        if (!vbMain().monitoring)
            break; // switched off while waiting: what was not started is not started any more
        const QString &host = list.at(pingList::Host, row);
        startPing(element, host, list.at(pingList::PortId, row), parameters);
        vbMain().window->setStatusText("Check in progress.  Pinging...("_L1 + host + u')');
    }
    co_await closePingSockets();
}

bool PingCheck::isFree(int element) const
{
    const QString &remaining = m_slots[size_t(element)].remaining;
    return (remaining.isEmpty() || remaining == u"0"_s) && DPingCtl1[size_t(element)]->Busy() == 0;
}

int PingCheck::freeElement() const
{
    for (int element = 0; element < int(DPingCtl1.size()); ++element) {
        if (isFree(element))
            return element;
    }
    return -1;
}

/** With one element this waits for the previous ping's outcome. */
Task<int> PingCheck::findFreeElement()
{
    int element = freeElement();
    while (element < 0) {
        co_await waits::WaitFor(m_elementFinished, kNextLook);
        element = freeElement();
    }
    co_return element;
}

void PingCheck::startPing(int element, const QString &host, const QString &portId, const Parameters &parameters)
{
    m_slots[size_t(element)] = { QString::number(parameters.count), host, portId };
    DPingCtl &control = *DPingCtl1[size_t(element)];
    control.SetTimeout(parameters.timeOut);
    control.SetPacketSize(parameters.packetSize);
    control.SetCount(parameters.count);
    control.Ping(host);
}

bool PingCheck::anyBusy() const
{
    return std::any_of(DPingCtl1.begin(), DPingCtl1.end(), [](const auto &control) { return control->Busy() != 0; });
}

Task<void> PingCheck::closePingSockets()
{
    vbMain().window->setStatusText(u"Check in progress...(Closing Ping Sockets)"_s);
    while (anyBusy())
        co_await waits::WaitFor(m_elementFinished, kNextLook);
    for (Slot &slot : m_slots) {
        slot.remaining.clear();
        slot.host.clear();
    }
}

void PingCheck::replyArrived(int element, int status, double roundTrip)
{
    Trap("DPingCtl1_Reply", [&] {
        if (status == -1)
            finish(element, u"Failed"_s, u"0"_s, u"request timed out"_s);
        else
            finish(element, u"Connected"_s, QString::number(roundTrip, 'f', 3), QString());
    });
}

void PingCheck::messageArrived(int element, const QString &text)
{
    Trap("DPingCtl1_Message", [&] {
        QString message = text;
        message.remove("\r\n"_L1);
        const QString lower = message.toLower();
        QString &remaining = m_slots[size_t(element)].remaining;
        const int outstanding = remaining.toInt();
        if (outstanding >= 2 && lower.contains("request"_L1)) {
            remaining = QString::number(outstanding - 1); // a later request may still be answered
            return;
        }
        finish(element, u"Failed"_s, u"0"_s, lower.contains("pinging"_L1) ? u"request timed out"_s : message);
    });
}

/** Ends the element's ping with one result and frees it. */
void PingCheck::finish(int element, const QString &status, const QString &time, const QString &error)
{
    DPingCtl1[size_t(element)]->Stop();
    Slot &slot = m_slots[size_t(element)];
    m_results.addRow({ slot.portId, status, time, error });
    slot.remaining = u"0"_s;
    m_elementFinished.fire();
}
