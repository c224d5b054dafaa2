#pragma once

#include <compare>

namespace sodam {

// A moment in time as every persisted record stores it: seconds since
// 2001-01-01 00:00:00 UTC.
struct Date {
  double sinceReference = 0;

  // Seconds between the Unix epoch and the reference date.
  static constexpr double unixOffset = 978307200.0;

  static constexpr Date fromUnix(double seconds) { return Date{seconds - unixOffset}; }
  // The platform's "distant past" (year 1 of the Julian calendar): earlier
  // than any real event, so "never" compares below every date.
  static constexpr Date distantPast() { return Date{-63114076800.0}; }

  constexpr double unixSeconds() const { return sinceReference + unixOffset; }

  constexpr Date operator+(double seconds) const { return Date{sinceReference + seconds}; }
  constexpr Date operator-(double seconds) const { return Date{sinceReference - seconds}; }
  constexpr double operator-(Date other) const { return sinceReference - other.sinceReference; }
  constexpr Date& operator+=(double seconds) {
    sinceReference += seconds;
    return *this;
  }
  constexpr auto operator<=>(const Date&) const = default;
};

}  // namespace sodam
