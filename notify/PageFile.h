#pragma once

#include "core/Task.h"

#include <QStringList>

/** Replaces a file by the joined texts, in UTF-8. It is written beside the old one in slices and then takes its
    place at once, so that a reader never meets half of it. Throws VbError 75 or 76 when that is not possible. */
Task<void> ReplaceFile(QString path, QStringList texts);
