#include "editors/frmModifyPort.h"

#include "core/Trap.h"
#include "ui/Editors.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr Twips kSize { 7200, 5700 };
constexpr const char *kPage = "frmTabArray";
constexpr int kAddress = 0;
constexpr int kFirstTemplateBox = 3;

struct TemplateBox {
    const char *label;
    const char *role;
    QLatin1StringView column;
    QLatin1StringView mask;
    bool lines;
};
constexpr TemplateBox kBoxes[] = {
    { "A&ddress:", "Address", "Email_Address"_L1, ""_L1, false },
    { "&Subject:", "Subject", "Email_Subject"_L1, "<DEVICE>:<PORT>"_L1, false },
    { "&Failure:", "Failure text", "Email_Failure"_L1,
        "<DEVICE> port <PORT> failed on <DATE> because <REASON>."_L1, true },
    { "&Recovery:", "Recovery text", "Email_Recovery"_L1, "<DEVICE> port <PORT> recovered on <DATE>."_L1,
        true },
};

} // namespace

frmModifyPort::frmModifyPort(EditedTree &tree, const QString &key)
    : EditorForm(tree.window(), "frmModifyPort", tr("Port Properties"), picture(u"image05"_s))
    , m_deviceId(keys::before(key))
    , m_port(keys::after(key))
{
    auto *tabs = new QTabWidget(this);
    tabs->setObjectName(u"TabStrip1"_s);
    tabs->setAccessibleName(tr("Pages"));
    tabs->addTab(checkPage(), tr("&General"));
    tabs->addTab(templatePage(), tr("&E-mail"));
    m_why = hint();
    auto *column = new QVBoxLayout(this);
    column->addWidget(tabs, 1);
    column->addWidget(m_why);
    addOkCancel(*column);
    Form_Load();
    openAt(kSize);
    m_description->setFocus();
}

QWidget *frmModifyPort::checkPage()
{
    auto *page = named(new QWidget(this), kPage, 0, tr("General"));
    auto *rows = new QFormLayout(page);
    m_device = shownBox("txtArray", 0, tr("Device"));
    m_number = shownBox("txtArray", 1, tr("Port"));
    m_description = lineBox("txtArray", 2, tr("Description"));
    m_notify = named(new QCheckBox(tr("Send an e-&mail when this check fails or recovers"), page), "chkArray",
        0, tr("Send an e-mail when this check fails or recovers"));
    addRow(*rows, tr("D&evice:"), m_device);
    addRow(*rows, tr("&Port:"), m_number);
    addRow(*rows, tr("&Description:"), m_description);
    rows->addRow(m_notify);
    return page;
}

QWidget *frmModifyPort::templatePage()
{
    auto *page = named(new QWidget(this), kPage, 1, tr("E-mail"));
    auto *rows = new QFormLayout(page);
    m_noTemplate = named(new QCheckBox(tr("&Use the general e-mail settings"), page), "chkArray", 1,
        tr("Use the general e-mail settings"));
    connect(m_noTemplate, &QCheckBox::clicked, this, &frmModifyPort::chkArray_Click);
    rows->addRow(m_noTemplate);
    for (int i = 0; i < kTemplateBoxes; ++i) {
        const TemplateBox &box = kBoxes[i];
        if (box.lines) {
            QPlainTextEdit *text = textBox("txtArray", kFirstTemplateBox + i, tr(box.role));
            connect(text, &QPlainTextEdit::textChanged, this, &frmModifyPort::updateOk);
            m_template[i] = text;
        } else {
            QLineEdit *line = lineBox("txtArray", kFirstTemplateBox + i, tr(box.role), kNoLimit);
            connect(line, &QLineEdit::textChanged, this, &frmModifyPort::updateOk);
            m_template[i] = line;
        }
        addRow(*rows, tr(box.label), m_template[i]);
    }
    rows->addRow(hint(tr("<DEVICE>, <PORT>, <DATE> and <REASON> are replaced when the mail is written.")));
    return page;
}

QString frmModifyPort::templateText(int element) const
{
    if (const auto *line = qobject_cast<const QLineEdit *>(m_template[element]))
        return line->text().trimmed();
    const auto *text = qobject_cast<const QPlainTextEdit *>(m_template[element]);
    return text->toPlainText().trimmed().replace(u'\n', "\r\n"_L1);
}

void frmModifyPort::setTemplateText(int element, const QString &text)
{
    if (auto *line = qobject_cast<QLineEdit *>(m_template[element]))
        line->setText(text);
    else
        qobject_cast<QPlainTextEdit *>(m_template[element])->setPlainText(text);
}

