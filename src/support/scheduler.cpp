#include "support/scheduler.h"

#include <algorithm>

namespace sodam {

Timer& Timer::operator=(Timer&& other) noexcept {
  if (this != &other) {
    invalidate();
    backend_ = std::move(other.backend_);
  }
  return *this;
}

void Timer::invalidate() {
  if (backend_) backend_->invalidate();
  backend_.reset();
}

Date Timer::fireDate() const {
  return isValid() ? backend_->fireDate() : Date::distantPast();
}

double Scheduler::toleranceFor(double delaySeconds) {
  return std::max(delaySeconds * 0.1, 0.5);
}

Timer Scheduler::mainTimer(double delaySeconds, std::function<void()> block) {
  return schedule({delaySeconds, 0, toleranceFor(delaySeconds)}, std::move(block));
}

Timer Scheduler::repeating(double intervalSeconds, std::function<void()> block) {
  return schedule({intervalSeconds, intervalSeconds, toleranceFor(intervalSeconds)},
                  std::move(block));
}

void Scheduler::later(double seconds, std::function<void()> action) {
  mainTimer(seconds, std::move(action)).detach();
}

}  // namespace sodam
