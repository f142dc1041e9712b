#include "ui/Commands.h"

#include "core/Trap.h"
#include "ui/CommandHandlers.h"
#include "ui/ImageList.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

#include <array>

using namespace Qt::StringLiterals;

namespace {

using Test = bool (*)(const CommandState &);
using State = CommandState;

enum class Scope { Window, Tree, List };

struct Command {
    const char *name;
    const char *text;
    const char *shortcut; // null: none; in brackets: shown only, another command of the same effect listens
    const char *icon;
    const char *tip;
    void (CommandHandlers::*run)();
    Test enabled = nullptr; // null: always
    Test shown = nullptr; // null: always
    Test checked = nullptr; // null: not a check item
    Scope scope = Scope::Window;
};

bool isOn(const State &s) { return s.monitoring; }
bool isOff(const State &s) { return !s.monitoring; }
bool canStart(const State &s) { return !s.monitoring && !s.checking; }
bool canStop(const State &s) { return s.monitoring && !s.checking; }
bool canListen(const State &s) { return s.canListen; }
bool isListening(const State &s) { return s.listening; }
bool isIdle(const State &s) { return !s.checking; }
bool mayExchange(const State &s) { return !s.checking && !s.fileCommand; }
bool onGroup(const State &s) { return s.node == NodeLevel::Group; }
bool onDevice(const State &s) { return s.node == NodeLevel::Device; }
bool onPort(const State &s) { return s.node == NodeLevel::Port; }
bool groupIdle(const State &s) { return onGroup(s) && isIdle(s); }
bool deviceIdle(const State &s) { return onDevice(s) && isIdle(s); }
bool portIdle(const State &s) { return onPort(s) && isIdle(s); }
bool nodeDisabled(const State &s) { return s.nodeDisabled; }
bool hasEditors(const State &s) { return s.editors; }
bool editorsIdle(const State &s) { return hasEditors(s) && isIdle(s); }
bool mayAddGroup(const State &s) { return hasEditors(s) && s.node == NodeLevel::Root; }
bool mayAddDevice(const State &s) { return hasEditors(s) && onGroup(s); }
bool mayAddPort(const State &s) { return hasEditors(s) && onDevice(s); }
bool addGroupIdle(const State &s) { return mayAddGroup(s) && isIdle(s); }
bool addDeviceIdle(const State &s) { return mayAddDevice(s) && isIdle(s); }
bool addPortIdle(const State &s) { return mayAddPort(s) && isIdle(s); }
bool nodeEditable(const State &s) { return s.nodeEditable; }
bool nodeEditableIdle(const State &s) { return s.nodeEditable && isIdle(s); }
bool nodeHasDetails(const State &s) { return s.nodeHasDetails; }
bool rowEditable(const State &s) { return s.rowEditable; }
bool rowEditableIdle(const State &s) { return s.rowEditable && isIdle(s); }
bool rowHasDetails(const State &s) { return s.rowHasDetails; }
bool toolBarShown(const State &s) { return s.toolBar; }
bool statusBarShown(const State &s) { return s.statusBar; }
bool statusShown(const State &s) { return !s.eventViewer; }
bool eventsShown(const State &s) { return s.eventViewer; }
template <ViewMode mode>
bool isMode(const State &s)
{
    return s.viewMode == mode;
}

using H = CommandHandlers;

const std::array kCommands {
    Command { "mnuFileNew", "&New", "Ctrl+N", "new", "Hear how a new database is made", &H::fileNew },
    Command { "mnuFileOpen", "&Open...", "Ctrl+O", "open", "Open another database", &H::fileOpen, mayExchange },
    Command { "mnuFileSaveAs", "Save &As...", "Ctrl+Shift+S", "saveas",
        "Copy the database under another name and go on with the copy", &H::fileSaveAs, mayExchange },
    Command { "tbOpen", "Open", nullptr, "open", "Open another database", &H::fileOpen, mayExchange },
    Command { "tbSaveAs", "Save As", nullptr, "saveas",
        "Copy the database under another name and go on with the copy", &H::fileSaveAs, mayExchange },
    Command { "mnuFilemnuExit", "E&xit", "Ctrl+Q", "exit", "Close the program", &H::exit },

    Command { "mnuMonitoringOn", "Monitoring &On", "Ctrl+M", "monitor", "Start checking the devices",
        &H::monitoringOn, isOff },
    Command { "mnuMonitoringOff", "Monitoring O&ff", "Ctrl+M", "stop", "Stop checking the devices",
        &H::monitoringOff, isOn },
    Command { "tbMonitor", "Monitor", nullptr, "monitor", "Start checking the devices", &H::monitoringOn,
        canStart },
    Command { "tbStop", "Stop", nullptr, "stop", "Stop checking the devices", &H::monitoringOff, canStop },
    Command { "mnuSysTrayMonitoringOn", "Monitoring &On", nullptr, "monitor", "Start checking the devices",
        &H::monitoringOn, isOff },
    Command { "mnuSysTrayMonitoringOff", "Monitoring O&ff", nullptr, "stop", "Stop checking the devices",
        &H::monitoringOff, isOn },

    Command { "mnuViewStatus", "&Status", "Ctrl+1", nullptr, "Show the state of the selected objects",
        &H::showStatus, nullptr, nullptr, statusShown },
    Command { "mnuViewEventViewer", "&Event Viewer", "Ctrl+2", nullptr, "Show the recorded events",
        &H::showEventViewer, nullptr, nullptr, eventsShown },
    Command { "mnuViewLargeIcons", "View Lar&ge Icons", nullptr, "view_large", "Show the list as large icons",
        &H::viewLargeIcons, nullptr, nullptr, isMode<ViewMode::LargeIcons> },
    Command { "mnuViewSmallIcons", "View S&mall Icons", nullptr, "view_small", "Show the list as small icons",
        &H::viewSmallIcons, nullptr, nullptr, isMode<ViewMode::SmallIcons> },
    Command { "mnuViewList", "View &List", nullptr, "view_list", "Show the list as names in columns",
        &H::viewList, nullptr, nullptr, isMode<ViewMode::List> },
    Command { "mnuViewDetails", "View &Details", nullptr, "view_details",
        "Show the list with all its columns", &H::viewDetails, nullptr, nullptr, isMode<ViewMode::Details> },
    Command { "tbViews", "Views", nullptr, "views", "Change to the next list style", &H::nextViewMode },
    Command { "mnuViewExpandNodes", "E&xpand Nodes", "Ctrl++", "expand", "Open every node of the tree",
        &H::expandNodes },
    Command { "mnuViewCollapseNodes", "&Collapse Nodes", "Ctrl+-", "collapse", "Close every node of the tree",
        &H::collapseNodes },
    Command { "mnuViewToolbar", "&Toolbar", nullptr, nullptr, "Show or hide the toolbar", &H::toggleToolBar,
        nullptr, nullptr, toolBarShown },
    Command { "mnuViewStatusBar", "Status &Bar", nullptr, nullptr, "Show or hide the status bar",
        &H::toggleStatusBar, nullptr, nullptr, statusBarShown },
    Command { "mnuViewHTML", "&HTML Output", "Ctrl+H", "html", "Open the status page", &H::viewHTML },
    Command { "mnuViewLog", "Log &File", "Ctrl+L", "log", "Open the log file", &H::viewLog },
    Command { "mnuViewRefresh", "&Refresh", "F5", "refresh", "Read tree and list again from the database",
        &H::refresh },
    Command { "tbRefresh", "Refresh", nullptr, "refresh", "Read tree and list again from the database",
        &H::refresh },

    Command { "mnuViewOptions", "&Options...", "Ctrl+,", "options", "Change the settings of the program", &H::options,
        hasEditors, hasEditors },
    Command { "tbOptions", "Options", nullptr, "options", "Change the settings of the program", &H::options,
        hasEditors, hasEditors },

    Command { "mnuResetCounters", "&Reset Counters", nullptr, "reset", "Set all counters and states back",
        &H::resetCounters, isIdle },
    Command { "mnuCompactDatabase", "&Compact Database...", nullptr, "compact",
        "Make the database file as small as it can be", &H::compactDatabase, mayExchange },
    Command { "mnuToolsAdvancedClearEventLog", "Clear &Event Log", nullptr, "clear",
        "Delete all recorded events", &H::clearEventLog, isIdle },
    Command { "mnuToolsClearRegistry", "&Clear Registry", nullptr, nullptr, "Delete all settings",
        &H::clearRegistry, isIdle },

    Command { "mnuPortList", "&Port List...", nullptr, "view_list", "Edit the catalogue of known ports",
        &H::portList, editorsIdle, hasEditors },
    Command { "mnuHelpContentsIndex", "&Contents and Index", "F1", "help", "Open the help", &H::helpContents },
    Command { "mnuAboutKavroWebSite", "Kavro &Web Site", nullptr, nullptr, "Open the web site of the program",
        &H::webSite },
    Command { "mnuHelpAbout", "&About...", nullptr, nullptr, "Show the version of the program", &H::about,
        hasEditors, hasEditors },

    Command { "mnutvRefresh", "&Refresh", "[F5]", "refresh", "Read tree and list again from the database",
        &H::refresh },
    Command { "mnutvAddGroup", "&Add Group...", "Ins", "add", "Add a group of devices", &H::addGroup,
        addGroupIdle, mayAddGroup },
    Command { "mnutvAddDevice", "&Add Device...", "Ins", "add",
        "Add a device, or a range of addresses, to the selected group", &H::addDevice, addDeviceIdle,
        mayAddDevice },
    Command { "mnutvAddPort", "&Add Port...", "Ins", "add", "Choose what is checked on the selected device",
        &H::addPort, addPortIdle, mayAddPort },
    Command { "mnutvDisableDevice", "D&isable Device", nullptr, nullptr, "Leave the device out of the checks",
        &H::disableDevice, deviceIdle, onDevice, nodeDisabled, Scope::Tree },
    Command { "mnutvDeleteGroup", "&Delete Group", "Del", "delete", "Delete the selected group",
        &H::deleteGroup, groupIdle, onGroup, nullptr, Scope::Tree },
    Command { "mnutvDeleteDevice", "&Delete Device", "Del", "delete",
        "Delete the selected device and its checks", &H::deleteDevice, deviceIdle, onDevice, nullptr,
        Scope::Tree },
    Command { "mnutvDeletePort", "&Delete Port", "Del", "delete", "Delete the selected check", &H::deletePort,
        portIdle, onPort, nullptr, Scope::Tree },
    Command { "mnutvPortDetails", "Port De&tails", "Ctrl+D", "details",
        "Show the history of the selected check", &H::nodeDetails, nodeHasDetails, nodeHasDetails, nullptr,
        Scope::Tree },
    Command { "mnutvProperties", "&Properties", "Alt+Return", "properties", "Edit the selected object",
        &H::nodeProperties, nodeEditableIdle, nodeEditable, nullptr, Scope::Tree },

    Command { "mnulvRefresh", "&Refresh", "[F5]", "refresh", "Read tree and list again from the database",
        &H::refresh },
    Command { "mnulvRightClickDetails", "De&tails", "Ctrl+D", "details",
        "Show the history of the selected check", &H::rowDetails, rowHasDetails, rowHasDetails, nullptr,
        Scope::List },
    Command { "mnulvRightClickProperties", "&Properties", "Alt+Return", "properties",
        "Edit the selected object", &H::rowProperties, rowEditableIdle, rowEditable, nullptr, Scope::List },

    Command { "mnuSysTrayRestore", "&Restore", nullptr, "restore", "Show the window", &H::restore },
    Command { "mnuToolsListen", "&Listen", "[F9]", "listen",
        "Say a command to the character; or hold F9 while you speak", &H::toggleListening, canListen, canListen,
        isListening },
    Command { "mnuSysTrayListen", "&Listen", nullptr, "listen", "Say a command to the character",
        &H::toggleListening, canListen, canListen, isListening },
    Command { "mnuSysTrayExit", "E&xit", nullptr, "exit", "Close the program", &H::exit },
};

/** A menu's entries: a command, "-" for a line, or ">" and the name of a menu below. */
struct Menu {
    const char *name;
    const char *title;
    std::initializer_list<const char *> entries;
};

const std::array kMenus {
    Menu { "mnuFile", "&File", { "mnuFileNew", "mnuFileOpen", "mnuFileSaveAs", "-", "mnuFilemnuExit" } },
    Menu { "mnuEdit", "&Edit",
        { "mnutvAddGroup", "mnutvAddDevice", "mnutvAddPort", "-", "mnutvDisableDevice", "mnutvDeleteGroup",
            "mnutvDeleteDevice", "mnutvDeletePort", "-", "mnutvPortDetails", "mnutvProperties" } },
    Menu { "mnuMonitoring", "&Monitoring", { "mnuMonitoringOn", "mnuMonitoringOff" } },
    Menu { "mnuView", "&View",
        { "mnuViewStatus", "mnuViewEventViewer", "-", ">mnuListViewMode", "mnuViewExpandNodes",
            "mnuViewCollapseNodes", "-", "mnuViewToolbar", "mnuViewStatusBar", "-", "mnuViewHTML", "mnuViewLog", "-",
            "mnuViewRefresh", "-", "mnuViewOptions" } },
    Menu { "mnuTools", "&Tools",
        { "mnuPortList", "-", "mnuToolsListen", "-", "mnuResetCounters", "mnuCompactDatabase", ">mnuToolsAdvanced" } },
    Menu { "mnuToolsAdvanced", "&Advanced", { "mnuToolsAdvancedClearEventLog", "mnuToolsClearRegistry" } },
    Menu { "mnuHelp", "&Help", { "mnuHelpContentsIndex", "-", "mnuAboutKavroWebSite", "mnuHelpAbout" } },
    Menu { "mnuListViewMode", "List View &Mode",
        { "mnuViewLargeIcons", "mnuViewSmallIcons", "mnuViewList", "mnuViewDetails" } },
    Menu { "mnuViews", "Views",
        { "mnuViewLargeIcons", "mnuViewSmallIcons", "mnuViewList", "mnuViewDetails", "-",
            "mnuViewExpandNodes", "mnuViewCollapseNodes" } },
    Menu { "mnutvRightClick", "Tree",
        { "mnutvRefresh", "-", "mnutvAddGroup", "mnutvAddDevice", "mnutvAddPort", "mnutvDisableDevice",
            "mnutvDeleteGroup", "mnutvDeleteDevice",
            "mnutvDeletePort", "-", "mnuViewExpandNodes", "mnuViewCollapseNodes", "-", "mnutvPortDetails",
            "mnutvProperties" } },
    Menu { "mnulvRightClick", "List",
        { "mnulvRefresh", "-", ">mnulvRightClickMode", "-", "mnulvRightClickDetails",
            "mnulvRightClickProperties" } },
    Menu { "mnulvRightClickMode", "View &Mode",
        { "mnuViewLargeIcons", "mnuViewSmallIcons", "mnuViewList", "mnuViewDetails" } },
    Menu { "mnuSysTray", "Tray",
        { "mnuSysTrayRestore", "-", "mnuSysTrayMonitoringOn", "mnuSysTrayMonitoringOff", "-",
            "mnuSysTrayListen", "-", "mnuSysTrayExit" } },
};

constexpr const char *kMenuBar[]
    = { "mnuFile", "mnuEdit", "mnuMonitoring", "mnuView", "mnuTools", "mnuHelp" };
constexpr const char *kToolBar[] = { "tbOpen", "tbSaveAs", "-", "tbMonitor", "tbStop", "-", "tbViews", "tbRefresh", "-",
    "tbOptions" };

const Menu &menuNamed(QByteArrayView name)
{
    const auto found = std::find_if(
        kMenus.begin(), kMenus.end(), [&](const Menu &menu) { return QByteArrayView(menu.name) == name; });
    Q_ASSERT(found != kMenus.end());
    return *found;
}

void setShortcut(QAction &action, const char *shortcut)
{
    if (!shortcut)
        return;
    QString keys = QString::fromLatin1(shortcut);
    if (!keys.startsWith(u'[')) {
        action.setShortcut(QKeySequence(keys));
        return;
    }
    keys = keys.mid(1, keys.size() - 2);
    action.setText(action.text() + u'\t' + QKeySequence(keys).toString(QKeySequence::NativeText));
}

} // namespace

