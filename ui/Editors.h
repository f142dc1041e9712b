#pragma once

#include "ui/NodeKeys.h"

class QWidget;

/** The device tree and what hangs on it, as the editors see it. Keys and levels are those of the nodes. */
class EditedTree
{
public:
    virtual ~EditedTree() = default;

    virtual NodeLevel currentLevel() const = 0;
    virtual QString currentKey() const = 0;
    virtual QString currentText() const = 0;
    /** Nothing happens to a node that is not there. */
    virtual void setNodeText(NodeLevel level, const QString &key, const QString &text) = 0;
    /** Adds a node as the last child of a node of the level above; a node that is there already stays. */
    virtual void addNode(
        NodeLevel level, const QString &parentKey, const QString &key, const QString &text, int image)
        = 0;
    virtual void removeNode(NodeLevel level, const QString &key) = 0;
    /** Makes a node visible and current. */
    virtual void selectNode(NodeLevel level, const QString &key) = 0;
    /** Rebuilds the tree from the database and refills the list. */
    virtual void refreshViews() = 0;
    /** The owner of dialogs; may be null. */
    virtual QWidget *window() = 0;
};

/** What the window needs of the rooms that edit monitored objects. A build without them shows no such
 * command. Every editor is modal: these return when it is closed. */
class Editors
{
public:
    virtual ~Editors() = default;

    /** Whether a properties dialog exists for a node. */
    virtual bool canEdit(NodeLevel level, const QString &key) const = 0;
    /** Opens the properties dialog of a group, device or check. */
    virtual void properties(EditedTree &tree, NodeLevel level, const QString &key) = 0;
    /** Whether the details and history of a check can be shown. */
    virtual bool hasDetails(NodeLevel level, const QString &key) const = 0;
    virtual void details(EditedTree &tree, NodeLevel level, const QString &key) = 0;

    virtual void addGroup(EditedTree &tree) = 0;
    /** Adds a device, or a range of them, to the tree's current group; then asks for their checks. */
    virtual void addDevice(EditedTree &tree) = 0;
    /** Chooses the checks of the tree's current device. */
    virtual void addPort(EditedTree &tree) = 0;
    /** The catalogue of known ports. */
    virtual void portList(EditedTree &tree) = 0;
    virtual void about(EditedTree &tree) = 0;
    /** The settings of the program. */
    virtual void options(EditedTree &tree) = 0;
};
