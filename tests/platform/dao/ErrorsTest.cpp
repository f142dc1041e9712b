#include "DaoFixture.h"

namespace {

struct ErrorRow {
    const char *name;
    const char16_t *sql;
    long number;
    const char16_t *text; // null: the number is enough
};

constexpr ErrorRow kErrors[] = {
    {"Nothing", u"", 3129, nullptr},
    {"UnknownVerb", u"PRAGMA user_version = 5", 3129,
     u"Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'."},
    {"Attach", u"ATTACH 'x' AS y", 3129, nullptr},
    {"Definition", u"DROP TABLE tblGroup", 3129, nullptr},
    {"SecondStatement", u"DELETE * FROM tblMailQue WHERE ID = 9; DELETE * FROM tblGroup", 3142,
     u"Characters found after end of SQL statement."},
    {"SelectListEmpty", u"SELECT FROM tblGroup", 3141, nullptr},
    {"SelectListComma", u"SELECT Group_ID, FROM tblGroup", 3141, nullptr},
    {"SelectWithoutFrom", u"SELECT *", 3141, nullptr},
    {"Distinct", u"SELECT DISTINCT Group_Icon FROM tblGroup", 3141, nullptr},
    {"FromEmpty", u"SELECT * FROM", 3131, u"Syntax error in FROM clause."},
    {"FromGroupBy", u"SELECT * FROM tblGroup GROUP BY Group_ID", 3131, nullptr},
    {"JoinHalf", u"SELECT * FROM tblGroup INNER tblDevices", 3135, u"Syntax error in JOIN operation."},
    {"JoinWithoutOn", u"SELECT * FROM tblGroup INNER JOIN tblDevices", 3135, nullptr},
    {"JoinOpen", u"SELECT * FROM (tblGroup LEFT JOIN tblDevices ON tblGroup.Group_ID = tblDevices.Group_ID",
     3135, nullptr},
    {"JoinStranger",
     u"SELECT * FROM tblMailQue, tblGroup LEFT JOIN tblDevices ON tblGroup.Group_ID = tblMailQue.ID", 3080,
     nullptr},
    {"JoinOnMemo",
     u"SELECT * FROM tblEventLog INNER JOIN tblScripts ON tblEventLog.Event = tblScripts.Script", 3118,
     nullptr},
    {"JoinOnSomethingElse", u"SELECT * FROM tblGroup LEFT JOIN tblDevices ON tblGroup.Group_ID IS NULL", 3296,
     nullptr},
    {"InnerInsideOuter",
     u"SELECT * FROM tblGroup LEFT JOIN(tblDevices INNER JOIN tblPortMain ON tblDevices.Device_ID = "
     u"tblPortMain.Device_ID) ON tblGroup.Group_ID = tblDevices.Group_ID",
     3258, nullptr},
    {"OrderHalf", u"SELECT * FROM tblGroup ORDER Group_ID", 3138, u"Syntax error in ORDER BY clause."},
    {"OrderEmpty", u"SELECT * FROM tblGroup ORDER BY", 3138, nullptr},
    {"OrderByMemo", u"SELECT * FROM tblScripts ORDER BY Script", 3117, nullptr},
    {"WhereEmpty", u"SELECT * FROM tblGroup WHERE", 3145, nullptr},
    {"UpdateWithoutSet", u"UPDATE tblGroup Group_Icon = 1", 3144, u"Syntax error in UPDATE statement."},
    {"UpdateComparing", u"UPDATE tblGroup SET Group_Icon > 1", 3144, nullptr},
    {"DeleteWithoutFrom", u"DELETE *", 3130, u"Syntax error in DELETE statement."},
    {"DeleteUnnamed", u"DELETE * FROM tblGroup, tblDevices", 3128, nullptr},
    {"InsertWithoutValues", u"INSERT INTO tblGroup (Group_Label)", 3134,
     u"Syntax error in INSERT INTO statement."},
    {"InsertSelect", u"INSERT INTO tblGroup (Group_Label) SELECT Group_Label FROM tblGroup", 3134, nullptr},
    {"InsertTooFew", u"INSERT INTO tblGroup (Group_Label, Group_Desc) VALUES ('a')", 3346, nullptr},
    {"InsertUnknownColumn", u"INSERT INTO tblGroup (Label) VALUES ('a')", 3127,
     u"The INSERT INTO statement contains the following unknown field name: 'Label'. Make sure you have "
     u"typed the name correctly, and try the operation again."},
    {"OneUnknownName", u"SELECT * FROM tblGroup WHERE Groupid = 1", 3061, u"Too few parameters. Expected 1."},
    {"TwoUnknownNames", u"DELETE * FROM tblGroup WHERE a = 1 OR b > 2 OR A = 3", 3061,
     u"Too few parameters. Expected 2."},
    {"BareWordAgainstNumber", u"SELECT * FROM tblGroup WHERE Group_ID = Ping", 3061, nullptr},
    {"UnknownTargetColumn", u"UPDATE tblGroup SET Groupid = 1", 3061, nullptr},
    {"UnknownTable", u"SELECT * FROM tblNone", 3078,
     u"The Microsoft Jet database engine cannot find the input table or query 'tblNone'. Make sure it exists "
     u"and that its name is spelled correctly."},
    {"EngineTable", u"SELECT * FROM sqlite_master", 3078, nullptr},
    {"TwoMeanings", u"SELECT Device_ID FROM tblDevices, tblPortMain", 3079, nullptr},
    {"SameTableTwice", u"SELECT * FROM tblGroup, tblGroup", 3074, nullptr},
    {"AliasTwice", u"SELECT Group_ID AS x, Group_Desc AS X FROM tblGroup", 3062, nullptr},
    {"TextWithNumber", u"SELECT * FROM tblGroup WHERE Group_ID = 'a'", 3464,
     u"Data type mismatch in criteria expression."},
    {"TextWithDate", u"SELECT * FROM tblEventLog WHERE Event_Date < '1/1/2001'", 3464, nullptr},
    {"Function", u"SELECT Count(*) FROM tblGroup", 3085, nullptr},
    {"Subquery", u"SELECT * FROM tblGroup WHERE Group_ID IN (SELECT 1 FROM tblGroup)", 3075, nullptr},
    {"AutoNumber", u"UPDATE tblGroup SET Group_ID = 5", 3113, nullptr},
    {"SelectExecuted", u"SELECT * FROM tblGroup", 3065, u"Can't execute a select query."},
    {"ReadOnlyUpdate", u"UPDATE tblGroup, tblDevices SET Group_Desc = 'a'", 3073, nullptr},
    {"OpenBracket", u"SELECT [Group_ID FROM tblGroup", 3126, nullptr},
    {"DateUnreadable", u"DELETE * FROM tblEventLog WHERE Event_Date < #31.31.2001#", 3075,
     u"Syntax error in date in query expression '#31.31.2001#'."},
    {"DateOpen", u"DELETE * FROM tblEventLog WHERE Event_Date < #1/1/2001", 3075,
     u"Syntax error in date in query expression 'Event_Date < #1/1/2001'."},
    {"ValueMissing", u"DELETE * FROM tblGroup WHERE Group_ID = ", 3075,
     u"Syntax error (missing operator) in query expression 'Group_ID ='."},
    {"ApostropheInCondition", u"SELECT * FROM tblDevices WHERE Device_Name = 'O'Brien'", 3075,
     u"Syntax error (missing operator) in query expression 'Device_Name = 'O'Brien''."},
    {"ApostropheAtEnd", u"SELECT * FROM tblDevices WHERE Device_Name = 'O''", 3075,
     u"Syntax error in string in query expression 'Device_Name = 'O'''."},
    {"ApostropheInValues", u"INSERT INTO tblGroup (Group_Label, Group_Desc) VALUES ('a', 'O'Brien', 'b');",
     3075, u"Syntax error (missing operator) in query expression ''O'Brien', 'b''."},
    {"ApostropheInSet", u"UPDATE tblGroup SET Group_Label = 'O'Brien', Group_Desc = '' WHERE Group_ID = 1",
     3075,
     u"Syntax error (missing operator) in query expression ''O'Brien', Group_Desc = '' WHERE Group_ID = 1'."},
    {"ApostropheClosesStatement",
     u"SELECT * FROM tblDevices WHERE Device_Name = 'x'; DELETE * FROM tblGroup WHERE 'a' = 'a'", 3142,
     nullptr},
    {"TooDeep", nullptr, 3360, u"Query is too complex."},
};

class Errors : public DaoFixture, public testing::WithParamInterface<ErrorRow>
{
protected:
    static QString statement(const ErrorRow &row)
    {
        const QString brackets(2000, u'(');
        return row.sql ? QString::fromUtf16(row.sql) : u"SELECT * FROM tblGroup WHERE "_s + brackets;
    }
};

TEST_P(Errors, BearTheNumberAndChangeNothing)
{
    const ErrorRow &row = GetParam();
    const QString sql = statement(row);
    const QString before = rows(u"tblGroup"_s) + rows(u"tblEventLog"_s);
    QString text;
    EXPECT_EQ(failure([&] { db->Execute(sql); }, &text), row.number) << text;
    if (row.text) {
        EXPECT_EQ(text, QString::fromUtf16(row.text));
    }
    ASSERT_EQ(dao::Errors().size(), 1);
    EXPECT_EQ(dao::Errors().constFirst().number, row.number);
    EXPECT_EQ(dao::Errors().constFirst().description, text);
    EXPECT_EQ(dao::Errors().constFirst().source, u"DAO.Database"_s);
    EXPECT_EQ(rows(u"tblGroup"_s) + rows(u"tblEventLog"_s), before);
}

INSTANTIATE_TEST_SUITE_P(Dao, Errors, testing::ValuesIn(kErrors),
                         [](const auto &row) { return row.param.name; });

struct StrictRow {
    const char16_t *sql;
    long number;
};

/** What fails row by row: an error with dbFailOnError, and a skipped row or Null without it. */
constexpr StrictRow kStrict[] = {
    {u"INSERT INTO tblTCPPorts (Port_Num) VALUES (80)", 3022},
    {u"INSERT INTO tblTCPPorts (Port_Desc) VALUES ('no number')", 3058},
    {u"UPDATE tblTCPPorts SET Port_Num = 21 WHERE Port_Num > 21", 3022},
    {u"UPDATE tblPortStatus SET Port_Success = 'many'", 3421},
    {u"UPDATE tblPortStatus SET Port_Success = 3000000000", 3349},
    {u"UPDATE tblPortStatus SET Port_Success = Port_ID * 3000000000", 3349},
    {u"UPDATE tblEventLog SET Event_Date = 'yesterday'", 3421},
};

using RowFailures = DaoFixture;

TEST_F(RowFailures, AreRaisedOnlyOnDemand)
{
    for (const StrictRow &row : kStrict) {
        const QString sql = QString::fromUtf16(row.sql);
        EXPECT_EQ(failure([&] { run(sql, dao::dbFailOnError); }), row.number) << sql;
        EXPECT_EQ(db->RecordsAffected(), 0) << sql;
        EXPECT_EQ(failure([&] { run(sql); }), 0) << sql;
        EXPECT_TRUE(dao::Errors().isEmpty()) << sql;
    }
    EXPECT_EQ(rows(u"SELECT Port_Num FROM tblTCPPorts ORDER BY Port_Num"_s), u"0\n21\n80"_s);
    EXPECT_EQ(rows(u"SELECT Port_ID FROM tblPortStatus WHERE Port_Success IS NOT NULL"_s), QString());
    EXPECT_EQ(rows(u"SELECT Event FROM tblEventLog WHERE Event_Date IS NOT NULL"_s), QString());
}

TEST_F(RowFailures, OfTooLongTextsLeaveTheRowAlone)
{
    const QString sql
        = u"UPDATE tblGroup SET Group_Label = '%1' WHERE Group_ID = 1"_s.arg(QString(256, u'x'));
    EXPECT_EQ(failure([&] { run(sql, dao::dbFailOnError); }), 3163);
    EXPECT_EQ(run(sql), 0);
    EXPECT_EQ(run(u"UPDATE tblGroup SET Group_Label = '%1' WHERE Group_ID = 1"_s.arg(QString(255, u'x'))), 1);
    EXPECT_EQ(run(u"UPDATE tblScripts SET Script = '%1'"_s.arg(QString(100'000, u'x'))), 1);
}

TEST_F(RowFailures, UndoTheirWholeStatement)
{
    const QString before = rows(u"tblTCPPorts"_s);
    run(u"UPDATE tblGroup SET Group_Desc = 'kept'"_s);
    EXPECT_EQ(failure([&] { run(u"UPDATE tblTCPPorts SET Port_Num = 7"_s, dao::dbFailOnError); }), 3022);
    EXPECT_EQ(rows(u"tblTCPPorts"_s), before);
    EXPECT_EQ(rows(u"SELECT Group_Desc FROM tblGroup"_s), u"kept\nkept"_s);
    EXPECT_EQ(run(u"UPDATE tblTCPPorts SET Port_Num = 7"_s), 1) << "without the option the first row is done";
}

using AccessHooks = DaoFixture;

TEST_F(AccessHooks, FailAnAccessBeforeItBegins)
{
    auto rs = db->OpenRecordset(u"tblGroup"_s);
    int left = 0;
    dao::SetAccessHook([&left] {
        if (left-- == 0)
            throw VbError(3043, u"Disk or network error."_s);
    });
    const auto failsOnce = [&](auto &&access) {
        left = 0;
        EXPECT_EQ(failure(access), 3043);
        EXPECT_EQ(dao::Errors().size(), 1);
        EXPECT_EQ(failure(access), 0);
    };
    failsOnce([&] { db->Execute(u"UPDATE tblGroup SET Group_Desc = 'x'"_s); });
    failsOnce([&] { db->OpenRecordset(u"tblGroup"_s); });
    rs.Edit();
    rs.Set(u"Group_Desc"_s, u"y"_s);
    failsOnce([&] { rs.Update(); });
    failsOnce([&] { rs.Requery(); });
    failsOnce([&] { rs.Delete(); });
    dao::SetAccessHook({});
    EXPECT_EQ(rows(u"SELECT Group_Desc FROM tblGroup"_s), u"x"_s);
}

} // namespace
