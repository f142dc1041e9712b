#pragma once

#include "platform/agent/Agent.h"

#include <QMenu>

namespace agent {

/** A character's menu, as it is at this moment: what is always there, then the commands. */
class CommandMenu : public QMenu
{
    Q_OBJECT
public:
    CommandMenu(const Commands &commands, QWidget *parent);

signals:
    void hideChosen();
    void commandChosen(const QString &name);
};

} // namespace agent
