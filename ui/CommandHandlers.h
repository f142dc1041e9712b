#pragma once

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
    {
    }

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
};
