#include "ui/StatusList.h"

#include "core/Trap.h"
#include "ui/EmptyHint.h"
#include "ui/StatusListModel.h"

#include <QHeaderView>
#include <QListView>
#include <QScrollBar>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLargeIcon = 48;
constexpr int kSmallIcon = 20;
constexpr int kLargeCellChars = 15;
constexpr int kCellMargin = 12;
constexpr int kWidestCell = 240;
constexpr int kNarrowestColumn = 70;
constexpr int kWidestColumn = 280;

const QStringList &nodeColumns()
{
    static const QStringList columns { u"Name"_s, u"Type"_s, u"Description"_s, u"Status"_s };
    return columns;
}

const QStringList &portColumns()
{
    static const QStringList columns = nodeColumns() + QStringList { u"Last Error"_s, u"Summary"_s };
    return columns;
}

} // namespace

StatusList::StatusList(QWidget *parent)
    : QStackedWidget(parent)
    , m_model(new StatusListModel(this))
    , m_sorted(new StatusSortModel(this))
    , m_details(new QTreeView(this))
    , m_icons(new QListView(this))
{
    setObjectName(u"lvListView"_s);
    setAccessibleName(tr("Status list"));
    m_sorted->setSourceModel(m_model);
    m_details->setModel(m_sorted);
    m_icons->setModel(m_sorted);
    m_selection = m_details->selectionModel();
    m_icons->setSelectionModel(m_selection);
    setUpDetails();
    setUpIcons();
    for (QAbstractItemView *each :
        { static_cast<QAbstractItemView *>(m_details), static_cast<QAbstractItemView *>(m_icons) })
        setUpView(*each);
    connect(m_selection, &QItemSelectionModel::currentChanged, this, &StatusList::currentRowChanged);
    connect(m_sorted, &QAbstractItemModel::modelReset, this, &StatusList::currentRowChanged);
    setViewMode(m_mode);
}

void StatusList::setUpDetails()
{
    m_details->setObjectName(u"lvListViewDetails"_s);
    m_details->setRootIsDecorated(false);
    m_details->setUniformRowHeights(true);
    m_details->setAlternatingRowColors(true);
    m_details->setAllColumnsShowFocus(true);
    m_details->setIconSize({ kSmallIcon, kSmallIcon });
    QHeaderView *header = m_details->header();
    header->setSortIndicatorClearable(true); // a third click brings back the database's order
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->setHighlightSections(false);
    m_details->setSortingEnabled(true);
}

void StatusList::setUpIcons()
{
    m_icons->setObjectName(u"lvListViewIcons"_s);
    m_icons->setResizeMode(QListView::Adjust);
    m_icons->setModelColumn(0);
}

void StatusList::setUpView(QAbstractItemView &each)
{
    each.setAccessibleName(tr("Status list"));
    each.setSelectionMode(QAbstractItemView::SingleSelection);
    each.setSelectionBehavior(QAbstractItemView::SelectRows);
    each.setEditTriggers(QAbstractItemView::NoEditTriggers);
    each.setTextElideMode(Qt::ElideRight);
    each.setContextMenuPolicy(Qt::CustomContextMenu);
    each.setFrameShape(QFrame::StyledPanel);
    new EmptyHint(each, tr("Nothing to show here yet."));
    addWidget(&each);
    connect(&each, &QAbstractItemView::activated, this, &StatusList::activate);
    connect(&each, &QWidget::customContextMenuRequested, this,
        [this, &each](const QPoint &pos) { emit contextMenuWanted(each.viewport()->mapToGlobal(pos)); });
}

// Fills

void StatusList::Update_Groups()
{
    Trap("Update_Groups", [&] { show(NodeLevel::Root, keys::root(), nodeColumns(), rows::groups()); });
}

void StatusList::Update_Devices(const QString &key)
{
    Trap("Update_Devices",
        [&] { show(NodeLevel::Group, key, nodeColumns(), rows::devices(keys::after(key))); });
}

void StatusList::Update_Ports(const QString &key)
{
    Trap(
        "Update_Ports", [&] { show(NodeLevel::Device, key, portColumns(), rows::ports(keys::before(key))); });
}

void StatusList::Update_Port(const QString &key)
{
    Trap("Update_Port",
        [&] { show(NodeLevel::Port, key, portColumns(), rows::port(keys::before(key), keys::after(key))); });
}

