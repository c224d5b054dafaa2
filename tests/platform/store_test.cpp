#include "platform/store.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace sodam {
namespace {

class StoreTest : public ::testing::Test {
 protected:
  Date local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return calendar.date({year, month, day, hour, minute, second}).value();
  }

  MemoryDefaults defaults;
  ManualClock clock{Date::fromUnix(1'718'000'000)};
  Calendar calendar{TimeZone::fromPosixRule("EST5EDT,M3.2.0,M11.1.0").value()};
  Store store{defaults, clock, calendar};
};

TEST_F(StoreTest, FreshMachineReadsTheDefaults) {
  EXPECT_TRUE(store.enabled());
  EXPECT_EQ(store.alertStyle(), AlertStyle::border);
  EXPECT_EQ(store.checkMode(), CheckMode::interval);
  EXPECT_EQ(store.sensitivity(), Sensitivity::normal);
  EXPECT_EQ(store.workEndMinutes(), 1110);
  EXPECT_TRUE(store.shareStatus());
  EXPECT_TRUE(store.sittingNudge());
  EXPECT_TRUE(store.hideCameraFromCapture());
  EXPECT_FALSE(store.pauseOnBattery());
  EXPECT_FALSE(store.buddyOften());
  EXPECT_FALSE(store.guideDone());
  EXPECT_EQ(store.pillEars(8), 0);
  EXPECT_TRUE(store.watchEvents().empty());
  EXPECT_FALSE(store.lastSweep());
  EXPECT_EQ(store.watchSeenAt(), Date::distantPast());
  EXPECT_EQ(defaults.writes(), 0) << "reading never writes a default back";
}

// What each reading pattern makes of a value it did not expect.
TEST_F(StoreTest, OddStoredValuesFallBackByTheSettingsPattern) {
  struct Case {
    std::string_view key;
    DefaultsValue stored;
    std::function<int(const Store&)> read;
    int expected;
  };
  auto ears = [](const Store& s) { return s.pillEars(4); };
  auto trim = [](const Store& s) { return s.pillTrim(4); };
  const std::vector<Case> cases{
      {StoreKey::alertStyle, std::int64_t{99}, [](auto& s) { return s.alertStyle().raw(); }, 0},
      {StoreKey::alertStyle, std::int64_t{1}, [](auto& s) { return s.alertStyle().raw(); }, 1},
      {StoreKey::checkMode, true, [](auto& s) { return s.checkMode().raw(); }, 1},
      {StoreKey::sensitivity, std::int64_t{99}, [](auto& s) { return s.sensitivity().raw(); }, 1},
      {StoreKey::sensitivity, std::int64_t{0}, [](auto& s) { return s.sensitivity().raw(); }, 0},
      {StoreKey::sensitivity, std::string("0"), [](auto& s) { return s.sensitivity().raw(); }, 1},
      {StoreKey::pillEars, std::int64_t{99}, ears, 0},
      {StoreKey::pillEars, 2.7, ears, 0},
      {StoreKey::pillTrim, 2.7, trim, 2},
      {StoreKey::pillTrim, std::int64_t{-1}, trim, 0},
      {StoreKey::workEndMinutes, std::string("600"), [](auto& s) { return s.workEndMinutes(); },
       1110},
      {StoreKey::workEndMinutes, 600.0, [](auto& s) { return s.workEndMinutes(); }, 600},
      {StoreKey::enabled, std::int64_t{0}, [](auto& s) { return int{s.enabled()}; }, 1},
      {StoreKey::enabled, false, [](auto& s) { return int{s.enabled()}; }, 0},
      {StoreKey::pauseOnBattery, std::int64_t{1}, [](auto& s) { return int{s.pauseOnBattery()}; },
       0},
      {StoreKey::doraniSeenLevel, 3.9, [](auto& s) { return s.doraniSeenLevel(); }, 3},
  };
  for (const auto& c : cases) {
    MemoryDefaults fresh;
    Store s(fresh, clock, calendar);
    fresh.set(c.key, c.stored);
    EXPECT_EQ(c.read(s), c.expected) << c.key << " case " << (&c - cases.data());
  }
}

TEST_F(StoreTest, WatchRecordsAndDatesClearWhenGivenNothing) {
  store.setWatchEvents(nlohmann::json::array({{{"kind", "cameraOn"}}}));
  EXPECT_EQ(store.watchEvents().size(), 1u);
  store.setWatchEvents(nlohmann::json::object());
  EXPECT_FALSE(defaults.contains(StoreKey::watchEvents));

  store.setLastSweep(Date{5});
  EXPECT_EQ(store.lastSweep(), Date{5});
  store.setLastSweep(std::nullopt);
  EXPECT_FALSE(defaults.contains(StoreKey::lastSweep));

  store.setSeenKeys({"a", "b"});
  EXPECT_EQ(store.seenKeys(), (std::vector<std::string>{"a", "b"}));
}

TEST_F(StoreTest, WorkEndIsTodayAtTheChosenMinute) {
  clock.set(local(2024, 6, 12, 9, 41, 7));
  store.setWorkEndMinutes(0);
  EXPECT_EQ(store.workEnd(), local(2024, 6, 12, 0, 0, 0));
  store.setWorkEndMinutes(1110);
  EXPECT_EQ(store.workEnd(), local(2024, 6, 12, 18, 30, 0));
  store.setWorkEndMinutes(24 * 60);
  EXPECT_FALSE(store.workEnd());
  store.setWorkEndMinutes(-5);
  EXPECT_FALSE(store.workEnd());
}

TEST_F(StoreTest, WorkEndOnClockChangeDays) {
  // 02:30 does not exist on the spring day: the next time that does.
  clock.set(local(2024, 3, 10, 12));
  store.setWorkEndMinutes(150);
  EXPECT_EQ(store.workEnd(), local(2024, 3, 10, 3, 0, 0));
  // 01:30 happens twice on the autumn day: the first one, still daylight time.
  clock.set(local(2024, 11, 3, 12));
  store.setWorkEndMinutes(90);
  EXPECT_EQ(store.workEnd(), Date::fromUnix(1'730'611'800));
}

}  // namespace
}  // namespace sodam
