#pragma once

#include "platform/dao/Dao.h"

/** Making DAO errors and keeping the engine's error collection. */
namespace dao {

/** Throws VbError with the DAO number and its text; %1 and %2 of the text are replaced. */
[[noreturn]] void raise(long number, const QString &first = {}, const QString &second = {});

/** The text of a DAO error number with its inserts. */
QString errorText(long number, const QString &first = {}, const QString &second = {});

void clearErrors();
void recordError(const VbError &error, const QString &source);

/** Calls the access hook, if one is set. */
void callAccessHook();

/** Runs one operation: the collection starts empty and holds the operation's error when it fails. */
template <class F>
auto operation(const QString &source, F &&body) -> decltype(body())
{
    clearErrors();
    try {
        return body();
    } catch (const VbError &error) {
        recordError(error, source);
        throw;
    }
}

} // namespace dao
