#include "notify/options/ScriptPanel.h"

#include "core/Trap.h"
#include "notify/EventScript.h"
#include "notify/options/NoteLabel.h"
#include "notify/options/ScriptForm.h"
#include "platform/desktop/Labels.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kEvent = "CheckFinish"_L1;

} // namespace

ScriptPanel::ScriptPanel(QWidget *parent)
    : QWidget(parent)
    , m_state(new QLabel(this))
    , m_problem(new NoteLabel(this))
{
    m_state->setObjectName(u"scriptState"_s);
    m_state->setTextFormat(Qt::PlainText);
    m_state->setWordWrap(true);
    m_problem->setObjectName(u"scriptProblem"_s);
    auto *editButton = new QPushButton(tr("Edit &Script..."), this);
    editButton->setObjectName(u"editScript"_s);
    editButton->setAutoDefault(false);
    connect(editButton, &QPushButton::clicked, this, &ScriptPanel::edit);
    auto *line = new QHBoxLayout;
    line->addWidget(editButton);
    line->addStretch();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_state);
    column->addWidget(m_problem);
    column->addLayout(line);
    column->addWidget(desktop::mutedLabel(
        tr("A script is written in VBScript and has a procedure Main, which is called at the end of every check. It may"
           " write files, run commands or call a web service, but it shows nothing, and it has to be done within 60"
           " seconds, during which the window waits. It runs with your rights. What goes wrong in it is noted in the"
           " event log.\n\nThe command kavro-vbs runs a script file outside of the program, to try it."),
        this));
    describe();
}

void ScriptPanel::describe()
{
    const auto script = StoredScript(kEvent);
    const QString file = QFileInfo(vbMain().databasePath).fileName();
    m_state->setText(script ? tr("The database %1 holds a script for the event %2.").arg(file, kEvent)
                            : tr("The database %1 holds no script for the event %2 yet.").arg(file, kEvent));
    m_problem->setText(script ? ScriptProblem(*script) : QString());
}

void ScriptPanel::edit()
{
    Trap("EditScript", [this] {
        ScriptForm form(StoredScript(kEvent).value_or(QString()), this);
        if (form.exec() != QDialog::Accepted)
            return;
        StoreScript(kEvent, form.script());
        describe();
    });
}
