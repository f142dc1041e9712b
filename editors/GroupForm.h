#pragma once

#include "editors/EditorForm.h"

/** What both group forms show: label, description, OK and Cancel. */
class GroupForm : public EditorForm
{
    Q_OBJECT
protected:
    GroupForm(QWidget *parent, const char *name, const QString &caption);

    QLineEdit *const m_label;
    QLineEdit *const m_description;
};
