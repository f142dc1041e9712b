#pragma once

#include "tests/walk/Random.h"

#include <QString>

/** What operators type: mostly sensible, often not. Addresses are loopback ones. */
namespace typed {

/** The name box of the add-device wizard: names, addresses, ranges, and what is none of them. */
QString deviceName(Random &random);
/** Aliases, labels and descriptions. An apostrophe, where statements break on one, is rare. */
QString text(Random &random);
/** The number box of the port catalogue. */
QString portNumber(Random &random, const QStringList &known);
QString mailAddress(Random &random);

} // namespace typed
