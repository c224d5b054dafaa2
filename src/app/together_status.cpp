#include "app/together_status.h"

namespace sodam {

namespace {
constexpr int weekDays = 7;

std::optional<double> pooledShare(const std::vector<PostureLog::Day>& days) {
  int checks = 0;
  int good = 0;
  for (const PostureLog::Day& day : days) {
    checks += day.checks;
    good += day.good;
  }
  if (checks == 0) return std::nullopt;
  return static_cast<double>(good) / checks;
}

// The days of this week so far, in the calendar's own weeks.
double weekMinutes(const FocusCenter& focus, Date now, const Calendar& calendar) {
  const std::string week = studyWeekKey(now, calendar);
  double minutes = 0;
  for (int back = 0; back < weekDays; ++back) {
    const std::optional<Date> day = calendar.addingDays(now, -back);
    if (!day || studyWeekKey(*day, calendar) != week) break;
    minutes += focus.minutes(*day);
  }
  return minutes;
}
}  // namespace

MyStatus recordedStatus(const PostureLog& log, const FocusCenter& focus, Date now,
                        const Calendar& calendar) {
  MyStatus status;
  status.mode = focus.active().mode;
  const PostureLog::Day today = log.day(now);
  status.good = today.ratio();
  status.checks = today.checks;
  status.focus = static_cast<int>(focus.minutes(now));
  status.turtle = focus.habitCount(WatchHabit::posture, now);
  status.phone = focus.habitCount(WatchHabit::phone, now);
  status.weekGood = pooledShare(log.lastDays(weekDays));
  status.weekFocus = static_cast<int>(weekMinutes(focus, now, calendar));
  return status;
}

}  // namespace sodam
