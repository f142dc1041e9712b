#include "editors/PortNumber.h"

#include "platform/dao/Value.h"
#include "platform/dao/VbError.h"

#include <optional>

namespace {

constexpr double kHighestPort = 65535;

std::optional<double> parsed(const QString &text)
{
    try {
        return dao::Value(text).number();
    } catch (const VbError &) {
        return {}; // the answer to the question, not a fault
    }
}

} // namespace

bool portnumber::isNumeric(const QString &text) { return parsed(text).has_value(); }

bool portnumber::isPort(const QString &text)
{
    const std::optional<double> number = parsed(text);
    return number && *number >= 0 && *number <= kHighestPort;
}

QString portnumber::digits(const QString &port) { return QString::number(dao::Value(port).integer()); }
