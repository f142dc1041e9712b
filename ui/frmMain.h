#pragma once

#include "core/MainWindow.h"
#include "core/Waits.h"
#include "ui/CommandState.h"

#include <QBasicTimer>
#include <QMainWindow>
#include <array>
#include <functional>
#include <memory>

class CheckCycle;
class CommandHandlers;
class Commands;
class DeviceTree;
class Editors;
class EventList;
class Panes;
class QComboBox;
class QStackedWidget;
class QToolBar;
class StatusBar;
class StatusList;
class TerminalEcho;
class cKavroTray;

/** The main window. It owns every control for the whole run. */
class frmMain : public QMainWindow, public MainWindow
{
    Q_OBJECT
public:
    /** editors and echo may be absent; they outlive the window. */
    explicit frmMain(Editors *editors = nullptr, TerminalEcho *echo = nullptr);
    ~frmMain() override;

    using Progress = std::function<void(const QString &)>;
    /** Load, fill and view handler in this order; progress gets the texts for the splash screen. */
    Task<void> load(Progress progress);
    /** Position and size in twips; a window that would lie outside of every screen is brought back. */
    void place(double left, double top, double width, double height);
    /** Closes at once: the system ends the session or the process. */
    void closeWithoutQuestion();

    // MainWindow
    void setStatusText(const QString &text) override;
    void setReadyText(const QString &text) override;
    void setAnnouncement(const QString &text) override;
    void setMonitoringState(MonitoringState state) override;
    void setTrayTip(const QString &tip) override;
    void setTrayImage(int image) override;
    void addEventRow(int icon, const QDateTime &when, const QString &type, const QString &message) override;
    void Load_EventLog() override;
    Task<void> Refresh_TreeView_Icons() override;
    void reselectNode() override;
    void carryOut(OperatorCommand command) override;
    int problemCount() const override;
    void unload() override;

    DeviceTree &tree() { return *m_tree; }
    StatusList &list() { return *m_list; }
    EventList &events() { return *m_events; }
    StatusBar &statusPanels() { return *m_statusBar; }
    QComboBox &viewSelector() { return *m_views; }
    Panes &panes() { return *m_panes; }
    Commands &commands() { return *m_commands; }
    CheckCycle &cycle() { return *m_cycle; }
    cKavroTray &tray() { return *m_tray; }

signals:
    /** The window has been unloaded; the program may end. */
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    QWidget *makeListPane();
    void makeBars();
    void makeCommands();
    void connectParts();

    void Form_Load();
    Task<void> fillHandler(Progress progress);
    void viewHandler();
    void NodeClick(NodeLevel level, const QString &key);
    void openRow(NodeLevel level, const QString &key);
    void chooseView(int index);
    void updateCommands();
    CommandState commandState() const;

    bool mayClose();
    void Form_Unload();
    void stopMonitoring();
    void logStop();
    void unloadCharacter();
    void unloadControls();
    void removeTrayIcon();
    void saveLayout();
    using UnloadStep = void (frmMain::*)();
    static const std::array<UnloadStep, 6> kUnloadSteps;
    void hideBehindTray();

    Editors *m_editors;
    TerminalEcho *m_echo;
    DeviceTree *m_tree;
    StatusList *m_list;
    EventList *m_events;
    QComboBox *m_views;
    QStackedWidget *m_lists;
    Panes *m_panes;
    QToolBar *m_toolBar;
    StatusBar *m_statusBar;
    cKavroTray *m_tray;
    std::unique_ptr<CheckCycle> m_cycle;
    std::unique_ptr<CommandHandlers> m_handlers;
    Commands *m_commands = nullptr;
    QMenu *m_treeMenu = nullptr;
    QMenu *m_listMenu = nullptr;
    waits::Timer m_shutdownTimer; // element 2 of Timer1
    QBasicTimer m_recheck;
    MonitoringState m_monitoring = MonitoringState::Off;
    bool m_asking = false;
    bool m_unloaded = false;
    bool m_afterError = false;
};
