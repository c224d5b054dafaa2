#include "support/manual_scheduler.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace sodam {
namespace {

struct SchedulerFixture : ::testing::Test {
  ManualClock clock{Date{1000}};
  ManualScheduler scheduler{clock};
  std::vector<std::string> fired;

  std::function<void()> record(std::string name) {
    return
        [this, name] { fired.push_back(name + "@" + std::to_string(clock.now().sinceReference)); };
  }
};

TEST_F(SchedulerFixture, TimersFireInFireDateOrderWithTheClockAtEachFireDate) {
  auto late = scheduler.mainTimer(5, record("late"));
  auto early = scheduler.mainTimer(2, record("early"));
  auto tie = scheduler.mainTimer(2, record("tie"));

  scheduler.advance(4.999);
  EXPECT_EQ(fired, (std::vector<std::string>{"early@1002.000000", "tie@1002.000000"}));
  scheduler.advance(0.001);
  EXPECT_EQ(fired.back(), "late@1005.000000");
  EXPECT_EQ(clock.now(), Date{1005});
}

TEST_F(SchedulerFixture, DroppingOrReplacingTheHandleCancelsTheTimer) {
  { auto dropped = scheduler.mainTimer(1, record("dropped")); }
  auto replaced = scheduler.mainTimer(1, record("first"));
  replaced = scheduler.mainTimer(3, record("second"));
  auto invalidated = scheduler.mainTimer(1, record("invalidated"));
  invalidated.invalidate();

  scheduler.advance(10);
  EXPECT_EQ(fired, (std::vector<std::string>{"second@1003.000000"}));
  EXPECT_FALSE(replaced.isValid());
  EXPECT_EQ(replaced.fireDate(), Date::distantPast());
}

TEST_F(SchedulerFixture, LaterRunsWithoutAHandle) {
  scheduler.later(3, record("later"));
  EXPECT_EQ(scheduler.activeTimers(), 1u);
  scheduler.advance(3);
  EXPECT_EQ(fired, (std::vector<std::string>{"later@1003.000000"}));
  EXPECT_EQ(scheduler.activeTimers(), 0u);
}

TEST_F(SchedulerFixture, RepeatingTimerFiresEachIntervalUntilInvalidatedFromItsOwnBlock) {
  Timer ticker;
  int count = 0;
  ticker = scheduler.repeating(30, [&] {
    if (++count == 3) ticker.invalidate();
  });
  scheduler.advance(1000);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(scheduler.activeTimers(), 0u);
}

TEST_F(SchedulerFixture, ATimerScheduledFromABlockFiresInTheSameAdvanceWhenDue) {
  Timer second;
  auto first = scheduler.mainTimer(1, [&] { second = scheduler.mainTimer(1, record("second")); });
  scheduler.advance(2);
  EXPECT_EQ(fired, (std::vector<std::string>{"second@1002.000000"}));
}

TEST_F(SchedulerFixture, PostedWorkRunsBeforeTimersAndAfterEachBlock) {
  auto timer = scheduler.mainTimer(1, [&] {
    fired.push_back("timer");
    scheduler.post([&] { fired.push_back("posted by timer"); });
  });
  auto after = scheduler.mainTimer(1, record("after"));
  scheduler.post([&] { fired.push_back("posted"); });
  scheduler.advance(1);
  EXPECT_EQ(fired,
            (std::vector<std::string>{"posted", "timer", "posted by timer", "after@1001.000000"}));
}

TEST_F(SchedulerFixture, ToleranceIsATenthOfTheDelayButAtLeastHalfASecond) {
  EXPECT_DOUBLE_EQ(scheduler.mainTimer(2, [] {}).tolerance(), 0.5);
  EXPECT_DOUBLE_EQ(scheduler.mainTimer(5, [] {}).tolerance(), 0.5);
  EXPECT_DOUBLE_EQ(scheduler.mainTimer(60, [] {}).tolerance(), 6.0);
}

TEST_F(SchedulerFixture, FireNextJumpsToTheNextTimer) {
  auto timer = scheduler.mainTimer(90, record("check"));
  EXPECT_EQ(scheduler.nextFireDate(), Date{1090});
  EXPECT_TRUE(scheduler.fireNext());
  EXPECT_EQ(fired, (std::vector<std::string>{"check@1090.000000"}));
  EXPECT_FALSE(scheduler.fireNext());
}

}  // namespace
}  // namespace sodam
