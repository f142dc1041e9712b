#pragma once

#include "editors/EditorForm.h"

class EditedTree;
class QCheckBox;
class QRadioButton;

/** Edits one device. Its name is shown, never written. */
class frmModifyDevice : public EditorForm
{
    Q_OBJECT
public:
    /** key is that of the device's node. */
    frmModifyDevice(EditedTree &tree, const QString &key);

protected:
    void onOk() override;

private:
    QWidget *namesPage();
    QWidget *agentPage();
    QWidget *reportPage();
    QWidget *optionPair(int first, const QString &title, const QString &yes, const QString &no);
    void Form_Load();
    void Device_Update(const QString &name, const QString &alias, const QString &description);

    EditedTree &m_tree;
    QString m_key;
    QString m_deviceId;
    QLineEdit *m_name = nullptr;
    QLineEdit *m_alias = nullptr;
    QLineEdit *m_description = nullptr;
    QRadioButton *m_options[4] = {};
    QCheckBox *m_inReport = nullptr;
};
