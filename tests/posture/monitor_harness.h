#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/defaults.h"
#include "platform/lid_sensor.h"
#include "platform/power.h"
#include "platform/store.h"
#include "posture/monitor.h"
#include "posture/posture_log.h"
#include "sim/sim_devices.h"
#include "sim/sitter_frame_source.h"
#include "sim/virtual_sitter.h"
#include "support/calendar.h"
#include "support/manual_scheduler.h"
#include "support/serial_queue.h"
#include "support/time_zone.h"
#include "worklife/work_life.h"

namespace sodam::testing {

// A monitor wired to real components, a virtual sitter as its camera and a
// scripted machine, all in virtual time. Records every callback in order.
struct MonitorHarness {
  ManualClock clock{Date::fromUnix(1'795'000'000)};  // a weekday morning in 2026
  ManualScheduler scheduler{clock};
  Calendar calendar{TimeZone::fixed(9 * 3600)};
  MemoryDefaults defaults;
  Store store{defaults, clock, calendar};
  ScriptedPowerSource machine;
  Power power{machine};
  VirtualSitter sitter;
  InlineQueue lidQueue;
  LidSensor lid{std::make_unique<SitterLidDevice>(sitter), lidQueue, scheduler};
  PostureLog log{defaults, clock, calendar};
  WorkLife workLife{defaults, store, power, scheduler, clock, calendar};
  SitterFrameSource camera{sitter, scheduler, clock};
  std::unique_ptr<Monitor> monitor;

  std::vector<std::string> events;
  std::vector<double> severities;

  // Learns the baseline from the sitter as it sits now, then makes the monitor.
  explicit MonitorHarness(bool learn = true, double noisePx = 0.5);

  void makeMonitor();
  void advance(double seconds) { scheduler.advance(seconds); }
  // Runs until the monitor is idle again or the time is up.
  bool runUntilIdle(double limitSeconds);
  // Runs until the phase is reached or the time is up.
  bool runUntil(Monitor::Phase phase, double limitSeconds);
  int logged(PostureEntry::Kind kind) const;
  bool saw(const std::string& event) const;
  std::string lastOutcome() const;
};

const char* name(Monitor::Phase phase);

}  // namespace sodam::testing
