#include "cloud/study_group.h"

#include "support/text.h"

namespace sodam {

std::string studyDayKey(Date date, const Calendar& calendar) {
  const DateComponents c = calendar.components(date);
  return format("%04d-%02d-%02d", c.year, c.month, c.day);
}

std::string studyWeekKey(Date date, const Calendar& calendar) {
  return format("%d-%d", calendar.yearForWeekOfYear(date), calendar.weekOfYear(date));
}

std::string StudyGroup::codeText() const {
  if (code.size() != 8) return code;
  return code.substr(0, 4) + " " + code.substr(4);
}

std::string StudyGroup::inviteLink() const {
  return "/join.html?code=" + code;
}

MateState Member::live(Date now) const {
  if (now - at > staleSeconds) return MateState::offline;
  return state;
}

bool Member::today(Date now, const Calendar& calendar) const {
  return day == studyDayKey(now, calendar);
}

bool Member::thisWeek(Date now, const Calendar& calendar) const {
  return week == studyWeekKey(now, calendar);
}

std::optional<double> Member::todayGood(Date now, const Calendar& calendar) const {
  return today(now, calendar) ? good : std::nullopt;
}

int Member::todayFocus(Date now, const Calendar& calendar) const {
  return today(now, calendar) ? focus : 0;
}

std::optional<double> Member::weekGoodValue(Date now, const Calendar& calendar) const {
  return thisWeek(now, calendar) ? weekGood : std::nullopt;
}

int Member::weekFocusValue(Date now, const Calendar& calendar) const {
  return thisWeek(now, calendar) ? weekFocus : 0;
}

}  // namespace sodam
