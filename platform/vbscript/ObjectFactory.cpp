#include "platform/vbscript/ObjectFactory.h"

#include "platform/vbscript/Object.h"

#include <QHash>

namespace vbs {

namespace {

QHash<QString, ObjectMaker> &makers()
{
    static QHash<QString, ObjectMaker> table;
    return table;
}

}

void registerObject(const QString &progId, ObjectMaker maker) { makers().insert(progId.toCaseFolded(), maker); }

Value createObject(ScriptHost &host, const QString &progId)
{
    const ObjectMaker maker = makers().value(progId.toCaseFolded());
    if (!maker)
        throw ScriptError(err::kCannotCreate, progId);
    return Value::object(maker(host));
}

}
