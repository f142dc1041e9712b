#pragma once

#include "ui/NodeKeys.h"
#include "ui/StatusRows.h"

#include <QStackedWidget>

class QListView;
class QTreeView;
class StatusListModel;
class StatusSortModel;
class QAbstractItemView;
class QItemSelectionModel;

/** The list's display style, as stored under ViewMode. */
enum class ViewMode { LargeIcons, SmallIcons, List, Details };

/** lvListView: the children of the clicked node in one of four styles that share model and selection. */
class StatusList : public QStackedWidget
{
    Q_OBJECT
public:
    explicit StatusList(QWidget *parent = nullptr);

    /** The root was clicked: all groups. */
    void Update_Groups();
    /** A group was clicked; key is the group node's. */
    void Update_Devices(const QString &key);
    /** A device was clicked. */
    void Update_Ports(const QString &key);
    /** A check was clicked: this check alone. */
    void Update_Port(const QString &key);

    ViewMode viewMode() const { return m_mode; }
    void setViewMode(ViewMode mode);

    /** The rows as shown, top to bottom. */
    QList<StatusRow> shownRows() const;
    QStringList columns() const;
    /** The selected row; level None without one. */
    StatusRow currentRow() const;
    void selectRow(int shownRow);
    /** The view of the present style. */
    QAbstractItemView *view() const;

signals:
    void rowActivated(NodeLevel level, const QString &key);
    void currentRowChanged();
    void contextMenuWanted(const QPoint &globalPos);

private:
    void setUpDetails();
    void setUpIcons();
    void setUpView(QAbstractItemView &view);
    void show(NodeLevel shown, const QString &key, const QStringList &columns, const QList<StatusRow> &rows);
    void sizeColumns(bool sameNode);
    void sizeCells();
    void activate(const QModelIndex &index);

    StatusListModel *m_model;
    StatusSortModel *m_sorted;
    QTreeView *m_details;
    QListView *m_icons;
    QItemSelectionModel *m_selection;
    ViewMode m_mode = ViewMode::LargeIcons;
    std::pair<NodeLevel, QString> m_shown { NodeLevel::None, {} };
    QList<int> m_fitted; // the widths that the columns were given, unlike those that the operator chose
};
