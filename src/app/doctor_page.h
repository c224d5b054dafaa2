#pragma once

#include <optional>
#include <string>
#include <vector>

#include "alerts/theme.h"
#include "app/page_records.h"
#include "app/report_chart.h"
#include "coach/stretch.h"
#include "health/habit.h"
#include "health/habit_stats.h"
#include "posture/issue_kind.h"

namespace sodam {

// What the health coach's page shows: the habits of the last seven days
// with their numbers and figures, the check-up row, today's opinion and the
// words of each state. A plain value for the panel's view and the command
// line alike.
struct DoctorPage {
  // The week against the one before, and what the records say around the
  // habits.
  struct Checkup {
    std::optional<double> thisWeekGood;  // share of good checks
    std::optional<double> lastWeekGood;
    int habits = 0;
    std::optional<IssueKind> commonestAlert;
    std::optional<double> seatedMinutesPerDay;  // over the days at the machine
  };

  // One found habit with everything its card shows.
  struct Card {
    Habit habit;
    HabitStats stats;
    std::vector<std::string> prescription;
    std::vector<std::string> fixes;
  };

  // One cell of the check-up row.
  struct Cell {
    std::string label;
    std::string value;
    std::string detail;
  };

  HabitReport report;
  Checkup checkup;
  std::vector<Card> cards;

  static DoctorPage make(const PageRecords& records);

  // "최근 7일 자세 확인 {n}회를 바탕으로 살펴봤어요".
  std::string basis() const;
  // Too few checks, or no habit in enough: the title and line that say so;
  // nothing once there are habits.
  std::optional<std::pair<std::string, std::string>> notice() const;
  std::vector<Cell> checkupCells() const;
  // "오늘의 소견": its title and line.
  std::pair<std::string, std::string> opinion() const;
  // The stretches of "맞춤 스트레칭 시작".
  std::vector<std::string> routine() const;

  // A card's chart of its seven days ("날짜", "평균"), each day against the
  // highest, in the habit's level's tint; today stands out.
  static std::vector<ChartBar> dailyBars(const Card& card, const Calendar& calendar);

  static Theme levelTint(Habit::Level level);
  // A stretch's time as the consult lists it: "30초", and "좌우 26초" for
  // one done on each side.
  static std::string stretchTime(const Stretch& stretch);
  // "14시대".
  static std::string hourText(int hour);
  // A habit's number with its unit: "3.2센티", "—" without one.
  static std::string amount(std::optional<double> value, const std::string& unit);
};

}  // namespace sodam
