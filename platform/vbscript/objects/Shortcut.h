#pragma once

#include "platform/vbscript/objects/Support.h"

namespace vbs::objects {

/** A starter that Save writes as a desktop entry; .lnk and .url become .desktop. */
Object *makeShortcut(const QString &path);

}
