#pragma once

#include <QAbstractTableModel>
#include <QDateTime>

struct EventRow {
    int icon = 0;
    QDateTime when;
    QString type;
    QString message;
};

/** The rows of the event viewer, oldest first. */
class EventListModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    void fill(QList<EventRow> rows);
    void append(const EventRow &row);
    const EventRow &row(int index) const { return m_rows.at(index); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    static QString cell(const EventRow &row, int column);
    QList<EventRow> m_rows;
};
