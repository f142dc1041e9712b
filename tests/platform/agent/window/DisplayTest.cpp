#include "platform/agent/window/AgentControl.h"
#include "platform/agent/window/Balloon.h"
#include "platform/agent/window/CharacterWindow.h"
#include "platform/agent/window/Pulse.h"
#include "tests/world/NetTest.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QScreen>
#include <QTimer>
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;
using namespace agent;

namespace {

/** The machine's time, which a test can put forward. */
class HastyPulse : public SystemPulse
{
public:
    qint64 now() const override { return SystemPulse::now() + m_ahead; }
    void wakeAt(qint64 due) override
    {
        m_due = due;
        SystemPulse::wakeAt(due);
    }
    void jump(qint64 ms)
    {
        m_ahead += ms;
        wakeAt(m_due);
    }

private:
    qint64 m_ahead = 0;
    qint64 m_due = kNever;
};

void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

bool waitUntil(const std::function<bool()> &condition, int patience = 20'000)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && !timer.hasExpired(patience))
        wait(10);
    return condition();
}

QImage screenshot() { return QApplication::primaryScreen()->grabWindow(0).toImage(); }

/** The part of one core that the process takes while it waits, in percent. */
double load(int ms, const char *what)
{
    const double before = workedMs();
    wait(ms);
    const double percent = 100.0 * (workedMs() - before) / ms;
    std::printf("[ measured ] %s: %.2f %% of a core\n", what, percent);
    return percent;
}

template <typename Widget>
Widget *widgetOf()
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (auto *found = qobject_cast<Widget *>(widget))
            return found;
    return nullptr;
}

class OnDisplay : public testing::Test
{
protected:
    OnDisplay()
    {
        ground.setPalette(QPalette(kGround));
        ground.setGeometry(QApplication::primaryScreen()->geometry());
        ground.show();
        Engines engines = Engines::ofMachine();
        engines.pulse = [this] {
            auto made = std::make_unique<HastyPulse>();
            pulse = made.get();
            return made;
        };
        control = std::make_unique<AgentControl>(QString(), engines);
        merlin = &control->Load(u"merlin"_s, QStringLiteral(KAVRO_CHARACTER));
    }
    void perform(const RequestPtr &last)
    {
        EXPECT_TRUE(waitUntil([&last] {
            return last->status != Request::Status::Pending && last->status != Request::Status::InProgress;
        }));
        EXPECT_EQ(last->status, Request::Status::Complete);
    }

    static constexpr QColor kGround { 0xe0, 0x40, 0xa0 };
    QWidget ground;
    HastyPulse *pulse = nullptr;
    std::unique_ptr<AgentControl> control;
    Character *merlin = nullptr;
};

} // namespace

TEST_F(OnDisplay, WithoutACompositorTheWindowHasTheFiguresShape)
{
    EXPECT_FALSE(screenComposites());
    merlin->MoveTo(200, 200, 0);
    merlin->Show(true);
    perform(merlin->Speak(u"ho"_s));
    wait(700);
    const QImage screen = screenshot();
    const QImage &figure = widgetOf<CharacterWindow>()->picture();
    const Balloon *balloon = widgetOf<Balloon>();
    int outside = 0, inside = 0, wrong = 0;
    for (int y = balloon->geometry().bottom() + 1 - 200; y < figure.height(); ++y) {
        for (int x = 0; x < figure.width(); ++x) {
            const int alpha = qAlpha(figure.pixel(x, y));
            const QColor shown = screen.pixelColor(200 + x, 200 + y);
            outside += alpha == 0;
            inside += alpha == 255;
            wrong += (alpha < 100 && shown != kGround) || (alpha == 255 && shown != figure.pixelColor(x, y));
        }
    }
    EXPECT_GT(outside, 5000);
    EXPECT_GT(inside, 5000);
    EXPECT_EQ(wrong, 0);

    ASSERT_TRUE(balloon->isVisible());
    EXPECT_EQ(screen.pixelColor(balloon->pos() + QPoint(1, 1)), kGround);
    EXPECT_EQ(screen.pixelColor(balloon->place().body.center().x(), balloon->place().body.top() + 4),
        balloon->picture().pixelColor(balloon->place().body.center().x() - balloon->x(),
            4 + balloon->place().body.top() - balloon->y()));
}

TEST_F(OnDisplay, TheMenuOpensUnderTheHandAndTakesKeys)
{
    merlin->commands().add({ u"Status"_s, u"Monitoring &Status"_s, {} });
    QStringList chosen;
    QObject::connect(control.get(), &Control::commandChosen, control.get(),
        [&chosen](const UserInput &input) { chosen += input.name; });
    merlin->MoveTo(200, 200, 0);
    perform(merlin->Show(true));
    wait(200);
    QProcess::startDetached(u"xdotool"_s, { u"mousemove"_s, u"280"_s, u"300"_s, u"click"_s, u"3"_s });
    ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    wait(200);
    QProcess::startDetached(u"xdotool"_s, { u"key"_s, u"s"_s });
    EXPECT_TRUE(waitUntil([&chosen] { return chosen == QStringList { u"Status"_s }; }));
}

TEST_F(OnDisplay, SpeaksWordByWordAtASpeakersPaceWithOrWithoutASoundDevice)
{
    perform(merlin->Show(true));
    QElapsedTimer timer;
    timer.start();
    const RequestPtr speech = merlin->Speak(u"one two three four \\Map=\"five\"=\"5\"\\"_s);
    QStringList seen;
    ASSERT_TRUE(waitUntil([&] {
        const QString shown = widgetOf<Balloon>()->shownText();
        if (!shown.isEmpty() && !seen.endsWith(shown))
            seen += shown;
        return speech->status == Request::Status::Complete;
    }));
    EXPECT_GT(timer.elapsed(), 900);
    EXPECT_EQ(seen.last(), u"one two three four 5"_s);
    EXPECT_GE(seen.size(), 4);
}

TEST_F(OnDisplay, CostsNothingHiddenNextToNothingIdleAndLittleWhileMoving)
{
    perform(merlin->Show(true));
    perform(merlin->Hide(true));
    EXPECT_LT(load(1'500, "hidden"), 0.3);
    perform(merlin->Show(true));
    wait(300);
    EXPECT_LT(load(1'500, "visible, at rest"), 0.5);
    merlin->Play(u"Hearing_1"_s); // has no end
    wait(300);
    EXPECT_LT(load(3'000, "animating"), 10);
    merlin->Stop();
    wait(500);
    bool idle = false;
    QObject::connect(control.get(), &Control::idleStarted, control.get(), [&idle] { idle = true; });
    pulse->jump(31'000);
    ASSERT_TRUE(waitUntil([&idle] { return idle; }));
    EXPECT_LT(load(10'000, "idle, with its movements"), 1);
}
