#pragma once

#include <QString>

class QWidget;

/** What the program asks of the desktop: message boxes, file pickers, opening of files and addresses.
    While a ScriptedBoxes lives, it answers in place of the user and no window appears. */
namespace desktop {

// The numbers are those of the classic message box styles and answers.
enum Icon { Critical = 16, Question = 32, Exclamation = 48, Information = 64 };
enum Buttons { Ok = 0, YesNoCancel = 3, YesNo = 4 };
enum Answer { AnswerOk = 1, AnswerCancel = 2, AnswerYes = 6, AnswerNo = 7 };

/** Shows a modal box and returns the answer. The text is plain; line breaks may be LF, CR or both, tabs are
    kept. A box that is closed answers Cancel where it has that button, else No, else OK. */
Answer messageBox(QWidget *parent, const QString &text, const QString &caption, Icon icon, Buttons buttons);

/** The answer of a box that is closed without pressing a button. */
Answer closedAnswer(Buttons buttons);

/** Sends a close request to the visible top-level window of that caption; false when there is none. */
bool closeWindowTitled(const QString &caption);

} // namespace desktop
