#pragma once

#include "platform/vbscript/Value.h"

#include <QString>

namespace vbs {

class Object;
class ScriptHost;

/** Makes one object; the caller takes it over (Value::object). */
using ObjectMaker = Object *(*)(ScriptHost &host);

/** Adds a ProgID, without regard to case, to what CreateObject knows. A version suffix is a name of its own. */
void registerObject(const QString &progId, ObjectMaker maker);
/** A new object; ScriptError 429 for an unknown ProgID. */
Value createObject(ScriptHost &host, const QString &progId);

/**
 * Registers the administrators' objects (objects/Register.cpp); called once by the engine, before the first
 * CreateObject. A function rather than static objects: those of a static library may be left out by the linker.
 */
void registerAdministratorObjects();

}
