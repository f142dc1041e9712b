#pragma once

#include <QCoreApplication>
#include <QString>

namespace options {

/** A text of the dialog's tables in the user's language. */
inline QString tr(const char *text) { return QCoreApplication::translate("options", text); }

} // namespace options
