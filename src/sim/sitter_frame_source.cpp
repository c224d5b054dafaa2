#include "sim/sitter_frame_source.h"

#include <algorithm>
#include <cmath>

namespace sodam {

namespace {
constexpr double cameraFramesPerSecond = 15;

// The camera delivers 15 frames a second and the capture takes the first
// frame at least one interval after the last one taken, so the real spacing
// is the interval rounded up to whole camera frames.
double pacedSeconds(double interval) {
  const double frames = std::max(std::ceil(interval * cameraFramesPerSecond - 1e-9), 1.0);
  return frames / cameraFramesPerSecond;
}
}  // namespace

SitterFrameSource::SitterFrameSource(VirtualSitter& sitter, Scheduler& scheduler,
                                     const Clock& clock)
    : sitter_(sitter), scheduler_(scheduler), clock_(clock) {}

void SitterFrameSource::setFrameInterval(double seconds) {
  const bool changed = seconds != interval_;
  interval_ = seconds;
  if (running_ && changed) {
    ticker_ = scheduler_.schedule({pacedSeconds(interval_), 0, 0}, [this] { tick(); });
  }
}

void SitterFrameSource::start() {
  if (running_ || revokedCamera) return;
  running_ = true;
  runningSince_ = clock_.now();
  ticker_ = scheduler_.schedule({pacedSeconds(interval_), 0, 0}, [this] { tick(); });
}

void SitterFrameSource::stop() {
  if (!running_) return;
  running_ = false;
  secondsOnBefore_ += clock_.now() - runningSince_;
  ticker_.invalidate();
}

double SitterFrameSource::secondsOn() const {
  return secondsOnBefore_ + (running_ ? clock_.now() - runningSince_ : 0);
}

void SitterFrameSource::tick() {
  ticker_ = scheduler_.schedule({pacedSeconds(interval_), 0, 0}, [this] { tick(); });
  if (frozen) return;
  ++frames_;
  auto frame = sitter_.render();
  if (handler_) handler_(std::move(frame));
}

}  // namespace sodam
