// The editors, filled in by their controls, with good and bad texts.
#include "tests/walk/OperatorWalk.h"

#include "core/Settings.h"
#include "editors/NewDevices.h"
#include "editors/PortNumber.h"
#include "tests/walk/TypedTexts.h"

#include <QCheckBox>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

enum Button { Ok = 0, Close = 1 }; // of a dialog
enum WizardButton { Cancel = 1, Back = 2, Next = 3 };
enum Page { Introduction, First, Second };

int page(Driver &form) { return form.form().findChild<QStackedWidget *>()->currentIndex(); }
QTreeWidget &table(Driver &form, const QString &name) { return form.named<QTreeWidget>(name); }
bool breaks(const QString &text) { return text.contains(u'\''); }

} // namespace

bool OperatorWalk::addGroup()
{
    select(NodeLevel::Root, keys::root());
    Counts expected = counts();
    QString label, description;
    bool added = false;
    const bool had = change("mnutvAddGroup", { { u"frmGroupAdd"_s, [&](Driver &form) {
        label = enter(form, "txtArray", 0, typed::text(m_random));
        description = enter(form, "txtArray", 1, typed::text(m_random));
        meanwhile();
        if (m_ended || m_random.chance(10))
            return form.press(Close);
        if (breaks(label))
            return pressFatally(form, Ok, u"AddGroup"_s);
        added = world.rows(u"Select Group_ID FROM tblGroup WHERE Group_Label = '"_s + label + u"'"_s).isEmpty();
        if (!added)
            expectBox(label + u" already exists in the database.\r\nTry again, or cancel the action."_s);
        press(form, Ok);
        if (!added)
            form.press(Close);
    } } });
    if (!had)
        return false;
    expected.groups += added;
    expectCounts(expected, "add group");
    if (added && !m_ended) {
        EXPECT_EQ(field(u"Select Group_Label, Group_Desc, Group_Icon FROM tblGroup WHERE Group_ID = "_s
                      + keys::after(tree().currentKey())),
            label + u'|' + description + u"|14"_s);
    }
    return true;
}

bool OperatorWalk::addDevice()
{
    if (!goTo(NodeLevel::Group) || counts().devices > 40)
        return false;
    const QString group = keys::after(tree().currentKey());
    Counts expected = counts();
    QStringList names, chosen;
    QString alias, description;
    bool made = false, chose = false;
    const auto device = [&](Driver &form) {
        if (page(form) == Introduction)
            press(form, Next);
        const QString name = enter(form, "txtIPRange", 0, typed::deviceName(m_random));
        if (breaks(name))
            return pressFatally(form, Next, u"DeviceExists"_s);
        NewDevices wanted(group.toLongLong());
        const QString wrong = wanted.setName(name);
        if (!wrong.isEmpty())
            expectBox(wrong);
        press(form, Next);
        EXPECT_TRUE(m_ended || page(form) == (wrong.isEmpty() ? Second : First)) << name.toStdString();
        if (m_ended || !wrong.isEmpty())
            return form.press(Cancel);
        if (!wanted.isRange())
            alias = enter(form, "txtIPRange", 1, typed::text(m_random)).trimmed();
        description = enter(form, "txtIPRange", 2, typed::text(m_random)).trimmed();
        press(form, Next);
        meanwhile();
        if (m_ended || m_random.chance(10))
            return form.press(Cancel);
        names = wanted.names();
        made = true;
        press(form, Next);
        EXPECT_TRUE(runUntil([&] { return !form.form().isVisible(); }));
    };
    const auto had = change("mnutvAddDevice",
        { { u"frmAddDevice"_s, device }, { u"frmAddPort"_s, portWizard(chosen, chose) } });
    if (!had)
        return false;
    expected.devices += int(names.size());
    expected.checks += chose ? int(chosen.size() * names.size()) : 0;
    expectCounts(expected, "add device");
    if (made && !m_ended) {
        EXPECT_EQ(keys::after(tree().currentKey()), names.first());
        const auto orNull = [](const QString &text) { return text.isEmpty() ? u"Null"_s : text; };
        EXPECT_EQ(field(u"Select Device_Name, Device_Alias, Device_Desc, Group_ID, Device_Icon FROM tblDevices"
                        " WHERE Device_ID = "_s
                      + keys::before(tree().currentKey())),
            names.first() + u'|' + orNull(alias) + u'|' + orNull(description) + u'|' + group + u"|2"_s);
    }
    return true;
}

