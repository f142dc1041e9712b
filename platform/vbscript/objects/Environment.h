#pragma once

#include "platform/vbscript/objects/Support.h"

namespace vbs::objects {

/** Variables of one kind ("PROCESS", "SYSTEM" …); only those of the process can be changed. 5: unknown kind.
 */
Value makeEnvironment(const QString &kind);
/** Folders by the names that scripts know ("Desktop", "MyDocuments" …). */
Object *makeSpecialFolders();

}
