#include "editors/frmAddPort.h"

#include "core/Settings.h"
#include "core/Trap.h"
#include "core/Waits.h"
#include "editors/PortChoice.h"
#include "ui/Editors.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr Twips kSize { 7305, 3390 };
constexpr int kPortWidth = 90;

} // namespace

frmAddPort::frmAddPort(EditedTree &tree, const QList<DeviceRef> &devices)
    : WizardForm(tree.window(), "frmAddPort", tr("Add Port"), picture(u"image05"_s))
    , m_tree(tree)
    , m_devices(devices)
{
    makePages();
    layOut();
    Form_Load();
    openAt(kSize);
}

void frmAddPort::makePages()
{
    addPage(tr("Welcome"), introductionPage());
    addPage(tr("Ports to monitor"), cataloguePage());
    addPage(tr("Summary"), summaryPage());
}

QWidget *frmAddPort::introductionPage()
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    m_introduction = named(new QLabel(page), "lblStep", 0, tr("Introduction"));
    m_introduction->setTextFormat(Qt::PlainText);
    m_introduction->setWordWrap(true);
    m_showIntro = introBox("chkShowPortSelectIntro", u"ShowPortScanIntro"_s);
    column->addWidget(m_introduction);
    column->addStretch();
    column->addWidget(m_showIntro);
    return page;
}

QWidget *frmAddPort::cataloguePage()
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    m_catalogue = table("lvListView", tr("Ports to monitor"), { u"Port"_s, u"Description"_s });
    m_catalogue->setColumnWidth(0, kPortWidth);
    m_ticked = hint();
    connect(m_catalogue, &QTreeWidget::itemChanged, this, &frmAddPort::hintTicked);
    column->addWidget(m_catalogue, 1);
    column->addWidget(m_ticked);
    return page;
}

QWidget *frmAddPort::summaryPage()
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    m_toAdd = new QListWidget(page);
    m_toAdd->setObjectName(u"lstPortsAdd"_s);
    m_toAdd->setAccessibleName(tr("Ports that will be monitored"));
    m_toDelete = hint();
    column->addWidget(m_toAdd, 1);
    column->addWidget(m_toDelete);
    return page;
}

void frmAddPort::Form_Load()
{
    Trap("Form_Load", [this] {
        const QString device
            = m_devices.size() == 1 ? m_devices.first().name : tr("%1 devices").arg(m_devices.size());
        m_introduction->setText(u"This wizard will assist you in selecting the TCP/IP ports to moniotor on "_s
            + device + u".  Press the 'Next' button and make your selections from the list provided."_s);
        m_step = GetSettingInt(u"Startup"_s, u"ShowPortScanIntro"_s) == 0 ? Introduction : Catalogue;
        m_showIntro->setChecked(m_step == Catalogue);
        m_existing = portchoice::Step0(m_devices.first().id);
        fillCatalogue();
        stepChanged();
        m_back->setEnabled(false);
    });
}

void frmAddPort::fillCatalogue()
{
    for (const portchoice::CatalogueRow &row : portchoice::Step1()) {
        const auto same = [&](const QString &port) { return portchoice::isSame(port, row.text); };
        const bool ticked = std::any_of(m_existing.begin(), m_existing.end(), same);
        auto *item = new QTreeWidgetItem({ row.text, row.description });
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren);
        item->setCheckState(0, ticked ? Qt::Checked : Qt::Unchecked);
        m_catalogue->addTopLevelItem(item);
    }
    hintTicked();
}

void frmAddPort::hintTicked()
{
    int ticked = 0;
    for (int i = 0; i < m_catalogue->topLevelItemCount(); ++i)
        ticked += m_catalogue->topLevelItem(i)->checkState(0) == Qt::Checked;
    m_ticked->setText(tr("%1 ticked. The blank key ticks the selected port.").arg(ticked));
}

void frmAddPort::stepChanged()
{
    m_back->setEnabled(m_step > Introduction);
    m_next->setText(m_step == Summary ? u"&Finished >"_s : u"&Next >"_s);
    if (m_step == Summary)
        fillSummary();
    if (m_step == Finish) {
        finish();
        return;
    }
    showPage(m_step);
    if (m_step == Catalogue)
        m_catalogue->setFocus();
    else
        m_next->setFocus();
}

void frmAddPort::fillSummary()
{
    m_toAdd->clear();
    m_selected.clear();
    for (int i = 0; i < m_catalogue->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = m_catalogue->topLevelItem(i);
        if (item->checkState(0) != Qt::Checked)
            continue;
        m_toAdd->addItem(item->text(0) + u'\t' + item->text(1));
        m_selected.append(portchoice::numberOf(item->text(0)));
    }
    const QStringList gone = portchoice::without(m_existing, m_selected);
    QString text = gone.isEmpty() ? QString() : tr("No longer monitored: %1").arg(gone.join(u", "_s));
    if (m_toAdd->count() == 0 && gone.isEmpty())
        text = tr("Nothing is ticked; the device will not be checked.");
    m_toDelete->setText(text);
    m_toDelete->setVisible(!text.isEmpty());
}

void frmAddPort::finish()
{
    setBusy(true, int(m_devices.size()));
    m_work = Trap("cmdArray_Click", applyChoice());
    m_work.start();
    if (!m_work.isRunning())
        m_work.result();
}

/** Checks that stay ticked are left alone, so that their counters and templates survive. */
Task<void> frmAddPort::applyChoice()
{
    waits::Slice slice;
    for (int i = 0; i < m_devices.size(); ++i) {
        if (i > 0) // one device alone is done at one go
            co_await slice.breathe();
        const DeviceRef &device = m_devices.at(i);
        const QStringList existing = portchoice::Step0(device.id);
        portchoice::Del_Ports(m_tree, device, portchoice::without(existing, m_selected));
        portchoice::Add_Ports(m_tree, device, portchoice::without(m_selected, existing));
        setProgress(i + 1);
    }
    m_tree.refreshViews();
    setBusy(false);
    accept();
}
