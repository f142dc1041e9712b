#include "editors/frmModifyDevice.h"

#include "core/Trap.h"
#include "ui/Editors.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr Twips kSize { 6300, 4200 };
constexpr const char *kPage = "frmTabArray";

bool flag(const dao::Recordset &row, const QString &column)
{
    const dao::Value value = row.Field(column);
    return !value.isNull() && value.boolean();
}

} // namespace

frmModifyDevice::frmModifyDevice(EditedTree &tree, const QString &key)
    : EditorForm(tree.window(), "frmModifyDevice", tr("Device Properties"), picture(u"image02"_s))
    , m_tree(tree)
    , m_key(key)
    , m_deviceId(keys::before(key))
{
    auto *tabs = new QTabWidget(this);
    tabs->setObjectName(u"TabStrip1"_s);
    tabs->setAccessibleName(tr("Pages"));
    tabs->addTab(namesPage(), tr("&General"));
    tabs->addTab(agentPage(), tr("&Agent"));
    tabs->addTab(reportPage(), tr("&HTML"));
    auto *column = new QVBoxLayout(this);
    column->addWidget(tabs, 1);
    addOkCancel(*column);
    openAt(kSize);
    Form_Load();
    m_alias->setFocus();
}

QWidget *frmModifyDevice::namesPage()
{
    auto *page = named(new QWidget(this), kPage, 0, tr("General"));
    auto *rows = new QFormLayout(page);
    m_name = shownBox("txtArray", 0, tr("Device name"));
    m_alias = lineBox("txtArray", 1, tr("Alias"));
    m_description = lineBox("txtArray", 2, tr("Description"));
    addRow(*rows, tr("&Name or address:"), m_name);
    addRow(*rows, tr("A&lias:"), m_alias);
    addRow(*rows, tr("&Description:"), m_description);
    rows->addRow(hint(tr("The tree and the lists show the alias; without one they show the name.")));
    rows->addRow(hint(tr("A description can be replaced here, not cleared.")));
    return page;
}

QWidget *frmModifyDevice::agentPage()
{
    auto *page = named(new QWidget(this), kPage, 1, tr("Agent"));
    auto *column = new QVBoxLayout(page);
    column->addWidget(optionPair(0, tr("The agent refers to the device by its"), tr("na&me"), tr("al&ias")));
    column->addWidget(
        optionPair(2, tr("The agent says that name"), tr("as a &word"), tr("&spelled letter by letter")));
    column->addStretch();
    return page;
}

QWidget *frmModifyDevice::reportPage()
{
    auto *page = named(new QWidget(this), kPage, 2, tr("HTML"));
    auto *column = new QVBoxLayout(page);
    m_inReport = named(new QCheckBox(tr("&List this device in the HTML report"), page), "chkArray", 0,
        tr("List this device in the HTML report"));
    column->addWidget(m_inReport);
    column->addWidget(hint(tr("The report is a page that is written after each check. "
                              "What it looks like is set in the options.")));
    column->addStretch();
    return page;
}

/** The first option of a pair stands for true. */
QWidget *frmModifyDevice::optionPair(int first, const QString &title, const QString &yes, const QString &no)
{
    auto *box = new QGroupBox(title, this);
    auto *column = new QVBoxLayout(box);
    for (const auto &[index, text] : { std::pair(first, yes), std::pair(first + 1, no) }) {
        m_options[index] = named(
            new QRadioButton(text, box), "arrOption", index, title + u' ' + QString(text).remove(u'&'));
        column->addWidget(m_options[index]);
    }
    return box;
}

void frmModifyDevice::Form_Load()
{
    Trap("Form_Load", [this] {
        auto row = db().OpenRecordset(u"SELECT Device_Name, Device_Alias, Device_Desc, HTML_Output,"
                                      " MSAgent_Referr_Device, MSAgent_Pronounce_Device"
                                      " FROM tblDevices WHERE Device_ID ="_s
            + m_deviceId);
        CheckDatabaseErrors();
        if (row.Eof())
            return;
        m_name->setText(row.Field(u"Device_Name"_s).text());
        m_alias->setText(row.Field(u"Device_Alias"_s).text());
        m_description->setText(row.Field(u"Device_Desc"_s).text());
        m_options[flag(row, u"MSAgent_Referr_Device"_s) ? 0 : 1]->setChecked(true);
        m_options[flag(row, u"MSAgent_Pronounce_Device"_s) ? 2 : 3]->setChecked(true);
        m_inReport->setChecked(flag(row, u"HTML_Output"_s));
    });
}

void frmModifyDevice::onOk()
{
    Device_Update(m_name->text().trimmed(), m_alias->text().trimmed(), m_description->text().trimmed());
    accept();
}

void frmModifyDevice::Device_Update(const QString &name, const QString &alias, const QString &description)
{
    Trap("Device_Update", [&] {
        auto row = db().OpenRecordset(u"SELECT Device_Name, Device_Alias, Device_Desc, HTML_Output,"
                                      " MSAgent_Referr_Device, MSAgent_Pronounce_Device"
                                      " FROM [tblDevices] WHERE Device_ID ="_s
            + m_deviceId);
        CheckDatabaseErrors();
        if (row.Eof())
            return;
        row.Edit();
        row.Set(u"Device_Alias"_s, alias);
        m_tree.setNodeText(NodeLevel::Device, m_key, alias.isEmpty() ? name : alias);
        // An emptied box keeps the stored description: it can be replaced here, not cleared.
        if (!description.isEmpty())
            row.Set(u"Device_Desc"_s, description);
        row.Set(u"MSAgent_Pronounce_Device"_s, m_options[2]->isChecked());
        row.Set(u"MSAgent_Referr_Device"_s, m_options[0]->isChecked());
        row.Set(u"HTML_Output"_s, m_inReport->isChecked());
        row.Update();
        row.Close();
    });
}
