#pragma once

#include <functional>
#include <optional>

#include "posture/frame_source.h"
#include "sim/virtual_sitter.h"
#include "support/clock.h"
#include "support/scheduler.h"

namespace sodam {

// The virtual sitter as the monitor's camera: while running it delivers one
// rendered frame per frame interval on the scheduler, and keeps the camera's
// duty (time on, frames taken) for the battery account. Main thread only.
class SitterFrameSource final : public FrameSource {
 public:
  SitterFrameSource(VirtualSitter& sitter, Scheduler& scheduler, const Clock& clock);

  bool authorized() override { return access; }
  bool revoked() const override { return revokedCamera; }
  void setFrameInterval(double seconds) override;
  void setLight(bool on) override { light_ = on; }
  void setHandler(Handler handler) override { handler_ = std::move(handler); }
  void start() override;
  void stop() override;

  bool access = true;
  bool revokedCamera = false;
  // The camera runs but no frame arrives, as when the device hangs.
  bool frozen = false;

  bool running() const { return running_; }
  bool light() const { return light_; }
  double frameInterval() const { return interval_; }
  // Seconds the camera has been on, including the current run.
  double secondsOn() const;
  long framesDelivered() const { return frames_; }

 private:
  void tick();

  VirtualSitter& sitter_;
  Scheduler& scheduler_;
  const Clock& clock_;
  Handler handler_;
  Timer ticker_;
  double interval_ = 0.12;
  bool light_ = false;
  bool running_ = false;
  Date runningSince_;
  double secondsOnBefore_ = 0;
  long frames_ = 0;
};

}  // namespace sodam
