#include "platform/agent/Agent.h"
#include "platform/agent/window/Balloon.h"

#include <QApplication>
#include <QColor>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>
#include <set>

using namespace Qt::StringLiterals;
using namespace agent;

namespace {

constexpr QSize kFigure(160, 160);
constexpr QPoint kHead(80, 20);
constexpr int kOn = BalloonOn | SizeToText | AutoHide;

QRect screen() { return screenAt({ 0, 0 }); }

QStringList words(int count)
{
    QStringList all;
    for (int word = 0; word < count; ++word)
        all += u"word%1"_s.arg(word);
    return all;
}

qreal luminance(const QColor &colour)
{
    const auto linear
        = [](qreal part) { return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

qreal contrast(const QColor &a, const QColor &b)
{
    const qreal first = luminance(a) + 0.05, second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

/** The colour that fills most of a picture, and the one that differs most from it. */
std::pair<QColor, QColor> backAndText(const QImage &picture, const QRect &area)
{
    QHash<QRgb, int> counts;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            ++counts[picture.pixel(x, y)];
    QRgb back = 0;
    for (auto colour = counts.cbegin(); colour != counts.cend(); ++colour)
        if (colour.value() > counts.value(back))
            back = colour.key();
    QRgb text = back;
    for (auto colour = counts.cbegin(); colour != counts.cend(); ++colour)
        if (contrast(colour.key(), back) > contrast(text, back))
            text = colour.key();
    return { QColor(back), QColor(text) };
}

class BalloonTest : public testing::Test
{
protected:
    void stand(const QPoint &corner) { balloon.follow(QRect(corner, kFigure), corner + kHead); }
    void say(const QStringList &text, int style = kOn)
    {
        balloon.begin(Balloon::Kind::Speech, u"Merlin"_s, text, BalloonFormat::ofStyle(style));
        balloon.show();
    }
    /** The text's area in pixels of the picture. */
    QRect textArea() const
    {
        const QRect body = balloon.place().body.translated(-balloon.pos()).adjusted(12, 8, -12, -8);
        const qreal ratio = balloon.picture().devicePixelRatio();
        return QRectF(body.x() * ratio, body.y() * ratio, body.width() * ratio, body.height() * ratio)
            .toRect();
    }
    int inkedPixels()
    {
        const auto [back, text] = backAndText(balloon.picture(), textArea());
        int count = 0;
        const QRect area = textArea();
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                count += contrast(balloon.picture().pixelColor(x, y), back) > 3;
        return count;
    }

    Balloon balloon;
};

} // namespace

TEST_F(BalloonTest, StandsBesideTheHeadAndWhollyOnTheScreenEverywhere)
{
    const QRect area = screen();
    const bool roomy = area.width() >= 800;
    std::set<BalloonPlace::Side> sides;
    say(words(30));
    for (int x = area.left(); x <= area.right() - kFigure.width(); x += 40) {
        for (int y = area.top(); y <= area.bottom() - kFigure.height(); y += 40) {
            stand({ x, y });
            const BalloonPlace place = balloon.place();
            const QRect figure(QPoint(x, y), kFigure);
            sides.insert(place.side);
            EXPECT_TRUE(area.contains(place.body)) << x << ' ' << y;
            EXPECT_TRUE(balloon.geometry().contains(place.body));
            EXPECT_TRUE(figure.contains(place.tip));
            // It hides at most the space above the head, never the face; a small screen has no other place.
            EXPECT_TRUE(!roomy || !place.body.intersects(figure.adjusted(0, kHead.y(), 0, 0)))
                << x << ' ' << y;
        }
    }
    EXPECT_TRUE(sides.contains(BalloonPlace::Side::Above));
    EXPECT_TRUE(sides.contains(BalloonPlace::Side::Below));
}

TEST(BalloonPlaceTest, GoesBesideACharacterThatFillsTheHeight)
{
    const QRect area(0, 0, 800, 200);
    const QSize body(200, 90);
    const BalloonPlace left = placeBalloon(body, QRect(600, 20, 160, 160), { 680, 40 }, area);
    EXPECT_EQ(left.side, BalloonPlace::Side::Left);
    EXPECT_EQ(left.body, QRect(600 - kTailLength - 200, 0, 200, 90));
    const BalloonPlace right = placeBalloon(body, QRect(20, 20, 160, 160), { 100, 100 }, area);
    EXPECT_EQ(right.side, BalloonPlace::Side::Right);
    EXPECT_EQ(right.body.topLeft(), QPoint(179 + kTailLength, 100 - 45));
    EXPECT_EQ(right.tip, QPoint(179, 100));
}

TEST_F(BalloonTest, IsLegibleOnLightAndDarkAndTransparentAround)
{
    for (const QColor &window : { QColor(0xef, 0xef, 0xef), QColor(0x20, 0x22, 0x26) }) {
        balloon.setPalette(QPalette(window));
        stand({ 300, 300 });
        say(words(12));
        const auto [back, text] = backAndText(balloon.picture(), textArea());
        EXPECT_GT(contrast(back, text), 7) << back.name().toStdString();
        EXPECT_EQ(back.lightness() < 128, window.lightness() < 128);
        EXPECT_EQ(balloon.picture().pixelColor(0, 0).alpha(), 0);
        const QPoint tip = (balloon.place().tip - balloon.pos()) * balloon.picture().devicePixelRatio();
        EXPECT_GT(balloon.picture().pixelColor(tip - QPoint(0, 3)).alpha(), 0);
    }
}

TEST_F(BalloonTest, IsDrawnInThePixelsOfTheScreen)
{
    stand({ 300, 300 });
    say(words(5));
    const qreal ratio = balloon.devicePixelRatioF();
    EXPECT_EQ(balloon.picture().size(), balloon.size() * ratio);
    EXPECT_EQ(balloon.grab()
                  .toImage()
                  .convertToFormat(QImage::Format_ARGB32_Premultiplied)
                  .pixelColor(textArea().center()),
        balloon.picture().pixelColor(textArea().center()));
}

TEST_F(BalloonTest, ShowsWordsAsTheyAreSaidWithoutMovingThem)
{
    stand({ 300, 300 });
    say(words(9), kOn | AutoPace);
    const QRect geometry = balloon.geometry();
    EXPECT_EQ(balloon.shownText(), QString());
    EXPECT_EQ(inkedPixels(), 0);
    int inkBefore = 0;
    for (int count = 1; count <= 9; ++count) {
        balloon.showWords(count);
        EXPECT_EQ(balloon.shownText(), words(count).join(u' '));
        EXPECT_GT(inkedPixels(), inkBefore);
        inkBefore = inkedPixels();
    }
    EXPECT_EQ(balloon.geometry(), geometry);

    // Without pace everything is there at once, in the same places.
    const QImage paced = balloon.picture();
    say(words(9), kOn);
    EXPECT_EQ(balloon.picture(), paced);
}

TEST_F(BalloonTest, ScrollsLongTextsInsteadOfLeavingTheScreen)
{
    stand({ 300, 250 });
    for (const int style : { kOn | AutoPace, kOn, int(BalloonOn) | 2 << 24 }) {
        say(words(400), style);
        const int height = balloon.place().body.height();
        EXPECT_LT(height, screen().height() / 2);
        balloon.showWords(1);
        const QImage begin = balloon.picture();
        balloon.showAll();
        EXPECT_NE(balloon.picture(), begin);
        EXPECT_GT(inkedPixels(), 50);
        EXPECT_EQ(balloon.place().body.height(), height);
    }
}

TEST_F(BalloonTest, HasTheSizeThatItsStyleAsksFor)
{
    stand({ 300, 300 });
    say({ u"Hi"_s });
    const QSize small = balloon.place().body.size();
    say({ u"Hi"_s }, BalloonOn);
    const QSize three = balloon.place().body.size();
    say({ u"Hi"_s }, BalloonOn | 60 << 16 | 5 << 24);
    const QSize five = balloon.place().body.size();
    EXPECT_LT(small.width(), three.width());
    EXPECT_LT(small.height(), three.height());
    EXPECT_LT(three.width(), five.width());
    EXPECT_LT(three.height(), five.height());
    // A word without a blank is cut, not shown in half.
    say({ QString(300, u'x') });
    EXPECT_LE(balloon.place().body.width(), three.width());
    EXPECT_GT(balloon.place().body.height(), three.height());

    EXPECT_THROW(BalloonFormat::ofStyle(BalloonOn | 7 << 16), Error);
    EXPECT_THROW(BalloonFormat::ofStyle(BalloonOn | SizeToText | 2 << 24), Error);
    EXPECT_THROW(BalloonFormat::ofStyle(int(BalloonOn | 129u << 24)), Error);
}

TEST_F(BalloonTest, ThinksInACloudWithBubbles)
{
    stand({ 300, 300 });
    say(words(6));
    const QImage speech = balloon.picture();
    balloon.begin(Balloon::Kind::Thought, u"Merlin"_s, words(6), BalloonFormat::ofStyle(kOn));
    EXPECT_EQ(balloon.accessibleName(), u"Merlin thinks"_s);
    // Between the circles that lead to the head nothing is drawn: some row of the tail is empty.
    const QImage &cloud = balloon.picture();
    const qreal ratio = cloud.devicePixelRatio();
    const auto emptyRows = [&](const QImage &picture) {
        int rows = 0;
        for (int y = int((balloon.place().body.bottom() + 3 - balloon.y()) * ratio);
             y < picture.height() - 4 * ratio; ++y) {
            bool empty = true;
            for (int x = 0; x < picture.width() && empty; ++x)
                empty = qAlpha(picture.pixel(x, y)) == 0;
            rows += empty;
        }
        return rows;
    };
    EXPECT_GT(emptyRows(cloud), 0);
    EXPECT_EQ(emptyRows(speech), 0);
}

TEST_F(BalloonTest, TellsScreenReadersWhoSaysWhat)
{
    say(words(3), kOn | AutoPace);
    EXPECT_EQ(balloon.accessibleName(), u"Merlin says"_s);
    EXPECT_EQ(balloon.accessibleDescription(), u"word0 word1 word2"_s);
    EXPECT_TRUE(balloon.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(balloon.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));

    QSignalSpy dismissed(&balloon, &Balloon::dismissed);
    QTest::mouseClick(&balloon, Qt::LeftButton);
    EXPECT_EQ(dismissed.count(), 1);
}
