#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "support/date.h"
#include "support/time_zone.h"

namespace sodam {

// The proleptic Gregorian calendar counted in days since 1970-01-01.
struct CivilDay {
  std::int64_t year = 1970;
  int month = 1;  // 1...12
  int day = 1;    // 1...31
};
std::int64_t daysFromCivil(std::int64_t year, int month, int day);
CivilDay civilFromDays(std::int64_t days);
bool isLeapYear(std::int64_t year);
int daysInMonth(std::int64_t year, int month);
// 0 Sunday ... 6 Saturday.
int weekdayFromDays(std::int64_t days);

// Whole Unix seconds of a date, rounded down. Dates beyond about three
// million years are held at that bound and a NaN reads as the reference date,
// so calendar arithmetic never overflows.
std::int64_t wholeUnixSeconds(Date date);

// A local wall-clock time.
struct DateComponents {
  int year = 2001;
  int month = 1;  // 1...12
  int day = 1;    // 1...31
  int hour = 0;
  int minute = 0;
  int second = 0;
  int weekday = 0;  // 1 Sunday ... 7 Saturday; filled when read, ignored when making a date
};

// The Gregorian calendar as the Korean locale counts it: weeks start on
// Sunday and the first week of a year needs one day.
class Calendar {
 public:
  explicit Calendar(TimeZone zone = TimeZone::utc());
  const TimeZone& timeZone() const { return zone_; }

  DateComponents components(Date date) const;
  Date startOfDay(Date date) const;
  bool isSameDay(Date a, Date b) const;
  int hour(Date date) const;
  int weekday(Date date) const;     // 1 Sunday ... 7 Saturday
  int ordinalDay(Date date) const;  // 1 ... 366
  int weekOfYear(Date date) const;
  int yearForWeekOfYear(Date date) const;
  // The same wall-clock time n days later (or earlier).
  std::optional<Date> addingDays(Date date, int days) const;
  // The moment of a wall-clock time. A time skipped by a clock change gives
  // the next time that exists; a time that happens twice gives the first.
  // Nothing when the components are out of range.
  std::optional<Date> date(const DateComponents& components) const;

 private:
  TimeZone zone_;
};

}  // namespace sodam
