// The commands that change the database themselves.
#include "tests/walk/OperatorWalk.h"

#include "core/Settings.h"

using namespace Qt::StringLiterals;

bool OperatorWalk::deleteGroup()
{
    Counts expected = counts();
    if (!goTo(NodeLevel::Group) || !canBeHad("mnutvDeleteGroup"))
        return false;
    const QString id = keys::after(tree().currentKey());
    if (world.rows(u"Select Device_ID FROM tblDevices WHERE Group_ID = "_s + id).isEmpty())
        --expected.groups;
    else
        expectBox(u"You can not delete a group when devices are defined under the group."_s);
    change("mnutvDeleteGroup");
    expectCounts(expected, "delete group");
    return true;
}

bool OperatorWalk::deleteDevice()
{
    Counts expected = counts();
    if (!goTo(NodeLevel::Device) || !canBeHad("mnutvDeleteDevice"))
        return false;
    const QString where = u" WHERE Device_ID = "_s + keys::before(tree().currentKey());
    if (agrees(u"You are about to delete "_s + tree().currentText() + u".\r\nAre you sure?"_s)) {
        --expected.devices;
        expected.checks -= int(world.rows(u"Select Port_ID FROM tblPortMain"_s + where).size());
        expected.templates -= int(world.rows(u"Select Port_ID FROM tblPortEmailTemplate"_s + where).size());
    }
    change("mnutvDeleteDevice");
    expectCounts(expected, "delete device");
    return true;
}

bool OperatorWalk::deletePort()
{
    Counts expected = counts();
    if (!goTo(NodeLevel::Port) || !canBeHad("mnutvDeletePort"))
        return false;
    const QString key = tree().currentKey();
    const QString id = field(u"Select Port_ID FROM tblPortMain WHERE Device_ID = "_s + keys::before(key)
        + u" AND Port_Num = '"_s + keys::after(key) + u"'"_s);
    if (agrees(u"You are about to delete port "_s + keys::after(key) + u" from "_s + tree().currentParentText()
            + u".\r\nAre you sure?"_s)) {
        --expected.checks;
        expected.templates
            -= int(world.rows(u"Select Port_ID FROM tblPortEmailTemplate WHERE Port_ID = "_s + id).size());
    }
    change("mnutvDeletePort");
    expectCounts(expected, "delete port");
    return true;
}

bool OperatorWalk::disableDevice()
{
    if (!goTo(NodeLevel::Device) || !canBeHad("mnutvDisableDevice"))
        return false;
    const bool disables = !action("mnutvDisableDevice").isChecked();
    const QString where = u" WHERE Device_ID = "_s + keys::before(tree().currentKey());
    change("mnutvDisableDevice");
    EXPECT_EQ(distinct(u"Select Device_Icon, Device_Status FROM tblDevices"_s + where),
        QStringList(disables ? u"12|Disabled"_s : u"2|Not Checked"_s));
    const QStringList ports = distinct(u"Select Port_Icon, Port_Status FROM tblPortStatus"_s + where);
    if (!ports.isEmpty()) {
        EXPECT_EQ(ports, QStringList(disables ? u"13|Disabled"_s : u"5|Not Checked"_s));
    }
    EXPECT_EQ(action("mnutvDisableDevice").isChecked(), disables);
    return true;
}

bool OperatorWalk::resetCounters()
{
    if (!canBeHad("mnuResetCounters"))
        return false;
    const bool yes = agrees(u"Are you sure you want to reset all of the counters?"_s);
    change("mnuResetCounters");
    if (yes && !m_ended) {
        const QStringList states = distinct(u"Select Port_Icon, Port_Mode, Port_Success, Port_Failure, Port_Status"
                                            " FROM tblPortStatus"_s);
        EXPECT_TRUE(states.isEmpty() || states == QStringList(u"5|0|0|0|Not checked"_s))
            << states.join(u'\n').toStdString();
    }
    return true;
}

bool OperatorWalk::clearEventLog()
{
    if (!canBeHad("mnuToolsAdvancedClearEventLog"))
        return false;
    const bool yes = agrees(u"You are sure you want to delete the contents of the event log."_s);
    if (yes)
        expectBox(u" entries were deleted from the event log."_s);
    change("mnuToolsAdvancedClearEventLog");
    return true;
}

bool OperatorWalk::clearRegistry()
{
    if (!canBeHad("mnuToolsClearRegistry"))
        return false;
    agrees(u"Are you sure you want to clear of the registry entries associated with Kavro_2000?"_s);
    command("mnuToolsClearRegistry");
    return true;
}
