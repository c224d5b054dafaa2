#include "focus/focus_center.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "platform/store.h"
#include "support/manual_scheduler.h"

namespace sodam {
namespace {

struct FocusCenterTest : ::testing::Test {
  ManualClock clock{Date::fromUnix(1'795'000'000)};  // 17:06 in Seoul
  Calendar calendar{TimeZone::fixed(9 * 3600)};
  MemoryDefaults defaults;
  std::vector<std::pair<std::string, std::string>> changes;
  std::vector<int> goals;

  std::unique_ptr<FocusCenter> make() {
    auto center = std::make_unique<FocusCenter>(defaults, clock, calendar);
    center->onChange = [this](const FocusPreset& old, const FocusPreset& now) {
      changes.emplace_back(old.name, now.name);
    };
    center->onGoal = [this](int minutes) { goals.push_back(minutes); };
    return center;
  }
  // Ticks every ten seconds, as the application does.
  void ticks(FocusCenter& center, int count, bool present, MateState state = MateState::focus) {
    for (int i = 0; i < count; ++i) {
      clock.advance(10);
      center.tick(state, present);
    }
  }
};

TEST_F(FocusCenterTest, AReturnWithinThreeMinutesContinuesTheSession) {
  auto center = make();
  center->tick(MateState::focus, true);
  ticks(*center, 6, true);
  const Date start = center->session()->start;
  clock.advance(179);
  center->tick(MateState::away, false);
  ASSERT_TRUE(center->session());
  EXPECT_TRUE(center->session()->away);
  EXPECT_DOUBLE_EQ(center->session()->focused, 60);
  ticks(*center, 1, true);
  EXPECT_EQ(center->session()->start, start);
  EXPECT_DOUBLE_EQ(center->session()->focused, 70) << "the ten seconds since the last tick";
  EXPECT_TRUE(center->records().empty());
}

TEST_F(FocusCenterTest, ThreeMinutesAwayEndTheSessionAtTheStopTime) {
  auto center = make();
  center->tick(MateState::focus, true);
  ticks(*center, 6, true);
  center->count(WatchHabit::phone);
  ticks(*center, 17, false, MateState::away);  // 170 seconds away
  ASSERT_TRUE(center->session());
  clock.advance(10);
  center->tick(MateState::away, false);
  EXPECT_FALSE(center->session());
  ASSERT_EQ(center->records().size(), 1u);
  const FocusRecord& record = center->records().front();
  EXPECT_EQ(record.end, clock.now());
  EXPECT_DOUBLE_EQ(record.focused, 60);
  EXPECT_EQ(record.preset, "자세만 확인");
  EXPECT_EQ(record.habits, (std::map<std::string, int>{{"phone", 1}}));
  EXPECT_EQ(FocusCenter(defaults, clock, calendar).records(), center->records()) << "stored";
  // Nobody in the seat starts nothing.
  ticks(*center, 3, false);
  EXPECT_FALSE(center->session());
}

TEST_F(FocusCenterTest, ASessionUnderAMinuteLeavesNothing) {
  auto center = make();
  center->tick(MateState::focus, true);
  clock.advance(29);
  center->tick(MateState::focus, true);
  clock.advance(30);
  center->tick(MateState::phone, true);
  center->count(WatchHabit::phone);
  EXPECT_EQ(center->habitCount(WatchHabit::phone, clock.now()), 1) << "a running session counts";
  EXPECT_DOUBLE_EQ(center->minutes(clock.now()), 59.0 / 60);
  center->stop();
  EXPECT_TRUE(center->records().empty());
  EXPECT_EQ(center->habitCount(WatchHabit::phone, clock.now()), 0);
  EXPECT_DOUBLE_EQ(center->minutes(clock.now()), 0);
}

TEST_F(FocusCenterTest, TheGoalFiresOncePerSessionAndNeverAtZero) {
  auto center = make();
  center->activate(FocusPreset::defaults()[1]);  // a goal of 50 minutes
  center->tick(MateState::focus, true);
  ticks(*center, 299, true);
  EXPECT_TRUE(goals.empty());
  ticks(*center, 1, true);  // 3000 seconds
  EXPECT_EQ(goals, std::vector<int>{50});
  ticks(*center, 400, true);
  EXPECT_EQ(goals.size(), 1u);
  center->stop();
  center->tick(MateState::focus, true);
  ticks(*center, 300, true);
  EXPECT_EQ(goals.size(), 2u) << "a new session reaches it anew";

  FocusPreset none = FocusPreset::defaults()[1];
  none.goal = 0;
  center->save(none);
  center->tick(MateState::focus, true);
  ticks(*center, 400, true);
  EXPECT_EQ(goals.size(), 2u);
}

TEST_F(FocusCenterTest, ASleepCountsThirtySecondsAtMost) {
  auto center = make();
  center->tick(MateState::focus, true);
  clock.advance(3600);
  center->tick(MateState::focus, true);
  EXPECT_DOUBLE_EQ(center->session()->focused, 30);
}

TEST_F(FocusCenterTest, ChangingPresetsEndsTheSessionAndTellsOldAndNew) {
  auto center = make();
  EXPECT_EQ(center->active().name, "자세만 확인");
  center->tick(MateState::focus, true);
  ticks(*center, 10, true);
  center->activate(FocusPreset::defaults()[1]);
  EXPECT_FALSE(center->session());
  EXPECT_EQ(center->records().size(), 1u);
  EXPECT_EQ(changes,
            (std::vector<std::pair<std::string, std::string>>{{"자세만 확인", "나의 집중코치"}}));
  EXPECT_EQ(FocusCenter(defaults, clock, calendar).active().name, "나의 집중코치")
      << "the fixed id is found again after a restart";

  FocusPreset edited = center->active();
  edited.habits.push_back(WatchHabit::mouth);
  center->save(edited);
  EXPECT_EQ(changes.size(), 2u) << "saving the active preset changes what is watched";
  FocusPreset other = FocusPreset::defaults()[0];
  other.id = "another";
  other.name = "독서";
  center->save(other);
  EXPECT_EQ(changes.size(), 2u);
  EXPECT_EQ(center->presets().size(), 3u);
}

TEST_F(FocusCenterTest, StoredPresetsKeepOnlyPickableHabitsAndBadOnesLeaveTheDefaults) {
  nlohmann::json preset = FocusPreset::defaults()[1].toJson();
  preset["habits"] = {"phone", "posture", "yawning", "mouth"};
  defaults.setJsonData(StoreKey::focusPresets, nlohmann::json::array({preset}));
  auto center = make();
  ASSERT_EQ(center->presets().size(), 1u);
  EXPECT_EQ(center->presets()[0].habits,
            (std::vector<WatchHabit>{WatchHabit::phone, WatchHabit::mouth}));

  for (const auto& stored : {nlohmann::json::array(), nlohmann::json{{"id", "x"}},
                             nlohmann::json::array({{{"id", "x"}, {"name", 3}}})}) {
    defaults.setJsonData(StoreKey::focusPresets, stored);
    EXPECT_EQ(make()->presets(), FocusPreset::defaults()) << stored.dump();
  }
}

TEST_F(FocusCenterTest, RecordsOlderThan120DaysGoAndTheDayCountsByItsStart) {
  FocusRecord old{"a",
                  clock.now() - 121 * 86400.0,
                  clock.now() - 121 * 86400.0 + 600,
                  600,
                  "자세만 확인",
                  UseMode::laptop,
                  {}};
  FocusRecord today{"b",           clock.now() - 3600, clock.now() - 1800,
                    1500,          "나의 집중코치",    UseMode::watch,
                    {{"phone", 2}}};
  defaults.setJsonData(StoreKey::focusRecords,
                       nlohmann::json::array({old.toJson(), today.toJson()}));
  auto center = make();
  EXPECT_EQ(center->records().size(), 2u);
  EXPECT_DOUBLE_EQ(center->minutes(clock.now()), 25);
  EXPECT_EQ(center->habitCount(WatchHabit::phone, clock.now()), 2);
  EXPECT_EQ(center->records(clock.now()), std::vector<FocusRecord>{today});
  center->tick(MateState::focus, true);
  ticks(*center, 6, true);
  center->stop();
  EXPECT_EQ(center->records().size(), 2u) << "the old record went when the new one came";
  EXPECT_DOUBLE_EQ(center->minutes(clock.now()), 26);
}

}  // namespace
}  // namespace sodam
