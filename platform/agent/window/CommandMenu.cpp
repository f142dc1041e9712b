#include "platform/agent/window/CommandMenu.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

CommandMenu::CommandMenu(const Commands &commands, QWidget *parent)
    : QMenu(parent)
{
    setAccessibleName(commands.caption);
    connect(addAction(u"&Hide"_s), &QAction::triggered, this, &CommandMenu::hideChosen);
    addSeparator();
    for (const Command &command : commands.all()) {
        if (command.caption.isEmpty() || !command.visible)
            continue;
        QAction *action = addAction(command.caption);
        action->setEnabled(command.enabled);
        connect(action, &QAction::triggered, this, [this, name = command.name] { emit commandChosen(name); });
        if (command.name.compare(commands.defaultName, Qt::CaseInsensitive) == 0)
            setDefaultAction(action);
    }
}

} // namespace agent
