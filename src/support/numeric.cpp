#include "support/numeric.h"

#include <algorithm>
#include <cmath>

namespace sodam {

double distance(Point a, Point b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

long long roundedInt(double value) {
  return std::llround(value);
}

namespace {
// A NaN has no place in an order, and sorting with one is undefined; a value
// the camera could not deliver is left out rather than poisoning the rest.
void dropNaN(std::vector<double>& values) {
  std::erase_if(values, [](double v) { return std::isnan(v); });
}
}  // namespace

std::optional<double> median(std::vector<double> values) {
  dropNaN(values);
  if (values.empty()) return std::nullopt;
  const auto mid = values.size() / 2;
  std::nth_element(values.begin(), values.begin() + mid, values.end());
  const double upper = values[mid];
  if (values.size() % 2 == 1) return upper;
  const double lower = *std::max_element(values.begin(), values.begin() + mid);
  return (lower + upper) / 2;
}

std::optional<double> quantile(std::vector<double> values, double q) {
  dropNaN(values);
  if (values.empty()) return std::nullopt;
  const double last = static_cast<double>(values.size() - 1);
  const auto index = static_cast<std::size_t>(clamp(std::round(q * last), 0, last));
  std::nth_element(values.begin(), values.begin() + index, values.end());
  return values[index];
}

}  // namespace sodam
