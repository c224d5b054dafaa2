#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cloud/study_group.h"
#include "focus/focus_center.h"
#include "support/calendar.h"

namespace sodam {

// The month of the groups' sessions and the user's focused days, with the
// chosen day's sessions and focus records. A plain value for the panel's
// view and the tests.
struct CalendarPage {
  struct Cell {
    Date day;  // start of the day
    int number = 1;
    bool inMonth = true;
    bool today = false;
    bool selected = false;
    bool sessions = false;  // a group meets that day
    bool focused = false;   // the user left focus records that day
  };
  struct SessionRow {
    std::string groupId;
    std::string group;
    std::string title;
    std::string time;    // "오후 7:30 – 오후 8:30"
    std::string repeat;  // "매주"
    bool running = false;
  };
  struct FocusRow {
    std::string time;
    std::string preset;
    std::string focused;  // "50분"
  };

  std::string month;  // "2026년 2월"
  // Whole weeks from Sunday that cover the month.
  std::vector<Cell> cells;
  std::string day;  // "2월 17일 (화)"
  std::vector<SessionRow> sessions;
  std::optional<std::string> noSessions;
  // Sessions of today and tomorrow that have not ended, under "곧 시작".
  std::vector<SessionRow> soon;
  std::string myFocus;  // "내 집중 1시간 12분"
  std::vector<FocusRow> focus;
  std::optional<std::string> noFocus;

  static CalendarPage make(const std::vector<StudyGroup>& groups, const FocusCenter& focusCenter,
                           Date selected, Date now, const Calendar& calendar);
};

}  // namespace sodam
