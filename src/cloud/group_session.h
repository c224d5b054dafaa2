#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "support/calendar.h"
#include "support/date.h"

namespace sodam {

// One entry of a study group's schedule: a first start, a length and how it
// repeats. Occurrences are found in the user's calendar.
struct GroupSession {
  class Repeat {
   public:
    enum Value : int { none, daily, weekdays, weekly };
    constexpr Repeat(Value value) : value_(value) {}
    constexpr operator Value() const { return value_; }
    // Missing or unknown text is `none`.
    static Repeat fromRaw(std::string_view raw);
    std::string_view raw() const;
    std::string_view title() const;

   private:
    Value value_;
  };

  static constexpr int defaultMinutes = 60;

  std::string id;
  std::string title = "모임";
  Date start;
  int minutes = defaultMinutes;
  Repeat repeats = Repeat::none;

  // A new session with a fresh id.
  static GroupSession draft(Date start);

  // The occurrence on the calendar day of `day`, or nothing.
  std::optional<Date> startOn(Date day, const Calendar& calendar) const;
  // The start of the occurrence that runs at `t`: that day's or, since a
  // session may run past midnight, the day before's.
  std::optional<Date> running(Date t, const Calendar& calendar) const;
  Date end(Date occurrence) const { return occurrence + minutes * 60.0; }

  bool operator==(const GroupSession& other) const;
};

}  // namespace sodam
