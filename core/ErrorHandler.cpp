#include "core/vbMain.h"

#include "core/Addresses.h"
#include "core/Announcer.h"
#include "core/Dialogs.h"
#include "core/MainWindow.h"
#include "core/Waits.h"

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

std::function<void(int)> s_endProgram;
bool s_handling = false;

/** Thrown by an error inside the handler; each step of the handler swallows it. */
struct ErrorInsideHandler {};

template <class F>
void ignoringErrors(F &&step)
{
    try {
        step();
    } catch (...) {
        // The program ends anyway; the first error is the one that counts.
    }
}

ResultTable apology()
{
    ResultTable line(4);
    line.addRow({ u"Oh crap!  A very bad thing just happened!"_s, u"Sad"_s, QString(), QString() });
    return line;
}

QString errorBody(long number, const QString &description, const char *procName)
{
    return AppTitle() + " will be shut down due to an error in the program."_L1
        + "\r\n\r\n"_L1
        + "An error has occured in the "_L1 + QLatin1StringView(procName) + " subroutine."_L1
        + "\r\n\r\n"_L1
        + "Error Number: "_L1 + u'\t' + QString::number(number)
        + "\r\n"_L1
        + "Error Description: "_L1 + u'\t' + description
        + "\r\n\r\n"_L1
        + "If you can duplicate this error then report it to "_L1 + kSupportAddress + u' '
        + "\r\n"_L1
        + "with a complete description of the error.  Your cooperation is appreciated."_L1;
}

} // namespace

void ErrorHandler(long ErrNumber, const QString &ErrDescription, const char *ProcName)
{
    if (s_handling)
        throw ErrorInsideHandler();
    s_handling = true;
    waits::freeze(true); // nothing of the broken work may go on behind the box
    const QString description = ErrDescription.isEmpty() ? u"Unknown error"_s : ErrDescription;
    VbMain &program = vbMain();
    ignoringErrors([&] {
        if (program.announcer)
            program.announcer->speakLines(apology());
    });
    ignoringErrors([&] {
        if (program.dialogs)
            program.dialogs->messageBox(errorBody(ErrNumber, description, ProcName),
                                        AppTitle() + " - Unexpected Error!"_L1, Dialogs::Critical, Dialogs::Ok);
    });
    ignoringErrors([&] {
        if (program.window)
            program.window->unload();
    });
    waits::freeze(false);
    s_handling = false;
    EndProgram(1);
}

void setEndProgramHook(std::function<void(int)> hook) { s_endProgram = std::move(hook); }

void EndProgram(int exitCode)
{
    ignoringErrors([] {
        if (vbMain().db)
            vbMain().db->Close();
    });
    if (s_endProgram)
        s_endProgram(exitCode);
    // No destructors: the frames of the procedure that failed are still below us.
    std::_Exit(exitCode);
}
