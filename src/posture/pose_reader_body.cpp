// Body and hand joints: the stand-in for a missing face, the arms and the
// side view.
//
// Rules for the arms (only the stretch coach and the focus watcher read them):
// - One body: the one with the best shoulder confidence (the sum of both
//   shoulders; the first on a tie). Its joints count at confidence 0.2 or more.
// - Left and right are the image's sides. When both joints of a pair are there
//   they are sorted by x; a lone joint goes to the side of the body's centre
//   (the shoulders' midpoint, else the face's centre) on which it lies. So a
//   wrist never jumps to the other side, and an unsure joint is left out
//   rather than guessed.
// - A wrist of a hand pose at confidence 0.3 or more is preferred to the
//   body's wrist on its side; of two hands on one side the surer one wins.
// - A wrist that lies within one face width of the last wrist on its side is
//   smoothed as half new, half last; a farther one is taken as it is, so a
//   lifted arm is followed at once. A side without a wrist forgets its last.
// - raisedHands, the search of the mask above the shoulders for a lifted hand
//   that the joints missed, gives nothing for now: the joints alone carry the
//   wrists.

#include <algorithm>

#include "posture/pose_reader_steps.h"
#include "support/numeric.h"

namespace sodam::pose_steps {

namespace {

using HandJoint = Detections::HandJoint;
using LastWrist = PoseReader::LastWrist;

constexpr double jointFloor = 0.2;
constexpr double handFloor = 0.3;
constexpr double standInFloor = 0.3;

float confidenceOf(const Detections::BodyPose& body, BodyJoint joint) {
  const auto& j = body[joint];
  return j ? j->confidence : 0.0f;
}

Point toImage(Point normalised, Size size) {
  return {normalised.x * size.width, normalised.y * size.height};
}

// A pair of joints placed on the image's sides, with the confidences of the
// joints that went to each side (also when a joint was too unsure to count).
struct SidePair {
  std::optional<Point> left, right;
  float confL = 0, confR = 0;
};

// personRight is on the image's left for a person facing the (unmirrored)
// camera; that is the side a joint's confidence goes to when neither counts.
SidePair pairBySide(const Detections::BodyPose& body, BodyJoint personRight, BodyJoint personLeft,
                    double centreX, Size size) {
  SidePair pair{std::nullopt, std::nullopt, confidenceOf(body, personRight),
                confidenceOf(body, personLeft)};
  const auto a = jointPoint(body, personRight, jointFloor, size);
  const auto b = jointPoint(body, personLeft, jointFloor, size);
  if (a && b) {
    if (a->x <= b->x) return {a, b, pair.confL, pair.confR};
    return {b, a, pair.confR, pair.confL};
  }
  if (a) {
    if (a->x < centreX) return {a, std::nullopt, pair.confL, pair.confR};
    return {std::nullopt, a, pair.confR, pair.confL};
  }
  if (b) {
    if (b->x < centreX) return {b, std::nullopt, pair.confR, pair.confL};
    return {std::nullopt, b, pair.confL, pair.confR};
  }
  return pair;
}

struct HandWrists {
  std::optional<LastWrist> left, right;
};

HandWrists handWrists(const Detections& d, double centreX) {
  HandWrists found;
  for (const auto& hand : d.hands) {
    const auto& wrist = hand[HandJoint::wrist];
    if (!wrist || wrist->confidence < handFloor) continue;
    const Point p = toImage(wrist->location, d.size);
    auto& side = p.x < centreX ? found.left : found.right;
    if (!side || side->confidence < wrist->confidence) side = LastWrist{p, wrist->confidence};
  }
  return found;
}

std::optional<Point> smoothWrist(std::optional<Point> wrist, std::optional<LastWrist>& last,
                                 double faceWidth) {
  if (!wrist) {
    last.reset();
    return std::nullopt;
  }
  Point p = *wrist;
  if (last && distance(p, last->point) < faceWidth)
    p = {(p.x + last->point.x) / 2, (p.y + last->point.y) / 2};
  last = LastWrist{p, 0};
  return p;
}

// Searching the mask for a lifted hand is not done yet: see the rules above.
HandWrists raisedHands(const Mask*, Rect, Size) {
  return {};
}

}  // namespace

std::optional<Point> jointPoint(const Detections::BodyPose& body, BodyJoint joint,
                                double minConfidence, Size size) {
  const auto& j = body[joint];
  if (!j || j->confidence < minConfidence) return std::nullopt;
  return toImage(j->location, size);
}

const Detections::BodyPose* bestBody(const Detections& d) {
  const Detections::BodyPose* best = nullptr;
  float bestScore = -1;
  for (const auto& body : d.bodies) {
    const float score =
        confidenceOf(body, BodyJoint::leftShoulder) + confidenceOf(body, BodyJoint::rightShoulder);
    if (score > bestScore) {
      best = &body;
      bestScore = score;
    }
  }
  return best;
}

std::optional<StandIn> standIn(const Detections& d) {
  const auto* body = bestBody(d);
  if (!body) return std::nullopt;
  const auto a = jointPoint(*body, BodyJoint::leftEye, standInFloor, d.size);
  const auto b = jointPoint(*body, BodyJoint::rightEye, standInFloor, d.size);
  if (!a || !b || distance(*a, *b) <= 4) return std::nullopt;

  StandIn s;
  s.eyeL = a->x <= b->x ? *a : *b;
  s.eyeR = a->x <= b->x ? *b : *a;
  s.nose = jointPoint(*body, BodyJoint::nose, standInFloor, d.size);
  // A face box of the usual proportions around the eyes, for the arm logic.
  const double width = 2.4 * distance(*a, *b);
  const double height = 1.3 * width;
  const Point mid{(a->x + b->x) / 2, (a->y + b->y) / 2};
  const Rect pixels{{mid.x - width / 2, mid.y - 0.62 * height}, {width, height}};
  s.face = Rect{{pixels.minX() / d.size.width, pixels.minY() / d.size.height},
                {width / d.size.width, height / d.size.height}};
  return s;
}

Arms readArms(const Detections& d, const Mask* mask, Rect face, std::optional<LastWrist>& lastL,
              std::optional<LastWrist>& lastR) {
  Arms arms;
  const auto* body = bestBody(d);
  double centreX = face.midX() * d.size.width;
  SidePair wrists;
  if (body) {
    const auto shoulders =
        pairBySide(*body, BodyJoint::rightShoulder, BodyJoint::leftShoulder, centreX, d.size);
    if (shoulders.left && shoulders.right) centreX = (shoulders.left->x + shoulders.right->x) / 2;
    const auto elbows =
        pairBySide(*body, BodyJoint::rightElbow, BodyJoint::leftElbow, centreX, d.size);
    wrists = pairBySide(*body, BodyJoint::rightWrist, BodyJoint::leftWrist, centreX, d.size);
    arms.shoulderL = shoulders.left;
    arms.shoulderR = shoulders.right;
    arms.elbowL = elbows.left;
    arms.elbowR = elbows.right;
  }
  const auto hands = handWrists(d, centreX);
  if (hands.left) wrists.left = hands.left->point;
  if (hands.right) wrists.right = hands.right->point;
  if (!wrists.left || !wrists.right) {
    const auto raised = raisedHands(mask, face, d.size);
    if (!wrists.left && raised.left) wrists.left = raised.left->point;
    if (!wrists.right && raised.right) wrists.right = raised.right->point;
  }
  const double faceWidth = face.size.width * d.size.width;
  arms.wristL = smoothWrist(wrists.left, lastL, faceWidth);
  arms.wristR = smoothWrist(wrists.right, lastR, faceWidth);
  return arms;
}

namespace {

struct Head {
  Point centre;
  double width = 0;
};

std::optional<Head> headOf(const Detections::BodyPose& body, Size size) {
  const auto earA = jointPoint(body, BodyJoint::rightEar, jointFloor, size);
  const auto earB = jointPoint(body, BodyJoint::leftEar, jointFloor, size);
  if (earA && earB)
    return Head{{(earA->x + earB->x) / 2, (earA->y + earB->y) / 2}, 1.7 * distance(*earA, *earB)};
  if (auto nose = jointPoint(body, BodyJoint::nose, jointFloor, size)) return Head{*nose, 0};
  for (auto eye : {BodyJoint::rightEye, BodyJoint::leftEye}) {
    if (auto p = jointPoint(body, eye, jointFloor, size)) return Head{*p, 0};
  }
  return std::nullopt;
}

// Measures the head on its row when the ears gave no width, then the torso a
// little lower; a head narrower than 4 pixels leaves the mask unused.
void measureOnMask(SideBody& side, const Mask& mask, Size size) {
  const MaskGrid grid{mask, size};
  const int headRow = grid.rowOf(side.head.y / size.height);
  if (headRow < 0 || headRow >= mask.height) return;
  int column = std::clamp(grid.columnOf(side.head.x / size.width), 0, mask.width - 1);
  const int reach = mask.width / 5;
  if (side.headWidth <= 0) {
    const auto start = mask.nearestPerson(column, headRow, reach);
    if (!start) return;
    const auto run = mask.runThrough(*start, headRow);
    const double width = (run->hi - run->lo) * grid.pixelsPerColumn();
    if (width <= 4) return;
    side.headWidth = width;
    column = (run->lo + run->hi) / 2;
  }
  const double headRows = side.headWidth / grid.pixelsPerRow();
  const int torsoRow = headRow + static_cast<int>(1.6 * headRows);
  if (torsoRow + 1.2 * headRows > mask.height) return;
  const auto start = mask.nearestPerson(column, torsoRow, reach);
  if (!start) return;
  const auto run = mask.runThrough(*start, torsoRow);
  const double y = grid.imageY(torsoRow);
  const bool clipped = run->lo == 0 || run->hi == mask.width - 1;
  side.torso = SideBody::Torso{grid.imageX(run->lo), grid.imageX(run->hi), y, clipped};
  side.band = SideBody::Band{grid.imageX(run->lo), y, grid.imageX(run->hi), y};
}

std::optional<Point> visibleEar(const Detections::BodyPose& body, Size size) {
  const bool rightSurer =
      confidenceOf(body, BodyJoint::rightEar) >= confidenceOf(body, BodyJoint::leftEar);
  return jointPoint(body, rightSurer ? BodyJoint::rightEar : BodyJoint::leftEar, jointFloor, size);
}

}  // namespace

std::optional<SideBody> readSide(const Detections& d, const Mask* mask,
                                 std::optional<double> faceRatio) {
  const auto* body = bestBody(d);
  if (!body) return std::nullopt;
  const auto head = headOf(*body, d.size);
  if (!head) return std::nullopt;

  SideBody side(head->centre, head->width);
  if (mask) measureOnMask(side, *mask, d.size);

  const double centreX = side.head.x;
  const auto shoulders =
      pairBySide(*body, BodyJoint::rightShoulder, BodyJoint::leftShoulder, centreX, d.size);
  side.shoulderL = shoulders.left;
  side.shoulderR = shoulders.right;
  side.confL = shoulders.confL;
  side.confR = shoulders.confR;
  const auto elbows =
      pairBySide(*body, BodyJoint::rightElbow, BodyJoint::leftElbow, centreX, d.size);
  const auto wrists =
      pairBySide(*body, BodyJoint::rightWrist, BodyJoint::leftWrist, centreX, d.size);
  const auto hips = pairBySide(*body, BodyJoint::rightHip, BodyJoint::leftHip, centreX, d.size);
  side.elbowL = elbows.left;
  side.elbowR = elbows.right;
  side.wristL = wrists.left;
  side.wristR = wrists.right;
  side.hipL = hips.left;
  side.hipR = hips.right;
  side.ear = visibleEar(*body, d.size);
  side.nose = jointPoint(*body, BodyJoint::nose, jointFloor, d.size);
  side.faceRatio = faceRatio;
  side.judge();
  return side;
}

}  // namespace sodam::pose_steps
