#pragma once

#include "core/Dialogs.h"

class TerminalEcho;

/** The program's boxes on the desktop. Without a display they are told on the terminal and answered as if
   closed, since nobody could ever press a button. */
class DesktopDialogs : public Dialogs
{
public:
    /** terminal: null where there is a display. */
    explicit DesktopDialogs(TerminalEcho *terminal = nullptr)
        : m_terminal(terminal)
    {
    }

    Answer messageBox(const QString &text, const QString &caption, Icon icon, Buttons buttons) override;
    bool shellOpen(const QString &target) override;
    bool hasProgramFor(const QString &file) override;

private:
    TerminalEcho *m_terminal;
};
