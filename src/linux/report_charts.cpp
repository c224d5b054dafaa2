#include "linux/report_charts.h"

#include <algorithm>
#include <cmath>

#include "linux/report_html.h"
#include "support/korean_format.h"
#include "support/text.h"

namespace sodam {

namespace {

constexpr double chartWidth = 560;
constexpr double chartHeight = 220;
constexpr double plotTop = 26;     // room for the values over the bars
constexpr double plotBottom = 34;  // room for the labels under them
constexpr double barGap = 0.28;    // of each slot
constexpr double barRadius = 4;
constexpr double goodShare = 0.8;
constexpr double fairShare = 0.6;
// The seated chart's scale reaches at least a working day.
constexpr double fullDayMinutes = 8 * 60;
constexpr double issueRowHeight = 30;
constexpr double issueLabelWidth = 130;
constexpr double issueCountWidth = 48;

// One inline SVG element, built up shape by shape.
class Svg {
 public:
  Svg(double width, double height) : width_(width), height_(height) {}

  void bar(double x, double y, double w, double h, const std::string& kind,
           const std::string& title) {
    body_ += format(R"(<rect class="bar %s" x="%.1f" y="%.1f" width="%.1f" height="%.1f" )"
                    R"(rx="%.0f"><title>%s</title></rect>)",
                    kind.c_str(), x, y, w, std::max(h, 0.0), barRadius, htmlEscaped(title).c_str());
  }
  void line(double x1, double y1, double x2, double y2, const char* kind) {
    body_ += format(R"(<line class="%s" x1="%.1f" y1="%.1f" x2="%.1f" y2="%.1f"/>)", kind, x1, y1,
                    x2, y2);
  }
  void text(double x, double y, const std::string& words, const char* kind,
            const char* anchor = "middle") {
    body_ += format(R"(<text class="%s" x="%.1f" y="%.1f" text-anchor="%s">%s</text>)", kind, x, y,
                    anchor, htmlEscaped(words).c_str());
  }
  std::string element(const std::string& label) const {
    return format(R"(<svg class="chart" viewBox="0 0 %.0f %.0f" role="img" aria-label="%s">)",
                  width_, height_, htmlEscaped(label).c_str()) +
           body_ + "</svg>";
  }

 private:
  double width_;
  double height_;
  std::string body_;
};

std::string shareKind(double share) {
  if (share >= goodShare) return "good";
  if (share >= fairShare) return "fair";
  return "poor";
}

// A column chart: one slot per column, a bar filled to its share of the
// plot, the value over it and the label under it.
struct Column {
  std::optional<double> fill;  // 0 to 1; nothing draws an empty mark
  std::string kind;
  std::string value;
  std::string label;
  std::string title;
  bool stressed = false;  // today's label
};

std::string columnChart(const std::vector<Column>& columns, const std::string& label) {
  Svg svg(chartWidth, chartHeight);
  const double plotHeight = chartHeight - plotTop - plotBottom;
  const double baseline = plotTop + plotHeight;
  const double slot = chartWidth / static_cast<double>(std::max<std::size_t>(columns.size(), 1));
  const double width = slot * (1 - barGap);
  for (double share : {0.5, 1.0})
    svg.line(0, baseline - share * plotHeight, chartWidth, baseline - share * plotHeight, "grid");
  svg.line(0, baseline, chartWidth, baseline, "axis");
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const Column& c = columns[i];
    const double x = slot * static_cast<double>(i) + (slot - width) / 2;
    const double centre = x + width / 2;
    if (c.fill) {
      const double height = std::max(*c.fill * plotHeight, 2.0);
      svg.bar(x, baseline - height, width, height, c.kind, c.title);
      svg.text(centre, baseline - height - 7, c.value, "value");
    } else {
      svg.bar(x, baseline - 2, width, 2, "empty", c.title);
    }
    svg.text(centre, baseline + 20, c.label, c.stressed ? "label today" : "label");
  }
  return svg.element(label);
}

}  // namespace

