// A running cycle in the real window, disturbed at every suspension by what an operator may do meanwhile.
#include "tests/ui/WindowWorld.h"

#include "core/Settings.h"
#include "monitor/CheckCycle.h"
#include "ui/frmMain.h"

#include <QTcpServer>

using namespace Qt::StringLiterals;

namespace {

struct Disturbance {
    const char *name;
    void (*happen)(frmMain &, World &);
    bool ends = false; // the program
};

void deleteDevice(frmMain &window, World &world, qint64 id)
{
    world.sql(u"DELETE tblDevices.*, tblPortMain.*, tblPortStatus.* FROM tblDevices LEFT JOIN(tblPortMain LEFT JOIN"
              " tblPortStatus ON tblPortMain.Device_ID = tblPortStatus.Device_ID)"
              " ON tblDevices.Device_ID = tblPortMain.Device_ID WHERE tblDevices.Device_ID = "_s
              + QString::number(id));
    window.tree().Load_TreeView();
}

const Disturbance kDisturbances[] = {
    { "stop", [](frmMain &window, World &) { window.commands().action("mnuMonitoringOff")->trigger(); } },
    { "stop_and_start", [](frmMain &window, World &) {
         window.commands().action("mnuMonitoringOff")->trigger();
         window.commands().action("mnuMonitoringOn")->trigger();
     } },
    { "refresh", [](frmMain &window, World &) { window.commands().action("mnuViewRefresh")->trigger(); } },
    { "delete_device", [](frmMain &window, World &world) { deleteDevice(window, world, 1); } },
    { "select_and_view", [](frmMain &window, World &) {
         window.tree().selectNode(NodeLevel::Port, window.tree().currentKey());
         window.commands().action("tbViews")->trigger();
         window.commands().action("mnuViewEventViewer")->trigger();
     } },
    { "another_database", [](frmMain &window, World &world) {
         const QString other = world.path(u"other.mdb"_s);
         World::makeDatabase(other);
         UseDatabase(dao::OpenDatabase(other, true), other);
         window.tree().Load_TreeView();
         window.list().Update_Groups();
     } },
    { "close", [](frmMain &window, World &) { window.close(); }, true },
    { "terminate", [](frmMain &window, World &) { window.closeWithoutQuestion(); }, true },
};

} // namespace

class WindowSweep : public WindowWorld, public testing::WithParamInterface<Disturbance>
{
protected:
    QTcpServer server;

    /** Two devices with a ping, an answering and a refusing port each. */
    void fillDatabase()
    {
        server.listen(QHostAddress::Any);
        QTcpServer gone;
        gone.listen(QHostAddress::Any);
        const int group = world.addGroup(u"g"_s);
        for (const QString &host : { u"127.0.0.1"_s, u"127.0.0.2"_s }) {
            const int device = world.addDevice(group, host);
            for (const QString &port :
                { u"Ping"_s, QString::number(server.serverPort()), QString::number(gone.serverPort()) })
                world.addCheck(device, port);
        }
    }

    /** Disturbs at the k-th suspension of a cycle; false when the cycle had ended before. */
    bool disturbAt(int k)
    {
        window->cycle().unloadControls();
        vbMain().monitoring = false;
        window->cycle().loadControls();
        window->cycle().Monitor_Initialize();
        int suspension = 0;
        bool met = false;
        time->onSuspension = [&](int) {
            if (met || !window->cycle().checkInProgress() || suspension++ != k)
                return;
            met = true;
            GetParam().happen(*window, world);
        };
        const bool begun = time->runUntil([&] { return window->cycle().checkInProgress(); });
        const bool ended = time->runUntil([&] { return !window->cycle().checkInProgress(); });
        time->onSuspension = {};
        EXPECT_TRUE(begun && ended) << GetParam().name << " at " << k;
        return met;
    }
};

TEST_P(WindowSweep, LeavesTheWindowSoundAtEverySuspension)
{
    SaveSetting(u"Options"_s, u"ShowShutDown"_s, u"0"_s);
    int met = 0;
    for (int k = 0;; ++k, ++met) {
        const QString file = world.path(u"sweep%1.mdb"_s.arg(k));
        World::makeDatabase(file);
        UseDatabase(dao::OpenDatabase(file, true), file);
        fillDatabase();
        open();
        const bool disturbed = disturbAt(k);
        server.close();
        if (!disturbed)
            break;
        EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortStatus WHERE Port_Success + Port_Failure > 1"_s),
            QStringList())
            << GetParam().name << " at " << k;
        if (GetParam().ends) {
            EXPECT_FALSE(vbMain().monitoring);
            EXPECT_EQ(world.rows(u"Select Event FROM tblEventLog WHERE Event = 'Program Stopped.'"_s).size(), 1);
        }
        window.reset();
        vbMain().window = &world.window;
    }
    EXPECT_GE(met, 12) << "the cycle hardly ever waited";
}

INSTANTIATE_TEST_SUITE_P(Sweep, WindowSweep, testing::ValuesIn(kDisturbances),
    [](const auto &test) { return std::string(test.param.name); });
