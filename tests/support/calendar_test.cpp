#include "support/calendar.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include "support/time_zone.h"
#include "support/utc_dates.h"

namespace sodam {
namespace {

using utc_dates::hourSeconds;
using utc_dates::utc;

const Calendar seoul{TimeZone::fixed(9 * hourSeconds)};

TEST(CivilDays, KnownDaysAndRoundTripAcrossCenturies) {
  EXPECT_EQ(daysFromCivil(1970, 1, 1), 0);
  EXPECT_EQ(daysFromCivil(2001, 1, 1) * 86400, static_cast<std::int64_t>(Date::unixOffset));
  EXPECT_EQ(daysFromCivil(2000, 3, 1), 11017);
  EXPECT_EQ(daysFromCivil(1969, 12, 31), -1);
  EXPECT_EQ(daysFromCivil(1, 1, 1), -719162);
  EXPECT_EQ(daysFromCivil(0, 3, 1), -719468);
  EXPECT_EQ(daysFromCivil(-1, 3, 1), -719834);  // across February 29 of year 0
  // Every day from 1600 to 2400 follows the previous one by exactly one.
  CivilDay previous = civilFromDays(daysFromCivil(1600, 1, 1) - 1);
  for (auto day = daysFromCivil(1600, 1, 1); day < daysFromCivil(2400, 1, 1); ++day) {
    const auto civil = civilFromDays(day);
    ASSERT_EQ(daysFromCivil(civil.year, civil.month, civil.day), day);
    const bool nextDay = civil.year == previous.year && civil.month == previous.month &&
                         civil.day == previous.day + 1;
    const bool nextMonth =
        civil.day == 1 && previous.day == daysInMonth(previous.year, previous.month);
    ASSERT_TRUE(nextDay || nextMonth) << civil.year << "-" << civil.month << "-" << civil.day;
    previous = civil;
  }
  EXPECT_EQ(daysInMonth(1900, 2), 28);
  EXPECT_EQ(daysInMonth(2000, 2), 29);
}

TEST(Calendar, ReadsSeoulWallClockAndDayBounds) {
  const auto c = seoul.components(utc(2025, 11, 22, 6, 4, 5) + 0.75);
  EXPECT_EQ((std::array{c.year, c.month, c.day, c.hour, c.minute, c.second, c.weekday}),
            (std::array{2025, 11, 22, 15, 4, 5, 7}));
  // 23:30 UTC is already the next morning in Seoul.
  const auto evening = utc(2025, 12, 31, 23, 30);
  EXPECT_EQ(seoul.hour(evening), 8);
  EXPECT_EQ(seoul.weekday(evening), 5);  // Thursday 2026-01-01
  EXPECT_EQ(seoul.startOfDay(evening), utc(2025, 12, 31, 15));
  EXPECT_TRUE(seoul.isSameDay(evening, utc(2026, 1, 1, 14, 59, 59)));
  EXPECT_FALSE(seoul.isSameDay(evening, utc(2025, 12, 31, 14, 59, 59)));
  EXPECT_FALSE(Calendar().isSameDay(evening, utc(2026, 1, 1)));
  // Before 1970 the day still starts at midnight, not at the next one.
  EXPECT_EQ(Calendar().startOfDay(utc(1960, 5, 5) - 0.5), utc(1960, 5, 4));
}

TEST(Calendar, WeeksStartOnSundayAndWeekOneHoldsJanuaryFirst) {
  struct Case {
    int year, month, day, week, weekYear;
  };
  const Case cases[] = {
      {2025, 12, 27, 52, 2025}, {2025, 12, 28, 1, 2026},  {2026, 1, 3, 1, 2026},
      {2026, 1, 4, 2, 2026},    {2022, 12, 31, 53, 2022}, {2023, 1, 1, 1, 2023},
      {2020, 12, 26, 52, 2020}, {2020, 12, 31, 1, 2021},  {2021, 1, 3, 2, 2021},
      {2021, 12, 31, 1, 2022},  // January 1 on a Saturday: a week of one day
  };
  for (const auto& c : cases) {
    const auto noon = utc(c.year, c.month, c.day, 3);  // noon in Seoul
    EXPECT_EQ(seoul.weekOfYear(noon), c.week) << c.year << "-" << c.month << "-" << c.day;
    EXPECT_EQ(seoul.yearForWeekOfYear(noon), c.weekYear)
        << c.year << "-" << c.month << "-" << c.day;
  }
  EXPECT_EQ(seoul.ordinalDay(utc(2024, 2, 29, 3)), 60);
  EXPECT_EQ(seoul.ordinalDay(utc(2024, 3, 1, 3)), 61);
  EXPECT_EQ(seoul.ordinalDay(utc(2024, 12, 31, 3)), 366);
  EXPECT_EQ(seoul.ordinalDay(utc(2023, 3, 1, 3)), 60);
  EXPECT_EQ(seoul.ordinalDay(utc(2023, 12, 31, 15)), 1);  // already 2024 in Seoul
}

TEST(Calendar, MakesDatesOnlyFromComponentsInRange) {
  EXPECT_EQ(seoul.date({2025, 11, 22, 15, 4, 5}), utc(2025, 11, 22, 6, 4, 5));
  EXPECT_EQ(seoul.date({2024, 2, 29, 0, 0, 0}), utc(2024, 2, 28, 15));
  const DateComponents outOfRange[] = {
      {2025, 0, 1},        {2025, 13, 1},          {2025, 1, 0},          {2025, 1, 32},
      {2025, 4, 31},       {2023, 2, 29},          {2025, 1, 1, 24},      {2025, 1, 1, -1},
      {2025, 1, 1, 0, 60}, {2025, 1, 1, 0, 0, 60}, {2'000'000'000, 1, 1},
  };
  for (const auto& c : outOfRange) {
    EXPECT_FALSE(seoul.date(c)) << c.year << "-" << c.month << "-" << c.day << " " << c.hour << ":"
                                << c.minute << ":" << c.second;
  }
}

TEST(Calendar, AddingDaysKeepsWallClockAndFractionAndRefusesNonNumbers) {
  const auto start = utc(2025, 12, 31, 1, 2, 3) + 0.25;
  EXPECT_EQ(seoul.addingDays(start, 1), start + 86400);
  EXPECT_EQ(seoul.addingDays(start, -366), start - 366 * 86400.0);
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(seoul.addingDays(Date{nan}, 1));
  EXPECT_FALSE(seoul.addingDays(Date{infinity}, 0));
  // Reading such dates stays defined.
  for (const double value : {nan, infinity, -infinity, 1e300}) {
    const auto c = seoul.components(Date{value});
    EXPECT_TRUE(c.month >= 1 && c.month <= 12 && c.day >= 1 && c.day <= 31);
    EXPECT_TRUE(std::isfinite(seoul.startOfDay(Date{value}).sinceReference));
  }
}

// ---- A zone with daylight saving time, from a rule and from the zone file ----

enum class ZoneSource { posixRule, zoneFile };

class DaylightSavingCalendar : public testing::TestWithParam<ZoneSource> {
 protected:
  void SetUp() override {
    if (GetParam() == ZoneSource::posixRule) {
      zone_ = TimeZone::fromPosixRule("EST5EDT,M3.2.0,M11.1.0");
    } else {
      const std::string path = "/usr/share/zoneinfo/America/New_York";
      if (!std::ifstream(path)) GTEST_SKIP() << path << " is not readable";
      zone_ = TimeZone::load(path);
    }
    ASSERT_TRUE(zone_.has_value());
    calendar_.emplace(*zone_);
  }
  const Calendar& calendar() const { return *calendar_; }
  Date local(int year, int month, int day, int hour = 0, int minute = 0) const {
    return calendar().date({year, month, day, hour, minute, 0}).value();
  }

 private:
  std::optional<TimeZone> zone_;
  std::optional<Calendar> calendar_;
};

TEST_P(DaylightSavingCalendar, ChangeDaysHaveTwentyThreeAndTwentyFiveHours) {
  const auto& cal = calendar();
  EXPECT_EQ(local(2025, 3, 10) - local(2025, 3, 9), 23 * 3600);
  EXPECT_EQ(local(2025, 11, 3) - local(2025, 11, 2), 25 * 3600);
  EXPECT_EQ(local(2025, 6, 2) - local(2025, 6, 1), 24 * 3600);
  EXPECT_EQ(cal.startOfDay(utc(2025, 3, 9, 20)), utc(2025, 3, 9, 5));
  EXPECT_EQ(cal.startOfDay(utc(2025, 3, 10, 20)), utc(2025, 3, 10, 4));
  // The last hour of the long day is still that day.
  EXPECT_TRUE(cal.isSameDay(utc(2025, 11, 3, 4, 59), utc(2025, 11, 2, 4)));
  EXPECT_EQ(cal.hour(utc(2025, 11, 2, 5, 30)), 1);
  EXPECT_EQ(cal.hour(utc(2025, 11, 2, 6, 30)), 1);
}

TEST_P(DaylightSavingCalendar, SkippedTimeGivesTheTimeTheClockJumpsTo) {
  const auto& cal = calendar();
  const auto skipped = cal.date({2025, 3, 9, 2, 30, 0});
  ASSERT_TRUE(skipped);
  EXPECT_EQ(*skipped, utc(2025, 3, 9, 7));  // 03:00 EDT
  EXPECT_EQ(cal.components(*skipped).hour, 3);
  EXPECT_EQ(cal.components(*skipped).minute, 0);
  EXPECT_EQ(cal.date({2025, 3, 9, 2, 0, 0}), utc(2025, 3, 9, 7));
  EXPECT_EQ(cal.date({2025, 3, 9, 1, 59, 59}), utc(2025, 3, 9, 6, 59, 59));
  EXPECT_EQ(cal.date({2025, 3, 9, 3, 0, 0}), utc(2025, 3, 9, 7));
}

TEST_P(DaylightSavingCalendar, RepeatedTimeGivesTheFirstOccurrence) {
  const auto& cal = calendar();
  EXPECT_EQ(cal.date({2025, 11, 2, 1, 30, 0}), utc(2025, 11, 2, 5, 30));  // 01:30 EDT
  EXPECT_EQ(cal.date({2025, 11, 2, 2, 0, 0}), utc(2025, 11, 2, 7));
  EXPECT_EQ(cal.timeZone().offsetAt(utc(2025, 11, 2, 5, 59, 59)), -4 * hourSeconds);
  EXPECT_EQ(cal.timeZone().offsetAt(utc(2025, 11, 2, 6)), -5 * hourSeconds);
}

TEST_P(DaylightSavingCalendar, AddingDaysAcrossChanges) {
  const auto& cal = calendar();
  EXPECT_EQ(cal.addingDays(local(2025, 3, 8, 12), 1), local(2025, 3, 9, 12));
  EXPECT_EQ(*cal.addingDays(local(2025, 3, 8, 12), 1) - local(2025, 3, 8, 12), 23 * 3600);
  EXPECT_EQ(cal.addingDays(local(2025, 3, 8, 2, 30), 1), utc(2025, 3, 9, 7));
  EXPECT_EQ(cal.addingDays(local(2025, 11, 1, 1, 30), 1), utc(2025, 11, 2, 5, 30));
  // The second 01:30 of the long day moves to an ordinary 01:30, or stays.
  EXPECT_EQ(cal.addingDays(utc(2025, 11, 2, 6, 30), 1), utc(2025, 11, 3, 6, 30));
  EXPECT_EQ(cal.addingDays(utc(2025, 11, 2, 6, 30), 0), utc(2025, 11, 2, 6, 30));
  EXPECT_EQ(cal.addingDays(local(2025, 3, 10, 12), -2), local(2025, 3, 8, 12));
}

TEST_P(DaylightSavingCalendar, RuleHoldsBeyondTheLastListedChange) {
  const auto& zone = calendar().timeZone();
  // Second Sunday of March 2040 is the 11th.
  EXPECT_EQ(zone.offsetAt(utc(2040, 3, 11, 6, 59, 59)), -5 * hourSeconds);
  EXPECT_EQ(zone.offsetAt(utc(2040, 3, 11, 7)), -4 * hourSeconds);
  EXPECT_EQ(zone.offsetAt(utc(2040, 11, 4, 5, 59, 59)), -4 * hourSeconds);
  EXPECT_EQ(zone.offsetAt(utc(2040, 11, 4, 6)), -5 * hourSeconds);
}

INSTANTIATE_TEST_SUITE_P(BothSources, DaylightSavingCalendar,
                         testing::Values(ZoneSource::posixRule, ZoneSource::zoneFile),
                         [](const auto& info) {
                           return info.param == ZoneSource::posixRule ? "PosixRule" : "ZoneFile";
                         });

TEST(Calendar, MidnightSkippedByAChangeStartsTheDayAtTheJump) {
  // Clocks went from 00:00 to 01:00 on the third Sunday of October and back
  // from 00:00 to 23:00 on the third Sunday of February.
  const Calendar cal(TimeZone::fromPosixRule("<-03>3<-02>,M10.3.0/0,M2.3.0/0").value());
  const auto springDay = utc(2018, 10, 21, 15);
  EXPECT_EQ(cal.startOfDay(springDay), utc(2018, 10, 21, 3));  // 01:00 local
  EXPECT_EQ(cal.components(cal.startOfDay(springDay)).hour, 1);
  EXPECT_EQ(cal.date({2018, 10, 21, 0, 0, 0}), utc(2018, 10, 21, 3));
  EXPECT_EQ(cal.startOfDay(utc(2018, 10, 22, 15)) - cal.startOfDay(springDay), 23 * 3600);
  // Midnight after the long Saturday comes once, after the repeated hour.
  EXPECT_EQ(cal.startOfDay(utc(2019, 2, 17, 15)), utc(2019, 2, 17, 3));
  EXPECT_EQ(cal.startOfDay(utc(2019, 2, 17, 2, 30)), utc(2019, 2, 16, 2));  // 23:30 again
  EXPECT_EQ(cal.startOfDay(utc(2019, 2, 17, 15)) - cal.startOfDay(utc(2019, 2, 16, 15)), 25 * 3600);
}

}  // namespace
}  // namespace sodam
