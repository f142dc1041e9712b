// Writes status pages made from the default template, for the browser test and for looking at them.
// Usage: status_page_sample FOLDER

#include "core/Settings.h"
#include "notify/vbHTML.h"
#include "tests/world/World.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;

namespace {

struct SampleCheck {
    const char *port;
    const char *description;
    int icon;
    const char *state;
    const char *error;
    int good;
    int bad;
};

struct SampleDevice {
    const char *name;
    const char *alias;
    const char *description;
    const char *deviceStatus;
    QList<SampleCheck> checks;
};

const SampleCheck kPing{ "Ping", "ICMP echo", 5, "Connected", "", 2012, 3 };
const SampleCheck kWeb{ "443", "Secure web", 5, "Connected", "", 2015, 0 };
const QList<SampleDevice> kDevices{
    { "web-01.example.com", "Shop front", "Frankfurt, rack 12", "Problems Detected",
      { { "443", "Secure web", 7, "Failed", "connection timed out", 1893, 122 },
        { "80", "Web", 7, "Failed", "connection refused", 1990, 25 }, kPing } },
    { "mail.example.com", "Mail", "Incoming and outgoing mail", "Recovered",
      { { "25", "Mail transfer", 6, "Connected", "connection refused", 2001, 14 },
        { "993", "Secure IMAP", 5, "Connected", "", 2015, 0 }, kPing } },
    { "10.0.3.17", "", "", "No Problems Detected", { kWeb, kPing } },
    { "nas.example.com", "Archive", "Switched off over the weekend", "Disabled",
      { { "445", "File shares", 13, "Disabled", "", 310, 2 } } },
    { "lab-7.example.com", "Lab 7", "New, first check to come", "Not checked",
      { { "22", "Secure shell", 5, "Not checked", "", 0, 0 } } },
};

QString utf8(const char *text) { return QString::fromUtf8(text); }

void setField(const QString &table, const QString &key, int id, const QList<std::pair<QString, dao::Value>> &fields)
{
    dao::Recordset row = db().OpenRecordset(u"Select * FROM "_s + table + " WHERE "_L1 + key + " = "_L1
                                            + QString::number(id));
    row.Edit();
    for (const auto &[name, value] : fields)
        row.Set(name, value);
    row.Update();
}

void addSample(World &world, int group, const SampleDevice &sample)
{
    const int device = world.addDevice(group, utf8(sample.name), utf8(sample.alias));
    setField(u"tblDevices"_s, u"Device_ID"_s, device,
             { { u"Device_Desc"_s, utf8(sample.description) }, { u"Device_Status"_s, utf8(sample.deviceStatus) },
               { u"MSAgent_Referr_Device"_s, false } });
    for (const SampleCheck &check : sample.checks) {
        const int port = world.addCheck(device, utf8(check.port));
        setField(u"tblPortMain"_s, u"Port_ID"_s, port, { { u"Port_Desc"_s, utf8(check.description) } });
        QList<std::pair<QString, dao::Value>> fields{
            { u"Port_Icon"_s, check.icon }, { u"Port_Status"_s, utf8(check.state) },
            { u"Port_Last_Error"_s, utf8(check.error) }, { u"Port_Success"_s, check.good },
            { u"Port_Failure"_s, check.bad } };
        if (*check.error)
            fields.append({ u"Port_Fail_Date"_s, world.now.addSecs(-5400) });
        if (check.icon == 6)
            fields.append({ u"Port_Rec_Date"_s, world.now.addSecs(-300) });
        if (utf8(check.port) == "Ping"_L1)
            fields.append({ { u"Ping_Min"_s, 0.412 }, { u"Ping_Max"_s, 18.3 }, { u"Ping_Avg"_s, 1.2345678 } });
        setField(u"tblPortStatus"_s, u"Port_ID"_s, port, fields);
    }
}

void write(World &world, const QString &file, const ResultTable &failedNow, const ResultTable &recoveredNow)
{
    Q_UNUSED(world)
    Task<void> task = WriteHTMLOutput(file, failedNow, recoveredNow);
    task.start();
    while (task.isRunning())
        QCoreApplication::processEvents();
    task.result();
}

const char *const kHostile = "<script>document.title='hacked'</script>\"' --> XXX <!--PORTNAME--> </script> <img src=x"
                             " onerror=document.title='hacked'> &lt;b&gt;";

void writeSamples(const QDir &folder)
{
    World world;
    SaveSetting(u"Options"_s, u"HTMLTemplateFile"_s, QStringLiteral(KAVRO_TEMPLATE));
    const ResultTable none6(6), none5(5);
    write(world, folder.filePath(u"empty.html"_s), none6, none5);
    const int servers = world.addGroup(u"Servers"_s);
    world.addGroup(u"Branch offices"_s);
    for (const SampleDevice &sample : kDevices)
        addSample(world, servers, sample);
    ResultTable failedNow(6), recoveredNow(5);
    failedNow.addRow({ u"web.01"_s, u"443"_s, u"connection timed out"_s, u"True"_s, u"1"_s, u"1"_s });
    recoveredNow.addRow({ u"Mail"_s, u"25"_s, u"True"_s, u"2"_s, u"4"_s });
    SaveSetting(u"MSAgent"_s, u"AnnounceDate"_s, u"1"_s);
    write(world, folder.filePath(u"page.html"_s), failedNow, recoveredNow);

    addSample(world, servers, { "hostile", "", kHostile, "Problems Detected",
                                { { "81", kHostile, 7, "Failed", kHostile, 1, 1 } } });
    setField(u"tblDevices"_s, u"Device_ID"_s, int(kDevices.size()) + 1, { { u"Device_Name"_s, utf8(kHostile) } });
    setField(u"tblGroup"_s, u"Group_ID"_s, servers, { { u"Group_Label"_s, utf8(kHostile) } });
    failedNow.addRow({ utf8(kHostile), u"81"_s, utf8(kHostile), u"True"_s, u"6"_s, u"9"_s });
    write(world, folder.filePath(u"hostile.html"_s), failedNow, none5);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    writeSamples(QDir(QString::fromLocal8Bit(argc > 1 ? argv[1] : ".")));
    return 0;
}
