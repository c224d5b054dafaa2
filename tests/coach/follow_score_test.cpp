#include "coach/follow_score.h"

#include <gtest/gtest.h>

#include "coach/rep_goal.h"
#include "coach/stretch_library.h"

namespace sodam {
namespace {

using Joint = FollowScore::Joint;
using FollowScore::JointSet;

const Motion& motionOf(const char* id) {
  return StretchLibrary::find(id)->motion;
}

TEST(FollowScore, AMotionUsesTheJointsItMovesByTheirMinimumRange) {
  EXPECT_EQ(FollowScore::joints(motionOf("chinTuck")),
            (std::vector<FollowScore::Used>{{Joint::headForward, 1}}));
  const auto neckSide = FollowScore::joints(motionOf("neckSide"));
  ASSERT_EQ(neckSide.size(), 2u);  // the shrug's 0.5 is under its 0.8
  EXPECT_EQ(neckSide[0], (FollowScore::Used{Joint::neckSide, 32}));
  EXPECT_EQ(neckSide[1], (FollowScore::Used{Joint::armR, 136}));
  // The wrist's arms travel under 40 on the side stage: time alone.
  EXPECT_FALSE(FollowScore::tracksAnything(motionOf("wrist"), Stage::side));
  EXPECT_TRUE(FollowScore::tracksAnything(motionOf("eyes"), Stage::front));
}

TEST(FollowScore, AMotionAtRestUsesNothingAndScoresNothing) {
  const Key rest{Pose(), 1, 1, std::nullopt};
  const Motion still{{rest, rest}};
  EXPECT_TRUE(FollowScore::joints(still).empty());
  EXPECT_FALSE(FollowScore::tracksAnything(still, Stage::front));
  EXPECT_FALSE(RepGoal::of(still, Stage::front));
  EXPECT_FALSE(FollowScore::score(Pose(), still, 1, {Joint::neckSide}));
}

TEST(FollowScore, ScoresTheBestOfThreeLagsOverMeasuredUsedJoints) {
  const Motion& tuck = motionOf("chinTuck");
  // 0.7 seconds behind the figure is no fault.
  const double t = 2.6;
  const Pose behind = tuck.pose(t - 0.7).pose;
  EXPECT_DOUBLE_EQ(*FollowScore::score(behind, tuck, t, {Joint::headForward}), 1);
  // Early on the lag is held at the loop's start rather than going negative.
  EXPECT_DOUBLE_EQ(*FollowScore::score(tuck.pose(0).pose, tuck, 0.3, {Joint::headForward}), 1);
  // In the tuck's hold every lag shows -1: a miss of four fifths of the
  // travel scores nothing, and joints the motion does not use do not count,
  // whatever their error.
  const double held = 4;
  Pose off = tuck.pose(held).pose;
  off.headForward += 0.8;
  off.neckSide = 40;
  const JointSet both{Joint::headForward, Joint::neckSide};
  EXPECT_NEAR(*FollowScore::score(off, tuck, held, both), 0, 1e-9);
  off.headForward -= 0.4;
  EXPECT_NEAR(*FollowScore::score(off, tuck, held, both), 0.5, 1e-9);
  // Measured joints decide; the unmeasured neck turn is no match or miss.
  EXPECT_FALSE(FollowScore::score(off, tuck, t, {Joint::neckSide}));
}

TEST(FollowScore, ArmsMissByTheShortWayRound) {
  EXPECT_DOUBLE_EQ(FollowScore::difference(Joint::armL, 350, 0), -10);
  EXPECT_DOUBLE_EQ(FollowScore::difference(Joint::armL, -180, 0), 180);
  EXPECT_DOUBLE_EQ(FollowScore::difference(Joint::neckSide, 350, 0), 350);
}

TEST(RepGoal, PicksTheJointThatShowsARepetitionBest) {
  const auto tuck = RepGoal::of(motionOf("chinTuck"), Stage::front);
  EXPECT_EQ(*tuck, (RepGoal{Joint::headForward, -1, 1}));
  // Side stage, no rest key: the first key is the base.
  EXPECT_EQ(*RepGoal::of(motionOf("catCow"), Stage::side), (RepGoal{Joint::neckFlex, -48, 1}));
  // The shrug starts up, so its repetition is the drop.
  EXPECT_EQ(*RepGoal::of(motionOf("shrug"), Stage::front), (RepGoal{Joint::shrugL, -1.3, 1}));
  // Arms count for less: the side bend's trunk wins over the lifted arm.
  EXPECT_EQ(RepGoal::of(motionOf("sideBend"), Stage::front)->joint, Joint::spineSide);
  // Only the stage's joints: the squeeze sideways is its arms.
  EXPECT_EQ(*RepGoal::of(motionOf("squeeze"), Stage::side), (RepGoal{Joint::armL, -40, 1}));
  // The twist's trunk is not a joint the camera reads; its head turn is.
  EXPECT_EQ(*RepGoal::of(motionOf("twist"), Stage::front), (RepGoal{Joint::headTurn, 50, 1}));
}

TEST(RepGoal, CountsEveryRiseOverHalfAfterAFallToAQuarterInOneLoop) {
  auto keyAt = [](double neckSide) {
    Pose p;
    p.neckSide = neckSide;
    return Key{p, 1, 1, std::nullopt};
  };
  // 0, 20, 4, 18, 0: two nods of the head to the side per loop.
  const Motion twice{{keyAt(0), keyAt(20), keyAt(4), keyAt(18), keyAt(0)}};
  EXPECT_EQ(RepGoal::of(twice, Stage::front)->perCycle, 2);
  // Falling only to 6 (above a quarter) is still one.
  const Motion once{{keyAt(0), keyAt(20), keyAt(6), keyAt(18), keyAt(0)}};
  EXPECT_EQ(RepGoal::of(once, Stage::front)->perCycle, 1);
}

}  // namespace
}  // namespace sodam
