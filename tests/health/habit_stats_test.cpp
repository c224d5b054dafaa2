#include "health/habit_stats.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

constexpr double hour = 3600;
constexpr double day = 86400;

struct HabitStatsTest : ::testing::Test {
  Calendar calendar;  // UTC
  // Wednesday 2025-06-04, 15:00 UTC.
  Date now = Date::fromUnix(1749049200);
  std::deque<PostureEntry> entries;

  void add(Date t, float nod, PostureEntry::Kind kind = PostureEntry::Kind::good) {
    Snapshot s;
    s.nod = nod;
    s.tilt = -nod;
    entries.push_back({t, kind, {}, s});
  }
};

TEST_F(HabitStatsTest, TheWeeksMeetExactlySevenDaysAgo) {
  add(now - HabitStats::weekSeconds + 1, 10);
  add(now - 60, 20);
  add(now - HabitStats::weekSeconds, 4);  // last week's newest moment
  add(now - 2 * HabitStats::weekSeconds + 1, 6);
  add(now - 2 * HabitStats::weekSeconds, 100);  // in neither
  add(now - 60, 90, PostureEntry::Kind::away);  // not judged
  const HabitStats stats = HabitStats::make("nod", entries, now, calendar);
  EXPECT_EQ(stats.thisWeek, 15);
  EXPECT_EQ(stats.lastWeek, 5);
  EXPECT_EQ(stats.unit, "도");
  EXPECT_EQ(HabitStats::make("forward", entries, now, calendar).thisWeek, std::nullopt);
  EXPECT_EQ(HabitStats::make("forward", entries, now, calendar).unit, "센티");
}

TEST_F(HabitStatsTest, SevenCalendarDaysEndingTodayEachWithItsMean) {
  const Date today = calendar.startOfDay(now);
  add(today + 1, 2);
  add(today + 10 * hour, 4);
  add(today - 1, 9);             // yesterday's last second
  add(today - 6 * day + 1, 7);   // the oldest day shown
  add(today - 6 * day - 1, 50);  // the day before it
  const HabitStats stats = HabitStats::make("tilt", entries, now, calendar);
  ASSERT_EQ(stats.daily.size(), 7u);
  EXPECT_EQ(stats.daily.front().day, today - 6 * day);
  EXPECT_EQ(stats.daily.front().value, 7);
  EXPECT_EQ(stats.daily[1].value, std::nullopt);
  EXPECT_EQ(stats.daily[5].value, 9);
  EXPECT_EQ(stats.daily.back().day, today);
  EXPECT_EQ(stats.daily.back().value, 3);  // the sign is gone
}

TEST_F(HabitStatsTest, TheWorstHourNeedsThreeChecks) {
  const Date today = calendar.startOfDay(now);
  add(today + 9 * hour, 10);
  add(today + 9 * hour + 60, 12);
  add(today - day + 9 * hour, 14);  // 9 o'clock on another day
  add(today + 14 * hour, 40);       // two very bad checks at two
  add(today + 14 * hour + 60, 40);
  EXPECT_EQ(HabitStats::make("nod", entries, now, calendar).peakHour, 9);
  add(today + 11 * hour, 13);
  add(today + 11 * hour + 60, 13);
  add(today + 11 * hour + 120, 13);
  EXPECT_EQ(HabitStats::make("nod", entries, now, calendar).peakHour, 11);
  EXPECT_EQ(HabitStats::make("lean", entries, now, calendar).peakHour, std::nullopt);
}

TEST(HabitStats, SidedValuesLoseTheirSignAndUnknownIdsGiveNothing) {
  Snapshot s;
  s.shoulder = -2.5f;
  s.close = 3;
  EXPECT_EQ(HabitStats::value("shoulder", s), 2.5);
  EXPECT_EQ(HabitStats::value("lean", s), std::nullopt);
  EXPECT_EQ(HabitStats::value("close", s), 3);
  EXPECT_EQ(HabitStats::value("neck", s), std::nullopt);
  EXPECT_EQ(
      HabitStats::prescription("close"),
      (std::vector<std::string>{"20초 먼 곳 보기: 20분마다", "눈을 감고 10초 쉬기: 1시간마다"}));
  EXPECT_EQ(HabitStats::fixes("nod").size(), 2u);
  EXPECT_TRUE(HabitStats::fixes("neck").empty());
  EXPECT_TRUE(HabitStats::prescription("").empty());
}

}  // namespace
}  // namespace sodam
