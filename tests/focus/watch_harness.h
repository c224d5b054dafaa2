#pragma once

#include <vector>

#include "focus/watch_engine.h"
#include "platform/power.h"
#include "platform/store.h"
#include "posture/capture.h"
#include "posture/capture_frame_source.h"
#include "posture/live_feed.h"
#include "posture/monitor.h"
#include "posture/posture_log.h"
#include "sim/sim_machine.h"
#include "support/calendar.h"
#include "support/manual_scheduler.h"
#include "worklife/work_life.h"

namespace sodam::testing {

// A watch engine on the simulated laptop's real capture, feed and monitor.
// The scheduler is never advanced, so the camera delivers nothing: the tests
// hand the engine their own measurements, half a second apart.
struct WatchHarness {
  ManualClock clock{Date::fromUnix(1'795'000'000)};
  ManualScheduler scheduler{clock};
  Calendar calendar{TimeZone::fixed(9 * 3600)};
  MemoryDefaults defaults;
  Store store{defaults, clock, calendar};
  SimMachine machine{scheduler, clock};
  Power power{machine.power};
  Capture capture{{machine.camera, machine.camera, machine.access, nullptr, scheduler, clock,
                   machine.queue, machine.queue}};
  CaptureFrameSource frames{capture};
  LidSensor lid{machine.lidDevice(), machine.queue, scheduler};
  PostureLog log{defaults, clock, calendar};
  WorkLife work{defaults, store, power, scheduler, clock, calendar};
  Monitor monitor{{frames, lid, log, store, defaults, power, clock, scheduler}};
  LiveFeed feed{capture, lid, clock};
  WatchEngine engine{{feed, capture, monitor, power, work, clock}};
  std::vector<WatchHabit> reported;

  WatchHarness() {
    engine.onHabit = [this](WatchHabit habit) { reported.push_back(habit); };
  }

  void see(const std::optional<Measurement>& m, int frames = 1, double every = 0.5) {
    for (int i = 0; i < frames; ++i) {
      clock.advance(every);
      engine.take(m);
    }
  }
  // Calibrates on ten and a half seconds of the given posture.
  void run(std::vector<WatchHabit> habits, bool posture, const Measurement& upright) {
    engine.calibrate(std::move(habits), posture);
    see(upright, 21);
  }
};

// A person at the far side of the desk, as the pose reader reads them: eyes
// at `eyeY` (pixels from the bottom), `ipd` apart, the chin 1.8 eye distances
// below, the hands resting on the desk apart.
Measurement seated(double eyeY = 450, double ipd = 60);
// The same with both hands held together low and the gaze down.
Measurement withPhone(Measurement m);
// The right hand under the chin; the left hand at the mouth.
Measurement withChinOnHand(Measurement m);
Measurement withHandAtMouth(Measurement m);

}  // namespace sodam::testing
