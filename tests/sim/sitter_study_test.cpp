#include <gtest/gtest.h>

#include "posture/pose_reader.h"
#include "sim/sim_detections.h"
#include "sim/virtual_sitter.h"
#include "support/numeric.h"

namespace sodam {
namespace {

// A student with the laptop pushed back and its screen upright.
VirtualSitter student(SitterHands hands) {
  VirtualSitter sitter;
  sitter.posture.distanceCm = 85;
  sitter.laptop.lidDeg = 90;
  sitter.hands = hands;
  return sitter;
}

// Two frames through the real detectors' plan and the pose reader, arms and
// the phone check asked for; the second is the one the classifier runs on.
struct Read {
  Detections detections;
  PoseReader::Result result;
};
Read read(VirtualSitter& sitter) {
  PoseReader reader;
  Read last;
  for (int frame = 0; frame < 2; ++frame) {
    const FramePlan plan = reader.plan(true, false, true);
    SimDetections().render(sitter.view(), sitter.laptop.frame, plan, last.detections);
    last.result = reader.read(last.detections, true, false, true);
  }
  return last;
}

TEST(SitterStudy, APhoneHeldLowScoresThroughTheClassifiersLabelsAndTheDeskDoesNot) {
  VirtualSitter holding = student(SitterHands::phone);
  const Read phone = read(holding);
  ASSERT_TRUE(phone.result.measurement);
  EXPECT_EQ(phone.detections.hands.size(), 2u) << "both hands through the hand pose";
  ASSERT_TRUE(phone.result.measurement->phone);
  EXPECT_GE(*phone.result.measurement->phone, 0.25f);
  EXPECT_LT(phone.result.measurement->pupil->y, 0.42) << "the gaze is down";
  // Together and low, in lengths of the face (eyes to chin).
  const Measurement& m = *phone.result.measurement;
  const Arms& arms = *m.arms;
  ASSERT_TRUE(arms.wristL && arms.wristR);
  const double face = distance(m.eyeMid(), *m.chin);
  EXPECT_LT(distance(*arms.wristL, *arms.wristR), 1.2 * face);
  const double below = (m.chin->y - (arms.wristL->y + arms.wristR->y) / 2) / face;
  EXPECT_GT(below, 0.3);
  EXPECT_LT(below, 2.4);

  VirtualSitter reading = student(SitterHands::desk);
  const Read desk = read(reading);
  ASSERT_TRUE(desk.result.measurement && desk.result.measurement->phone);
  EXPECT_LT(*desk.result.measurement->phone, 0.25f);
  EXPECT_GT(
      distance(*desk.result.measurement->arms->wristL, *desk.result.measurement->arms->wristR),
      200);
}

TEST(SitterStudy, AHandAtTheChinOrMouthIsTheWristBesideTheFace) {
  for (SitterHands hands : {SitterHands::chin, SitterHands::mouth}) {
    VirtualSitter sitter = student(hands);
    const Read r = read(sitter);
    ASSERT_TRUE(r.result.measurement && r.result.measurement->chin);
    const Measurement& m = *r.result.measurement;
    const Point chin = *m.chin;
    const double face = distance(m.eyeMid(), chin);
    // The chin on the right hand shows on the image's left; the left hand at the mouth on its
    // right.
    const auto wrist = hands == SitterHands::chin ? m.arms->wristL : m.arms->wristR;
    ASSERT_TRUE(wrist);
    EXPECT_LT(std::abs(wrist->x - chin.x), 0.8 * face);
    const double below = (chin.y - wrist->y) / face;
    if (hands == SitterHands::chin) {
      EXPECT_GT(below, 0.45);
      EXPECT_LT(below, 1.1);
    } else {
      EXPECT_GT(below, -0.6);
      EXPECT_LT(below, 0.45);
    }
  }
}

TEST(SitterStudy, NoddingOffClosesTheEyesFirstThenLosesTheFaceToTheBody) {
  VirtualSitter sitter = student(SitterHands::desk);
  sitter.doze = 0.3;
  const auto closing = read(sitter).result.measurement;
  ASSERT_TRUE(closing && closing->aperture);
  EXPECT_FALSE(closing->fromBody);
  EXPECT_LT(*closing->aperture, 0.62 * 0.3);

  sitter.doze = 1;
  const auto sunk = read(sitter).result.measurement;
  ASSERT_TRUE(sunk) << "the body still shows somebody there";
  EXPECT_TRUE(sunk->fromBody);
  EXPECT_FALSE(sunk->aperture);

  // Hands in the lap leave the sitter as it was before it could study.
  VirtualSitter plain, lap = student(SitterHands::lap);
  plain.posture = lap.posture;
  plain.laptop = lap.laptop;
  EXPECT_EQ(plain.render(), lap.render());
  EXPECT_TRUE(lap.view()->hands.empty());
}

}  // namespace
}  // namespace sodam
