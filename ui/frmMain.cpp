#include "ui/frmMain.h"

#include "core/Announcer.h"
#include "core/Dialogs.h"
#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"
#include "core/vbMain.h"
#include "monitor/CheckCycle.h"
#include "platform/desktop/MessageBoxes.h"
#include "platform/tray/cKavroTray.h"
#include "ui/CommandHandlers.h"
#include "ui/Commands.h"
#include "ui/DeviceTree.h"
#include "ui/Editors.h"
#include "ui/EventList.h"
#include "ui/HelpPages.h"
#include "ui/ImageList.h"
#include "ui/Panes.h"
#include "ui/PushToTalk.h"
#include "ui/StatusBar.h"
#include "ui/StatusList.h"
#include "ui/TerminalEcho.h"
#include "ui/Twips.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QScreen>
#include <QStackedWidget>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int kQuestionTimeoutMs = 3000;
constexpr int kRecheckMs = 250;
constexpr int kToolIcon = 22;
constexpr int kStatusView = 0;
constexpr int kEventView = 1;

QString questionCaption() { return AppTitle() + u" - Continue?"_s; }

ViewMode storedViewMode()
{
    const int mode = GetSettingInt(u"Settings"_s, u"ViewMode"_s);
    // Put in the store by hand it may be any number.
    return ViewMode(std::clamp(mode, int(ViewMode::LargeIcons), int(ViewMode::Details)));
}

/** What was not moved keeps its stored value, which may lie between two pixels. */
double twipsToSave(const QString &key, int pixels)
{
    const double stored = GetSettingNumber(u"Settings"_s, key);
    return pixelsFromTwips(stored) == pixels ? stored : twipsFromPixels(pixels);
}

} // namespace

frmMain::frmMain(Editors *editors, TerminalEcho *echo)
    : m_editors(editors)
    , m_echo(echo)
    , m_tree(new DeviceTree(this))
    , m_list(new StatusList(this))
    , m_events(new EventList(this))
    , m_views(new QComboBox(this))
    , m_lists(new QStackedWidget(this))
    , m_panes(nullptr)
    , m_toolBar(new QToolBar(this))
    , m_statusBar(new StatusBar(this))
    , m_tray(new cKavroTray(this))
    , m_cycle(std::make_unique<CheckCycle>())
    , m_shutdownTimer([] { desktop::closeWindowTitled(questionCaption()); })
{
    setObjectName(u"frmMain"_s);
    setWindowIcon(ImageList::application());
    setWindowTitle(AppTitle());
    m_panes = new Panes(m_tree, makeListPane(), this);
    setCentralWidget(m_panes);
    makeBars();
    makeCommands();
    connectParts();
    setTabOrder(m_tree, m_views);
    setTabOrder(m_views, m_lists);
    new PushToTalk(this);
    new ContextHelp(this);
    updateCommands();
}

frmMain::~frmMain()
{
    // The views still talk while they are torn down; by then only a plain widget is left to listen.
    for (QObject *part : { static_cast<QObject *>(m_tree), static_cast<QObject *>(m_list),
             static_cast<QObject *>(m_views), static_cast<QObject *>(m_tray) })
        part->disconnect(this);
}

// Building

QWidget *frmMain::makeListPane()
{
    auto *pane = new QWidget(this);
    auto *label = new QLabel(tr("Sho&w:"), pane);
    label->setBuddy(m_views);
    m_views->setObjectName(u"cmbViews"_s);
    m_views->setAccessibleName(tr("View selector"));
    m_lists->addWidget(m_list);
    m_lists->addWidget(m_events);

    auto *top = new QHBoxLayout;
    top->setContentsMargins(4, 0, 0, 0);
    top->addWidget(label);
    top->addWidget(m_views, 1);
    auto *column = new QVBoxLayout(pane);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3);
    column->addLayout(top);
    column->addWidget(m_lists, 1);
    return pane;
}

void frmMain::makeBars()
{
    m_toolBar->setObjectName(u"tbToolBar"_s);
    m_toolBar->setAccessibleName(tr("Toolbar"));
    m_toolBar->setMovable(false);
    m_toolBar->setIconSize({ kToolIcon, kToolIcon });
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    addToolBar(m_toolBar);
    setStatusBar(m_statusBar);
    // Its own menu would hide the toolbar behind the back of the View menu's check mark.
    setContextMenuPolicy(Qt::PreventContextMenu);
}

