#include "editors/frmGroupAdd.h"

#include "core/Dialogs.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"
#include "ui/Editors.h"

#include <QAbstractButton>
#include <QLineEdit>

using namespace Qt::StringLiterals;

frmGroupAdd::frmGroupAdd(EditedTree &tree)
    : GroupForm(tree.window(), "frmGroupAdd", tr("Add Group"))
    , m_tree(tree)
{
}

void frmGroupAdd::onOk()
{
    okButton()->setEnabled(false);
    if (AddGroup(m_label->text(), m_description->text())) {
        accept();
        return;
    }
    vbMain().dialogs->messageBox(
        m_label->text() + u" already exists in the database.\r\nTry again, or cancel the action."_s,
        AppTitle(), Dialogs::Exclamation, Dialogs::Ok);
    okButton()->setEnabled(true);
    m_label->selectAll();
    m_label->setFocus();
}

bool frmGroupAdd::AddGroup(const QString &label, const QString &description)
{
    return Trap("AddGroup", [&] {
        auto rows
            = db().OpenRecordset(u"SELECT * FROM tblGroup WHERE tblGroup.Group_Label = '"_s + label + u"'"_s);
        CheckDatabaseErrors();
        if (!rows.Eof())
            return false;
        rows.AddNew();
        rows.Set(u"Group_Label"_s, label);
        rows.Set(u"Group_Desc"_s, description);
        rows.Set(u"Group_Icon"_s, int(status::GroupOk));
        rows.Update();
        rows.Requery();
        const QString key = keys::group(rows.Field(u"Group_ID"_s).integer());
        rows.Close();
        m_tree.addNode(NodeLevel::Group, keys::root(), key, label, status::GroupOk);
        m_tree.selectNode(NodeLevel::Group, key);
        return true;
    });
}
