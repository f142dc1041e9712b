#include "ui/HelpPages.h"

#include "core/Dialogs.h"
#include "core/ProgramFolder.h"
#include "core/Trap.h"

#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kFirstPage("index.html");

/** A dialog, or a page of the options, and the page about it. */
struct About {
    QLatin1StringView name;
    QLatin1StringView page;
};
constexpr About kPages[] = {
    { "frmAddDevice"_L1, "add-device.html"_L1 },
    { "frmAddPort"_L1, "add-port.html"_L1 },
    { "frmGroupAdd"_L1, "groups.html"_L1 },
    { "frmModifyDevice"_L1, "device-properties.html"_L1 },
    { "frmModifyGroup"_L1, "groups.html"_L1 },
    { "frmModifyPort"_L1, "port-properties.html"_L1 },
    { "frmOptions"_L1, "options.html"_L1 },
    { "frmPortDetails"_L1, "port-details.html"_L1 },
    { "frmPortList"_L1, "port-list.html"_L1 },
    { "MSAgent"_L1, "options-agent.html"_L1 },
    { "MSAgentCharacters"_L1, "options-agent.html"_L1 },
    { "Logging"_L1, "options-logging.html"_L1 },
    { "FailureNotification"_L1, "options-mail.html"_L1 },
    { "SMTP"_L1, "options-mail.html"_L1 },
    { "EmailTemplate"_L1, "options-mail.html"_L1 },
    { "HTMLOutput"_L1, "options-html.html"_L1 },
    { "DBOptions"_L1, "options-database.html"_L1 },
    { "Monitor"_L1, "options-monitoring.html"_L1 },
    { "TCP"_L1, "options-monitoring.html"_L1 },
    { "Ping"_L1, "options-monitoring.html"_L1 },
    { "DefaultOptions"_L1, "options-creation.html"_L1 },
    { "EventScripting"_L1, "options-scripting.html"_L1 },
    { "Root"_L1, "options.html"_L1 },
};

/** The pages lie beside the program; an installed one keeps them where it keeps all that users share. */
QString pathOf(const QString &page)
{
    const QString beside = ProgramFolder() + "/help/"_L1 + page;
    return QFileInfo::exists(beside) ? beside : SharedDataFolder() + "/help/"_L1 + page;
}

bool isHelpKey(const QEvent &event)
{
    const auto &key = static_cast<const QKeyEvent &>(event);
    return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier && !key.isAutoRepeat();
}

} // namespace

QString helppages::pageOf(const QString &name)
{
    for (const About &each : kPages) {
        if (each.name == name)
            return each.page;
    }
    return kFirstPage;
}

void helppages::show(const QString &page)
{
    const QString path = pathOf(page);
    const bool exists = QFileInfo::exists(path);
    if (exists && ShellOpen(u"file://"_s + path))
        return;
    const QString why = exists ? QObject::tr("No program was found that shows this help page:")
                               : QObject::tr("This help page is missing:");
    vbMain().dialogs->messageBox(why + u"\r\n"_s + path, AppTitle(), Dialogs::Information, Dialogs::Ok);
}

ContextHelp::ContextHelp(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool ContextHelp::eventFilter(QObject *watched, QEvent *event)
{
    const auto *dialog = event->type() == QEvent::KeyPress && isHelpKey(*event)
        ? qobject_cast<QDialog *>(QApplication::activeModalWidget())
        : nullptr;
    // Message boxes have no name and no page of their own.
    if (!dialog || dialog->objectName().isEmpty())
        return QObject::eventFilter(watched, event);
    Trap("ContextHelp", [&] { helppages::show(helppages::pageOf(dialog->objectName())); });
    return true;
}
