#include "platform/desktop/MessageBoxes.h"

#include "platform/desktop/ScriptedBoxes.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace desktop {

namespace {

QMessageBox::Icon boxIcon(Icon icon)
{
    switch (icon) {
    case Critical:
        return QMessageBox::Critical;
    case Question:
        return QMessageBox::Question;
    case Exclamation:
        return QMessageBox::Warning;
    case Information:
        return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons boxButtons(Buttons buttons)
{
    switch (buttons) {
    case YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Ok:
        break;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton boxButton(Answer answer)
{
    switch (answer) {
    case AnswerYes:
        return QMessageBox::Yes;
    case AnswerNo:
        return QMessageBox::No;
    case AnswerCancel:
        return QMessageBox::Cancel;
    case AnswerOk:
        break;
    }
    return QMessageBox::Ok;
}

Answer answerOf(int pressed, Buttons buttons)
{
    switch (pressed) {
    case QMessageBox::Yes:
        return AnswerYes;
    case QMessageBox::No:
        return AnswerNo;
    case QMessageBox::Ok:
        return AnswerOk;
    default:
        return closedAnswer(buttons);
    }
}

QString withPlainLineBreaks(QString text)
{
    text.replace("\r\n"_L1, "\n"_L1);
    return text.replace(u'\r', u'\n');
}

} // namespace

Answer closedAnswer(Buttons buttons)
{
    switch (buttons) {
    case YesNoCancel:
        return AnswerCancel;
    case YesNo:
        return AnswerNo;
    case Ok:
        break;
    }
    return AnswerOk;
}

Answer messageBox(QWidget *parent, const QString &text, const QString &caption, Icon icon, Buttons buttons)
{
    if (ScriptedBoxes *script = ScriptedBoxes::active())
        return script->answerBox({ text, caption, icon, buttons });

    // On the heap and watched: closing the parent while the box is open takes the box with it.
    QPointer<QMessageBox> box
        = new QMessageBox(boxIcon(icon), caption, QString(), boxButtons(buttons), parent);
    box->setTextFormat(Qt::PlainText);
    box->setText(withPlainLineBreaks(text));
    box->setDefaultButton(buttons == Ok ? QMessageBox::Ok : QMessageBox::Yes);
    box->setEscapeButton(boxButton(closedAnswer(buttons)));
    const int pressed = box->exec();
    delete box;
    return answerOf(pressed, buttons);
}

bool closeWindowTitled(const QString &caption)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (!window->isVisible() || window->windowTitle() != caption)
            continue;
        window->close();
        return true;
    }
    return false;
}

} // namespace desktop
