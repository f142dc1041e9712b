#include "ui/EventListModel.h"

#include "core/vbMain.h"
#include "ui/ImageList.h"

using namespace Qt::StringLiterals;

namespace {

enum Column { DateColumn, TypeColumn, MessageColumn, ColumnCount };

const QStringList &columnNames()
{
    static const QStringList names { u"Date/Time"_s, u"Type"_s, u"Message"_s };
    return names;
}

} // namespace

void EventListModel::fill(QList<EventRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void EventListModel::append(const EventRow &row)
{
    beginInsertRows({}, int(m_rows.size()), int(m_rows.size()));
    m_rows.append(row);
    endInsertRows();
}

int EventListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int EventListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString EventListModel::cell(const EventRow &row, int column)
{
    switch (column) {
    case DateColumn:
        return row.when.isValid() ? GeneralDate(row.when) : QString();
    case TypeColumn:
        return row.type;
    default:
        return row.message;
    }
}

QVariant EventListModel::data(const QModelIndex &index, int role) const
{
    const EventRow &row = m_rows.at(index.row());
    const bool first = index.column() == DateColumn;
    switch (role) {
    case Qt::DisplayRole:
        return cell(row, index.column());
    case Qt::ToolTipRole: // messages may hold anything; they must not be taken for markup
        return u"<p style='white-space:pre-wrap'>"_s + row.message.toHtmlEscaped() + u"</p>"_s;
    case Qt::DecorationRole:
        return first ? QVariant(ImageList::eventImage(row.icon)) : QVariant();
    case Qt::AccessibleDescriptionRole:
        return first ? QVariant(ImageList::describeEvent(row.icon)) : QVariant();
    default:
        return {};
    }
}

QVariant EventListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return columnNames().value(section);
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags EventListModel::flags(const QModelIndex &index) const
{
    return QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
}
