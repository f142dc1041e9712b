#include "core/Settings.h"
#include "editors/frmAddDevice.h"
#include "editors/frmAddPort.h"
#include "tests/editors/EditorWorld.h"

#include <QCheckBox>
#include <QLabel>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

namespace {
constexpr int kExample = 0;
constexpr int kCancel = 1;
constexpr int kBack = 2;
constexpr int kNext = 3;

int page(Driver &form) { return form.form().findChild<QStackedWidget *>()->currentIndex(); }
QString summary(Driver &form, int line) { return form.at<QLabel>("lblSummary", line).text(); }
void pressNext(Driver &form, int times = 1)
{
    for (int i = 0; i < times; ++i)
        form.press(kNext);
}
} // namespace

class AddDeviceTest : public EditorWorld
{
protected:
    AddDeviceTest()
    {
        recorded.level = NodeLevel::Group;
        recorded.key = net.groupKey;
        recorded.text = u"Servers"_s;
        fillCatalogue();
    }
    QStringList names() { return world.rows(u"Select Device_Name FROM tblDevices ORDER BY Device_ID"_s); }
};

TEST_F(AddDeviceTest, OneDeviceAndItsChecks)
{
    SaveSetting(u"Options"_s, u"IncludeInHTML"_s, u"0"_s);
    openWindow();
    select(NodeLevel::Group, net.groupKey);
    const auto device = [&](Driver &form) {
        EXPECT_EQ(form.named<QLabel>(u"lblIntroduction"_s).text(),
            u"The Kavro add device wizard will assist you in creating a monitored device under the Servers"
            " group."_s);
        EXPECT_FALSE(form.command(kBack).isEnabled());
        pressNext(form);
        QTest::keyClicks(QApplication::focusWidget(), u"  mail.example "_s);
        QTest::keyClick(&form.form(), Qt::Key_Return);
        EXPECT_EQ(page(form), 2);
        form.press(kExample);
        EXPECT_EQ(page(form), 2);
        form.type("txtIPRange", 1, u" Post "_s);
        EXPECT_EQ(form.command(kNext).text(), u"&Next >"_s);
        pressNext(form);
        EXPECT_EQ(form.command(kNext).text(), u"&Finished"_s);
        EXPECT_EQ(summary(form, 0) + summary(form, 1) + summary(form, 2), u"mail.examplePost"_s);
        EXPECT_EQ(summary(form, 3), u"1 device will be made."_s);
        form.press(kBack);
        EXPECT_EQ(form.command(kNext).text(), u"&Next >"_s);
        pressNext(form, 2);
    };
    const auto checks = [&](Driver &form) {
        EXPECT_EQ(form.form().objectName(), u"frmAddPort"_s);
        EXPECT_TRUE(form.at<QLabel>("lblStep", 0).text().contains(u" on mail.example.  Press"_s));
        pressNext(form);
        form.named<QTreeWidget>(u"lvListView"_s).topLevelItem(0)->setCheckState(0, Qt::Checked);
        pressNext(form, 2);
    };
    drive("mnutvAddDevice", { device, checks });
    EXPECT_EQ(world.rows(u"Select Device_ID, Group_ID, Device_Name, Device_Alias, Device_Desc, Device_Status,"
                         " Device_Icon, HTML_Output, MSAgent_Referr_Device, MSAgent_Pronounce_Device"
                         " FROM tblDevices WHERE Device_ID = 3"_s),
        QStringList(u"3|1|mail.example|Post|Null|Not checked|2|False|False|True"_s));
    EXPECT_EQ(tree().currentKey(), u"3:mail.example"_s);
    EXPECT_EQ(nodes().filter(u"3:"_s), QStringList({ u"3:mail.example | Post"_s, u"3:Ping | Port:Ping"_s }));
    EXPECT_EQ(world.announcer.log, QStringList(u"speak Options-AliasExample"_s));
}

