#include "linux/report_text.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "support/korean_format.h"
#include "support/text.h"
#include "support/utf8.h"

namespace sodam {

namespace {

constexpr int shareBarColumns = 20;
constexpr int issueBarColumns = 12;

// Pads with spaces to `width` columns, on the right or on the left.
std::string padded(const std::string& text, std::size_t width, bool left = false) {
  const std::size_t used = utf8::columns(text);
  const std::string space(used < width ? width - used : 0, ' ');
  return left ? space + text : text + space;
}

std::string summaryLine(const std::string& label, const std::string& value,
                        const std::string& detail) {
  return padded(label, 12) + padded(value, 12) + detail;
}

void issueLines(const std::vector<PostureLog::IssueCount>& issues, std::vector<std::string>& out) {
  std::size_t labelWidth = 0;
  for (const auto& issue : issues)
    labelWidth = std::max(labelWidth, utf8::columns(issue.kind.title()));
  const int most = issues.empty() ? 1 : issues.front().count;
  for (const auto& issue : issues) {
    out.push_back("  " + padded(std::string(issue.kind.title()), labelWidth) + "  " +
                  blockBar(static_cast<double>(issue.count) / most, issueBarColumns) + "  " +
                  format("%d번", issue.count));
  }
}

void insightLines(const ReportPage& page, std::vector<std::string>& out) {
  if (page.insights.empty()) return;
  out.push_back("");
  out.push_back("한마디");
  for (const auto& insight : page.insights)
    out.push_back("  · " + insight);
}

std::string shareBarWithValue(std::optional<double> share) {
  return blockBar(share.value_or(0), shareBarColumns) + "  " + padded(percentText(share), 4, true);
}

void todayLines(const ReportPage& page, const Calendar& calendar, std::vector<std::string>& out) {
  const ReportDay& today = page.today;
  out.push_back("소담자리 리포트 · " + longDayLabel(calendar, today.date));
  out.push_back("");
  out.push_back(summaryLine("바른 자세", percentText(today.goodShare()),
                            format("확인 %d번 · 알림 %d번 · 바로잡음 %d번", today.checks,
                                   today.alerts, page.corrections)));
  out.push_back(summaryLine(
      "앉은 시간", hm(today.seatedMinutes),
      format("쉬는 시간 %d번 · 가장 길게 %s", today.breaks, hm(today.longestMinutes).c_str())));
  out.push_back("");
  out.push_back("시간대별 바른 자세");
  const auto range = page.checkedHours();
  if (!range) out.push_back("  오늘은 아직 확인한 기록이 없어요");
  for (int hour = range ? range->first : 0; range && hour <= range->second; ++hour) {
    const auto& row = page.hours[static_cast<std::size_t>(hour)];
    const int checks = row.good + row.bad;
    std::optional<double> share;
    if (checks > 0) share = static_cast<double>(row.good) / checks;
    out.push_back(padded(format("%d시", hour), 6, true) + "  " + shareBarWithValue(share) +
                  padded(format("%d번", checks), 7, true));
  }
  if (!page.todaysIssues.empty()) {
    out.push_back("");
    out.push_back("오늘 보인 자세");
    issueLines(page.todaysIssues, out);
  }
}

void weekLines(const ReportPage& page, const Calendar& calendar, std::vector<std::string>& out) {
  out.push_back("소담자리 리포트 · 최근 7일 (" + shortDayLabel(calendar, page.week.front().date) +
                " – " + shortDayLabel(calendar, page.week.back().date) + ")");
  out.push_back("");
  out.push_back(summaryLine("바른 자세", percentText(page.weekGoodShare()),
                            format("확인 %d번", page.weekChecks())));
  const int seatedDays = page.weekSeatedDays();
  out.push_back(
      summaryLine("앉은 시간", hm(page.weekSeatedMinutes()),
                  seatedDays == 0 ? "" : "하루 평균 " + hm(page.weekSeatedMinutes() / seatedDays)));
  out.push_back("");
  out.push_back("날마다 바른 자세와 앉은 시간");
  for (const auto& day : page.week) {
    std::string line = "  " + padded(shortDayLabel(calendar, day.date), 8) + "  ";
    if (day.empty()) {
      out.push_back(line + "기록 없음");
      continue;
    }
    line += shareBarWithValue(day.goodShare()) + "   " + hm(day.seatedMinutes);
    if (day.seatedMinutes > 0) line += format(" · 쉬는 시간 %d번", day.breaks);
    out.push_back(line);
  }
  if (!page.weekIssues.empty()) {
    out.push_back("");
    out.push_back("최근 7일 보인 자세");
    issueLines(page.weekIssues, out);
  }
}

}  // namespace

std::string blockBar(double share, int width) {
  static constexpr std::array<const char*, 8> eighths = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
  const int filled = static_cast<int>(std::round(std::clamp(share, 0.0, 1.0) * width * 8));
  std::string bar;
  for (int i = 0; i < filled / 8; ++i)
    bar += "█";
  bar += eighths[static_cast<std::size_t>(filled % 8)];
  return padded(bar, static_cast<std::size_t>(width));
}

std::vector<std::string> reportLines(const ReportPage& page, ReportPage::Span span,
                                     const Calendar& calendar) {
  std::vector<std::string> out;
  if (span == ReportPage::Span::today) {
    todayLines(page, calendar, out);
  } else {
    weekLines(page, calendar, out);
  }
  insightLines(page, out);
  return out;
}

}  // namespace sodam
