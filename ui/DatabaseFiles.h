#pragma once

#include "core/Task.h"
#include "ui/WindowParts.h"

#include <QString>

/** The commands that work on the database file as a whole. Only one of them runs at a time; between their steps the
    window stays alive and there always is an open database. */
class DatabaseFiles
{
public:
    explicit DatabaseFiles(const WindowParts &parts)
        : m_parts(parts)
    {
    }

    /** mnuFileNew: has the announcer tell how a new database is made; makes none. */
    static void announceNew();
    void mnuFileOpen();
    void mnuFileSaveAs();
    void mnuCompactDatabase();

    bool isBusy() const { return m_running.isRunning(); }

private:
    void run(Task<void> command);
    Task<void> open();
    Task<void> saveAs();
    Task<void> CompactDatabase();

    bool exchange(const QString &path);
    bool reload(const QString &path);
    Task<void> showOpened(QString path);
    void showCaption(const QString &path);

    WindowParts m_parts;
    Task<void> m_running;
};
