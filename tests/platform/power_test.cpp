#include "platform/power.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

struct FakePowerSource : PowerSource {
  bool battery = false;
  std::vector<Capacity> sources;
  bool lowPower = false;
  double idle = 0;
  std::optional<DisplayAssertions> assertions;
  std::optional<std::int64_t> front;
  std::optional<std::vector<Window>> windowList;
  std::vector<Size> screens;
  std::optional<bool> locked;

  bool providingBattery() const override { return battery; }
  std::vector<Capacity> capacities() const override { return sources; }
  bool lowPowerMode() const override { return lowPower; }
  double idleSeconds() const override { return idle; }
  std::optional<DisplayAssertions> displayAssertions() const override { return assertions; }
  std::optional<std::int64_t> frontmostPid() const override { return front; }
  std::optional<std::vector<Window>> windows() const override { return windowList; }
  std::vector<Size> screenSizes() const override { return screens; }
  std::optional<bool> sessionScreenLocked() const override { return locked; }
};

TEST(PowerTest, SavingIntervalAndLabelFollowBatteryAndLowPower) {
  struct Case {
    bool battery;
    std::optional<std::int64_t> level;
    bool lowPower;
    bool saving;
    double interval;
    std::string label;
  };
  const std::vector<Case> cases{
      {false, 100, false, false, 60, "전원 연결"},
      {false, 10, false, false, 60, "전원 연결"},
      {true, 21, false, false, 90, "배터리 21%"},
      {true, 20, false, true, 180, "배터리 20% · 아끼는 중"},
      {true, std::nullopt, false, false, 90, "배터리 "},
      {false, 80, true, true, 180, "저전력 모드 · 배터리를 아끼는 중"},
  };
  for (const auto& c : cases) {
    FakePowerSource source;
    source.battery = c.battery;
    if (c.level) source.sources = {{*c.level, 100}};
    source.lowPower = c.lowPower;
    Power power(source);
    EXPECT_EQ(power.saving(), c.saving) << c.label;
    EXPECT_EQ(power.checkInterval(), c.interval) << c.label;
    EXPECT_EQ(power.label(), c.label);
  }
}

TEST(PowerTest, BatteryLevelComesFromTheFirstSourceWithBothCapacities) {
  FakePowerSource source;
  Power power(source);
  EXPECT_FALSE(power.batteryLevel());
  source.sources = {{std::nullopt, 100}, {1999, 4000}, {50, 100}};
  EXPECT_EQ(power.batteryLevel(), 49) << "integer division";
  source.sources = {{30, 0}};
  EXPECT_EQ(power.batteryLevel(), 0);
}

TEST(PowerTest, FullScreenNeedsTheFrontAppsNormalWindowWithinTwoPoints) {
  using W = PowerSource::Window;
  const std::vector<Size> screens{{1512, 982}, {2560, 1440}};
  struct Case {
    W window;
    bool fullscreen;
  };
  const std::vector<Case> cases{
      {{7, 0, 1512, 982}, true},
      {{7, 0, 1511, 981}, true},
      {{7, 0, 1510, 982}, false},
      {{7, 0, 1513.5, 982}, true},
      {{7, 0, 2560, 1440}, true},
      {{7, 0, 1512, 1440}, false},
      {{8, 0, 1512, 982}, false},
      {{7, 3, 1512, 982}, false},
      {{7, std::nullopt, 1512, 982}, false},
      {{7, 0, 1512, std::nullopt}, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Power::fullscreen({c.window}, 7, screens), c.fullscreen)
        << c.window.width.value_or(-1) << "x" << c.window.height.value_or(-1) << " pid "
        << *c.window.ownerPid;
  }

  FakePowerSource source;
  Power power(source);
  source.windowList = std::vector<W>{{8, 0, 800, 600}, {7, 0, 1512, 982}};
  source.screens = screens;
  EXPECT_FALSE(power.fullscreenFront()) << "no frontmost application";
  source.front = 7;
  EXPECT_TRUE(power.fullscreenFront());
  source.windowList.reset();
  EXPECT_FALSE(power.fullscreenFront());
}

TEST(PowerTest, MissingAnswersReadFalse) {
  FakePowerSource source;
  Power power(source);
  EXPECT_FALSE(power.displayHeldAwake());
  EXPECT_FALSE(power.sessionLocked());
  source.assertions = PowerSource::DisplayAssertions{0, 1};
  EXPECT_TRUE(power.displayHeldAwake());
  source.locked = true;
  EXPECT_TRUE(power.sessionLocked());
}

}  // namespace
}  // namespace sodam