void frmMain::makeCommands()
{
    m_handlers = std::make_unique<CommandHandlers>(WindowParts {
        *this, *m_tree, *m_list, *m_events, *m_views, *m_toolBar, *m_statusBar, *m_cycle, m_editors });
    m_commands = new Commands(*m_handlers, *this, *m_tree, *m_list);
    m_commands->fillMenuBar(*menuBar());
    menuBar()->setAccessibleName(tr("Menu bar"));
    m_commands->fillToolBar(*m_toolBar);
    m_treeMenu = m_commands->makeMenu("mnutvRightClick", this);
    m_listMenu = m_commands->makeMenu("mnulvRightClick", this);
    m_tray->SetMenu(m_commands->makeMenu("mnuSysTray", this));
}

void frmMain::connectParts()
{
    connect(m_commands, &Commands::done, this, &frmMain::updateCommands);
    connect(m_tree, &DeviceTree::NodeClick, this, &frmMain::NodeClick);
    connect(m_tree, &QTreeWidget::currentItemChanged, this, &frmMain::updateCommands);
    connect(m_tree, &QWidget::customContextMenuRequested, this, [this](const QPoint &pos) {
        if (QTreeWidgetItem *item = m_tree->itemAt(pos))
            m_tree->setCurrentItem(item);
        updateCommands();
        m_treeMenu->popup(m_tree->viewport()->mapToGlobal(pos));
    });
    connect(m_list, &StatusList::rowActivated, this, &frmMain::openRow);
    connect(m_list, &StatusList::currentRowChanged, this, &frmMain::updateCommands);
    connect(m_list, &StatusList::contextMenuWanted, this, [this](const QPoint &pos) {
        updateCommands();
        m_listMenu->popup(pos);
    });
    connect(m_views, &QComboBox::activated, this, &frmMain::chooseView);
    connect(m_tray, &cKavroTray::Clicked, this, [this] { m_handlers->restore(); });
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &frmMain::closeWithoutQuestion);
}

// Loading

Task<void> frmMain::load(Progress progress)
{
    Form_Load();
    co_await Trap("Form_Fill", fillHandler(std::move(progress)));
    Trap("Form_View", [this] { viewHandler(); });
}

void frmMain::Form_Load()
{
    Trap("Form_Load", [this] {
        m_cycle->loadControls();
        m_shutdownTimer.setEnabled(false);
        m_tray->SetPicture(ImageList::image(status::TrayOff));
        setTrayTip(AppTitle() + u" - Monitoring OFF."_s);
        m_tray->Show();
    });
}

Task<void> frmMain::fillHandler(Progress progress)
{
    m_events->addColumns();
    m_views->addItems({ u"Status"_s, u"Event Viewer"_s });
    progress(u"Loading Database"_s);
    co_await waits::Yield();
    m_tree->Load_TreeView();
    progress(u"Updating Display"_s);
    co_await waits::Yield();
    m_list->Update_Groups();
    progress(u"Loading Event Log"_s);
    co_await waits::Yield();
    CleanEventLog();
    m_events->Load_EventLog();
    m_panes->setPosition(GetSettingNumber(u"Settings"_s, u"Splitter"_s));
    m_views->setCurrentIndex(kStatusView);
    chooseView(kStatusView);
    setReadyText(u"Ready"_s);
}

void frmMain::viewHandler()
{
    m_list->setViewMode(storedViewMode());
    updateCommands();
}

