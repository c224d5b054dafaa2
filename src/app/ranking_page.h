#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cloud/study_group.h"
#include "companion/mate_look.h"
#include "companion/mate_state.h"
#include "support/calendar.h"

namespace sodam {

// Who sat well and who focused longest, among all friends or in one group,
// today or this week. A plain value for the panel's view, `sodamjari group`
// and the tests.
struct RankingPage {
  enum class Period { today, week };

  struct Scope {
    std::string groupId;  // empty: all friends
    std::string title;
  };
  struct Row {
    int rank = 1;  // equal values share a rank
    std::string id;
    std::string name;
    MateLook look;
    MateState live = MateState::offline;
    bool me = false;
    std::string value;  // "87%", "1시간 12분"
  };

  std::vector<Scope> scopes;  // "모든 친구" first, then each group
  std::string groupId;
  Period period = Period::today;
  // Members with a share of good checks, best first; the others are left out.
  std::vector<Row> good;
  // Every member by focus minutes, longest first.
  std::vector<Row> focus;
  // Nobody to compete with yet: the title and its line.
  std::optional<std::pair<std::string, std::string>> empty;

  struct Input {
    const std::vector<StudyGroup>& groups;
    const std::map<std::string, std::vector<Member>>& members;
    std::optional<std::string> me;
    Date now;
    const Calendar& calendar;
  };
  // `groupId` unknown or empty ranks all friends.
  static RankingPage make(const Input& input, const std::string& groupId, Period period);
};

}  // namespace sodam
