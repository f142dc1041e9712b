#include "editors/frmModifyGroup.h"

#include "core/Trap.h"
#include "ui/Editors.h"

#include <QAbstractButton>
#include <QLineEdit>

using namespace Qt::StringLiterals;

frmModifyGroup::frmModifyGroup(EditedTree &tree, const QString &key)
    : GroupForm(tree.window(), "frmModifyGroup", tr("Group Properties"))
    , m_tree(tree)
    , m_key(key)
    , m_groupId(keys::after(key))
{
    Form_Load();
}

void frmModifyGroup::Form_Load()
{
    Trap("Form_Load", [this] {
        auto rows = db().OpenRecordset(u"SELECT * FROM tblGroup WHERE Group_ID ="_s + m_groupId);
        CheckDatabaseErrors();
        if (rows.Eof())
            return;
        m_label->setText(rows.Field(u"Group_Label"_s).text());
        m_description->setText(rows.Field(u"Group_Desc"_s).text());
    });
}

void frmModifyGroup::onOk()
{
    okButton()->setEnabled(false);
    ModifyGroup();
    accept();
}

void frmModifyGroup::ModifyGroup()
{
    Trap("ModifyGroup", [this] {
        db().Execute(u"UPDATE tblGroup SET Group_Label = '"_s + m_label->text() + u"',  Group_Desc = '"_s
            + m_description->text() + u"' WHERE tblGroup.Group_ID = "_s + m_groupId);
        CheckDatabaseErrors();
        m_tree.setNodeText(NodeLevel::Group, m_key, m_label->text());
    });
}
