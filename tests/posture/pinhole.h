#pragma once

// Test frames made by projecting a hand-placed person through a pinhole
// camera, independently of the code that places frames back into space.

#include <cmath>
#include <numbers>
#include <vector>

#include "posture/measurement.h"

namespace sodam::pinhole {

inline constexpr Size frameSize{1280, 720};
// 65° across 1280 pixels.
inline const double f = 640 / std::tan(32.5 * std::numbers::pi / 180);

// A level-world point (cm; x right, y up, z ahead) seen by a camera tilted up
// by pitchDeg, in pixels with the origin at the lower left.
inline Point project(double x, double y, double z, double pitchDeg = 0) {
  const double p = pitchDeg * std::numbers::pi / 180;
  const double yc = y * std::cos(p) - z * std::sin(p);
  const double zc = y * std::sin(p) + z * std::cos(p);
  return {640 + f * x / zc, 360 + f * yc / zc};
}

// A seated person, in cm: the eye midpoint and where the shoulders and the
// torso are relative to it.
struct Sitter {
  double eyeX = 0, eyeY = 5, eyeZ = 55;
  double rollDeg = 0;  // eye line, image-right eye up when positive
  double shoulderWidth = 38, neck = 20, shoulderBack = 5, shoulderX = 0, shoulderRollDeg = 0;
  double torsoWidth = 34, torsoBelowShoulders = 10;
  bool shoulders = true, torso = true;
  double pitchDeg = 0;  // the camera's tilt

  Measurement measure() const {
    Measurement m;
    m.size = frameSize;
    const double r = rollDeg * std::numbers::pi / 180;
    const double dx = 3.15 * std::cos(r), dy = 3.15 * std::sin(r);
    m.eyeL = project(eyeX - dx, eyeY - dy, eyeZ, pitchDeg);
    m.eyeR = project(eyeX + dx, eyeY + dy, eyeZ, pitchDeg);
    if (!shoulders) return m;
    const double s = shoulderRollDeg * std::numbers::pi / 180;
    const double sx = shoulderWidth / 2 * std::cos(s), sy = shoulderWidth / 2 * std::sin(s);
    const double y = eyeY - neck, z = eyeZ + shoulderBack, x = eyeX + shoulderX;
    m.shoulderL = project(x - sx, y - sy, z, pitchDeg);
    m.shoulderR = project(x + sx, y + sy, z, pitchDeg);
    if (torso) {
      m.torsoWidth = f * torsoWidth / z;
      m.torsoY = project(x, y - torsoBelowShoulders, z, pitchDeg).y;
    }
    return m;
  }
};

inline std::vector<Measurement> frames(const Sitter& sitter, int count = 10) {
  return std::vector<Measurement>(static_cast<std::size_t>(count), sitter.measure());
}

}  // namespace sodam::pinhole
