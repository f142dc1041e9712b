#pragma once

#include "editors/NewDevices.h"

#include <QStringList>

class EditedTree;

/** What the add-port wizard decides: the catalogue, a device's present checks, and what differs from the
   ticked ones. No widgets. */
namespace portchoice {

struct CatalogueRow {
    QString text; // the number, or "Ping"
    QString description;
};

/** The whole catalogue in the order of its numbers. */
QList<CatalogueRow> Step1();
/** The Port_Num of every check that a device has. */
QStringList Step0(qint64 deviceId);

/** The number behind a row's text; 0 for "Ping". */
QString numberOf(const QString &text);
/** "Ping" for 0, else the port itself. */
QString textOf(const QString &port);
/** Whether two ports mean the same check: "Ping" is 0. */
bool isSame(const QString &one, const QString &other);
/** The ports of one list that are not in the other. */
QStringList without(const QStringList &ports, const QStringList &others);

/** Deletes checks with their status and template rows, and their nodes. */
void Del_Ports(EditedTree &tree, const DeviceRef &device, const QStringList &ports);
/** Adds checks and their nodes; a check that exists is left as it is. */
void Add_Ports(EditedTree &tree, const DeviceRef &device, const QStringList &ports);

} // namespace portchoice
