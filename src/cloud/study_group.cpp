#include "cloud/study_group.h"

#include <algorithm>

#include "support/text.h"

namespace sodam {

std::string studyDayKey(Date date, const Calendar& calendar) {
  const DateComponents c = calendar.components(date);
  return format("%04d-%02d-%02d", c.year, c.month, c.day);
}

std::string studyWeekKey(Date date, const Calendar& calendar) {
  return format("%d-%d", calendar.yearForWeekOfYear(date), calendar.weekOfYear(date));
}

namespace {
void sortByTime(std::vector<SessionTime>& times) {
  std::stable_sort(times.begin(), times.end(),
                   [](const SessionTime& a, const SessionTime& b) { return a.at < b.at; });
}
}  // namespace

std::vector<Member> friendsOf(const std::map<std::string, std::vector<Member>>& members) {
  std::map<std::string, Member> byId;
  for (const auto& [group, list] : members) {
    for (const Member& member : list) {
      auto [it, fresh] = byId.try_emplace(member.id, member);
      if (!fresh && member.at > it->second.at) it->second = member;
    }
  }
  std::vector<Member> all;
  for (auto& [id, member] : byId)
    all.push_back(std::move(member));
  return all;
}

std::vector<SessionTime> upcomingSessions(const std::vector<StudyGroup>& groups, Date now, int days,
                                          const Calendar& calendar) {
  std::vector<SessionTime> times;
  for (int offset = -1; offset <= days; ++offset) {
    const std::optional<Date> day = calendar.addingDays(now, offset);
    if (!day) continue;
    for (const StudyGroup& group : groups) {
      for (const GroupSession& session : group.sessions) {
        const std::optional<Date> at = session.startOn(*day, calendar);
        if (at && session.end(*at) > now) times.push_back({&group, &session, *at});
      }
    }
  }
  sortByTime(times);
  return times;
}

std::vector<SessionTime> sessionsOn(const std::vector<StudyGroup>& groups, Date day,
                                    const Calendar& calendar) {
  std::vector<SessionTime> times;
  for (const StudyGroup& group : groups) {
    for (const GroupSession& session : group.sessions) {
      if (const auto at = session.startOn(day, calendar)) times.push_back({&group, &session, *at});
    }
  }
  sortByTime(times);
  return times;
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
