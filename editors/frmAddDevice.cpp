#include "editors/frmAddDevice.h"

#include "core/Announcer.h"
#include "core/Dialogs.h"
#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"
#include "core/Waits.h"
#include "ui/Editors.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using addressrange::Kind;

namespace {

constexpr Twips kSize { 7305, 3390 };
constexpr const char *kBoxes = "txtIPRange";
constexpr int kAliasExample = 0;
constexpr const char *kSummaryLabels[] = { "Name:", "Alias:", "Description:", "Devices:" };
constexpr int kSummaryDevices = 3;

QString rangeHint(const addressrange::Range &range)
{
    switch (range.kind) {
    case Kind::Range:
        return range.addresses.size() == 1
            ? frmAddDevice::tr("A range of one address.")
            : frmAddDevice::tr("A range of %1 addresses.").arg(range.addresses.size());
    case Kind::Backwards:
        return frmAddDevice::tr("This range ends before it begins.");
    case Kind::TooLarge:
        return frmAddDevice::tr("A range may hold at most 1,024 addresses.");
    case Kind::Malformed:
        return frmAddDevice::tr("This is not a range of addresses yet.");
    case Kind::None:
        break;
    }
    return frmAddDevice::tr("A range makes one device per address: 192.168.1.10-40,"
                            " 192.168.1.10-192.168.1.40 or 192.168.1.0/24.");
}

} // namespace

frmAddDevice::frmAddDevice(EditedTree &tree)
    : WizardForm(tree.window(), "frmAddDevice", tr("Add Device"), picture(u"image02"_s))
    , m_tree(tree)
    , m_groupKey(tree.currentKey())
    , m_groupName(tree.currentText())
    , m_devices(keys::after(m_groupKey).toLongLong())
{
    makePages();
    layOut();
    Form_Load();
    fixAt(kSize);
}

void frmAddDevice::makePages()
{
    addPage(tr("Welcome"), introductionPage());
    addPage(tr("Name or IP address"), namePage());
    addPage(tr("Alias and description"), textsPage());
    addPage(tr("Summary"), summaryPage());
}

QWidget *frmAddDevice::introductionPage()
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    m_introduction = new QLabel(page);
    m_introduction->setObjectName(u"lblIntroduction"_s);
    m_introduction->setTextFormat(Qt::PlainText);
    m_introduction->setWordWrap(true);
    m_showIntro = introBox("chkShowIntro", u"ShowIntro"_s);
    column->addWidget(m_introduction);
    column->addStretch();
    column->addWidget(m_showIntro);
    return page;
}

QWidget *frmAddDevice::namePage()
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    m_name = lineBox(kBoxes, 0, tr("Device name or IP address"));
    auto *label = new QLabel(tr("Name, IP &address or range of addresses:"), page);
    label->setBuddy(m_name);
    m_range = hint();
    m_range->setObjectName(u"lblRange"_s);
    connect(m_name, &QLineEdit::textChanged, this, &frmAddDevice::hintRange);
    column->addWidget(label);
    column->addWidget(m_name);
    column->addWidget(m_range);
    column->addStretch();
    hintRange();
    return page;
}

QWidget *frmAddDevice::textsPage()
{
    auto *page = new QWidget(this);
    auto *rows = new QFormLayout(page);
    rows->setContentsMargins(0, 0, 0, 0);
    m_alias = lineBox(kBoxes, 1, tr("Alias"));
    m_description = lineBox(kBoxes, 2, tr("Description"));
    QAbstractButton *example = command(kAliasExample, tr("&Example"), tr("Hear an example of an alias"));
    connect(example, &QAbstractButton::clicked, this, [this] {
        if (vbMain().announcer)
            vbMain().announcer->speak(u"Options-AliasExample"_s);
    });
    auto *alias = new QHBoxLayout;
    alias->addWidget(m_alias, 1);
    alias->addWidget(example);
    auto *label = new QLabel(tr("A&lias:"), page);
    label->setBuddy(m_alias);
    rows->addRow(label, alias);
    addRow(*rows, tr("&Description:"), m_description);
    m_aliasHint = hint();
    rows->addRow(m_aliasHint);
    return page;
}

