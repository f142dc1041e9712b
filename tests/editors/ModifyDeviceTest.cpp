#include "editors/frmModifyDevice.h"
#include "tests/editors/EditorWorld.h"

#include <QCheckBox>
#include <QTabWidget>

using namespace Qt::StringLiterals;

class ModifyDeviceTest : public EditorWorld
{
protected:
    QString row(int device)
    {
        return world
            .rows(u"Select Device_Name, Device_Alias, Device_Desc, HTML_Output, MSAgent_Referr_Device,"
                  " MSAgent_Pronounce_Device FROM tblDevices WHERE Device_ID = %1"_s.arg(device))
            .value(0);
    }
    static QString state(Driver &form)
    {
        QString checked;
        for (int i = 0; i < 4; ++i)
            checked += form.at<QAbstractButton>("arrOption", i).isChecked() ? u'1' : u'0';
        return checked + (form.at<QCheckBox>("chkArray", 0).isChecked() ? u'1' : u'0');
    }
};

TEST_F(ModifyDeviceTest, EveryControlIsLoadedAndStored)
{
    world.sql(
        u"UPDATE tblDevices SET MSAgent_Referr_Device = True, HTML_Output = False WHERE Device_ID = 1"_s);
    openWindow();
    select(NodeLevel::Device, net.deviceKey);
    drive("mnutvProperties", { [&](Driver &form) {
        EXPECT_EQ(form.texts("txtArray", 3),
            QStringList({ u"web.example"_s, u"Web Server"_s, u"web.example description"_s }));
        EXPECT_EQ(state(form), u"10010"_s);
        auto &tabs = form.named<QTabWidget>(u"TabStrip1"_s);
        ASSERT_EQ(tabs.count(), 3);
        for (int i = 0; i < 3; ++i) {
            tabs.setCurrentIndex(i);
            EXPECT_TRUE(form.at("frmTabArray", i).isVisible());
        }
        tabs.setCurrentIndex(0);
        form.type("txtArray", 0, u"other"_s);
        form.type("txtArray", 1, u" Shop "_s);
        form.type("txtArray", 2, u" it's new "_s);
        tabs.setCurrentIndex(1);
        QTest::mouseClick(&form.at("arrOption", 1), Qt::LeftButton, {}, { 5, 8 });
        QTest::mouseClick(&form.at("arrOption", 2), Qt::LeftButton, {}, { 5, 8 });
        tabs.setCurrentIndex(2);
        form.toggle("chkArray", 0);
        form.press(0);
    } });
    EXPECT_EQ(row(net.web), u"web.example|Shop|it's new|True|False|True"_s);
    EXPECT_TRUE(nodes().contains(u"1:web.example | Shop"_s));
    EXPECT_EQ(tree().currentKey(), net.deviceKey);
    EXPECT_TRUE(listLines().first().contains(u"Shop"_s));
}

TEST_F(ModifyDeviceTest, AnAliasCanBeClearedADescriptionCannot)
{
    openWindow();
    select(NodeLevel::Device, net.deviceKey);
    drive("mnutvProperties", { [&](Driver &form) {
        form.type("txtArray", 1, u"  "_s);
        form.type("txtArray", 2, {});
        QTest::keyClick(&form.form(), Qt::Key_Return);
    } });
    EXPECT_EQ(row(net.web), u"web.example||web.example description|True|False|False"_s);
    EXPECT_TRUE(nodes().contains(u"1:web.example | web.example"_s));
    drive("mnutvProperties", { [&](Driver &form) {
        form.type("txtArray", 1, u"lost"_s);
        form.press(1);
    } });
    EXPECT_EQ(row(net.web), u"web.example||web.example description|True|False|False"_s);
}

TEST_F(ModifyDeviceTest, ADeviceThatIsGoneIsNeitherShownNorWritten)
{
    frmModifyDevice dialog(recorded, u"99:gone"_s);
    Driver form(dialog);
    EXPECT_EQ(form.texts("txtArray", 3).join(QString()), QString());
    form.type("txtArray", 1, u"ghost"_s);
    form.command(0).click();
    EXPECT_EQ(recorded.log, QStringList());
    EXPECT_EQ(world.rows(u"Select Device_ID FROM tblDevices"_s).size(), 2);
}

TEST_F(ModifyDeviceTest, ErrorsEndTheProgramUnderTheirProcedure)
{
    frmModifyDevice dialog(recorded, net.deviceKey);
    vbMain().db->Close();
    expectEnd(u"Device_Update"_s, [&] { Driver(dialog).command(0).click(); });
    expectEnd(u"Form_Load"_s, [&] { frmModifyDevice(recorded, net.deviceKey); });
}
