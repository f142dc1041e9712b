#include "core/Settings.h"
#include "editors/frmAddPort.h"
#include "tests/editors/EditorWorld.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCancel = 1;
constexpr int kBack = 2;
constexpr int kNext = 3;

QTreeWidget &catalogue(Driver &form) { return form.named<QTreeWidget>(u"lvListView"_s); }

/** Each row as "text | description", "*" before a ticked one. */
QStringList offered(Driver &form)
{
    QStringList lines;
    for (int i = 0; i < catalogue(form).topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = catalogue(form).topLevelItem(i);
        lines << (item->checkState(0) == Qt::Checked ? u"*"_s : QString()) + item->text(0) + u" | "_s
                + item->text(1);
    }
    return lines;
}

void press(Driver &form, int row)
{
    QTreeWidget &list = catalogue(form);
    list.setCurrentItem(list.topLevelItem(row));
    QTest::keyClick(&list, Qt::Key_Space);
}

} // namespace

class AddPortTest : public EditorWorld
{
protected:
    AddPortTest() { fillCatalogue(); }
    QStringList checks(int device)
    {
        return world.rows(
            u"Select Port_ID, Port_Num, Port_Type, Port_Desc, Port_Email_Notify FROM tblPortMain"
            " WHERE Device_ID = %1 ORDER BY Port_ID"_s.arg(device));
    }
};

TEST_F(AddPortTest, TicksDecideWhatIsDeletedAddedAndLeftAlone)
{
    SaveSetting(u"Options"_s, u"EmailNotify"_s, u"0"_s);
    world.sql(u"UPDATE tblPortStatus SET Port_Success = 7, Port_Failure = 2"_s);
    for (int port : { net.ping, net.port80 })
        world.sql(u"INSERT INTO tblPortEmailTemplate (Port_ID, Device_ID) VALUES (%1, %2)"_s.arg(port).arg(
            net.web));
    openWindow();
    select(NodeLevel::Device, net.deviceKey);
    drive("mnutvAddPort", { [](Driver &form) {
        EXPECT_EQ(form.at<QLabel>("lblStep", 0).text(),
            u"This wizard will assist you in selecting the TCP/IP ports to moniotor on web.example."
            "  Press the 'Next' button and make your selections from the list provided."_s);
        QTest::keyClick(&form.form(), Qt::Key_Return);
        EXPECT_EQ(offered(form),
            QStringList({ u"*Ping | Echo request"_s, u"*9 | Discard"_s, u"25 | Mail"_s, u"*80 | Web"_s,
                u"443 | Secure web"_s }));
        press(form, 0);
        press(form, 1);
        press(form, 4);
        form.press(kNext);
        EXPECT_EQ(form.command(kNext).text(), u"&Finished >"_s);
        form.press(kBack);
        EXPECT_EQ(form.command(kNext).text(), u"&Next >"_s);
        form.press(kNext);
        auto &toAdd = form.named<QListWidget>(u"lstPortsAdd"_s);
        ASSERT_EQ(toAdd.count(), 2);
        EXPECT_EQ(toAdd.item(0)->text(), u"80\tWeb"_s);
        EXPECT_EQ(toAdd.item(1)->text(), u"443\tSecure web"_s);
        QTest::keyClick(&form.form(), Qt::Key_Return);
    } });
    EXPECT_EQ(
        checks(net.web), QStringList({ u"2|80|Port|test check|True"_s, u"4|443|Port|Secure web|False"_s }));
    EXPECT_EQ(world.rows(u"Select Port_ID, Device_ID, Port_Status, Port_Icon, Port_Success, Port_Failure"
                         " FROM tblPortStatus ORDER BY Port_ID"_s),
        QStringList({ u"2|1|Not checked|5|7|2"_s, u"4|1|Not checked|5|0|0"_s }));
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortEmailTemplate"_s), QStringList(u"2"_s));
    EXPECT_EQ(nodes().filter(u"Port:"_s), QStringList({ u"1:443 | Port:443"_s, u"1:80 | Port:80"_s }));
    EXPECT_EQ(tree().currentKey(), net.deviceKey);
    EXPECT_EQ(listLines().size(), 3) << "the device and its checks";
}

