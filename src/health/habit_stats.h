#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "posture/posture_log.h"
#include "support/calendar.h"

namespace sodam {

// The numbers of one habit for its card: the last seven days, this week
// against the week before, and the hour of the day when it is worst. The
// sided habits lose their sign: how far, never to which side.
struct HabitStats {
  struct Day {
    Date day;  // the start of the day
    std::optional<double> value;
    bool operator==(const Day&) const = default;
  };

  std::vector<Day> daily;  // seven calendar days ending today, oldest first
  std::optional<double> thisWeek;
  std::optional<double> lastWeek;
  std::optional<int> peakHour;  // 0 to 23
  std::string unit;             // "도" or "센티"

  static constexpr double weekSeconds = 604800;
  static constexpr int dailyDays = 7;
  // An hour needs this many values before it can be the worst.
  static constexpr int fewestInAnHour = 3;

  static HabitStats make(std::string_view id, const std::deque<PostureEntry>& entries, Date now,
                         const Calendar& calendar);
  // The habit's number in one snapshot; nothing for an absent field or an
  // unknown id.
  static std::optional<double> value(std::string_view id, const Snapshot& snapshot);
  // The card's "처방" and "자리에서 바꿀 것"; empty for an unknown id.
  static std::vector<std::string> prescription(std::string_view id);
  static std::vector<std::string> fixes(std::string_view id);
};

}  // namespace sodam
