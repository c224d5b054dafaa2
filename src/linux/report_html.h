#pragma once

#include <string>

#include "app/report_page.h"
#include "support/calendar.h"

namespace sodam {

// The report page as one self-contained HTML document: today hour by hour
// and the last seven days, drawn as inline SVG charts, styled for light and
// dark mode. No script, no font, picture or style sheet from elsewhere, so
// it opens the same in any browser with no network.
std::string reportHtml(const ReportPage& page, const Calendar& calendar);

// Text made safe for HTML content and attribute values.
std::string htmlEscaped(std::string_view text);

}  // namespace sodam
