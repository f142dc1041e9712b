#pragma once

#include "editors/GroupForm.h"

class EditedTree;

/** Renames a group and changes its description. Two groups may get the same label here. */
class frmModifyGroup : public GroupForm
{
    Q_OBJECT
public:
    /** key is that of the group's node. */
    frmModifyGroup(EditedTree &tree, const QString &key);

protected:
    void onOk() override;

private:
    void Form_Load();
    void ModifyGroup();

    EditedTree &m_tree;
    QString m_key;
    QString m_groupId;
};
