#include "SmallCharacter.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using agent::Animation;
using agent::Channel;
using agent::Key;
using agent::Pose;
using agent::Track;

TEST(Track, MovesFromRestThroughItsKeysAndHoldsTheLast)
{
    const Track track{ 0, Channel::X, { Key{ 100, 10, QEasingCurve::Linear }, Key{ 300, 30, QEasingCurve::Linear } } };
    EXPECT_EQ(track.at(0, 4), 4);
    EXPECT_EQ(track.at(50, 4), 7);
    EXPECT_EQ(track.at(100, 4), 10);
    EXPECT_EQ(track.at(200, 4), 20);
    EXPECT_EQ(track.at(9000, 4), 30);
}

TEST(Track, PicturesWaitForTheirKey)
{
    const Track track{ 0, Channel::Picture, { Key{ 100, 3 }, Key{ 200, 1 } } };
    EXPECT_EQ(track.at(99, 0), 0);
    EXPECT_EQ(track.at(100, 0), 3);
    EXPECT_EQ(track.at(199, 0), 3);
    EXPECT_EQ(track.at(200, 0), 1);
}

TEST(Animation, HoldsItsEndOrGoesRound)
{
    const auto boxy = loaded(smallCharacter());
    const Animation &wave = *boxy->animation(u"Wave"_s), &spin = *boxy->animation(u"Spin"_s);
    EXPECT_EQ(wave.at(0)[0].rotate, 0);
    EXPECT_EQ(wave.at(200)[0].rotate, 45);
    EXPECT_EQ(wave.at(200)[0].opacity, 0.5);
    EXPECT_EQ(wave.at(1000), wave.at(50'000));
    EXPECT_FALSE(wave.endsAtRest());
    EXPECT_TRUE(spin.loops());
    EXPECT_EQ(spin.at(-5), boxy->restPose());
    EXPECT_EQ(spin.at(2000), spin.at(400)) << "1200 ms after the first end, three rounds of 400 ms";
    EXPECT_NE(spin.at(200), spin.at(400));
}

TEST(Animation, OvershootingNeverMakesAPartMoreThanSolid)
{
    Animation::Parts parts;
    parts.durationMs = 100;
    parts.tracks = { Track{ 0, Channel::Opacity, { Key{ 0, 0 }, Key{ 100, 1, QEasingCurve::OutBack } } } };
    const Animation animation(parts, Pose(1));
    for (int ms = 0; ms <= 100; ++ms)
        EXPECT_LE(animation.at(ms)[0].opacity, 1) << ms;
}

TEST(Pose, BlendsNumbersAndSwitchesPicturesHalfWay)
{
    Pose from(2), to(2);
    to[1] = { 90, 10, -20, 2, 0.5, 8, 0, 3, 1 };
    EXPECT_EQ(Pose::blend(from, to, 0), from);
    EXPECT_EQ(Pose::blend(from, to, 1), to);
    EXPECT_EQ(Pose::blend(from, to, 7), to);
    const Pose half = Pose::blend(from, to, 0.25);
    EXPECT_EQ(half[1], (agent::PartPose{ 22.5, 2.5, -5, 1.25, 0.875, 2, 0.75, 0, 0 }));
    EXPECT_EQ(Pose::blend(from, to, 0.5)[1].picture, 3);
}
