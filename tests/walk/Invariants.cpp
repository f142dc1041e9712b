// What must hold after every step.
#include "tests/walk/OperatorWalk.h"

#include "core/StatusCodes.h"
#include "monitor/CheckCycle.h"
#include "ui/StatusRows.h"

#include <QFile>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

[[maybe_unused]] qint64 residentMemory()
{
    QFile file(u"/proc/self/statm"_s);
    file.open(QIODevice::ReadOnly);
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

QStringList cells(const QList<StatusRow> &rows)
{
    QStringList lines;
    for (const StatusRow &row : rows)
        lines << row.key + u" | "_s + QString::number(row.image) + u" | "_s + row.cells.join(u" | "_s);
    lines.sort(); // the operator may have chosen another order
    return lines;
}

} // namespace

void OperatorWalk::checkInvariants()
{
    observe();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(window->windowTitle(), m_caption);
    checkRows();
    checkTree();
    checkList();
    checkEvents();
    checkMails();
    checkCommands();
    checkWindow();
    if (m_step % 100 == 0)
        checkObjects();
}

/** One status row a check, no orphans, nothing twice. */
void OperatorWalk::checkRows()
{
    QSet<QString> groups, devices, checks, names, ports, states;
    for (const QString &row : world.rows(u"Select Group_ID FROM tblGroup"_s))
        groups << row;
    for (const QString &row : world.rows(u"Select Device_ID, Group_ID FROM tblDevices"_s)) {
        devices << row.section(u'|', 0, 0);
        EXPECT_TRUE(groups.contains(row.section(u'|', 1))) << "device without group: " << row.toStdString();
    }
    for (const QString &row : world.rows(u"Select Port_ID, Device_ID, Port_Num FROM tblPortMain"_s)) {
        checks << row.section(u'|', 0, 1);
        EXPECT_TRUE(devices.contains(row.section(u'|', 1, 1))) << "check without device: " << row.toStdString();
        EXPECT_FALSE(ports.contains(row.section(u'|', 1))) << "check twice: " << row.toStdString();
        ports << row.section(u'|', 1);
    }
    for (const QString &row : world.rows(u"Select Port_ID, Device_ID FROM tblPortStatus"_s)) {
        EXPECT_TRUE(checks.contains(row)) << "state without check: " << row.toStdString();
        EXPECT_FALSE(states.contains(row)) << "two states of one check: " << row.toStdString();
        states << row;
    }
    EXPECT_EQ(states.size(), checks.size()) << "checks without state";
    QSet<QString> templates;
    for (const QString &row : world.rows(u"Select Port_ID, Device_ID FROM tblPortEmailTemplate"_s)) {
        EXPECT_TRUE(checks.contains(row)) << "template without check: " << row.toStdString();
        EXPECT_FALSE(templates.contains(row)) << "two templates of one check: " << row.toStdString();
        templates << row;
    }
    for (const QString &row : world.rows(u"Select Port_ID FROM tblPortStatus WHERE (Port_Icon = 13 AND Port_Status <>"
                                         " 'Disabled') OR (Port_Icon <> 13 AND Port_Status = 'Disabled')"_s))
        ADD_FAILURE() << "half disabled: " << row.toStdString();
}

/** Keys, texts and order at any time; images and rows of the list when no cycle is half done. */
void OperatorWalk::checkTree()
{
    const bool images = !checking();
    const auto line = [&](int depth, const QString &key, const QString &text, const QString &image) {
        return QString(depth, u' ') + key + u" | "_s + text + (images ? u" | icon "_s + image : QString());
    };
    QHash<QString, QStringList> ports, devices;
    for (const QString &row : world.rows(u"Select tblPortMain.Device_ID, Port_Num, Port_Type, Port_Icon FROM"
                                         " tblPortMain, tblPortStatus WHERE tblPortMain.Port_ID ="
                                         " tblPortStatus.Port_ID ORDER BY Port_Num"_s)) {
        const QStringList cell = row.split(u'|');
        ports[cell[0]] << line(3, cell[0] + u':' + cell[1], cell[2] + u':' + cell[1], cell[3]);
    }
    for (auto rows = db().OpenRecordset(u"Select Device_ID, Group_ID, Device_Icon, Device_Name, Device_Alias FROM"
                                        " tblDevices ORDER BY Device_Alias, Device_Name"_s);
         !rows.Eof(); rows.MoveNext()) {
        const QString id = rows.Field(0).text(), name = rows.Field(3).text(), alias = rows.Field(4).text();
        devices[rows.Field(1).text()]
            << line(2, id + u':' + name, alias.isEmpty() ? name : alias, rows.Field(2).text()) << ports.value(id);
    }
    QStringList expected { line(0, u"Root"_s, u"Monitored Devices"_s, u"1"_s) };
    for (auto rows = db().OpenRecordset(u"Select Group_ID, Group_Icon, Group_Label FROM tblGroup ORDER BY Group_Label"_s);
         !rows.Eof(); rows.MoveNext()) {
        const QString id = rows.Field(0).text();
        expected << line(1, u"Group:"_s + id, rows.Field(2).text(), rows.Field(1).text()) << devices.value(id);
    }
    QStringList shown;
    for (const QString &each : treeLines()) {
        QString text = each;
        if (text.endsWith(u" | open"_s))
            text.chop(7);
        shown << (images ? text : text.left(text.lastIndexOf(u" | icon "_s)));
    }
    for (qsizetype i = 0; i < qMax(shown.size(), expected.size()) && !HasFailure(); ++i)
        EXPECT_EQ(shown.value(i), expected.value(i)) << "line " << i << " of the tree";
}

