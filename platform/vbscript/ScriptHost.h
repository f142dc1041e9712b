#pragma once

#include "platform/vbscript/Value.h"

#include <QLocale>
#include <QString>
#include <functional>

namespace vbs {

class Object;

/**
 * What the running engine offers to native objects. Valid during the call that it is handed to, and for as long as
 * the engine lives for objects that it created.
 */
class ScriptHost
{
public:
    virtual ~ScriptHost() = default;

    /** Milliseconds until the time limit, 0 when over, -1 without a limit. Waiting code waits no longer. */
    virtual qint64 millisecondsLeft() const = 0;
    /** Throws ScriptTimeout when the time is over. */
    virtual void checkDeadline() = 0;
    /** Counts native work (1 unit: about 20 ns) so that the deadline is looked at often enough; may throw. */
    virtual void spend(qint64 units) = 0;
    /** False: nothing may be shown; dialogs fail with 70. */
    virtual bool userInterfaceAllowed() const = 0;
    /** Locale of texts and dates: the system's, or what SetLocale chose. */
    virtual const QLocale &locale() const = 0;
    /** Follows default members until the value is no object; 438 when there is none, 91 for Nothing. */
    virtual Value plain(const Value &value) = 0;
    /** Calls an object's default member (a GetRef function …) with these values. */
    virtual Value callObject(Object *object, const QList<Value> &arguments) = 0;
    /** Creates an object by its ProgID as CreateObject does; 429 for an unknown one. */
    virtual Value createObject(const QString &progId) = 0;
};

/** Conversions as the language makes them; Null is 94, what does not convert 13, what does not fit 6. */
QString toText(ScriptHost &host, const Value &value);
double toReal(ScriptHost &host, const Value &value);
qint32 toLong(ScriptHost &host, const Value &value); // half to even
bool toBoolean(ScriptHost &host, const Value &value);
QByteArray toBytes(ScriptHost &host, const Value &value); // byte array, or the text's UTF-16 bytes
/** Object of the value; 424 when it is none, 91 for Nothing. */
Object *toObject(const Value &value);

}
