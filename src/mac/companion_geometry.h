#pragma once

// Plain arithmetic behind the companion's drawing, kept free of AppKit so it
// can be checked anywhere: the blink of its eyes, where what it wears on its
// head stands, and where a pattern's motifs fall on its body.

#include <cmath>
#include <numbers>
#include <vector>

#include "companion/pill_look.h"
#include "support/date.h"
#include "support/geometry.h"

namespace sodam {

// The eyes close for a moment every few seconds, counted from their start.
inline constexpr double blinkEverySeconds = 4.2;
inline constexpr double blinkSeconds = 0.16;

// How open the eyes are, from 0 shut to 1 open: they close and open again
// along half a sine at the end of each period. Still eyes never blink, and
// neither do eyes before their start.
inline double eyeOpenness(Date start, Date now, bool still) {
  const double elapsed = now - start;
  if (still || elapsed < 0) return 1;
  const double intoBlink =
      std::fmod(elapsed, blinkEverySeconds) - (blinkEverySeconds - blinkSeconds);
  if (intoBlink <= 0) return 1;
  return 1 - std::sin(std::numbers::pi * intoBlink / blinkSeconds);
}

// The box a trim is drawn in, in points from the middle of the capsule's top
// edge with y up: the part below 0 hides behind the capsule.
struct TrimBox {
  double centerX = 0;
  double bottom = 0;
  double width = 0;
  double height = 0;

  double top() const { return bottom + height; }
  bool operator==(const TrimBox&) const = default;
};

// Small things sit beside the right ear, hats on the middle of the head,
// the halo and the cloud float above it.
inline TrimBox trimBox(PillTrim trim) {
  switch (trim) {
    case PillTrim::none:
      return {};
    case PillTrim::ribbon:
      return {21, -1, 14, 9};
    case PillTrim::flower:
      return {21, -1, 12, 12};
    case PillTrim::heart:
      return {21, -1, 10, 9};
    case PillTrim::sprout:
      return {0, -1, 12, 12};
    case PillTrim::headphones:
      return {0, -6, 46, 19};
    case PillTrim::party:
      return {0, -1, 14, 18};
    case PillTrim::star:
      return {0, -1, 14, 14};
    case PillTrim::flowerCrown:
      return {0, -2, 46, 8};
    case PillTrim::crown:
      return {0, -1, 22, 13};
    case PillTrim::beret:
      return {-3, -1, 30, 9};
    case PillTrim::chef:
      return {0, -1, 24, 18};
    case PillTrim::halo:
      return {0, 9, 26, 8};
    case PillTrim::cloud:
      return {0, 8, 26, 11};
    case PillTrim::wizard:
      return {0, -1, 24, 19};
    case PillTrim::santa:
      return {2, -1, 26, 17};
  }
  return {};
}

// The centres of a pattern's motifs over an area: rows one step apart, each
// row shifted by half a step against the one before, every centre inside.
inline std::vector<Point> patternSpots(Size area, double step) {
  std::vector<Point> spots;
  if (step <= 0) return spots;
  int row = 0;
  for (double y = step / 2; y < area.height; y += step, ++row) {
    for (double x = (row % 2 == 0 ? step / 2 : step); x < area.width; x += step)
      spots.push_back({x, y});
  }
  return spots;
}

}  // namespace sodam
