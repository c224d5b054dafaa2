#include "sim/virtual_sitter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "sim/sitter_geometry.h"
#include "support/numeric.h"

namespace sodam {

using namespace sitter_geometry;

namespace {

// A rigid head: nose and chin below the eye line and ahead of it, towards
// the camera (ahead is -z).
constexpr Vec3 noseOffset{0, -3.5, -1.8};
constexpr Vec3 chinOffset{0, -11.0, -0.5};

template <typename T>
void sortByX(T& left, T& right) {
  if (right.x < left.x) std::swap(left, right);
}

// Beyond this turn of the face no face is found; the body pose still sees the head.
constexpr double faceFoundDeg = 60;
// Nor beyond this tip of the face downwards.
constexpr double faceFoundPitchDeg = 50;
// Beyond these a far eye or ear is hidden behind the head.
constexpr double eyeHiddenDeg = 70;
constexpr double earHiddenDeg = 40;
// Beyond this a trunk's far side is only half seen, through the body.
constexpr double farSideDeg = 50;
constexpr float seenConfidence = 0.9f;
constexpr float farSideConfidence = 0.3f;
constexpr float hiddenConfidence = 0.05f;
// A chair turned this far is drawn in outline rather than as a face and torso.
constexpr double outlineTurnDeg = 30;

// Head landmarks relative to the eye midpoint, ahead is -z.
constexpr double earOutCm = 7.2;
constexpr Vec3 earOffset{0, -2, 8.5};
constexpr Vec3 headCentreOffset{0, 1.5, 7.5};
constexpr Vec3 neckTopOffset{0, -9, 5};
constexpr double headHalfWidthCm = 7.5;
constexpr double headHalfDepthCm = 10;
constexpr double headHalfHeightCm = 12;
constexpr double neckRadiusCm = 6;
constexpr double chestHalfWidthCm = 19;
constexpr double chestHalfDepthCm = 11;
constexpr double trapeziusCm = 3;
constexpr double hipHalfWidthCm = 17;
constexpr double hipHalfDepthCm = 12;
constexpr double hipJointOutCm = 9;
constexpr double upperArmRadiusCm = 5;
constexpr double forearmRadiusCm = 4;
// Shoulder blades drawn together move the shoulders this far back.
constexpr double retractCm = 1;

double halfExtent(double across, double deep, double turnDeg) {
  return std::hypot(across * std::cos(rad(turnDeg)), deep * std::sin(rad(turnDeg)));
}

Vec3 fromAngles(double outDeg, double forwardDeg) {
  return {std::sin(rad(outDeg)), -std::cos(rad(outDeg)) * std::cos(rad(forwardDeg)),
          std::sin(rad(forwardDeg))};
}

}  // namespace

SitterArm SitterArm::frontal(double upperDeg, double foreDeg) {
  return {fromAngles(upperDeg, 0), fromAngles(foreDeg, 0)};
}

SitterArm SitterArm::sagittal(double upperDeg, double foreDeg) {
  return {{0, -std::cos(rad(upperDeg)), std::sin(rad(upperDeg))},
          {0, -std::cos(rad(foreDeg)), std::sin(rad(foreDeg))}};
}

bool SitterBody::still() const {
  return turnDeg == 0 && sideBendDeg == 0 && flexDeg == 0 && twistDeg == 0 && shrugLCm == 0 &&
         shrugRCm == 0 && retract == 0;
}

void VirtualSitter::setNoise(double sigmaPx, std::uint32_t seed) {
  noise_ = PixelNoise(sigmaPx, seed);
  bodyNoise_ = PixelNoise(sigmaPx, seed ^ 0x9e3779b9u);
}

LidCamera VirtualSitter::camera() const {
  return LidCamera::onLid(laptop.lidDeg, laptop.displayHeightCm, laptop.frame);
}

Vec3 VirtualSitter::eyeMidWorld() const {
  return headPoint({0, 0, 0});
}

Vec3 VirtualSitter::shoulderMidWorld() const {
  return carried({posture.sideCm, build.eyeHeightCm - build.neckCm,
                  posture.distanceCm + build.shouldersBehindEyesCm});
}

Vec3 VirtualSitter::hipWorld() const {
  return {posture.sideCm, build.eyeHeightCm - build.neckCm - build.hipsBelowShouldersCm,
          posture.distanceCm + build.shouldersBehindEyesCm};
}

// Twisted first about the spine, then bent sideways and forward over the
// hips, then turned with the chair.
Vec3 VirtualSitter::turned(Vec3 v) const {
  return yawed(pitched(rolled(yawed(v, body.twistDeg), body.sideBendDeg), body.flexDeg),
               body.turnDeg);
}

Vec3 VirtualSitter::carried(Vec3 upright) const {
  if (body.still()) return upright;
  const Vec3 hip = hipWorld();
  return plus(hip, turned({upright.x - hip.x, upright.y - hip.y, upright.z - hip.z}));
}

Vec3 VirtualSitter::headPoint(Vec3 offset) const {
  const Vec3 mid{posture.sideCm + posture.leanCm,
                 build.eyeHeightCm - posture.headDropCm - look().dropCm,
                 posture.distanceCm - posture.forwardHeadCm};
  return carried(plus(mid, turnHead(offset)));
}

double VirtualSitter::faceYawDeg() const {
  return posture.headYawDeg + body.twistDeg + body.turnDeg;
}

bool VirtualSitter::faceFound() const {
  return std::abs(faceYawDeg()) <= faceFoundDeg &&
         posture.headPitchDeg + look().pitchDeg <= faceFoundPitchDeg;
}

Vec3 VirtualSitter::shoulderWorld(bool left) const {
  const double half = build.shoulderWidthCm / 2;
  const Vec3 mid{posture.sideCm, build.eyeHeightCm - build.neckCm,
                 posture.distanceCm + build.shouldersBehindEyesCm};
  Vec3 point = plus(mid, rolled({left ? half : -half, 0, 0}, posture.shoulderRollDeg));
  if (!body.still()) {
    point = plus(point, {0, left ? body.shrugLCm : body.shrugRCm, body.retract * retractCm});
  }
  return carried(point);
}

// The arms keep their angles to the vertical while the trunk bends, as the
// figure draws them; they turn with the chair and the twist. Outward is the
// person's own side.
Vec3 VirtualSitter::armDirection(Vec3 d, bool left) const {
  return yawed(yawed({left ? d.x : -d.x, d.y, -d.z}, body.twistDeg), body.turnDeg);
}

Vec3 VirtualSitter::elbowWorld(bool left) const {
  const Vec3 d = arm(left).upper;
  return plus(shoulderWorld(left), scaled(armDirection(d, left), build.upperArmCm));
}

Vec3 VirtualSitter::wristWorld(bool left) const {
  const Vec3 d = arm(left).fore;
  return plus(elbowWorld(left), scaled(armDirection(d, left), build.forearmCm));
}

double VirtualSitter::eyeDistanceCm() const {
  const Vec3 eye = eyeMidWorld(), cam = camera().position;
  return std::sqrt(std::pow(eye.x - cam.x, 2) + std::pow(eye.y - cam.y, 2) +
                   std::pow(eye.z - cam.z, 2));
}

Vec3 VirtualSitter::turnHead(Vec3 offset) const {
  return rolled(yawed(pitched(offset, posture.headPitchDeg + look().pitchDeg), posture.headYawDeg),
                posture.headRollDeg);
}

VirtualSitter::Head VirtualSitter::headWorld() const {
  const double half = build.eyeSpacingCm / 2;
  return {headPoint({-half, 0, 0}), headPoint({half, 0, 0}), headPoint(noseOffset),
          headPoint(chinOffset)};
}

std::optional<Point> VirtualSitter::detected(const LidCamera& cam, Vec3 world) {
  auto p = cam.project(world);
  if (!p || !cam.inFrame(*p)) return std::nullopt;
  p->x += noise_.next();
  p->y += noise_.next();
  return p;
}

std::optional<Measurement> VirtualSitter::render() {
  if (!present || !faceFound()) return std::nullopt;
  const LidCamera cam = camera();
  const Head head = headWorld();
  auto eyeL = detected(cam, head.eyeL);
  auto eyeR = detected(cam, head.eyeR);
  if (!eyeL || !eyeR) return std::nullopt;
  sortByX(*eyeL, *eyeR);

  Measurement m;
  m.size = laptop.frame;
  m.eyeL = *eyeL;
  m.eyeR = *eyeR;
  m.yaw = rad(faceYawDeg());
  const Look now = look();
  m.aperture = now.aperture;
  m.pupil = now.pupil;
  addFace(m, cam, head);
  addShoulders(m, cam);
  addTorso(m, cam);
  return m;
}

std::vector<Measurement> VirtualSitter::frames(int count) {
  std::vector<Measurement> result;
  for (int i = 0; i < count; ++i) {
    if (auto m = render()) result.push_back(*m);
  }
  return result;
}

void VirtualSitter::addFace(Measurement& m, const LidCamera& cam, const Head& head) {
  m.nose = detected(cam, head.nose);
  m.chin = detected(cam, head.chin);
  if (!m.nose || !m.chin) return;
  const double eyeMidY = (m.eyeL.y + m.eyeR.y) / 2;
  const double chinDepth = eyeMidY - m.chin->y;
  // A chin at or above the eyes is no face a detector would report a proportion for.
  if (chinDepth > 0) m.faceRatio = (eyeMidY - m.nose->y) / chinDepth;
}

void VirtualSitter::addShoulders(Measurement& m, const LidCamera& cam) {
  auto left = detected(cam, shoulderWorld(false));
  auto right = detected(cam, shoulderWorld(true));
  if (!left || !right) return;
  sortByX(*left, *right);
  m.shoulderL = left;
  m.shoulderR = right;
}

// The outline's width along one image row below the shoulders, as a person
// segmentation would give it; the outline is cut at the frame's sides.
void VirtualSitter::addTorso(Measurement& m, const LidCamera& cam) {
  const Vec3 centre = plus(shoulderMidWorld(), {0, -build.torsoRowBelowShouldersCm, 0});
  const double half = build.torsoWidthCm / 2;
  const auto left = cam.project(plus(centre, {-half, 0, 0}));
  const auto right = cam.project(plus(centre, {half, 0, 0}));
  if (!left || !right || left->y < 0 || left->y > cam.frame.height) return;
  const double lo = std::max(0.0, left->x + noise_.next());
  const double hi = std::min(cam.frame.width, right->x + noise_.next());
  if (hi <= lo) return;
  m.torsoWidth = hi - lo;
  m.torsoY = left->y;
}

}  // namespace sodam

