#include "editors/frmPortList.h"

#include "core/Announcer.h"
#include "core/Dialogs.h"
#include "core/Trap.h"
#include "editors/PortNumber.h"
#include "notify/vbMSAgent.h"
#include "ui/Editors.h"

#include <QAction>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr Twips kSize { 7200, 5700 };
constexpr int kApplyIndex = 0;
constexpr int kCloseIndex = 1;
constexpr int kTextColumn = 0; // of a saying line
constexpr int kPortWidth = 90;

void speak(const QString &saying)
{
    if (vbMain().announcer)
        vbMain().announcer->speak(saying);
}

void speakInvalidNumber(const QString &entered)
{
    ResultTable lines = MSAgentSpeak(u"PortListError-InvalidPortNum"_s);
    for (int row = 0; row < lines.rows(); ++row)
        lines.set(kTextColumn, row, QString(lines.at(kTextColumn, row)).replace("<NUMBER>"_L1, entered));
    if (vbMain().announcer)
        vbMain().announcer->speakLines(lines);
}

QString keyOf(const QString &port) { return u"Port:"_s + port; }

} // namespace

frmPortList::frmPortList(EditedTree &tree)
    : EditorForm(tree.window(), "frmPortList", tr("Port List"), picture(u"tool_view_list"_s))
    , m_list(table("ListView1", tr("Known ports"), { u"Port"_s, u"Descrption"_s }))
{
    auto *top = new QHBoxLayout;
    top->addWidget(modeBox());
    top->addWidget(entryBox(), 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    m_apply = command(kApplyIndex, tr("A&pply"));
    static_cast<QPushButton *>(m_apply)->setDefault(true);
    QAbstractButton *close = command(kCloseIndex, tr("&Close"));
    buttons->addWidget(m_apply);
    buttons->addWidget(close);
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_list, 1);
    column->addLayout(top);
    column->addLayout(buttons);
    connect(m_apply, &QAbstractButton::clicked, this, &frmPortList::apply);
    connect(close, &QAbstractButton::clicked, this, &QDialog::accept);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &frmPortList::showItem);
    makeListMenu();
    setMode(View);
    PopulateListView();
    openAt(kSize);
    m_list->setColumnWidth(0, kPortWidth);
    m_list->setFocus();
}

QWidget *frmPortList::modeBox()
{
    static constexpr const char *captions[] = { "&View", "&Add", "&Modify", "&Delete" };
    auto *box = new QGroupBox(tr("Mode"), this);
    auto *rows = new QVBoxLayout(box);
    for (int i = 0; i < ModeCount; ++i) {
        const QString caption = tr(captions[i]);
        m_modes[i] = named(new QRadioButton(caption, box), "optArray", i, QString(caption).remove(u'&'));
        connect(m_modes[i], &QRadioButton::clicked, this, [this, i] { choose(Mode(i)); });
        rows->addWidget(m_modes[i]);
    }
    return box;
}

QWidget *frmPortList::entryBox()
{
    auto *box = new QGroupBox(tr("Port"), this);
    auto *rows = new QFormLayout(box);
    m_number = lineBox("txtArray", 0, tr("Port number"));
    m_description = lineBox("txtArray", 1, tr("Description"));
    addRow(*rows, tr("&Number:"), m_number);
    addRow(*rows, tr("D&escription:"), m_description);
    return box;
}

void frmPortList::makeListMenu()
{
    struct Entry {
        const char *name;
        QString text;
        QKeySequence key;
        Mode mode;
    };
    for (const Entry &entry : { Entry { "mnuAddPort", tr("&Add Port"), Qt::Key_Insert, Add },
             Entry { "mnuModifyPort", tr("&Modify Port"), Qt::Key_F2, Modify },
             Entry { "mnuDeletePort", tr("&Delete Port"), Qt::Key_Delete, Delete } }) {
        auto *action = new QAction(entry.text, m_list);
        action->setObjectName(QString::fromLatin1(entry.name));
        action->setShortcut(entry.key);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, [this, mode = entry.mode] { choose(mode); });
        m_list->addAction(action);
    }
    m_list->setContextMenuPolicy(Qt::ActionsContextMenu);
}

// Modes

frmPortList::Mode frmPortList::mode() const
{
    for (int i = 0; i < ModeCount; ++i) {
        if (m_modes[i]->isChecked())
            return Mode(i);
    }
    return View;
}

void frmPortList::setMode(Mode mode)
{
    m_modes[mode]->setChecked(true);
    m_number->setReadOnly(mode != Add);
    m_description->setReadOnly(mode != Add && mode != Modify);
    m_apply->setEnabled(mode == Add || mode == Modify);
}

