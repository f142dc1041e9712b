#pragma once

#include <QString>

/** Message boxes and shell-open, as the floors without windows ask for them. */
class Dialogs
{
public:
    enum Icon { Critical = 16, Question = 32, Exclamation = 48, Information = 64 };
    enum Buttons { Ok = 0, YesNoCancel = 3, YesNo = 4 };
    enum Answer { AnswerOk = 1, AnswerCancel = 2, AnswerYes = 6, AnswerNo = 7 };

    virtual ~Dialogs() = default;
    /** Shows a modal box and returns the answer. A box that is closed answers Cancel where it offers that, No for a
        yes/no question, OK where that is all it has. */
    virtual Answer messageBox(const QString &text, const QString &caption, Icon icon, Buttons buttons) = 0;
    /** Asks the desktop to open a file or address. False when there is nothing that could even try. */
    virtual bool shellOpen(const QString &target) = 0;
    /** Whether the desktop has a program that shows files of this one's type. */
    virtual bool hasProgramFor(const QString &file) = 0;
};
