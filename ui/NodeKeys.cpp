#include "ui/NodeKeys.h"

using namespace Qt::StringLiterals;

namespace keys {

QString root() { return u"Root"_s; }

QString group(qint64 groupId) { return u"Group:"_s + QString::number(groupId); }

QString device(qint64 deviceId, const QString &deviceName)
{
    return QString::number(deviceId) + u':' + deviceName;
}

QString port(qint64 deviceId, const QString &portNum) { return QString::number(deviceId) + u':' + portNum; }

QString before(const QString &key) { return key.section(u':', 0, 0); }

QString after(const QString &key) { return key.section(u':', 1); }

} // namespace keys
