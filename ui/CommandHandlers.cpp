#include "ui/CommandHandlers.h"

#include "monitor/CheckCycle.h"
#include "ui/DeviceTree.h"
#include "ui/Editors.h"
#include "ui/EventList.h"
#include "ui/HelpPages.h"
#include "ui/StatusList.h"

#include "core/Addresses.h"
#include "core/Announcer.h"
#include "core/Dialogs.h"
#include "core/Settings.h"
#include "core/vbMain.h"

#include <QComboBox>
#include <QFileInfo>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolBar>

using namespace Qt::StringLiterals;

void CommandHandlers::fileNew() { m_files.announceNew(); }

void CommandHandlers::fileOpen() { m_files.mnuFileOpen(); }

void CommandHandlers::fileSaveAs() { m_files.mnuFileSaveAs(); }

void CommandHandlers::compactDatabase() { m_files.mnuCompactDatabase(); }

void CommandHandlers::exit() { m_parts.window.close(); }

void CommandHandlers::monitoringOn() { m_parts.cycle.Monitor_Initialize(); }

void CommandHandlers::monitoringOff() { m_parts.cycle.Monitor_Stop(); }

// Views

void CommandHandlers::refresh()
{
    m_parts.tree.Load_TreeView();
    m_parts.tree.clickCurrent();
    if (m_parts.events.isVisible())
        m_parts.events.Load_EventLog();
}

void CommandHandlers::showView(int index)
{
    m_parts.views.setCurrentIndex(index);
    // The selector's own signal is silent when the view is shown already, but the focus was still asked for.
    emit m_parts.views.activated(index);
}

void CommandHandlers::showStatus() { showView(0); }

void CommandHandlers::showEventViewer() { showView(1); }

void CommandHandlers::setViewMode(ViewMode mode)
{
    m_parts.list.setViewMode(mode);
    SaveSetting(u"Settings"_s, u"ViewMode"_s, QString::number(int(mode)));
}

void CommandHandlers::viewLargeIcons() { setViewMode(ViewMode::LargeIcons); }

void CommandHandlers::viewSmallIcons() { setViewMode(ViewMode::SmallIcons); }

void CommandHandlers::viewList() { setViewMode(ViewMode::List); }

void CommandHandlers::viewDetails() { setViewMode(ViewMode::Details); }

void CommandHandlers::nextViewMode()
{
    constexpr int modes = int(ViewMode::Details) + 1;
    setViewMode(ViewMode((int(m_parts.list.viewMode()) + 1) % modes));
}

void CommandHandlers::expandNodes() { m_parts.tree.expandAll(); }

void CommandHandlers::collapseNodes()
{
    m_parts.tree.collapseAll();
    m_parts.tree.expandToDepth(0); // a closed root would leave nothing to look at
}

void CommandHandlers::toggleToolBar() { m_parts.toolBar.setVisible(m_parts.toolBar.isHidden()); }

void CommandHandlers::toggleStatusBar() { m_parts.statusBar.setVisible(m_parts.statusBar.isHidden()); }

void CommandHandlers::restore()
{
    m_parts.window.setWindowState(m_parts.window.windowState() & ~Qt::WindowMinimized);
    m_parts.window.show();
    m_parts.window.raise();
    m_parts.window.activateWindow();
}

void CommandHandlers::toggleListening()
{
    Announcer *announcer = vbMain().announcer;
    announcer->listen(!announcer->isListening());
}

// Editors

void CommandHandlers::addGroup() { m_parts.editors->addGroup(m_editedTree); }

void CommandHandlers::addDevice() { m_parts.editors->addDevice(m_editedTree); }

void CommandHandlers::addPort() { m_parts.editors->addPort(m_editedTree); }

void CommandHandlers::portList() { m_parts.editors->portList(m_editedTree); }

void CommandHandlers::about() { m_parts.editors->about(m_editedTree); }

void CommandHandlers::options() { m_parts.editors->options(m_editedTree); }

void CommandHandlers::helpContents()
{
    const QString help = nativePath(ProgramFolder() + u"\\Kavro2000.chm"_s);
    if (QFileInfo::exists(help) && vbMain().dialogs->hasProgramFor(help))
        ShellOpen(u"file://"_s + help);
    else
        helppages::show(u"index.html"_s);
}

void CommandHandlers::webSite()
{
    if (!ShellOpen(kWebSite))
        vbMain().dialogs->messageBox(QObject::tr("No program was found that shows web sites. The address is:")
                + u"\r\n"_s + kWebSite,
            AppTitle(), Dialogs::Information, Dialogs::Ok);
}

void CommandHandlers::nodeProperties()
{
    m_parts.editors->properties(m_editedTree, m_parts.tree.currentLevel(), m_parts.tree.currentKey());
}

void CommandHandlers::nodeDetails()
{
    m_parts.editors->details(m_editedTree, m_parts.tree.currentLevel(), m_parts.tree.currentKey());
}

void CommandHandlers::rowProperties()
{
    const StatusRow row = m_parts.list.currentRow();
    m_parts.editors->properties(m_editedTree, row.level, row.key);
}

void CommandHandlers::rowDetails()
{
    const StatusRow row = m_parts.list.currentRow();
    m_parts.editors->details(m_editedTree, row.level, row.key);
}
