// An hour at the desk with the virtual sitter, to measure what the checks
// cost: how long the camera runs and how many frames it takes.
#include <gtest/gtest.h>

#include <cstdio>

#include "posture/monitor_harness.h"

namespace sodam {
namespace {

using testing::MonitorHarness;

struct Duty {
  double share;
  long frames;
  int alerts;
  int good;
};

Duty sitAnHour(CheckMode mode, bool battery, bool slouchAtHalfTime) {
  MonitorHarness h;
  h.store.setCheckMode(mode);
  h.machine.battery = battery;
  h.machine.batteryPercent = battery ? 80 : 100;
  h.monitor->start();
  h.advance(1800);
  if (slouchAtHalfTime) h.sitter.posture.headDropCm = 7;
  h.advance(120);
  h.sitter.posture.headDropCm = 0;
  h.advance(1680);
  const double share = h.camera.secondsOn() / 3600;
  std::printf("[ duty     ] %-8s %-7s %s: camera on %.1f%% of the hour, %ld frames\n",
              mode == CheckMode::live ? "live" : "interval", battery ? "battery" : "mains",
              slouchAtHalfTime ? "with a slouch" : "sitting well", 100 * share,
              h.camera.framesDelivered());
  return {share, h.camera.framesDelivered(), h.logged(PostureEntry::Kind::alert),
          h.logged(PostureEntry::Kind::good)};
}

TEST(MonitorDuty, IntervalChecksKeepTheCameraOffMostOfTheHour) {
  const Duty mains = sitAnHour(CheckMode::interval, false, false);
  const Duty battery = sitAnHour(CheckMode::interval, true, false);
  EXPECT_EQ(mains.alerts, 0);
  // About two seconds of frames a check, at most one check a minute.
  EXPECT_LT(mains.share, 0.04);
  EXPECT_LT(battery.share, mains.share);
  EXPECT_LT(battery.frames, mains.frames);
  // After five good checks the interval stretches from 60 to 90 seconds.
  EXPECT_LT(mains.good, 45);
  EXPECT_GT(mains.good, 35);
}

TEST(MonitorDuty, ASlouchCostsOneAlertAndAFewSecondsOfFastFrames) {
  const Duty calm = sitAnHour(CheckMode::interval, false, false);
  const Duty slouch = sitAnHour(CheckMode::interval, false, true);
  EXPECT_EQ(slouch.alerts, 1);
  EXPECT_GT(slouch.frames, calm.frames);
}

TEST(MonitorDuty, LiveWatchingRunsSlowlyAndSlowerOnBattery) {
  const Duty mains = sitAnHour(CheckMode::live, false, false);
  const Duty battery = sitAnHour(CheckMode::live, true, false);
  EXPECT_GT(mains.share, 0.99);
  // Four frames a second on mains (0.25 s rounded up to whole camera frames:
  // 0.267 s), two on battery.
  EXPECT_NEAR(static_cast<double>(mains.frames) / 3600, 3.75, 0.1);
  EXPECT_NEAR(static_cast<double>(battery.frames) / 3600, 1.875, 0.1);
  EXPECT_EQ(mains.alerts, 0);
  // Two minutes of slouching: an alert ends after its minute and, the posture
  // still bad, five seconds later the next one begins.
  const Duty slouch = sitAnHour(CheckMode::live, false, true);
  EXPECT_EQ(slouch.alerts, 2);
}

}  // namespace
}  // namespace sodam
