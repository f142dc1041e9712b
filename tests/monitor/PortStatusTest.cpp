#include "monitor/PortStatus.h"

#include "core/Settings.h"
#include "tests/world/World.h"

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <random>

using namespace Qt::StringLiterals;

namespace {

/** A check's row as the model keeps it. */
struct Row {
    int mode = 0, icon = 5, flag = 0, success = 0, failure = 0;
    double cur = 0, min = 0, max = 0, avg = 0;
    QString status = u"Not checked"_s, error, failDate = u"Null"_s, recDate = u"Null"_s;

    QString text() const
    {
        const auto time = [](double t) { return QString::number(t, 'g', 12); };
        return QStringList{ QString::number(mode), QString::number(icon), QString::number(flag),
                            QString::number(success), QString::number(failure), time(cur), time(min), time(max),
                            time(avg), status, error, failDate, recDate }
            .join(u'|');
    }
};

struct Result {
    bool up;
    double time;
    QString error;
};

/** The transition table, one line a row: before → after. The first line whose condition holds applies. */
struct Transition {
    const char *name;
    std::function<bool(const Row &, bool up, int F, int R)> when;
    std::function<void(Row &, const QString &now)> then;
};

const Transition kTable[] = {
    { "disabled", [](const Row &r, bool, int, int) { return r.icon == 13; }, {} },
    { "normal stays", [](const Row &r, bool up, int, int) { return up && r.mode == 0; },
      [](Row &r, const QString &) { r.icon = 5; } },
    { "long failure ends", [](const Row &r, bool up, int F, int) { return up && r.mode == -1 && r.flag <= -F; },
      [](Row &r, const QString &now) { r.mode = 2, r.icon = 6, r.flag = 1, r.recDate = now; } },
    { "short failure ends", [](const Row &r, bool up, int, int) { return up && r.mode == -1; },
      [](Row &r, const QString &now) { r.mode = 1, r.icon = 6, r.flag = 1, r.recDate = now; } },
    { "recovery over", [](const Row &r, bool up, int, int R) { return up && r.mode > 0 && r.flag > R; },
      [](Row &r, const QString &) { r.mode = 0, r.icon = 5, r.flag += 1; } },
    { "recovery counts", [](const Row &r, bool up, int, int) { return up && r.mode > 0; },
      [](Row &r, const QString &) { r.flag += 1; } },
    { "still failing", [](const Row &r, bool up, int, int) { return !up && r.mode == -1; },
      [](Row &r, const QString &) { r.icon = 7, r.flag -= 1; } },
    { "first failure", [](const Row &, bool up, int, int) { return !up; },
      [](Row &r, const QString &now) {
          r.mode = -1, r.icon = 7, r.flag = -1, r.failDate = now, r.recDate = u"Null"_s;
      } },
};

/** Returns the index of the table line that applied. */
int apply(Row &row, const Result &result, bool ping, int F, int R, const QString &now)
{
    for (int i = 0; i < int(std::size(kTable)); ++i) {
        if (!kTable[i].when(row, result.up, F, R))
            continue;
        if (!kTable[i].then)
            return i;
        kTable[i].then(row, now);
        row.status = result.up ? u"Connected"_s : u"Failed"_s;
        (result.up ? row.success : row.failure) += 1;
        if (!result.up && !result.error.isEmpty())
            row.error = result.error.toLower();
        if (result.up && ping) {
            row.min = row.min == 0 || result.time < row.min ? result.time : row.min;
            row.max = row.max == 0 || result.time > row.max ? result.time : row.max;
            row.avg = row.avg == 0 ? result.time : (row.avg + result.time) / 2;
            row.cur = result.time;
        }
        return i;
    }
    return -1;
}

const QString kSelect = u"Select Port_Mode, Port_Icon, Port_Icon_Flag, Port_Success, Port_Failure, Ping_Cur,"
                        " Ping_Min, Ping_Max, Ping_Avg, Port_Status, Port_Last_Error, Port_Fail_Date, Port_Rec_Date"
                        " FROM tblPortStatus WHERE Port_ID = "_s;

QString stored(int port)
{
    dao::Recordset row = db().OpenRecordset(kSelect + QString::number(port));
    QStringList cells;
    for (int i = 0; i < 13; ++i) {
        const dao::Value value = row.Field(i);
        if (i >= 5 && i <= 8)
            cells << QString::number(value.number(), 'g', 12);
        else
            cells << (value.isNull() ? u"Null"_s : value.text());
    }
    return cells.join(u'|');
}

void fold(int port, bool ping, const Result &result)
{
    const QString status = result.up ? u"Connected"_s : u"Failed"_s;
    if (ping)
        Device_Ping_Update(port, status, result.error, result.time);
    else
        Port_Update(port, status, result.error);
}

} // namespace

