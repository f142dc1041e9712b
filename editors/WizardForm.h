#pragma once

#include "editors/EditorForm.h"

class QCheckBox;
class QProgressBar;
class QStackedWidget;

/** Pages one behind the other, with Back and Next. Pages show; what a step means is decided by the wizard's
   own context. */
class WizardForm : public EditorForm
{
    Q_OBJECT
public:
    void reject() override;

protected:
    WizardForm(QWidget *parent, const char *name, const QString &caption, const QIcon &picture);

    /** Pages are numbered in the order of their adding: fraStep(0), … */
    void addPage(const QString &title, QWidget *content);
    /** The check box that mirrors a setting of section Startup and is saved at once. */
    QCheckBox *introBox(const char *name, const QString &key);
    /** Pages, progress and buttons; to be called when all pages are there. */
    void layOut();

    /** 1 Cancel, 2 Back, 3 Next; anything else is the wizard's own. */
    void cmdArray_Click(int index);
    /** The step has changed by Back or Next. */
    virtual void stepChanged() = 0;
    void showPage(int page);
    /** While true, the buttons rest and the form does not close. */
    void setBusy(bool busy, int steps = 0);
    void setProgress(int done);

    qint16 m_step = 0;
    QAbstractButton *m_back = nullptr;
    QAbstractButton *m_next = nullptr;

private:
    QIcon m_picture;
    QStackedWidget *m_pages;
    QProgressBar *m_progress;
    bool m_busy = false;
};
