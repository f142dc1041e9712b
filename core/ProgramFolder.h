#pragma once

#include <QString>

/** Settles the program folder at start: the folder of the executable when that is a writable, portable one,
    else the per-user data folder, which gets the shipped files that it does not have yet. */
void ChooseProgramFolder();

/** Where an installed program keeps what all users share; the executable's own folder when it is not installed. */
QString SharedDataFolder();
/** For tests: replaces it; empty: the real one again. */
void setSharedDataFolder(const QString &folder);