void frmModifyPort::Form_Load()
{
    Trap("Form_Load", [this] {
        auto row = db().OpenRecordset(u"Select * from tblDevices LEFT JOIN(tblPortMain"
                                      " LEFT JOIN tblPortEmailTemplate"
                                      " ON tblPortEmailTemplate.Port_ID = tblPortMain.Port_ID)"
                                      " ON tblDevices.Device_ID = tblPortMain.Device_ID"
                                      " WHERE tblDevices.Device_ID = "_s
            + m_deviceId + u" AND tblPortMain.Port_Num ='"_s + m_port + u"'"_s);
        CheckDatabaseErrors();
        if (row.Eof())
            return;
        m_device->setText(row.Field(u"Device_Name"_s).text());
        m_number->setText(row.Field(u"Port_Num"_s).text());
        m_description->setText(row.Field(u"Port_Desc"_s).text());
        const dao::Value notify = row.Field(u"Port_Email_Notify"_s);
        m_notify->setChecked(!notify.isNull() && notify.boolean());
        for (int i = 0; i < kTemplateBoxes; ++i)
            setTemplateText(i, row.Field(kBoxes[i].column).text());
        const bool none = row.Field(u"tblPortEmailTemplate.Port_ID"_s).isNull();
        m_noTemplate->setChecked(none);
        lockTemplate(none);
    });
}

void frmModifyPort::lockTemplate(bool locked)
{
    for (QWidget *box : m_template)
        box->setEnabled(!locked);
    updateOk();
}

void frmModifyPort::chkArray_Click()
{
    Trap("chkArray_Click", [this] {
        const bool none = m_noTemplate->isChecked();
        for (int i = 0; i < kTemplateBoxes; ++i) {
            if (none)
                setTemplateText(i, {});
            else if (templateText(i).isEmpty())
                setTemplateText(i, kBoxes[i].mask);
        }
        lockTemplate(none);
        if (!none)
            m_template[kAddress]->setFocus();
    });
}

/** Says why OK cannot be had; a list of addresses cannot be saved here. */
void frmModifyPort::updateOk()
{
    if (!m_why || !okButton())
        return;
    QString why;
    if (!m_noTemplate->isChecked()) {
        for (int i = 0; i < kTemplateBoxes && why.isEmpty(); ++i) {
            if (templateText(i).isEmpty())
                why = tr("E-mail: the box \"%1\" is empty.").arg(tr(kBoxes[i].role));
        }
        if (templateText(kAddress).contains(u','))
            why = tr("E-mail: one address only; a comma cannot stand in it.");
    }
    m_why->setText(why);
    okButton()->setEnabled(why.isEmpty());
}

void frmModifyPort::onOk()
{
    Port_Update(m_deviceId, m_port, m_description->text().trimmed());
    accept();
}

void frmModifyPort::Port_Update(const QString &device, const QString &port, const QString &description)
{
    Trap("Port_Update", [&] {
        auto row = db().OpenRecordset(
            u"Select tblDevices.Device_Name, tblPortMain.Port_Desc, tblPortMain.Port_ID as PORTID,"
            " tblPortEmailTemplate.Email_Address, tblPortEmailTemplate.Email_Subject,"
            " tblPortEmailTemplate.Email_Failure, tblPortEmailTemplate.Email_Recovery,"
            " tblPortMain.Port_Email_Notify,"
            " tblPortEmailTemplate.Device_ID, tblPortEmailTemplate.Port_ID"
            " FROM tblDevices LEFT JOIN(tblPortMain LEFT JOIN tblPortEmailTemplate"
            " ON tblPortEmailTemplate.Port_ID = tblPortMain.Port_ID)"
            " ON tblDevices.Device_ID = tblPortMain.Device_ID WHERE tblDevices.Device_ID = "_s
            + device + u" AND tblPortMain.Port_Num ='"_s + port + u"'"_s);
        CheckDatabaseErrors();
        QString portId;
        if (!row.Eof()) {
            row.Edit();
            row.Set(u"Port_Desc"_s, description);
            row.Set(u"Device_ID"_s, dao::Value(device).integer());
            for (int i = 0; i < kTemplateBoxes; ++i)
                row.Set(kBoxes[i].column, templateText(i));
            row.Set(u"Port_Email_Notify"_s, m_notify->isChecked());
            portId = row.Field(u"PORTID"_s).text();
            row.Update();
        }
        // The check falls back to the general e-mail settings.
        if (m_noTemplate->isChecked() && !portId.isEmpty())
            db().Execute(u"DELETE * FROM tblPortEmailTemplate WHERE Port_ID = "_s + portId);
        row.Close();
    });
}
