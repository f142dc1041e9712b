#pragma once

#include "platform/dao/Plan.h"

#include <memory>

namespace dao {

/** Understands a statement against the schema. Throws the DAO number of whatever is wrong with it. */
std::shared_ptr<const Plan> resolve(const Lexed &lexed, const Schema &schema);

/** The plan of a whole table, as opened by its bare name; null when there is no such table. */
std::shared_ptr<const Plan> resolveTable(const QString &name, const Schema &schema);

} // namespace dao
