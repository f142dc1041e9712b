#pragma once

#include "platform/dao/Schema.h"

struct sqlite3;

namespace dao {

/** Registers what generated SQL calls: jet_like, jet_text, jet_calc and jet_store. */
void registerFunctions(sqlite3 *db);

/** A value as text the way that comparisons and & see it; Null stays Null. */
Value asText(const Value &value);

} // namespace dao
