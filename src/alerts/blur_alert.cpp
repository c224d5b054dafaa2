#include "alerts/blur_alert.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "support/numeric.h"

namespace sodam {

namespace {

struct PreviewStep {
  double atSeconds;
  double level;
};
// Full blur first, then falling steps, then gone.
constexpr PreviewStep previewSteps[] = {{1.2, 0.75}, {1.7, 0.5}, {2.2, 0.3}, {2.7, 0.12}};
constexpr double previewEndSeconds = 3.4;

}  // namespace

BlurAlert::BlurAlert(OverlayPresenter& presenter, Scheduler& scheduler, const Clock& clock)
    : presenter_(presenter),
      scheduler_(scheduler),
      clock_(clock),
      fallback_(!presenter.blurCallAvailable()) {}

void BlurAlert::show(double level) {
  target_ = clamp(level, 0, 1);
  if (windows_.empty() && target_ > 0) makeWindows();
  startStepping();
}

void BlurAlert::hide() {
  target_ = 0;
  startStepping();
}

void BlurAlert::preview() {
  previewSteps_.clear();
  show(1);
  for (const auto& at : previewSteps) {
    double level = at.level;
    previewSteps_.push_back(
        scheduler_.schedule({at.atSeconds, 0, 0}, [this, level] { show(level); }));
  }
  previewSteps_.push_back(scheduler_.schedule({previewEndSeconds, 0, 0}, [this] { hide(); }));
}

void BlurAlert::makeWindows() {
  windows_ = presenter_.makeBlurWindows(fallback_, level_);
}

void BlurAlert::startStepping() {
  if (timer_.isValid()) return;
  lastStep_ = clock_.now();
  timer_ = scheduler_.schedule({stepSeconds, stepSeconds, 0}, [this] { step(); });
}

void BlurAlert::step() {
  Date now = clock_.now();
  double dt = std::min(now - lastStep_, longestStep);
  lastStep_ = now;
  approach(dt);

  double e = strength(level_);
  if (!fallback_) drawPrivateBlur(e);
  if (fallback_) {
    for (auto window : windows_)
      presenter_.setAlpha(window, e);
  }
  if (level_ == target_) rest();
}

// Eases toward the target, faster on the way down, and snaps when close.
void BlurAlert::approach(double dt) {
  double tau = level_ < target_ ? risingSeconds : fallingSeconds;
  level_ += (target_ - level_) * (1 - std::exp(-dt / tau));
  if (std::abs(target_ - level_) <= snapDistance) level_ = target_;
}

// A failing call is no error to anyone: the rest of the run uses the effect
// view, starting with this step.
void BlurAlert::drawPrivateBlur(double e) {
  auto radius = static_cast<std::int32_t>(roundedInt(e * largestRadius));
  bool failed = false;
  for (auto window : windows_) {
    presenter_.setBackgroundAlpha(window, faintAlpha + darkeningAlpha * e);
    if (presenter_.setBlurRadius(window, radius) != 0) failed = true;
  }
  if (!failed) return;
  fallback_ = true;
  for (auto window : windows_)
    presenter_.useEffectView(window, level_);
}

void BlurAlert::rest() {
  timer_.invalidate();
  if (level_ != 0) return;
  for (auto window : windows_)
    presenter_.orderOut(window);
  windows_.clear();
}

}  // namespace sodam
