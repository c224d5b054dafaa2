#pragma once

#include <optional>
#include <vector>

#include "posture/posture_log.h"
#include "support/calendar.h"
#include "worklife/work_life.h"

namespace sodam {

// What the everyday pages are computed from: the posture log, the work-life
// tracker's days and the moment "now" on the calendar, which must be the
// log's own now, as the log counts its recent alerts from its clock.
struct PageRecords {
  const PostureLog& log;
  const std::vector<WorkDay>& days;
  const Calendar& calendar;
  Date now;

  // The tracked day of the calendar day that holds `date`, if any.
  std::optional<WorkDay> workDay(Date date) const;
  // Today's alerts by issue, the most frequent first (equal counts in the
  // issues' order); an alert naming two issues counts for both.
  std::vector<PostureLog::IssueCount> todaysIssues() const;
  // Today's alerts that were corrected.
  int todaysCorrections() const;
};

}  // namespace sodam
