#include "companion/buddy_sight.h"

#include "support/numeric.h"

namespace sodam {

namespace {
double smoothStep(double t) {
  return t * t * (3 - 2 * t);
}
Point lerp(Point a, Point b, double t) {
  return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}
}  // namespace

void BuddySight::set(double x, double y, Date at) {
  const Point target{clamp(x, -1, 1), clamp(y, -1, 1)};
  if (seen_) {
    const double t = clamp((at - movedAt_) / easeSeconds, 0, 1);
    from_ = lerp(from_, to_, smoothStep(t));
  } else {
    from_ = target;
  }
  to_ = target;
  movedAt_ = at;
  seen_ = true;
}

void BuddySight::clear() {
  seen_ = false;
}

std::optional<Point> BuddySight::current(Date at) const {
  if (!seen_) return std::nullopt;
  const double t = clamp((at - movedAt_) / easeSeconds, 0, 1);
  return lerp(from_, to_, smoothStep(t));
}

Point BuddySight::face(const Measurement& m) {
  if (m.size.width <= 0 || m.size.height <= 0) return {0, 0};
  const Point mid = m.eyeMid();
  return {clamp(2 * (0.5 - mid.x / m.size.width), -1, 1),
          clamp(2 * (0.5 - mid.y / m.size.height), -1, 1)};
}

}  // namespace sodam
