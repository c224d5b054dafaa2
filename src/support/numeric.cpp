#include "support/numeric.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <locale>
#include <sstream>
#include <string>

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

// Not std::from_chars: the standard library of Apple's toolchain has no
// floating-point one. The classic locale keeps the decimal point a point.
std::optional<double> parseDecimal(std::string_view text) {
  if (text.empty() || text.front() == '+' || std::isspace(static_cast<unsigned char>(text.front())))
    return std::nullopt;
  std::istringstream in{std::string(text)};
  in.imbue(std::locale::classic());
  double value = 0;
  in >> value;
  if (in.fail() || in.peek() != std::char_traits<char>::eof() || !std::isfinite(value))
    return std::nullopt;
  return value;
}

}  // namespace sodam
