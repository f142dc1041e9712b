#pragma once

#include "core/Task.h"
#include "editors/NewDevices.h"
#include "editors/WizardForm.h"

class EditedTree;
class QListWidget;

/** Sets the whole list of checks of a device, or of several that were just made. */
class frmAddPort : public WizardForm
{
    Q_OBJECT
public:
    /** At least one device. Of several, the ticks show the checks of the first. */
    frmAddPort(EditedTree &tree, const QList<DeviceRef> &devices);

protected:
    void stepChanged() override;

private:
    enum Step { Introduction, Catalogue, Summary, Finish };

    void makePages();
    QWidget *introductionPage();
    QWidget *cataloguePage();
    QWidget *summaryPage();
    void Form_Load();
    void fillCatalogue();
    void hintTicked();
    void fillSummary();
    void finish();
    Task<void> applyChoice();

    EditedTree &m_tree;
    QList<DeviceRef> m_devices;
    QStringList m_existing;
    QStringList m_selected;
    QLabel *m_introduction = nullptr;
    QCheckBox *m_showIntro = nullptr;
    QTreeWidget *m_catalogue = nullptr;
    QLabel *m_ticked = nullptr;
    QListWidget *m_toAdd = nullptr;
    QLabel *m_toDelete = nullptr;
    Task<void> m_work; // last: cancelled before what it uses goes away
};
