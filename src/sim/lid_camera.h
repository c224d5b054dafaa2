#pragma once

#include <optional>

#include "support/geometry.h"

namespace sodam {

// The built-in camera: a pinhole at the top edge of the laptop's screen that
// tilts with the lid. World coordinates are level with the desk, in
// centimetres: x to the image's right, y up, z from the hinge towards the
// person; the hinge is the origin.
struct LidCamera {
  // Horizontal field of view of the built-in camera; the focal length in
  // pixels follows from it and is the same for x and y.
  static constexpr double horizontalFOVDeg = 65.0;
  // The camera sits this far above the display's top edge.
  static constexpr double bezelCm = 2.0;

  Vec3 position;
  double pitchDeg = 0;  // optical axis above the horizontal
  Size frame;
  double focalPx = 0;

  // lidDeg is the hinge angle: 90 holds the screen upright and tilts the
  // camera by nothing; every degree beyond tilts it one degree upwards.
  static LidCamera onLid(double lidDeg, double displayHeightCm, Size frame);

  // Camera space: x right, y up, z along the optical axis.
  Vec3 toCamera(Vec3 world) const;
  // Image position (origin lower left, y up); nothing for a point at or
  // behind the camera's plane.
  std::optional<Point> project(Vec3 world) const;
  bool inFrame(Point p) const;
  // Vertical angle of a world point above the optical axis, as the image shows it.
  double rayDeg(Vec3 world) const;
};

}  // namespace sodam
