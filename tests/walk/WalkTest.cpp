#include "tests/walk/OperatorWalk.h"

#include <iostream>

using namespace Qt::StringLiterals;

const QList<OperatorWalk::Action> &OperatorWalk::actions()
{
    using W = OperatorWalk;
    static const QList<Action> table {
        { "let time pass", 10, &W::letTimePass },
        { "part of a cycle", 12, &W::partOfCycle },
        { "finish the cycle", 8, &W::finishCycle },
        { "open or close a port", 6, &W::togglePort },
        { "change a setting", 5, &W::changeSetting },

        { "select a node", 6, &W::selectNode },
        { "walk by keys", 4, &W::walkByKeys },
        { "select a row", 3, &W::selectRow },
        { "open a row", 3, &W::openRow },
        { "sort the list", 1, &W::sortList },
        { "change the view", 4, &W::changeView },
        { "resize the window", 1, &W::resizeWindow },
        { "view a file", 1, &W::viewFile },
        { "refresh", 3, &W::refreshViews },
        { "monitoring on", 6, &W::monitoringOn },
        { "monitoring off", 2, &W::monitoringOff },
        { "press what is disabled", 2, &W::pressDisabled },
        { "exit", 1, &W::exitProgram },

        { "delete a group", 3, &W::deleteGroup },
        { "delete a device", 4, &W::deleteDevice },
        { "delete a port", 3, &W::deletePort },
        { "disable or enable a device", 4, &W::disableDevice },
        { "reset counters", 1, &W::resetCounters },
        { "clear the event log", 1, &W::clearEventLog },
        { "clear the registry", 1, &W::clearRegistry },

        { "new database", 1, &W::newDatabase },
        { "open a database", 2, &W::openDatabase },
        { "save the database as", 2, &W::saveDatabaseAs },
        { "compact the database", 1, &W::compactDatabase },
        { "change options", 2, &W::changeOptions },

        { "add a group", 4, &W::addGroup },
        { "add devices", 9, &W::addDevice },
        { "choose ports", 6, &W::addPort },
        { "group properties", 3, &W::groupProperties },
        { "device properties", 4, &W::deviceProperties },
        { "port properties", 5, &W::portProperties },
        { "port details", 2, &W::portDetails },
        { "port list", 3, &W::portList },
        { "about", 1, &W::about },
    };
    return table;
}

namespace {

constexpr int kSteps = 3000; // what takes half a minute
constexpr quint32 kSeed = 20260314;

quint32 fromEnvironment(const char *name, quint32 fallback)
{
    bool ok = false;
    const uint value = qEnvironmentVariableIntValue(name, &ok);
    return ok ? value : fallback;
}

} // namespace

/** KAVRO_WALK_SEED and KAVRO_WALK_STEPS repeat a walk or take another one. */
TEST_F(OperatorWalk, KeepsWindowAndDatabaseSound)
{
    const int steps = int(fromEnvironment("KAVRO_WALK_STEPS", kSteps));
    walk(fromEnvironment("KAVRO_WALK_SEED", kSeed), steps);
    std::cout << ledger().cycles() << " cycles, " << ledger().judged() << " judged, " << ledger().changes()
              << " changes of checks, up to " << mostQueued() << " mails waiting\n";
    if (HasFailure() || steps < kSteps)
        return;
    for (const Action &each : actions())
        EXPECT_GT(done().value(QString::fromLatin1(each.name)), 0) << each.name << " was never possible";
    EXPECT_GT(ledger().changes(), 100) << "hardly anything happened";
}
