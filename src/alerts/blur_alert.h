#pragma once

#include <vector>

#include "alerts/overlay_presenter.h"
#include "support/clock.h"
#include "support/scheduler.h"

namespace sodam {

// Blurs everything on the displays with a strength that follows the bad
// posture's severity: it comes on gently and leaves quickly. A 60 Hz step
// runs only while the level moves. When the window server's blur call is
// missing or fails, the rest of the run shows strength as the alpha of an
// effect view instead. Main thread only.
//
// At rest at 0 there are no windows and no timer; moving, a timer steps; at
// rest above 0 the windows stay and the next show or hide steps again.
class BlurAlert {
 public:
  static constexpr double stepSeconds = 1.0 / 60;
  // A stalled main loop counts as this much, so the level never jumps.
  static constexpr double longestStep = 0.1;
  static constexpr double risingSeconds = 0.45;
  static constexpr double fallingSeconds = 0.18;
  static constexpr double snapDistance = 0.004;
  static constexpr int largestRadius = 40;
  static constexpr double faintAlpha = 0.02;
  static constexpr double darkeningAlpha = 0.16;

  BlurAlert(OverlayPresenter& presenter, Scheduler& scheduler, const Clock& clock);

  // Moves toward the level, clamped to 0…1; makes the windows when none
  // exist and the level is above 0.
  void show(double level);
  void hide();
  // The settings page's demonstration: full blur that fades out in steps
  // over 3.4 seconds. A second preview restarts it.
  void preview();

  // The shown strength of a level: a smooth step, gentle at both ends.
  static double strength(double level) { return level * level * (3 - 2 * level); }

  double level() const { return level_; }
  double target() const { return target_; }
  bool moving() const { return timer_.isValid(); }
  bool fallback() const { return fallback_; }
  const std::vector<OverlayPresenter::Window>& windows() const { return windows_; }

 private:
  void makeWindows();
  void startStepping();
  void step();
  void approach(double dt);
  void drawPrivateBlur(double e);
  void rest();

  OverlayPresenter& presenter_;
  Scheduler& scheduler_;
  const Clock& clock_;

  std::vector<OverlayPresenter::Window> windows_;
  double level_ = 0;
  double target_ = 0;
  Timer timer_;
  Date lastStep_;
  bool fallback_ = false;
  std::vector<Timer> previewSteps_;
};

}  // namespace sodam
