#include "DaoFixture.h"

namespace {

class JoinWrites : public DaoFixture
{
protected:
    dao::Recordset openAdding(const QString &port)
    {
        return db->OpenRecordset(
            u"Select tblPortMain.Port_Num, tblPortMain.Port_Type, tblPortMain.Port_Desc, tblPortMain.Port_Email_Notify, tblPortMain.Port_ID as PortID, tblPortMain.Device_ID as MainID, tblPortStatus.Device_ID as StatusID FROM tblPortMain LEFT JOIN tblPortStatus ON tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortMain.Device_ID = 2 AND tblPortMain.Port_Num like '%1'"_s
                .arg(port));
    }
    dao::Recordset openEditing(const QString &port)
    {
        return db->OpenRecordset(
            u"Select tblDevices.Device_Name, tblPortMain.Port_Desc, tblPortMain.Port_ID as PORTID, tblPortEmailTemplate.Email_Address, tblPortEmailTemplate.Email_Subject, tblPortEmailTemplate.Email_Failure, tblPortEmailTemplate.Email_Recovery, tblPortMain.Port_Email_Notify, tblPortEmailTemplate.Device_ID, tblPortEmailTemplate.Port_ID FROM tblDevices LEFT JOIN(tblPortMain LEFT JOIN tblPortEmailTemplate ON tblPortEmailTemplate.Port_ID = tblPortMain.Port_ID) ON tblDevices.Device_ID = tblPortMain.Device_ID WHERE tblDevices.Device_ID = 1 AND tblPortMain.Port_Num ='%1'"_s
                .arg(port));
    }
    static void edit(dao::Recordset &rs)
    {
        rs.Edit();
        rs.Set(u"Port_Desc"_s, u"changed"_s);
        rs.Set(u"Device_ID"_s, 1);
        rs.Set(u"Email_Address"_s, u"new@example"_s);
        rs.Set(u"Email_Subject"_s, u"s"_s);
        rs.Set(u"Email_Failure"_s, u"f"_s);
        rs.Set(u"Email_Recovery"_s, QString());
        rs.Set(u"Port_Email_Notify"_s, false);
        EXPECT_EQ(rs.Field(u"PortID"_s).integer(), rs.Field(u"PORTID"_s).integer());
        rs.Update();
    }
};

TEST_F(JoinWrites, AddACheckWithItsStatus)
{
    auto rs = openAdding(u"8080"_s);
    ASSERT_TRUE(rs.Eof());
    rs.AddNew();
    rs.Set(u"MainID"_s, 2);
    rs.Set(u"StatusID"_s, 2);
    rs.Set(u"Port_Num"_s, u"8080"_s);
    rs.Set(u"Port_Type"_s, u"Port"_s);
    rs.Set(u"Port_Desc"_s, u"Proxy"_s);
    rs.Set(u"Port_Email_Notify"_s, true);
    rs.Update();
    rs.Requery();
    ASSERT_FALSE(rs.Eof());
    EXPECT_EQ(rs.Field(u"PortID"_s).integer(), 6);
    EXPECT_EQ(rs.Field(u"StatusID"_s).integer(), 2);
    EXPECT_EQ(rows(u"SELECT * FROM tblPortMain WHERE Port_ID = 6"_s), u"6|2|8080|Port|Proxy|True"_s);
    EXPECT_EQ(rows(u"SELECT * FROM tblPortStatus WHERE Port_ID = 6"_s),
              u"6|2|Not checked||Null|Null|0|0|0|0|0|0|0|5|0|0"_s);
}

TEST_F(JoinWrites, EditACheckThatHasATemplate)
{
    auto rs = openEditing(u"80"_s);
    ASSERT_FALSE(rs.Eof());
    edit(rs);
    EXPECT_EQ(rows(u"tblPortEmailTemplate"_s), u"2|1|new@example|s|f|"_s);
    EXPECT_EQ(rows(u"SELECT Port_Desc, Port_Email_Notify FROM tblPortMain WHERE Port_ID = 2"_s),
              u"changed|False"_s);
}

TEST_F(JoinWrites, EditACheckThatGetsItsTemplate)
{
    auto rs = openEditing(u"443"_s);
    ASSERT_FALSE(rs.Eof());
    edit(rs);
    EXPECT_EQ(rs.Field(u"Port_ID"_s).integer(), 3) << "the new row's key is shown at once";
    EXPECT_EQ(rows(u"SELECT * FROM tblPortEmailTemplate WHERE Port_ID = 3"_s), u"3|1|new@example|s|f|"_s);
    edit(rs);
    EXPECT_EQ(rows(u"SELECT Email_Address FROM tblPortEmailTemplate"_s), u"ops@example\nnew@example"_s)
        << "the second time it is there";
}

TEST_F(JoinWrites, TouchOnlyWhatWasAssigned)
{
    auto rs = openEditing(u"443"_s);
    rs.Edit();
    EXPECT_EQ(failure([&] { rs.Set(u"Port_ID"_s, 5); }), 3113) << "comes from the check";
    rs.Set(u"Port_Desc"_s, u"only this"_s);
    rs.Update();
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortEmailTemplate"_s), u"2"_s) << "no template made";
    rs.Edit();
    rs.Set(u"Email_Subject"_s, dao::Value::null());
    rs.Update();
    EXPECT_EQ(rows(u"SELECT Port_ID, Email_Subject FROM tblPortEmailTemplate"_s), u"2|web\n3|Null"_s)
        << "Null counts too";
}

TEST_F(JoinWrites, AllOrNothing)
{
    auto rs = db->OpenRecordset(
        u"SELECT b.Port_Desc AS Second, a.Port_Desc AS First, b.Port_Num AS Number FROM tblPortMain a INNER JOIN tblTCPPorts b ON a.Port_ID = b.Port_Num"_s);
    EXPECT_TRUE(rs.Eof());
    run(u"UPDATE tblTCPPorts SET Port_Num = 2 WHERE Port_Num = 21"_s);
    rs.Requery();
    rs.Edit();
    rs.Set(u"First"_s, u"lost"_s);
    rs.Set(u"Number"_s, 80);
    EXPECT_EQ(failure([&] { rs.Update(); }), 3022);
    EXPECT_EQ(rows(u"SELECT Port_Desc FROM tblPortMain WHERE Port_ID = 2"_s), u"Null"_s);
}

TEST_F(JoinWrites, NeedTheRowBetween)
{
    run(u"DELETE * FROM tblPortMain WHERE Device_ID = 3"_s);
    auto rs = db->OpenRecordset(
        u"SELECT a.Device_Name, c.Email_Subject FROM tblDevices a LEFT JOIN(tblPortMain b LEFT JOIN tblPortEmailTemplate c ON b.Port_ID = c.Port_ID) ON a.Device_ID = b.Device_ID WHERE a.Device_ID = 3"_s);
    rs.Edit();
    rs.Set(u"Email_Subject"_s, u"x"_s);
    EXPECT_EQ(failure([&] { rs.Update(); }), 3332);
}

TEST_F(JoinWrites, DeleteTheManySide)
{
    auto rs = db->OpenRecordset(
        u"SELECT a.Device_ID, b.Port_ID FROM tblDevices a LEFT JOIN tblPortMain b ON a.Device_ID = b.Device_ID WHERE a.Device_ID >= 2"_s);
    rs.Delete();
    rs.MoveNext();
    run(u"DELETE * FROM tblPortMain WHERE Device_ID = 3"_s);
    rs.Requery();
    rs.MoveNext();
    rs.Delete();
    EXPECT_EQ(rows(u"SELECT Device_ID FROM tblDevices"_s), u"1\n2"_s);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortMain"_s), u"1\n2\n3"_s);
}

} // namespace
