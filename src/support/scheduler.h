#pragma once

#include <functional>
#include <memory>

#include "support/date.h"

namespace sodam {

// A scheduled block. Owning a Timer keeps the timer alive: destroying or
// reassigning the handle invalidates it, so a component that dies never gets
// a late callback. Main thread only.
class Timer {
 public:
  // What a scheduler keeps for one timer; the handle forwards to it.
  class Backend {
   public:
    virtual ~Backend() = default;
    virtual void invalidate() = 0;
    virtual bool isValid() const = 0;
    virtual Date fireDate() const = 0;
    virtual double tolerance() const = 0;
  };

  Timer() = default;
  explicit Timer(std::shared_ptr<Backend> backend) : backend_(std::move(backend)) {}
  Timer(Timer&&) noexcept = default;
  Timer& operator=(Timer&& other) noexcept;
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  ~Timer() { invalidate(); }

  void invalidate();
  bool isValid() const { return backend_ && backend_->isValid(); }
  // The next time the timer fires; distant past when not valid.
  Date fireDate() const;
  double tolerance() const { return backend_ ? backend_->tolerance() : 0; }
  // Lets the timer run to its end without a handle; it can't be cancelled then.
  void detach() { backend_.reset(); }

 private:
  std::shared_ptr<Backend> backend_;
};

// The main thread's run loop as the core sees it: timers and posted work.
// Implementations: the macOS main run loop, the manual scheduler of tests and
// the simulation. Every method is called on the main thread except post, which
// may be called from any thread and is the one hop onto the main thread.
class Scheduler {
 public:
  struct Timing {
    double delaySeconds = 0;
    double repeatSeconds = 0;  // 0: one-shot
    double toleranceSeconds = 0;
  };

  virtual ~Scheduler() = default;
  virtual Timer schedule(Timing timing, std::function<void()> block) = 0;
  virtual void post(std::function<void()> task) = 0;

  // One-shot timer with the tolerance every product timer uses: the larger of
  // a tenth of the delay and half a second, so the system may batch wake-ups.
  Timer mainTimer(double delaySeconds, std::function<void()> block);
  // A repeating timer with the same tolerance rule on its interval.
  Timer repeating(double intervalSeconds, std::function<void()> block);
  // Runs the action after the delay; there is no handle and no cancelling.
  void later(double seconds, std::function<void()> action);

  static double toleranceFor(double delaySeconds);
};

}  // namespace sodam