void StatusList::show(
    NodeLevel shown, const QString &key, const QStringList &columns, const QList<StatusRow> &rows)
{
    const bool sameNode = m_shown == std::pair(shown, key);
    const StatusRow before = currentRow();
    const int scrolled = view()->verticalScrollBar()->value();
    m_model->fill(columns, rows);
    m_shown = { shown, key };
    sizeCells();
    sizeColumns(sameNode);
    if (!sameNode)
        return;
    // The same list after a check: the operator keeps the place.
    const QList<StatusRow> now = shownRows();
    for (int i = 0; i < now.size(); ++i) {
        if (now.at(i).level == before.level && now.at(i).key == before.key)
            selectRow(i);
    }
    view()->verticalScrollBar()->setValue(scrolled);
}

/** Fits the columns to their texts. Those of a list that is shown already only grow, for "Failed since" is longer than
 * "Connected"; one that the operator has dragged stays. */
void StatusList::sizeColumns(bool sameNode)
{
    m_fitted.resize(m_sorted->columnCount());
    for (int column = 0; column < m_sorted->columnCount() - 1; ++column) {
        const int before = m_details->columnWidth(column);
        if (sameNode && before != m_fitted.at(column))
            continue;
        m_details->resizeColumnToContents(column);
        const int least = sameNode ? before : kNarrowestColumn;
        m_fitted[column] = qMax(least, qMin(m_details->columnWidth(column), kWidestColumn));
        m_details->setColumnWidth(column, m_fitted.at(column));
    }
}

/** All cells of the icon styles are equally wide, as wide as the longest name asks for within reason. */
void StatusList::sizeCells()
{
    const QFontMetrics metrics = m_icons->fontMetrics();
    if (m_mode == ViewMode::LargeIcons) {
        m_icons->setGridSize({ metrics.averageCharWidth() * kLargeCellChars + kCellMargin,
            kLargeIcon + 2 * metrics.lineSpacing() + 2 * kCellMargin });
        return;
    }
    int widest = kNarrowestColumn;
    for (int row = 0; row < m_sorted->rowCount(); ++row)
        widest = qMax(widest, metrics.horizontalAdvance(m_sorted->index(row, 0).data().toString()));
    m_icons->setGridSize({ qMin(widest, kWidestCell) + kSmallIcon + 2 * kCellMargin,
        qMax(kSmallIcon, metrics.height()) + kCellMargin / 2 });
}

// Styles

void StatusList::setViewMode(ViewMode mode)
{
    const bool focused = view()->hasFocus();
    m_mode = mode;
    const bool large = mode == ViewMode::LargeIcons;
    m_icons->setViewMode(large ? QListView::IconMode : QListView::ListMode);
    m_icons->setMovement(QListView::Static);
    m_icons->setFlow(mode == ViewMode::List ? QListView::TopToBottom : QListView::LeftToRight);
    m_icons->setWrapping(true);
    m_icons->setResizeMode(QListView::Adjust);
    m_icons->setWordWrap(large);
    const int size = large ? kLargeIcon : kSmallIcon;
    m_icons->setIconSize({ size, size });
    sizeCells();
    setCurrentWidget(view());
    setFocusProxy(view());
    if (focused)
        view()->setFocus();
}

QAbstractItemView *StatusList::view() const
{
    if (m_mode == ViewMode::Details)
        return m_details;
    return m_icons;
}

// Rows

QStringList StatusList::columns() const { return m_model->columns(); }

QList<StatusRow> StatusList::shownRows() const
{
    QList<StatusRow> list;
    for (int row = 0; row < m_sorted->rowCount(); ++row)
        list.append(m_model->row(m_sorted->mapToSource(m_sorted->index(row, 0)).row()));
    return list;
}

StatusRow StatusList::currentRow() const
{
    const QModelIndex current = m_sorted->mapToSource(m_selection->currentIndex());
    return current.isValid() ? m_model->row(current.row()) : StatusRow();
}

void StatusList::selectRow(int shownRow)
{
    m_selection->setCurrentIndex(
        m_sorted->index(shownRow, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void StatusList::activate(const QModelIndex &index)
{
    const StatusRow &row = m_model->row(m_sorted->mapToSource(index).row());
    // By value: whoever answers may refill the list.
    const QString key = row.key;
    emit rowActivated(row.level, key);
}
