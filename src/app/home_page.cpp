#include "app/home_page.h"

#include "support/korean_format.h"
#include "support/text.h"

namespace sodam {

namespace {

// How many issues a tile names before it stops.
constexpr std::size_t issuesNamed = 3;

HomePage::Tile postureTile(const ReportPage& report) {
  const ReportDay& today = report.today;
  return {HomeCard::posture,
          "바른 자세",
          "figure.stand",
          Theme::green,
          percentText(today.goodShare()),
          today.checks == 0 ? "아직 확인한 적이 없어요" : format("확인 %d번", today.checks)};
}

HomePage::Tile alertsTile(const ReportPage& report) {
  const int alerts = report.today.alerts;
  return {HomeCard::alerts,
          "알림",
          "bell",
          alerts > 0 ? Theme::red : Theme::gray,
          format("%d번", alerts),
          format("바로잡음 %d번", report.corrections)};
}

HomePage::Tile stretchTile(const PageRecords& records) {
  const WorkDay day = records.workDay(records.now).value_or(WorkDay{});
  return {HomeCard::stretch,
          "스트레칭",
          "figure.cooldown",
          Theme::coral,
          format("%d번", records.log.stretchesToday()),
          format("호흡 %d번 · 눈 쉬기 %d번", day.breathes, day.eyeBreaks)};
}

HomePage::Tile worklifeTile(const ReportPage& report) {
  const ReportDay& today = report.today;
  return {HomeCard::worklife,
          "앉은 시간",
          "clock",
          Theme::blue,
          hm(today.seatedMinutes),
          format("쉬는 시간 %d번 · 가장 길게 %s", today.breaks, hm(today.longestMinutes).c_str())};
}

HomePage::Tile insightsTile(const ReportPage& report) {
  const auto& insights = report.insights;
  return {HomeCard::insights,
          "한마디",
          "lightbulb",
          Theme::orange,
          insights.empty() ? "기록이 쌓이면 알려 드릴게요" : insights.front(),
          insights.size() > 1 ? insights[1] : ""};
}

HomePage::Tile issuesTile(const ReportPage& report) {
  const auto& issues = report.todaysIssues;
  if (issues.empty()) {
    return {HomeCard::issues, "자주 보인 자세", "checkmark.seal",
            Theme::green,     "없음",           "오늘은 자세 알림이 없어요"};
  }
  std::string named;
  for (std::size_t i = 0; i < issues.size() && i < issuesNamed; ++i) {
    if (i > 0) named += ", ";
    named += format("%s %d번", std::string(issues[i].kind.title()).c_str(), issues[i].count);
  }
  return {HomeCard::issues,
          "자주 보인 자세",
          std::string(issues.front().kind.symbol()),
          Theme::red,
          std::string(issues.front().kind.title()),
          named};
}

std::vector<std::string> spanLines(const PageRecords& records) {
  std::vector<std::string> lines;
  const auto day = records.workDay(records.now);
  if (!day) return lines;
  for (const auto& span : day->spans) {
    lines.push_back(Fmt::clock(span.start, records.calendar) + " – " +
                    Fmt::clock(span.end, records.calendar) + " · " + hm(span.minutes()));
  }
  return lines;
}

}  // namespace

HomePage HomePage::make(const PageRecords& records, const Now& now) {
  HomePage page;
  page.report = ReportPage::make(records);
  page.heading = longDayLabel(records.calendar, records.now);
  page.status = now.status;
  if (now.nextCheck) page.nextCheck = "다음 확인 " + Fmt::clock(*now.nextCheck, records.calendar);
  if (now.streakMinutes > 0) page.streak = "지금 " + hm(now.streakMinutes) + "째 앉아 있어요";
  page.tiles = {postureTile(page.report),  alertsTile(page.report),   stretchTile(records),
                worklifeTile(page.report), insightsTile(page.report), issuesTile(page.report)};
  page.spans = spanLines(records);
  return page;
}

const HomePage::Tile& HomePage::tile(HomeCard card) const {
  for (const auto& tile : tiles) {
    if (tile.card == card) return tile;
  }
  return tiles.front();
}

}  // namespace sodam
