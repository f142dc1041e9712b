#pragma once

#include "editors/EditorForm.h"

#include <array>

class EditedTree;
class QCheckBox;

/** Edits one check: description, whether it sends e-mail, and its own e-mail template. */
class frmModifyPort : public EditorForm
{
    Q_OBJECT
public:
    /** key is that of the check's node. */
    frmModifyPort(EditedTree &tree, const QString &key);

protected:
    void onOk() override;

private:
    QWidget *checkPage();
    QWidget *templatePage();
    void Form_Load();
    /** Masks into empty boxes and boxes open, or boxes emptied and locked. */
    void chkArray_Click();
    void lockTemplate(bool locked);
    void updateOk();
    void Port_Update(const QString &device, const QString &port, const QString &description);

    static constexpr int kTemplateBoxes = 4; // address, subject, failure, recovery: txtArray(3) to (6)
    QString templateText(int element) const;
    void setTemplateText(int element, const QString &text);

    QString m_deviceId;
    QString m_port;
    QLineEdit *m_device = nullptr;
    QLineEdit *m_number = nullptr;
    QLineEdit *m_description = nullptr;
    std::array<QWidget *, kTemplateBoxes> m_template {};
    QCheckBox *m_notify = nullptr;
    QCheckBox *m_noTemplate = nullptr;
    QLabel *m_why = nullptr;
};
