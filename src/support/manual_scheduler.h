#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "support/clock.h"
#include "support/scheduler.h"

namespace sodam {

// A scheduler in virtual time. Nothing runs until the owner advances it; then
// posted work runs first and due timers fire in the order of their fire dates
// (ties in the order they were scheduled), with the clock set to each fire
// date. Main thread only, except post, which is safe from any thread.
class ManualScheduler final : public Scheduler {
 public:
  explicit ManualScheduler(ManualClock& clock) : clock_(clock) {}

  Timer schedule(Timing timing, std::function<void()> block) override;
  void post(std::function<void()> task) override;

  // Runs everything due until now + seconds and leaves the clock there.
  void advance(double seconds);
  void advanceTo(Date target);
  // Runs posted work, including work posted by it, at the current time.
  void runPosted();
  // Jumps to the next timer and fires it; false when no timer is left.
  bool fireNext();

  std::optional<Date> nextFireDate() const;
  std::size_t activeTimers() const;
  ManualClock& clock() { return clock_; }

 private:
  struct Entry;
  std::shared_ptr<Entry> nextDue(Date limit) const;
  void fire(const std::shared_ptr<Entry>& entry);
  void dropInvalid();

  ManualClock& clock_;
  std::vector<std::shared_ptr<Entry>> timers_;
  std::uint64_t nextSequence_ = 0;
  mutable std::mutex postedMutex_;
  std::deque<std::function<void()>> posted_;
};

}  // namespace sodam