TEST(PortStatus, RandomSequencesEqualTheTransitionTable)
{
    World world;
    std::mt19937 random(20261121);
    const auto draw = [&](int from, int to) { return std::uniform_int_distribution(from, to)(random); };
    const int device = world.addDevice(world.addGroup(u"g"_s), u"host"_s);
    const QStringList errors{ QString(), u"Request Timed OUT"_s, u"connection refused"_s };
    std::vector<int> applied(std::size(kTable));

    for (int sequence = 0; sequence < 600; ++sequence) {
        const int F = draw(1, 6), R = draw(0, 6);
        SaveSetting(u"Mail Options"_s, u"SendOnConsecutiveFailure"_s, QString::number(F));
        SaveSetting(u"Options"_s, u"ResetIcon"_s, QString::number(R));
        const bool ping = draw(0, 1);
        const int port = world.addCheck(device, ping ? u"Ping"_s : QString::number(1000 + sequence));
        const int upChance = draw(10, 95);
        Row model;
        for (int step = 0, steps = draw(5, 40); step < steps; ++step) {
            world.now = world.now.addSecs(61);
            const Result result{ draw(1, 100) <= upChance, draw(0, 80) / 4.0, errors.at(draw(0, 2)) };
            if (draw(1, 60) == 1) {
                model.icon = model.icon == 13 ? 5 : 13;
                world.sql(u"UPDATE tblPortStatus SET Port_Icon = %1 WHERE Port_ID = %2"_s.arg(model.icon).arg(port));
            }
            ++applied.at(size_t(apply(model, result, ping, F, R, GeneralDate(world.now))));
            fold(port, ping, result);
            ASSERT_EQ(stored(port).toStdString(), model.text().toStdString())
                << "sequence " << sequence << " step " << step << " F=" << F << " R=" << R;
        }
        world.sql(u"DELETE tblPortMain.*, tblPortStatus.* FROM tblPortMain INNER JOIN tblPortStatus"
                  " ON tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortMain.Port_ID = "_s
                  + QString::number(port));
    }
    for (size_t i = 0; i < applied.size(); ++i)
        EXPECT_GT(applied[i], 50) << "the sequences hardly met: " << kTable[i].name;
}

TEST(PortStatus, PingTimes)
{
    struct Case {
        const char *name;
        QList<double> times;
        double min, max, avg, cur;
    };
    const Case cases[] = {
        { "first", { 12 }, 12, 12, 12, 12 },
        { "second", { 12, 20 }, 12, 20, 16, 20 },
        { "third", { 12, 20, 4 }, 4, 20, 10, 4 },
        { "a real zero leaves the minimum open", { 0, 7 }, 7, 7, 7, 7 },
        { "a failure between keeps the last time", { 12, -1 }, 12, 12, 12, 12 },
    };
    World world;
    const int device = world.addDevice(world.addGroup(u"g"_s), u"host"_s);
    int port = 0;
    for (const Case &c : cases) {
        const int id = world.addCheck(device, QString::number(++port));
        for (const double t : c.times)
            fold(id, true, { t >= 0, t, QString() });
        const QString expected = u"%1|%2|%3|%4"_s.arg(c.min).arg(c.max).arg(c.avg).arg(c.cur);
        EXPECT_EQ(world.rows(u"Select Ping_Min, Ping_Max, Ping_Avg, Ping_Cur FROM tblPortStatus WHERE Port_ID = "_s
                             + QString::number(id)),
                  QStringList{ expected })
            << c.name;
    }
}

TEST(PortStatus, AGoneRowIsNoErrorAndABrokenSettingEndsTheProgram)
{
    World world;
    const int device = world.addDevice(world.addGroup(u"g"_s), u"host"_s);
    const int port = world.addCheck(device, u"80"_s);
    Port_Update(4711, u"Failed"_s, u"x"_s);

    SaveSetting(u"Options"_s, u"ResetIcon"_s, u"many"_s);
    fold(port, false, { false, 0, QString() });
    fold(port, false, { true, 0, QString() });
    world.dialogs.expect(u"An error has occured in the Port_Update subroutine.\r\n\r\nError Number: \t13\r\n"_s);
    EXPECT_THROW(fold(port, false, { true, 0, QString() }), ProgramEnded);
    EXPECT_EQ(world.window.log.last(), u"unload"_s);
}
