#pragma once

#include "cloud/study_group.h"
#include "focus/focus_center.h"
#include "posture/posture_log.h"
#include "support/calendar.h"

namespace sodam {

// The numbers the user's status carries, from the records: today's checks and
// their share of good ones, the share pooled over the last seven days, the
// focus minutes of today and of this week's days so far, and today's
// forward-head and phone counts. The state and mode are left as they are.
MyStatus recordedStatus(const PostureLog& log, const FocusCenter& focus, Date now,
                        const Calendar& calendar);

}  // namespace sodam
