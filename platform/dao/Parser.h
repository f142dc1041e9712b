#pragma once

#include "platform/dao/Ast.h"
#include "platform/dao/Lexer.h"

namespace dao {

/** Reads exactly one SELECT, INSERT, UPDATE or DELETE. Throws VbError 3075, 3126, 3129 to 3145, 3360. */
ast::Statement parse(const Lexed &lexed);

} // namespace dao
