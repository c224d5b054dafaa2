#include "linux/report_charts.h"

#include <algorithm>
#include <cmath>

#include "app/report_chart.h"
#include "linux/report_html.h"
#include "support/text.h"

namespace sodam {

namespace {

constexpr double chartWidth = 560;
constexpr double chartHeight = 220;
constexpr double plotTop = 26;     // room for the values over the bars
constexpr double plotBottom = 34;  // room for the labels under them
constexpr double barGap = 0.28;    // of each slot
constexpr double barRadius = 4;
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

// A column chart: one slot per bar, each filled to its share of the plot,
// the value over it and the label under it.
std::string columnChart(const std::vector<ChartBar>& bars, const std::string& label) {
  Svg svg(chartWidth, chartHeight);
  const double plotHeight = chartHeight - plotTop - plotBottom;
  const double baseline = plotTop + plotHeight;
  const double slot = chartWidth / static_cast<double>(std::max<std::size_t>(bars.size(), 1));
  const double width = slot * (1 - barGap);
  for (double share : {0.5, 1.0})
    svg.line(0, baseline - share * plotHeight, chartWidth, baseline - share * plotHeight, "grid");
  svg.line(0, baseline, chartWidth, baseline, "axis");
  for (std::size_t i = 0; i < bars.size(); ++i) {
    const ChartBar& bar = bars[i];
    const double x = slot * static_cast<double>(i) + (slot - width) / 2;
    const double centre = x + width / 2;
    if (bar.fill) {
      const double height = std::max(*bar.fill * plotHeight, 2.0);
      svg.bar(x, baseline - height, width, height, std::string(themeName(bar.tint)), bar.spoken);
      svg.text(centre, baseline - height - 7, bar.value, "value");
    } else {
      svg.bar(x, baseline - 2, width, 2, "empty", bar.spoken);
    }
    svg.text(centre, baseline + 20, bar.label, bar.stressed ? "label today" : "label");
  }
  return svg.element(label);
}

}  // namespace

std::string hoursChart(const ReportPage& page) {
  return columnChart(hourBars(page), "오늘 시간대별 바른 자세");
}

std::string weekShareChart(const ReportPage& page, const Calendar& calendar) {
  return columnChart(weekShareBars(page, calendar), "최근 7일 날마다 바른 자세");
}

std::string weekSeatedChart(const ReportPage& page, const Calendar& calendar) {
  return columnChart(weekSeatedBars(page, calendar), "최근 7일 날마다 앉은 시간");
}

std::string issuesChart(const ReportPage& page) {
  const auto bars = issueBars(page.weekIssues);
  const double height = std::max<double>(bars.size(), 1) * issueRowHeight + 8;
  Svg svg(chartWidth, height);
  if (bars.empty()) svg.text(chartWidth / 2, height / 2 + 5, "알림이 없었어요", "label");
  const double track = chartWidth - issueLabelWidth - issueCountWidth;
  for (std::size_t i = 0; i < bars.size(); ++i) {
    const ChartBar& bar = bars[i];
    const double y = 4 + static_cast<double>(i) * issueRowHeight;
    svg.text(issueLabelWidth - 12, y + 19, bar.label, "label", "end");
    const double width = std::max(track * bar.fill.value_or(0), 4.0);
    svg.bar(issueLabelWidth, y + 5, width, issueRowHeight - 10, std::string(themeName(bar.tint)),
            bar.spoken);
    svg.text(issueLabelWidth + width + 8, y + 19, bar.value, "value", "start");
  }
  return svg.element("최근 7일 보인 자세");
}

}  // namespace sodam
