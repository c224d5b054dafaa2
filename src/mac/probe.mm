#include "mac/probe.h"

#import <Foundation/Foundation.h>
#include <os/log.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "mac/dispatch_queue.h"
#include "mac/mac_camera.h"
#include "mac/mac_process_inspector.h"
#include "mac/mac_scheduler.h"
#include "mac/vision_detector.h"
#include "posture/capture.h"
#include "posture/probe_access.h"
#include "posture/probe_format.h"
#include "support/clock.h"

namespace sodam {

namespace {

constexpr double defaultProbeSeconds = 30;
constexpr const char* fallbackSubsystem = "kr.lumenfold.sodamjari";

double probeSeconds() {
  const char* text = std::getenv("PROBE_SECONDS");
  if (!text) return defaultProbeSeconds;
  char* end = nullptr;
  const double seconds = std::strtod(text, &end);
  return end != text && seconds > 0 ? seconds : defaultProbeSeconds;
}

os_log_t probeLog() {
  NSString* bundle = NSBundle.mainBundle.bundleIdentifier;
  const char* subsystem = bundle ? bundle.UTF8String : fallbackSubsystem;
  return os_log_create(subsystem, "probe");
}

void write(os_log_t log, const std::string& line) {
  // Public: the lines hold numbers only, and a developer reads them.
  os_log(log, "%{public}s", line.c_str());
}

// Everything the run needs, alive until the process exits.
struct ProbeRun {
  SystemClock clock;
  MacScheduler scheduler;
  DispatchSerialQueue sessionQueue{"capture.session"};
  DispatchSerialQueue frameQueue{"capture.frames"};
  MacCamera camera{sessionQueue, frameQueue};
  MacCameraAccess access;
  MacProcessInspector process;
  VisionDetector detector;
  Capture capture{{camera, detector, access, nullptr, scheduler, clock, sessionQueue, frameQueue}};
  os_log_t log = probeLog();
  ProbeTally tally;
  std::optional<double> headTop;
  Timer end;

  void start(double seconds) {
    // Every frame the camera gives, with the side view, so both lines show.
    capture.setFrameInterval(0);
    capture.setTrackArms(true);
    capture.onHeadTop = [this](std::optional<double> top) { headTop = top; };
    capture.onMeasurement = [this](std::optional<Measurement> m) {
      tally.add(m);
      write(log, probeFrameLine(tally.frames, m, headTop));
    };
    capture.onSide = [this](std::optional<SideBody> side) { write(log, probeSideLine(side)); };
    capture.start();
    end = scheduler.mainTimer(seconds, [this] { finish(); });
  }

  [[noreturn]] void finish() {
    write(log, probeDoneLine(tally));
    capture.stop();
    std::exit(EXIT_SUCCESS);
  }
};

}  // namespace

void runProbe(Lockdown& lock) {
  // Made once and never destroyed: the process ends inside the run loop.
  static auto* run = new ProbeRun();
  lock.onThreat = [](const Threat&) { run->capture.revoke(); };
  lock.watch(hardeningChecks(run->process));
  obtainProbeAccess(run->capture, run->access, [](bool allowed) {
    if (!allowed) {
      write(run->log, probeNoPermissionLine());
      std::exit(EXIT_FAILURE);
    }
    run->start(probeSeconds());
  });
  CFRunLoopRun();
  std::exit(EXIT_SUCCESS);
}

}  // namespace sodam
