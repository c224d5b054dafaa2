#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "posture/capture.h"
#include "posture/measurement.h"
#include "sim/sim_detections.h"
#include "sim/sim_person.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/weak_call.h"

namespace sodam {

// The camera and detectors of the simulation: at a fixed rate it asks the
// source (the virtual sitter) for the person in front of it and hands the
// frame to the capture; the detector then draws that person's detections.
// Frames are made on the main thread, by a timer of the main scheduler, with
// the clock's time as their media time; start and stop may come from any
// thread, and the sink is never called once stopRunning has returned.
class SimCamera final : public CameraDevice, public Detector {
 public:
  using Source = std::function<std::optional<SimPerson>()>;
  struct Options {
    double framesPerSecond = 15;
    Size frame{1280, 720};
    SimDetections detections;
  };

  SimCamera(Scheduler& main, Clock& clock, Source source, Options options);
  SimCamera(Scheduler& main, Clock& clock, Source source)
      : SimCamera(main, clock, std::move(source), Options{}) {}
  ~SimCamera() override;

  bool configure() override { return true; }
  void startRunning(Sink sink) override;
  void stopRunning() override;
  bool inUseElsewhere() const override { return false; }

  void detect(const CameraFrame& frame, const FramePlan& plan, Detections& out) override;

  // Frames handed to the capture so far.
  int framesMade() const;
  // Frames the capture kept and ran the detectors on.
  int framesDetected() const;
  // Frames on which the detector ran this request.
  int requestsRun(Detections::Request request) const;
  // Seconds the camera has run, the current run included.
  double secondsRunning() const;
  bool running() const;

 private:
  void tick();

  Scheduler& main_;
  Clock& clock_;
  Source source_;
  Options options_;
  LifeToken<SimCamera> self_ = lifeToken(this);
  Timer timer_;  // main thread
  // Counted on the frame queue, which may run inside a tick.
  std::atomic<int> framesDetected_{0};
  std::array<std::atomic<int>, Detections::requestCount> requestsRun_{};

  mutable std::mutex mutex_;
  Sink sink_;
  int framesMade_ = 0;
  std::optional<Date> runningSince_;
  double secondsRunBefore_ = 0;
};

}  // namespace sodam
