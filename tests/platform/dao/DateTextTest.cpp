#include "DaoFixture.h"

namespace {

QDateTime at(int y, int mo, int d, int h = 0, int mi = 0, int s = 0)
{
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s));
}

class Dates : public testing::Test
{
protected:
    ~Dates() override { dao::setDateLocale(QLocale::system()); }
};

TEST_F(Dates, AreOleDayNumbers)
{
    struct Row {
        QDateTime when;
        double days;
    };
    for (const Row &row :
         {Row {at(1899, 12, 30), 0}, Row {at(1900, 1, 1, 12), 2.5}, Row {at(1899, 12, 29, 6), -1.25},
          Row {at(2001, 1, 31, 18), 36922.75}, Row {at(9999, 12, 31), 2958465}}) {
        EXPECT_DOUBLE_EQ(dao::toOleDate(row.when), row.days);
        EXPECT_EQ(dao::fromOleDate(row.days), row.when) << row.days;
    }
    for (int second = 0; second < 86400; second += 7) {
        const QDateTime when(QDate(2024, 2, 29), QTime(0, 0).addSecs(second));
        ASSERT_EQ(dao::fromOleDate(dao::toOleDate(when)), when);
    }
}

TEST_F(Dates, RoundTripInEveryLocale)
{
    const QList<QDateTime> instants
        = {at(2001, 2, 1, 1, 2, 3), at(2001, 1, 31, 12, 0, 0), at(2024, 2, 29, 0, 0, 0),
           at(2031, 11, 12, 23, 59, 59), at(1999, 12, 11, 10, 9, 8)};
    for (const QLocale &locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        dao::setDateLocale(locale);
        for (const QDateTime &when : instants) {
            const QString text = dao::generalDateText(when);
            ASSERT_FALSE(text.contains(u'#')) << locale.name();
            ASSERT_EQ(dao::parseGeneralDate(text), when) << locale.name() << ' ' << text;
            ASSERT_EQ(dao::parseDateLiteral(text), when) << locale.name() << ' ' << text;
            QString slashed = text;
            slashed.replace(u'.', u'/');
            ASSERT_EQ(dao::parseDateLiteral(slashed), when) << locale.name() << ' ' << slashed;
        }
    }
}

TEST_F(Dates, AreWrittenInTheLocale)
{
    struct Row {
        QLocale locale;
        const char16_t *text;
    };
    const QDateTime when = at(2001, 2, 1, 22, 5, 9);
    for (const Row &row :
         {Row {QLocale(u"en_US"_s), u"2/1/2001 10:05:09 PM"},
          Row {QLocale(u"de_DE"_s), u"01.02.2001 22:05:09"},
          Row {QLocale(u"en_GB"_s), u"01/02/2001 22:05:09"}, Row {QLocale::c(), u"1 Feb 2001 22:05:09"}}) {
        dao::setDateLocale(row.locale);
        EXPECT_EQ(dao::generalDateText(when), QString::fromUtf16(row.text)) << row.locale.name();
    }
}

