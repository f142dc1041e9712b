#pragma once

#include "ui/CommandState.h"

#include <QHash>
#include <QObject>

class CommandHandlers;
class QAction;
class QMenu;
class QMenuBar;
class QToolBar;
class QWidget;

/** The operator's commands, each declared once; menu bar, toolbar, context menus and tray menu are built from
 * them. */
class Commands : public QObject
{
    Q_OBJECT
public:
    /** tree and list own the shortcuts that act on their selection, window all others. */
    Commands(CommandHandlers &handlers, QWidget &window, QWidget &tree, QWidget &list);

    void fillMenuBar(QMenuBar &bar);
    void fillToolBar(QToolBar &bar);
    /** A menu of the table by its name, made for this parent. */
    QMenu *makeMenu(const char *name, QWidget *parent);

    /** Shows, enables and checks every command as the state asks for. */
    void update(const CommandState &state);

    QAction *action(const char *name) const;
    QList<QAction *> actions() const;

signals:
    /** A command has been carried out; states may have changed. */
    void done();

private:
    void makeActions(QWidget &window, QWidget &tree, QWidget &list);
    CommandHandlers &m_handlers;
    QHash<QByteArrayView, QAction *> m_actions;
};
