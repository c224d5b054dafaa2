#include "companion/insights.h"

#include <array>
#include <optional>

#include "support/korean_format.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

using Line = Insights::Line;

struct Week {
  Date start;  // start of the first day
  Date end;    // start of the day after the last
  bool contains(Date t) const { return start <= t && t < end; }
};

// This week (today and the six days before) and the one before it.
std::pair<Week, Week> weeks(Date now, const Calendar& calendar) {
  const Date today = calendar.startOfDay(now);
  const Date tomorrow = calendar.addingDays(today, 1).value_or(today + 86400);
  const Date thisStart = calendar.addingDays(today, -6).value_or(today - 6 * 86400);
  const Date lastStart = calendar.addingDays(today, -13).value_or(today - 13 * 86400);
  return {Week{thisStart, tomorrow}, Week{lastStart, thisStart}};
}

struct Share {
  int checks = 0;
  int good = 0;
  void add(const PostureEntry& entry) {
    if (!entry.judged()) return;
    ++checks;
    if (entry.k != PostureEntry::Kind::alert) ++good;
  }
  long long percent() const { return roundedInt(100.0 * good / checks); }
};

std::optional<Line> weekAgainstLast(const PostureLog& log, const Week& now, const Week& before) {
  Share thisWeek, lastWeek;
  for (const auto& entry : log.entries()) {
    if (now.contains(entry.t)) thisWeek.add(entry);
    if (before.contains(entry.t)) lastWeek.add(entry);
  }
  if (thisWeek.checks < Insights::weekMinChecks || lastWeek.checks < Insights::weekMinChecks) {
    return std::nullopt;
  }
  const long long change = thisWeek.percent() - lastWeek.percent();
  if (change >= Insights::weekChangePoints) {
    return Line{format("이번 주 바른 자세는 %lld%%예요. 지난주보다 %lld%%p 좋아졌어요!",
                       thisWeek.percent(), change)};
  }
  if (-change >= Insights::weekChangePoints) {
    return Line{format("이번 주 바른 자세는 %lld%%예요. 지난주보다 %lld%%p 내려갔어요.",
                       thisWeek.percent(), -change)};
  }
  return std::nullopt;
}

std::optional<Line> slippingHour(const PostureLog& log, const Week& week,
                                 const Calendar& calendar) {
  std::array<int, 24> alerts{};
  int total = 0;
  for (const auto& entry : log.entries()) {
    if (entry.k != PostureEntry::Kind::alert || !week.contains(entry.t)) continue;
    ++alerts[static_cast<std::size_t>(calendar.hour(entry.t))];
    ++total;
  }
  if (total < Insights::slipMinAlerts) return std::nullopt;
  int top = 0;
  bool tied = false;
  for (int hour = 1; hour < 24; ++hour) {
    if (alerts[hour] > alerts[top]) {
      top = hour;
      tied = false;
    } else if (alerts[hour] == alerts[top]) {
      tied = true;
    }
  }
  if (tied || alerts[top] < Insights::slipHourMinAlerts) return std::nullopt;
  return Line{"이번 주엔 " + Fmt::hour(top) +
              "대에 자세가 가장 자주 흐트러졌어요. 그때 한 번 더 허리를 펴 봐요."};
}

std::vector<WorkDay> daysOf(const WorkLife& work, const Week& week) {
  std::vector<WorkDay> days;
  for (const auto& day : work.days()) {
    if (week.contains(day.day) && !day.spans.empty()) days.push_back(day);
  }
  return days;
}

std::optional<Line> longestSitting(const std::vector<WorkDay>& days, const Calendar& calendar) {
  const WorkDay* longest = nullptr;
  for (const auto& day : days) {
    if (!longest || day.longest() > longest->longest()) longest = &day;
  }
  if (!longest || longest->longest() < Insights::longSittingMinutes) return std::nullopt;
  return Line{"이번 주 가장 오래 앉아 있던 건 " + Fmt::weekday(longest->day, calendar) + "요일 " +
              hm(longest->longest()) + "이에요. 50분마다 한 번씩 일어나요!"};
}

std::optional<Line> mostBreaks(const std::vector<WorkDay>& days, const Calendar& calendar) {
  if (days.size() < 2) return std::nullopt;
  const WorkDay* most = nullptr;
  bool tied = false;
  for (const auto& day : days) {
    if (!most || day.breaks() > most->breaks()) {
      most = &day;
      tied = false;
    } else if (day.breaks() == most->breaks()) {
      tied = true;
    }
  }
  if (tied || most->breaks() < Insights::manyBreaks) return std::nullopt;
  return Line{format("%s요일에 가장 자주 쉬었어요. 자리에서 %d번 일어났어요!",
                     Fmt::weekday(most->day, calendar).c_str(), most->breaks())};
}

}  // namespace

std::vector<Line> Insights::lines(const WorkLife& work, const PostureLog& log, Date now,
                                  const Calendar& calendar) {
  const auto [thisWeek, lastWeek] = weeks(now, calendar);
  const auto days = daysOf(work, thisWeek);
  std::vector<Line> out;
  for (auto line : {weekAgainstLast(log, thisWeek, lastWeek), slippingHour(log, thisWeek, calendar),
                    longestSitting(days, calendar), mostBreaks(days, calendar)}) {
    if (line) out.push_back(std::move(*line));
  }
  return out;
}

}  // namespace sodam
