#include "ui/DeviceTree.h"

#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"
#include "core/Waits.h"
#include "core/vbMain.h"
#include "ui/ImageList.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

/** A node draws itself from its code, so that an icon change is one number. */
class DeviceTree::Node : public QTreeWidgetItem
{
public:
    Node(NodeLevel nodeLevel, const QString &nodeKey, const QString &nodeText, int nodeImage)
        : level(nodeLevel)
        , key(nodeKey)
        , image(nodeImage)
        , m_text(nodeText)
    {
    }

    QVariant data(int column, int role) const override
    {
        switch (role) {
        case Qt::DisplayRole:
            return m_text;
        case Qt::DecorationRole:
            return ImageList::image(image);
        case Qt::AccessibleDescriptionRole:
            return ImageList::describe(image);
        case Qt::UserRole:
            return key;
        default:
            return QTreeWidgetItem::data(column, role);
        }
    }
    void setImage(int code)
    {
        if (code == image)
            return;
        image = code;
        emitDataChanged();
    }
    void setText(const QString &text)
    {
        m_text = text;
        emitDataChanged();
    }
    Node *parentNode() const { return static_cast<Node *>(parent()); }

    const NodeLevel level;
    const QString key;
    int image;

private:
    QString m_text;
};

namespace {

constexpr long kElementNotFound = 35601;
constexpr int kIndentation = 16;

bool option(const QString &key) { return GetSettingBool(u"Options"_s, key); }

int codeOf(const dao::Value &value) { return value.isNull() ? 0 : int(value.integer()); }

QString aliasOrName(const dao::Recordset &device)
{
    const QString alias = device.Field(u"Device_Alias"_s).text();
    return alias.isEmpty() ? device.Field(u"Device_Name"_s).text() : alias;
}

} // namespace

DeviceTree::DeviceTree(QWidget *parent)
    : QTreeWidget(parent)
{
    setObjectName(u"tvTreeView"_s);
    setAccessibleName(tr("Monitored devices"));
    setColumnCount(1);
    header()->hide();
    // Names are shown whole; what does not fit is scrolled to. Only the rows in view are measured.
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setResizeContentsPrecision(0);
    setTextElideMode(Qt::ElideNone);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setIndentation(kIndentation);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QTreeWidget::currentItemChanged, this, &DeviceTree::onCurrentChanged);
    connect(this, &QTreeWidget::itemClicked, this, &DeviceTree::onItemClicked);
}

// Load_TreeView

void DeviceTree::Load_TreeView()
{
    Trap("Load_TreeView", [this] {
        const bool expandOnFailure = option(u"ExpandOnFailure"_s);
        // Whatever still fails after a reload counts as a new failure.
        db().Execute(u"UPDATE tblPortStatus SET Port_Mode = 0, Port_Icon_Flag = 0"_s, dao::dbFailOnError);

        const QScopedValueRollback loading(m_loading, true);
        const Memory memory = remember();
        ++m_generation;
        setUpdatesEnabled(false);
        clear();
        m_nodes.clear();
        m_toExpand.clear();
        m_widest = 0;
        fill(expandOnFailure);
        restore(memory);
        setUpdatesEnabled(true);
    });
}

DeviceTree::Memory DeviceTree::remember() const
{
    Memory memory;
    for (auto it = m_nodes.cbegin(); it != m_nodes.cend(); ++it) {
        if (it.value()->childCount() > 0 && it.value()->isExpanded())
            memory.expanded.insert(it.key());
    }
    for (const Node *node = current(); node; node = node->parentNode())
        memory.path.append({ node->level, node->key });
    return memory;
}

void DeviceTree::restore(const Memory &memory)
{
    for (const NodeId &id : memory.expanded) {
        if (Node *node = m_nodes.value(id))
            m_toExpand.append(node);
    }
    expandPending();
    // A node that is gone hands the selection to its nearest surviving ancestor.
    for (const NodeId &id : memory.path) {
        if (Node *node = m_nodes.value(id)) {
            setCurrentItem(node);
            return;
        }
    }
    setCurrentItem(topLevelItem(0));
}

