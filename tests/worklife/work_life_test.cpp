#include "worklife/work_life.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/manual_scheduler.h"

namespace sodam {
namespace {

struct FakePowerSource : PowerSource {
  double idle = 0;
  bool providingBattery() const override { return false; }
  std::vector<Capacity> capacities() const override { return {}; }
  bool lowPowerMode() const override { return false; }
  double idleSeconds() const override { return idle; }
  std::optional<DisplayAssertions> displayAssertions() const override { return std::nullopt; }
  std::optional<std::int64_t> frontmostPid() const override { return std::nullopt; }
  std::optional<std::vector<Window>> windows() const override { return std::nullopt; }
  std::vector<Size> screenSizes() const override { return {}; }
  std::optional<bool> sessionScreenLocked() const override { return std::nullopt; }
};

class WorkLifeTest : public ::testing::Test {
 protected:
  Date local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return calendar.date({year, month, day, hour, minute, second}).value();
  }
  WorkLife& work() {
    if (!work_) {
      work_ = std::make_unique<WorkLife>(defaults, store, power, scheduler, clock, calendar);
      work_->onNudge = [this](const WorkLife::Nudge& nudge) { nudges.push_back(nudge); };
    }
    return *work_;
  }
  void tickAt(Date t) {
    clock.set(t);
    work().tick();
  }
  // Ticks every 30 seconds from `from` to `to`, both included.
  void sitFrom(Date from, Date to) {
    for (Date t = from; t <= to; t += 30)
      tickAt(t);
  }
  std::vector<WorkLife::Nudge::Kind> kinds() const {
    std::vector<WorkLife::Nudge::Kind> found;
    for (const auto& nudge : nudges)
      found.push_back(nudge.kind);
    return found;
  }

