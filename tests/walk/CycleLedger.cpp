#include "tests/walk/CycleLedger.h"

#include "core/StatusCodes.h"
#include "core/vbMain.h"

using namespace Qt::StringLiterals;

void CycleLedger::setEditing(bool on)
{
    m_editing = on;
    m_edited = true;
}

void CycleLedger::observe(bool checking)
{
    if (!vbMain().db)
        return;
    if (!m_running && checking)
        begin();
    if (!m_running)
        return;
    if (vbMain().databaseGeneration != m_generation) {
        m_generation = vbMain().databaseGeneration;
        m_before = read();
        m_foreign = true;
    }
    m_wholly = m_wholly && vbMain().monitoring && !m_foreign;
    if (checking)
        return;
    m_running = false;
    judge();
}

void CycleLedger::begin()
{
    m_running = true;
    m_wholly = true;
    m_edited = false;
    m_reloaded = false;
    m_foreign = false;
    m_generation = vbMain().databaseGeneration;
    m_before = read();
    ++m_cycles;
}

CycleLedger::Checks CycleLedger::read()
{
    Checks checks;
    auto rows = db().OpenRecordset(
        u"Select tblPortStatus.Port_ID, Port_Success, Port_Failure, Port_Mode, Port_Icon_Flag, Port_Icon, Device_Icon"
        " FROM tblPortStatus INNER JOIN tblDevices ON tblPortStatus.Device_ID = tblDevices.Device_ID"_s);
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto number = [&](int field) { return int(rows.Field(field).integer()); };
        checks.insert(rows.Field(0).integer(),
            { number(1) + number(2), number(3), number(4),
                number(5) != status::PortDisabled && number(6) != status::DeviceDisabled });
    }
    auto events = db().OpenRecordset(u"Select Port_ID, Event_Type FROM tblEventLog WHERE Port_ID > 0"_s);
    for (; !events.Eof(); events.MoveNext()) {
        const auto check = checks.find(events.Field(0).integer());
        if (check != checks.end())
            ++(events.Field(1).text() == u"Failure" ? check->failures : check->recoveries);
    }
    return checks;
}

void CycleLedger::judge()
{
    const Checks after = read();
    ++m_judged;
    for (auto it = m_before.cbegin(); it != m_before.cend(); ++it) {
        const auto now = after.constFind(it.key());
        if (now == after.cend())
            continue;
        judgeOutcomes(it.key(), *it, *now);
        judgeEvents(it.key(), *it, *now);
    }
}

void CycleLedger::judgeOutcomes(qint64 id, const Check &before, const Check &now)
{
    const int gained = now.outcomes - before.outcomes;
    const bool exact = m_wholly && !m_edited && !m_editing;
    const bool good = m_foreign ? gained <= 0 : exact ? gained == int(before.enabled) : gained <= 1;
    if (!good)
        m_faults << u"check %1 has %2 outcomes of one cycle"_s.arg(id).arg(gained);
}

void CycleLedger::judgeEvents(qint64 id, const Check &before, const Check &now)
{
    const int failures = now.failures - before.failures;
    const int recoveries = now.recoveries - before.recoveries;
    m_changes += failures + recoveries > 0;
    bool good = failures + recoveries <= 1;
    if (m_wholly && !m_edited && !m_editing && !m_reloaded) {
        const bool failed = before.enabled && now.mode == status::PortFailing && now.flag == -1;
        const bool recovered = before.enabled && now.mode >= status::PortRecovered && now.flag == 1;
        good = failures == int(failed) && recoveries == int(recovered);
    }
    if (!good)
        m_faults << u"check %1 (mode %2, flag %3) got %4 lines of failure and %5 of recovery"_s.arg(id)
                        .arg(now.mode)
                        .arg(now.flag)
                        .arg(failures)
                        .arg(recoveries);
}
