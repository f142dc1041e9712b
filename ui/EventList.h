#pragma once

#include "ui/EventListModel.h"

#include <QBasicTimer>
#include <QTreeView>

/** The event viewer: the rows of the event log, oldest first. */
class EventList : public QTreeView
{
    Q_OBJECT
public:
    explicit EventList(QWidget *parent = nullptr);

    /** Gives the list its columns; until then it shows none. */
    void addColumns();
    /** All events from the database. Errors end in ErrorHandler. */
    void Load_EventLog();
    /** Appends one row and scrolls it into view (soon: a burst of rows scrolls once). */
    void addEventRow(const EventRow &row);

    const EventListModel &events() const { return *m_model; }

protected:
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void sizeColumns();
    EventListModel *m_model;
    QBasicTimer m_scroll;
    bool m_sized = false;
};
