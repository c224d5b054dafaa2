#include "sim/sim_person.h"

#include <algorithm>
#include <cmath>

namespace sodam {

namespace {

struct Span {
  double lo = 0;
  double hi = -1;
  bool empty() const { return hi < lo; }
};

Span ellipseSpan(const Outline::Ellipse& e, double y) {
  const double dy = (y - e.centre.y) / e.ry;
  if (e.rx <= 0 || e.ry <= 0 || std::abs(dy) > 1) return {};
  const double half = e.rx * std::sqrt(1 - dy * dy);
  return {e.centre.x - half, e.centre.x + half};
}

// A convex polygon meets a row in one stretch: between the crossings of its edges.
Span quadSpan(const Outline::Quad& q, double y) {
  Span span{1e300, -1e300};
  for (std::size_t i = 0; i < q.corners.size(); ++i) {
    const Point a = q.corners[i];
    const Point b = q.corners[(i + 1) % q.corners.size()];
    if ((y < std::min(a.y, b.y)) || (y > std::max(a.y, b.y))) continue;
    if (a.y == b.y) {
      span.lo = std::min({span.lo, a.x, b.x});
      span.hi = std::max({span.hi, a.x, b.x});
      continue;
    }
    const double x = a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x);
    span.lo = std::min(span.lo, x);
    span.hi = std::max(span.hi, x);
  }
  return span;
}

void fill(Detections::PersonMask& mask, int row, Span span, double frameWidth) {
  if (span.empty()) return;
  const double scale = mask.width / frameWidth;
  const int first = std::max(0, static_cast<int>(std::ceil(span.lo * scale - 0.5)));
  const int last = std::min(mask.width - 1, static_cast<int>(std::floor(span.hi * scale - 0.5)));
  if (first > last) return;
  auto* start = mask.bytes.data() + static_cast<std::size_t>(row) * mask.width;
  std::fill(start + first, start + last + 1, std::uint8_t{0xFF});
}

}  // namespace

void Outline::addCapsule(Point a, Point b, double radius) {
  const double length = std::hypot(b.x - a.x, b.y - a.y);
  ellipses.push_back({a, radius, radius});
  ellipses.push_back({b, radius, radius});
  if (length <= 0) return;
  const double nx = -(b.y - a.y) / length * radius;
  const double ny = (b.x - a.x) / length * radius;
  quads.push_back({{Point{a.x + nx, a.y + ny}, Point{b.x + nx, b.y + ny}, Point{b.x - nx, b.y - ny},
                    Point{a.x - nx, a.y - ny}}});
}

void Outline::draw(Detections::PersonMask& mask, Size frame) const {
  for (int row = 0; row < mask.height; ++row) {
    const double y = frame.height * (1 - (row + 0.5) / mask.height);
    for (const auto& e : ellipses)
      fill(mask, row, ellipseSpan(e, y), frame.width);
    for (const auto& q : quads)
      fill(mask, row, quadSpan(q, y), frame.width);
  }
}

}  // namespace sodam
