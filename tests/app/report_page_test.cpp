#include "app/report_page.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "app/home_page.h"
#include "app/report_chart.h"

namespace sodam {
namespace {

using Kind = PostureEntry::Kind;
using I = IssueKind;

// A posture log and tracked days on a calendar nine hours east of UTC, so
// that a local day never matches a UTC day.
struct Records : ::testing::Test {
  Calendar calendar{TimeZone::fixed(9 * 3600)};
  MemoryDefaults defaults;
  ManualClock clock{local(2026, 6, 3, 8)};
  std::unique_ptr<PostureLog> log = std::make_unique<PostureLog>(defaults, clock, calendar);
  std::vector<WorkDay> days;

  Date local(int year, int month, int day, int hour = 0, int minute = 0) const {
    return calendar.date({year, month, day, hour, minute, 0}).value();
  }
  void record(Date at, Kind kind, std::vector<IssueKind> issues = {}) {
    clock.set(at);
    log->record(kind, std::move(issues));
  }
  void sat(Date from, Date to) {
    const Date start = calendar.startOfDay(from);
    if (days.empty() || days.back().day != start) days.push_back(WorkDay{start, {}, 0, 0, 0});
    days.back().spans.push_back({from, to});
  }
  PageRecords at(Date now) {
    clock.set(now);
    return {*log, days, calendar, now};
  }
};

TEST_F(Records, AnEmptyDaySaysSoEverywhere) {
  const Date now = local(2026, 6, 3, 10);
  const auto report = ReportPage::make(at(now));
  EXPECT_TRUE(report.empty());
  EXPECT_EQ(report.hours.size(), 24u);
  EXPECT_EQ(report.week.size(), 7u);
  EXPECT_EQ(report.week.back().date, local(2026, 6, 3));
  EXPECT_EQ(report.weekGoodShare(), std::nullopt);
  EXPECT_EQ(report.checkedHours(), std::nullopt);
  EXPECT_TRUE(report.insights.empty());

  const auto home = HomePage::make(at(now), {"자세 확인 켜짐", std::nullopt, 0});
  EXPECT_EQ(home.heading, "6월 3일 수요일");
  EXPECT_EQ(home.nextCheck, std::nullopt);
  EXPECT_EQ(home.streak, std::nullopt);
  EXPECT_EQ(home.tile(HomeCard::posture).value, "—");
  EXPECT_EQ(home.tile(HomeCard::posture).detail, "아직 확인한 적이 없어요");
  EXPECT_EQ(home.tile(HomeCard::insights).value, "기록이 쌓이면 알려 드릴게요");
  EXPECT_EQ(home.tile(HomeCard::issues).detail, "오늘은 자세 알림이 없어요");
  EXPECT_EQ(home.tile(HomeCard::worklife).value, "0분");
}

TEST_F(Records, MidnightDividesTheDaysOnTheLocalClock) {
  record(local(2026, 6, 2, 23, 50), Kind::alert, {I::forwardHead});
  record(local(2026, 6, 3, 0, 10), Kind::alert, {I::slouch, I::lean});
  record(local(2026, 6, 3, 0, 11), Kind::corrected);
  record(local(2026, 6, 3, 0, 20), Kind::good);
  record(local(2026, 6, 3, 0, 25), Kind::away);
  sat(local(2026, 6, 2, 23, 1), local(2026, 6, 2, 23, 59));
  sat(local(2026, 6, 3, 0, 0), local(2026, 6, 3, 0, 30));

  const auto report = ReportPage::make(at(local(2026, 6, 3, 0, 30)));
  EXPECT_EQ(report.today.checks, 3);
  EXPECT_EQ(report.today.good, 2);
  EXPECT_EQ(report.today.alerts, 1);
  EXPECT_DOUBLE_EQ(report.today.seatedMinutes, 30);
  EXPECT_EQ(report.corrections, 1);
  EXPECT_EQ(report.hours[0].good, 2);
  EXPECT_EQ(report.hours[0].bad, 1);
  EXPECT_EQ(report.hours[23].good + report.hours[23].bad, 0);
  EXPECT_EQ(report.todaysIssues,
            (std::vector<PostureLog::IssueCount>{{I::slouch, 1}, {I::lean, 1}}));

  const ReportDay& yesterday = report.week[5];
  EXPECT_EQ(yesterday.date, local(2026, 6, 2));
  EXPECT_EQ(yesterday.checks, 1);
  EXPECT_EQ(yesterday.alerts, 1);
  EXPECT_DOUBLE_EQ(yesterday.seatedMinutes, 58);
  EXPECT_EQ(report.weekIssues.size(), 3u);
  EXPECT_EQ(report.checkedHours(), (std::pair{0, 0}));
  EXPECT_EQ(shortDayLabel(calendar, yesterday.date), "6/2 화");
}

TEST_F(Records, AWeekWithAGapKeepsItsEmptyDays) {
  // Ten checks on four of the seven days, two alerts on the day before last.
  for (int back : {6, 5, 2, 0}) {
    const Date day = calendar.addingDays(local(2026, 6, 3), -back).value();
    for (int i = 0; i < 10; ++i) {
      const bool bad = back == 2 && i < 2;
      record(day + 9 * 3600 + i * 600, bad ? Kind::alert : Kind::good,
             bad ? std::vector<IssueKind>{I::forwardHead} : std::vector<IssueKind>{});
    }
    sat(day + 9 * 3600, day + 11 * 3600);
  }
  const auto report = ReportPage::make(at(local(2026, 6, 3, 12)));
  ASSERT_EQ(report.week.size(), 7u);
  for (int empty : {2, 3, 5}) {
    EXPECT_TRUE(report.week[empty].empty()) << empty;
    EXPECT_EQ(report.week[empty].goodShare(), std::nullopt);
  }
  EXPECT_EQ(report.week[4].goodShare(), 0.8);
  EXPECT_EQ(report.weekChecks(), 40);
  EXPECT_DOUBLE_EQ(*report.weekGoodShare(), 38.0 / 40);
  EXPECT_DOUBLE_EQ(report.weekSeatedMinutes(), 4 * 120);
  EXPECT_EQ(report.weekSeatedDays(), 4);
  EXPECT_EQ(report.insights, (std::vector<std::string>{
                                 "오늘은 알림 없이 바르게 앉았어요",
                                 "오늘 바른 자세는 지난 며칠보다 7%p 높아요",
                                 "최근 7일 동안 거북목이 가장 자주 보였어요 (2번)",
                                 "오늘 가장 길게 이어 앉은 시간은 2시간 0분이에요",
                             }));
}

TEST_F(Records, OnlyAnHourThatStandsAloneIsNamed) {
  const Date day = local(2026, 6, 3);
  const auto hourOf = [&](int hour, int alerts) {
    for (int i = 0; i < 6; ++i) {
      record(day + hour * 3600 + i * 60, i < alerts ? Kind::alert : Kind::good,
             i < alerts ? std::vector<IssueKind>{I::slouch} : std::vector<IssueKind>{});
    }
  };
  hourOf(10, 0);
  hourOf(11, 1);
  hourOf(15, 3);
  // An alert at 17 o'clock is too few checks for a share of its own.
  record(day + 17 * 3600, Kind::alert, {I::tooClose});
  auto report = ReportPage::make(at(day + 18 * 3600));
  EXPECT_EQ(report.insights[0], "오늘은 오전 10시대에 가장 바르게 앉았어요");
  EXPECT_EQ(report.insights[1], "오후 3시대에 자세가 가장 자주 흐트러졌어요");
  EXPECT_EQ(report.checkedHours(), (std::pair{10, 17}));

  // Two hours as good as each other, two as bad: neither is named.
  hourOf(9, 0);
  hourOf(16, 3);
  report = ReportPage::make(at(day + 18 * 3600));
  EXPECT_EQ(report.insights[0], "최근 7일 동안 구부정이 가장 자주 보였어요 (7번)");
  EXPECT_EQ(spokenHour(0), "오전 12시");
  EXPECT_EQ(spokenHour(12), "오후 12시");
}

TEST_F(Records, AMonthOfRecordsReportsOnlyTheLastWeek) {
  // A check every ten minutes from 9 to 18 o'clock for thirty days, an alert
  // at the top of each hour: written at once, as a month of use leaves it.
  nlohmann::json entries = nlohmann::json::array();
  const Date today = local(2026, 6, 3);
  for (int back = 29; back >= 0; --back) {
    const Date day = calendar.addingDays(today, -back).value();
    for (int slot = 0; slot < 54; ++slot) {
      const Date t = day + 9 * 3600 + slot * 600;
      const bool alert = slot % 6 == 0;
      entries.push_back({{"t", t.sinceReference},
                         {"k", alert ? "alert" : "good"},
                         {"i", alert ? nlohmann::json{"forwardHead"} : nlohmann::json::array()}});
    }
    sat(day + 9 * 3600, day + 18 * 3600);
  }
  defaults.setJsonData(StoreKey::postureLog, entries);
  log = std::make_unique<PostureLog>(defaults, clock, calendar);

  const auto report = ReportPage::make(at(today + 20 * 3600));
  EXPECT_EQ(report.weekChecks(), 7 * 54);
  EXPECT_EQ(report.week.front().date, local(2026, 5, 28));
  EXPECT_DOUBLE_EQ(*report.weekGoodShare(), 45.0 / 54);
  EXPECT_DOUBLE_EQ(report.weekSeatedMinutes(), 7 * 540);
  ASSERT_EQ(report.weekIssues.size(), 1u);
  EXPECT_EQ(report.weekIssues[0].count, 7 * 9);
  EXPECT_EQ(report.hours[9].good + report.hours[9].bad, 6);
}

TEST_F(Records, ChartsSpanTheWorkingDayAndMarkWhatHasNoRecord) {
  const Date day = local(2026, 6, 3);
  for (int i = 0; i < 4; ++i)
    record(day + 7 * 3600 + i * 60, i == 0 ? Kind::alert : Kind::good, {});
  const auto report = ReportPage::make(at(day + 19 * 3600));

  // From the first check at 7 to the working day's end at 18 o'clock.
  const auto hours = hourBars(report);
  ASSERT_EQ(hours.size(), 12u);
  EXPECT_EQ(hours[0],
            (ChartBar{0.75, Theme::orange, "75%", "7", "오전 7시 · 바른 자세 75% · 확인 4번"}));
  EXPECT_EQ(hours[1], (ChartBar{std::nullopt, Theme::gray, "", "8", "오전 8시 · 확인 없음"}));

  const auto days = weekShareBars(report, calendar);
  ASSERT_EQ(days.size(), 7u);
  EXPECT_EQ(days[0].spoken, "5/28 목 · 기록 없음");
  EXPECT_FALSE(days[0].stressed);
  EXPECT_TRUE(days[6].stressed);
  EXPECT_EQ(days[6].value, "75%");
  EXPECT_EQ(weekSeatedBars(report, calendar)[6].fill, std::nullopt);

  const auto issues = issueBars({{I::slouch, 4}, {I::lean, 1}});
  EXPECT_EQ(issues[1].fill, 0.25);
  EXPECT_EQ(issues[1].spoken, "몸 쏠림 · 1번");
}

TEST_F(Records, TheHomePageTilesTellToday) {
  const Date day = local(2026, 6, 3);
  record(day + 9 * 3600, Kind::good);
  record(day + 9 * 3600 + 600, Kind::alert, {I::forwardHead, I::slouch});
  record(day + 9 * 3600 + 610, Kind::corrected);
  record(day + 9 * 3600 + 1200, Kind::alert, {I::forwardHead});
  clock.set(day + 9 * 3600 + 1300);
  log->recordStretch({"neck-roll"}, 180, 0.9);
  sat(day + 8 * 3600 + 55 * 60, day + 10 * 3600 + 40 * 60);
  sat(day + 11 * 3600, day + 11 * 3600 + 20 * 60);
  days.back().breathes = 1;

  const Date now = day + 11 * 3600 + 20 * 60;
  const auto home = HomePage::make(at(now), {"자세 확인 켜짐", now + 75, 20});
  EXPECT_EQ(home.nextCheck, "다음 확인 오전 11:21");
  EXPECT_EQ(home.streak, "지금 20분째 앉아 있어요");
  EXPECT_EQ(home.tile(HomeCard::posture).value, "50%");
  EXPECT_EQ(home.tile(HomeCard::posture).detail, "확인 4번");
  EXPECT_EQ(home.tile(HomeCard::alerts).value, "2번");
  EXPECT_EQ(home.tile(HomeCard::alerts).detail, "바로잡음 1번");
  EXPECT_EQ(home.tile(HomeCard::stretch).value, "1번");
  EXPECT_EQ(home.tile(HomeCard::stretch).detail, "호흡 1번 · 눈 쉬기 0번");
  EXPECT_EQ(home.tile(HomeCard::worklife).value, "2시간 5분");
  EXPECT_EQ(home.tile(HomeCard::worklife).detail, "쉬는 시간 1번 · 가장 길게 1시간 45분");
  EXPECT_EQ(home.tile(HomeCard::issues).value, "거북목");
  EXPECT_EQ(home.tile(HomeCard::issues).detail, "거북목 2번, 구부정 1번");
  EXPECT_EQ(home.spans, (std::vector<std::string>{"오전 8:55 – 오전 10:40 · 1시간 45분",
                                                  "오전 11:00 – 오전 11:20 · 20분"}));
}

}  // namespace
}  // namespace sodam
