#include "coach/stretch.h"

#include <algorithm>

#include "support/numeric.h"

namespace sodam {

std::string_view areaName(BodyArea area) {
  switch (area) {
    case BodyArea::neck:
      return "목";
    case BodyArea::shoulder:
      return "어깨";
    case BodyArea::back:
      return "등";
    case BodyArea::chest:
      return "가슴";
    case BodyArea::waist:
      return "옆구리";
    case BodyArea::eyes:
      return "눈";
    case BodyArea::wrist:
      return "손목";
  }
  return "";
}

std::vector<Focus> Stretch::focus(Side side) const {
  if (side == Side::right) return focusRight;
  std::vector<Focus> flipped;
  flipped.reserve(focusRight.size());
  for (const auto& f : focusRight)
    flipped.push_back(f.flipped());
  return flipped;
}

Motion Stretch::motionFor(Side side) const {
  return side == Side::right ? motion : motion.mirrored();
}

int Stretch::reps() const {
  const double loop = motion.duration();
  if (loop <= 0) return 1;
  return static_cast<int>(std::max(1LL, roundedInt(seconds / loop)));
}

double Stretch::duration() const {
  return motion.duration() * reps();
}

int Stretch::shownSeconds() const {
  return static_cast<int>(roundedInt(duration()));
}

int Stretch::totalSeconds() const {
  return static_cast<int>(roundedInt(sides ? duration() * 2 : duration()));
}

Pose Stretch::rest() const {
  return stage == Stage::side ? Pose::side() : Pose::front();
}

}  // namespace sodam
