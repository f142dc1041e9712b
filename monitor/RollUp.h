#pragma once

#include "core/ResultTable.h"
#include "core/Task.h"

#include <QString>

/** Columns of the failed-check and the recovered-check list. */
namespace failed {
enum Column { Name, Port, Reason, Pronounce, DeviceId, PortId, Count };
}
namespace recovered {
enum Column { Name, Port, Pronounce, DeviceId, PortId, Count };
}

/** Rolls check states up into device and group states by ordered statements (problems over recovered over none),
    sets the tray's picture and tip. Returns the problem count; -1 when there are no devices or no groups,
    and then nothing after that point was touched. */
Task<int> Check_TVIcons();

/** Checks whose failure is not yet reported, 6 columns × n rows of text. */
ResultTable GetFailedDevices();
/** Checks whose recovery is not yet reported, 5 columns × n rows of text. */
ResultTable GetRecoveredDevices();