TEST_F(Dates, InLiteralsPutTheMonthFirst)
{
    struct Row {
        const char16_t *text;
        QDateTime when; // invalid: unreadable
    };
    const Row rows[] = {
        {u"1/31/2001", at(2001, 1, 31)},
        {u"31/1/2001", at(2001, 1, 31)},
        {u"2/1/2001", at(2001, 2, 1)},
        {u"1/31/2001 10:00:00 AM", at(2001, 1, 31, 10)},
        {u"1-31-01 22:15", at(2001, 1, 31, 22, 15)},
        {u"2001-01-31", at(2001, 1, 31)},
        {u"2001/1/31 12:30:15 am", at(2001, 1, 31, 0, 30, 15)},
        {u"31 Jan 2001", at(2001, 1, 31)},
        {u"January 31, 2001 1 PM", at(2001, 1, 31, 13)},
        {u"1/1/30", at(1930, 1, 1)},
        {u"1/1/29", at(2029, 1, 1)},
        {u"13:45", at(1899, 12, 30, 13, 45)},
        {u"", {}},
        {u"soon", {}},
        {u"31.1.2001", {}},
        {u"2/30/2001", {}},
        {u"1/2/3/4", {}},
        {u"1/1/2001 25:00", {}},
        {u"1/1/2001 13:00 PM", {}},
        {u"1/1/99999999999", {}},
    };
    for (const QLocale &locale : {QLocale(u"en_US"_s), QLocale(u"en_GB"_s), QLocale::c()}) {
        dao::setDateLocale(locale);
        for (const Row &row : rows) {
            const auto when = dao::parseDateLiteral(QString::fromUtf16(row.text));
            EXPECT_EQ(when.value_or(QDateTime()), row.when)
                << locale.name() << ' ' << QString::fromUtf16(row.text);
        }
    }
}

TEST_F(Dates, InTextsFollowTheLocale)
{
    struct Row {
        const char16_t *locale;
        const char16_t *text;
        QDateTime when;
    };
    for (const Row &row :
         {Row {u"en_GB", u"2/1/2001", at(2001, 1, 2)}, Row {u"en_US", u"2/1/2001", at(2001, 2, 1)},
          Row {u"de_DE", u"1.2.2001 9:05", at(2001, 2, 1, 9, 5)},
          Row {u"de_DE", u"09:05:01", at(1899, 12, 30, 9, 5, 1)},
          Row {u"de_DE", u"2001-02-01", at(2001, 2, 1)}, Row {u"de_DE", u"", {}}, Row {u"de_DE", u"x", {}}}) {
        dao::setDateLocale(QLocale(QString::fromUtf16(row.locale)));
        EXPECT_EQ(dao::parseGeneralDate(QString::fromUtf16(row.text)).value_or(QDateTime()), row.when)
            << QString::fromUtf16(row.text);
    }
}

struct ExpiryRow {
    const char *name;
    const char16_t *locale;
};

class Expiry : public DaoFixture, public testing::WithParamInterface<ExpiryRow>
{
    void TearDown() override { dao::setDateLocale(QLocale::system()); }
};

/** The way a date goes through the program: quoted on writing, between # with slashes for dots on deleting.
 */
TEST_P(Expiry, TakesExactlyWhatIsOlder)
{
    dao::setDateLocale(QLocale(QString::fromUtf16(GetParam().locale)));
    run(u"DELETE * FROM tblEventLog"_s);
    const QDateTime limit = at(2001, 2, 3, 4, 5, 6);
    for (const int seconds : {-86400 * 28, -1, 0, 1, 86400 * 28}) {
        run(u"INSERT INTO tblEventLog (Event_Date, Event_Icon) VALUES ('%1', '%2');"_s
                .arg(dao::generalDateText(limit.addSecs(seconds)))
                .arg(seconds));
    }
    const QString text = dao::generalDateText(limit).replace(u'.', u'/');
    EXPECT_EQ(run(u"DELETE * FROM tblEventLog WHERE Event_Date < #"_s + text + u'#'), 2) << text;
    EXPECT_EQ(rows(u"SELECT Event_Icon FROM tblEventLog ORDER BY Event_Date"_s), u"0\n1\n2419200"_s);
}

constexpr ExpiryRow kLocales[] = {{"C", u"C"},          {"American", u"en_US"}, {"British", u"en_GB"},
                                  {"German", u"de_DE"}, {"Finnish", u"fi_FI"},  {"Japanese", u"ja_JP"},
                                  {"Danish", u"da_DK"}, {"Mexican", u"es_MX"},  {"Hungarian", u"hu_HU"}};
INSTANTIATE_TEST_SUITE_P(Dao, Expiry, testing::ValuesIn(kLocales),
                         [](const auto &row) { return row.param.name; });

} // namespace
