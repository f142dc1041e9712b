#pragma once

#include "editors/GroupForm.h"

class EditedTree;

/** Creates a group and its node. */
class frmGroupAdd : public GroupForm
{
    Q_OBJECT
public:
    explicit frmGroupAdd(EditedTree &tree);

protected:
    void onOk() override;

private:
    /** True when the group was created; false when the label exists. */
    bool AddGroup(const QString &label, const QString &description);

    EditedTree &m_tree;
};
