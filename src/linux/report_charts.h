#pragma once

#include <string>

#include "app/report_page.h"
#include "support/calendar.h"

namespace sodam {

// The report's charts as inline SVG elements, sized by their view box and
// coloured by the classes the report's style sheet gives: `bar` with the
// tint's name (`green`, `orange`, `red`, `blue`, `coral`) or `empty`, and
// `grid`, `axis`, `label`, `value`.
// Each bar carries a title with its numbers, and each chart a label for
// screen readers.

// Today's good share hour by hour, from 9 to 18 o'clock at least and over
// every hour with a check.
std::string hoursChart(const ReportPage& page);
// The good share of each of the last seven days.
std::string weekShareChart(const ReportPage& page, const Calendar& calendar);
// The minutes at the machine on each of the last seven days.
std::string weekSeatedChart(const ReportPage& page, const Calendar& calendar);
// The issues of the last seven days' alerts, most frequent first.
std::string issuesChart(const ReportPage& page);

}  // namespace sodam
