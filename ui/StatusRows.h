#pragma once

#include "ui/NodeKeys.h"

#include <QList>
#include <QStringList>

/** One row of the status list; it shares its key with its tree node. */
struct StatusRow {
    NodeLevel level = NodeLevel::None;
    QString key;
    int image = 0;
    QStringList cells; // Name, Type, Description, Status, and for checks Last Error and Summary
    bool isParent = false; // the group or device whose members follow
};

/** The rows of the status list as the database holds them. Ids and numbers come out of node keys.
    All throw VbError when a statement fails. */
namespace rows {

QList<StatusRow> groups();
/** The group itself, then its devices. */
QList<StatusRow> devices(const QString &groupId);
/** The device itself, then its checks. */
QList<StatusRow> ports(const QString &deviceId);
QList<StatusRow> port(const QString &deviceId, const QString &portNum);

/** "39/40 (97.50%)"; the percentage is rounded half up to two decimals, and 0.00% when nothing was counted.
 */
QString successSummary(qint64 success, qint64 failure);

} // namespace rows
