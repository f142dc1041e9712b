#include "platform/agent/character/CharacterRenderer.h"
#include "SmallCharacter.h"

#include <QJsonArray>
#include <QPainter>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using agent::CharacterRenderer;
using agent::Pose;

namespace {

constexpr int kBox = 0, kLid = 1; // parts of the small character

struct Renderer : testing::Test {
    CharacterRenderer renderer{ loaded(smallCharacter()) };
    Pose pose = renderer.file().restPose();

    QColor colourAt(int x, int y, qreal scale = 1)
    {
        return renderer.image(pose, agent::kMouthOfPose, scale).pixelColor(x, y);
    }
};

const QColor kRed(255, 0, 0), kBlue(0, 0, 255), kGreen(0, 255, 0);

} // namespace

TEST_F(Renderer, ShowsTheDrawingAtRest)
{
    EXPECT_EQ(colourAt(42, 45), kRed);
    EXPECT_EQ(colourAt(50, 25), kBlue);
    EXPECT_EQ(colourAt(50, 50), kGreen);
    EXPECT_EQ(colourAt(30, 30).alpha(), 0);
}

TEST_F(Renderer, ChildrenFollowTheirParentAboutThePivots)
{
    pose[kBox].rotate = 90;
    EXPECT_EQ(colourAt(75, 50), kBlue) << "above the pivot becomes right of it";
    pose[kLid].x = 10; // along its parent
    EXPECT_EQ(colourAt(75, 60), kBlue);
    pose[kBox] = {};
    pose[kLid] = {};
    pose[kBox].scaleX = 2;
    EXPECT_EQ(colourAt(32, 45), kRed);
    EXPECT_EQ(colourAt(42, 25), kBlue);
    pose[kBox] = {};
    pose[kBox].skew = 45; // 25 above the pivot, 25 to the right
    EXPECT_EQ(colourAt(75, 25), kBlue);
}

TEST_F(Renderer, PicturesMouthsAndLayersChange)
{
    const QImage closed = renderer.image(pose, 0), open = renderer.image(pose, 6);
    EXPECT_EQ(closed.pixelColor(50, 54), kRed);
    EXPECT_EQ(open.pixelColor(50, 54), kGreen);
    pose[kLid].y = 20;
    EXPECT_EQ(colourAt(50, 45), kBlue);
    pose[kLid].layer = -1;
    EXPECT_EQ(colourAt(50, 45), kRed);
}

TEST_F(Renderer, ARootFadesAsOnePicture)
{
    pose[kBox].opacity = 0.5;
    pose[kLid].y = 20; // in front of the box
    const QColor half = colourAt(50, 45);
    EXPECT_NEAR(half.alpha(), 128, 3);
    EXPECT_EQ(half.red(), 0) << "the box shines through";
    pose[kBox].opacity = 0;
    EXPECT_EQ(colourAt(50, 45).alpha(), 0);
    pose[kBox].opacity = 1;
    pose[kLid].opacity = 0.5;
    EXPECT_NEAR(colourAt(50, 45).red(), 128, 3);
}

TEST_F(Renderer, FillsItsTargetAtAnySizeAndTouchesNothingElse)
{
    for (const qreal scale : { 0.5, 3.0, 1.0 })
        EXPECT_EQ(colourAt(int(50 * scale), int(25 * scale), scale), kBlue) << scale;
    const QImage fine = renderer.image(pose, agent::kMouthOfPose, 1, 2);
    EXPECT_EQ(fine.size(), QSize(200, 160));
    EXPECT_EQ(fine.pixelColor(100, 50), kBlue);
    QImage page(300, 200, QImage::Format_ARGB32_Premultiplied);
    page.fill(Qt::white);
    QPainter painter(&page);
    renderer.paint(painter, QRectF(100, 20, 200, 160), pose);
    EXPECT_EQ(page.pixelColor(200, 70), kBlue);
    EXPECT_EQ(page.pixelColor(50, 100), QColor(Qt::white));
    EXPECT_TRUE(painter.transform().isIdentity());
}

TEST(RendererFrame, BeginsAtTheOrigin)
{
    agent::CharacterSource source = smallCharacter();
    source.description = changed(source.description, u"origin"_s, QJsonArray{ 40, 20 });
    CharacterRenderer renderer(loaded(source));
    Pose pose = renderer.file().restPose();
    EXPECT_EQ(renderer.image(pose).pixelColor(10, 5), kBlue);
    pose[kBox].opacity = 0.99;
    EXPECT_EQ(renderer.image(pose).pixelColor(10, 5).blue(), 255);
}