void OperatorWalk::checkList()
{
    ASSERT_NE(tree().currentLevel(), NodeLevel::None);
    if (checking())
        return;
    const QString key = tree().currentKey();
    QList<StatusRow> expected;
    switch (tree().currentLevel()) {
    case NodeLevel::Root:
        expected = rows::groups();
        break;
    case NodeLevel::Group:
        expected = rows::devices(keys::after(key));
        break;
    case NodeLevel::Device:
        expected = rows::ports(keys::before(key));
        break;
    default:
        expected = rows::port(keys::before(key), keys::after(key));
    }
    EXPECT_EQ(cells(list().shownRows()), cells(expected)) << key.toStdString();
}

void OperatorWalk::checkEvents()
{
    EXPECT_EQ(window->events().events().rowCount(), world.rows(u"Select Event_Icon FROM tblEventLog"_s).size());
}

/** No server takes a mail, so what was queued stays. */
void OperatorWalk::checkMails()
{
    const int queued = int(world.rows(u"Select ID FROM tblMailQue"_s).size());
    EXPECT_GE(queued, m_queued) << "a mail was lost";
    m_queued = queued;
    m_mostQueued = qMax(m_mostQueued, queued);
}

void OperatorWalk::checkCommands()
{
    const bool on = vbMain().monitoring;
    const bool busy = checking();
    const NodeLevel level = tree().currentLevel();
    const bool group = level == NodeLevel::Group, device = level == NodeLevel::Device, port = level == NodeLevel::Port;
    struct Row {
        const char *name;
        bool allowed;
        bool always; // not only after the next look at a cycle's end
    };
    const Row rows[] = {
        { "mnuMonitoringOn", !on, true },
        { "mnuMonitoringOff", on, true },
        { "mnuSysTrayMonitoringOn", !on, true },
        { "mnuSysTrayMonitoringOff", on, true },
        { "tbMonitor", !on && !busy, false },
        { "tbStop", on && !busy, false },
        { "mnuResetCounters", !busy, false },
        { "mnuToolsAdvancedClearEventLog", !busy, false },
        { "mnuPortList", !busy, false },
        { "mnutvAddGroup", !busy && level == NodeLevel::Root, false },
        { "mnutvAddDevice", !busy && group, false },
        { "mnutvAddPort", !busy && device, false },
        { "mnutvDeleteGroup", !busy && group, false },
        { "mnutvDeleteDevice", !busy && device, false },
        { "mnutvDeletePort", !busy && port, false },
        { "mnutvDisableDevice", !busy && device, false },
        { "mnutvPortDetails", port, true },
        { "mnutvProperties", !busy && (group || device || port), false },
    };
    for (const Row &row : rows) {
        const bool enabled = action(row.name).isEnabled();
        EXPECT_TRUE(row.always ? enabled == row.allowed : !enabled || row.allowed) << row.name << " is " << enabled;
    }
    if (device) {
        EXPECT_TRUE(busy || action("mnutvDisableDevice").isChecked() == (tree().currentImage() == status::DeviceDisabled));
    }
}

void OperatorWalk::checkWindow()
{
    EXPECT_TRUE(window->isVisible());
    if (!vbMain().monitoring && !checking()) {
        EXPECT_FALSE(window->statusPanels().panelText(StatusBar::Progress).startsWith(u"Next Check"_s));
    }
}

/** Forms, timers and their like do not pile up. */
void OperatorWalk::checkObjects()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const int objects = int(window->findChildren<QObject *>().size() + QApplication::topLevelWidgets().size());
    if (m_objects == 0)
        m_objects = objects;
    EXPECT_LE(objects, m_objects + 30) << "objects pile up";
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed for a while
    constexpr qint64 slack = 60'000'000;
    const qint64 memory = residentMemory();
    if (m_step == 500)
        m_memory = memory;
    if (m_memory > 0) {
        EXPECT_LE(memory, m_memory + slack) << "memory grows";
    }
#endif
}
