#include "ui/EventList.h"

#include "core/Trap.h"
#include "core/vbMain.h"
#include "ui/EmptyHint.h"

#include <QHeaderView>
#include <QTimerEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr int kScrollDelayMs = 50;
constexpr int kIcon = 16;
constexpr int kCellMargin = 14;

int iconOf(const dao::Value &value) { return value.isNull() ? 0 : int(value.integer()); }

} // namespace

EventList::EventList(QWidget *parent)
    : QTreeView(parent)
    , m_model(new EventListModel(this))
{
    setObjectName(u"lvEventView"_s);
    setAccessibleName(tr("Event list"));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setTextElideMode(Qt::ElideRight);
    setIconSize({ kIcon, kIcon });
    header()->setHighlightSections(false);
}

void EventList::addColumns()
{
    setModel(m_model);
    new EmptyHint(*this, tr("No events have been recorded yet."));
}

void EventList::Load_EventLog()
{
    Trap("Load_EventLog", [this] {
        QList<EventRow> rows;
        auto found = db().OpenRecordset(u"Select * FROM tblEventLog ORDER BY Event_Date"_s);
        for (; !found.Eof(); found.MoveNext()) {
            rows.append({ iconOf(found.Field(u"Event_Icon"_s)), found.Field(u"Event_Date"_s).dateTime(),
                found.Field(u"Event_Type"_s).text(), found.Field(u"Event"_s).text() });
        }
        found.Close();
        m_model->fill(std::move(rows));
        m_scroll.start(kScrollDelayMs, this);
    });
}

void EventList::addEventRow(const EventRow &row)
{
    m_model->append(row);
    if (!m_scroll.isActive())
        m_scroll.start(kScrollDelayMs, this);
}

void EventList::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_scroll.timerId()) {
        QTreeView::timerEvent(event);
        return;
    }
    m_scroll.stop();
    scrollToBottom();
}

void EventList::showEvent(QShowEvent *event)
{
    QTreeView::showEvent(event);
    if (!std::exchange(m_sized, true))
        sizeColumns();
}

/** By what is typical rather than by the rows, which come and go. */
void EventList::sizeColumns()
{
    const QFontMetrics metrics = fontMetrics();
    const QString date = GeneralDate(QDateTime({ 2000, 12, 28 }, { 22, 58, 58 }));
    setColumnWidth(0, metrics.horizontalAdvance(date) + kIcon + 2 * kCellMargin);
    setColumnWidth(1, metrics.horizontalAdvance(u"SMTP Error"_s) + 2 * kCellMargin);
}
