#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/page_records.h"
#include "posture/posture_log.h"
#include "support/calendar.h"

namespace sodam {

// One calendar day of the report: the posture checks and the time at the
// machine.
struct ReportDay {
  Date date;  // start of the day
  int checks = 0;
  int good = 0;
  int alerts = 0;
  double seatedMinutes = 0;
  int breaks = 0;
  double longestMinutes = 0;

  // good / checks; nothing without checks.
  std::optional<double> goodShare() const;
  // Neither a check nor a minute at the machine.
  bool empty() const { return checks == 0 && seatedMinutes <= 0; }
};

// What the report page shows: today hour by hour and the last seven days day
// by day, with the issues that came up and a few sentences drawn from them.
// A plain value, the same for the panel's view, the command line and the
// HTML report.
struct ReportPage {
  enum class Span { today, week };

  ReportDay today;
  // 24 rows, hour 0 to 23.
  std::vector<PostureLog::Hour> hours;
  std::vector<PostureLog::IssueCount> todaysIssues;
  int corrections = 0;
  // The last seven calendar days, the oldest first, today last; days without
  // records are there, empty.
  std::vector<ReportDay> week;
  // Issues of the alerts of the last seven days, most frequent first.
  std::vector<PostureLog::IssueCount> weekIssues;
  // Sentences on what stands out, the most telling first.
  std::vector<std::string> insights;
  // The recommended routine's reasons join here with the stretch library.

  // How a share is coloured in the charts.
  enum class Grade { good, fair, poor };

  static constexpr int weekDays = 7;
  static constexpr double goodShare = 0.8;
  static constexpr double fairShare = 0.6;
  // The seated time's charts reach at least a working day.
  static constexpr double fullDayMinutes = 8 * 60;
  // An hour needs this many checks before its share says anything.
  static constexpr int telling = 5;

  static ReportPage make(const PageRecords& records);

  // Nothing at all in the last seven days.
  bool empty() const;
  int weekChecks() const;
  std::optional<double> weekGoodShare() const;
  double weekSeatedMinutes() const;
  // The days with a minute at the machine.
  int weekSeatedDays() const;
  // The first and last hour with a check today; nothing without checks.
  std::optional<std::pair<int, int>> checkedHours() const;
  // The hours a chart of today shows: 9 to 18 o'clock, and every hour with a
  // check beyond them.
  std::pair<int, int> chartHours() const;
  // The longest seated time of the week, and a working day at least.
  double chartMinutes() const;
  static Grade grade(double share);
};

// "87%", or "—" without a share.
std::string percentText(std::optional<double> share);
// A day in a chart's axis: "6/3 화".
std::string shortDayLabel(const Calendar& calendar, Date date);
// A day in a heading: "6월 3일 화요일".
std::string longDayLabel(const Calendar& calendar, Date date);
// An hour of the day as said: "오전 9시", "오후 3시", "오전 12시" for midnight.
std::string spokenHour(int hour);

}  // namespace sodam