DeviceTree::Node *DeviceTree::addNode(
    Node *parent, NodeLevel level, const QString &key, const QString &text, int image)
{
    Node *node = new Node(level, key, text, image);
    if (parent)
        parent->addChild(node);
    m_nodes.insert({ level, key }, node);
    return node;
}

void DeviceTree::fill(bool expandOnFailure)
{
    // The branch is built before the view sees it: one insertion instead of thousands.
    Node *root = addNode(nullptr, NodeLevel::Root, keys::root(), u"Monitored Devices"_s, status::ImageRoot);
    std::unique_ptr<Node> owner(root);
    auto groups = db().OpenRecordset(u"Select * FROM tblGroup ORDER BY Group_Label"_s);
    for (; !groups.Eof(); groups.MoveNext()) {
        const qint64 id = groups.Field(u"Group_ID"_s).integer();
        Node *group = addNode(root, NodeLevel::Group, keys::group(id), groups.Field(u"Group_Label"_s).text(),
            codeOf(groups.Field(u"Group_Icon"_s)));
        fillDevices(group, id, expandOnFailure);
    }
    groups.Close();
    addTopLevelItem(owner.release());
    m_toExpand.append(root);
}

void DeviceTree::fillDevices(Node *group, qint64 groupId, bool expandOnFailure)
{
    auto devices = db().OpenRecordset(u"Select * FROM tblDevices WHERE Group_ID = "_s
        + QString::number(groupId) + u" ORDER BY Device_Alias, Device_Name"_s);
    for (; !devices.Eof(); devices.MoveNext()) {
        const qint64 id = devices.Field(u"Device_ID"_s).integer();
        const int icon = codeOf(devices.Field(u"Device_Icon"_s));
        Node *device = addNode(group, NodeLevel::Device,
            keys::device(id, devices.Field(u"Device_Name"_s).text()), aliasOrName(devices), icon);
        // Greater than: recovered and disabled devices are opened as well.
        if (icon > status::DeviceOk && expandOnFailure)
            m_toExpand << device << group;
        fillPorts(device, id);
    }
    devices.Close();
}

void DeviceTree::fillPorts(Node *device, qint64 deviceId)
{
    auto ports = db().OpenRecordset(
        u"SELECT tblPortMain.Device_ID, tblPortMain.Port_ID, tblPortMain.Port_Num, tblPortMain.Port_Type,"
        " tblPortStatus.Port_Icon FROM tblPortMain, tblPortStatus"
        " WHERE tblPortMain.Port_ID = tblPortStatus.Port_ID AND tblPortMain.Device_ID = "_s
        + QString::number(deviceId) + u" ORDER BY Port_Num"_s);
    for (; !ports.Eof(); ports.MoveNext()) {
        const QString number = ports.Field(u"Port_Num"_s).text();
        addNode(device, NodeLevel::Port, keys::port(deviceId, number),
            ports.Field(u"Port_Type"_s).text() + u':' + number, codeOf(ports.Field(u"Port_Icon"_s)));
    }
    ports.Close();
}

void DeviceTree::expandPending()
{
    // While a layout is pending, opening a node costs nothing; all of them are then laid out once.
    scheduleDelayedItemsLayout();
    for (Node *node : std::as_const(m_toExpand))
        node->setExpanded(true);
    m_toExpand.clear();
}

// Refresh_TreeView_Icons

Task<void> DeviceTree::Refresh_TreeView_Icons() { return Trap("Refresh_TreeView_Icons", refreshIcons()); }

