#pragma once

#include "platform/vbscript/objects/Support.h"

/**
 * A small registry for scripts, kept per user in kavro2000/script-registry.ini below the configuration
 * folder. Keys are named as on Windows (HKCU\…, HKEY_LOCAL_MACHINE\…); a path that ends with a backslash is a
 * key's own value.
 */
namespace vbs::objects::registry {

/** Throws −2147024894 with the path when it is not there, 5 for a path without a root key. */
Value read(const QString &path);
/** `type`: REG_SZ, REG_EXPAND_SZ, REG_DWORD or REG_BINARY; 13 for any other. */
void write(const QString &path, const Value &value, const QString &type, ScriptHost &host);
/** A value, or a key with all below it. Throws as read does. */
void remove(const QString &path);

}
