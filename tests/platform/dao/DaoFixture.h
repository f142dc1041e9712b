#pragma once

#include "platform/dao/Dao.h"
#include "platform/dao/DateText.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

inline std::ostream &operator<<(std::ostream &out, const QString &text)
{
    return out << '"' << qPrintable(text) << '"';
}

/** A small database: two groups, three devices, five ports. */
class DaoFixture : public testing::Test
{
protected:
    void SetUp() override
    {
        dao::setDateLocale(QLocale(QLocale::English, QLocale::UnitedStates));
        static const Model model;
        ASSERT_TRUE(QFile::copy(model.folder.filePath(u"model.mdb"_s), path()));
        db = dao::OpenDatabase(path(), true);
    }

    QString path(const QString &name = u"test.mdb"_s) const { return m_folder.filePath(name); }

    static void create(const QString &file)
    {
        QFile schema(QStringLiteral(KAVRO_SCHEMA));
        ASSERT_TRUE(schema.open(QIODevice::ReadOnly));
        QString text;
        for (const QString &line : QString::fromUtf8(schema.readAll()).split(u'\n')) {
            if (!line.startsWith(u"--"_s))
                text += line + u'\n';
        }
        dao::CreateDatabase(file, text.trimmed().chopped(1).split(u";\n"_s));
    }

    /** Field names first, then one line per row. */
    static QString dump(dao::Recordset rs, bool withNames = false)
    {
        QStringList lines;
        if (withNames)
            lines.append(rs.FieldNames().join(u'|'));
        for (; !rs.Eof(); rs.MoveNext()) {
            QStringList cells;
            for (int i = 0; i < rs.FieldNames().size(); ++i)
                cells.append(rs.Field(i).isNull() ? u"Null"_s : rs.Field(i).text());
            lines.append(cells.join(u'|'));
        }
        return lines.join(u'\n');
    }
    QString rows(const QString &sql) { return dump(db->OpenRecordset(sql)); }
    long run(const QString &sql, int options = 0)
    {
        db->Execute(sql, options);
        return db->RecordsAffected();
    }
    /** The error number of whatever the body does, 0 when it does not fail; text receives its description. */
    template <class F>
    static long failure(F &&body, QString *text = nullptr)
    {
        try {
            body();
        } catch (const VbError &error) {
            if (text)
                *text = error.description();
            return error.number();
        }
        return 0;
    }

    std::unique_ptr<dao::Database> db;

private:
    /** Built once; every test works on a copy. */
    struct Model {
        Model()
        {
            create(folder.filePath(u"model.mdb"_s));
            const auto made = dao::OpenDatabase(folder.filePath(u"model.mdb"_s), true);
            for (const char16_t *sql : kRows)
                made->Execute(QString::fromUtf16(sql), dao::dbFailOnError);
            made->Close();
        }
        QTemporaryDir folder;
    };

    static constexpr const char16_t *kRows[] = {
        u"INSERT INTO tblGroup (Group_Label, Group_Desc) VALUES ('Servers', 'Main room')",
        u"INSERT INTO tblGroup (Group_Label, Group_Desc) VALUES ('office', '')",
        u"INSERT INTO tblDevices (Group_ID, Device_Name, Device_Alias, HTML_Output, MSAgent_Referr_Device) "
        u"VALUES (1, 'alpha.example', 'Zeta', True, False)",
        u"INSERT INTO tblDevices (Group_ID, Device_Name, Device_Icon) VALUES ('1', 'beta', 3)",
        u"INSERT INTO tblDevices (Group_ID, Device_Name, Device_Alias, Device_Icon, HTML_Output) VALUES (2, "
        u"'Gamma', 'alias', 12, -1)",
        u"INSERT INTO tblPortMain (Device_ID, Port_Num, Port_Type, Port_Email_Notify) VALUES (1, 'Ping', "
        u"'Port', True)",
        u"INSERT INTO tblPortMain (Device_ID, Port_Num, Port_Type, Port_Email_Notify) VALUES (1, '80', "
        u"'Port', True)",
        u"INSERT INTO tblPortMain (Device_ID, Port_Num, Port_Type) VALUES (1, 443, 'Port')",
        u"INSERT INTO tblPortMain (Device_ID, Port_Num, Port_Type, Port_Email_Notify) VALUES (2, 'Ping', "
        u"'Port', True)",
        u"INSERT INTO tblPortMain (Device_ID, Port_Num, Port_Type) VALUES (3, '21', 'Port')",
        u"INSERT INTO tblPortStatus (Port_ID, Device_ID) VALUES (1, 1)",
        u"INSERT INTO tblPortStatus (Port_ID, Device_ID, Port_Mode, Port_Icon, Port_Icon_Flag, "
        u"Port_Last_Error) VALUES (2, 1, -1, 7, -1, 'refused')",
        u"INSERT INTO tblPortStatus (Port_ID, Device_ID, Port_Mode, Port_Icon, Port_Icon_Flag) VALUES (3, 1, "
        u"2, 6, 1)",
        u"INSERT INTO tblPortStatus (Port_ID, Device_ID, Port_Mode, Port_Icon, Port_Icon_Flag) VALUES (4, 2, "
        u"1, 6, 1)",
        u"INSERT INTO tblPortStatus (Port_ID, Device_ID, Port_Icon) VALUES (5, 3, 13)",
        u"INSERT INTO tblPortEmailTemplate (Port_ID, Device_ID, Email_Address, Email_Subject) VALUES (2, 1, "
        u"'ops@example', 'web')",
        u"INSERT INTO tblEventLog (Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event) VALUES "
        u"('1', '2', '4', '1/31/2001 10:00:00 AM', 'Failure', 'web is down');",
        u"INSERT INTO tblEventLog (Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event) VALUES "
        u"('1', '2', '3', '2/1/2001 9:59:59 PM', 'Recovered', 'web is back');",
        u"INSERT INTO tblEventLog (Device_ID, Port_ID, Event_Icon, Event_Date, Event_Type, Event) VALUES "
        u"('0', '0', '2', '1/2/2001 1:00:00 AM', 'Message', 'hello');",
        u"INSERT INTO tblMailQue(Device_Name, Device_Port, Mail_To ,Mail_Subject ,Mail_Body) VALUES ( "
        u"'beta', 'Ping', 'a@b', 'down', 'line 1');",
        u"INSERT INTO tblMailQue(Device_Name, Device_Port, Mail_To ,Mail_Subject ,Mail_Body) VALUES ( "
        u"'alpha.example', '80', 'c@d', 'up', '');",
        u"INSERT INTO tblTCPPorts (Port_Desc, Port_Type, Port_Num) VALUES ('Web', 'TCP', 80);",
        u"INSERT INTO tblTCPPorts (Port_Desc, Port_Type, Port_Num) VALUES ('Ping', 'TCP', 0);",
        u"INSERT INTO tblTCPPorts (Port_Desc, Port_Type, Port_Num) VALUES ('Transfer', 'TCP', 21);",
        u"INSERT INTO tblAgentAnnounce (Saying, Speach, PlayOrder, Animation, Agent_X) VALUES ('Hi', 'two', "
        u"2, 'Wave', 5)",
        u"INSERT INTO tblAgentAnnounce (Saying, Speach, PlayOrder) VALUES ('hi', 'one', 1)",
        u"INSERT INTO tblScripts (Script_Event, Script) VALUES ('OnFailure', 'Sub Main' + ' : End Sub')",
    };

    QTemporaryDir m_folder;
};