  MemoryDefaults defaults;
  ManualClock clock{Date::fromUnix(1'718'000'000)};
  ManualScheduler scheduler{clock};
  Calendar calendar{TimeZone::fromPosixRule("EST5EDT,M3.2.0,M11.1.0").value()};
  Store store{defaults, clock, calendar};
  FakePowerSource source;
  Power power{source};
  std::unique_ptr<WorkLife> work_;
  std::vector<WorkLife::Nudge> nudges;
};

TEST_F(WorkLifeTest, PresenceComesFromInputOrARecentFace) {
  source.idle = 89;
  EXPECT_TRUE(work().present());
  source.idle = 90;
  EXPECT_FALSE(work().present());
  work().observed(true);
  clock.advance(149);
  EXPECT_TRUE(work().present());
  clock.advance(1);
  EXPECT_FALSE(work().present());

  work().observed(true);
  source.idle = 60;
  work().observed(false);
  EXPECT_TRUE(work().present()) << "recent input outweighs the camera's no";
  source.idle = 90;
  EXPECT_TRUE(work().present());
  source.idle = 61;
  work().observed(false);
  source.idle = 90;
  EXPECT_FALSE(work().present());

  source.idle = 0;
  power.setScreenLocked(true);
  EXPECT_FALSE(work().present());
  power.setScreenLocked(false);
  power.setDisplaysAsleep(true);
  EXPECT_FALSE(work().present());
}

TEST_F(WorkLifeTest, GapOf180SecondsIsSwallowed181OpensANewSpan) {
  Date start = local(2024, 6, 12, 9);
  tickAt(start);
  tickAt(start + 180);
  EXPECT_EQ(work().today().spans, (std::vector<WorkDay::Span>{{start, start + 180}}));
  EXPECT_EQ(work().sittingSince(), start);

  tickAt(start + 361);
  EXPECT_EQ(work().today().spans.size(), 2u);
  EXPECT_EQ(work().sittingSince(), start + 361);
  EXPECT_EQ(work().today().breaks(), 1);

  // Away for over three minutes while ticking: the streak ends.
  source.idle = 500;
  tickAt(start + 361 + 180);
  EXPECT_EQ(work().sittingSince(), start + 361);
  tickAt(start + 361 + 181);
  EXPECT_FALSE(work().sittingSince());
  EXPECT_EQ(work().streakMinutes(), 0);
}

TEST_F(WorkLifeTest, DaysTurnAtLocalMidnightAlsoOnAClockChangeDay) {
  // Spring day: 01:59:30 and 03:00:00 are one tick apart.
  clock.set(local(2024, 3, 10, 1, 59));
  work().start();
  scheduler.advance(120);
  EXPECT_EQ(work().today().spans,
            (std::vector<WorkDay::Span>{{local(2024, 3, 10, 1, 59), local(2024, 3, 10, 3, 1)}}));
  EXPECT_EQ(work().today().seated(), 2);
  EXPECT_EQ(work().today().day, local(2024, 3, 10));

  scheduler.advanceTo(local(2024, 3, 10, 23, 59, 30));
  scheduler.advance(30);
  ASSERT_EQ(work().days().size(), 2u);
  EXPECT_EQ(work().days()[0].spans.back().end, local(2024, 3, 10, 23, 59, 30));
  Date midnight = local(2024, 3, 11);
  EXPECT_EQ(work().today().day, midnight);
  EXPECT_EQ(work().today().spans, (std::vector<WorkDay::Span>{{midnight, midnight}}));
  EXPECT_EQ(work().sittingSince(), midnight);
  EXPECT_EQ(work().day(local(2024, 3, 10, 12))->spans.size(), 1u);
}

TEST_F(WorkLifeTest, TimerTicksEvery30SecondsAndNudgesAt50Minutes) {
  Date start = local(2024, 6, 12, 9);
  clock.set(start);
  work().start();
  work().start();
  EXPECT_EQ(scheduler.activeTimers(), 1u);
  EXPECT_EQ(work().today().spans.size(), 1u) << "one tick at once";

  scheduler.advance(50 * 60 - 30);
  EXPECT_TRUE(nudges.empty());
  scheduler.advance(30);
  ASSERT_EQ(nudges.size(), 1u);
  EXPECT_EQ(nudges[0].kind, WorkLife::Nudge::Kind::stand);
  EXPECT_EQ(nudges[0].minutes, 50);
  EXPECT_EQ(work().streakMinutes(), 50);

  // The streak goes on, but the next stand nudge waits 30 minutes.
  scheduler.advance(30 * 60 - 30);
  EXPECT_EQ(nudges.size(), 1u);
  scheduler.advance(30);
  ASSERT_EQ(nudges.size(), 2u);
  EXPECT_EQ(nudges[1].minutes, 80);
}

TEST_F(WorkLifeTest, StandNudgeComesBeforeTheReportWhichFollowsOncePerDay) {
  store.setWorkEndMinutes(10 * 60);
  Date start = local(2024, 6, 12, 9, 10);
  sitFrom(start, start + 50 * 60 - 30);
  EXPECT_TRUE(nudges.empty()) << "49.5 minutes seated: no report yet though past work end";

  tickAt(start + 50 * 60);
  tickAt(start + 50 * 60 + 30);
  ASSERT_EQ(kinds(), (std::vector{WorkLife::Nudge::Kind::stand}));
  sitFrom(start + 51 * 60, start + 60 * 60);
  ASSERT_EQ(kinds(), (std::vector{WorkLife::Nudge::Kind::stand, WorkLife::Nudge::Kind::wrapUp}));
  EXPECT_EQ(nudges[1].day.seated(), 60);
  EXPECT_EQ(defaults.date(StoreKey::workWrapped).value, start + 60 * 60);

  sitFrom(start + 60 * 60 + 30, start + 70 * 60);
  EXPECT_EQ(nudges.size(), 2u) << "one report a day";

  // A new instance knows today's report was given; it only asks to stand,
  // as the span and with it the streak go on through the restart.
  work_.reset();
  tickAt(start + 71 * 60);
  EXPECT_EQ(kinds(), (std::vector{WorkLife::Nudge::Kind::stand, WorkLife::Nudge::Kind::wrapUp,
                                  WorkLife::Nudge::Kind::stand}));
}

TEST_F(WorkLifeTest, BlockedNudgeChangesNothingAndComesAtTheNextAllowedTick) {
  bool allowed = false;
  work().canNudge = [&] { return allowed; };
  store.setWorkEndMinutes(0);
  Date start = local(2024, 6, 12, 9);
  sitFrom(start, start + 65 * 60);
  EXPECT_TRUE(nudges.empty());
  EXPECT_FALSE(work().lastStandNudge());
  EXPECT_FALSE(work().wrapped());

  allowed = true;
  tickAt(start + 65 * 60 + 30);
  EXPECT_EQ(kinds(), (std::vector{WorkLife::Nudge::Kind::stand}));
  tickAt(start + 66 * 60);
  EXPECT_EQ(kinds(), (std::vector{WorkLife::Nudge::Kind::stand, WorkLife::Nudge::Kind::wrapUp}));
}

TEST_F(WorkLifeTest, BreathOrStretchRestartsTheStreakAnEyeRestDoesNot) {
  Date start = local(2024, 6, 12, 9);
  sitFrom(start, start + 20 * 60);
  work().rested(WorkLife::RestKind::eyes);
  EXPECT_EQ(work().sittingSince(), start);
  work().rested(WorkLife::RestKind::breathe);
  EXPECT_EQ(work().sittingSince(), start + 20 * 60);
  work().rested(WorkLife::RestKind::stretch);
  work().rested(WorkLife::RestKind::stretch);
  auto today = work().today();
  EXPECT_EQ(today.eyeBreaks, 1);
  EXPECT_EQ(today.breathes, 1);
  EXPECT_EQ(today.stands, 2);
  EXPECT_EQ(today.spans.size(), 1u) << "a rest is no gap";
}

TEST_F(WorkLifeTest, StoredDaysKeepTheirShapeAndOldOrBadOnesGo) {
  Date now = local(2024, 6, 12, 9);
  nlohmann::json stored = nlohmann::json::array();
  stored.push_back({{"day", (now - 31 * 86'400).sinceReference},
                    {"spans", nlohmann::json::array()},
                    {"eyeBreaks", 0},
                    {"breathes", 0},
                    {"stands", 0}});
  stored.push_back({{"day", local(2024, 6, 11).sinceReference}, {"spans", 3}});
  stored.push_back({{"day", local(2024, 6, 10).sinceReference},
                    {"spans", {{{"start", 1000.0}, {"end", 1600.0}}}},
                    {"eyeBreaks", 2},
                    {"breathes", 0},
                    {"stands", 1}});
  defaults.setJsonData(StoreKey::workDays, stored);
  clock.set(now);
  ASSERT_EQ(work().days().size(), 2u);
  EXPECT_EQ(work().day(local(2024, 6, 10))->longest(), 10);

  work().tick();
  auto written = defaults.jsonData(StoreKey::workDays).value();
  ASSERT_EQ(written.size(), 2u);
  EXPECT_EQ(written[0], stored[2]);
  EXPECT_EQ(written[1],
            nlohmann::json::parse("{\"day\":" + std::to_string(local(2024, 6, 12).sinceReference) +
                                  ",\"spans\":[{\"start\":" + std::to_string(now.sinceReference) +
                                  ",\"end\":" + std::to_string(now.sinceReference) +
                                  "}],\"eyeBreaks\":0,\"breathes\":0,\"stands\":0}"));
}

}  // namespace
}  // namespace sodam
