#include "coach/body_mirror.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/numeric.h"

namespace sodam {
namespace {

using Joint = FollowScore::Joint;
using BodyMirror::ArmSide;

// Eyes 63 pixels apart: ten pixels to the centimetre.
Measurement face() {
  Measurement m;
  m.size = {1280, 720};
  m.eyeL = {608.5, 500};
  m.eyeR = {671.5, 500};
  return m;
}

TEST(BodyMirrorFront, ReadsHeadShouldersAndTrunkFromTheMetrics) {
  Metrics metrics;
  metrics.headTilt = 60;  // beyond the neck's reach
  metrics.turn = -20;
  metrics.flexion = 12;
  metrics.headForward = 2;
  metrics.neckDrop = 1.5;
  metrics.shoulderTilt = 6;
  metrics.lean = -5;
  const auto r = BodyMirror::pose(metrics, face(), true, Stage::front);
  EXPECT_DOUBLE_EQ(r.pose.neckSide, 45);
  EXPECT_DOUBLE_EQ(r.pose.headTurn, -20);
  EXPECT_DOUBLE_EQ(r.pose.neckFlex, 12);
  EXPECT_DOUBLE_EQ(r.pose.headForward, 0.8);
  EXPECT_DOUBLE_EQ(r.pose.shrugL, 0.5 + 0.5);
  EXPECT_DOUBLE_EQ(r.pose.shrugR, 0.5 - 0.5);
  EXPECT_DOUBLE_EQ(r.pose.spineSide, 11);
  for (Joint j : {Joint::neckSide, Joint::headTurn, Joint::neckFlex, Joint::headForward,
                  Joint::shrugL, Joint::shrugR, Joint::spineSide})
    EXPECT_TRUE(r.measured.contains(j)) << FollowScore::name(j);
  EXPECT_FALSE(r.measured.contains(Joint::armL));
  EXPECT_EQ(r.pose.armL, Pose::front().armL);
}

TEST(BodyMirrorFront, MissingMetricsAndUntrustedShouldersMeasureLess) {
  Metrics metrics;
  metrics.closer = 4;  // no head-forward number: half the approach stands in
  const auto r = BodyMirror::pose(metrics, face(), false, Stage::front);
  EXPECT_DOUBLE_EQ(r.pose.headForward, 0.8);
  EXPECT_TRUE(r.measured.contains(Joint::headForward));
  EXPECT_FALSE(r.measured.contains(Joint::neckFlex));
  EXPECT_FALSE(r.measured.contains(Joint::shrugL));
  EXPECT_FALSE(r.measured.contains(Joint::spineSide));
}

TEST(BodyMirrorFront, ABodyWithoutAFaceNeverMovesTheNodOrTheHeadShift) {
  Metrics metrics;
  metrics.flexion = 30;
  metrics.headForward = 5;
  Measurement m = face();
  m.fromBody = true;
  const auto r = BodyMirror::pose(metrics, m, false, Stage::front);
  EXPECT_EQ(r.pose.neckFlex, 0);
  EXPECT_EQ(r.pose.headForward, 0);
  EXPECT_FALSE(r.measured.contains(Joint::neckFlex));
  EXPECT_FALSE(r.measured.contains(Joint::headForward));
}

TEST(BodyMirrorFront, ThePersonsLeftArmIsTheImagesRight) {
  Measurement m = face();
  Arms arms;
  arms.shoulderR = Point{800, 300};  // the person's left shoulder
  arms.elbowR = Point{1090, 300};    // straight out to the side
  arms.wristR = Point{1090, 560};    // forearm straight up
  arms.shoulderL = Point{480, 300};
  arms.elbowL = Point{480, 10};  // hanging
  m.arms = arms;
  const auto r = BodyMirror::pose(Metrics(), m, false, Stage::front);
  EXPECT_NEAR(r.pose.armL.upper, 90, 1e-9);
  EXPECT_NEAR(r.pose.armL.fore, 180, 1e-9);
  EXPECT_NEAR(r.pose.armR.upper, 0, 1e-9);
  EXPECT_NEAR(r.pose.armR.fore, 0, 1e-9);  // no wrist: along the upper arm
  EXPECT_TRUE(r.measured.contains(Joint::armL));
  EXPECT_TRUE(r.measured.contains(Joint::armR));
}

TEST(BodyMirrorFront, AWristAloneFindsTheElbowOutwardOfTheTwoLinks) {
  Measurement m = face();
  Arms arms;
  arms.shoulderR = Point{800, 300};
  arms.wristR = Point{800, 600};  // straight above, closer than both links
  m.arms = arms;
  const auto left = BodyMirror::arm(m, ArmSide::left, Stage::front);
  ASSERT_TRUE(left);
  EXPECT_GT(left->upper, 0);  // the elbow out to the image's right
  EXPECT_LT(left->fore, 0);
  // Out of reach: the elbow on the straight line.
  arms.wristR = Point{800, 1400};
  m.arms = arms;
  EXPECT_NEAR(BodyMirror::arm(m, ArmSide::left, Stage::front)->upper, 180, 1e-9);
  // Neither elbow nor wrist: no arm.
  EXPECT_FALSE(BodyMirror::arm(m, ArmSide::right, Stage::front));
}

// A person seen sideways facing the image's left, the near shoulder behind
// the head on the image's right.
SideBody facingLeft() {
  SideBody b({600, 500}, 150);
  b.torso = SideBody::Torso{530, 780, 250, false};
  b.band = SideBody::Band{530, 250, 780, 250};
  b.shoulderR = Point{660, 360};
  b.confR = 0.9f;
  b.confL = 0.1f;
  b.ear = Point{680, 510};
  b.nose = Point{600, 490};
  b.elbowR = Point{660, 110};
  b.judge();
  return b;
}

TEST(BodyMirrorSide, TheSureShoulderBehindTheHeadTellsTheFacing) {
  EXPECT_EQ(BodyMirror::facingVote(facingLeft()), -1);
  SideBody unsure = facingLeft();
  unsure.confL = 0.8f;
  // Nose left of the ear, much further than it is lower.
  EXPECT_EQ(BodyMirror::facingVote(unsure), -1);
  unsure.faceRatio = 0.3;  // a face reading makes the nose no profile
  EXPECT_FALSE(BodyMirror::facingVote(unsure));
}

TEST(BodyMirrorSide, CalibratesMediansAndFallsBackWithoutSamples) {
  const auto none = BodyMirror::calibrate({});
  EXPECT_EQ(none, BodyMirror::SideNeutral{});
  EXPECT_EQ(none.facing, -1);
  EXPECT_EQ(none.scale, 10);

  SideBody a = facingLeft(), b = facingLeft();
  b.head.x = 580;
  const auto neutral = BodyMirror::calibrate({a, b});
  EXPECT_EQ(neutral.facing, -1);
  EXPECT_DOUBLE_EQ(neutral.scale, 10);  // 250 pixels of torso over 25 cm
  // The head ahead of the near shoulder by 6 and 8 cm.
  EXPECT_DOUBLE_EQ(*neutral.forward, 7);
  EXPECT_DOUBLE_EQ(*neutral.front, -530);
  EXPECT_FALSE(neutral.faceRatio);
}

TEST(BodyMirrorSide, ReadsTheTrunkHeadAndNearArmAgainstTheNeutral) {
  const auto neutral = BodyMirror::calibrate({facingLeft()});
  SideBody bent = facingLeft();
  bent.head.x -= 50;  // the head forward over the torso: rounding
  bent.nose->x -= 50;
  bent.ear->x -= 50;
  auto r = BodyMirror::sidePose(bent, neutral);
  EXPECT_GT(r.pose.spineFlex, 6);
  EXPECT_TRUE(r.measured.contains(Joint::spineFlex));
  // A bent trunk hides the head's shift.
  EXPECT_FALSE(r.measured.contains(Joint::headForward));
  // The near elbow straight below the near shoulder is the figure's right arm.
  EXPECT_NEAR(r.pose.armR.upper, 0, 1e-9);
  EXPECT_TRUE(r.measured.contains(Joint::armR));
  EXPECT_FALSE(r.measured.contains(Joint::armL));

  const auto still = BodyMirror::sidePose(facingLeft(), neutral);
  EXPECT_NEAR(still.pose.spineFlex, 0, 1e-9);
  EXPECT_NEAR(still.pose.headForward, 0, 1e-9);
  EXPECT_NEAR(still.pose.neckFlex, 0, 1e-9);
}

TEST(BodyMirrorSide, ABandFarAheadOfNeutralIsAnArmReachingForward) {
  SideBody calm = facingLeft();
  calm.elbowR.reset();
  const auto neutral = BodyMirror::calibrate({calm});
  SideBody reaching = calm;
  reaching.band->lo = 530 - 200;  // 20 cm further forward
  reaching.band->loY = 360;       // level with the shoulder
  const auto r = BodyMirror::sidePose(reaching, neutral);
  EXPECT_NEAR(r.pose.armR.upper, 90, 1e-9);
  EXPECT_NEAR(r.pose.armR.fore, 90, 1e-9);
  EXPECT_TRUE(r.measured.contains(Joint::armR));
}

TEST(BodyMirrorSide, ArmsWideningTheTorsoRowLeaveTheTrunkWhereItIs) {
  const auto neutral = BodyMirror::calibrate({facingLeft()});
  // Hands clasped behind the back push the row's back edge 20 cm out.
  SideBody clasped = facingLeft();
  clasped.torso->hi += 200;
  clasped.wristR = Point{900, 200};
  EXPECT_NEAR(BodyMirror::sidePose(clasped, neutral).pose.spineFlex, 0, 1e-9);
  // Arms held ahead at the row's height push its front edge out instead.
  SideBody holding = facingLeft();
  holding.torso->lo -= 200;
  holding.wristR = Point{400, 250};
  EXPECT_NEAR(BodyMirror::sidePose(holding, neutral).pose.spineFlex, 0, 1e-9);
  // An arched trunk behind clasped hands still reads as arched.
  clasped.head.x += 50;
  EXPECT_LT(BodyMirror::sidePose(clasped, neutral).pose.spineFlex, -6);
}

}  // namespace
}  // namespace sodam
