#pragma once

#include "support/date.h"

namespace sodam {

// The only source of "now" in the core.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual Date now() const = 0;
};

class SystemClock final : public Clock {
 public:
  Date now() const override;
};

// A clock that moves only when told; tests and the simulation drive it.
class ManualClock final : public Clock {
 public:
  explicit ManualClock(Date start = Date{}) : current_(start) {}
  Date now() const override { return current_; }
  void set(Date date) { current_ = date; }
  void advance(double seconds) { current_ += seconds; }

 private:
  Date current_;
};

}  // namespace sodam
