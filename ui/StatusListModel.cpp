#include "ui/StatusListModel.h"

#include "ui/ImageList.h"

using namespace Qt::StringLiterals;

void StatusListModel::fill(const QStringList &columns, const QList<StatusRow> &rows)
{
    beginResetModel();
    m_columns = columns;
    m_rows = rows;
    endResetModel();
}

int StatusListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int StatusListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant StatusListModel::data(const QModelIndex &index, int role) const
{
    const StatusRow &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return row.cells.value(index.column());
    case Qt::ToolTipRole:
        return toolTip(row);
    case Qt::DecorationRole:
        return index.column() == 0 ? QVariant(ImageList::image(row.image)) : QVariant();
    case Qt::AccessibleDescriptionRole:
        return index.column() == 0 ? QVariant(ImageList::describe(row.image)) : QVariant();
    default:
        return {};
    }
}

/** Everything the row holds, one line a column: the icon views show no more than the name. */
QString StatusListModel::toolTip(const StatusRow &row) const
{
    QStringList lines;
    for (int column = 0; column < m_columns.size(); ++column) {
        const QString cell = row.cells.value(column).trimmed();
        if (!cell.isEmpty())
            lines.append(m_columns.at(column) + u": "_s + cell);
    }
    // Texts come from the database and must not be taken for markup.
    return u"<p style='white-space:pre-wrap'>"_s + lines.join(u'\n').toHtmlEscaped() + u"</p>"_s;
}

QVariant StatusListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return m_columns.value(section);
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags StatusListModel::flags(const QModelIndex &index) const
{
    return QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
}

/** Without a language the collator compares bytes and knows no numbers. */
static QLocale sortingLocale()
{
    const QLocale system = QLocale::system();
    return system.language() == QLocale::C ? QLocale(QLocale::English) : system;
}

StatusSortModel::StatusSortModel(QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_collator(sortingLocale())
{
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
}

bool StatusSortModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const auto *rows = static_cast<const StatusListModel *>(sourceModel());
    if (rows->row(left.row()).isParent != rows->row(right.row()).isParent)
        return rows->row(left.row()).isParent == (sortOrder() == Qt::AscendingOrder);
    return m_collator.compare(left.data().toString(), right.data().toString()) < 0;
}
