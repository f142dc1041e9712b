#include "editors/frmPortDetails.h"

#include "core/StatusCodes.h"
#include "core/Trap.h"
#include "ui/Editors.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr Twips kSize { 9000, 7200 };
constexpr int kCloseIndex = 0;
constexpr int kCellMargin = 28;
constexpr int kTypeWidth = 90;

/** Where a box stands in the grid; span is the number of its columns. */
struct Place {
    const char *label; // null: belongs to the box on its left
    const char *role;
    int row;
    int column;
    int span;
};
constexpr Place kPlaces[] = {
    { "&Device:", "Device", 0, 0, 7 },
    { "&Port:", "Port", 1, 0, 2 },
    { "D&escription:", "Description", 1, 3, 4 },
    { "&Failures:", "Failures", 2, 0, 1 },
    { nullptr, "Failures in percent", 2, 2, 1 },
    { "&Successes:", "Successes", 3, 0, 1 },
    { nullptr, "Successes in percent", 3, 2, 1 },
    { "&Total:", "Total", 4, 0, 2 },
    { "St&atus:", "Status", 5, 0, 2 },
    { "Ping &minimum:", "Ping minimum", 2, 3, 4 },
    { "Ping ma&ximum:", "Ping maximum", 3, 3, 4 },
    { "Ping a&verage:", "Ping average", 4, 3, 4 },
};

/** A fraction of a whole number as a percentage with two decimals, halves rounded up. */
QString percent(qint64 part, qint64 whole)
{
    const qint64 hundredths = (part * 20000 + whole) / (2 * whole);
    return u"%1.%2%"_s.arg(hundredths / 100).arg(hundredths % 100, 2, 10, QLatin1Char('0'));
}

qint64 count(const dao::Recordset &row, const QString &column)
{
    const dao::Value value = row.Field(column);
    return value.isNull() ? 0 : value.integer();
}

} // namespace

frmPortDetails::frmPortDetails(EditedTree &tree, const QString &key)
    : EditorForm(tree.window(), "frmPortDetails", tr("Port Details"), picture(u"tool_details"_s))
    , m_deviceId(keys::before(key))
    , m_port(keys::after(key))
    , m_history(table("lvListView", tr("History"), { u"Date/Time"_s, u"Type"_s, u"Message"_s }))
{
    auto *column = new QVBoxLayout(this);
    column->addWidget(boxes());
    column->addWidget(m_history, 1);
    QAbstractButton *close = command(kCloseIndex, tr("&Close"));
    connect(close, &QAbstractButton::clicked, this, &QDialog::accept);
    auto *row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(close);
    column->addLayout(row);
    Form_Load();
    openAt(kSize);
    m_history->setFocus();
}

QWidget *frmPortDetails::boxes()
{
    auto *area = new QWidget(this);
    auto *grid = new QGridLayout(area);
    grid->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < BoxCount; ++i) {
        const Place &place = kPlaces[i];
        m_boxes[i] = shownBox("txtArray", i, tr(place.role));
        int column = place.column;
        if (place.label) {
            auto *label = new QLabel(tr(place.label), area);
            label->setBuddy(m_boxes[i]);
            grid->addWidget(label, place.row, column++);
        }
        grid->addWidget(m_boxes[i], place.row, column, 1, place.span);
    }
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 1);
    grid->setColumnStretch(4, 2);
    return area;
}

void frmPortDetails::setBox(Box box, const QString &text)
{
    m_boxes[box]->setText(text);
    m_boxes[box]->setCursorPosition(0);
}

void frmPortDetails::Form_Load()
{
    Trap("Form_Load", [this] {
        auto row = db().OpenRecordset(u"Select * from tblDevices LEFT JOIN(tblPortMain"
                                      " LEFT JOIN tblPortStatus"
                                      " ON tblPortStatus.Port_ID = tblPortMain.Port_ID)"
                                      " ON tblDevices.Device_ID = tblPortMain.Device_ID"
                                      " WHERE tblDevices.Device_ID = "_s
            + m_deviceId + u" AND tblPortMain.Port_Num ='"_s + m_port + u"'"_s);
        CheckDatabaseErrors();
        if (!row.Eof()) {
            const auto text = [&](const QString &column) { return row.Field(column).text(); };
            setBox(Device, text(u"Device_Name"_s) + u" ("_s + text(u"Device_Alias"_s) + u')');
            setBox(Port, text(u"Port_Num"_s));
            setBox(Description, text(u"Port_Desc"_s));
            const qint64 failure = count(row, u"Port_Failure"_s);
            const qint64 success = count(row, u"Port_Success"_s);
            const qint64 total = failure + success;
            setBox(Failure, QString::number(failure));
            setBox(Success, QString::number(success));
            setBox(Total, QString::number(total));
            if (total > 0) {
                setBox(FailurePercent, percent(failure, total));
                setBox(SuccessPercent, percent(success, total));
            }
            setBox(Status, text(u"Port_Status"_s));
            if (text(u"Port_Num"_s).compare(u"Ping", Qt::CaseInsensitive) == 0) {
                setBox(PingMin, text(u"Ping_Min"_s) + u" ms"_s);
                setBox(PingMax, text(u"Ping_Max"_s) + u" ms"_s);
                setBox(PingAvg, text(u"Ping_Avg"_s) + u" ms"_s);
            }
        }
        row.Close();
        GetPortEvents();
    });
}

void frmPortDetails::GetPortEvents()
{
    Trap("GetPortEvents", [this] {
        auto rows = db().OpenRecordset(u"Select tblPortMain.*, tblPortStatus.*, tblEventLog.*"
                                       " FROM tblEventLog, tblPortStatus, tblPortMain"
                                       " WHERE tblEventLog.Device_ID = "_s
            + m_deviceId + u" AND tblPortMain.Port_Num = '"_s + m_port
            + u"' AND tblPortMain.Port_ID = tblPortStatus.Port_ID"
              " AND tblPortStatus.Port_ID = tblEventLog.Port_ID"
              " ORDER BY tblEventLog.Event_Date"_s);
        CheckDatabaseErrors();
        for (; !rows.Eof(); rows.MoveNext()) {
            addEvent({ rows.Field(u"Event_Date"_s).text(), rows.Field(u"Event_Type"_s).text(),
                         rows.Field(u"Event"_s).text() },
                int(count(rows, u"Event_Icon"_s)));
        }
        rows.Close();
        if (m_history->topLevelItemCount() == 0)
            addEvent({ QString(), u"Message"_s, u"No events found in event log."_s }, 0);
        const QString widest = GeneralDate(QDateTime({ 2000, 12, 28 }, { 22, 58, 58 }));
        m_history->setColumnWidth(0, fontMetrics().horizontalAdvance(widest) + 2 * kCellMargin);
        m_history->setColumnWidth(1, kTypeWidth);
        m_history->scrollToBottom();
    });
}

void frmPortDetails::addEvent(const QStringList &cells, int icon)
{
    auto *item = new QTreeWidgetItem(m_history, cells);
    // Messages may hold anything; they must not be taken for markup.
    item->setToolTip(2, u"<p style='white-space:pre-wrap'>"_s + cells.last().toHtmlEscaped() + u"</p>"_s);
    if (icon < 1 || icon > status::kEventIconCount)
        return;
    item->setIcon(0, picture(u"event%1"_s.arg(icon)));
    item->setData(0, Qt::AccessibleDescriptionRole,
        u"icon %1: %2"_s.arg(QString::number(icon), status::eventIconWords(icon)));
}
