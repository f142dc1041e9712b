#pragma once

#include <QString>

/** The state machine of one check: folds one result into its tblPortStatus row. Nothing happens when the row is
    gone or disabled. Database faults end the program under the procedure's name. */

/** A ping result; roundTrip in ms. */
void Device_Ping_Update(qint32 Port_ID, const QString &Status, const QString &ErrorText, double roundTrip);
/** A TCP result. */
void Port_Update(qint32 Port_ID, const QString &Status, const QString &ErrorText);
