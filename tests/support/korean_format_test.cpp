#include "support/korean_format.h"

#include <gtest/gtest.h>

#include <limits>

namespace sodam {
namespace {

const Calendar seoul{TimeZone::fixed(9 * 3600)};

Date seoulTime(int month, int day, int hour, int minute, int second = 0) {
  return seoul.date({2025, month, day, hour, minute, second}).value();
}

TEST(KoreanFormat, ClockNamesMorningAndAfternoonWithTwelveForNoonAndMidnight) {
  struct Case {
    int hour, minute;
    const char* text;
  };
  const Case cases[] = {
      {0, 0, "오전 12:00"},   {0, 59, "오전 12:59"},  {1, 0, "오전 1:00"},
      {9, 5, "오전 9:05"},    {11, 59, "오전 11:59"}, {12, 0, "오후 12:00"},
      {12, 30, "오후 12:30"}, {13, 0, "오후 1:00"},   {23, 59, "오후 11:59"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Fmt::clock(seoulTime(6, 1, c.hour, c.minute, 59), seoul), c.text);
  }
}

TEST(KoreanFormat, FullDateReadsTheCalendarItIsGiven) {
  const auto date = seoulTime(11, 22, 15, 4, 5);
  EXPECT_EQ(Fmt::full(date, seoul), "11월 22일 오후 3:04:05");
  EXPECT_EQ(Fmt::full(date, Calendar()), "11월 22일 오전 6:04:05");
  EXPECT_EQ(Fmt::clock(date, Calendar()), "오전 6:04");
  EXPECT_EQ(Fmt::full(seoulTime(1, 1, 0, 0), seoul), "1월 1일 오전 12:00:00");
  EXPECT_EQ(Fmt::full(seoulTime(12, 31, 23, 59, 59), seoul), "12월 31일 오후 11:59:59");
}

TEST(KoreanFormat, HoursAndWeekdaysReadAsTheClockAndTheCalendarDo) {
  EXPECT_EQ(Fmt::hour(0), "오전 12시");
  EXPECT_EQ(Fmt::hour(11), "오전 11시");
  EXPECT_EQ(Fmt::hour(12), "오후 12시");
  EXPECT_EQ(Fmt::hour(15), "오후 3시");
  // 2025-11-23 was a Sunday in Seoul and still a Saturday in UTC at 05:00 there.
  const auto sunday = seoulTime(11, 23, 5, 0);
  EXPECT_EQ(Fmt::weekday(sunday, seoul), "일");
  EXPECT_EQ(Fmt::weekday(sunday, Calendar()), "토");
  EXPECT_EQ(Fmt::weekday(seoulTime(11, 29, 12, 0), seoul), "토");
}

TEST(KoreanFormat, MinutesRoundHalfAwayAndAlwaysShowTheRemainder) {
  struct Case {
    double minutes;
    const char* text;
  };
  const Case cases[] = {
      {0, "0분"},           {0.49, "0분"},
      {0.5, "1분"},         {59.4, "59분"},
      {59.5, "1시간 0분"},  {59.6, "1시간 0분"},
      {60, "1시간 0분"},    {61, "1시간 1분"},
      {120, "2시간 0분"},   {125.49, "2시간 5분"},
      {1500, "25시간 0분"}, {-0.4, "0분"},
      {-5, "0분"},          {std::numeric_limits<double>::quiet_NaN(), "0분"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(hm(c.minutes), c.text) << c.minutes;
    EXPECT_EQ(Fmt2::minutes(c.minutes), c.text) << c.minutes;
  }
  EXPECT_FALSE(hm(std::numeric_limits<double>::infinity()).empty());
}

}  // namespace
}  // namespace sodam