/** Ticks at random; chosen are the ports as they are stored. */
OperatorWalk::Act OperatorWalk::portWizard(QStringList &chosen, bool &finished)
{
    return [&](Driver &form) {
        if (page(form) == Introduction)
            press(form, Next);
        QTreeWidget &list = table(form, u"lvListView"_s);
        for (int i = 0; i < list.topLevelItemCount(); ++i) {
            if (m_random.chance(30)) {
                list.setCurrentItem(list.topLevelItem(i));
                QTest::keyClick(&list, Qt::Key_Space);
            }
            if (list.topLevelItem(i)->checkState(0) == Qt::Checked)
                chosen << list.topLevelItem(i)->text(0);
        }
        press(form, Next);
        meanwhile();
        if (m_random.chance(15)) {
            press(form, Back);
            press(form, Next);
        }
        if (m_ended || m_random.chance(10)) {
            form.form().reject();
            return;
        }
        finished = true;
        note(chosen.join(u','));
        press(form, Next);
        EXPECT_TRUE(runUntil([&] { return !form.form().isVisible(); }));
    };
}

bool OperatorWalk::addPort()
{
    if (!goTo(NodeLevel::Device))
        return false;
    const QString where = u" WHERE Device_ID = "_s + keys::before(tree().currentKey());
    const QStringList before = world.rows(u"Select Port_ID, Port_Num FROM tblPortMain"_s + where);
    QStringList chosen;
    bool finished = false;
    if (!change("mnutvAddPort", { { u"frmAddPort"_s, portWizard(chosen, finished) } }))
        return false;
    if (m_ended)
        return true;
    const QStringList after = world.rows(u"Select Port_ID, Port_Num FROM tblPortMain"_s + where);
    if (!finished) {
        EXPECT_EQ(after, before);
        return true;
    }
    QStringList stored;
    for (const QString &row : after)
        stored << row.section(u'|', 1);
    std::sort(stored.begin(), stored.end());
    std::sort(chosen.begin(), chosen.end());
    EXPECT_EQ(stored, chosen);
    for (const QString &row : before)
        EXPECT_TRUE(after.contains(row) || !chosen.contains(row.section(u'|', 1))) << "made again: " << row.toStdString();
    return true;
}

bool OperatorWalk::properties(const Forms &forms)
{
    if (m_random.chance(50))
        return change("mnutvProperties", forms);
    const QString key = tree().currentKey();
    const auto rows = list().shownRows();
    for (int i = 0; i < rows.size(); ++i) {
        if (rows.at(i).key == key && rows.at(i).level == tree().currentLevel())
            list().selectRow(i);
    }
    return list().currentRow().key == key && change("mnulvRightClickProperties", forms);
}

bool OperatorWalk::groupProperties()
{
    if (!goTo(NodeLevel::Group))
        return false;
    const QString select = u"Select Group_Label, Group_Desc FROM tblGroup WHERE Group_ID = "_s
        + keys::after(tree().currentKey());
    QString expected = field(select);
    const bool had = properties({ { u"frmModifyGroup"_s, [&](Driver &form) {
        const QString label = enter(form, "txtArray", 0, typed::text(m_random));
        const QString description = enter(form, "txtArray", 1, typed::text(m_random));
        meanwhile();
        if (m_ended || m_random.chance(10))
            return form.press(Close);
        if (breaks(label + description))
            return pressFatally(form, Ok, u"ModifyGroup"_s);
        expected = label + u'|' + description;
        press(form, Ok);
    } } });
    if (had && !m_ended) {
        EXPECT_EQ(field(select), expected);
    }
    return had;
}

