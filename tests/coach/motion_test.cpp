#include "coach/motion.h"

#include <gtest/gtest.h>

#include "coach/stretch_library.h"

namespace sodam {
namespace {

Key key(double headForward, double move, double hold, std::optional<std::string> cue = {}) {
  Pose pose;
  pose.headForward = headForward;
  return Key{pose, move, hold, std::move(cue)};
}

// Rest, then a move of 2 seconds to 1 held for 1, back in 1 with no cue.
Motion simple() {
  return Motion{{key(0, 1, 1, "앉아요"), key(1, 2, 1, "당겨요"), key(0, 1, 0)}};
}

TEST(Motion, EasesInAndOutAndHoldsEachKey) {
  const Motion m = simple();
  EXPECT_DOUBLE_EQ(m.duration(), 6);
  // Two seconds of move from 0 to 1, entered at t = 2.
  EXPECT_DOUBLE_EQ(m.pose(2.5).pose.headForward, 4 * 0.25 * 0.25 * 0.25);
  EXPECT_DOUBLE_EQ(m.pose(3).pose.headForward, 0.5);
  EXPECT_DOUBLE_EQ(m.pose(3.5).pose.headForward, 1 - 0.5 * 0.5 * 0.5 / 2);
  EXPECT_DOUBLE_EQ(m.pose(4.5).pose.headForward, 1);
}

TEST(Motion, ACueShowsFromTheStartOfItsKeysMoveAndACuelessKeyKeepsTheLast) {
  const Motion m = simple();
  EXPECT_EQ(*m.pose(1.99).cue, "앉아요");
  EXPECT_EQ(*m.pose(2.0).cue, "당겨요");
  EXPECT_EQ(*m.pose(5.5).cue, "당겨요");
  // The loop's start runs into the first key, whose own cue shows.
  EXPECT_EQ(*m.pose(0).cue, "앉아요");
}

TEST(Motion, TimeWrapsRoundTheLoopBothWays) {
  const Motion m = simple();
  EXPECT_EQ(m.pose(6).pose, m.pose(0).pose);
  EXPECT_EQ(m.pose(-0.5).pose, m.pose(5.5).pose);
  EXPECT_EQ(m.pose(6 * 3 + 3).pose, m.pose(3).pose);
  // At the start the pose is the last key's, moving towards the first.
  Motion lastDiffers{{key(0, 1, 1), key(1, 1, 1)}};
  EXPECT_DOUBLE_EQ(lastDiffers.pose(0).pose.headForward, 1);
}

TEST(Motion, OneKeyStaysStillAndNoKeysIsTheRestPose) {
  const Motion one{{key(0.7, 1, 1, "그대로")}};
  for (double t : {0.0, 0.4, 1.3, -3.0})
    EXPECT_DOUBLE_EQ(one.pose(t).pose.headForward, 0.7) << t;
  const Motion none;
  EXPECT_DOUBLE_EQ(none.duration(), 0);
  EXPECT_EQ(none.pose(3).pose, Pose());
  EXPECT_EQ(none.pose(3).cue, nullptr);
}

TEST(Pose, LerpTakesBehindFromTheSecondPoseFromHalfway) {
  Pose a, b;
  b.armL = {100, 50, 10, true};
  b.neckFlex = 40;
  EXPECT_FALSE(Pose::lerp(a, b, 0.49).armL.behind);
  EXPECT_TRUE(Pose::lerp(a, b, 0.5).armL.behind);
  EXPECT_DOUBLE_EQ(Pose::lerp(a, b, 0.25).neckFlex, 10);
  EXPECT_DOUBLE_EQ(Pose::lerp(a, b, 0.25).armL.upper, 14 + 0.25 * 86);
  EXPECT_EQ(Pose::side().armR, (Limb{28, 56, 0, false}));
}

TEST(Sidedness, SwapsBothWordsAtOnce) {
  EXPECT_EQ(Sidedness::swap("오른손을 왼쪽 귀 위에"), "왼손을 오른쪽 귀 위에");
  EXPECT_EQ(Sidedness::swap("정면"), "정면");
}

TEST(Motion, MirroringNegatesSidewaysJointsSwapsLimbsAndTwiceGivesItBack) {
  const Stretch& neckSide = *StretchLibrary::find("neckSide");
  const Motion left = neckSide.motionFor(Side::left);
  const Pose& peak = left.keys[2].pose;
  EXPECT_DOUBLE_EQ(peak.neckSide, -32);
  EXPECT_DOUBLE_EQ(peak.shrugR, -0.5);
  EXPECT_EQ(peak.armL, (Limb{142, -112, 0, false}));
  EXPECT_EQ(*left.keys[1].cue, "왼손을 머리 위로 넘겨 오른쪽 귀 위에 얹어요");
  EXPECT_EQ(left.keys[2].move, 1.8);

  for (const auto& s : StretchLibrary::all())
    EXPECT_EQ(s.motion.mirrored().mirrored(), s.motion) << s.id;
  // The twist's turn and the head's turn both change sides.
  const Pose twisted = StretchLibrary::find("twist")->motion.mirrored().keys[1].pose;
  EXPECT_DOUBLE_EQ(twisted.twist, -42);
  EXPECT_DOUBLE_EQ(twisted.headTurn, -50);
  EXPECT_TRUE(twisted.armL.behind);
}

}  // namespace
}  // namespace sodam
