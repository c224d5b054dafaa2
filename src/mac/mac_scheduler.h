#pragma once

// Called on the main thread, except post, which any thread may call; every
// timer block and posted task runs on the main thread.

#include "support/scheduler.h"

namespace sodam {

// The main run loop as the core's scheduler: timers run in the common modes,
// so they fire during menu tracking and window resizing too, with the
// tolerance the caller gives; posted tasks go onto the main dispatch queue.
class MacScheduler final : public Scheduler {
 public:
  Timer schedule(Timing timing, std::function<void()> block) override;
  void post(std::function<void()> task) override;
};

}  // namespace sodam
