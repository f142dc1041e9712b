#pragma once

#include "core/Task.h"

#include <QDateTime>
#include <QString>

enum class MonitoringState { Off, On, Checking };

/** What the operator may ask the announcer for, and the window does. */
enum class OperatorCommand { Restore, Minimize, ShowLog, ShowHTML, MonitoringOn, MonitoringOff };

/** What the engine and the notifiers need of the window. frmMain implements it; tests record it. */
class MainWindow
{
public:
    virtual ~MainWindow() = default;

    /** First panel of the status bar: progress. Called very often; the window paints it at its own pace. */
    virtual void setStatusText(const QString &text) = 0;
    /** Last panel of the status bar: "Ready". */
    virtual void setReadyText(const QString &text) = 0;
    /** Middle panel: what the announcer says, while no character says it. */
    virtual void setAnnouncement(const QString &text) = 0;
    /** Menus, toolbar buttons and tray menu. */
    virtual void setMonitoringState(MonitoringState state) = 0;
    virtual void setTrayTip(const QString &tip) = 0;
    /** Image number of the main image list (StatusCodes.h). */
    virtual void setTrayImage(int image) = 0;
    /** Appends a row to the event list and scrolls it into view. */
    virtual void addEventRow(int icon, const QDateTime &when, const QString &type, const QString &message) = 0;
    virtual void Load_EventLog() = 0;
    /** Repaints the images of existing tree nodes; breathes while it works. */
    virtual Task<void> Refresh_TreeView_Icons() = 0;
    /** Runs the node click of the tree's current node, so that the list shows the new state. */
    virtual void reselectNode() = 0;
    virtual void carryOut(OperatorCommand command) = 0;
    /** Devices with problems as of the last roll-up; below 1: none. */
    virtual int problemCount() const = 0;
    /** Runs the window's unload handling without any question. */
    virtual void unload() = 0;
};
