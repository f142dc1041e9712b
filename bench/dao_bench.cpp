#include "platform/dao/Dao.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;

// Times the storage layer on a database of 1000 devices with 11 checks each: microseconds per call beside its
// target.

namespace {

constexpr int kGroups = 20;
constexpr int kDevices = 1000;
constexpr int kChecks = 11;

QStringList definitions()
{
    QFile file(QStringLiteral(KAVRO_SCHEMA));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QString text;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        if (!line.startsWith(u"--"_s))
            text += line + u'\n';
    }
    return text.trimmed().chopped(1).split(u";\n"_s);
}

void fill(dao::Database &db)
{
    for (int group = 1; group <= kGroups; ++group)
        db.Execute(u"INSERT INTO tblGroup (Group_Label) VALUES ('Group %1')"_s.arg(group));
    int port = 0;
    for (int device = 1; device <= kDevices; ++device) {
        db.Execute(u"INSERT INTO tblDevices (Group_ID, Device_Name) VALUES (%1, 'host%2.example')"_s
                       .arg(device % kGroups + 1)
                       .arg(device));
        for (int check = 0; check < kChecks; ++check) {
            ++port;
            db.Execute(u"INSERT INTO tblPortMain (Device_ID, Port_Num) VALUES (%1, '%2')"_s.arg(device).arg(
                check == 0 ? u"Ping"_s : QString::number(check * 10)));
            db.Execute(
                u"INSERT INTO tblPortStatus (Port_ID, Device_ID) VALUES (%1, %2)"_s.arg(port).arg(device));
        }
    }
    db.CommitPending();
}

void measure(const char *name, double target, int rounds, const std::function<void(int)> &body)
{
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < rounds; ++i)
        body(i);
    const double each = double(clock.nsecsElapsed()) / 1000 / rounds;
    if (target > 0)
        std::printf("%-34s %9.1f us  target %6.0f us  %s\n", name, each, target,
                    each <= target ? "met" : "MISSED");
    else
        std::printf("%-34s %9.1f us\n", name, each);
}

void editStatus(dao::Database &db, int port)
{
    auto rs
        = db.OpenRecordset(u"Select * from tblPortStatus WHERE Port_ID = %1 AND Port_Icon <> 13"_s.arg(port));
    rs.Edit();
    rs.Set(u"Port_Status"_s, u"Connected"_s);
    rs.Set(u"Port_Success"_s, rs.Field(u"Port_Success"_s).integer() + 1);
    rs.Set(u"Ping_Cur"_s, 12);
    rs.Set(u"Ping_Min"_s, 10);
    rs.Set(u"Ping_Max"_s, 14);
    rs.Set(u"Ping_Avg"_s, 12.5);
    rs.Update();
}

void benchmark(dao::Database &db)
{
    const int ports = kDevices * kChecks;
    measure("edit a status row", 30, ports, [&](int i) { editStatus(db, i + 1); });
    measure("roll one device up", 20, kDevices * 3, [&](int i) {
        db.Execute(
            u"UPDATE tblDevices INNER JOIN tblPortStatus ON tblDevices.Device_ID = tblPortStatus.Device_ID SET tblDevices.Device_Icon = 2, tblDevices.Device_Status = 'No Problems Detected' WHERE tblPortStatus.Port_Mode = 0 AND tblDevices.Device_Icon <> 12 AND tblDevices.Device_ID = %1"_s
                .arg(i % kDevices + 1));
    });
    measure("icons of one device (RIGHT JOIN)", 0, kDevices, [&](int i) {
        db.OpenRecordset(
            u"Select tblPortMain.Port_Num, tblPortStatus.Port_Icon FROM tblPortMain RIGHT JOIN tblPortStatus ON tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortMain.Device_ID = %1"_s
                .arg(i + 1));
    });
    measure("checks of one device", 0, kDevices, [&](int i) {
        db.OpenRecordset(
            u"Select tblDevices.Device_ID, tblDevices.Device_Name, tblPortMain.Device_ID, tblPortMain.Port_Num, tblPortMain.Port_ID FROM tblPortMain, tblDevices WHERE tblPortMain.Device_ID = %1 AND tblDevices.Device_ID = tblPortMain.Device_ID ORDER BY tblPortMain.Device_ID"_s
                .arg(i + 1));
    });
    measure("one check for editing (LEFT JOINs)", 0, kDevices, [&](int i) {
        db.OpenRecordset(
            u"Select * from tblDevices LEFT JOIN(tblPortMain LEFT JOIN tblPortEmailTemplate ON tblPortEmailTemplate.Port_ID = tblPortMain.Port_ID) ON tblDevices.Device_ID = tblPortMain.Device_ID WHERE tblDevices.Device_ID = %1 AND tblPortMain.Port_Num ='80'"_s
                .arg(i + 1));
    });
    measure("record an event", 0, 5000, [&](int i) {
        db.Execute(
            u"INSERT INTO tblEventLog (Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event) VALUES ('1', '%1', '4', '%2', 'Failure', 'no answer');"_s
                .arg(i)
                .arg(dao::Value(QDateTime(QDate(2024, 1, 1), QTime(0, 0)).addSecs(i)).text()));
    });
    measure("list 5000 events", 0, 10,
            [&](int) { db.OpenRecordset(u"Select * FROM tblEventLog ORDER BY Event_Date"_s); });
    measure("failed ports of 11000", 0, 20, [&](int) {
        db.OpenRecordset(
            u"Select tblDevices.Device_Name, tblPortMain.Port_Num, tblPortStatus.Port_Last_Error FROM tblDevices, tblPortMain, tblPortStatus WHERE tblDevices.Device_ID = tblPortMain.Device_ID AND tblPortMain.Port_ID = tblPortStatus.Port_ID AND tblPortStatus.Port_Mode = -1 AND tblPortStatus.Port_Icon <> 13 AND tblPortStatus.Port_Icon_Flag = -1"_s);
    });
    measure("count problems of 11000", 0, 20, [&](int) {
        db.Execute(u"UPDATE tblPortStatus SET Port_Dummy = 0 WHERE Port_Mode < 0 AND Port_Icon <> 13"_s);
    });
    measure("delete a device with its checks", 0, 100, [&](int i) {
        db.Execute(
            u"DELETE tblDevices.*, tblPortMain.*, tblPortStatus.*, tblPortEmailTemplate.* FROM tblDevices LEFT JOIN(tblPortMain LEFT JOIN(tblPortStatus LEFT JOIN tblPortEmailTemplate ON tblPortStatus.Device_ID = tblPortEmailTemplate.Device_ID) ON tblPortMain.Device_ID = tblPortStatus.Device_ID) ON tblDevices.Device_ID = tblPortMain.Device_ID WHERE tblDevices.Device_ID = %1"_s
                .arg(i + 1));
    });
    measure("commit", 0, 1, [&](int) { db.CommitPending(); });
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QTemporaryDir folder;
    try {
        dao::CreateDatabase(folder.filePath(u"bench.mdb"_s), definitions());
        const auto db = dao::OpenDatabase(folder.filePath(u"bench.mdb"_s), true);
        fill(*db);
        benchmark(*db);
    } catch (const VbError &error) {
        std::fprintf(stderr, "%ld %s\n", error.number(), qPrintable(error.description()));
        return 1;
    }
    return 0;
}
