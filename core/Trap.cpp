#include "core/Trap.h"

#include "platform/dao/VbError.h"

namespace {
constexpr long kInternalError = 51; // Visual Basic's own number for a fault of the program itself
}

void ReportCurrentException(const char *procName)
{
    try {
        throw;
    } catch (const ProgramEnded &) {
        throw;
    } catch (const VbError &error) {
        ErrorHandler(error.number(), error.description(), procName);
    } catch (const std::exception &error) {
        ErrorHandler(kInternalError, QString::fromLocal8Bit(error.what()), procName);
    }
}
