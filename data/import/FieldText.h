#pragma once

#include "core/DatabaseSchema.h"
#include "platform/jet/JetFile.h"

#include <QString>

/** A value of an old file as a column takes it. */
struct FieldText {
    QString literal; // for a statement; empty: the column keeps its default
    QString problem; // in words, when the value is not what it was
};

FieldText fieldText(const schema::Column &column, const jet::Field &field);
