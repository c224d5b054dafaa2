#include "coach/mirror_filter.h"

#include <gtest/gtest.h>

#include <cmath>

#include "coach/avatar_smoother.h"

namespace sodam {
namespace {

using Joint = FollowScore::Joint;
using Part = MirrorFilter::Part;

// Near the reference date, where a Date keeps time far finer than a microsecond.
const Date start = Date{1000.0};

struct Filtering {
  MirrorFilter filter;
  Date now = start;
  FollowScore::JointSet tracked{Joint::armL, Joint::neckSide};

  // One frame a tenth of a second after the last with the left upper arm at
  // this angle, measured or not.
  Pose arm(double upper, bool measured = true) {
    Pose p;
    p.armL.upper = upper;
    now = now + 0.1;
    return filter.filter(p, measured ? FollowScore::JointSet{Joint::armL} : FollowScore::JointSet{},
                         Pose(), Pose(), tracked, now);
  }
  // Held still long enough for the filter to arrive; the value it arrived at.
  double settle(double upper) {
    for (int i = 0; i < 40; ++i)
      arm(upper);
    return value();
  }
  double value() const { return filter.channel(Part::armLUpper)->value; }
};

TEST(MirrorFilter, TheFirstSampleIsTakenWhateverItsSize) {
  Filtering f;
  // From rest at 14 a jump of 156 is no suspect: the value moves most of the way.
  EXPECT_GT(f.arm(170).armL.upper, 140);
  EXPECT_FALSE(f.filter.channel(Part::armLUpper)->pending);
  EXPECT_EQ(f.filter.channel(Part::armLUpper)->seen, f.now);
}

TEST(MirrorFilter, ArmsGoTheShortWayRoundTheCircle) {
  Filtering f;
  const double settled = f.settle(179);
  const double next = f.arm(-179).armL.upper;
  EXPECT_GT(next, settled);  // towards 181, not back through 0
  EXPECT_LE(next, 181);
}

TEST(MirrorFilter, AJumpCountsOnlyOnceThreeFramesAgree) {
  Filtering f;
  const double settled = f.settle(10);
  EXPECT_DOUBLE_EQ(f.arm(90).armL.upper, settled);
  EXPECT_DOUBLE_EQ(f.arm(95).armL.upper, settled);
  EXPECT_GT(f.arm(92).armL.upper, 50);
  EXPECT_FALSE(f.filter.channel(Part::armLUpper)->pending);

  // A frame back near the old value clears a suspect.
  Filtering g;
  g.settle(10);
  g.arm(90);
  EXPECT_TRUE(g.filter.channel(Part::armLUpper)->pending);
  g.arm(12);
  EXPECT_FALSE(g.filter.channel(Part::armLUpper)->pending);
  // Two suspects that disagree start over.
  g.arm(90);
  g.arm(170);
  EXPECT_EQ(g.filter.channel(Part::armLUpper)->pending->count, 1);
}

TEST(MirrorFilter, HoldsStillWithMuchLagAndFollowsFastMovementWithLittle) {
  Filtering slow, fast;
  const double from = slow.settle(0);
  fast.settle(0);
  const double crept = slow.arm(1).armL.upper - from;
  EXPECT_GT(crept, 0.2);
  EXPECT_LT(crept, 0.5);
  for (int i = 1; i <= 3; ++i)
    fast.arm(20 * i);
  // Sixty degrees in three tenths: under ten degrees behind.
  EXPECT_GT(fast.value(), 50);
}

TEST(MirrorFilter, AnUnmeasuredJointHoldsASecondThenFadesToRest) {
  Filtering f;
  const double held = f.settle(100);
  for (int i = 0; i < 9; ++i)
    EXPECT_DOUBLE_EQ(f.arm(0, false).armL.upper, held) << i;
  f.arm(0, false);  // a second after the last sample
  // Past the second each tenth moves it by 1 - e^(-1/6) of the way home (14).
  const double before = f.value();
  EXPECT_NEAR(f.arm(0, false).armL.upper, 14 + (before - 14) * std::exp(-0.1 / 0.6), 1e-9);
  EXPECT_LT(before, held);
}

TEST(MirrorFilter, AnUntrackedJointShowsTheDemoAndForgetsItsHistory) {
  Filtering f;
  f.arm(100);
  Pose demo;
  demo.armL.upper = 40;
  Pose user;
  user.armL.upper = 150;
  const Pose out =
      f.filter.filter(user, {Joint::armL}, demo, Pose(), {Joint::neckSide}, f.now + 0.1);
  EXPECT_DOUBLE_EQ(out.armL.upper, 40);
  EXPECT_FALSE(f.filter.channel(Part::armLUpper));
  // Tracked again, it starts from rest, not from the old 100.
  f.now = f.now + 0.1;
  f.arm(14);
  EXPECT_NEAR(f.value(), 14, 1e-9);
}

TEST(AvatarSmoother, EasesByTheFramesTimeAndTakesTheShortWay) {
  AvatarSmoother smoother;
  Pose a;
  a.neckSide = 0;
  a.armR.fore = 170;
  EXPECT_EQ(smoother.step(a, start), a);
  Pose b = a;
  b.neckSide = 10;
  b.armR.fore = -170;  // 20 degrees on, across the circle
  const Pose& next = smoother.step(b, start + 0.05);
  const double k = 1 - std::exp(-9 * 0.05);
  EXPECT_NEAR(next.neckSide, 10 * k, 1e-9);
  EXPECT_NEAR(next.armR.fore, 170 + 20 * k, 1e-9);
  // A slow frame moves by the fixed share, a clock running back not at all.
  const double before = smoother.shown()->neckSide;
  smoother.step(b, start + 1.05);
  EXPECT_NEAR(smoother.shown()->neckSide, before + (10 - before) * (1 - std::exp(-0.9)), 1e-9);
  const double held = smoother.shown()->neckSide;
  smoother.step(a, start);
  EXPECT_DOUBLE_EQ(smoother.shown()->neckSide, held);
}

}  // namespace
}  // namespace sodam
