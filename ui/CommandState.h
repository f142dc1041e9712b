#pragma once

#include "ui/NodeKeys.h"
#include "ui/StatusList.h"

/** What decides which commands can be had right now. */
struct CommandState {
    bool monitoring = false;
    bool checking = false; // a cycle runs
    bool canListen = false; // there is a character to talk to
    bool listening = false;
    bool fileCommand = false; // the database file is being exchanged
    NodeLevel node = NodeLevel::None; // selected in the tree
    bool editors = false; // there are any
    bool nodeDisabled = false; // a device that is switched off
    bool nodeEditable = false;
    bool nodeHasDetails = false;
    bool rowEditable = false; // selected in the list
    bool rowHasDetails = false;
    ViewMode viewMode = ViewMode::LargeIcons;
    bool eventViewer = false;
    bool toolBar = true;
    bool statusBar = true;
};
