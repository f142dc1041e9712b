#pragma once

#include <QHashFunctions>
#include <QMetaType>
#include <QString>

/** What a row of the tree or of the status list stands for. */
enum class NodeLevel { None, Root, Group, Device, Port };
Q_DECLARE_METATYPE(NodeLevel)
inline size_t qHash(NodeLevel level, size_t seed = 0) { return qHash(int(level), seed); }

/** Node keys: the only link between a node and its database row. */
namespace keys {

QString root();
QString group(qint64 groupId);
QString device(qint64 deviceId, const QString &deviceName);
QString port(qint64 deviceId, const QString &portNum);

/** The part before the first ":"; a device's or port's Device_ID. */
QString before(const QString &key);
/** The part after the first ":"; a group's Group_ID, a port's Port_Num. A name may hold further colons. */
QString after(const QString &key);

} // namespace keys