void frmPortList::choose(Mode mode)
{
    setMode(mode);
    switch (mode) {
    case Add:
        return mnuAddPort();
    case Modify:
        return mnuModifyPort();
    case Delete:
        return mnuDeletePort();
    default:
        return clearBoxes();
    }
}

void frmPortList::mnuAddPort()
{
    clearBoxes();
    m_number->setFocus();
}

void frmPortList::mnuModifyPort()
{
    // The saying of deleting serves here too.
    if (!selected()) {
        speak(u"PortListError-Delete"_s);
        return;
    }
    showItem();
    m_description->setFocus();
}

void frmPortList::mnuDeletePort()
{
    if (QTreeWidgetItem *item = selected())
        RemovePort(*item);
    else
        speak(u"PortListError-Delete"_s);
    // Deleting is done at once; the next click must not find it still chosen.
    setMode(View);
}

void frmPortList::clearBoxes()
{
    m_number->clear();
    m_description->clear();
}

void frmPortList::showItem()
{
    const QTreeWidgetItem *item = selected();
    if (!item)
        return;
    m_number->setText(item->text(0));
    m_description->setText(item->text(1));
}

void frmPortList::apply()
{
    if (mode() == Add)
        UpdatePort(m_number->text(), m_description->text());
    else if (QTreeWidgetItem *item = selected(); item && mode() == Modify)
        UpdatePort(*item, m_description->text());
}

// Database

void frmPortList::PopulateListView()
{
    Trap("PopulateListView", [this] {
        const QSignalBlocker quiet(m_list); // filling is not selecting
        m_list->clear();
        auto rows = db().OpenRecordset(u"Select * FROM tblTCPPorts ORDER BY Port_Num"_s);
        CheckDatabaseErrors();
        for (; !rows.Eof(); rows.MoveNext()) {
            if (rows.Field(u"Port_Type"_s).text().toLower() != u"tcp")
                continue;
            const QString port = rows.Field(u"Port_Num"_s).text();
            auto *item = new QTreeWidgetItem(m_list, { port, rows.Field(u"Port_Desc"_s).text() });
            item->setData(0, Qt::UserRole, keyOf(port));
        }
        rows.Close();
    });
}

QTreeWidgetItem *frmPortList::selected() const { return m_list->selectedItems().value(0); }

QTreeWidgetItem *frmPortList::find(const QString &port) const
{
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = m_list->topLevelItem(i);
        if (item->data(0, Qt::UserRole).toString() == keyOf(port))
            return item;
    }
    return nullptr;
}

void frmPortList::RemovePort(QTreeWidgetItem &item)
{
    Trap("RemovePort", [&] {
        const QString number = item.text(0);
        const Dialogs::Answer answer
            = vbMain().dialogs->messageBox(u"You are about to remove the following:\r\n\r\n"
                                           "  Port Number:\t"_s
                    + number + u"\r\n  Description:\t"_s + item.text(1) + u"\r\n\r\nAre you sure?"_s,
                AppTitle(), Dialogs::Question, Dialogs::YesNo);
        if (answer != Dialogs::AnswerYes)
            return;
        db().Execute(u"Delete * FROM tblTCPPorts WHERE Port_Num = "_s + number);
        CheckDatabaseErrors();
        delete &item;
        clearBoxes();
    });
}

void frmPortList::UpdatePort(QTreeWidgetItem &item, const QString &description)
{
    Trap("UpdatePort", [&] {
        db().Execute(u"Update tblTCPPorts SET Port_Desc = '"_s + description + u"' WHERE Port_Num = "_s
            + item.text(0));
        CheckDatabaseErrors();
        item.setText(1, description);
    });
}

void frmPortList::UpdatePort(const QString &port, const QString &description)
{
    Trap("UpdatePort", [&] {
        if (!portnumber::isPort(port)) {
            speakInvalidNumber(port);
            m_number->setFocus();
            m_number->selectAll();
            return;
        }
        const QString number = portnumber::digits(port);
        if (QTreeWidgetItem *listed = find(number)) {
            UpdatePort(*listed, description);
        } else {
            db().Execute(u"INSERT INTO tblTCPPorts (Port_Desc, Port_Type, Port_Num) VALUES ('"_s + description
                + u"', 'TCP', "_s + number + u");"_s);
            CheckDatabaseErrors();
            PopulateListView();
        }
        // Ready for the next one, with this one in view.
        if (QTreeWidgetItem *item = find(number))
            m_list->scrollToItem(item);
        m_number->setFocus();
        m_number->selectAll();
    });
}