void frmMain::place(double left, double top, double width, double height)
{
    QRect wanted(
        pixelsFromTwips(left), pixelsFromTwips(top), pixelsFromTwips(width), pixelsFromTwips(height));
    const QScreen *screen = QGuiApplication::screenAt(wanted.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (screen) {
        const QRect room = screen->availableGeometry();
        wanted.setSize(wanted.size().boundedTo(room.size()).expandedTo(minimumSizeHint()));
        wanted.moveLeft(
            std::clamp(wanted.left(), room.left(), std::max(room.left(), room.right() - wanted.width())));
        wanted.moveTop(
            std::clamp(wanted.top(), room.top(), std::max(room.top(), room.bottom() - wanted.height())));
    }
    resize(wanted.size());
    move(wanted.topLeft());
}

// Views

void frmMain::NodeClick(NodeLevel level, const QString &key)
{
    Trap("tvTreeView_NodeClick", [&] {
        switch (level) {
        case NodeLevel::Root:
            return m_list->Update_Groups();
        case NodeLevel::Group:
            return m_list->Update_Devices(key);
        case NodeLevel::Device:
            return m_list->Update_Ports(key);
        case NodeLevel::Port:
            return m_list->Update_Port(key);
        case NodeLevel::None:
            return;
        }
    });
}

/** Goes down to the row; one that is shown already has nothing below it and opens itself. */
void frmMain::openRow(NodeLevel level, const QString &key)
{
    if (level != m_tree->currentLevel() || key != m_tree->currentKey()) {
        m_tree->selectNode(level, key);
        return;
    }
    // After one was deleted the list shows the groups, whichever of them the tree has made current.
    if (level == NodeLevel::Group)
        return m_tree->clickCurrent();
    updateCommands();
    const bool hasDetails = commandState().rowHasDetails;
    m_commands->action(hasDetails ? "mnulvRightClickDetails" : "mnulvRightClickProperties")->trigger();
}

void frmMain::chooseView(int index)
{
    QWidget *view = index == kEventView ? static_cast<QWidget *>(m_events) : m_list;
    m_lists->setCurrentWidget(view);
    m_lists->setFocusProxy(view);
    view->setFocus();
    updateCommands();
}

CommandState frmMain::commandState() const
{
    CommandState state;
    state.monitoring = m_monitoring != MonitoringState::Off;
    state.checking = m_monitoring == MonitoringState::Checking || m_cycle->checkInProgress();
    if (const Announcer *announcer = vbMain().announcer) {
        state.canListen = announcer->canListen();
        state.listening = announcer->isListening();
    }
    state.fileCommand = m_handlers->fileCommandRuns();
    state.node = m_tree->currentLevel();
    state.nodeDisabled = state.node == NodeLevel::Device && m_tree->currentImage() == status::DeviceDisabled;
    state.editors = m_editors != nullptr;
    if (m_editors) {
        const StatusRow row = m_list->currentRow();
        state.nodeEditable = m_editors->canEdit(state.node, m_tree->currentKey());
        state.nodeHasDetails = m_editors->hasDetails(state.node, m_tree->currentKey());
        state.rowEditable = m_editors->canEdit(row.level, row.key);
        state.rowHasDetails = m_editors->hasDetails(row.level, row.key);
    }
    state.viewMode = m_list->viewMode();
    state.eventViewer = m_lists->currentWidget() == m_events;
    state.toolBar = !m_toolBar->isHidden();
    state.statusBar = !m_statusBar->isHidden();
    return state;
}

void frmMain::updateCommands()
{
    const CommandState state = commandState();
    m_commands->update(state);
    // Nobody tells when the last step of a cycle or of a file command is done, or the character has heard enough.
    if (state.checking || state.fileCommand || state.listening)
        m_recheck.start(kRecheckMs, this);
    else
        m_recheck.stop();
}

void frmMain::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_recheck.timerId())
        updateCommands();
    else
        QMainWindow::timerEvent(event);
}

// What the engine asks for

void frmMain::setStatusText(const QString &text)
{
    m_statusBar->setPanelText(StatusBar::Progress, text);
    if (m_echo)
        m_echo->status(text);
}

void frmMain::setReadyText(const QString &text) { m_statusBar->setPanelText(StatusBar::Ready, text); }

void frmMain::setAnnouncement(const QString &text)
{
    m_statusBar->setPanelText(StatusBar::Announcement, text);
    if (m_echo)
        m_echo->announcement(text);
}

void frmMain::setMonitoringState(MonitoringState state)
{
    m_monitoring = state;
    updateCommands();
}

void frmMain::setTrayTip(const QString &tip) { m_tray->SetTip(tip); }

void frmMain::setTrayImage(int image) { m_tray->SetPicture(ImageList::image(image)); }

void frmMain::addEventRow(int icon, const QDateTime &when, const QString &type, const QString &message)
{
    m_events->addEventRow({ icon, when, type, message });
    if (m_echo)
        m_echo->event(GeneralDate(when) + u' ' + type + u"..."_s + message);
}

void frmMain::Load_EventLog() { m_events->Load_EventLog(); }

Task<void> frmMain::Refresh_TreeView_Icons() { return m_tree->Refresh_TreeView_Icons(); }

void frmMain::reselectNode() { m_tree->clickCurrent(); }

void frmMain::carryOut(OperatorCommand command)
{
    switch (command) {
    case OperatorCommand::Restore:
        return m_handlers->restore();
    case OperatorCommand::Minimize:
        return showMinimized();
    case OperatorCommand::ShowLog:
        return m_handlers->viewLog();
    case OperatorCommand::ShowHTML:
        return m_handlers->viewHTML();
    case OperatorCommand::MonitoringOn:
        return m_handlers->monitoringOn();
    case OperatorCommand::MonitoringOff:
        return m_handlers->monitoringOff();
    }
}

