#pragma once

#include "editors/EditorForm.h"

class EditedTree;

/** Title and versions. */
class frmAbout : public EditorForm
{
    Q_OBJECT
public:
    /** smtpVersion is what the mail control reports; empty: its line is not shown. */
    frmAbout(EditedTree &tree, const QString &smtpVersion);
};