bool OperatorWalk::deviceProperties()
{
    if (!goTo(NodeLevel::Device))
        return false;
    const QString select = u"Select Device_Name, Device_Alias, Device_Desc, HTML_Output, MSAgent_Referr_Device"
                           " FROM tblDevices WHERE Device_ID = "_s
        + keys::before(tree().currentKey());
    QString expected = field(select);
    const bool had = properties({ { u"frmModifyDevice"_s, [&](Driver &form) {
        QString alias = form.text("txtArray", 1);
        if (m_random.chance(60))
            alias = enter(form, "txtArray", 1, typed::text(m_random)).trimmed();
        const QString description = enter(form, "txtArray", 2, typed::text(m_random)).trimmed();
        auto &tabs = form.named<QTabWidget>(u"TabStrip1"_s);
        tabs.setCurrentIndex(1);
        const int refer = m_random.below(2);
        form.at<QAbstractButton>("arrOption", refer).click();
        tabs.setCurrentIndex(2);
        form.toggle("chkArray", 0);
        const bool inReport = form.at<QCheckBox>("chkArray", 0).isChecked();
        meanwhile();
        if (m_ended || m_random.chance(10))
            return form.press(Close);
        const auto word = [](bool on) { return on ? u"True"_s : u"False"_s; };
        expected = expected.section(u'|', 0, 0) + u'|' + alias + u'|'
            + (description.isEmpty() ? field(QString(select).replace(u"Device_Name, Device_Alias, Device_Desc, HTML_Output,"
                                                                     " MSAgent_Referr_Device"_s,
                   u"Device_Desc"_s))
                                     : description)
            + u'|' + word(inReport) + u'|' + word(refer == 0);
        press(form, Ok);
    } } });
    if (had && !m_ended) {
        EXPECT_EQ(field(select), expected);
    }
    return had;
}

void OperatorWalk::fillTemplate(Driver &form)
{
    form.named<QTabWidget>(u"TabStrip1"_s).setCurrentIndex(1);
    auto &none = form.at<QCheckBox>("chkArray", 1);
    if (m_random.chance(50))
        form.toggle("chkArray", 1);
    if (none.isChecked())
        return;
    enter(form, "txtArray", 3, typed::mailAddress(m_random));
    for (int i = 4; i < 7; ++i) {
        if (m_random.chance(25))
            enter(form, "txtArray", i, typed::text(m_random));
    }
}

bool OperatorWalk::portProperties()
{
    if (!goTo(NodeLevel::Port))
        return false;
    const QString key = tree().currentKey();
    const QString id = field(u"Select Port_ID FROM tblPortMain WHERE Device_ID = "_s + keys::before(key)
        + u" AND Port_Num = '"_s + keys::after(key) + u"'"_s);
    const QString select = u"Select Email_Address, Email_Subject, Email_Failure, Email_Recovery FROM"
                           " tblPortEmailTemplate WHERE Port_ID = "_s
        + id;
    QStringList expected = world.rows(select);
    QString description = field(u"Select Port_Desc FROM tblPortMain WHERE Port_ID = "_s + id);
    const bool had = properties({ { u"frmModifyPort"_s, [&](Driver &form) {
        const QString entered = enter(form, "txtArray", 2, typed::text(m_random)).trimmed();
        form.toggle("chkArray", 0);
        fillTemplate(form);
        meanwhile();
        QStringList boxes = form.texts("txtArray", 7).mid(3);
        for (QString &each : boxes)
            each = each.trimmed().replace(u'\n', u"\r\n"_s);
        const bool none = form.at<QCheckBox>("chkArray", 1).isChecked();
        const bool good = none || (!boxes.contains(QString()) && !boxes.first().contains(u','));
        EXPECT_EQ(form.command(Ok).isEnabled(), good) << boxes.join(u'|').toStdString();
        if (m_ended || !form.command(Ok).isEnabled() || m_random.chance(10))
            return form.press(Close);
        expected = none ? QStringList() : QStringList(boxes.join(u'|'));
        description = entered;
        press(form, Ok);
    } } });
    if (had && !m_ended) {
        EXPECT_EQ(world.rows(select), expected);
        EXPECT_EQ(field(u"Select Port_Desc FROM tblPortMain WHERE Port_ID = "_s + id), description);
    }
    return had;
}

