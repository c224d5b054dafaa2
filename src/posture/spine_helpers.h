#pragma once

// Guards and small helpers shared by the sources of measurement, baseline and
// evaluation. The pose reader may hand over NaN or infinite numbers; a value
// that is not finite is treated as one the camera did not deliver.

#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "posture/measurement.h"
#include "support/geometry.h"
#include "support/numeric.h"

namespace sodam {

inline bool isFinite(Point p) {
  return std::isfinite(p.x) && std::isfinite(p.y);
}

inline std::optional<double> finiteValue(std::optional<double> value) {
  if (value && std::isfinite(*value)) return value;
  return std::nullopt;
}

inline std::optional<double> positiveValue(std::optional<double> value) {
  if (value && std::isfinite(*value) && *value > 0) return value;
  return std::nullopt;
}

inline std::optional<Point> finitePoint(const std::optional<Point>& point) {
  if (point && isFinite(*point)) return point;
  return std::nullopt;
}

// The finite values `value` gives for the items; it returns a double or an
// optional double, and an absent one is skipped.
template <class Item, class Get>
std::vector<double> finiteValues(const std::vector<Item>& items, Get value) {
  std::vector<double> out;
  out.reserve(items.size());
  for (const auto& item : items) {
    const std::optional<double> v = value(item);
    if (v && std::isfinite(*v)) out.push_back(*v);
  }
  return out;
}

// The frames that can be placed at all.
inline std::vector<Measurement> usableFrames(const std::vector<Measurement>& frames) {
  std::vector<Measurement> out;
  out.reserve(frames.size());
  for (const auto& m : frames)
    if (m.usable()) out.push_back(m);
  return out;
}

// The usable frames in which the face itself was found.
inline std::vector<Measurement> faceFrames(const std::vector<Measurement>& frames) {
  std::vector<Measurement> out;
  out.reserve(frames.size());
  for (const auto& m : frames)
    if (m.usable() && !m.fromBody) out.push_back(m);
  return out;
}

// A number as the user reads it in a sentence: rounded, halves away from
// zero, without sign.
inline std::string unsignedWhole(double value) {
  return std::to_string(std::llabs(roundedInt(value)));
}

}  // namespace sodam
