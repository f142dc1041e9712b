-- The tables of a Kavro 2000 database.
-- Column types: AUTO, INTEGER, NUMBER, YESNO, DATE, TEXT(n), MEMO. Text columns take "" as well as Null.

CREATE TABLE tblGroup (
    Group_ID AUTO,
    Group_Label TEXT(255),
    Group_Desc TEXT(255),
    Group_Icon INTEGER DEFAULT 14);
CREATE INDEX idxGroupLabel ON tblGroup (Group_Label);

CREATE TABLE tblDevices (
    Device_ID AUTO,
    Group_ID INTEGER,
    Device_Name TEXT(255),
    Device_Alias TEXT(255),
    Device_Desc TEXT(255),
    Device_Status TEXT(255) DEFAULT 'Not checked',
    Device_Icon INTEGER DEFAULT 2,
    HTML_Output YESNO,
    MSAgent_Referr_Device YESNO,
    MSAgent_Pronounce_Device YESNO);
CREATE INDEX idxDeviceGroup ON tblDevices (Group_ID);
CREATE INDEX idxDeviceName ON tblDevices (Device_Name);

CREATE TABLE tblPortMain (
    Port_ID AUTO,
    Device_ID INTEGER,
    Port_Num TEXT(255),
    Port_Type TEXT(255),
    Port_Desc TEXT(255),
    Port_Email_Notify YESNO);
CREATE INDEX idxPortDevice ON tblPortMain (Device_ID);

-- The defaults are what a counter reset writes.
CREATE TABLE tblPortStatus (
    Port_ID INTEGER,
    Device_ID INTEGER,
    Port_Status TEXT(255) DEFAULT 'Not checked',
    Port_Last_Error TEXT(255) DEFAULT '',
    Port_Fail_Date DATE,
    Port_Rec_Date DATE,
    Port_Success INTEGER DEFAULT 0,
    Port_Failure INTEGER DEFAULT 0,
    Ping_Cur NUMBER DEFAULT 0,
    Ping_Min NUMBER DEFAULT 0,
    Ping_Max NUMBER DEFAULT 0,
    Ping_Avg NUMBER DEFAULT 0,
    Port_Mode INTEGER DEFAULT 0,
    Port_Icon INTEGER DEFAULT 5,
    Port_Icon_Flag INTEGER DEFAULT 0,
    Port_Dummy INTEGER DEFAULT 0);
CREATE INDEX idxStatusPort ON tblPortStatus (Port_ID);
CREATE INDEX idxStatusDevice ON tblPortStatus (Device_ID);

CREATE TABLE tblPortEmailTemplate (
    Port_ID INTEGER,
    Device_ID INTEGER,
    Email_Address MEMO,
    Email_Subject MEMO,
    Email_Failure MEMO,
    Email_Recovery MEMO);
CREATE INDEX idxTemplatePort ON tblPortEmailTemplate (Port_ID);
CREATE INDEX idxTemplateDevice ON tblPortEmailTemplate (Device_ID);

CREATE TABLE tblEventLog (
    Device_ID INTEGER,
    Port_ID INTEGER,
    Event_Icon INTEGER,
    Event_Date DATE,
    Event_Type TEXT(255),
    Event MEMO);
CREATE INDEX idxEventDate ON tblEventLog (Event_Date);
CREATE INDEX idxEventPort ON tblEventLog (Port_ID);
CREATE INDEX idxEventDevice ON tblEventLog (Device_ID);

CREATE TABLE tblMailQue (
    ID AUTO,
    Device_Name TEXT(255),
    Device_Port TEXT(255),
    Mail_To MEMO,
    Mail_Subject MEMO,
    Mail_Body MEMO);

CREATE TABLE tblTCPPorts (
    Port_Num INTEGER PRIMARY KEY,
    Port_Desc TEXT(255),
    Port_Type TEXT(255));

CREATE TABLE tblAgentAnnounce (
    Saying TEXT(255),
    Speach MEMO,
    PlayOrder INTEGER,
    Animation TEXT(255),
    Agent_X INTEGER,
    Agent_Y INTEGER);
CREATE INDEX idxAnnounceSaying ON tblAgentAnnounce (Saying);

CREATE TABLE tblScripts (
    Script_Event TEXT(255),
    Script MEMO);
CREATE INDEX idxScriptEvent ON tblScripts (Script_Event);
