#pragma once

// Main thread. It waits in real time for the helper's answer.

#include <memory>
#include <string>

#include "camerawatch/helper_channel.h"
#include "camerawatch/log_link.h"
#include "posix/pipe_helper_launcher.h"
#include "support/clock.h"
#include "support/manual_scheduler.h"

namespace sodam {

// This machine's camera as a command of the Linux shell sees it, through
// the real camera-log helper. The helper is started at once, before the
// privacy lock forbids starting programs; the link to it is made after the
// lock, so that its reader thread is confined like the rest.
class HostCamera {
 public:
  // The longest wait for the helper's answer.
  static constexpr double answerSeconds = 3;

  HostCamera();
  ~HostCamera();
  HostCamera(const HostCamera&) = delete;
  HostCamera& operator=(const HostCamera&) = delete;

  // Links to the helper started by the constructor; after the lock.
  void connect();
  // Who uses a camera on this machine now, as a line for the user.
  std::string nowLine();

 private:
  PipeHelperLauncher launcher_;
  std::unique_ptr<HelperChannel> channel_;
  Date started_;
  ManualClock clock_;
  ManualScheduler scheduler_{clock_};
  std::unique_ptr<LogLink> link_;
};

}  // namespace sodam
