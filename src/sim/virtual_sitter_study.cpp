// The virtual sitter at study: hands that rest by a book, hold a phone,
// prop the chin or go to the mouth, reached by bending the arm at the elbow;
// the gaze that follows them; and nodding off, the lids closing first and
// the head sinking after. Drawn through the body and hand pose joints and
// the phone the scene classifier sees, like everything else the sitter does.
#include <algorithm>
#include <array>

#include "sim/sitter_geometry.h"
#include "sim/virtual_sitter.h"

namespace sodam {

using namespace sitter_geometry;

namespace {

using HandJoint = Detections::HandJoint;

// Where the hands go, in centimetres: on the desk ahead of the shoulders;
// together below the chin and ahead of the face for a phone; just under the
// chin, or at the mouth, a little ahead of the face.
constexpr double deskAheadCm = 30;
constexpr double deskOutCm = 13;
constexpr double deskHeightCm = 3;
constexpr double phoneBelowChinCm = 15;
constexpr double phoneAheadCm = 20;
constexpr double phoneOutCm = 4;
constexpr Vec3 chinRestFromChin{-1.5, -7, -3.5};
constexpr Vec3 mouthFromChin{1.5, 2.5, -4};
constexpr Vec3 phoneFromWrists{0, 3, -4};
// The elbow bends down, a little out and back, as a seated arm does.
constexpr Vec3 elbowPole{0.4, -1, 0.3};

// Looking at what the hands hold, and nodding off.
constexpr double phonePitchDeg = 20;
constexpr double handPitchDeg = 5;
constexpr double phoneApertureShare = 0.8;
constexpr Point pupilDown{0.5, 0.28};
constexpr double lidsClosedBy = 0.3;  // of the doze
constexpr double lidsClosedShare = 0.8;
constexpr double sunkPitchDeg = 70;
constexpr double sunkDropCm = 7;

constexpr float handConfidence = 0.8f;

// The elbow of a two-segment arm from the shoulder to the target, bent
// towards the pole; a target out of reach is reached for along its line.
Vec3 elbowFor(Vec3 shoulder, Vec3 target, double upper, double fore, Vec3 pole) {
  const Vec3 v = minus(target, shoulder);
  const double reach = std::clamp(length(v), std::abs(upper - fore) + 0.01, upper + fore - 0.01);
  const Vec3 u = scaled(v, 1 / std::max(length(v), 1e-9));
  Vec3 p = minus(pole, scaled(u, dot(pole, u)));
  if (length(p) < 1e-9) p = cross(u, {1, 0, 0});
  p = scaled(p, 1 / length(p));
  const double cosA = (upper * upper + reach * reach - fore * fore) / (2 * upper * reach);
  const double sinA = std::sqrt(std::max(0.0, 1 - cosA * cosA));
  return plus(shoulder, scaled(plus(scaled(u, cosA), scaled(p, sinA)), upper));
}

Vec3 unit(Vec3 v) {
  return scaled(v, 1 / std::max(length(v), 1e-9));
}

}  // namespace

VirtualSitter::Look VirtualSitter::look() const {
  Look look;
  look.aperture = aperture;
  look.pupil = pupil;
  if (hands == SitterHands::phone) {
    look.pitchDeg = phonePitchDeg;
    if (look.aperture) *look.aperture *= phoneApertureShare;
    look.pupil = pupilDown;
  } else if (hands == SitterHands::chin || hands == SitterHands::mouth) {
    look.pitchDeg = handPitchDeg;
  }
  const double closing = std::clamp(doze / lidsClosedBy, 0.0, 1.0);
  const double sinking = std::clamp((doze - lidsClosedBy) / (1 - lidsClosedBy), 0.0, 1.0);
  if (look.aperture) *look.aperture *= 1 - lidsClosedShare * closing;
  look.pitchDeg += sunkPitchDeg * sinking;
  look.dropCm = sunkDropCm * sinking;
  return look;
}

std::optional<Vec3> VirtualSitter::handTarget(bool left) const {
  const double out = left ? 1 : -1;
  const Vec3 shoulders = shoulderMidWorld();
  const Vec3 desk{shoulders.x + out * deskOutCm, deskHeightCm, shoulders.z - deskAheadCm};
  const Vec3 chin{posture.sideCm + posture.leanCm, build.eyeHeightCm - posture.headDropCm - 11,
                  posture.distanceCm - posture.forwardHeadCm};
  switch (hands) {
    case SitterHands::lap:
      return std::nullopt;
    case SitterHands::desk:
      return desk;
    case SitterHands::phone:
      return Vec3{chin.x + out * phoneOutCm, chin.y - phoneBelowChinCm, chin.z - phoneAheadCm};
    case SitterHands::chin:
      return left ? desk : plus(headPoint({0, -11.0, -0.5}), chinRestFromChin);
    case SitterHands::mouth:
      return left ? plus(headPoint({0, -11.0, -0.5}), mouthFromChin) : desk;
  }
  return std::nullopt;
}

// The arm in its own terms (outward, up, forward, before the chair and the
// twist turn it), bent so that the wrist meets the target.
SitterArm VirtualSitter::arm(bool left) const {
  const auto target = handTarget(left);
  if (!target) return left ? body.armL : body.armR;
  const Vec3 shoulder = shoulderWorld(left);
  const Vec3 pole{left ? elbowPole.x : -elbowPole.x, elbowPole.y, elbowPole.z};
  const Vec3 elbow = elbowFor(shoulder, *target, build.upperArmCm, build.forearmCm, pole);
  const Vec3 wrist = plus(elbow, scaled(unit(minus(*target, elbow)), build.forearmCm));
  auto own = [&](Vec3 world) {
    const Vec3 d = yawed(unit(world), -(body.twistDeg + body.turnDeg));
    return Vec3{left ? d.x : -d.x, d.y, -d.z};
  };
  return {own(minus(elbow, shoulder)), own(minus(wrist, elbow))};
}

std::optional<Vec3> VirtualSitter::phoneWorld() const {
  if (hands != SitterHands::phone) return std::nullopt;
  const Vec3 a = wristWorld(true), b = wristWorld(false);
  return plus(scaled(plus(a, b), 0.5), phoneFromWrists);
}

// A hand as the hand pose detector gives it: the wrist, the thumb's four
// joints to the inside, and four fingers of four joints fanned across the
// palm, all carried on along the forearm.
void VirtualSitter::addHands(SimPerson& person, const LidCamera& cam) {
  if (hands == SitterHands::lap) return;
  for (bool left : {true, false}) {
    const Vec3 wrist = wristWorld(left);
    const Vec3 along = unit(minus(wrist, elbowWorld(left)));
    Vec3 across = cross(along, {0, 1, 0});
    across = length(across) < 1e-6 ? Vec3{1, 0, 0} : unit(across);
    Detections::HandPose hand;
    auto put = [&](HandJoint joint, double ahead, double side) {
      auto p = cam.project(plus(wrist, plus(scaled(along, ahead), scaled(across, side))));
      if (!p) return;
      const Point n{(p->x + bodyNoise_.next()) / cam.frame.width,
                    (p->y + bodyNoise_.next()) / cam.frame.height};
      if (n.x < 0 || n.x > 1 || n.y < 0 || n.y > 1) return;
      hand[joint] = Detections::Joint{n, handConfidence};
    };
    put(HandJoint::wrist, 0, 0);
    const double inside = left ? -1 : 1;
    constexpr std::array thumb{HandJoint::thumbCMC, HandJoint::thumbMP, HandJoint::thumbIP,
                               HandJoint::thumbTip};
    for (std::size_t j = 0; j < thumb.size(); ++j)
      put(thumb[j], 2.0 + 1.8 * j, inside * (2.0 + 0.8 * j));
    for (int finger = 0; finger < 4; ++finger) {
      const auto first = static_cast<std::size_t>(HandJoint::indexMCP) + 4 * finger;
      for (int j = 0; j < 4; ++j) {
        put(static_cast<HandJoint>(first + j), 8.0 + 2.6 * j, inside * (1.5 - finger) * 1.8);
      }
    }
    if (hand[HandJoint::wrist]) person.hands.push_back(hand);
  }
  if (const auto phone = phoneWorld()) {
    if (auto p = cam.project(*phone); p && cam.inFrame(*p)) person.phone = p;
  }
}

}  // namespace sodam
