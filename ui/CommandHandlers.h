#pragma once

#include "ui/DatabaseFiles.h"
#include "ui/NodeKeys.h"
#include "ui/WindowTree.h"

enum class ViewMode;

/** What the commands do. Whoever calls a handler traps its errors under the command's name. */
class CommandHandlers
{
public:
    explicit CommandHandlers(const WindowParts &parts)
        : m_parts(parts)
        , m_editedTree(parts)
        , m_files(parts)
    {
    }

    void fileNew();
    void fileOpen();
    void fileSaveAs();
    void compactDatabase();
    /** Whether a command that works on the database file has not ended yet. */
    bool fileCommandRuns() const { return m_files.isBusy(); }

    void exit();
    void monitoringOn();
    void monitoringOff();

    void refresh();
    void showStatus();
    void showEventViewer();
    void viewLargeIcons();
    void viewSmallIcons();
    void viewList();
    void viewDetails();
    void nextViewMode();
    void expandNodes();
    void collapseNodes();
    void toggleToolBar();
    void toggleStatusBar();
    void viewHTML();
    void viewLog();

    void resetCounters();
    void clearEventLog();
    void clearRegistry();

    void deleteGroup();
    void deleteDevice();
    void deletePort();
    /** Flips the selected device between disabled and enabled. */
    void disableDevice();

    void addGroup();
    void addDevice();
    void addPort();
    void portList();
    void about();
    void options();
    void helpContents();
    void webSite();
    void nodeProperties();
    void nodeDetails();
    void rowProperties();
    void rowDetails();

    void restore();
    void toggleListening();

    /** Disables (text "Disabled") or enables (any other text) a device with all its checks. */
    static void DisableDevice(const QString &key, const QString &text);

private:
    void setViewMode(ViewMode mode);
    void showView(int index);
    WindowParts m_parts;
    WindowTree m_editedTree;
    DatabaseFiles m_files;
};
