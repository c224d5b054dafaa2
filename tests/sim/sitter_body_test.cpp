#include <gtest/gtest.h>

#include "posture/pose_reader.h"
#include "sim/sim_detections.h"
#include "sim/virtual_sitter.h"

namespace sodam {
namespace {

using BodyJoint = Detections::BodyJoint;

// What the pose reader makes of the sitter, body and arms asked for.
PoseReader::Result read(VirtualSitter& sitter) {
  Detections d;
  FramePlan plan;
  plan.bodyAndHands = true;
  plan.person = true;
  SimDetections().render(sitter.view(), sitter.laptop.frame, plan, d);
  PoseReader reader;
  return reader.read(d, true, false, false);
}

TEST(SitterBody, AStillBodyDrawsTheSameFaceAsBefore) {
  VirtualSitter plain, articulated;
  articulated.body.armL = SitterArm::frontal(90, 90);
  EXPECT_EQ(plain.render(), articulated.render());
  EXPECT_EQ(articulated.view()->face, *plain.render());
  EXPECT_FALSE(articulated.view()->outline);
}

TEST(SitterBody, ARaisedLeftArmShowsOnTheImagesRight) {
  VirtualSitter sitter;
  sitter.posture.distanceCm = 80;
  sitter.body.armL = SitterArm::frontal(90, 90);  // straight out to the side
  const auto result = read(sitter);
  ASSERT_TRUE(result.measurement && result.measurement->arms);
  const Arms& arms = *result.measurement->arms;
  ASSERT_TRUE(arms.shoulderR && arms.elbowR);
  EXPECT_GT(arms.elbowR->x, arms.shoulderR->x + 100);
  EXPECT_NEAR(arms.elbowR->y, arms.shoulderR->y, 40);
  // The hanging right arm's elbow is below the picture at this distance.
  EXPECT_FALSE(arms.elbowL);
}

TEST(SitterBody, BendingAndShruggingMoveTheHeadAndShouldersAsTheBodyWould) {
  VirtualSitter upright, bent, shrugged;
  bent.body.sideBendDeg = 8;  // to the person's right: the image's left
  shrugged.body.shrugLCm = 3;
  shrugged.body.shrugRCm = 3;
  const auto u = *upright.render(), b = *bent.render(), s = *shrugged.render();
  ASSERT_TRUE(b.shoulderL && b.shoulderR);
  EXPECT_LT(b.eyeMid().x, u.eyeMid().x - 100);
  EXPECT_LT(b.shoulderL->y, b.shoulderR->y);  // the image-left shoulder drops
  EXPECT_GT(s.shoulderL->y, u.shoulderL->y + 20);
  EXPECT_EQ(s.eyeMid(), u.eyeMid());
}

TEST(SitterBody, TurnedSidewaysTheFaceIsLostAndTheSideViewReadsSideways) {
  VirtualSitter sitter;
  sitter.body.turnDeg = 80;
  sitter.posture.distanceCm = 120;
  sitter.laptop.lidDeg = 92;
  EXPECT_FALSE(sitter.render());
  const auto person = sitter.view();
  ASSERT_TRUE(person && person->body && person->outline);
  EXPECT_TRUE(person->face.fromBody);
  // The near (left) shoulder is sure, the far one half seen through the body.
  EXPECT_GT((*person->body)[BodyJoint::leftShoulder]->confidence, 0.8f);
  EXPECT_LT((*person->body)[BodyJoint::rightShoulder]->confidence, 0.5f);
  EXPECT_LT((*person->body)[BodyJoint::rightEar]->confidence, 0.2f);

  const auto result = read(sitter);
  EXPECT_FALSE(result.measurement);
  ASSERT_TRUE(result.side && result.side->torso);
  EXPECT_EQ(result.side->sideways, true);
  EXPECT_FALSE(result.side->torso->clipped);
  // Facing the image's left: the nose ahead of the ear, the sure shoulder on the right.
  EXPECT_LT(result.side->nose->x, result.side->ear->x);
  EXPECT_GT(result.side->confR, result.side->confL);
}

TEST(SitterBody, RoundingForwardMovesTheHeadOverTheTorsoInTheSideView) {
  VirtualSitter upright, rounded;
  for (auto* s : {&upright, &rounded}) {
    s->body.turnDeg = 80;
    s->posture.distanceCm = 120;
    s->laptop.lidDeg = 92;
  }
  rounded.body.flexDeg = 15;
  const auto a = read(upright).side, b = read(rounded).side;
  ASSERT_TRUE(a && b && a->torso && b->torso);
  const double before = a->head.x - (a->torso->lo + a->torso->hi) / 2;
  const double after = b->head.x - (b->torso->lo + b->torso->hi) / 2;
  EXPECT_LT(after, before - 20);  // further towards the image's left
}

}  // namespace
}  // namespace sodam
