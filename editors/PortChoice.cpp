#include "editors/PortChoice.h"

#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "core/Trap.h"
#include "ui/Editors.h"

using namespace Qt::StringLiterals;

namespace {

struct Check {
    QString port;
    QString type;
    QString description;
};

/** Creates a check unless the device has it; the database makes its status row along with it. */
void AddPortToDB(qint64 device, const Check &check)
{
    Trap("AddPortToDB", [&] {
        const bool notify = GetSettingBool(u"Options"_s, u"EmailNotify"_s);
        auto rows = db().OpenRecordset(
            u"Select tblPortMain.Port_Num, tblPortMain.Port_Type, tblPortMain.Port_Desc,"
            " tblPortMain.Port_Email_Notify, tblPortMain.Port_ID as PortID,"
            " tblPortMain.Device_ID as MainID, tblPortStatus.Device_ID as StatusID"
            " FROM tblPortMain LEFT JOIN tblPortStatus ON"
            " tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortMain.Device_ID = "_s
            + QString::number(device) + u" AND tblPortMain.Port_Num like '"_s + check.port + u"'"_s);
        CheckDatabaseErrors();
        if (!rows.Eof())
            return;
        rows.AddNew();
        rows.Set(u"MainID"_s, device);
        rows.Set(u"StatusID"_s, device);
        rows.Set(u"Port_Num"_s, check.port);
        rows.Set(u"Port_Type"_s, check.type);
        rows.Set(u"Port_Desc"_s, check.description);
        rows.Set(u"Port_Email_Notify"_s, notify);
        rows.Update();
        rows.Close();
    });
}

Check catalogued(const QString &port)
{
    Check check { portchoice::textOf(port), {}, {} };
    auto row = db().OpenRecordset(u"Select * FROM tblTCPPorts WHERE Port_Num = "_s + port);
    CheckDatabaseErrors();
    if (!row.Eof()) {
        check.description = row.Field(u"Port_Desc"_s).text();
        check.type = u"Port"_s;
    }
    row.Close();
    return check;
}

} // namespace

QString portchoice::numberOf(const QString &text) { return QString::number(text.trimmed().toLongLong()); }

QString portchoice::textOf(const QString &port) { return port.toLongLong() == 0 ? u"Ping"_s : port; }

bool portchoice::isSame(const QString &one, const QString &other)
{
    return numberOf(one) == u"0" ? numberOf(other) == u"0" : one == other;
}

QStringList portchoice::without(const QStringList &ports, const QStringList &others)
{
    QStringList rest;
    for (const QString &port : ports) {
        const auto same = [&](const QString &other) { return isSame(port, other); };
        if (std::none_of(others.begin(), others.end(), same))
            rest.append(port);
    }
    return rest;
}

QStringList portchoice::Step0(qint64 deviceId)
{
    return Trap("Step0", [&] {
        QStringList existing;
        auto rows = db().OpenRecordset(
            u"Select Port_Num FROM tblPortMain WHERE Device_ID = "_s + QString::number(deviceId));
        CheckDatabaseErrors();
        for (; !rows.Eof(); rows.MoveNext())
            existing.append(rows.Field(u"Port_Num"_s).text());
        rows.Close();
        return existing;
    });
}

QList<portchoice::CatalogueRow> portchoice::Step1()
{
    return Trap("Step1", [] {
        QList<CatalogueRow> catalogue;
        auto rows = db().OpenRecordset(u"Select * FROM tblTCPPorts ORDER BY Port_Num"_s);
        CheckDatabaseErrors();
        for (; !rows.Eof(); rows.MoveNext()) {
            catalogue.append({ textOf(rows.Field(u"Port_Num"_s).text()), rows.Field(u"Port_Desc"_s).text() });
        }
        rows.Close();
        return catalogue;
    });
}

void portchoice::Del_Ports(EditedTree &tree, const DeviceRef &device, const QStringList &ports)
{
    Trap("Del_Ports", [&] {
        for (const QString &port : ports) {
            tree.removeNode(NodeLevel::Port, keys::port(device.id, port));
            db().Execute(u"DELETE tblPortMain.*, tblPortStatus.*, tblPortEmailTemplate.*"
                         " FROM tblPortMain INNER JOIN(tblPortStatus"
                         " LEFT JOIN tblPortEmailTemplate"
                         " ON tblPortStatus.Port_ID = tblPortEmailTemplate.Port_ID)"
                         " ON tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortMain.Device_ID = "_s
                + QString::number(device.id) + u" AND tblPortMain.Port_Num = '"_s + port + u"'"_s);
            CheckDatabaseErrors();
        }
    });
}

void portchoice::Add_Ports(EditedTree &tree, const DeviceRef &device, const QStringList &ports)
{
    Trap("Add_Ports", [&] {
        for (const QString &port : ports) {
            const Check check = catalogued(port);
            AddPortToDB(device.id, check);
            tree.addNode(NodeLevel::Port, device.key(), keys::port(device.id, check.port),
                u"Port:"_s + check.port, status::PortOk);
        }
    });
}
