#include "support/manual_scheduler.h"

#include <algorithm>

namespace sodam {

struct ManualScheduler::Entry final : Timer::Backend {
  Date fire;
  double repeat = 0;
  double tolerance_ = 0;
  std::uint64_t sequence = 0;
  bool valid = true;
  std::function<void()> block;

  void invalidate() override { valid = false; }
  bool isValid() const override { return valid; }
  Date fireDate() const override { return fire; }
  double tolerance() const override { return tolerance_; }
};

Timer ManualScheduler::schedule(Timing timing, std::function<void()> block) {
  auto entry = std::make_shared<Entry>();
  entry->fire = clock_.now() + std::max(timing.delaySeconds, 0.0);
  entry->repeat = std::max(timing.repeatSeconds, 0.0);
  entry->tolerance_ = timing.toleranceSeconds;
  entry->sequence = nextSequence_++;
  entry->block = std::move(block);
  timers_.push_back(entry);
  return Timer(entry);
}

void ManualScheduler::post(std::function<void()> task) {
  std::lock_guard lock(postedMutex_);
  posted_.push_back(std::move(task));
}

void ManualScheduler::runPosted() {
  for (;;) {
    std::function<void()> task;
    {
      std::lock_guard lock(postedMutex_);
      if (posted_.empty()) return;
      task = std::move(posted_.front());
      posted_.pop_front();
    }
    task();
  }
}

std::shared_ptr<ManualScheduler::Entry> ManualScheduler::nextDue(Date limit) const {
  std::shared_ptr<Entry> best;
  for (const auto& entry : timers_) {
    if (!entry->valid || entry->fire > limit) continue;
    if (!best || entry->fire < best->fire ||
        (entry->fire == best->fire && entry->sequence < best->sequence)) {
      best = entry;
    }
  }
  return best;
}

void ManualScheduler::fire(const std::shared_ptr<Entry>& entry) {
  if (entry->fire > clock_.now()) clock_.set(entry->fire);
  if (entry->repeat > 0) {
    entry->fire += entry->repeat;
    // A repeating timer fires again only after the block returned, as a run
    // loop timer does; the sequence moves it behind timers already due.
    entry->sequence = nextSequence_++;
  } else {
    entry->valid = false;
  }
  auto block = entry->block;  // the block may replace the entry's owner
  block();
  runPosted();
}

void ManualScheduler::dropInvalid() {
  std::erase_if(timers_, [](const auto& entry) { return !entry->valid; });
}

void ManualScheduler::advanceTo(Date target) {
  runPosted();
  while (auto entry = nextDue(target))
    fire(entry);
  if (target > clock_.now()) clock_.set(target);
  dropInvalid();
}

void ManualScheduler::advance(double seconds) {
  advanceTo(clock_.now() + seconds);
}

bool ManualScheduler::fireNext() {
  runPosted();
  auto next = nextFireDate();
  if (!next) return false;
  fire(nextDue(*next));
  dropInvalid();
  return true;
}

std::optional<Date> ManualScheduler::nextFireDate() const {
  std::optional<Date> earliest;
  for (const auto& entry : timers_) {
    if (entry->valid && (!earliest || entry->fire < *earliest)) earliest = entry->fire;
  }
  return earliest;
}

std::size_t ManualScheduler::activeTimers() const {
  return std::count_if(timers_.begin(), timers_.end(), [](const auto& e) { return e->valid; });
}

}  // namespace sodam
