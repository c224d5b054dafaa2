#pragma once

// The body proportions and the two-link arm shared by the mirror's front and
// side views. Not for use outside the mirror.

#include <utility>

#include "support/geometry.h"

namespace sodam::BodyMirror::links {

// A full chin tuck moves the head this far: the unit of a forward head.
inline constexpr double headShiftCm = 2.5;
inline constexpr double upperArmCm = 29;
inline constexpr double forearmCm = 26;

// The two places an elbow can be between a shoulder and a wrist for links of
// these lengths; both on the straight line when the wrist is out of reach.
std::pair<Point, Point> elbows(Point shoulder, Point wrist, double upper, double fore);

}  // namespace sodam::BodyMirror::links
