#include "editors/GroupForm.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr Twips kSize { 5400, 1950 };
}

GroupForm::GroupForm(QWidget *parent, const char *name, const QString &caption)
    : EditorForm(parent, name, caption, picture(u"image14"_s))
    , m_label(lineBox("txtArray", 0, tr("Group label")))
    , m_description(lineBox("txtArray", 1, tr("Group description")))
{
    auto *column = new QVBoxLayout(this);
    auto *rows = new QFormLayout;
    addRow(*rows, tr("&Label:"), m_label);
    addRow(*rows, tr("&Description:"), m_description);
    column->addLayout(rows);
    column->addStretch();
    addOkCancel(*column);
    openAt(kSize);
}
