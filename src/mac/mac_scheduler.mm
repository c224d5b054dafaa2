#include "mac/mac_scheduler.h"

#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>

#include "mac/cf_holder.h"

namespace sodam {

namespace {

// One run-loop timer. The run loop retains the timer while it is scheduled,
// so dropping this backend (a detached handle) lets the timer run to its end;
// only invalidate stops it.
class RunLoopTimer final : public Timer::Backend {
 public:
  explicit RunLoopTimer(CFHolder<CFRunLoopTimerRef> timer) : timer_(std::move(timer)) {}

  void invalidate() override { CFRunLoopTimerInvalidate(timer_.get()); }
  bool isValid() const override { return CFRunLoopTimerIsValid(timer_.get()); }
  // Absolute time and Date count seconds from the same reference date.
  Date fireDate() const override { return Date{CFRunLoopTimerGetNextFireDate(timer_.get())}; }
  double tolerance() const override { return CFRunLoopTimerGetTolerance(timer_.get()); }

 private:
  CFHolder<CFRunLoopTimerRef> timer_;
};

CFHolder<CFRunLoopTimerRef> makeTimer(const Scheduler::Timing& timing,
                                      std::function<void()> block) {
  CFAbsoluteTime firstFire = CFAbsoluteTimeGetCurrent() + timing.delaySeconds;
  // A one-shot timer is invalidated by the run loop after it fires, which
  // releases the handler and the work it captured.
  auto handler = ^(CFRunLoopTimerRef) {
    block();
  };
  auto timer = adopt(CFRunLoopTimerCreateWithHandler(kCFAllocatorDefault, firstFire,
                                                     timing.repeatSeconds, 0, 0, handler));
  CFRunLoopTimerSetTolerance(timer.get(), timing.toleranceSeconds);
  return timer;
}

}  // namespace

Timer MacScheduler::schedule(Timing timing, std::function<void()> block) {
  auto timer = makeTimer(timing, std::move(block));
  CFRunLoopAddTimer(CFRunLoopGetMain(), timer.get(), kCFRunLoopCommonModes);
  return Timer(std::make_shared<RunLoopTimer>(std::move(timer)));
}

void MacScheduler::post(std::function<void()> task) {
  dispatch_async(dispatch_get_main_queue(), ^{
    task();
  });
}

}  // namespace sodam
