#pragma once

// Plain arithmetic behind the pill's drawing, kept free of AppKit so it can
// be checked anywhere: where the stage puts its layers, the content's size,
// springs for Core Animation, the countdown ring, the breathing dot, the eyes
// that follow the user's face and the companion's ears.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <optional>
#include <string>

#include "alerts/pill_center.h"
#include "support/date.h"
#include "support/geometry.h"

namespace sodam {

// Where the drawing panel's view puts the pill, in AppKit's coordinates (y
// up from the view's bottom), while the model measures down from its top.
struct StagePlaces {
  Size capsule;
  Point center;  // of the capsule, and of the content over it
  double cornerRadius = 0;
  Point capsuleTop;  // the middle of the capsule's top edge, where ears stand
  Point bubbleCenter;
};

inline StagePlaces stagePlaces(const PillModel& model, Size stage) {
  const Size capsule = model.capsuleSize();
  const Point center{stage.width / 2, stage.height - model.capsuleCenterY()};
  return {capsule,
          center,
          capsule.height / 2,
          {center.x, center.y + capsule.height / 2},
          {center.x + model.bubbleOffsetX(), center.y}};
}

// The positions a new pill sets take effect at once, while its phase and size
// animate: this is how far they moved the phase's reference point (the
// camera dot in phase 0, the top after), in the view's coordinates.
inline Point instantShift(const PillModel& before, double widthBefore, const PillModel& now,
                          double width) {
  const double down = now.phase == 0 ? now.cameraY - before.cameraY : now.topY - before.topY;
  return {(width - widthBefore) / 2, -down};
}

// The spacing of a pill's content. The art's circle sits concentric with the
// capsule's rounded left end; the text keeps clear of the right one; the
// companion stands alone in the middle.
struct ContentSpacing {
  static constexpr double leading = 7;
  static constexpr double trailing = 18;
  static constexpr double vertical = 7;
  static constexpr double artToText = 10;
  static constexpr Size aroundBuddy{12, 8};
};

// The content's size for its art and its text block (zero without text).
inline Size contentSizeFor(Size art, Size text, bool companion) {
  using S = ContentSpacing;
  if (companion)
    return {art.width + 2 * S::aroundBuddy.width, art.height + 2 * S::aroundBuddy.height};
  if (text.width <= 0 || text.height <= 0)
    return {art.width + 2 * S::leading, art.height + 2 * S::vertical};
  return {S::leading + art.width + S::artToText + text.width + S::trailing,
          std::max(art.height, text.height) + 2 * S::vertical};
}

// A spring as Core Animation takes it, from the response (seconds of one
// undamped swing) and the damping ratio (1 settles without overshoot).
struct SpringParameters {
  double mass = 1;
  double stiffness = 0;
  double damping = 0;
};

inline SpringParameters springParameters(double response, double dampingRatio) {
  const double omega = 2 * std::numbers::pi / response;
  return {1, omega * omega, 2 * dampingRatio * omega};
}

// The share of a countdown still to run: 1 at its start, 0 once it is over.
// A clock set back before the start keeps the ring full.
inline double countdownLeft(Date started, int seconds, Date now) {
  if (seconds <= 0) return 0;
  return std::clamp(1 - (now - started) / seconds, 0.0, 1.0);
}

// Whole seconds still to run, as a countdown shows them: the full count at
// the start, 1 during the last second, 0 at the end.
inline int countdownSecondsLeft(Date started, int seconds, Date now) {
  if (seconds <= 0) return 0;
  const double left = std::clamp(seconds - (now - started), 0.0, double(seconds));
  return static_cast<int>(std::ceil(left));
}

// One breath of the breathing guide: in for 4 seconds, out for 6.
inline constexpr double breathInSeconds = 4;
inline constexpr double breathOutSeconds = 6;

// How full the breathing dot is, from 0 (breathed out) to 1 (breathed in),
// easing at both ends of each half. The guide starts breathed out, and rests
// breathed out once its time is over.
inline double breathFullness(Date started, int seconds, Date now) {
  const double elapsed = now - started;
  if (elapsed <= 0 || elapsed >= seconds) return 0;
  const double cycle = breathInSeconds + breathOutSeconds;
  const double t = std::fmod(elapsed, cycle);
  const double rise =
      t < breathInSeconds ? t / breathInSeconds : 1 - (t - breathInSeconds) / breathOutSeconds;
  return 0.5 - 0.5 * std::cos(std::numbers::pi * rise);
}

// How far the eyes move from their rest for a gaze (x and y from −1 to 1,
// positive y looking down), in points with y down; no gaze rests them.
inline Point eyeShift(std::optional<Point> gaze, Size reach) {
  if (!gaze) return {0, 0};
  return {std::clamp(gaze->x, -1.0, 1.0) * reach.width,
          std::clamp(gaze->y, -1.0, 1.0) * reach.height};
}

// Whether the pill's art changes while it is up, so it needs the frame
// ticker: the ring, the breathing and the companion's eyes, which blink and
// may follow the user.
inline bool hasMovingArt(const Pill& pill) {
  switch (pill.art.kind()) {
    case Pill::Art::Kind::countdown:
    case Pill::Art::Kind::breathe:
    case Pill::Art::Kind::buddy:
    case Pill::Art::Kind::say:
      return true;
    case Pill::Art::Kind::symbol:
    case Pill::Art::Kind::fix:
      return false;
  }
  return false;
}

// The time a breathing guide has left, as "m:ss".
inline std::string minutesAndSeconds(int seconds) {
  seconds = std::max(seconds, 0);
  char text[16];
  std::snprintf(text, sizeof text, "%d:%02d", seconds / 60, seconds % 60);
  return text;
}

// The moving arts are redrawn at most this often.
inline constexpr double movingArtInterval = 1.0 / 30;

}  // namespace sodam
