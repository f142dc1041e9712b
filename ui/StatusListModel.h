#pragma once

#include "ui/StatusRows.h"

#include <QAbstractTableModel>
#include <QCollator>
#include <QSortFilterProxyModel>

/** The rows of the status list, in the order of their statement. */
class StatusListModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    /** Columns and rows are cleared and set anew. */
    void fill(const QStringList &columns, const QList<StatusRow> &rows);
    const StatusRow &row(int index) const { return m_rows.at(index); }
    QStringList columns() const { return m_columns; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    QString toolTip(const StatusRow &row) const;
    QStringList m_columns;
    QList<StatusRow> m_rows;
};

/** Sorts by a clicked column; numbers inside names count as numbers, and the parent's row stays on top. */
class StatusSortModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit StatusSortModel(QObject *parent = nullptr);

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    QCollator m_collator;
};