QWidget *frmAddDevice::summaryPage()
{
    auto *page = new QWidget(this);
    auto *rows = new QFormLayout(page);
    rows->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 4; ++i) {
        m_summary[i] = named(new QLabel(page), "lblSummary", i, tr(kSummaryLabels[i]));
        m_summary[i]->setTextFormat(Qt::PlainText);
        m_summary[i]->setWordWrap(true);
        rows->addRow(tr(kSummaryLabels[i]), m_summary[i]);
    }
    return page;
}

void frmAddDevice::Form_Load()
{
    Trap("Form_Load", [this] {
        m_introduction->setText(u"The Kavro add device wizard will assist you in creating"_s
            + u" a monitored device under the "_s + m_groupName + u" group."_s);
        const bool skip = GetSettingInt(u"Startup"_s, u"ShowIntro"_s) != 0;
        m_showIntro->setChecked(skip);
        m_step = skip ? Name : Introduction;
        stepChanged();
    });
}

void frmAddDevice::hintRange() { m_range->setText(rangeHint(addressrange::parse(m_name->text()))); }

void frmAddDevice::stepChanged()
{
    if (m_step == Texts)
        leaveNamePage();
    m_back->setEnabled(m_step > Introduction);
    m_next->setText(m_step == Summary ? u"&Finished"_s : u"&Next >"_s);
    if (m_step == Summary)
        fillSummary();
    if (m_step == Finish) {
        finish();
        return;
    }
    showPage(m_step);
    if (m_step == Name)
        m_name->setFocus();
    else if (m_step == Texts)
        (m_alias->isEnabled() ? m_alias : m_description)->setFocus();
    else
        m_next->setFocus();
}

void frmAddDevice::leaveNamePage()
{
    const QString wrong = m_devices.setName(m_name->text());
    if (!wrong.isEmpty()) {
        vbMain().dialogs->messageBox(wrong, AppTitle(), Dialogs::Information, Dialogs::Ok);
        m_name->selectAll();
        --m_step;
        return;
    }
    m_alias->setEnabled(!m_devices.isRange());
    m_aliasHint->setText(m_devices.isRange()
            ? tr("The devices of a range are shown by their addresses.")
            : tr("The tree and the lists show the alias; without one they show the name."));
}

void frmAddDevice::fillSummary()
{
    m_devices.setTexts(m_alias->text(), m_description->text());
    const QString texts[] = { m_devices.name(), m_devices.alias(), m_devices.description() };
    for (int i = 0; i < kSummaryDevices; ++i)
        m_summary[i]->setText(texts[i]);
    const auto number = m_devices.names().size();
    QString count = number == 1 ? tr("1 device will be made.") : tr("%1 devices will be made.").arg(number);
    if (m_devices.skipped() > 0)
        count += u' ' + tr("Of the range, %1 exist already.").arg(m_devices.skipped());
    m_summary[kSummaryDevices]->setText(count);
}

void frmAddDevice::finish()
{
    setBusy(true, int(m_devices.names().size()));
    m_work = Trap("AddDeviceToTree", AddDeviceToTree());
    m_work.start();
    if (!m_work.isRunning())
        m_work.result();
}

Task<void> frmAddDevice::AddDeviceToTree()
{
    waits::Slice slice;
    for (const QString &name : m_devices.names()) {
        if (!m_made.isEmpty()) // one device alone is made at one go
            co_await slice.breathe();
        // Row and node together: in between a check may end and repaint the tree.
        const DeviceRef device = m_devices.Device_Add(name, m_devices.description(), m_devices.alias());
        if (device.id != 0) {
            m_made.append(device);
            m_tree.addNode(
                NodeLevel::Device, m_groupKey, device.key(), m_devices.nodeText(name), status::DeviceOk);
        }
        setProgress(int(m_made.size()));
    }
    if (!m_made.isEmpty())
        m_tree.selectNode(NodeLevel::Device, m_made.first().key());
    m_tree.refreshViews();
    setBusy(false);
    accept();
}
