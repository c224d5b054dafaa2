#pragma once

#include <string>
#include <vector>

#include "app/report_page.h"
#include "support/calendar.h"

namespace sodam {

// The report page as terminal lines: Korean, aligned by the columns a
// terminal gives each character, with bar charts of block characters.
std::vector<std::string> reportLines(const ReportPage& page, ReportPage::Span span,
                                     const Calendar& calendar);

// A bar `width` columns long, filled to `share` (0 to 1) in eighths of a
// column and padded with spaces.
std::string blockBar(double share, int width);

}  // namespace sodam
