#include "ui/DesktopDialogs.h"

#include "platform/desktop/DefaultPrograms.h"
#include "platform/desktop/MessageBoxes.h"
#include "platform/desktop/ShellOpen.h"
#include "ui/TerminalEcho.h"

#include <QApplication>

Dialogs::Answer DesktopDialogs::messageBox(
    const QString &text, const QString &caption, Icon icon, Buttons buttons)
{
    if (m_terminal) {
        m_terminal->message(caption, text);
        return Answer(desktop::closedAnswer(desktop::Buttons(buttons)));
    }
    return Answer(desktop::messageBox(
        QApplication::activeWindow(), text, caption, desktop::Icon(icon), desktop::Buttons(buttons)));
}

bool DesktopDialogs::shellOpen(const QString &target) { return desktop::shellOpen(target); }

bool DesktopDialogs::hasProgramFor(const QString &file) { return desktop::hasProgramFor(file); }
