#include "editors/frmGroupAdd.h"
#include "editors/frmModifyGroup.h"
#include "tests/editors/EditorWorld.h"

#include <QClipboard>

using namespace Qt::StringLiterals;

class GroupTest : public EditorWorld
{
protected:
    QStringList groups()
    {
        return world.rows(
            u"Select Group_ID, Group_Label, Group_Desc, Group_Icon FROM tblGroup ORDER BY Group_ID"_s);
    }
};

TEST_F(GroupTest, AddByKeyboardAlone)
{
    openWindow();
    select(NodeLevel::Root, u"Root"_s);
    drive("mnutvAddGroup", { [&](Driver &form) {
        EXPECT_EQ(QApplication::focusWidget(), &form.at("txtArray", 0)) << "typing can begin at once";
        QTest::keyClicks(QApplication::focusWidget(), u"Printers"_s);
        QTest::keyClick(&form.form(), Qt::Key_Tab);
        QTest::keyClicks(QApplication::focusWidget(), u"o'ffice"_s); // a row's field takes an apostrophe
        QTest::keyClick(&form.form(), Qt::Key_Return);
    } });
    EXPECT_EQ(groups().last(), u"3|Printers|o'ffice|14"_s);
    EXPECT_TRUE(treeLines().contains(u" Group:3 | Printers | icon 14"_s));
    EXPECT_EQ(tree().currentKey(), u"Group:3"_s);
    EXPECT_TRUE(listLines().first().contains(u"Printers"_s));
}

TEST_F(GroupTest, AnExistingLabelIsRefusedAndTheDialogStays)
{
    openWindow();
    select(NodeLevel::Root, u"Root"_s);
    drive("mnutvAddGroup", { [&](Driver &form) {
        form.type("txtArray", 0, u"SERVERS"_s);
        world.dialogs.expect(
            u"SERVERS already exists in the database.\r\nTry again, or cancel the action."_s);
        form.press(0);
        EXPECT_EQ(world.dialogs.shown.last().icon, Dialogs::Exclamation);
        EXPECT_EQ(world.dialogs.shown.last().caption, AppTitle());
        EXPECT_TRUE(form.command(0).isEnabled());
        EXPECT_EQ(form.at<QLineEdit>("txtArray", 0).selectedText(), u"SERVERS"_s);
        EXPECT_TRUE(form.at("txtArray", 0).hasFocus());
        form.press(1);
    } });
    EXPECT_EQ(groups().size(), 2);
    // Nothing typed is a label as well.
    drive("mnutvAddGroup", { [](Driver &form) { form.press(0); } });
    EXPECT_EQ(groups().last(), u"3|||14"_s);
}

TEST_F(GroupTest, PropertiesMayGiveTwoGroupsOneLabel)
{
    openWindow();
    select(NodeLevel::Group, net.groupKey);
    drive("mnutvProperties", { [](Driver &form) {
        EXPECT_EQ(form.texts("txtArray", 2), QStringList({ u"Servers"_s, u"Servers description"_s }));
        form.type("txtArray", 0, u"Empty"_s);
        form.type("txtArray", 1, {});
        form.press(0);
    } });
    EXPECT_EQ(groups(), QStringList({ u"1|Empty||14"_s, u"2|Empty|Empty description|14"_s }));
    EXPECT_EQ(nodes().filter(u"Group:"_s), QStringList({ u"Group:1 | Empty"_s, u"Group:2 | Empty"_s }));

    drive("mnutvProperties", { [](Driver &form) {
        form.type("txtArray", 0, u"Other"_s);
        QTest::keyClick(&form.form(), Qt::Key_Escape);
    } });
    EXPECT_EQ(groups().first(), u"1|Empty||14"_s);
}

TEST_F(GroupTest, NoHalfOfACharacterIsStored)
{
    frmGroupAdd add(recorded);
    show(add);
    Driver form(add);
    QApplication::clipboard()->setText(QString(254, u'w') + u"\U0001F5A5"_s);
    QTest::keyClick(&form.at("txtArray", 0), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(form.text("txtArray", 0), QString(254, u'w'));
    form.press(0);
    EXPECT_EQ(world.rows(u"Select Group_Label FROM tblGroup"_s).last(), QString(254, u'w'));
}

TEST_F(GroupTest, AnApostropheBreaksTheStatements)
{
    frmGroupAdd add(recorded);
    Driver(add).type("txtArray", 0, u"O'Brien"_s);
    expectEnd(u"AddGroup"_s, [&] { Driver(add).command(0).click(); });
    reopen();
    frmModifyGroup modify(recorded, net.groupKey);
    Driver(modify).type("txtArray", 1, u"it's"_s);
    expectEnd(u"ModifyGroup"_s, [&] { Driver(modify).command(0).click(); });
    EXPECT_EQ(recorded.log, QStringList());
}
