#pragma once

#include "platform/vbscript/objects/Support.h"

namespace vbs::objects {

/** File object of a path of this system; 53 when there is none. */
Object *makeFile(const QString &path);
/** Folder object; 76 when there is none. */
Object *makeFolder(const QString &path);
/** The file system that holds `path`; 68 when that is not there. */
Object *makeDrive(const QString &path);
/** The mounted file systems. */
Object *makeDrives();

}
