#include "posture/measurement.h"

#include <algorithm>
#include <cmath>

#include "posture/spine_helpers.h"
#include "support/numeric.h"

namespace sodam {

namespace {
// The nose's sideways offset from the eye midpoint at a full quarter turn, in
// units of the eye distance.
constexpr double quarterTurnNoseOffset = 0.29;
// Beyond this yaw the detector's angle is too rough to undo the narrowing.
constexpr double largestYawCorrection = 0.6;
// Keeps the shapes finite when the eyes all but coincide.
constexpr double smallestIpdAngle = 0.0001;

double rayDegrees(double y, Size size) {
  return deg(std::atan((y - size.height / 2) / Optics::focal(size)));
}

Point midpoint(Point a, Point b) {
  return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}
}  // namespace

Point Measurement::eyeMid() const {
  return midpoint(eyeL, eyeR);
}

std::optional<std::pair<Point, Point>> Measurement::shoulders() const {
  const auto left = finitePoint(shoulderL);
  const auto right = finitePoint(shoulderR);
  if (!left || !right) return std::nullopt;
  return std::pair{*left, *right};
}

double Measurement::eyePixels() const {
  return distance(eyeL, eyeR);
}

double Measurement::frontalEyePixels() const {
  return eyePixels() / std::cos(std::min(std::abs(yaw), largestYawCorrection));
}

double Measurement::turn() const {
  const auto nosePoint = finitePoint(nose);
  const double pixels = eyePixels();
  if (!nosePoint || !std::isfinite(pixels) || pixels <= 0) return 0;
  const double offset = (nosePoint->x - eyeMid().x) / pixels / quarterTurnNoseOffset;
  return -deg(std::asin(clamp(offset, -1, 1)));
}

double Measurement::eyeRay() const {
  return rayDegrees(eyeMid().y, size);
}

std::optional<double> Measurement::shoulderRay() const {
  const auto pair = shoulders();
  if (!pair) return std::nullopt;
  return rayDegrees(midpoint(pair->first, pair->second).y, size);
}

double Measurement::ipdAngle() const {
  const double angle = frontalEyePixels() * std::cos(rad(eyeRay())) / Optics::focal(size);
  // Written so that a NaN also falls to the floor.
  return angle >= smallestIpdAngle ? angle : smallestIpdAngle;
}

std::optional<double> Measurement::neckShape() const {
  const auto shoulder = shoulderRay();
  if (!shoulder) return std::nullopt;
  return rad(eyeRay() - *shoulder) / ipdAngle();
}

std::optional<double> Measurement::torsoShape() const {
  const auto width = positiveValue(torsoWidth);
  const auto row = finiteValue(torsoY);
  if (!width || !row) return std::nullopt;
  const double f = Optics::focal(size);
  return *width * std::cos(std::atan((*row - size.height / 2) / f)) / f / ipdAngle();
}

bool Measurement::usable() const {
  const bool sized =
      std::isfinite(size.width) && std::isfinite(size.height) && size.width > 0 && size.height > 0;
  return sized && isFinite(eyeL) && isFinite(eyeR) && std::isfinite(yaw) && eyePixels() > 0;
}

}  // namespace sodam
