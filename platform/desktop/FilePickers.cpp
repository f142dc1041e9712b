#include "platform/desktop/FilePickers.h"

#include "platform/desktop/ScriptedBoxes.h"

#include <QFileDialog>
#include <QPointer>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace desktop {

namespace {

/** "mdb" of "mdb (*.mdb)|*.mdb": what a name typed without any gets when a file is written. */
QString suffix(const QString &filter)
{
    const QString pattern = filter.section(u'|', 1, 1).section(u';', 0, 0);
    return pattern.startsWith(u"*.") && !pattern.endsWith(u'*') ? pattern.mid(2) : QString();
}

QString pick(QWidget *parent, const FileQuestion &question, QFileDialog::AcceptMode mode)
{
    // Watched like the message box: the parent may go while the dialog is open.
    QPointer<QFileDialog> dialog
        = new QFileDialog(parent, question.title, question.folder, qtFilter(question.filter));
    dialog->setAcceptMode(mode);
    // The program has its own words for a missing file and its own question before overwriting.
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    dialog->setDefaultSuffix(suffix(question.filter));
    dialog->selectFile(question.name);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    const QString file = dialog && accepted ? dialog->selectedFiles().value(0) : QString();
    delete dialog;
    return file;
}

} // namespace

QString openFile(QWidget *parent, const FileQuestion &question)
{
    if (ScriptedBoxes *script = ScriptedBoxes::active())
        return script->answerOpenFile(question);
    return pick(parent, question, QFileDialog::AcceptOpen);
}

QString saveFile(QWidget *parent, const FileQuestion &question)
{
    if (ScriptedBoxes *script = ScriptedBoxes::active())
        return script->answerSaveFile(question);
    return pick(parent, question, QFileDialog::AcceptSave);
}

QString qtFilter(const QString &filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString words = parts.at(i).section(u'(', 0, 0).trimmed();
        QString patterns = parts.at(i + 1);
        filters += u"%1 (%2)"_s.arg(words, patterns.replace(u';', u' '));
    }
    return filters.join(";;"_L1);
}

} // namespace desktop
