#pragma once

#include "platform/jet/Pages.h"

namespace jet {

/** The bytes of a memo, wherever it is kept; empty when a part of it cannot be found. */
std::optional<QByteArray> readLongValue(MdbHandle &mdb, const QByteArray &field);

} // namespace jet
