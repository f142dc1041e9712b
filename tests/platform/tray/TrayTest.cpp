#include "platform/tray/cKavroTray.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QStringList>
#include <QSystemTrayIcon>
#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 10'000; // ms

bool waitUntil(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(kPatience))
            return false;
        QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    }
    return true;
}

QIcon picture(const QColor &colour)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(colour);
    return QIcon(pixmap);
}

class TrayHost : public testing::Test
{
protected:
    TrayHost()
    {
        QObject::connect(&tray, &cKavroTray::Clicked, [this] { log += u"click"_s; });
        QObject::connect(&tray, &cKavroTray::DoubleClicked, [this] { log += u"double click"_s; });
        tray.SetPicture(picture(Qt::red));
        tray.SetTip(u"Kavro_2000 - Monitoring OFF."_s);
        tray.SetMenu(&menu);
        menu.addAction(u"Restore"_s);
    }
    ~TrayHost() override { stopHost(); }

    void startHost()
    {
        host.start(u"trayer"_s,
            { u"--edge"_s, u"bottom"_s, u"--align"_s, u"right"_s, u"--widthtype"_s, u"request"_s,
                u"--height"_s, u"32"_s });
        ASSERT_TRUE(host.waitForStarted());
        ASSERT_TRUE(waitUntil([this] { return tray.isAvailable(); }));
    }
    void stopHost()
    {
        host.terminate();
        host.waitForFinished();
        EXPECT_TRUE(waitUntil([this] { return !tray.isAvailable(); }));
    }

    QRect place() const { return tray.findChild<QSystemTrayIcon *>()->geometry(); }
    QColor colourOnScreen() const
    {
        const QImage screen = QApplication::primaryScreen()->grabWindow(0).toImage();
        const QPoint middle = place().center();
        return screen.rect().contains(middle) ? screen.pixelColor(middle) : QColor();
    }
    void click(const QStringList &how)
    {
        const QPoint at = place().center();
        QStringList arguments
            = { u"mousemove"_s, QString::number(at.x()), QString::number(at.y()), u"click"_s };
        ASSERT_EQ(QProcess::execute(u"xdotool"_s, arguments + how), 0);
    }

    QMenu menu;
    cKavroTray tray;
    QProcess host;
    QStringList log;
};

} // namespace

TEST(TrayWithoutHost, NothingBreaks)
{
    QMenu menu;
    cKavroTray tray;
    EXPECT_FALSE(tray.isAvailable());
    tray.SetPicture(picture(Qt::green));
    tray.SetTip(u"Kavro_2000 - 0 problems detected."_s);
    tray.SetMenu(&menu);
    tray.Show();
    tray.SetTip(u"Kavro_2000 - 1 problems detected."_s);
    EXPECT_EQ(tray.Tip(), u"Kavro_2000 - 1 problems detected."_s);
    EXPECT_FALSE(tray.isAvailable());
    tray.Hide();
}

TEST_F(TrayHost, ShowsPictureClicksAndMenu)
{
    startHost();
    tray.Show();
    ASSERT_TRUE(waitUntil([this] { return colourOnScreen() == QColor(Qt::red); }));
    tray.SetPicture(picture(Qt::blue));
    EXPECT_TRUE(waitUntil([this] { return colourOnScreen() == QColor(Qt::blue); }));

    click({ u"1"_s });
    EXPECT_TRUE(waitUntil([this] { return log == QStringList { u"click"_s }; }));
    click({ u"3"_s });
    EXPECT_TRUE(waitUntil([this] { return menu.isVisible(); }));
    menu.close();

    log.clear();
    click({ u"--repeat"_s, u"2"_s, u"--delay"_s, u"60"_s, u"1"_s });
    EXPECT_TRUE(waitUntil([this] { return log.contains(u"double click"_s); }));
    EXPECT_EQ(log.first(), u"click"_s);

    tray.Hide();
    EXPECT_TRUE(waitUntil([this] { return colourOnScreen() != QColor(Qt::blue); }));
}

TEST_F(TrayHost, DocksWhenTheHostComesLaterOrAgain)
{
    tray.Show();
    EXPECT_FALSE(tray.isAvailable());
    startHost();
    EXPECT_TRUE(waitUntil([this] { return colourOnScreen() == QColor(Qt::red); }));
    stopHost();
    startHost();
    EXPECT_TRUE(waitUntil([this] { return colourOnScreen() == QColor(Qt::red); }));
}
