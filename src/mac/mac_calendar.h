#pragma once

// Called on the main thread at start; the calendar it gives is a plain value.

#include "support/calendar.h"

namespace sodam {

// The calendar in the user's time zone, read from the system's zone data,
// so the core counts days and weeks as the clock on the menu bar does.
// Without readable zone data it counts in UTC.
Calendar systemCalendar();

}  // namespace sodam
