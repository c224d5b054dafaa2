#include "support/korean_format.h"

#include <cmath>

#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

const char* dayPeriod(int hour) {
  return hour < 12 ? "오전" : "오후";
}

int twelveHour(int hour) {
  return hour % 12 == 0 ? 12 : hour % 12;
}

// More minutes than any life holds, so rounding never leaves the integers.
constexpr double longestCount = 1e12;

}  // namespace

std::string Fmt::clock(Date date, const Calendar& calendar) {
  const auto c = calendar.components(date);
  return format("%s %d:%02d", dayPeriod(c.hour), twelveHour(c.hour), c.minute);
}

std::string Fmt::full(Date date, const Calendar& calendar) {
  const auto c = calendar.components(date);
  return format("%d월 %d일 %s %d:%02d:%02d", c.month, c.day, dayPeriod(c.hour), twelveHour(c.hour),
                c.minute, c.second);
}

std::string Fmt::hour(int hour) {
  return format("%s %d시", dayPeriod(hour), twelveHour(hour));
}

std::string Fmt::weekday(Date date, const Calendar& calendar) {
  static constexpr const char* names[] = {"일", "월", "화", "수", "목", "금", "토"};
  return names[(calendar.weekday(date) + 6) % 7];
}

std::string hm(double minutes) {
  const double count = std::isnan(minutes) ? 0 : clamp(minutes, 0, longestCount);
  const long long whole = roundedInt(count);
  if (whole < 60) return format("%lld분", whole);
  return format("%lld시간 %lld분", whole / 60, whole % 60);
}

}  // namespace sodam
