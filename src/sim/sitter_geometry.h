#pragma once

// The virtual sitter's world arithmetic, shared by its source files: world
// coordinates in centimetres, x to the image's right, y up, z away from the
// screen towards the person (ahead, towards the camera, is -z).

#include <cmath>

#include "support/geometry.h"
#include "support/numeric.h"

namespace sodam::sitter_geometry {

inline Vec3 plus(Vec3 a, Vec3 b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Vec3 minus(Vec3 a, Vec3 b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline Vec3 scaled(Vec3 v, double k) {
  return {v.x * k, v.y * k, v.z * k};
}

inline double dot(Vec3 a, Vec3 b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline double length(Vec3 v) {
  return std::sqrt(dot(v, v));
}

inline Vec3 cross(Vec3 a, Vec3 b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// Face tipping down: ahead (-z) turns towards down (-y).
inline Vec3 pitched(Vec3 v, double degrees) {
  const double c = std::cos(rad(degrees)), s = std::sin(rad(degrees));
  return {v.x, c * v.y + s * v.z, -s * v.y + c * v.z};
}

// Face turning to the image's left: ahead (-z) turns towards -x.
inline Vec3 yawed(Vec3 v, double degrees) {
  const double c = std::cos(rad(degrees)), s = std::sin(rad(degrees));
  return {c * v.x + s * v.z, v.y, -s * v.x + c * v.z};
}

// Counter-clockwise as the camera sees it: +x turns towards +y.
inline Vec3 rolled(Vec3 v, double degrees) {
  const double c = std::cos(rad(degrees)), s = std::sin(rad(degrees));
  return {c * v.x - s * v.y, s * v.x + c * v.y, v.z};
}

}  // namespace sodam::sitter_geometry
