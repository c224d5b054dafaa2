#pragma once

#include <numbers>
#include <optional>
#include <string_view>
#include <vector>

#include "support/geometry.h"

namespace sodam {

constexpr double deg(double radians) {
  return radians * 180.0 / std::numbers::pi;
}
constexpr double rad(double degrees) {
  return degrees * std::numbers::pi / 180.0;
}

// Raises to low first, then lowers to high, so low wins over a smaller high.
constexpr double clamp(double value, double low, double high) {
  double raised = value < low ? low : value;
  return raised > high ? high : raised;
}

double distance(Point a, Point b);

// Halves away from zero, the rounding of every number the user reads.
long long roundedInt(double value);

// Middle value, mean of the two middle ones for an even count; nothing when
// empty. NaN values are left out of both.
std::optional<double> median(std::vector<double> values);
// Element at index round(q * (count - 1)), no interpolation; nothing when empty.
std::optional<double> quantile(std::vector<double> values, double q);

// A finite decimal number that is the whole text, whatever the locale: no
// sign "+", no white space around it.
std::optional<double> parseDecimal(std::string_view text);

}  // namespace sodam
