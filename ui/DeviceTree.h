#pragma once

#include "core/Task.h"
#include "ui/NodeKeys.h"

#include <QHash>
#include <QSet>
#include <QTreeWidget>

/** tvTreeView: groups, their devices and each device's checks under one root. The database is the truth; the
   tree keeps nothing but nodes, their expansion and the selection. */
class DeviceTree : public QTreeWidget
{
    Q_OBJECT
public:
    explicit DeviceTree(QWidget *parent = nullptr);

    /** Rebuilds the whole tree and makes every check forget its pending report.
        Expansion and selection are found again by key. Errors end in ErrorHandler. */
    void Load_TreeView();
    /** Repaints images and expansion of the nodes; adds and removes nothing. Breathes between devices, and
       stops when the tree was reloaded or edited meanwhile, since it then shows the database already. */
    Task<void> Refresh_TreeView_Icons();

    NodeLevel currentLevel() const;
    QString currentKey() const;
    QString currentText() const;
    QString currentParentText() const;
    int currentImage() const;
    bool currentHasChildren() const;

    /** Makes the node current, which is a click on it. False when there is no such node. */
    bool selectNode(NodeLevel level, const QString &key);
    /** Removes the current node; its parent becomes current. */
    void removeCurrent();
    void removeNode(NodeLevel level, const QString &key);
    /** Adds a node as the last child of a node one level up; nothing when it is there already. */
    void insertNode(
        NodeLevel level, const QString &parentKey, const QString &key, const QString &text, int image);
    void setNodeText(NodeLevel level, const QString &key, const QString &text);
    /** The node click of the current node; nothing without one. */
    void clickCurrent();

    /** Image code of a node, 0 when there is none. */
    int imageOf(NodeLevel level, const QString &key) const;
    bool hasNode(NodeLevel level, const QString &key) const;
    bool isNodeExpanded(NodeLevel level, const QString &key) const;
    int nodeCount() const { return int(m_nodes.size()); }

signals:
    void NodeClick(NodeLevel level, const QString &key);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    int sizeHintForColumn(int column) const override;

private:
    class Node;
    // Levels apart, so that a device named like one of its own port numbers does not hide that port.
    using NodeId = std::pair<NodeLevel, QString>;
    struct DeviceRow {
        qint64 id;
        QString name;
        int icon;
    };
    struct Memory {
        QSet<NodeId> expanded;
        QList<NodeId> path; // the current node and its ancestors
    };

    Memory remember() const;
    void restore(const Memory &memory);
    Node *addNode(Node *parent, NodeLevel level, const QString &key, const QString &text, int image);
    void fill(bool expandOnFailure);
    void fillDevices(Node *group, qint64 groupId, bool expandOnFailure);
    void fillPorts(Node *device, qint64 deviceId);
    void expandPending();

    Task<void> refreshIcons();
    void refreshGroups();
    static QList<DeviceRow> deviceRows();
    void refreshDevice(const DeviceRow &row);
    void refreshPorts(qint64 deviceId);
    void applyExpansion(const QList<DeviceRow> &rows, bool expandOnFailure, bool collapseOnRecovery);

    void remove(Node *node);
    Node *find(NodeLevel level, const QString &key) const;
    Node &require(NodeLevel level, const QString &key) const;
    Node *current() const;
    void onCurrentChanged();
    void onItemClicked();

    QHash<NodeId, Node *> m_nodes;
    QList<Node *> m_toExpand;
    mutable int m_widest = 0; // row that was in view since the last load, in pixels
    quint64 m_generation = 0;
    bool m_loading = false;
    bool m_clickedByPress = false;
};