bool OperatorWalk::portDetails()
{
    if (!goTo(NodeLevel::Port))
        return false;
    return command("mnutvPortDetails", detailsOf(tree().currentKey()));
}

OperatorWalk::Forms OperatorWalk::detailsOf(const QString &key)
{
    const auto leave = [](Driver &form) { form.press(Close); };
    return { { u"frmModifyDevice"_s, leave }, { u"frmPortDetails"_s, [this, key](Driver &form) {
        const QString status = field(
            u"Select Port_Status, Port_Failure, Port_Success FROM tblPortMain, tblPortStatus"
            " WHERE tblPortMain.Port_ID = tblPortStatus.Port_ID AND tblPortMain.Device_ID = "_s
            + keys::before(key) + u" AND Port_Num = '"_s + keys::after(key) + u"'"_s);
        const QStringList shown = form.texts("txtArray", 9);
        EXPECT_EQ(shown.at(8) + u'|' + shown.at(3) + u'|' + shown.at(5), status);
        meanwhile();
        form.press(Ok);
    } } };
}

void OperatorWalk::changeCatalogue(Driver &form)
{
    enum { View, Add, Modify, Delete };
    const int mode = m_random.of({ int(Add), int(Add), int(Modify), int(Delete), int(View) });
    QTreeWidget &list = table(form, u"ListView1"_s);
    if (m_random.chance(80) && list.topLevelItemCount() > 0)
        list.setCurrentItem(list.topLevelItem(m_random.below(list.topLevelItemCount())));
    const QList<QTreeWidgetItem *> selected = list.selectedItems();
    const QString port = selected.isEmpty() ? QString() : selected.first()->text(0);
    if (mode == Delete && !port.isEmpty()) {
        if (agrees(u"You are about to remove the following:\r\n\r\n  Port Number:\t"_s + port + u"\r\n  Description:\t"_s
                + selected.first()->text(1) + u"\r\n\r\nAre you sure?"_s))
            note(u"removed "_s + port);
    }
    form.at<QAbstractButton>("optArray", mode).click();
    if (m_ended || (mode != Add && mode != Modify))
        return;
    const QString number = mode == Add ? enter(form, "txtArray", 0, typed::portNumber(m_random, m_ports)) : port;
    const QString description = enter(form, "txtArray", 1, typed::text(m_random));
    const bool writes = portnumber::isPort(number) && !(mode == Modify && port.isEmpty());
    if (writes && breaks(description))
        return pressFatally(form, 0, u"UpdatePort"_s);
    press(form, 0);
    if (writes && !m_ended) {
        const QString row = field(u"Select Port_Desc FROM tblTCPPorts WHERE Port_Num = "_s + portnumber::digits(number));
        EXPECT_TRUE(row == description || portnumber::digits(number) == u"0") << row.toStdString();
    }
}

bool OperatorWalk::portList()
{
    const Counts expected = counts();
    const bool had = change("mnuPortList", { { u"frmPortList"_s, [&](Driver &form) {
        for (int i = 1 + m_random.below(4); i > 0 && !m_ended; --i)
            changeCatalogue(form);
        if (m_ended)
            return;
        QStringList shown;
        const QTreeWidget &list = table(form, u"ListView1"_s);
        for (int i = 0; i < list.topLevelItemCount(); ++i)
            shown << list.topLevelItem(i)->text(0) + u'|' + list.topLevelItem(i)->text(1);
        const QStringList stored
            = world.rows(u"Select Port_Num, Port_Desc FROM tblTCPPorts WHERE Port_Type = 'TCP' ORDER BY Port_Num"_s);
        EXPECT_EQ(shown, stored);
        form.press(Close);
    } } });
    expectCounts(expected, "port list");
    return had;
}

bool OperatorWalk::about()
{
    return command("mnuHelpAbout", { { u"frmAbout"_s, [&](Driver &form) {
        meanwhile();
        QTest::keyClick(&form.form(), Qt::Key_Escape);
    } } });
}