Commands::Commands(CommandHandlers &handlers, QWidget &window, QWidget &tree, QWidget &list)
    : QObject(&window)
    , m_handlers(handlers)
{
    makeActions(window, tree, list);
}

void Commands::makeActions(QWidget &window, QWidget &tree, QWidget &list)
{
    for (const Command &command : kCommands) {
        auto *action = new QAction(ImageList::tool(command.icon), tr(command.text), this);
        action->setObjectName(QString::fromLatin1(command.name));
        setShortcut(*action, command.shortcut);
        action->setStatusTip(tr(command.tip));
        action->setCheckable(command.checked != nullptr);
        if (command.scope != Scope::Window)
            action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        // Known to a widget, so that the shortcut works wherever the menus are.
        QWidget &owner = command.scope == Scope::Tree ? tree : command.scope == Scope::List ? list : window;
        owner.addAction(action);
        connect(action, &QAction::triggered, this, [this, &command] {
            const QByteArray procedure = QByteArray(command.name) + "_Click";
            Trap(procedure.constData(), [&] { (m_handlers.*command.run)(); });
            emit done();
        });
        m_actions.insert(command.name, action);
    }
}

QAction *Commands::action(const char *name) const { return m_actions.value(name); }

QList<QAction *> Commands::actions() const { return m_actions.values(); }

