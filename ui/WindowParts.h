#pragma once

class CheckCycle;
class DeviceTree;
class Editors;
class EventList;
class QComboBox;
class QMainWindow;
class QStatusBar;
class QToolBar;
class StatusList;

/** The main window's pieces, for those who carry out its commands. All of them outlive the commands. */
struct WindowParts {
    QMainWindow &window;
    DeviceTree &tree;
    StatusList &list;
    EventList &events;
    QComboBox &views;
    QToolBar &toolBar;
    QStatusBar &statusBar;
    CheckCycle &cycle;
    Editors *editors; // may be absent
};
