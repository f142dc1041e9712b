#include "DaoFixture.h"

namespace {

using Recordsets = DaoFixture;

TEST_F(Recordsets, WalkForward)
{
    auto rs = db->OpenRecordset(u"SELECT Port_Num FROM tblTCPPorts ORDER BY Port_Num"_s);
    EXPECT_FALSE(rs.Bof());
    EXPECT_EQ(rs.RecordCount(), 1);
    QStringList seen;
    for (; !rs.Eof(); rs.MoveNext())
        seen.append(rs.Field(u"PORT_NUM"_s).text());
    EXPECT_EQ(seen.join(u','), u"0,21,80"_s);
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_EQ(failure([&] { rs.MoveNext(); }), 3021);
    EXPECT_EQ(failure([&] { rs.Field(0); }), 3021);
    EXPECT_EQ(failure([&] { rs.Edit(); }), 3021);
    EXPECT_EQ(failure([&] { rs.Delete(); }), 3021);
    rs.MoveLast();
    EXPECT_EQ(rs.Field(0).integer(), 80);
    rs.MoveFirst();
    EXPECT_EQ(rs.Field(0).integer(), 0);
}

TEST_F(Recordsets, WithoutRows)
{
    auto rs = db->OpenRecordset(u"SELECT * FROM tblGroup WHERE Group_ID = 99"_s);
    EXPECT_TRUE(rs.Bof() && rs.Eof());
    EXPECT_EQ(rs.RecordCount(), 0);
    EXPECT_EQ(failure([&] { rs.MoveFirst(); }), 3021);
    EXPECT_EQ(failure([&] { rs.MoveLast(); }), 3021);
    EXPECT_EQ(failure([&] { rs.Field(u"Group_ID"_s); }), 3021);
    EXPECT_EQ(failure([&] { rs.Field(u"Nothing"_s); }), 3265);
    ASSERT_EQ(dao::Errors().size(), 1);
    EXPECT_EQ(dao::Errors().constFirst().source, u"DAO.Field"_s);
}

TEST_F(Recordsets, FindFieldsByName)
{
    auto rs = db->OpenRecordset(
        u"SELECT *, a.Port_ID AS PORTID FROM tblPortMain AS a, tblPortStatus AS b WHERE a.Port_ID = b.Port_ID AND a.Port_ID = 2"_s);
    EXPECT_EQ(rs.Field(u"PortID"_s).integer(), 2);
    EXPECT_EQ(rs.Field(u"b.device_id"_s).integer(), 1);
    EXPECT_EQ(rs.Field(u"a.Port_Num"_s).text(), u"80"_s) << "a unique column by its full name";
    EXPECT_EQ(failure([&] { rs.Field(u"Port_ID"_s); }), 3265) << "in two tables";
    EXPECT_EQ(failure([&] { rs.Field(99); }), 3265);
    EXPECT_EQ(failure([&] { rs.Field(-1); }), 3265);
}

TEST_F(Recordsets, EditOneRow)
{
    auto rs = db->OpenRecordset(u"Select * from tblPortStatus WHERE Port_ID = 2 AND Port_Icon <> 13"_s);
    EXPECT_EQ(failure([&] { rs.Set(u"Port_Mode"_s, 1); }), 3020);
    EXPECT_EQ(failure([&] { rs.Update(); }), 3020);
    EXPECT_EQ(failure([&] { rs.CancelUpdate(); }), 3020);
    rs.Edit();
    rs.Set(u"Port_Status"_s, u"Connected"_s);
    rs.Set(u"Port_Success"_s, u"17"_s);
    rs.Set(u"Ping_Avg"_s, 1.25);
    rs.Set(u"Port_Fail_Date"_s, QDateTime(QDate(2024, 2, 29), QTime(23, 59, 59, 700)));
    rs.Set(u"Port_Rec_Date"_s, dao::Value::null());
    EXPECT_EQ(rs.Field(u"Port_Success"_s).integer(), 17) << "the buffer";
    EXPECT_EQ(rows(u"SELECT Port_Success FROM tblPortStatus WHERE Port_ID = 2"_s), u"0"_s);
    rs.Update();
    const QString stored = u"Connected|17|1.25|3/1/2024 12:00:00 AM|Null"_s;
    const QString columns
        = u"SELECT Port_Status, Port_Success, Ping_Avg, Port_Fail_Date, Port_Rec_Date FROM tblPortStatus WHERE Port_ID = 2"_s;
    EXPECT_EQ(rows(columns), stored);
    EXPECT_EQ(rs.Field(u"Port_Fail_Date"_s).dateTime(), QDateTime(QDate(2024, 3, 1), QTime(0, 0)));
    EXPECT_EQ(failure([&] { rs.Update(); }), 3020);
    rs.Edit();
    rs.Set(u"Port_Success"_s, 99);
    rs.CancelUpdate();
    rs.Edit();
    rs.Set(u"Port_Success"_s, 98);
    rs.MoveNext();
    EXPECT_EQ(rows(columns), stored) << "moving away drops the buffer";
}

TEST_F(Recordsets, RefuseWhatAColumnCannotHold)
{
    auto rs = db->OpenRecordset(u"tblDevices"_s);
    rs.Edit();
    EXPECT_EQ(failure([&] { rs.Set(u"Device_ID"_s, 5); }), 3113);
    EXPECT_EQ(failure([&] { rs.Set(u"Device_Icon"_s, u"two"_s); }), 3421);
    EXPECT_EQ(failure([&] { rs.Set(u"Device_Icon"_s, 3e9); }), 3349);
    EXPECT_EQ(failure([&] { rs.Set(u"HTML_Output"_s, u"maybe"_s); }), 3421);
    EXPECT_EQ(failure([&] { rs.Set(u"Device_Name"_s, QString(256, u'x')); }), 3163);
    EXPECT_EQ(failure([&] { rs.Set(u"Nothing"_s, 1); }), 3265);
    rs.Set(u"HTML_Output"_s, 5);
    rs.Set(u"Device_Icon"_s, 2.5);
    rs.Set(u"Device_Name"_s, 80);
    rs.Update();
    EXPECT_EQ(rows(u"SELECT Device_Name, Device_Icon, HTML_Output FROM tblDevices WHERE Device_ID = 1"_s),
              u"80|2|True"_s);
    auto joined = db->OpenRecordset(u"SELECT Port_Num FROM tblPortMain, tblDevices"_s);
    EXPECT_EQ(failure([&] { joined.Edit(); }), 3027);
    EXPECT_EQ(failure([&] { joined.AddNew(); }), 3027);
    auto computed = db->OpenRecordset(u"SELECT Port_ID + 1 AS Following FROM tblPortMain"_s);
    computed.Edit();
    EXPECT_EQ(failure([&] { computed.Set(u"Following"_s, 1); }), 3113);
}

TEST_F(Recordsets, AddARowAndFindItAgain)
{
    auto rs = db->OpenRecordset(u"SELECT * FROM tblDevices WHERE Device_Name = 'new'"_s);
    rs.AddNew();
    EXPECT_EQ(rs.Field(u"Device_ID"_s).integer(), 4) << "the number is there before the row";
    EXPECT_EQ(rs.Field(u"Device_Status"_s).text(), u"Not checked"_s);
    rs.Set(u"Device_Name"_s, u"new"_s);
    rs.Update();
    EXPECT_TRUE(rs.Eof());
    EXPECT_FALSE(rs.Bof());
    rs.Requery();
    ASSERT_FALSE(rs.Eof());
    EXPECT_EQ(dump(std::move(rs)), u"4|Null|new|Null|Null|Not checked|2|False|False|False"_s);
}

TEST_F(Recordsets, KeepTheirPlaceWhileAdding)
{
    auto rs = db->OpenRecordset(u"SELECT Group_ID, Group_Label FROM tblGroup ORDER BY Group_Label DESC"_s);
    rs.AddNew();
    rs.Set(u"Group_Label"_s, u"A"_s);
    rs.Update();
    EXPECT_EQ(rs.Field(u"Group_Label"_s).text(), u"Servers"_s);
    EXPECT_EQ(dump(std::move(rs)), u"1|Servers\n2|office\n3|A"_s) << "the new row comes last";
}

TEST_F(Recordsets, NeverGiveANumberTwice)
{
    run(u"DELETE * FROM tblMailQue"_s);
    auto rs = db->OpenRecordset(u"tblMailQue"_s);
    rs.AddNew();
    EXPECT_EQ(rs.Field(u"ID"_s).integer(), 3);
    rs.Update();
    rs.Requery();
    EXPECT_EQ(rs.Field(u"ID"_s).integer(), 3);
}

TEST_F(Recordsets, SurviveDeletedRows)
{
    auto rs = db->OpenRecordset(u"SELECT * FROM tblMailQue ORDER BY ID"_s);
    run(u"DELETE * FROM tblMailQue"_s);
    EXPECT_EQ(rs.Field(u"Mail_To"_s).text(), u"a@b"_s) << "rows are copies";
    rs.Edit();
    rs.Set(u"Mail_To"_s, u"x"_s);
    EXPECT_EQ(failure([&] { rs.Update(); }), 3167);
    rs.MoveNext();
    EXPECT_EQ(rs.Field(u"Mail_To"_s).text(), u"c@d"_s);
    EXPECT_EQ(failure([&] { rs.Delete(); }), 3167);
}

TEST_F(Recordsets, DeleteTheCurrentRow)
{
    auto rs = db->OpenRecordset(u"tblTCPPorts"_s);
    rs.MoveNext();
    rs.Delete();
    EXPECT_EQ(failure([&] { rs.Field(0); }), 3167);
    EXPECT_EQ(failure([&] { rs.Delete(); }), 3167);
    EXPECT_EQ(failure([&] { rs.Edit(); }), 3167);
    rs.MoveNext();
    EXPECT_EQ(rs.Field(u"Port_Num"_s).integer(), 21);
    EXPECT_EQ(rows(u"SELECT Port_Num FROM tblTCPPorts"_s), u"80\n21"_s);
}

TEST_F(Recordsets, FailWhenClosed)
{
    auto rs = db->OpenRecordset(u"tblGroup"_s);
    auto other = db->OpenRecordset(u"tblGroup"_s);
    rs.Close();
    EXPECT_EQ(failure([&] { rs.Field(0); }), 3420);
    EXPECT_EQ(failure([&] { rs.Close(); }), 3420);
    db->Close();
    EXPECT_EQ(failure([&] { other.MoveNext(); }), 3420);
    EXPECT_EQ(failure([&] { other.Requery(); }), 3420);
    EXPECT_EQ(failure([&] { db->Execute(u"DELETE * FROM tblGroup"_s); }), 3420);
    EXPECT_EQ(failure([&] { db->Close(); }), 3420);
    EXPECT_EQ(failure([&] { db->CommitPending(); }), 0) << "nothing is pending";
}

} // namespace