Task<void> DeviceTree::refreshIcons()
{
    const bool expandOnFailure = option(u"ExpandOnFailure"_s);
    const bool collapseOnRecovery = option(u"CollapseOnRecovery"_s);
    const quint64 generation = m_generation;
    refreshGroups();
    const QList<DeviceRow> rows = deviceRows();
    waits::Slice slice;
    for (const DeviceRow &row : rows) {
        co_await slice.breathe();
        if (m_generation != generation)
            co_return;
        refreshDevice(row);
    }
    applyExpansion(rows, expandOnFailure, collapseOnRecovery);
}

void DeviceTree::refreshGroups()
{
    auto groups = db().OpenRecordset(u"Select Group_Icon, Group_ID FROM tblGroup ORDER BY Group_Icon"_s);
    for (; !groups.Eof(); groups.MoveNext()) {
        require(NodeLevel::Group, keys::group(groups.Field(u"Group_ID"_s).integer()))
            .setImage(codeOf(groups.Field(u"Group_Icon"_s)));
    }
    groups.Close();
}

QList<DeviceTree::DeviceRow> DeviceTree::deviceRows()
{
    QList<DeviceRow> rows;
    auto devices = db().OpenRecordset(
        u"Select Device_Icon, Device_ID, Device_Name FROM tblDevices ORDER BY Device_Icon"_s);
    for (; !devices.Eof(); devices.MoveNext()) {
        rows.append({ devices.Field(u"Device_ID"_s).integer(), devices.Field(u"Device_Name"_s).text(),
            codeOf(devices.Field(u"Device_Icon"_s)) });
    }
    devices.Close();
    return rows;
}

void DeviceTree::refreshDevice(const DeviceRow &row)
{
    require(NodeLevel::Device, keys::device(row.id, row.name)).setImage(row.icon);
    refreshPorts(row.id);
}

void DeviceTree::refreshPorts(qint64 deviceId)
{
    auto ports = db().OpenRecordset(
        u"Select tblPortMain.Port_Num, tblPortStatus.Port_Icon FROM tblPortMain RIGHT JOIN tblPortStatus"
        " ON tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortMain.Device_ID = "_s
        + QString::number(deviceId));
    for (; !ports.Eof(); ports.MoveNext()) {
        require(NodeLevel::Port, keys::port(deviceId, ports.Field(u"Port_Num"_s).text()))
            .setImage(codeOf(ports.Field(u"Port_Icon"_s)));
    }
    ports.Close();
}

/** Healthy devices come first in the rows, so that a group which they close is opened again by one with
   problems. Only the outcome reaches the view: otherwise such a group would flicker at every cycle. */
void DeviceTree::applyExpansion(const QList<DeviceRow> &rows, bool expandOnFailure, bool collapseOnRecovery)
{
    QHash<Node *, bool> outcome;
    for (const DeviceRow &row : rows) {
        const bool collapse = row.icon == status::DeviceOk && collapseOnRecovery;
        const bool expand = row.icon == status::DeviceProblems && expandOnFailure;
        if (!collapse && !expand)
            continue;
        Node &device = require(NodeLevel::Device, keys::device(row.id, row.name));
        outcome[device.parentNode()] = expand;
        outcome[&device] = expand;
    }
    outcome.removeIf([](const auto &entry) { return entry.key()->isExpanded() == entry.value(); });
    if (outcome.isEmpty())
        return;
    scheduleDelayedItemsLayout();
    for (auto it = outcome.cbegin(); it != outcome.cend(); ++it)
        it.key()->setExpanded(it.value());
}

// Nodes

DeviceTree::Node *DeviceTree::find(NodeLevel level, const QString &key) const
{
    return m_nodes.value({ level, key });
}

DeviceTree::Node &DeviceTree::require(NodeLevel level, const QString &key) const
{
    Node *node = find(level, key);
    if (!node)
        throw VbError(kElementNotFound, u"Element not found"_s);
    return *node;
}

DeviceTree::Node *DeviceTree::current() const { return static_cast<Node *>(currentItem()); }