QMenu *Commands::makeMenu(const char *name, QWidget *parent)
{
    const Menu &menu = menuNamed(name);
    auto *made = new QMenu(tr(menu.title), parent);
    made->setObjectName(QString::fromLatin1(name));
    for (const char *entry : menu.entries) {
        if (*entry == '-')
            made->addSeparator();
        else if (*entry == '>')
            made->addMenu(makeMenu(entry + 1, made));
        else
            made->addAction(action(entry));
    }
    return made;
}

void Commands::fillMenuBar(QMenuBar &bar)
{
    for (const char *name : kMenuBar)
        bar.addMenu(makeMenu(name, &bar));
}

void Commands::fillToolBar(QToolBar &bar)
{
    for (const char *name : kToolBar) {
        if (*name == '-')
            bar.addSeparator();
        else
            bar.addAction(action(name));
    }
    auto *views = qobject_cast<QToolButton *>(bar.widgetForAction(action("tbViews")));
    views->setMenu(makeMenu("mnuViews", views));
    views->setPopupMode(QToolButton::MenuButtonPopup);
}

void Commands::update(const CommandState &state)
{
    for (const Command &command : kCommands) {
        QAction *each = action(command.name);
        each->setVisible(!command.shown || command.shown(state));
        each->setEnabled(!command.enabled || command.enabled(state));
        if (command.checked)
            each->setChecked(command.checked(state));
    }
}
