#pragma once

#include "core/Task.h"

#include <QString>

class QWidget;

/** Whether the file is a genuine Jet database, which has to be converted before it can be opened. */
bool needsConversion(const QString &path);

/** Asks whether the file shall be converted, and does it by way of the import command, with a progress box that can
    cancel it. The result's path; empty when there is none, which the operator has been told. The old file is never
    changed, and no other one is overwritten. */
Task<QString> convertJetFile(QWidget &window, QString path);
