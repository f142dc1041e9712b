#pragma once

#include "platform/dao/Schema.h"

namespace dao {

/** The value in the form in which a column of this kind stores it. Throws 3421 (does not convert) and 3349
   (out of range). */
Value convertTo(Kind kind, const Value &value);

/** convertTo() and the column's own limits: 3163 (too long), 3315 (empty). */
Value convertFor(const Column &column, const Value &value);

} // namespace dao