int frmMain::problemCount() const { return m_cycle->problemCount(); }

// Closing

void frmMain::closeEvent(QCloseEvent *event)
{
    event->ignore();
    if (m_asking)
        return;
    const bool close = Trap("Form_Unload", [this] { return mayClose(); });
    if (!close)
        return;
    Form_Unload();
    event->accept();
}

/** The question dismisses itself, so that an unattended close completes. Only No keeps the program open. */
bool frmMain::mayClose()
{
    if (m_unloaded || GetSettingInt(u"Options"_s, u"ShowShutDown"_s) == 0)
        return true;
    const QScopedValueRollback asking(m_asking, true);
    m_shutdownTimer.setInterval(kQuestionTimeoutMs);
    m_shutdownTimer.setEnabled(true);
    const Dialogs::Answer answer
        = vbMain().dialogs->messageBox(u"You are about to exit the program.  Are you sure?"_s,
            questionCaption(), Dialogs::Question, Dialogs::YesNoCancel);
    m_shutdownTimer.setEnabled(false);
    return answer != Dialogs::AnswerNo;
}

void frmMain::closeWithoutQuestion()
{
    Form_Unload();
    hide();
}

const std::array<frmMain::UnloadStep, 6> frmMain::kUnloadSteps = {
    &frmMain::stopMonitoring,
    &frmMain::logStop,
    &frmMain::unloadCharacter,
    &frmMain::unloadControls,
    &frmMain::removeTrayIcon,
    &frmMain::saveLayout,
};

void frmMain::Form_Unload()
{
    if (std::exchange(m_unloaded, true))
        return;
    Trap("Form_Unload", [this] {
        for (const UnloadStep step : kUnloadSteps)
            (this->*step)();
    });
    emit closed();
}

/** The same after an unexpected error: the database may be what failed, and the other steps are still worth
 * it. */
void frmMain::unload()
{
    if (std::exchange(m_unloaded, true))
        return;
    m_afterError = true;
    for (const UnloadStep step : kUnloadSteps) {
        try {
            (this->*step)();
        } catch (...) {
            // The program ends because of an earlier error; that one has been reported.
        }
    }
    hide();
    emit closed();
}

void frmMain::stopMonitoring()
{
    if (!vbMain().monitoring)
        return;
    WriteLog(u"Force Shutdown Detected.  Program Stopped."_s, u"Information"_s, 0, 0);
    setStatusText(u"Force Shutdown..."_s);
    m_cycle->Monitor_Stop();
}

void frmMain::logStop() { WriteLog(u"Program Stopped."_s, u"Information"_s, 0, 0); }

void frmMain::unloadCharacter()
{
    if (vbMain().announcer)
        vbMain().announcer->unloadCharacter();
}

void frmMain::unloadControls()
{
    if (m_afterError)
        m_cycle->abandon();
    else
        m_cycle->unloadControls();
}

void frmMain::removeTrayIcon() { m_tray->Hide(); }

void frmMain::saveLayout()
{
    // A window that was never placed has no layout worth keeping.
    if (vbMain().startFlag == 0)
        return;
    const bool plain = !isMinimized() && !isMaximized() && !isFullScreen();
    // Positions are those of the frame, because that is what a window is placed by.
    const QRect normal
        = plain ? QRect(pos(), size()) : normalGeometry().translated(pos() - geometry().topLeft());
    const std::pair<QLatin1StringView, int> lengths[] = {
        { "MainLeft"_L1, normal.left() },
        { "MainTop"_L1, normal.top() },
        { "MainWidth"_L1, normal.width() },
        { "MainHeight"_L1, normal.height() },
        { "Splitter"_L1, m_panes->position() },
    };
    for (const auto &[key, pixels] : lengths)
        SaveSetting(u"Settings"_s, key, QString::number(twipsToSave(key, pixels)));
    SaveSetting(u"Settings"_s, u"ViewMode"_s, QString::number(int(m_list->viewMode())));
}

void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isMinimized() && m_tray->isAvailable())
        QTimer::singleShot(0, this, &frmMain::hideBehindTray);
}

void frmMain::hideBehindTray()
{
    // Without a tray host the window would be out of reach.
    if (isMinimized() && m_tray->isAvailable())
        hide();
}
