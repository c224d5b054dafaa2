#pragma once

namespace sodam {

// Image positions are pixels with the origin at the lower left, y up.
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  Point origin;
  Size size;
  double minX() const { return origin.x; }
  double minY() const { return origin.y; }
  double maxX() const { return origin.x + size.width; }
  double maxY() const { return origin.y + size.height; }
  double midX() const { return origin.x + size.width / 2; }
  double midY() const { return origin.y + size.height / 2; }
  bool operator==(const Rect&) const = default;
};

struct Vec3 {
  double x = 0;
  double y = 0;
  double z = 0;
  bool operator==(const Vec3&) const = default;
};

}  // namespace sodam