namespace sodam {

namespace {

using BodyJoint = Detections::BodyJoint;

float sideConfidence(bool left, double turnDeg, double hiddenBeyondDeg, float hidden) {
  // Turned to the right, the person's left side faces the camera.
  const bool away = left ? turnDeg < -hiddenBeyondDeg : turnDeg > hiddenBeyondDeg;
  return away ? hidden : seenConfidence;
}

}  // namespace

std::optional<SimPerson> VirtualSitter::view() {
  if (!present) return std::nullopt;
  const LidCamera cam = camera();
  auto face = render();
  Measurement faceless;
  faceless.size = laptop.frame;
  faceless.fromBody = true;
  SimPerson person(face ? std::move(*face) : faceless);
  person.body = bodyPose(cam);
  addHands(person, cam);
  if (person.face.fromBody || std::abs(body.turnDeg) >= outlineTurnDeg) {
    person.outline = outline(cam);
  }
  return person;
}

Detections::BodyPose VirtualSitter::bodyPose(const LidCamera& cam) {
  Detections::BodyPose pose;
  const double face = faceYawDeg();
  const double trunk = body.turnDeg + body.twistDeg;
  const double half = build.eyeSpacingCm / 2;
  auto put = [&](BodyJoint joint, Vec3 world, float confidence) {
    auto p = cam.project(world);
    if (!p) return;
    p->x += bodyNoise_.next();
    p->y += bodyNoise_.next();
    const Point n{p->x / cam.frame.width, p->y / cam.frame.height};
    if (n.x < 0 || n.x > 1 || n.y < 0 || n.y > 1) return;
    pose[joint] = Detections::Joint{n, confidence};
  };
  put(BodyJoint::nose, headPoint(noseOffset),
      std::abs(face) < 100 ? seenConfidence : hiddenConfidence);
  for (bool left : {true, false}) {
    const double out = left ? 1 : -1;
    put(left ? BodyJoint::leftEye : BodyJoint::rightEye, headPoint({out * half, 0, 0}),
        sideConfidence(left, face, eyeHiddenDeg, hiddenConfidence));
    put(left ? BodyJoint::leftEar : BodyJoint::rightEar,
        headPoint({out * earOutCm, earOffset.y, earOffset.z}),
        sideConfidence(left, face, earHiddenDeg, hiddenConfidence));
    const float limb = sideConfidence(left, trunk, farSideDeg, farSideConfidence);
    put(left ? BodyJoint::leftShoulder : BodyJoint::rightShoulder, shoulderWorld(left), limb);
    put(left ? BodyJoint::leftElbow : BodyJoint::rightElbow, elbowWorld(left), limb);
    put(left ? BodyJoint::leftWrist : BodyJoint::rightWrist, wristWorld(left), limb);
    put(left ? BodyJoint::leftHip : BodyJoint::rightHip,
        plus(hipWorld(), yawed({out * hipJointOutCm, 0, 0}, body.turnDeg)),
        sideConfidence(left, body.turnDeg, farSideDeg, farSideConfidence));
  }
  put(BodyJoint::neck, shoulderMidWorld(), seenConfidence);
  put(BodyJoint::root, hipWorld(), seenConfidence);
  return pose;
}

// Head, neck, chest down to the hips and the arms, each projected with the
// size it has at its own depth.
Outline VirtualSitter::outline(const LidCamera& cam) const {
  Outline shape;
  auto pixelsPerCm = [&](Vec3 world) { return cam.focalPx / cam.toCamera(world).z; };
  const Vec3 head = headPoint(headCentreOffset);
  if (auto c = cam.project(head)) {
    const double k = pixelsPerCm(head);
    shape.ellipses.push_back(
        {*c, halfExtent(headHalfWidthCm, headHalfDepthCm, faceYawDeg()) * k, headHalfHeightCm * k});
  }
  const Vec3 shoulders = shoulderMidWorld();
  auto capsule = [&](Vec3 a, Vec3 b, double radiusCm) {
    const auto pa = cam.project(a), pb = cam.project(b);
    if (pa && pb) shape.addCapsule(*pa, *pb, radiusCm * pixelsPerCm(a));
  };
  capsule(headPoint(neckTopOffset), shoulders, neckRadiusCm);
  const double chest = halfExtent(chestHalfWidthCm, chestHalfDepthCm, body.turnDeg + body.twistDeg);
  const double hips = halfExtent(hipHalfWidthCm, hipHalfDepthCm, body.turnDeg);
  const Vec3 hip = hipWorld();
  const auto a = cam.project(plus(shoulders, {-chest, trapeziusCm, 0}));
  const auto b = cam.project(plus(shoulders, {chest, trapeziusCm, 0}));
  const auto c = cam.project(plus(hip, {hips, 0, 0}));
  const auto d = cam.project(plus(hip, {-hips, 0, 0}));
  if (a && b && c && d) shape.quads.push_back({{*a, *b, *c, *d}});
  for (bool left : {true, false}) {
    capsule(shoulderWorld(left), elbowWorld(left), upperArmRadiusCm);
    capsule(elbowWorld(left), wristWorld(left), forearmRadiusCm);
  }
  return shape;
}

}  // namespace sodam