std::string hoursChart(const ReportPage& page) {
  const auto checked = page.checkedHours();
  const int first = std::min(checked ? checked->first : 9, 9);
  const int last = std::max(checked ? checked->second : 18, 18);
  std::vector<Column> columns;
  for (int hour = first; hour <= last; ++hour) {
    const auto& row = page.hours[static_cast<std::size_t>(hour)];
    const int checks = row.good + row.bad;
    Column column{std::nullopt, "", "", std::to_string(hour), spokenHour(hour) + " · 확인 없음"};
    if (checks > 0) {
      const double share = static_cast<double>(row.good) / checks;
      column.fill = share;
      column.kind = shareKind(share);
      column.value = percentText(share);
      column.title = format("%s · 바른 자세 %s · 확인 %d번", spokenHour(hour).c_str(),
                            percentText(share).c_str(), checks);
    }
    columns.push_back(std::move(column));
  }
  return columnChart(columns, "오늘 시간대별 바른 자세");
}

std::string weekShareChart(const ReportPage& page, const Calendar& calendar) {
  std::vector<Column> columns;
  for (std::size_t i = 0; i < page.week.size(); ++i) {
    const ReportDay& day = page.week[i];
    const std::string label = shortDayLabel(calendar, day.date);
    Column column{day.goodShare(),          "", "", label, label + " · 기록 없음",
                  i + 1 == page.week.size()};
    if (auto share = day.goodShare()) {
      column.kind = shareKind(*share);
      column.value = percentText(share);
      column.title = format("%s · 바른 자세 %s · 확인 %d번 · 알림 %d번", label.c_str(),
                            percentText(share).c_str(), day.checks, day.alerts);
    }
    columns.push_back(std::move(column));
  }
  return columnChart(columns, "최근 7일 날마다 바른 자세");
}

std::string weekSeatedChart(const ReportPage& page, const Calendar& calendar) {
  double most = fullDayMinutes;
  for (const auto& day : page.week)
    most = std::max(most, day.seatedMinutes);
  std::vector<Column> columns;
  for (std::size_t i = 0; i < page.week.size(); ++i) {
    const ReportDay& day = page.week[i];
    const std::string label = shortDayLabel(calendar, day.date);
    Column column{
        std::nullopt, "time", "", label, label + " · 기록 없음", i + 1 == page.week.size()};
    if (day.seatedMinutes > 0) {
      column.fill = day.seatedMinutes / most;
      column.value = hm(day.seatedMinutes);
      column.title = format("%s · 앉은 시간 %s · 쉬는 시간 %d번", label.c_str(),
                            hm(day.seatedMinutes).c_str(), day.breaks);
    }
    columns.push_back(std::move(column));
  }
  return columnChart(columns, "최근 7일 날마다 앉은 시간");
}

std::string issuesChart(const ReportPage& page) {
  const auto& issues = page.weekIssues;
  const double height = std::max<double>(issues.size(), 1) * issueRowHeight + 8;
  Svg svg(chartWidth, height);
  if (issues.empty()) svg.text(chartWidth / 2, height / 2 + 5, "알림이 없었어요", "label");
  const double track = chartWidth - issueLabelWidth - issueCountWidth;
  const int most = issues.empty() ? 1 : issues.front().count;
  for (std::size_t i = 0; i < issues.size(); ++i) {
    const auto& issue = issues[i];
    const double y = 4 + static_cast<double>(i) * issueRowHeight;
    const std::string title(issue.kind.title());
    svg.text(issueLabelWidth - 12, y + 19, title, "label", "end");
    const double width = std::max(track * issue.count / most, 4.0);
    svg.bar(issueLabelWidth, y + 5, width, issueRowHeight - 10, "issue",
            format("%s · %d번", title.c_str(), issue.count));
    svg.text(issueLabelWidth + width + 8, y + 19, format("%d번", issue.count), "value", "start");
  }
  return svg.element("최근 7일 보인 자세");
}

}  // namespace sodam
