#pragma once

#include "core/Task.h"
#include "editors/NewDevices.h"
#include "editors/WizardForm.h"

class EditedTree;

/** Creates a device, or one per address of a range, in the tree's current group. */
class frmAddDevice : public WizardForm
{
    Q_OBJECT
public:
    explicit frmAddDevice(EditedTree &tree);

    /** What was made; empty before the finish and after Cancel. */
    const QList<DeviceRef> &made() const { return m_made; }

protected:
    void stepChanged() override;

private:
    enum Step { Introduction, Name, Texts, Summary, Finish };

    void makePages();
    QWidget *introductionPage();
    QWidget *namePage();
    QWidget *textsPage();
    QWidget *summaryPage();
    void Form_Load();
    void hintRange();
    void leaveNamePage();
    void fillSummary();
    void finish();
    Task<void> AddDeviceToTree();

    EditedTree &m_tree;
    QString m_groupKey;
    QString m_groupName;
    NewDevices m_devices;
    QLabel *m_introduction = nullptr;
    QCheckBox *m_showIntro = nullptr;
    QLineEdit *m_name = nullptr;
    QLabel *m_range = nullptr;
    QLineEdit *m_alias = nullptr;
    QLabel *m_aliasHint = nullptr;
    QLineEdit *m_description = nullptr;
    QLabel *m_summary[4] = {};
    QList<DeviceRef> m_made;
    Task<void> m_work; // last: cancelled before what it uses goes away
};
