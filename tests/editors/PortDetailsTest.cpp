#include "editors/frmPortDetails.h"
#include "tests/editors/EditorWorld.h"

using namespace Qt::StringLiterals;

class PortDetailsTest : public EditorWorld
{
protected:
    static QStringList history(Driver &form)
    {
        QStringList lines;
        auto &list = form.named<QTreeWidget>(u"lvListView"_s);
        for (int i = 0; i < list.topLevelItemCount(); ++i) {
            const QTreeWidgetItem *item = list.topLevelItem(i);
            lines << item->data(0, Qt::AccessibleDescriptionRole).toString().section(u':', 0, 0) + u'|'
                    + item->text(1) + u'|' + item->text(2)
                    + (item->icon(0).isNull() ? u"|none"_s : QString());
        }
        return lines;
    }
};

TEST_F(PortDetailsTest, CountersTimesAndHistory)
{
    world.sql(u"UPDATE tblPortStatus SET Port_Failure = 3, Port_Success = 1, Port_Status = 'Failed', "
              u"Ping_Min = 1.5,"
              " Ping_Max = 30, Ping_Avg = 12"_s);
    openWindow();
    const auto record = [&](int minute, const QString &type, const QString &event, int device, int port) {
        world.now.setTime(QTime(12, minute));
        WriteLog(event, type, device, port);
    };
    record(9, u"Recovered"_s, u"back"_s, net.web, net.port80);
    record(2, u"Failure"_s, u"gone"_s, net.web, net.port80);
    record(3, u"Failure"_s, u"other check"_s, net.web, net.ping);
    record(4, u"Message"_s, u"whole device"_s, net.web, 0);
    record(5, u"Message"_s, u"program"_s, 0, 0);
    select(NodeLevel::Port, net.portKey);
    drive("mnutvPortDetails", { [&](Driver &form) {
        EXPECT_EQ(form.texts("txtArray", 12).join(u'|'),
            u"web.example (Web Server)|80|test check|3|75.00%|1|25.00%|4|Failed|||"_s);
        for (int i = 0; i < 12; ++i)
            EXPECT_TRUE(form.at<QLineEdit>("txtArray", i).isReadOnly());
        EXPECT_EQ(history(form), QStringList({ u"icon 4|Failure|gone"_s, u"icon 3|Recovered|back"_s }));
        EXPECT_EQ(form.named<QTreeWidget>(u"lvListView"_s).topLevelItem(0)->text(0),
            GeneralDate(QDateTime(world.now.date(), QTime(12, 2))));
        form.press(0);
    } });
    frmPortDetails ping(recorded, keys::port(net.web, u"Ping"_s));
    EXPECT_EQ(Driver(ping).texts("txtArray", 12).mid(9).join(u'|'), u"1.5 ms|30 ms|12 ms"_s);
}

TEST_F(PortDetailsTest, ACheckThatNeverRan)
{
    frmPortDetails details(recorded, net.portKey);
    Driver form(details);
    EXPECT_EQ(form.texts("txtArray", 12).join(u'|'),
        u"web.example (Web Server)|80|test check|0||0||0|Not checked|||"_s);
    EXPECT_EQ(history(form), QStringList(u"|Message|No events found in event log.|none"_s));
}

TEST_F(PortDetailsTest, ErrorsEndTheProgramUnderTheirProcedure)
{
    failAccess(1);
    expectEnd(u"GetPortEvents"_s, [&] { frmPortDetails(recorded, net.portKey); });
    reopen();
    failAccess(0);
    expectEnd(u"Form_Load"_s, [&] { frmPortDetails(recorded, net.portKey); });
}
