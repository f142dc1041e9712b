#include "platform/agent/character/CharacterRenderer.h"
#include "SmallCharacter.h"
#include "tests/world/NetTest.h"

#include <QDir>
#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;
using agent::Animation;
using agent::CharacterFile;
using agent::CharacterRenderer;
using agent::PartPose;
using agent::Pose;

namespace {

constexpr int kFrameMs = 40;

const char *const kRequired[] = { "Show", "Hide", "RestPose", "Speaking", "Blink", "Idle1_1", "Idle1_2", "Idle2_1",
    "Idle2_2", "Idle3_1", "Idle3_2", "Acknowledge", "Alert", "Announce", "Confused", "Congratulate", "Decline",
    "Explain", "GetAttention", "Greet", "Hearing_1", "Hearing_2", "Pleased", "Sad", "Surprised", "Think", "Uncertain",
    "Wave", "GestureUp", "GestureDown", "GestureLeft", "GestureRight", "MoveUp", "MoveDown", "MoveLeft", "MoveRight" };

const char *const kStates[] = { "Showing", "Hiding", "Speaking", "MovingUp", "MovingDown", "MovingLeft", "MovingRight",
    "GesturingUp", "GesturingDown", "GesturingLeft", "GesturingRight", "Listening", "Hearing", "IdlingLevel1",
    "IdlingLevel2", "IdlingLevel3" };

/** These come home by themselves, so that idling and nodding need nobody to lead them back. */
const char *const kHomecoming[]
    = { "Show", "RestPose", "Blink", "Acknowledge", "Idle1_1", "Idle1_2", "Idle2_1", "Idle2_2", "Idle3_1" };

std::vector<std::string> builtCharacters()
{
    std::vector<std::string> names;
    for (const QString &file : QDir(QStringLiteral(KAVRO_CHARACTERS)).entryList({ u"*.acs"_s }))
        names.push_back(file.chopped(4).toStdString());
    return names;
}

QString pathOf(const std::string &character)
{
    return QStringLiteral(KAVRO_CHARACTERS "/%1.acs").arg(QString::fromStdString(character));
}

int differingPixels(const QImage &one, const QImage &other)
{
    int count = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y), b = other.pixel(x, y);
            count += std::abs(qGray(a) - qGray(b)) + std::abs(qAlpha(a) - qAlpha(b)) > 24;
        }
    return count;
}

int mostOpaqueAtTheEdge(const QImage &image)
{
    int most = 0;
    for (int x = 0; x < image.width(); ++x)
        most = std::max({ most, qAlpha(image.pixel(x, 0)), qAlpha(image.pixel(x, image.height() - 1)) });
    for (int y = 0; y < image.height(); ++y)
        most = std::max({ most, qAlpha(image.pixel(0, y)), qAlpha(image.pixel(image.width() - 1, y)) });
    return most;
}

/** Processor time: the machine may be busy with other things. */
template <typename Work>
qreal processorMs(const Work &work)
{
    const double start = workedMs();
    work();
    return workedMs() - start;
}

struct Shipped : testing::TestWithParam<std::string> {
    std::shared_ptr<const CharacterFile> file = CharacterFile::load(pathOf(GetParam()));
    CharacterRenderer renderer{ file };

    const Animation &named(const char *name) const
    {
        const Animation *animation = file->animation(QString::fromLatin1(name));
        EXPECT_TRUE(animation) << name;
        return *animation;
    }

    /** Not hidden, nor carried by something hidden. */
    bool isSeen(const Pose &pose, qsizetype part) const
    {
        qreal opacity = 1;
        for (qsizetype i = part; i >= 0; i = file->parts().at(i).parent)
            opacity *= pose[i].opacity;
        return opacity > 0.02;
    }

    /** What makes the eye see a jump rather than a movement; nothing when all is well. */
    std::string jumpBetween(const Pose &before, const Pose &after) const
    {
        for (qsizetype i = 0; i < before.size(); ++i) {
            const PartPose &a = before[i], &b = after[i];
            const bool jumps = std::abs(a.rotate - b.rotate) > 40 || std::hypot(a.x - b.x, a.y - b.y) > 14
                || std::abs(a.scaleX - b.scaleX) > 0.35 || std::abs(a.scaleY - b.scaleY) > 0.35
                || std::abs(a.skew - b.skew) > 12 || std::abs(a.opacity - b.opacity) > 0.75;
            if (jumps && isSeen(before, i) && isSeen(after, i))
                return file->parts().at(i).name.toStdString();
        }
        return {};
    }
};

} // namespace

TEST(ShippedCharacters, HaveAllBeenBuilt)
{
    const QDir sources(QStringLiteral(KAVRO_CHARACTER_SOURCES));
    const QStringList folders = sources.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    EXPECT_TRUE(folders.contains(u"merlin"_s));
    for (const QString &folder : folders)
        EXPECT_TRUE(QFile::exists(QStringLiteral(KAVRO_CHARACTERS "/%1.acs").arg(folder))) << qPrintable(folder);
}