NodeLevel DeviceTree::currentLevel() const
{
    // Told by ancestry, not by the key: a device may carry any name.
    int depth = 0;
    for (const QTreeWidgetItem *item = currentItem(); item; item = item->parent())
        ++depth;
    return NodeLevel(depth);
}

QString DeviceTree::currentKey() const { return current() ? current()->key : QString(); }

QString DeviceTree::currentText() const { return current() ? current()->text(0) : QString(); }

QString DeviceTree::currentParentText() const
{
    return current() && current()->parent() ? current()->parent()->text(0) : QString();
}

int DeviceTree::currentImage() const { return current() ? current()->image : 0; }

bool DeviceTree::currentHasChildren() const { return current() && current()->childCount() > 0; }

bool DeviceTree::selectNode(NodeLevel level, const QString &key)
{
    Node *node = find(level, key);
    if (!node)
        return false;
    if (node == current()) {
        clickCurrent();
        return true;
    }
    setCurrentItem(node);
    scrollToItem(node);
    return true;
}

void DeviceTree::removeCurrent() { remove(current()); }

void DeviceTree::removeNode(NodeLevel level, const QString &key) { remove(find(level, key)); }

void DeviceTree::remove(Node *node)
{
    if (!node || !node->parent())
        return;
    ++m_generation;
    const QScopedValueRollback loading(m_loading, true);
    Node *parent = node->parentNode();
    bool currentGoes = false;
    QList<Node *> doomed { node };
    for (int i = 0; i < doomed.size(); ++i) {
        Node *victim = doomed.at(i);
        currentGoes |= victim == current();
        m_nodes.remove({ victim->level, victim->key });
        for (int child = 0; child < victim->childCount(); ++child)
            doomed.append(static_cast<Node *>(victim->child(child)));
    }
    delete node;
    if (currentGoes)
        setCurrentItem(parent);
}

void DeviceTree::insertNode(
    NodeLevel level, const QString &parentKey, const QString &key, const QString &text, int image)
{
    if (find(level, key))
        return;
    ++m_generation;
    addNode(&require(NodeLevel(int(level) - 1), parentKey), level, key, text, image);
}

void DeviceTree::setNodeText(NodeLevel level, const QString &key, const QString &text)
{
    if (Node *node = find(level, key))
        node->setText(text);
}

int DeviceTree::imageOf(NodeLevel level, const QString &key) const
{
    const Node *node = find(level, key);
    return node ? node->image : 0;
}

bool DeviceTree::hasNode(NodeLevel level, const QString &key) const { return find(level, key) != nullptr; }

bool DeviceTree::isNodeExpanded(NodeLevel level, const QString &key) const
{
    const Node *node = find(level, key);
    return node && node->isExpanded();
}

// Clicks

void DeviceTree::clickCurrent()
{
    if (const Node *node = current())
        emit NodeClick(currentLevel(), node->key);
}

void DeviceTree::onCurrentChanged()
{
    if (m_loading)
        return;
    m_clickedByPress = true;
    clickCurrent();
}

void DeviceTree::onItemClicked()
{
    // A press that moved the selection has filled the list already.
    if (!std::exchange(m_clickedByPress, false))
        clickCurrent();
}

void DeviceTree::resizeEvent(QResizeEvent *event)
{
    // A short list of short names still fills the pane, so that the selection does.
    header()->setMinimumSectionSize(viewport()->width());
    QTreeWidget::resizeEvent(event);
}

/** Never less than before: a scroll bar that comes because of a wide row at the bottom covers that row, and would go
   and come again for ever. */
int DeviceTree::sizeHintForColumn(int column) const
{
    m_widest = std::max(m_widest, QTreeWidget::sizeHintForColumn(column));
    return m_widest;
}

void DeviceTree::mousePressEvent(QMouseEvent *event)
{
    m_clickedByPress = false;
    QTreeWidget::mousePressEvent(event);
}