TEST_F(AddPortTest, NothingTickedChangesNothing)
{
    openWindow();
    select(NodeLevel::Device, keys::device(net.plain, u"plain.example"_s));
    const auto unticked = [](Driver &form) {
        form.press(kNext);
        EXPECT_FALSE(offered(form).join(u' ').contains(u'*'));
        form.press(kNext);
        form.press(kNext);
    };
    drive("mnutvAddPort", { unticked });
    EXPECT_EQ(checks(net.plain), QStringList());
    // Ticked, but given up.
    drive("mnutvAddPort", { [](Driver &form) {
        form.press(kNext);
        press(form, 0);
        form.press(kNext);
        form.press(kCancel);
    } });
    EXPECT_EQ(checks(net.plain), QStringList());
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortStatus"_s).size(), 3);
}

TEST_F(AddPortTest, ACheckOfPortZeroCountsAsThePing)
{
    const int zero = world.addCheck(net.plain, u"0"_s);
    frmAddPort wizard(recorded, { { net.plain, u"plain.example"_s } });
    show(wizard);
    Driver form(wizard);
    form.press(kNext);
    EXPECT_EQ(offered(form).first(), u"*Ping | Echo request"_s);
    form.press(kNext);
    form.press(kNext);
    EXPECT_EQ(checks(net.plain), QStringList(u"%1|0|Port|test check|True"_s.arg(zero))) << "left alone";
}

TEST_F(AddPortTest, PingAndPortsThatLeftTheCatalogueMeanwhile)
{
    frmAddPort wizard(recorded, { { net.plain, u"plain.example"_s } });
    show(wizard);
    Driver form(wizard);
    form.press(kNext);
    press(form, 0);
    press(form, 2);
    form.press(kNext);
    world.sql(u"DELETE * FROM tblTCPPorts WHERE Port_Num = 25"_s);
    form.press(kNext);
    EXPECT_EQ(checks(net.plain), QStringList({ u"4|Ping|Port|Echo request|True"_s, u"5|25|||True"_s }));
    EXPECT_EQ(recorded.log,
        QStringList({ u"add 2:plain.example > 2:Ping | Port:Ping | 5"_s,
            u"add 2:plain.example > 2:25 | Port:25 | 5"_s, u"refresh"_s }));
}

TEST_F(AddPortTest, TheIntroductionIsSkippedOnWish)
{
    SaveSetting(u"Startup"_s, u"ShowPortScanIntro"_s, u"1"_s);
    frmAddPort wizard(recorded, { { net.web, u"web.example"_s } });
    show(wizard);
    Driver form(wizard);
    EXPECT_EQ(wizard.findChild<QStackedWidget *>()->currentIndex(), 1);
    EXPECT_FALSE(form.command(kBack).isEnabled());
    auto &box = form.named<QCheckBox>(u"chkShowPortSelectIntro"_s);
    EXPECT_TRUE(box.isChecked());
    box.click();
    EXPECT_EQ(GetSetting(u"Startup"_s, u"ShowPortScanIntro"_s), u"0"_s);
}

TEST_F(AddPortTest, ErrorsEndTheProgramUnderTheirProcedure)
{
    struct Row {
        const char16_t *procedure;
        int skipped; // accesses that succeed before the one that fails
    };
    // Opening reads the checks, then the catalogue; finishing reads the checks, then deletes or adds.
    for (const Row &row : { Row { u"Step0", 0 }, Row { u"Step1", 1 } }) {
        failAccess(row.skipped);
        expectEnd(QString::fromUtf16(row.procedure), [&] {
            frmAddPort(recorded, { { net.web, u"web.example"_s } });
        });
        reopen();
    }
    for (const Row &row : { Row { u"Del_Ports", 1 }, Row { u"Add_Ports", 2 }, Row { u"AddPortToDB", 3 } }) {
        frmAddPort wizard(recorded, { { net.web, u"web.example"_s } });
        Driver form(wizard);
        form.command(kNext).click();
        press(form, 0); // loses the ping check, gets mail
        press(form, 2);
        form.command(kNext).click();
        failAccess(row.skipped);
        expectEnd(QString::fromUtf16(row.procedure), [&] { form.command(kNext).click(); });
        reopen();
        world.sql(u"DELETE * FROM tblPortMain WHERE Port_Num = 'Ping'"_s);
        net.ping = world.addCheck(net.web, u"Ping"_s);
    }
}
