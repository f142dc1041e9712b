// Puts the house together and starts it; nothing else knows everybody.

#include "core/Main.h"
#include "core/ProgramFolder.h"
#include "core/vbMain.h"
#include "editors/OperatorEditors.h"
#include "notify/AgentAnnouncer.h"
#include "notify/Notifications.h"
#include "notify/options/frmOptions.h"
#include "platform/agent/window/AgentControl.h"
#include "platform/agent/window/CharacterPicture.h"
#include "platform/smtp/cKavroSMTP.h"
#include "ui/DesktopDialogs.h"
#include "ui/HelpPages.h"
#include "ui/Palette.h"
#include "ui/Start.h"
#include "ui/TerminalEcho.h"

#include <QApplication>
#include <QIcon>
#include <QLabel>

#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

QWidget *picture(const QString &character, QWidget *parent)
{
    try {
        return new agent::CharacterPicture(
            agent::CharacterFile::load(CharacterFolder() + u'/' + character + ".acs"_L1), parent);
    } catch (const agent::Error &error) {
        return new QLabel(error.text(), parent);
    }
}

void showHelp(const QString &optionsPage) { helppages::show(helppages::pageOf(optionsPage)); }

void openOptions(QWidget *window) { frmOptions(window, { picture, showHelp }).exec(); }

} // namespace

int main(int argc, char **argv)
{
    choosePlatform();
    QApplication app(argc, argv);
    QApplication::setApplicationName(u"kavro2000"_s);
    QApplication::setApplicationDisplayName(QString()); // captions carry the title themselves
    QApplication::setApplicationVersion(AppVersion());
    QApplication::setDesktopFileName(u"kavro2000"_s);
    QApplication::setWindowIcon(QIcon(u":/images/kavro2000.svg"_s));
    QApplication::setQuitOnLastWindowClosed(false); // hidden behind its tray icon the program goes on
    applyPaletteOfEnvironment();
    ChooseProgramFolder();

    const auto echo = isHeadless() ? std::make_unique<TerminalEcho>() : nullptr;
    DesktopDialogs dialogs(echo.get());
    StatusBarAnnouncer teller;
    AgentAnnouncer character([] { return std::make_unique<agent::AgentControl>(CharacterFolder()); });
    Notifications notifications;
    VbMain &program = vbMain();
    program.dialogs = &dialogs;
    // Without a display nobody would see a character.
    program.announcer = isHeadless() ? static_cast<Announcer *>(&teller) : &character;
    program.afterCheck = &notifications;

    int exitCode = 0;
    {
        OperatorEditors editors([] { return cKavroSMTP::Version(); }, openOptions);
        Start factory(&editors, echo.get());
        Task<void> startUp = Main(factory, QApplication::arguments().mid(1).join(u' '));
        startUp.start();
        exitCode = QApplication::exec();
    }
    program.db.reset();
    // Everything is saved. A name server that does not answer still holds a resolver thread, which an orderly end
    // of the process would wait for.
    std::fflush(nullptr);
    std::_Exit(exitCode);
}
