#pragma once

#include "core/Task.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class ScriptControl;

/** The script stored for an event; nothing when the database holds none. */
std::optional<QString> StoredScript(const QString &event);
/** Stores the script of an event in place of the former one. */
void StoreScript(const QString &event, const QString &script);
/** What keeps a script from being run, with its line; empty when it can be started. */
QString ScriptProblem(const QString &script);

/** Runs the script that an administrator has stored for an event. */
class EventScript : public QObject
{
    Q_OBJECT
public:
    /** limitMs: the longest that a script may run, in ms. */
    explicit EventScript(int limitMs = 60000);
    ~EventScript() override;

    /** Runs Main of the script stored for the event; without one nothing happens. The script runs on this thread and
        holds it until it returns or its time is up. Its errors are logged and end nothing. */
    Task<void> ExecuteScript(QString event);

private:
    Task<void> execute(QString event);
    ScriptControl &scriptControl();

    int m_limitMs;
    std::unique_ptr<ScriptControl> ScriptControl1; // made at the first script: most users never have one
};
