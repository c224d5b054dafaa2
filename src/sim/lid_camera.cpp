#include "sim/lid_camera.h"

#include <cmath>

#include "support/numeric.h"

namespace sodam {

namespace {
// Points nearer than this to the camera's plane can't be imaged sensibly.
constexpr double nearestDepthCm = 1.0;
}  // namespace

LidCamera LidCamera::onLid(double lidDeg, double displayHeightCm, Size frame) {
  const double hingeToCamera = displayHeightCm + bezelCm;
  LidCamera camera;
  camera.position = {0, hingeToCamera * std::sin(rad(lidDeg)),
                     hingeToCamera * std::cos(rad(lidDeg))};
  camera.pitchDeg = lidDeg - 90;
  camera.frame = frame;
  camera.focalPx = frame.width / 2 / std::tan(rad(horizontalFOVDeg / 2));
  return camera;
}

Vec3 LidCamera::toCamera(Vec3 world) const {
  const double p = rad(pitchDeg);
  const Vec3 v{world.x - position.x, world.y - position.y, world.z - position.z};
  // The camera's up axis is (0, cos p, -sin p) and its optical axis
  // (0, sin p, cos p) in world terms; x is shared.
  return {v.x, std::cos(p) * v.y - std::sin(p) * v.z, std::sin(p) * v.y + std::cos(p) * v.z};
}

std::optional<Point> LidCamera::project(Vec3 world) const {
  const Vec3 c = toCamera(world);
  if (!(c.z > nearestDepthCm)) return std::nullopt;
  return Point{frame.width / 2 + focalPx * c.x / c.z, frame.height / 2 + focalPx * c.y / c.z};
}

bool LidCamera::inFrame(Point p) const {
  return p.x >= 0 && p.x <= frame.width && p.y >= 0 && p.y <= frame.height;
}

double LidCamera::rayDeg(Vec3 world) const {
  const Vec3 c = toCamera(world);
  return deg(std::atan2(c.y, c.z));
}

}  // namespace sodam
