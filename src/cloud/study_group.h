#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cloud/group_session.h"
#include "companion/mate_look.h"
#include "companion/mate_state.h"
#include "focus/use_mode.h"
#include "support/calendar.h"
#include "support/date.h"

namespace sodam {

// The keys by which a member's numbers name their day and week, in the
// user's calendar: "2026-02-14" and "2026-7" (year of the week, unpadded).
std::string studyDayKey(Date date, const Calendar& calendar);
std::string studyWeekKey(Date date, const Calendar& calendar);

// A study group the signed-in user belongs to, as its document reads.
struct StudyGroup {
  static constexpr int nameLimit = 20;
  static constexpr std::size_t sessionLimit = 40;

  std::string id;
  std::string name = "모임";
  std::string owner;
  std::string code;
  std::vector<std::string> members;
  std::vector<GroupSession> sessions;

  // "1234 5678" for a code of eight characters, else the code as it stands.
  std::string codeText() const;
  // The hosted invite page's path with the code.
  std::string inviteLink() const;

  bool operator==(const StudyGroup&) const = default;
};

// One member's shared status, as the member's program last published it.
struct Member {
  // Older than this, a member's state is not believed: the program is gone.
  static constexpr double staleSeconds = 360;

  std::string id;
  std::string name = "친구";
  MateLook look;
  MateState state = MateState::offline;
  UseMode mode = UseMode::laptop;
  Date at = Date::distantPast();
  std::string day;
  std::optional<double> good;
  int focus = 0;
  int checks = 0;
  int turtle = 0;
  int phone = 0;
  std::string week;
  std::optional<double> weekGood;
  int weekFocus = 0;
  std::string place;

  MateState live(Date now) const;
  bool today(Date now, const Calendar& calendar) const;
  bool thisWeek(Date now, const Calendar& calendar) const;
  // Numbers of another day or week never reach a ranking.
  std::optional<double> todayGood(Date now, const Calendar& calendar) const;
  int todayFocus(Date now, const Calendar& calendar) const;
  std::optional<double> weekGoodValue(Date now, const Calendar& calendar) const;
  int weekFocusValue(Date now, const Calendar& calendar) const;

  bool operator==(const Member&) const = default;
};

// What the user's program publishes of the user: filled by the application.
struct MyStatus {
  MateState state = MateState::offline;
  UseMode mode = UseMode::laptop;
  std::optional<double> good;
  int focus = 0;
  int checks = 0;
  int turtle = 0;
  int phone = 0;
  std::optional<double> weekGood;
  int weekFocus = 0;
  std::optional<std::string> place;

  bool operator==(const MyStatus&) const = default;
};

// All members of all groups, one per person: where one is in two groups, the
// later status wins. The user is among them; the order is the ids'.
std::vector<Member> friendsOf(const std::map<std::string, std::vector<Member>>& members);

// One occurrence of a group's session.
struct SessionTime {
  const StudyGroup* group = nullptr;
  const GroupSession* session = nullptr;
  Date at;
};

// The occurrences from yesterday to `days` days ahead that have not ended
// by `now`, soonest first: a running session stays until it ends.
std::vector<SessionTime> upcomingSessions(const std::vector<StudyGroup>& groups, Date now, int days,
                                          const Calendar& calendar);
// The occurrences on the calendar day of `day`, soonest first.
std::vector<SessionTime> sessionsOn(const std::vector<StudyGroup>& groups, Date day,
                                    const Calendar& calendar);

}  // namespace sodam
