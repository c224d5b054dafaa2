#include "support/calendar.h"
#include "support/time_zone.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace sodam {

namespace {

constexpr std::int64_t secondsPerDay = 86400;
// About three million years either way: far beyond any date the product
// meets, near enough that every sum below stays exact in a double.
constexpr std::int64_t supportedSeconds = 100'000'000'000'000;

std::int64_t floorDiv(std::int64_t value, std::int64_t divisor) {
  const auto quotient = value / divisor;
  return (value % divisor != 0 && (value < 0) != (divisor < 0)) ? quotient - 1 : quotient;
}

bool isSupported(std::int64_t seconds) {
  return seconds >= -supportedSeconds && seconds <= supportedSeconds;
}

Date dateFromUnix(std::int64_t unixSeconds) {
  return Date::fromUnix(static_cast<double>(unixSeconds));
}

}  // namespace

// ---- Proleptic Gregorian days (civil-from-days and days-from-civil) ----

bool isLeapYear(std::int64_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysInMonth(std::int64_t year, int month) {
  static constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  return month == 2 && isLeapYear(year) ? 29 : lengths[static_cast<std::size_t>(month - 1)];
}

std::int64_t daysFromCivil(std::int64_t year, int month, int day) {
  // Years counted from March, so the leap day closes the year.
  const std::int64_t y = month <= 2 ? year - 1 : year;
  const std::int64_t era = floorDiv(y, 400);
  const std::int64_t yearOfEra = y - era * 400;
  const std::int64_t shiftedMonth = month > 2 ? month - 3 : month + 9;
  const std::int64_t dayOfYear = (153 * shiftedMonth + 2) / 5 + day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

CivilDay civilFromDays(std::int64_t days) {
  const std::int64_t z = days + 719468;
  const std::int64_t era = floorDiv(z, 146097);
  const std::int64_t dayOfEra = z - era * 146097;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t shiftedMonth = (5 * dayOfYear + 2) / 153;
  const int day = static_cast<int>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
  const int month = static_cast<int>(shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9);
  const std::int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
  return {year, month, day};
}

int weekdayFromDays(std::int64_t days) {
  // 1970-01-01 was a Thursday.
  return static_cast<int>(days + 4 - floorDiv(days + 4, 7) * 7);
}

std::int64_t wholeUnixSeconds(Date date) {
  const double unix = date.unixSeconds();
  if (std::isnan(unix)) return static_cast<std::int64_t>(Date::unixOffset);
  const double bound = static_cast<double>(supportedSeconds);
  return static_cast<std::int64_t>(std::floor(std::clamp(unix, -bound, bound)));
}

// ---- Calendar ----

Calendar::Calendar(TimeZone zone) : zone_(std::move(zone)) {}

namespace {

struct LocalTime {
  std::int64_t day;     // days since 1970-01-01 on the local calendar
  std::int64_t second;  // 0 ... 86399 into that day
};

LocalTime localTime(const TimeZone& zone, std::int64_t unixSeconds) {
  const auto local = unixSeconds + zone.offsetAt(dateFromUnix(unixSeconds));
  const auto day = floorDiv(local, secondsPerDay);
  return {day, local - day * secondsPerDay};
}

int offsetAt(const TimeZone& zone, std::int64_t unixSeconds) {
  return zone.offsetAt(dateFromUnix(unixSeconds));
}

// The moment a wall-clock reading (seconds since 1970-01-01 00:00 on the
// local calendar) happens: the first of two when the clock was set back, the
// moment the clock jumped to when the reading was skipped.
std::int64_t instantOfWallClock(const TimeZone& zone, std::int64_t wall) {
  // Offsets in force within two days either way cover every real clock
  // change, even a whole skipped day.
  std::array<int, 6> offsets{};
  offsets[0] = offsetAt(zone, wall - 2 * secondsPerDay);
  offsets[1] = offsetAt(zone, wall);
  offsets[2] = offsetAt(zone, wall + 2 * secondsPerDay);
  for (std::size_t i = 0; i < 3; ++i)
    offsets[i + 3] = offsetAt(zone, wall - offsets[i]);

  std::optional<std::int64_t> earliest;
  for (const int offset : offsets) {
    const auto candidate = wall - offset;
    if (offsetAt(zone, candidate) == offset && (!earliest || candidate < *earliest))
      earliest = candidate;
  }
  if (earliest) return *earliest;

  // Skipped: find the first moment whose wall clock reads past it.
  const auto [smallest, largest] = std::minmax_element(offsets.begin(), offsets.end());
  std::int64_t before = wall - *largest;
  std::int64_t after = wall - *smallest;
  while (after - before > 1) {
    const auto middle = before + (after - before) / 2;
    if (middle + offsetAt(zone, middle) >= wall) {
      after = middle;
    } else {
      before = middle;
    }
  }
  return after;
}

bool componentsInRange(const DateComponents& c) {
  return c.month >= 1 && c.month <= 12 && c.day >= 1 && c.day <= daysInMonth(c.year, c.month) &&
         c.hour >= 0 && c.hour <= 23 && c.minute >= 0 && c.minute <= 59 && c.second >= 0 &&
         c.second <= 59;
}

struct WeekNumber {
  int week;
  int year;
};

// Weeks start on Sunday and week 1 is the one holding January 1, so the last
// days of December may already belong to week 1 of the next year.
WeekNumber weekNumber(std::int64_t day) {
  const auto year = civilFromDays(day).year;
  const auto weekStart = day - weekdayFromDays(day);
  if (weekStart + 6 >= daysFromCivil(year + 1, 1, 1)) return {1, static_cast<int>(year + 1)};
  const auto january1 = daysFromCivil(year, 1, 1);
  const auto firstWeekStart = january1 - weekdayFromDays(january1);
  return {static_cast<int>((weekStart - firstWeekStart) / 7 + 1), static_cast<int>(year)};
}

}  // namespace

DateComponents Calendar::components(Date date) const {
  const auto local = localTime(zone_, wholeUnixSeconds(date));
  const auto civil = civilFromDays(local.day);
  DateComponents result;
  result.year = static_cast<int>(civil.year);
  result.month = civil.month;
  result.day = civil.day;
  result.hour = static_cast<int>(local.second / 3600);
  result.minute = static_cast<int>(local.second / 60 % 60);
  result.second = static_cast<int>(local.second % 60);
  result.weekday = weekdayFromDays(local.day) + 1;
  return result;
}

Date Calendar::startOfDay(Date date) const {
  const auto day = localTime(zone_, wholeUnixSeconds(date)).day;
  return dateFromUnix(instantOfWallClock(zone_, day * secondsPerDay));
}

bool Calendar::isSameDay(Date a, Date b) const {
  return localTime(zone_, wholeUnixSeconds(a)).day == localTime(zone_, wholeUnixSeconds(b)).day;
}

int Calendar::hour(Date date) const {
  return static_cast<int>(localTime(zone_, wholeUnixSeconds(date)).second / 3600);
}

int Calendar::weekday(Date date) const {
  return weekdayFromDays(localTime(zone_, wholeUnixSeconds(date)).day) + 1;
}

int Calendar::ordinalDay(Date date) const {
  const auto day = localTime(zone_, wholeUnixSeconds(date)).day;
  return static_cast<int>(day - daysFromCivil(civilFromDays(day).year, 1, 1) + 1);
}

int Calendar::weekOfYear(Date date) const {
  return weekNumber(localTime(zone_, wholeUnixSeconds(date)).day).week;
}

int Calendar::yearForWeekOfYear(Date date) const {
  return weekNumber(localTime(zone_, wholeUnixSeconds(date)).day).year;
}

std::optional<Date> Calendar::addingDays(Date date, int days) const {
  const double unix = date.unixSeconds();
  if (!(std::fabs(unix) <= static_cast<double>(supportedSeconds))) return std::nullopt;
  // Adding nothing keeps the moment even when its wall-clock time repeats.
  if (days == 0) return date;
  const auto whole = wholeUnixSeconds(date);
  const double fraction = unix - static_cast<double>(whole);
  const auto local = localTime(zone_, whole);
  const auto wall = (local.day + days) * secondsPerDay + local.second;
  if (!isSupported(wall)) return std::nullopt;
  return Date::fromUnix(static_cast<double>(instantOfWallClock(zone_, wall)) + fraction);
}

std::optional<Date> Calendar::date(const DateComponents& c) const {
  if (!componentsInRange(c)) return std::nullopt;
  const auto wall = daysFromCivil(c.year, c.month, c.day) * secondsPerDay + c.hour * 3600 +
                    c.minute * 60 + c.second;
  if (!isSupported(wall)) return std::nullopt;
  return dateFromUnix(instantOfWallClock(zone_, wall));
}

}  // namespace sodam
