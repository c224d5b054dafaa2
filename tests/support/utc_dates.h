#pragma once

// Moments written as UTC wall-clock times, for the calendar and zone tests.

#include "support/calendar.h"

namespace sodam::utc_dates {

inline constexpr int hourSeconds = 3600;

inline Date utc(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return Date::fromUnix(static_cast<double>(daysFromCivil(year, month, day) * 86400 +
                                            hour * hourSeconds + minute * 60 + second));
}

}  // namespace sodam::utc_dates
