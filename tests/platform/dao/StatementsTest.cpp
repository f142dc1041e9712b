#include "DaoFixture.h"

namespace {

struct SelectRow {
    const char *name;
    const char16_t *sql;
    const char16_t *names; // null: not looked at
    const char16_t *rows;
};

constexpr SelectRow kSelects[] = {
    {"AnyPort", u"Select tblPortMain.Port_ID FROM tblPortMain", u"Port_ID", u"1\n2\n3\n4\n5"},
    {"EnabledDevices", u"Select Device_ID FROM tblDevices WHERE Device_Icon <> 12 ORDER BY Device_Name",
     u"Device_ID", u"1\n2"},
    {"ChecksOfDevice",
     u"Select tblDevices.Device_ID, tblDevices.Device_Name, tblPortMain.Device_ID, tblPortMain.Port_Num, "
     u"tblPortMain.Port_ID FROM tblPortMain, tblDevices WHERE tblPortMain.Device_ID = 1 AND "
     u"tblDevices.Device_ID = tblPortMain.Device_ID ORDER BY tblPortMain.Device_ID",
     u"tblDevices.Device_ID|Device_Name|tblPortMain.Device_ID|Port_Num|Port_ID",
     u"1|alpha.example|1|Ping|1\n1|alpha.example|1|80|2\n1|alpha.example|1|443|3"},
    {"StatusOfPort", u"Select * from tblPortStatus WHERE Port_ID = 2 AND Port_Icon <> 13",
     u"Port_ID|Device_ID|Port_Status|Port_Last_Error|Port_Fail_Date|Port_Rec_Date|Port_Success|Port_Failure|"
     u"Ping_Cur|Ping_Min|Ping_Max|Ping_Avg|Port_Mode|Port_Icon|Port_Icon_Flag|Port_Dummy",
     u"2|1|Not checked|refused|Null|Null|0|0|0|0|0|0|-1|7|-1|0"},
    {"StatusOfDisabledPort", u"Select * from tblPortStatus WHERE Port_ID = 5 AND Port_Icon <> 13", nullptr,
     u""},
    {"DeviceIds", u"Select tblDevices.Device_ID FROM tblDevices", nullptr, u"1\n2\n3"},
    {"GroupIds", u"Select tblGroup.Group_ID FROM tblGroup ORDER BY tblGroup.Group_ID", nullptr, u"1\n2"},
    {"FailedDevices",
     u"Select tblDevices.Device_Name, tblDevices.Device_Alias, tblDevices.MSAgent_Referr_Device, "
     u"tblDevices.MSAgent_Pronounce_Device, tblDevices.Device_ID, tblPortMain.Device_ID as DeviceID, "
     u"tblPortMain.Port_Num, tblPortStatus.Port_Mode, tblPortStatus.Port_Icon, tblPortStatus.Port_Icon_Flag, "
     u"tblPortMain.Port_ID as PortID, tblPortStatus.Port_ID, tblPortStatus.Port_Last_Error FROM tblDevices, "
     u"tblPortMain, tblPortStatus WHERE tblDevices.Device_ID = tblPortMain.Device_ID AND tblPortMain.Port_ID "
     u"= tblPortStatus.Port_ID AND tblPortStatus.Port_Mode = -1 AND tblPortStatus.Port_Icon <> 13 AND "
     u"tblPortStatus.Port_Icon_Flag = -1",
     u"Device_Name|Device_Alias|MSAgent_Referr_Device|MSAgent_Pronounce_Device|Device_ID|DeviceID|Port_Num|"
     u"Port_Mode|Port_Icon|Port_Icon_Flag|PortID|Port_ID|Port_Last_Error",
     u"alpha.example|Zeta|False|False|1|1|80|-1|7|-1|2|2|refused"},
    {"RecoveredDevices",
     u"Select tblDevices.Device_Name, tblDevices.Device_ID as DeviceID, tblPortMain.Device_ID, "
     u"tblPortMain.Port_Num FROM tblDevices, tblPortMain, tblPortStatus WHERE tblDevices.Device_ID = "
     u"tblPortMain.Device_ID AND tblPortMain.Port_ID = tblPortStatus.Port_ID AND tblPortStatus.Port_Mode >= "
     u"1 AND tblPortStatus.Port_Icon <> 13 AND tblPortStatus.Port_Icon_Flag = 1",
     u"Device_Name|DeviceID|Device_ID|Port_Num", u"alpha.example|1|1|443\nbeta|2|2|Ping"},
    {"FailedEmailDevices",
     u"Select tblDevices.Device_Name, tblDevices.Device_Alias, tblDevices.MSAgent_Referr_Device, "
     u"tblPortMain.Port_Num, tblDevices.Device_ID, tblPortMain.Device_ID, tblPortMain.Port_Email_Notify, "
     u"tblPortStatus.Port_Mode, tblPortStatus.Port_Icon, tblPortStatus.Port_Icon_Flag, tblPortMain.Port_ID, "
     u"tblPortStatus.Port_ID as PortID, tblPortStatus.Port_Last_Error FROM tblDevices, tblPortMain, "
     u"tblPortStatus WHERE tblDevices.Device_ID = tblPortMain.Device_ID AND tblPortMain.Port_ID = "
     u"tblPortStatus.Port_ID AND tblPortStatus.Port_Mode = -1 AND tblPortStatus.Port_Icon <> 13 AND "
     u"tblPortStatus.Port_Icon_Flag = -1 AND tblPortMain.Port_Email_Notify = True",
     u"Device_Name|Device_Alias|MSAgent_Referr_Device|Port_Num|tblDevices.Device_ID|tblPortMain.Device_ID|"
     u"Port_Email_Notify|Port_Mode|Port_Icon|Port_Icon_Flag|Port_ID|PortID|Port_Last_Error",
     u"alpha.example|Zeta|False|80|1|1|True|-1|7|-1|2|2|refused"},
    {"TemplateOfPort",
     u"Select Port_ID, Email_Address, Email_Subject, Email_Recovery, Email_Failure FROM tblPortEmailTemplate "
     u"where Port_ID = 2",
     nullptr, u"2|ops@example|web|Null|Null"},
    {"MailsOldestFirst", u"Select * FROM tblMailQue ORDER BY ID",
     u"ID|Device_Name|Device_Port|Mail_To|Mail_Subject|Mail_Body",
     u"1|beta|Ping|a@b|down|line 1\n2|alpha.example|80|c@d|up|"},
    {"Saying",
     u"Select Speach, PlayOrder, Animation, Agent_X, Agent_Y FROM tblAgentAnnounce WHERE Saying = 'HI' ORDER "
     u"BY PlayOrder",
     nullptr, u"one|1|Null|Null|Null\ntwo|2|Wave|5|Null"},
    {"Script", u"Select Script_Event, Script FROM tblScripts WHERE Script_Event ='onfailure'", nullptr,
     u"OnFailure|Sub Main : End Sub"},
    {"PageDevices",
     u"Select Device_ID, Device_Name, Device_Alias,  Device_Desc, Device_Status, MSAgent_Referr_Device, "
     u"HTML_Output FROM tblDevices WHERE HTML_Output = True and Group_ID = 1 ORDER By Device_Name",
     nullptr, u"1|alpha.example|Zeta|Null|Not checked|False|True"},
    {"PagePorts",
     u"Select *, tblPortMain.Port_ID as PORTID FROM tblPortMain, tblPortStatus WHERE tblPortMain.Port_ID = "
     u"tblPortStatus.Port_ID AND tblPortMain.Device_ID = 2 ORDER BY tblPortMain.Port_Num",
     u"tblPortMain.Port_ID|tblPortMain.Device_ID|Port_Num|Port_Type|Port_Desc|Port_Email_Notify|"
     u"tblPortStatus.Port_ID|tblPortStatus.Device_ID|Port_Status|Port_Last_Error|Port_Fail_Date|Port_Rec_"
     u"Date|Port_Success|Port_Failure|Ping_Cur|Ping_Min|Ping_Max|Ping_Avg|Port_Mode|Port_Icon|Port_Icon_Flag|"
     u"Port_Dummy|PORTID",
     u"4|2|Ping|Port|Null|True|4|2|Not checked||Null|Null|0|0|0|0|0|0|1|6|1|0|4"},
    {"TreeGroups", u"Select * FROM tblGroup ORDER BY Group_Label", nullptr,
     u"2|office||14\n1|Servers|Main room|14"},
    {"TreeDevices", u"Select * FROM tblDevices WHERE Group_ID = 1 ORDER BY Device_Alias, Device_Name",
     nullptr,
     u"2|1|beta|Null|Null|Not checked|3|False|False|False\n1|1|alpha.example|Zeta|Null|Not "
     u"checked|2|True|False|False"},
    {"TreePorts",
     u"SELECT tblPortMain.Device_ID, tblPortMain.Port_ID, tblPortMain.Port_Num, tblPortMain.Port_Type, "
     u"tblPortStatus.Port_Icon FROM tblPortMain, tblPortStatus WHERE tblPortMain.Port_ID = "
     u"tblPortStatus.Port_ID AND tblPortMain.Device_ID = 1 ORDER BY Port_Num",
     u"Device_ID|Port_ID|Port_Num|Port_Type|Port_Icon", u"1|3|443|Port|6\n1|2|80|Port|7\n1|1|Ping|Port|5"},
    {"GroupIcons", u"Select Group_Icon, Group_ID FROM tblGroup ORDER BY Group_Icon", nullptr, u"14|1\n14|2"},
    {"DeviceIcons", u"Select Device_Icon, Device_ID, Device_Name FROM tblDevices ORDER BY Device_Icon",
     nullptr, u"2|1|alpha.example\n3|2|beta\n12|3|Gamma"},
    {"PortIcons",
     u"Select tblPortMain.Port_Num, tblPortStatus.Port_Icon FROM tblPortMain RIGHT JOIN tblPortStatus ON "
     u"tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortMain.Device_ID = 1",
     nullptr, u"Ping|5\n80|7\n443|6"},
    {"Events", u"Select * FROM tblEventLog ORDER BY Event_Date", nullptr,
     u"0|0|2|1/2/2001 1:00:00 AM|Message|hello\n1|2|4|1/31/2001 10:00:00 AM|Failure|web is "
     u"down\n1|2|3|2/1/2001 9:59:59 PM|Recovered|web is back"},
    {"BracketedTable", u"Select * from [tblGroup] WHERE Group_ID = 2", nullptr, u"2|office||14"},
    {"PortsOfDevice",
     u"Select tblPortMain.Device_ID, tblPortMain.Port_ID, tblPortMain.Port_Num, tblPortMain.Port_Type, "
     u"tblPortMain.Port_Desc, tblPortStatus.Port_Status, tblPortStatus.Port_Last_Error, "
     u"tblPortStatus.Port_Rec_Date, tblPortStatus.Port_Fail_Date, tblPortStatus.Port_Success, "
     u"tblPortStatus.Port_Failure, tblPortStatus.Ping_Min, tblPortStatus.Ping_Max, tblPortStatus.Ping_Avg "
     u"FROM tblPortMain, tblPortStatus WHERE tblPortMain.Device_ID = 2 AND tblPortMain.Port_ID = "
     u"tblPortStatus.Port_ID ORDER BY tblPortMain.Port_Num",
     nullptr, u"2|4|Ping|Port|Null|Not checked||Null|Null|0|0|0|0|0"},
    {"PortByBareNumber",
     u"Select tblPortMain.Port_ID FROM tblPortMain, tblPortStatus WHERE tblPortMain.Port_Num = 80 AND "
     u"tblPortMain.Device_ID = 1 AND tblPortMain.Device_ID = tblPortStatus.Device_ID AND tblPortMain.Port_ID "
     u"= tblPortStatus.Port_ID ORDER BY tblPortMain.Port_Num",
     nullptr, u"2"},
    {"PortByBareWord",
     u"Select tblPortMain.Port_ID FROM tblPortMain, tblPortStatus WHERE tblPortMain.Port_Num = ping AND "
     u"tblPortMain.Device_ID = 1 AND tblPortMain.Device_ID = tblPortStatus.Device_ID AND tblPortMain.Port_ID "
     u"= tblPortStatus.Port_ID ORDER BY tblPortMain.Port_Num",
     nullptr, u"1"},
    {"DeviceByName", u"Select Device_ID FROM tblDevices WHERE Device_Name = 'GAMMA'", nullptr, u"3"},
    {"DeviceForEditing",
     u"SELECT Device_Name, Device_Alias, Device_Desc, HTML_Output, MSAgent_Referr_Device, "
     u"MSAgent_Pronounce_Device FROM [tblDevices] WHERE Device_ID =3",
     nullptr, u"Gamma|alias|Null|True|False|False"},
    {"PortCatalogue", u"Select * FROM tblTCPPorts ORDER BY Port_Num", nullptr,
     u"0|Ping|TCP\n21|Transfer|TCP\n80|Web|TCP"},
    {"PortExists",
     u"Select tblPortMain.Port_Num, tblPortMain.Port_Type, tblPortMain.Port_Desc, "
     u"tblPortMain.Port_Email_Notify, tblPortMain.Port_ID as PortID, tblPortMain.Device_ID as MainID, "
     u"tblPortStatus.Device_ID as StatusID FROM tblPortMain LEFT JOIN tblPortStatus ON tblPortMain.Port_ID = "
     u"tblPortStatus.Port_ID WHERE tblPortMain.Device_ID = 1 AND tblPortMain.Port_Num like 'PING'",
     u"Port_Num|Port_Type|Port_Desc|Port_Email_Notify|PortID|MainID|StatusID", u"Ping|Port|Null|True|1|1|1"},
    {"PortForEditing",
     u"Select * from tblDevices LEFT JOIN(tblPortMain LEFT JOIN tblPortEmailTemplate ON "
     u"tblPortEmailTemplate.Port_ID = tblPortMain.Port_ID) ON tblDevices.Device_ID = tblPortMain.Device_ID "
     u"WHERE tblDevices.Device_ID = 1 AND tblPortMain.Port_Num ='443'",
     u"tblDevices.Device_ID|Group_ID|Device_Name|Device_Alias|Device_Desc|Device_Status|Device_Icon|HTML_"
     u"Output|MSAgent_Referr_Device|MSAgent_Pronounce_Device|tblPortMain.Port_ID|tblPortMain.Device_ID|Port_"
     u"Num|Port_Type|Port_Desc|Port_Email_Notify|tblPortEmailTemplate.Port_ID|tblPortEmailTemplate.Device_ID|"
     u"Email_Address|Email_Subject|Email_Failure|Email_Recovery",
     u"1|1|alpha.example|Zeta|Null|Not "
     u"checked|2|True|False|False|3|1|443|Port|Null|False|Null|Null|Null|Null|Null|Null"},
    {"GroupByLabel", u"SELECT * FROM tblGroup WHERE tblGroup.Group_Label = 'servers'", nullptr,
     u"1|Servers|Main room|14"},
    {"PortStatistics",
     u"Select * from tblDevices LEFT JOIN(tblPortMain LEFT JOIN tblPortStatus ON tblPortStatus.Port_ID = "
     u"tblPortMain.Port_ID) ON tblDevices.Device_ID = tblPortMain.Device_ID WHERE tblDevices.Device_ID = 2 "
     u"AND tblPortMain.Port_Num ='Ping'",
     nullptr,
     u"2|1|beta|Null|Null|Not checked|3|False|False|False|4|2|Ping|Port|Null|True|4|2|Not "
     u"checked||Null|Null|0|0|0|0|0|0|1|6|1|0"},
    {"PortHistory",
     u"Select tblPortMain.*, tblPortStatus.*, tblEventLog.* FROM tblEventLog, tblPortStatus, tblPortMain "
     u"WHERE tblEventLog.Device_ID = 1 AND tblPortMain.Port_Num = '80' AND tblPortMain.Port_ID = "
     u"tblPortStatus.Port_ID AND tblPortStatus.Port_ID = tblEventLog.Port_ID ORDER BY tblEventLog.Event_Date",
     u"tblPortMain.Port_ID|tblPortMain.Device_ID|Port_Num|Port_Type|Port_Desc|Port_Email_Notify|"
     u"tblPortStatus.Port_ID|tblPortStatus.Device_ID|Port_Status|Port_Last_Error|Port_Fail_Date|Port_Rec_"
     u"Date|Port_Success|Port_Failure|Ping_Cur|Ping_Min|Ping_Max|Ping_Avg|Port_Mode|Port_Icon|Port_Icon_Flag|"
     u"Port_Dummy|tblEventLog.Device_ID|tblEventLog.Port_ID|Event_Icon|Event_Date|Event_Type|Event",
     u"2|1|80|Port|Null|True|2|1|Not checked|refused|Null|Null|0|0|0|0|0|0|-1|7|-1|0|1|2|4|1/31/2001 "
     u"10:00:00 AM|Failure|web is down\n2|1|80|Port|Null|True|2|1|Not "
     u"checked|refused|Null|Null|0|0|0|0|0|0|-1|7|-1|0|1|2|3|2/1/2001 9:59:59 PM|Recovered|web is back"},
    // Beyond the program's own statements
    {"UnmatchedOuterRows",
     u"SELECT a.Port_ID, b.Email_Subject FROM tblPortMain AS a LEFT JOIN tblPortEmailTemplate AS b ON "
     u"a.Port_ID = b.Port_ID ORDER BY a.Port_ID DESC",
     nullptr, u"5|Null\n4|Null\n3|Null\n2|web\n1|Null"},
    {"NullRowsKept",
     u"SELECT a.Port_ID FROM tblPortMain a LEFT JOIN tblPortEmailTemplate b ON a.Port_ID = b.Port_ID WHERE "
     u"b.Port_ID IS NULL OR b.Email_Subject = 'none'",
     nullptr, u"1\n3\n4\n5"},
    {"BracketedInnerInOuterScope",
     u"SELECT a.Device_ID, c.Port_ID FROM tblDevices a INNER JOIN(tblPortMain b LEFT JOIN "
     u"tblPortEmailTemplate c ON b.Port_ID = c.Port_ID) ON a.Device_ID = c.Device_ID",
     u"Device_ID|Port_ID", u"1|2"},
    {"UnmatchedThroughTwoJoins",
     u"SELECT a.Group_ID, c.Port_Num FROM tblGroup a LEFT JOIN(tblDevices b LEFT JOIN tblPortMain c ON "
     u"c.Device_ID = b.Device_ID) ON a.Group_ID = b.Group_ID ORDER BY a.Group_ID, c.Port_Num",
     nullptr, u"1|443\n1|80\n1|Ping\n1|Ping\n2|21"},
    {"BooleansAndNulls",
     u"SELECT Device_ID FROM tblDevices WHERE NOT HTML_Output OR Device_Alias IS NULL ORDER BY HTML_Output",
     nullptr, u"2"},
    {"TrueSortsFirst",
     u"SELECT Device_ID, HTML_Output AS Page FROM tblDevices ORDER BY HTML_Output, Device_ID DESC",
     u"Device_ID|Page", u"3|True\n1|True\n2|False"},
    {"Arithmetic",
     u"SELECT Port_ID * 2 + 1 AS Odd, -Port_ID AS Minus, 7 \\ 2 AS Whole, 7 MOD 4 AS Rest, 2 ^ 3 AS Power, "
     u"'a' & Null & Port_ID AS Joined, Port_ID = 1 AS IsOne FROM tblPortMain WHERE Port_ID IN (1, 2) AND "
     u"Port_ID BETWEEN 0 AND 1",
     u"Odd|Minus|Whole|Rest|Power|Joined|IsOne", u"3|-1|3|3|8|a1|True"},
    {"NullNeverMatches", u"SELECT Device_ID FROM tblDevices WHERE Device_Desc <> 'x' OR Device_Desc = ''",
     nullptr, u""},
    {"DateAtTheSecond",
     u"SELECT Event FROM tblEventLog WHERE Event_Date < #2/1/2001 9:59:59 PM# AND Event_Date >= #1/31/2001 "
     u"10:00:00 AM#",
     nullptr, u"web is down"},
    {"WholeTable", u"tblScripts", u"Script_Event|Script", u"OnFailure|Sub Main : End Sub"},
};

class Selects : public DaoFixture, public testing::WithParamInterface<SelectRow>
{
};

TEST_P(Selects, GiveTheRows)
{
    const SelectRow &row = GetParam();
    const QString sql = QString::fromUtf16(row.sql);
    for (const QString &text : {sql, sql + u" ; "_s}) {
        if (text != sql && !sql.contains(u' '))
            continue;
        EXPECT_EQ(rows(text), QString::fromUtf16(row.rows));
        if (row.names) {
            EXPECT_EQ(db->OpenRecordset(text).FieldNames().join(u'|'), QString::fromUtf16(row.names));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Dao, Selects, testing::ValuesIn(kSelects),
                         [](const auto &row) { return row.param.name; });

struct ActionRow {
    const char *name;
    const char16_t *sql;
    long affected;
    const char16_t *check;
    const char16_t *rows;
};

constexpr ActionRow kActions[] = {
    {"RecordEvent",
     u"INSERT INTO tblEventLog (Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event) VALUES ('3', "
     u"'5', '5', '12/24/2001 6:30:15 PM', 'Information', 'checked');",
     1, u"SELECT * FROM tblEventLog WHERE Device_ID = 3", u"3|5|5|12/24/2001 6:30:15 PM|Information|checked"},
    {"QueueMail",
     u"INSERT INTO tblMailQue(Device_Name, Device_Port, Mail_To ,Mail_Subject ,Mail_Body) VALUES ( 'gamma', "
     u"'21', 'x@y', 's', 'b\n2');",
     1, u"SELECT * FROM tblMailQue WHERE Mail_To = 'x@y'", u"3|gamma|21|x@y|s|b\n2"},
    {"SentMail", u"DELETE * FROM tblMailQue WHERE ID = 1", 1, u"SELECT ID FROM tblMailQue", u"2"},
    {"ExpireEvents", u"DELETE * FROM tblEventLog WHERE Event_Date < #1/31/2001 10:00:01 AM#", 2,
     u"SELECT Event FROM tblEventLog", u"web is back"},
    {"ClearEvents", u"DELETE * FROM tblEventLog", 3, u"SELECT * FROM tblEventLog", u""},
    {"RollUpNormal",
     u"UPDATE tblDevices INNER JOIN tblPortStatus ON tblDevices.Device_ID = tblPortStatus.Device_ID SET "
     u"tblDevices.Device_Icon = 2, tblDevices.Device_Status = 'No Problems Detected' WHERE "
     u"tblPortStatus.Port_Mode = 0 AND tblDevices.Device_Icon <> 12 AND tblDevices.Device_ID = 1",
     1, u"SELECT Device_ID, Device_Icon, Device_Status FROM tblDevices",
     u"1|2|No Problems Detected\n2|3|Not checked\n3|12|Not checked"},
    {"RollUpRecovered",
     u"UPDATE tblDevices INNER JOIN tblPortStatus ON tblDevices.Device_ID = tblPortStatus.Device_ID SET "
     u"tblDevices.Device_Icon = 3, tblDevices.Device_Status = 'Recovered' WHERE tblPortStatus.Port_Mode >= 1 "
     u"AND tblDevices.Device_Icon <> 12 AND tblDevices.Device_ID = 2",
     1, u"SELECT Device_ID, Device_Icon, Device_Status FROM tblDevices",
     u"1|2|Not checked\n2|3|Recovered\n3|12|Not checked"},
    {"RollUpSkipsDisabled",
     u"UPDATE tblDevices INNER JOIN tblPortStatus ON tblDevices.Device_ID = tblPortStatus.Device_ID SET "
     u"tblDevices.Device_Icon = 2, tblDevices.Device_Status = 'No Problems Detected' WHERE "
     u"tblPortStatus.Port_Mode = 0 AND tblDevices.Device_Icon <> 12 AND tblDevices.Device_ID = 3",
     0, u"SELECT Device_Icon FROM tblDevices", u"2\n3\n12"},
    {"RollUpGroup",
     u"UPDATE tblGroup INNER JOIN tblDevices ON tblGroup.Group_ID = tblDevices.Group_ID SET "
     u"tblGroup.Group_Icon = 15 WHERE tblDevices.Device_Icon = 3 AND tblDevices.Group_ID = 1",
     1, u"SELECT Group_Icon FROM tblGroup", u"15\n14"},
    {"CountProblems", u"UPDATE tblPortStatus SET Port_Dummy = 0 WHERE Port_Mode < 0 AND Port_Icon <> 13", 1,
     u"SELECT Port_ID FROM tblPortStatus WHERE Port_Dummy <> 0", u""},
    {"ForgetFailures", u"UPDATE tblPortStatus SET Port_Mode = 0, Port_Icon_Flag = 0", 5,
     u"SELECT Port_Mode, Port_Icon_Flag FROM tblPortStatus WHERE Port_ID = 2", u"0|0"},
    {"ResetCounters",
     u"UPDATE tblPortStatus SET Port_Icon = 5, Port_Icon_Flag = 0, Port_Mode = 0, Port_Success = 0, "
     u"Port_Failure = 0, Ping_Cur = 0, Ping_Min = 0, Ping_Max = 0, Ping_Avg = 0, Port_Status = 'Not "
     u"checked', Port_Last_Error = '', Port_Rec_Date = NULL, Port_Fail_Date = NULL",
     5, u"SELECT Port_Mode, Port_Icon, Port_Last_Error, Port_Rec_Date FROM tblPortStatus",
     u"0|5||Null\n0|5||Null\n0|5||Null\n0|5||Null\n0|5||Null"},
    {"ResetGroups", u"UPDATE tblGroup SET Group_Icon = 14", 2, u"SELECT Group_Icon FROM tblGroup", u"14\n14"},
    {"ResetDevices", u"UPDATE tblDevices SET Device_Icon = 2, Device_Status = 'Not checked'", 3,
     u"SELECT Device_Icon FROM tblDevices", u"2\n2\n2"},
    {"DeleteGroup", u"DELETE * FROM tblGroup WHERE Group_ID = 2", 1, u"SELECT Group_ID FROM tblGroup", u"1"},
    {"DeleteTemplate", u"DELETE * FROM tblPortEmailTemplate WHERE Port_ID = 2", 1, u"tblPortEmailTemplate",
     u""},
    {"DisablePorts", u"UPDATE tblPortStatus Set Port_Status = 'Disabled', Port_Icon = 13 where Device_ID = 1",
     3, u"SELECT Port_ID FROM tblPortStatus WHERE Port_Icon = 13 AND Port_Status = 'Disabled'", u"1\n2\n3"},
    {"DisableDevice",
     u"UPDATE tblDevices Set Device_Status = 'Disabled', Device_Icon = 12 where Device_ID = 1", 1,
     u"SELECT Device_Status, Device_Icon FROM tblDevices WHERE Device_ID = 1", u"Disabled|12"},
    {"DescribePort", u"Update tblTCPPorts SET Port_Desc = 'World ''Wide'' Web' WHERE Port_Num = 80", 1,
     u"SELECT Port_Desc FROM tblTCPPorts WHERE Port_Num = 80", u"World 'Wide' Web"},
    {"AddCataloguePort",
     u"INSERT INTO tblTCPPorts (Port_Desc, Port_Type, Port_Num) VALUES ('Mail', 'TCP', 25);", 1,
     u"SELECT * FROM tblTCPPorts WHERE Port_Num = 25", u"25|Mail|TCP"},
    {"DeleteCataloguePort", u"Delete * FROM tblTCPPorts WHERE Port_Num = 80", 1,
     u"SELECT Port_Num FROM tblTCPPorts", u"0\n21"},
    {"RenameGroup", u"UPDATE tblGroup SET Group_Label = 'Rack', Group_Desc = '' WHERE tblGroup.Group_ID = 1",
     1, u"SELECT Group_Label, Group_Desc FROM tblGroup", u"Rack|\noffice|"},
    // Beyond the program's own statements
    {"RowWithoutItsKeyIsSkipped", u"INSERT INTO tblTCPPorts (Port_Num, Port_Desc) VALUES ('x', 'y')", 0,
     u"SELECT Port_Desc FROM tblTCPPorts WHERE Port_Desc = 'y'", u""},
    {"QuotedNothingIsNullDate",
     u"UPDATE tblPortStatus SET Port_Fail_Date = '', Port_Success = '2.5' WHERE Port_ID = 1", 1,
     u"SELECT Port_Fail_Date, Port_Success FROM tblPortStatus WHERE Port_ID = 1", u"Null|2"},
    {"ZeroLengthIsNoNull", u"UPDATE tblGroup SET Group_Desc = Null WHERE Group_Desc = ''", 1,
     u"SELECT Group_ID FROM tblGroup WHERE Group_Desc IS NULL", u"2"},
    {"FromOwnColumns",
     u"UPDATE tblPortStatus SET Port_Success = Port_ID / 2, Ping_Cur = Port_ID / 2 WHERE Port_ID > 2", 3,
     u"SELECT Port_Success, Ping_Cur FROM tblPortStatus", u"0|0\n0|0\n2|1.5\n2|2\n2|2.5"},
    {"BothSides",
     u"UPDATE tblDevices INNER JOIN tblPortMain ON tblDevices.Device_ID = tblPortMain.Device_ID SET "
     u"tblPortMain.Port_Desc = tblDevices.Device_Name, tblDevices.Device_Desc = 'd' WHERE "
     u"tblPortMain.Port_Num = 'Ping'",
     4, u"SELECT Port_Desc FROM tblPortMain", u"alpha.example\nNull\nNull\nbeta\nNull"},
    {"MissingSideIsAdded",
     u"UPDATE tblPortMain LEFT JOIN tblPortEmailTemplate ON tblPortMain.Port_ID = "
     u"tblPortEmailTemplate.Port_ID SET tblPortEmailTemplate.Email_Subject = 'all' WHERE "
     u"tblPortMain.Device_ID = 1",
     3, u"SELECT Port_ID, Email_Subject, Email_Address FROM tblPortEmailTemplate ORDER BY Port_ID",
     u"1|all|Null\n2|all|ops@example\n3|all|Null"},
};

class Actions : public DaoFixture, public testing::WithParamInterface<ActionRow>
{
};

TEST_P(Actions, HaveTheirEffect)
{
    const ActionRow &row = GetParam();
    EXPECT_EQ(run(QString::fromUtf16(row.sql)), row.affected);
    EXPECT_TRUE(dao::Errors().isEmpty());
    EXPECT_EQ(rows(QString::fromUtf16(row.check)), QString::fromUtf16(row.rows));
}

INSTANTIATE_TEST_SUITE_P(Dao, Actions, testing::ValuesIn(kActions),
                         [](const auto &row) { return row.param.name; });

using JoinedDeletes = DaoFixture;

TEST_F(JoinedDeletes, TakeADeviceWithAllThatHangsOnIt)
{
    const QString sql
        = u"DELETE tblDevices.*, tblPortMain.*, tblPortStatus.*, tblPortEmailTemplate.* FROM tblDevices LEFT JOIN(tblPortMain LEFT JOIN(tblPortStatus LEFT JOIN tblPortEmailTemplate ON tblPortStatus.Device_ID = tblPortEmailTemplate.Device_ID) ON tblPortMain.Device_ID = tblPortStatus.Device_ID) ON tblDevices.Device_ID = tblPortMain.Device_ID WHERE tblDevices.Device_ID = "_s;
    EXPECT_EQ(run(sql + u'1'), 8);
    EXPECT_EQ(rows(u"SELECT Device_ID FROM tblDevices"_s), u"2\n3"_s);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortMain"_s), u"4\n5"_s);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortStatus"_s), u"4\n5"_s);
    EXPECT_EQ(rows(u"tblPortEmailTemplate"_s), QString());
    EXPECT_EQ(run(sql + u'2'), 3) << "no template";
    run(u"DELETE * FROM tblPortMain"_s);
    EXPECT_EQ(run(sql + u'3'), 1) << "no port: its orphaned status row stays";
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortStatus"_s), u"5"_s);
    EXPECT_EQ(run(sql + u'3'), 0);
}

TEST_F(JoinedDeletes, TakeOnePort)
{
    const QString sql
        = u"DELETE tblPortMain.*, tblPortStatus.*, tblPortEmailTemplate.* FROM tblPortMain INNER JOIN(tblPortStatus LEFT JOIN tblPortEmailTemplate ON tblPortStatus.Port_ID = tblPortEmailTemplate.Port_ID) ON tblPortMain.Port_ID = tblPortStatus.Port_ID WHERE tblPortMain.Device_ID = 1 AND tblPortMain.Port_Num = '%1'"_s;
    EXPECT_EQ(run(sql.arg(80)), 3);
    EXPECT_EQ(run(sql.arg(u"ping"_s)), 2);
    EXPECT_EQ(run(sql.arg(8080)), 0);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortMain"_s), u"3\n4\n5"_s);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortStatus"_s), u"3\n4\n5"_s);
}

using Plans = DaoFixture;

TEST_F(Plans, OfOneShapeTakeTheirOwnValues)
{
    for (const auto &[id, name] : {std::pair(1, u"alpha.example"_s), {2, u"beta"_s}, {3, u"Gamma"_s}})
        EXPECT_EQ(rows(u"SELECT Device_Name FROM tblDevices WHERE Device_ID = %1"_s.arg(id)), name);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortMain WHERE Port_Num = 80"_s), u"2"_s);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortMain WHERE Port_Num = '443'"_s), u"3"_s);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortMain WHERE Port_Num = Ping AND Device_ID = 2"_s), u"4"_s);
    EXPECT_EQ(failure([&] { rows(u"SELECT Port_ID FROM tblPortMain WHERE Port_ID = '2'"_s); }), 3464);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortMain WHERE Port_ID = 2.0"_s), u"2"_s);
}

} // namespace