TEST_F(AddDeviceTest, Names)
{
    struct Row {
        const char16_t *entered;
        const char16_t *box; // what the box begins with; empty: accepted
    };
    constexpr const char16_t *kGood = u"";
    const Row rows[] = {
        { u"",
            u"NULL is not a valid device name or IP address.\r\n"
            u"Please make your corrections before pressing the next button." },
        { u"NULL", u"NULL is not a valid" },
        { u"7", u"7 is not a valid" },
        { u"12", u"12 is not a valid" },
        { u"a", u"a is not a valid" },
        { u"1e3", u"1e3 is not a valid" },
        { u"ab", kGood },
        { u"two words", kGood },
        { u"10.5", kGood },
        { u"1.2.3", kGood },
        { u"192.168.1.256", kGood },
        { u"192.168.1.25", kGood },
        { u"10.0.0.1-web", kGood },
        { u"WEB.example",
            u"WEB.example already exists as a monitored device.\r\n"
            u"You must specify a different device name." },
        { u"10.0.0.9-10.0.0.1", u"10.0.0.9-10.0.0.1 is not a valid" },
        { u"10.0.0.1-256", u"10.0.0.1-256 is not a valid" },
        { u"10.0.0.1/21", u"10.0.0.1/21 is not a valid" },
        { u"10.0.0.1/33", u"10.0.0.1/33 is not a valid" },
        { u"10.0.0.1-", u"10.0.0.1- is not a valid" },
    };
    SaveSetting(u"Startup"_s, u"ShowIntro"_s, u"1"_s);
    frmAddDevice wizard(recorded);
    show(wizard);
    Driver form(wizard);
    for (const Row &row : rows) {
        const QString entered = QString::fromUtf16(row.entered);
        const QString box = QString::fromUtf16(row.box);
        form.type("txtIPRange", 0, entered);
        if (!box.isEmpty())
            world.dialogs.expect(box);
        form.press(kNext);
        if (box.isEmpty()) {
            EXPECT_EQ(page(form), 2) << entered.toStdString();
            form.press(kBack);
        } else {
            EXPECT_EQ(world.dialogs.shown.last().icon, Dialogs::Information);
            EXPECT_TRUE(form.at("txtIPRange", 0).hasFocus());
            EXPECT_EQ(form.at<QLineEdit>("txtIPRange", 0).selectedText(), entered);
        }
        EXPECT_EQ(page(form), 1) << entered.toStdString();
    }
    form.press(kCancel);
    EXPECT_EQ(names(), QStringList({ u"web.example"_s, u"plain.example"_s }));
    EXPECT_EQ(recorded.log, QStringList());
}

TEST_F(AddDeviceTest, TheIntroductionIsSkippedOnWish)
{
    frmAddDevice first(recorded);
    show(first);
    Driver form(first);
    auto &box = form.named<QCheckBox>(u"chkShowIntro"_s);
    EXPECT_FALSE(box.isChecked());
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(GetSetting(u"Startup"_s, u"ShowIntro"_s), u"1"_s) << "saved at once";
    form.press(kCancel);

    frmAddDevice second(recorded);
    show(second);
    Driver again(second);
    EXPECT_EQ(page(again), 1);
    again.press(kBack);
    EXPECT_EQ(page(again), 0);
    EXPECT_TRUE(again.named<QCheckBox>(u"chkShowIntro"_s).isChecked());
}

TEST_F(AddDeviceTest, AddressesAreJudgedPartByPart)
{
    for (const QString &good : { u"1.2.3.4"_s, u"0.0.0.0"_s, u"255.255.255.255"_s, u" 1.2 .+3.1e2"_s })
        EXPECT_TRUE(IsIPAddressText(good)) << good.toStdString();
    for (const QString &bad : { u""_s, u"1.2.3"_s, u"1.2.3.4.5"_s, u"1.2.3.256"_s, u"1.2.3.-1"_s, u"1.2.3.a"_s, u"1.2.3."_s,
             u"1.2.3.1e400"_s })
        EXPECT_FALSE(IsIPAddressText(bad)) << bad.toStdString();
}

TEST_F(AddDeviceTest, AliasAndDescriptionTakeAnApostrophe)
{
    SaveSetting(u"Startup"_s, u"ShowIntro"_s, u"1"_s);
    frmAddDevice wizard(recorded);
    show(wizard);
    Driver form(wizard);
    form.type("txtIPRange", 0, u"printer"_s);
    pressNext(form);
    form.type("txtIPRange", 1, u"boss's printer"_s);
    form.type("txtIPRange", 2, u"it's slow"_s);
    pressNext(form, 2);
    EXPECT_EQ(world.rows(u"Select Device_Alias, Device_Desc FROM tblDevices WHERE Device_ID = 3"_s),
        QStringList(u"boss's printer|it's slow"_s));
    EXPECT_EQ(recorded.log,
        QStringList({ u"add Group:1 > 3:printer | boss's printer | 2"_s, u"select 3:printer"_s, u"refresh"_s }));
}

TEST_F(AddDeviceTest, AnErrorWhileAddingEndsTheProgram)
{
    frmAddDevice wizard(recorded);
    Driver form(wizard);
    form.command(kNext).click();
    form.type("txtIPRange", 0, u"printer"_s);
    form.command(kNext).click();
    form.command(kNext).click();
    failAccess(1); // the row is looked for, then written
    expectEnd(u"Device_Add"_s, [&] { form.command(kNext).click(); });
    reopen();
    EXPECT_EQ(names().size(), 2);
}

TEST_F(AddDeviceTest, AnApostropheBreaksTheQuestionForTheName)
{
    frmAddDevice wizard(recorded);
    Driver form(wizard);
    form.command(kNext).click();
    form.type("txtIPRange", 0, u"O'Brien"_s);
    expectEnd(u"DeviceExists"_s, [&] { form.command(kNext).click(); });
}

