#include "sim/virtual_sitter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "support/numeric.h"

namespace sodam {

namespace {

// A rigid head: nose and chin below the eye line and ahead of it, towards
// the camera (ahead is -z).
constexpr Vec3 noseOffset{0, -3.5, -1.8};
constexpr Vec3 chinOffset{0, -11.0, -0.5};

Vec3 plus(Vec3 a, Vec3 b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}

// Face tipping down: ahead (-z) turns towards down (-y).
Vec3 pitched(Vec3 v, double degrees) {
  const double c = std::cos(rad(degrees)), s = std::sin(rad(degrees));
  return {v.x, c * v.y + s * v.z, -s * v.y + c * v.z};
}

// Face turning to the image's left: ahead (-z) turns towards -x.
Vec3 yawed(Vec3 v, double degrees) {
  const double c = std::cos(rad(degrees)), s = std::sin(rad(degrees));
  return {c * v.x + s * v.z, v.y, -s * v.x + c * v.z};
}

// Counter-clockwise as the camera sees it: +x turns towards +y.
Vec3 rolled(Vec3 v, double degrees) {
  const double c = std::cos(rad(degrees)), s = std::sin(rad(degrees));
  return {c * v.x - s * v.y, s * v.x + c * v.y, v.z};
}

template <typename T>
void sortByX(T& left, T& right) {
  if (right.x < left.x) std::swap(left, right);
}

}  // namespace

void VirtualSitter::setNoise(double sigmaPx, std::uint32_t seed) {
  noise_ = PixelNoise(sigmaPx, seed);
}

LidCamera VirtualSitter::camera() const {
  return LidCamera::onLid(laptop.lidDeg, laptop.displayHeightCm, laptop.frame);
}

Vec3 VirtualSitter::eyeMidWorld() const {
  return {posture.sideCm + posture.leanCm, build.eyeHeightCm - posture.headDropCm,
          posture.distanceCm - posture.forwardHeadCm};
}

Vec3 VirtualSitter::shoulderMidWorld() const {
  return {posture.sideCm, build.eyeHeightCm - build.neckCm,
          posture.distanceCm + build.shouldersBehindEyesCm};
}

double VirtualSitter::eyeDistanceCm() const {
  const Vec3 eye = eyeMidWorld(), cam = camera().position;
  return std::sqrt(std::pow(eye.x - cam.x, 2) + std::pow(eye.y - cam.y, 2) +
                   std::pow(eye.z - cam.z, 2));
}

Vec3 VirtualSitter::turnHead(Vec3 offset) const {
  return rolled(yawed(pitched(offset, posture.headPitchDeg), posture.headYawDeg),
                posture.headRollDeg);
}

VirtualSitter::Head VirtualSitter::headWorld() const {
  const Vec3 mid = eyeMidWorld();
  const double half = build.eyeSpacingCm / 2;
  return {plus(mid, turnHead({-half, 0, 0})), plus(mid, turnHead({half, 0, 0})),
          plus(mid, turnHead(noseOffset)), plus(mid, turnHead(chinOffset))};
}

std::optional<Point> VirtualSitter::detected(const LidCamera& cam, Vec3 world) {
  auto p = cam.project(world);
  if (!p || !cam.inFrame(*p)) return std::nullopt;
  p->x += noise_.next();
  p->y += noise_.next();
  return p;
}

std::optional<Measurement> VirtualSitter::render() {
  if (!present) return std::nullopt;
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
  m.yaw = rad(posture.headYawDeg);
  m.aperture = aperture;
  m.pupil = pupil;
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
  const Vec3 mid = shoulderMidWorld();
  const double half = build.shoulderWidthCm / 2;
  auto left = detected(cam, plus(mid, rolled({-half, 0, 0}, posture.shoulderRollDeg)));
  auto right = detected(cam, plus(mid, rolled({half, 0, 0}, posture.shoulderRollDeg)));
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
