#include "coach/avatar_smoother.h"

#include <cmath>

namespace sodam {

namespace {

// Frames closer than this ease by their time; slower ones by a fixed step, so
// that a stalled view catches up without overshooting.
constexpr double smoothFrameSeconds = 0.1;
constexpr double rate = 9;

double near(double angle, double to) {
  double d = std::fmod(angle - to, 360.0);
  if (d > 180) d -= 360;
  if (d <= -180) d += 360;
  return to + d;
}

}  // namespace

const Pose& AvatarSmoother::step(const Pose& target, Date now) {
  if (!shown_) {
    shown_ = target;
    last_ = now;
    return *shown_;
  }
  Pose aimed = target;
  aimed.armL.upper = near(aimed.armL.upper, shown_->armL.upper);
  aimed.armL.fore = near(aimed.armL.fore, shown_->armL.fore);
  aimed.armR.upper = near(aimed.armR.upper, shown_->armR.upper);
  aimed.armR.fore = near(aimed.armR.fore, shown_->armR.fore);
  const double dt = now - last_;
  double k = 0;
  if (dt >= 0)
    k = dt < smoothFrameSeconds ? 1 - std::exp(-rate * dt)
                                : 1 - std::exp(-rate * smoothFrameSeconds);
  shown_ = Pose::lerp(*shown_, aimed, k);
  last_ = now;
  return *shown_;
}

}  // namespace sodam
