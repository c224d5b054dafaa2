#pragma once

#include <string>
#include <vector>

#include "posture/posture_log.h"
#include "support/calendar.h"
#include "support/date.h"
#include "worklife/work_life.h"

namespace sodam {

// Short sentences drawn from the last week of records: how the posture went
// against the week before, the hour it slips, the longest sitting and the
// day of the most breaks. Each is said only when the records carry it; the
// most telling come first.
class Insights {
 public:
  struct Line {
    std::string text;
    bool operator==(const Line&) const = default;
  };

  // Both weeks need this many judged checks before they are compared, and a
  // change under this many points is no news.
  static constexpr int weekMinChecks = 20;
  static constexpr int weekChangePoints = 5;
  // The week needs this many alerts, and one hour this many of them alone.
  static constexpr int slipMinAlerts = 5;
  static constexpr int slipHourMinAlerts = 3;
  static constexpr double longSittingMinutes = 60;
  static constexpr int manyBreaks = 3;

  // The week is today and the six days before it, in the calendar.
  static std::vector<Line> lines(const WorkLife& work, const PostureLog& log, Date now,
                                 const Calendar& calendar);
};

}  // namespace sodam
