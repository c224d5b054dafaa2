// The mirror facing the camera: head, shoulders and trunk from the Metrics,
// arms from the arm joints.
#include "coach/body_mirror.h"

#include <algorithm>
#include <cmath>

#include "coach/body_mirror_links.h"
#include "support/numeric.h"

namespace sodam {

namespace BodyMirror {

namespace {

using Joint = FollowScore::Joint;
using links::forearmCm;
using links::headShiftCm;
using links::upperArmCm;

// A full shrug lifts the shoulders 3 cm towards the eyes.
constexpr double shrugCm = 3;
// Degrees of shoulder tilt that make one shoulder a full shrug above the other.
constexpr double tiltPerShrug = 12;
// The trunk's side bend per centimetre of the head's sideways shift.
constexpr double bendPerLeanCm = -2.2;

// Where the shoulder is guessed without one, in the eye spacing's centimetres.
constexpr double shoulderBelowJointCm = 3;
constexpr double shoulderBelowEyesCm = 22;
constexpr double shoulderBesideEyesCm = 19;

struct ArmPoints {
  std::optional<Point> shoulder, elbow, wrist;
};

// Measurement and Arms name points by the image's sides; the person's left
// arm is the one on the image's right, the larger x.
ArmPoints armPoints(const Measurement& m, ArmSide side) {
  const Arms arms = m.arms.value_or(Arms{});
  if (side == ArmSide::left) return {arms.shoulderR, arms.elbowR, arms.wristR};
  return {arms.shoulderL, arms.elbowL, arms.wristL};
}

Point shoulderOf(const Measurement& m, ArmSide side, const ArmPoints& points, double u) {
  if (points.shoulder) return *points.shoulder;
  const auto joint = side == ArmSide::left ? m.shoulderR : m.shoulderL;
  if (joint) return {joint->x, joint->y - shoulderBelowJointCm * u};
  const Point eyes = m.eyeMid();
  const double outward = side == ArmSide::left ? 1 : -1;
  return {eyes.x + outward * shoulderBesideEyesCm * u, eyes.y - shoulderBelowEyesCm * u};
}

double angle(Point from, Point to, ArmSide side, Stage stage) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  if (stage == Stage::side) {
    const double length = std::max(std::hypot(dx, dy), 0.000001);
    return deg(std::acos(clamp(-dy / length, -1, 1)));
  }
  return side == ArmSide::left ? deg(std::atan2(dx, -dy)) : deg(std::atan2(-dx, -dy));
}

}  // namespace

std::optional<Limb> arm(const Measurement& m, ArmSide side, Stage stage) {
  const ArmPoints points = armPoints(m, side);
  if (!points.elbow && !points.wrist) return std::nullopt;
  const double u = distance(m.eyeL, m.eyeR) / Optics::ipdCm;
  const Point shoulder = shoulderOf(m, side, points, u);
  Point elbow;
  if (points.elbow) {
    elbow = *points.elbow;
  } else {
    const auto [a, b] = links::elbows(shoulder, *points.wrist, upperArmCm * u, forearmCm * u);
    const bool aOutward = side == ArmSide::left ? a.x >= b.x : a.x <= b.x;
    elbow = aOutward ? a : b;
  }
  Limb limb;
  limb.upper = angle(shoulder, elbow, side, stage);
  limb.fore = points.wrist ? angle(elbow, *points.wrist, side, stage) : limb.upper;
  return limb;
}

Reading pose(const Metrics& metrics, const Measurement& m, bool shoulders, Stage stage) {
  Reading r{stage == Stage::side ? Pose::side() : Pose::front(),
            {Joint::neckSide, Joint::headTurn}};
  Pose& p = r.pose;
  p.neckSide = clamp(metrics.headTilt, -45, 45);
  p.headTurn = clamp(metrics.turn, -70, 70);
  // A body seen without its face says nothing of the head's nod or shift.
  if (!m.fromBody) {
    p.neckFlex = clamp(metrics.flexion.value_or(0), -50, 55);
    if (metrics.flexion) r.measured.insert(Joint::neckFlex);
    const double shift = metrics.headForward.value_or(metrics.closer / 2);
    p.headForward = clamp(shift / headShiftCm, -1.5, 1.5);
    r.measured.insert(Joint::headForward);
  }
  if (shoulders) {
    const double lift = clamp(metrics.neckDrop.value_or(0) / shrugCm, -0.6, 1.3);
    const double tilt = metrics.shoulderTilt.value_or(0) / tiltPerShrug;
    p.shrugL = lift + tilt;
    p.shrugR = lift - tilt;
    r.measured.insert(Joint::shrugL);
    r.measured.insert(Joint::shrugR);
  }
  p.spineSide = clamp(metrics.lean.value_or(0) * bendPerLeanCm, -30, 30);
  if (metrics.lean) r.measured.insert(Joint::spineSide);
  if (m.arms) {
    if (auto limb = arm(m, ArmSide::left, stage)) {
      p.armL = *limb;
      r.measured.insert(Joint::armL);
    }
    if (auto limb = arm(m, ArmSide::right, stage)) {
      p.armR = *limb;
      r.measured.insert(Joint::armR);
    }
  }
  return r;
}

}  // namespace BodyMirror

}  // namespace sodam
