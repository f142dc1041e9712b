#include "platform/dao/Collation.h"
#include "platform/dao/Like.h"

#include "DaoFixture.h"

namespace {

TEST(LikePatterns, Match)
{
    struct Row {
        const char16_t *text;
        const char16_t *pattern;
        bool matches;
    };
    const Row rows[] = {
        {u"Ping", u"ping", true},  {u"80", u"80", true},
        {u"8080", u"80", false},   {u"8080", u"80*", true},
        {u"8080", u"*80", true},   {u"8080", u"*08*", true},
        {u"8080", u"*", true},     {u"", u"*", true},
        {u"", u"?", false},        {u"a1", u"?#", true},
        {u"aa", u"?#", false},     {u"b", u"[abc]", true},
        {u"B", u"[a-c]", true},    {u"d", u"[a-c]", false},
        {u"d", u"[!a-c]", true},   {u"-", u"[a-]", true},
        {u"-", u"[-a]", true},     {u"*", u"[*]", true},
        {u"x", u"[*]", false},     {u"a]", u"a]", true},
        {u"ab", u"a[]b", true},    {u"100%", u"100%", true},
        {u"1000", u"100%", false}, {u"a_b", u"a?b", true},
        {u"ab", u"a_", false},     {u"[", u"[", true},
        {u"ÄRGER", u"ärg*", true}, {u"aaaaaaaaaaaaaaaaaaaab", u"*a*a*a*a*a*a*c", false},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(dao::likeMatches(QStringView(row.text), QStringView(row.pattern)), row.matches)
            << QString::fromUtf16(row.text) << " like " << QString::fromUtf16(row.pattern);
    }
}

TEST(TextOrder, PutsPunctuationThenDigitsThenLetters)
{
    const QStringList ordered
        = {u""_s,     u" a"_s,   u"-1"_s, u"_x"_s, u"110"_s, u"21"_s,    u"443"_s, u"80"_s,
           u"8080"_s, u"a"_s,    u"Á"_s,  u"ab"_s, u"Äb"_s,  u"apfel"_s, u"B"_s,   u"o"_s,
           u"Öl"_s,   u"Ping"_s, u"Z"_s,  u"Ω"_s,  u"я"_s,   u"中"_s,    u"中文"_s};
    for (qsizetype i = 0; i < ordered.size(); ++i) {
        for (qsizetype k = 0; k < ordered.size(); ++k) {
            const int order = dao::compareText(ordered[i], ordered[k]);
            EXPECT_EQ(order < 0, i < k) << ordered[i] << ' ' << ordered[k];
            EXPECT_EQ(order > 0, i > k) << ordered[i] << ' ' << ordered[k];
        }
    }
    EXPECT_EQ(dao::compareText(u"PING", u"ping"), 0);
    EXPECT_EQ(dao::compareText(u"ÄPFEL я", u"äpfel Я"), 0);
    EXPECT_NE(dao::compareText(u"Apfel", u"Äpfel"), 0);
}

using TextColumns = DaoFixture;

TEST_F(TextColumns, CompareAndSortAlikeWithAndWithoutIndex)
{
    run(u"DELETE * FROM tblGroup"_s);
    for (const QString &label :
         {u"Zoë"_s, u"zoe"_s, u"ZOË 2"_s, u"10"_s, u"9"_s, u"-"_s, u"ärger"_s, u"Arges"_s})
        run(u"INSERT INTO tblGroup (Group_Label, Group_Desc) VALUES ('%1', '%1')"_s.arg(label));
    const QString ordered = u"-\n10\n9\närger\nArges\nzoe\nZoë\nZOË 2"_s;
    EXPECT_EQ(rows(u"SELECT Group_Label FROM tblGroup ORDER BY Group_Label"_s), ordered);
    EXPECT_EQ(rows(u"SELECT Group_Desc FROM tblGroup ORDER BY Group_Desc"_s), ordered);
    for (const QString &column : {u"Group_Label"_s, u"Group_Desc"_s}) {
        const QString from = u"SELECT Group_Label FROM tblGroup WHERE "_s;
        EXPECT_EQ(rows(from + column + u" = 'ZOË'"_s), u"Zoë"_s);
        EXPECT_EQ(rows(from + u"'ÄRGER' = "_s + column), u"ärger"_s);
        EXPECT_EQ(rows(from + column + u" > 'arges' AND "_s + column + u" < 'ZOË' ORDER BY Group_Label"_s),
                  u"zoe"_s);
        EXPECT_EQ(rows(from + column + u" & '' = 'ZOE'"_s), u"zoe"_s);
        EXPECT_EQ(rows(from + column + u" NOT LIKE '*o*' AND "_s + column
                       + u" LIKE '[!0-9-]*' ORDER BY Group_Label"_s),
                  u"ärger\nArges"_s);
    }
    EXPECT_EQ(rows(u"SELECT Group_Label FROM tblGroup WHERE Group_ID LIKE '1?'"_s), u"Arges"_s);
}

TEST_F(TextColumns, KeepEveryCharacter)
{
    const QString odd = u"tab\t line\r\n quote\" percent% back\\ nul"_s + QChar(0) + u" emoji 😀 end "_s;
    auto rs = db->OpenRecordset(u"tblScripts"_s);
    rs.Edit();
    rs.Set(u"Script"_s, odd);
    rs.Update();
    EXPECT_EQ(db->OpenRecordset(u"tblScripts"_s).Field(u"Script"_s).text(), odd);
}

TEST(Values, Convert)
{
    using dao::Value;
    const auto failureOf = [](auto &&body) {
        try {
            body();
        } catch (const VbError &error) {
            return error.number();
        }
        return 0L;
    };
    EXPECT_EQ(Value(2.5).integer(), 2);
    EXPECT_EQ(Value(3.5).integer(), 4);
    EXPECT_EQ(Value(u" 12 "_s).integer(), 12);
    EXPECT_EQ(Value(true).integer(), -1);
    EXPECT_EQ(Value(-1).text(), u"-1"_s);
    EXPECT_EQ(Value(0.1).text(), u"0.1"_s);
    EXPECT_EQ(Value(true).text(), u"True"_s);
    EXPECT_EQ(Value().text(), QString());
    EXPECT_TRUE(Value(u"true"_s).boolean());
    EXPECT_TRUE(Value(u"-1"_s).boolean());
    EXPECT_FALSE(Value(u"False"_s).boolean());
    EXPECT_FALSE(Value().dateTime().isValid());
    EXPECT_EQ(Value(2.5).dateTime(), QDateTime(QDate(1900, 1, 1), QTime(12, 0)));
    EXPECT_EQ(failureOf([] { Value().integer(); }), 94);
    EXPECT_EQ(failureOf([] { Value().boolean(); }), 94);
    EXPECT_EQ(failureOf([] { Value(QString()).integer(); }), 13);
    EXPECT_EQ(failureOf([] { Value(u"nan"_s).number(); }), 13);
    EXPECT_EQ(failureOf([] { Value(u"80x"_s).number(); }), 13);
    EXPECT_EQ(failureOf([] { Value(u"maybe"_s).boolean(); }), 13);
    EXPECT_EQ(failureOf([] { Value(u"never"_s).dateTime(); }), 13);
    EXPECT_EQ(failureOf([] { Value(1e300).integer(); }), 6);
}

} // namespace
