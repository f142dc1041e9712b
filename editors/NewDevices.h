#pragma once

#include "editors/AddressRange.h"

#include <QList>
#include <QString>

/** A device as the wizards hand it on. */
struct DeviceRef {
    qint64 id = 0;
    QString name;
    QString key() const;
};

bool IsIPAddressText(const QString &text);
bool IsDeviceNameText(const QString &text);
/** Whether a device of that name is monitored; the name goes into the statement as it is. */
bool DeviceExists(const QString &name);

/** What the add-device wizard decides: which names are good, what will be made, and making it. No widgets. */
class NewDevices
{
public:
    explicit NewDevices(qint64 groupId)
        : m_groupId(groupId)
    {
    }

    /** Takes the name box's text. Returns what is wrong with it, ready for a message box; empty when all is
     * well. */
    QString setName(const QString &entered);
    void setTexts(const QString &alias, const QString &description);

    bool isRange() const { return m_isRange; }
    const QString &name() const { return m_name; }
    const QString &alias() const { return m_alias; }
    const QString &description() const { return m_description; }
    /** The names that will be made; the addresses of a range that exist already are not among them. */
    const QStringList &names() const { return m_names; }
    /** Addresses of the range that exist already. */
    int skipped() const { return m_skipped; }

    QString nodeText(const QString &deviceName) const;
    /** Inserts a device's row with the per-device flags of the settings; nothing when the name exists. */
    DeviceRef Device_Add(const QString &name, const QString &description, const QString &alias) const;

private:
    QString setRange(const QStringList &addresses);

    qint64 m_groupId;
    QString m_name;
    QString m_alias;
    QString m_description;
    QStringList m_names;
    bool m_isRange = false;
    int m_skipped = 0;
};
