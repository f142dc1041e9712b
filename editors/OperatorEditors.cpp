#include "editors/OperatorEditors.h"

#include "editors/frmAbout.h"
#include "editors/frmAddDevice.h"
#include "editors/frmAddPort.h"
#include "editors/frmGroupAdd.h"
#include "editors/frmModifyDevice.h"
#include "editors/frmModifyGroup.h"
#include "editors/frmModifyPort.h"
#include "editors/frmPortDetails.h"
#include "editors/frmPortList.h"

namespace {

/** The tree is rebuilt after every change, so that order and texts are the database's. */
void change(EditedTree &tree, QDialog &&form)
{
    if (form.exec() == QDialog::Accepted)
        tree.refreshViews();
}

} // namespace

bool OperatorEditors::canEdit(NodeLevel level, const QString &) const { return level >= NodeLevel::Group; }

void OperatorEditors::properties(EditedTree &tree, NodeLevel level, const QString &key)
{
    switch (level) {
    case NodeLevel::Group:
        return change(tree, frmModifyGroup(tree, key));
    case NodeLevel::Device:
        return change(tree, frmModifyDevice(tree, key));
    case NodeLevel::Port:
        return change(tree, frmModifyPort(tree, key));
    default:
        return;
    }
}

bool OperatorEditors::hasDetails(NodeLevel level, const QString &) const { return level == NodeLevel::Port; }

void OperatorEditors::details(EditedTree &tree, NodeLevel, const QString &key)
{
    frmPortDetails(tree, key).exec();
}

void OperatorEditors::addGroup(EditedTree &tree) { change(tree, frmGroupAdd(tree)); }

void OperatorEditors::addDevice(EditedTree &tree)
{
    QList<DeviceRef> made;
    {
        frmAddDevice form(tree);
        form.exec();
        made = form.made();
    }
    if (!made.isEmpty())
        frmAddPort(tree, made).exec();
}

void OperatorEditors::addPort(EditedTree &tree)
{
    const QString key = tree.currentKey();
    frmAddPort(tree, { { keys::before(key).toLongLong(), keys::after(key) } }).exec();
}

void OperatorEditors::portList(EditedTree &tree) { frmPortList(tree).exec(); }

void OperatorEditors::about(EditedTree &tree)
{
    frmAbout(tree, m_smtpVersion ? m_smtpVersion() : QString()).exec();
}

void OperatorEditors::options(EditedTree &tree)
{
    if (m_openOptions)
        m_openOptions(tree.window());
}
