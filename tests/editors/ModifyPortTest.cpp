#include "editors/frmModifyPort.h"
#include "tests/editors/EditorWorld.h"

#include <QCheckBox>
#include <QTabWidget>

using namespace Qt::StringLiterals;

namespace {

const QStringList &masks()
{
    static const QStringList texts { QString(), u"<DEVICE>:<PORT>"_s,
        u"<DEVICE> port <PORT> failed on <DATE> because <REASON>."_s,
        u"<DEVICE> port <PORT> recovered on <DATE>."_s };
    return texts;
}

} // namespace

class ModifyPortTest : public EditorWorld
{
protected:
    QStringList templates()
    {
        return world.rows(
            u"Select Port_ID, Device_ID, Email_Address, Email_Subject, Email_Failure, Email_Recovery"
            " FROM tblPortEmailTemplate"_s);
    }
    QStringList check()
    {
        return world.rows(
            u"Select Port_Desc, Port_Email_Notify FROM tblPortMain WHERE Port_ID = %1"_s.arg(net.port80));
    }
    void addTemplate()
    {
        world.sql(u"INSERT INTO tblPortEmailTemplate (Port_ID, Device_ID, Email_Address, Email_Subject,"
                  " Email_Failure, Email_Recovery) VALUES (%1, %2, 'a@b', 's', 'f', 'r')"_s.arg(net.port80)
                      .arg(net.web));
    }
    static QTabWidget &tabs(Driver &form) { return form.named<QTabWidget>(u"TabStrip1"_s); }
};

TEST_F(ModifyPortTest, ATemplateIsMadeFromTheMasks)
{
    openWindow();
    select(NodeLevel::Port, net.portKey);
    drive("mnutvProperties", { [&](Driver &form) {
        EXPECT_EQ(form.texts("txtArray", 7),
            QStringList({ u"web.example"_s, u"80"_s, u"test check"_s }) + QStringList({ {}, {}, {}, {} }));
        EXPECT_TRUE(form.at<QCheckBox>("chkArray", 0).isChecked());
        EXPECT_TRUE(form.at<QCheckBox>("chkArray", 1).isChecked()) << "it has no template of its own";
        EXPECT_TRUE(form.command(0).isEnabled());
        form.type("txtArray", 2, u" it's the shop "_s);
        form.toggle("chkArray", 0);
        tabs(form).setCurrentIndex(1);
        form.toggle("chkArray", 1);
        EXPECT_EQ(form.texts("txtArray", 7).mid(3), masks());
        EXPECT_FALSE(form.command(0).isEnabled()) << "no address yet";
        QTest::keyClicks(QApplication::focusWidget(), u"ops@example"_s);
        EXPECT_TRUE(form.command(0).isEnabled());
        QTest::keyClicks(&form.at("txtArray", 3), u",x"_s);
        EXPECT_FALSE(form.command(0).isEnabled());
        form.type("txtArray", 4, u"Shop"_s);
        EXPECT_FALSE(form.command(0).isEnabled()) << "the comma still stands there";
        for (int i = 0; i < 2; ++i)
            QTest::keyClick(&form.at("txtArray", 3), Qt::Key_Backspace);
        EXPECT_TRUE(form.command(0).isEnabled());
        for (int i = 4; i < 7; ++i) {
            const QString text = form.text("txtArray", i);
            form.type("txtArray", i, u" "_s);
            EXPECT_FALSE(form.command(0).isEnabled()) << i;
            form.type("txtArray", i, text);
            EXPECT_TRUE(form.command(0).isEnabled()) << i;
        }
        form.press(0);
    } });
    EXPECT_EQ(check(), QStringList(u"it's the shop|False"_s));
    EXPECT_EQ(templates(),
        QStringList(u"%1|%2|ops@example|Shop|%3|%4"_s.arg(
            QString::number(net.port80), QString::number(net.web), masks().at(2), masks().at(3))));
}

TEST_F(ModifyPortTest, AnExistingTemplateIsKeptChangedOrRemoved)
{
    addTemplate();
    openWindow();
    select(NodeLevel::Port, net.portKey);
    drive("mnutvProperties", { [&](Driver &form) {
        EXPECT_FALSE(form.at<QCheckBox>("chkArray", 1).isChecked());
        EXPECT_EQ(form.texts("txtArray", 7).mid(3), QStringList({ u"a@b"_s, u"s"_s, u"f"_s, u"r"_s }));
        tabs(form).setCurrentIndex(1);
        form.type("txtArray", 3, u"c@d"_s);
        form.press(0);
    } });
    EXPECT_EQ(templates().size(), 1);
    EXPECT_TRUE(templates().first().endsWith(u"|c@d|s|f|r"_s));
    drive("mnutvProperties", { [&](Driver &form) {
        tabs(form).setCurrentIndex(1);
        form.toggle("chkArray", 1);
        EXPECT_EQ(form.texts("txtArray", 7).mid(3).join(QString()), QString());
        EXPECT_FALSE(form.at("txtArray", 3).isEnabled());
        EXPECT_TRUE(form.command(0).isEnabled());
        form.press(1);
    } });
    EXPECT_EQ(templates().size(), 1) << "cancelled";
    drive("mnutvProperties", { [&](Driver &form) {
        tabs(form).setCurrentIndex(1);
        form.toggle("chkArray", 1);
        form.press(0);
    } });
    EXPECT_EQ(templates(), QStringList());
    EXPECT_EQ(check(), QStringList(u"test check|True"_s));
}

TEST_F(ModifyPortTest, LinesOfATextSurvive)
{
    addTemplate();
    world.sql(u"UPDATE tblPortEmailTemplate SET Email_Failure = 'one\r\ntwo', Email_Subject = ''"_s);
    frmModifyPort dialog(recorded, net.portKey);
    Driver form(dialog);
    EXPECT_FALSE(form.command(0).isEnabled()) << "loaded with an empty box";
    form.type("txtArray", 4, u"s"_s);
    form.command(0).click();
    EXPECT_TRUE(templates().first().endsWith(u"|a@b|s|one\r\ntwo|r"_s));
}

TEST_F(ModifyPortTest, ErrorsEndTheProgramUnderTheirProcedure)
{
    frmModifyPort dialog(recorded, net.portKey);
    vbMain().db->Close();
    expectEnd(u"Port_Update"_s, [&] { Driver(dialog).command(0).click(); });
    expectEnd(u"Form_Load"_s, [&] { frmModifyPort(recorded, net.portKey); });
}
