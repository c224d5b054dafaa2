#include "app/report_chart.h"

#include "support/korean_format.h"
#include "support/text.h"

namespace sodam {

namespace {

Theme shareTint(double share) {
  switch (ReportPage::grade(share)) {
    case ReportPage::Grade::good:
      return Theme::green;
    case ReportPage::Grade::fair:
      return Theme::orange;
    case ReportPage::Grade::poor:
      return Theme::red;
  }
  return Theme::green;
}

}  // namespace

std::vector<ChartBar> hourBars(const ReportPage& page) {
  const auto [first, last] = page.chartHours();
  std::vector<ChartBar> bars;
  for (int hour = first; hour <= last; ++hour) {
    const auto& row = page.hours[static_cast<std::size_t>(hour)];
    const int checks = row.good + row.bad;
    ChartBar bar{std::nullopt, Theme::gray, "", std::to_string(hour),
                 spokenHour(hour) + " · 확인 없음"};
    if (checks > 0) {
      const double share = static_cast<double>(row.good) / checks;
      bar = {share, shareTint(share), percentText(share), bar.label,
             format("%s · 바른 자세 %s · 확인 %d번", spokenHour(hour).c_str(),
                    percentText(share).c_str(), checks)};
    }
    bars.push_back(std::move(bar));
  }
  return bars;
}

std::vector<ChartBar> weekShareBars(const ReportPage& page, const Calendar& calendar) {
  std::vector<ChartBar> bars;
  for (const auto& day : page.week) {
    const std::string label = shortDayLabel(calendar, day.date);
    ChartBar bar{std::nullopt, Theme::gray, "", label, label + " · 기록 없음"};
    if (auto share = day.goodShare()) {
      bar = {share, shareTint(*share), percentText(share), label,
             format("%s · 바른 자세 %s · 확인 %d번 · 알림 %d번", label.c_str(),
                    percentText(share).c_str(), day.checks, day.alerts)};
    }
    bar.stressed = &day == &page.week.back();
    bars.push_back(std::move(bar));
  }
  return bars;
}

std::vector<ChartBar> weekSeatedBars(const ReportPage& page, const Calendar& calendar) {
  const double most = page.chartMinutes();
  std::vector<ChartBar> bars;
  for (const auto& day : page.week) {
    const std::string label = shortDayLabel(calendar, day.date);
    ChartBar bar{std::nullopt, Theme::gray, "", label, label + " · 기록 없음"};
    if (day.seatedMinutes > 0) {
      bar = {day.seatedMinutes / most, Theme::blue, hm(day.seatedMinutes), label,
             format("%s · 앉은 시간 %s · 쉬는 시간 %d번", label.c_str(),
                    hm(day.seatedMinutes).c_str(), day.breaks)};
    }
    bar.stressed = &day == &page.week.back();
    bars.push_back(std::move(bar));
  }
  return bars;
}

std::vector<ChartBar> issueBars(const std::vector<PostureLog::IssueCount>& issues) {
  std::vector<ChartBar> bars;
  const int most = issues.empty() ? 1 : issues.front().count;
  for (const auto& issue : issues) {
    const std::string title(issue.kind.title());
    bars.push_back({static_cast<double>(issue.count) / most, Theme::coral,
                    format("%d번", issue.count), title,
                    format("%s · %d번", title.c_str(), issue.count)});
  }
  return bars;
}

}  // namespace sodam
