#pragma once

#include <optional>
#include <string>
#include <vector>

#include "alerts/theme.h"
#include "app/report_page.h"
#include "support/calendar.h"

namespace sodam {

// One bar of a chart of the report, the same for every platform's drawing:
// how far it is filled, its colour, the value over it, the label under it,
// and the sentence a screen reader or a tooltip gives for it.
struct ChartBar {
  std::optional<double> fill;  // 0 to 1; nothing draws an empty mark
  Theme tint = Theme::green;
  std::string value;
  std::string label;
  std::string spoken;
  bool stressed = false;  // today's bar

  bool operator==(const ChartBar&) const = default;
};

// Today's good share by hour, over `ReportPage::chartHours`.
std::vector<ChartBar> hourBars(const ReportPage& page);
// The good share of each of the last seven days.
std::vector<ChartBar> weekShareBars(const ReportPage& page, const Calendar& calendar);
// The time at the machine on each of the last seven days, against
// `ReportPage::chartMinutes`.
std::vector<ChartBar> weekSeatedBars(const ReportPage& page, const Calendar& calendar);
// Issue counts, each against the most frequent one.
std::vector<ChartBar> issueBars(const std::vector<PostureLog::IssueCount>& issues);

}  // namespace sodam
