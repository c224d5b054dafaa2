#pragma once

#include <optional>
#include <utility>

#include "support/geometry.h"

namespace sodam {

// Camera constants of the built-in camera, the same for every machine.
namespace Optics {
inline constexpr double horizontalFOV = 65.0;
inline constexpr double ipdCm = 6.3;
// tan(32.5°), half the horizontal field of view.
inline constexpr double tanHalfFOV = 0.6370702608074932;
// 1 / (2 tan(32.5°)) = 0.7849: focal length in pixels per pixel of frame
// width, so a 1280-pixel frame has a focal length of 1004.6 pixels.
inline constexpr double focalPerWidth = 0.5 / tanHalfFOV;
// Focal length in pixels, the same for x and y, for a frame of this size.
constexpr double focal(Size size) {
  return size.width / 2 / tanHalfFOV;
}
}  // namespace Optics

// Arm joints, asked for only by the features that follow the arms.
struct Arms {
  std::optional<Point> shoulderL, shoulderR, elbowL, elbowR, wristL, wristR;
  bool operator==(const Arms&) const = default;
};

// One frame's reading of the person. Left and right are the image's sides:
// the L point has the smaller x.
struct Measurement {
  Size size;
  Point eyeL;
  Point eyeR;
  double yaw = 0;  // radians, 0 when the detector gave none
  std::optional<double> faceRatio;
  std::optional<Point> nose;
  std::optional<Point> chin;
  std::optional<Point> shoulderL;
  std::optional<Point> shoulderR;
  std::optional<double> torsoWidth;
  std::optional<double> torsoY;
  std::optional<Arms> arms;
  bool fromBody = false;
  std::optional<double> aperture;
  std::optional<Point> pupil;
  std::optional<double> pitch;  // degrees
  std::optional<float> phone;

  Point eyeMid() const;
  std::optional<std::pair<Point, Point>> shoulders() const;
  double eyePixels() const;
  // eyePixels with a turned head's narrowing undone; the yaw counts up to
  // 0.6 radians for it.
  double frontalEyePixels() const;
  // Head turn from the nose's offset, degrees; 0 without a nose.
  double turn() const;
  double eyeRay() const;
  std::optional<double> shoulderRay() const;
  // Eyes-to-shoulders angle in units of the eye distance.
  std::optional<double> neckShape() const;
  // Torso width in units of the eye distance.
  std::optional<double> torsoShape() const;
  // Whether the frame can be placed at all: a frame of positive finite size,
  // finite eye positions that don't coincide and a finite yaw. Anything else
  // is bad input from the reader and is skipped by every consumer. Optional
  // values that are not finite count as not delivered (`shoulders`, the
  // shapes, the torso width).
  bool usable() const;

  bool operator==(const Measurement&) const = default;

 private:
  double ipdAngle() const;
};

}  // namespace sodam
