#pragma once

#include <QString>

/** Numbers as an operator types them. */
namespace portnumber {

/** Whether the text is a number for the general number parser (blanks, signs and exponents included). */
bool isNumeric(const QString &text);
/** Numeric and from 0 to 65535. */
bool isPort(const QString &text);
/** The plain digits of a port, as the database stores it. */
QString digits(const QString &port);

} // namespace portnumber
