#pragma once

#include <optional>

#include "posture/measurement.h"
#include "support/geometry.h"

namespace sodam {

// One frame placed in centimetres, level with the ground: x right, y up,
// z straight ahead of the camera.
struct Body3D {
  Vec3 eye;
  double eyeDistance = 0;
  double eyeAngle = 0;
  double faceElevation = 0;
  std::optional<Vec3> shoulder;
  std::optional<double> shoulderWidthCm;
  std::optional<double> shoulderAngle;
  bool torsoMeasured = false;

  // pitchDegrees: the camera's tilt above the horizontal. The measurement
  // must be usable(); an unusable one gives numbers that aren't finite.
  Body3D(const Measurement& m, std::optional<double> knownShoulderWidthCm, double pitchDegrees);
};

}  // namespace sodam
