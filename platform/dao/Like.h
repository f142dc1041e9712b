#pragma once

#include <QStringView>

namespace dao {

/** Whether the text matches a DAO pattern: * any run, ? one character, # one digit, [list], [!list]. Case
   does not count. */
bool likeMatches(QStringView text, QStringView pattern);

} // namespace dao