TEST_P(Shipped, CanDoEverythingThatIsAskedFor)
{
    for (const char *name : kRequired) {
        const Animation &animation = named(name);
        const int frames = animation.durationMs() / kFrameMs;
        int changes = 0, largest = 0;
        for (int i = 1; i <= frames; ++i) {
            const Pose after = animation.at(i * kFrameMs);
            changes += animation.at((i - 1) * kFrameMs) != after;
            if (i % 4 == 0)
                largest = std::max(largest, differingPixels(renderer.image(animation.at(0)), renderer.image(after)));
        }
        EXPECT_GE(largest, 40) << name << " hardly moves";
        EXPECT_GE(changes, frames / 2) << name << " stands still for long";
    }
}

TEST_P(Shipped, NeverJumps)
{
    for (const QString &name : file->animationNames()) {
        const Animation &animation = *file->animation(name);
        for (int ms = kFrameMs; ms <= animation.durationMs(); ms += kFrameMs)
            EXPECT_EQ(jumpBetween(animation.at(ms - kFrameMs), animation.at(ms)), "") << qPrintable(name) << ms;
        const int end = animation.loops() ? animation.durationMs() : 0;
        EXPECT_EQ(jumpBetween(animation.at(end - 1), animation.at(end + 1)), "") << qPrintable(name);
    }
}

TEST_P(Shipped, EndsWhereItShould)
{
    for (const char *name : kHomecoming)
        EXPECT_TRUE(named(name).endsAtRest()) << name;
    for (const char *name : { "MoveUp", "MoveDown", "MoveLeft", "MoveRight", "Speaking", "Idle3_2" })
        EXPECT_TRUE(named(name).loops()) << name;
    const QImage gone = renderer.image(named("Hide").at(named("Hide").durationMs()));
    QImage nothing(gone.size(), gone.format());
    nothing.fill(Qt::transparent);
    EXPECT_EQ(differingPixels(gone, nothing), 0);
    EXPECT_EQ(differingPixels(renderer.image(named("Show").at(0)), nothing), 0);
}

TEST_P(Shipped, HasSomethingForEveryState)
{
    for (const char *state : kStates)
        EXPECT_FALSE(file->state(QString::fromLatin1(state)).isEmpty()) << state;
}

TEST_P(Shipped, StaysInItsFrame)
{
    for (const char *name : kRequired) {
        const Animation &animation = named(name);
        int most = 0;
        for (int ms = 0; ms <= animation.durationMs(); ms += 2 * kFrameMs)
            most = std::max(most, mostOpaqueAtTheEdge(renderer.image(animation.at(ms))));
        EXPECT_LE(most, 100) << name << " is cut off";
    }
}

TEST_P(Shipped, TheMouthCanBeRead)
{
    QList<QImage> mouths;
    for (int shape = 0; shape < agent::kMouthShapes; ++shape)
        mouths += renderer.image(file->restPose(), shape);
    for (int i = 0; i < mouths.size(); ++i)
        for (int k = i + 1; k < mouths.size(); ++k)
            EXPECT_GE(differingPixels(mouths.at(i), mouths.at(k)), 12) << i << " and " << k;
}

TEST_P(Shipped, BlinkingClosesTheEyes)
{
    const auto isLids = [](const agent::Part &part) { return part.name == "lids"_L1; };
    const qsizetype lids = std::find_if(file->parts().cbegin(), file->parts().cend(), isLids) - file->parts().cbegin();
    ASSERT_LT(lids, file->parts().size());
    const qsizetype closed = file->parts().at(lids).pictures.indexOf(u"lids.closed"_s);
    Pose open = file->restPose(), shut = open;
    shut[lids].picture = int(closed);
    EXPECT_GE(differingPixels(renderer.image(open), renderer.image(shut)), 60);
    bool wasShut = false;
    for (int ms = 0; ms < named("Blink").durationMs(); ms += kFrameMs)
        wasShut |= named("Blink").at(ms)[lids].picture == closed;
    EXPECT_TRUE(wasShut);
}

TEST_P(Shipped, IsLoadedAndPaintedFast)
{
    const qreal loading = processorMs([this] { CharacterFile::load(pathOf(GetParam())); });
    std::printf("%s: loaded in %.1f ms;", GetParam().c_str(), loading);
    const Animation &animation = named("Congratulate");
    constexpr int kFrames = 200;
    for (const qreal ratio : { 1.0, 2.0 }) {
        const auto paint = [&](int ms) { renderer.image(animation.at(ms), agent::kMouthOfPose, 1, ratio); };
        const qreal first = processorMs([&] { paint(0); });
        const qreal all = processorMs([&] {
            for (int i = 0; i < kFrames; ++i)
                paint(i * 10);
        });
        std::printf(" at %g x the first frame in %.1f ms, the others in %.2f ms;", ratio, first, all / kFrames);
        EXPECT_LT(all / kFrames, 20) << "a frame must not take a frame's time, not even under a sanitizer";
    }
    std::printf("\n");
}

INSTANTIATE_TEST_SUITE_P(All, Shipped, testing::ValuesIn(builtCharacters()),
                         [](const auto &character) { return character.param; });
