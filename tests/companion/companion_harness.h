#pragma once

#include <memory>
#include <vector>

#include "companion/dorani.h"
#include "platform/power.h"
#include "platform/store.h"
#include "posture/posture_log.h"
#include "sim/sim_devices.h"
#include "support/manual_scheduler.h"
#include "worklife/work_life.h"

namespace sodam::testing {

// 도란이 over a real posture log and work-life tracker in virtual time, on a
// calendar nine hours east of UTC. Dorani is made on first use, so a test
// can lay down records first, as a returning user has them.
struct CompanionHarness {
  MemoryDefaults defaults;
  Calendar calendar{TimeZone::fixed(9 * 3600)};
  ManualClock clock{at(2026, 3, 10, 10)};
  ManualScheduler scheduler{clock};
  Store store{defaults, clock, calendar};
  ScriptedPowerSource source;
  Power power{source};
  PostureLog log{defaults, clock, calendar};
  WorkLife work{defaults, store, power, scheduler, clock, calendar};
  double focusMinutes = 0;
  std::unique_ptr<Dorani> made;

  Date at(int year, int month, int day, int hour = 0, int minute = 0) const {
    return calendar.date({year, month, day, hour, minute, 0}).value();
  }
  Dorani& dorani() {
    if (!made) {
      made = std::make_unique<Dorani>(Dorani::Ports{defaults, store, log, work, clock, calendar,
                                                    [this](Date) { return focusMinutes; }});
    }
    return *made;
  }
  // `count` entries of the kind a minute apart from now; the clock ends on
  // the last.
  void record(PostureEntry::Kind kind, int count, std::vector<IssueKind> issues = {}) {
    for (int i = 0; i < count; ++i) {
      if (i > 0) clock.advance(60);
      log.record(kind, issues);
    }
  }
  // Banked points as if earlier days had earned them.
  void bank(IntDictionary days) { defaults.setDictionary(StoreKey::doraniDays, std::move(days)); }
  // Sits at the machine from now for the minutes, ticking as the tracker does.
  void sit(int minutes) {
    for (int tick = 0; tick <= minutes * 2; ++tick) {
      if (tick > 0) clock.advance(30);
      work.tick();
    }
  }
};

}  // namespace sodam::testing
