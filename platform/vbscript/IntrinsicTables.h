#pragma once

#include "platform/vbscript/Engine.h"
#include "platform/vbscript/Intrinsics.h"
#include "platform/vbscript/Operators.h"

#include <span>

namespace vbs {

// One table per subject; Intrinsics.cpp puts them together.
std::span<const Intrinsic> conversionFunctions();
std::span<const Intrinsic> stringFunctions();
std::span<const Intrinsic> formatFunctions();
std::span<const Intrinsic> numberFunctions();
std::span<const Intrinsic> dateFunctions();
std::span<const Intrinsic> otherFunctions();

/** Text comparison argument: 0 binary, 1 text; anything else is error 5. */
Qt::CaseSensitivity comparisonMode(Args &args, int index);
inline bool isNull(const Args &args, int index) { return args[index].is(Type::Null); }
double toDate(ScriptHost &host, const Value &value);

}