TEST_F(AddDeviceTest, RangesOfAddresses)
{
    struct Row {
        const char16_t *entered;
        int count;
        const char16_t *first;
        const char16_t *last;
    };
    const Row rows[] = {
        { u"192.168.1.10-192.168.1.40", 31, u"192.168.1.10", u"192.168.1.40" },
        { u"192.168.1.10 - 40", 31, u"192.168.1.10", u"192.168.1.40" },
        { u"192.168.1.0/24", 254, u"192.168.1.1", u"192.168.1.254" },
        { u"192.168.1.77/22", 1022, u"192.168.0.1", u"192.168.3.254" },
        { u"10.0.0.8/31", 2, u"10.0.0.8", u"10.0.0.9" },
        { u"10.0.0.8/32", 1, u"10.0.0.8", u"10.0.0.8" },
        { u"10.0.0.255-10.0.4.254", 1024, u"10.0.0.255", u"10.0.4.254" },
        { u"255.255.255.254-255.255.255.255", 2, u"255.255.255.254", u"255.255.255.255" },
    };
    for (const Row &row : rows) {
        const QStringList made = addressrange::parse(QString::fromUtf16(row.entered)).addresses;
        ASSERT_EQ(made.size(), row.count) << QString::fromUtf16(row.entered).toStdString();
        EXPECT_EQ(made.first(), QString::fromUtf16(row.first));
        EXPECT_EQ(made.last(), QString::fromUtf16(row.last));
    }
    using addressrange::Kind;
    EXPECT_EQ(addressrange::parse(u"10.0.0.0-10.0.4.0"_s).kind, Kind::TooLarge);
    EXPECT_EQ(addressrange::parse(u"10.0.0.0/0"_s).kind, Kind::TooLarge);
    EXPECT_EQ(addressrange::parse(u"10.0.0.7-3"_s).kind, Kind::Backwards);
    EXPECT_EQ(addressrange::parse(u"10.0.0.7"_s).kind, Kind::None);
}

TEST_F(AddDeviceTest, ARangeMakesWhatIsMissingAndGivesAllTheSameChecks)
{
    world.addDevice(net.empty, u"10.0.0.3"_s);
    const int before = int(names().size());
    openWindow();
    select(NodeLevel::Group, net.groupKey);
    const auto device = [&](Driver &form) {
        pressNext(form);
        form.type("txtIPRange", 0, u"10.0.0.0/22"_s);
        EXPECT_EQ(form.named<QLabel>(u"lblRange"_s).text(), u"A range of 1022 addresses."_s);
        pressNext(form);
        EXPECT_FALSE(form.at("txtIPRange", 1).isEnabled()) << "one alias would hide which is which";
        form.type("txtIPRange", 2, u"lab"_s);
        pressNext(form);
        EXPECT_EQ(summary(form, 3), u"1021 devices will be made. Of the range, 1 exist already."_s);
        pressNext(form);
        EXPECT_TRUE(form.form().isVisible()) << "so many are not made at one go";
        EXPECT_FALSE(form.command(kCancel).isEnabled());
        QTest::keyClick(&form.form(), Qt::Key_Escape);
        EXPECT_TRUE(form.form().isVisible());
        EXPECT_TRUE(time->runUntil([&] { return !form.form().isVisible(); }));
    };
    const auto checks = [&](Driver &form) {
        EXPECT_TRUE(form.at<QLabel>("lblStep", 0).text().contains(u" on 1021 devices."_s));
        pressNext(form);
        auto &list = form.named<QTreeWidget>(u"lvListView"_s);
        for (int row : { 0, 3 })
            list.topLevelItem(row)->setCheckState(0, Qt::Checked);
        pressNext(form, 2);
        EXPECT_TRUE(time->runUntil([&] { return !form.form().isVisible(); }));
    };
    drive("mnutvAddDevice", { device, checks });
    EXPECT_EQ(names().size(), before + 1021);
    EXPECT_EQ(distinct(u"Select Group_ID, Device_Alias, Device_Desc FROM tblDevices WHERE Device_ID > 3"_s),
        QStringList(u"1|Null|lab"_s));
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortMain WHERE Port_Num = '80' AND Device_ID > 3"_s).size(),
        1021);
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortStatus WHERE Device_ID > 3"_s).size(), 2 * 1021);
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortMain WHERE Device_ID = 3"_s).size(), 0)
        << "a device that existed keeps what it had";
    EXPECT_EQ(tree().currentKey(), u"4:10.0.0.1"_s);
    EXPECT_EQ(tree().nodeCount(), 1 + 2 + before + 1021 + 3 + 2 * 1021);
}
