#include "editors/frmPortList.h"
#include "tests/editors/EditorWorld.h"

#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace {
enum Mode { View, Add, Modify, Delete };
constexpr int kApply = 0;
constexpr int kClose = 1;

QTreeWidget &ports(Driver &form) { return form.named<QTreeWidget>(u"ListView1"_s); }

QStringList listed(Driver &form)
{
    QStringList lines;
    for (int i = 0; i < ports(form).topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = ports(form).topLevelItem(i);
        lines << item->data(0, Qt::UserRole).toString() + u'|' + item->text(0) + u'|' + item->text(1);
    }
    return lines;
}

void choose(Driver &form, Mode mode)
{
    QTest::mouseClick(&form.at("optArray", mode), Qt::LeftButton, {}, { 5, 8 });
}

} // namespace

class PortListTest : public EditorWorld
{
protected:
    PortListTest()
    {
        fillCatalogue();
        world.sql(u"INSERT INTO tblAgentAnnounce (Saying, Speach, PlayOrder, Animation) VALUES"
                  " ('PortListError-InvalidPortNum', '<NUMBER> is not good, <NUMBER>!', 1, 'Sad')"_s);
    }
    QStringList stored(const QString &where)
    {
        return world.rows(u"Select Port_Num, Port_Desc, Port_Type FROM tblTCPPorts WHERE "_s + where);
    }
    const QStringList m_shipped { u"Port:9|9|Discard"_s, u"Port:25|25|Mail"_s, u"Port:80|80|Web"_s,
        u"Port:443|443|Secure web"_s };
};

TEST_F(PortListTest, AddChangeAndRemove)
{
    openWindow();
    drive("mnuPortList", { [&](Driver &form) {
        const QTreeWidgetItem *header = ports(form).headerItem();
        EXPECT_EQ(header->text(0) + u' ' + header->text(1), u"Port Descrption"_s);
        EXPECT_EQ(listed(form), m_shipped) << "the ping entry is none of them";

        ASSERT_TRUE(QTest::qWaitForWindowActive(&form.form()));
        QTest::keyClick(&ports(form), Qt::Key_A, Qt::AltModifier);
        ASSERT_TRUE(QTest::qWaitFor([&] { return form.at<QRadioButton>("optArray", Add).isChecked(); }));
        form.type("txtArray", 0, u" 65535 "_s);
        form.type("txtArray", 1, u"Last"_s);
        form.press(kApply);
        EXPECT_EQ(listed(form).last(), u"Port:65535|65535|Last"_s);
        form.type("txtArray", 0, u"80"_s); // listed already
        form.type("txtArray", 1, u"Pages"_s);
        QTest::keyClick(&form.form(), Qt::Key_Return);
        EXPECT_EQ(listed(form).size(), 5);

        ports(form).setCurrentItem(ports(form).topLevelItem(1));
        EXPECT_EQ(form.texts("txtArray", 2), QStringList({ u"25"_s, u"Mail"_s }));
        choose(form, Modify);
        form.type("txtArray", 1, u"Post"_s);
        form.press(kApply);
        choose(form, View);
        EXPECT_EQ(form.texts("txtArray", 2).join(QString()), QString());

        const QString question = u"You are about to remove the following:\r\n\r\n  Port Number:\t443\r\n"
                                 "  Description:\tSecure web\r\n\r\nAre you sure?"_s;
        ports(form).setCurrentItem(ports(form).topLevelItem(3));
        world.dialogs.expect(question, Dialogs::AnswerNo);
        choose(form, Delete);
        EXPECT_EQ(listed(form).size(), 5);
        world.dialogs.expect(question, Dialogs::AnswerYes);
        ports(form).setFocus();
        QTest::keyClick(&ports(form), Qt::Key_Delete);
        EXPECT_EQ(world.dialogs.shown.last().buttons, Dialogs::YesNo);
        EXPECT_EQ(form.texts("txtArray", 2).join(QString()), QString());
        EXPECT_EQ(listed(form),
            QStringList({ u"Port:9|9|Discard"_s, u"Port:25|25|Post"_s, u"Port:80|80|Pages"_s,
                u"Port:65535|65535|Last"_s }));
        form.press(kClose);
    } });
    EXPECT_EQ(
        stored(u"Port_Num > 9"_s), QStringList({ u"25|Post|TCP"_s, u"80|Pages|tcp"_s, u"65535|Last|TCP"_s }));
    EXPECT_EQ(world.announcer.log, QStringList());
}

TEST_F(PortListTest, WhatIsTypedWrongIsSpoken)
{
    frmPortList form(recorded);
    show(form);
    Driver driver(form);
    choose(driver, Add);
    for (const QString &wrong : { u"65536"_s, u"-1"_s, u"abc"_s, QString() }) {
        driver.type("txtArray", 0, wrong);
        driver.press(kApply);
        EXPECT_EQ(world.announcer.log, QStringList(u"line %1 is not good, %1!|Sad||"_s.arg(wrong)));
        world.announcer.log.clear();
        EXPECT_TRUE(driver.at("txtArray", 0).hasFocus());
    }
    driver.type("txtArray", 0, u"0"_s); // a good number, but the ping entry's
    driver.press(kApply);
    EXPECT_EQ(world.announcer.log, QStringList());
    EXPECT_EQ(listed(driver), m_shipped);
    EXPECT_EQ(stored(u"Port_Num = 0"_s), QStringList(u"0|Echo request|ICMP"_s));
    for (const Mode mode : { Modify, Delete }) {
        choose(driver, mode);
        EXPECT_EQ(world.announcer.log, QStringList(u"speak PortListError-Delete"_s));
        world.announcer.log.clear();
    }
}

TEST_F(PortListTest, ErrorsEndTheProgramUnderTheirProcedure)
{
    frmPortList form(recorded);
    Driver driver(form);
    driver.at<QRadioButton>("optArray", Add).click();
    driver.type("txtArray", 0, u"8080"_s);
    driver.type("txtArray", 1, u"boss's"_s);
    expectEnd(u"UpdatePort"_s, [&] { driver.command(kApply).click(); });
    reopen();
    ports(driver).setCurrentItem(ports(driver).topLevelItem(0));
    vbMain().db->Close();
    world.dialogs.expect(u"You are about to remove"_s, Dialogs::AnswerYes);
    expectEnd(u"RemovePort"_s, [&] { driver.at<QRadioButton>("optArray", Delete).click(); });
    expectEnd(u"PopulateListView"_s, [&] { frmPortList other(recorded); });
}
