#include "sim/simulation.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <nlohmann/json.hpp>

#include "platform/defaults.h"
#include "posture/posture_log.h"
#include "support/text.h"

namespace sodam {
namespace {

struct Day {
  std::vector<std::string> lines;
  SimulationSummary summary;

  // The lines from `from` (inclusive) to `to` (exclusive), by their stamp.
  std::vector<std::string> between(const std::string& from, const std::string& to) const {
    std::vector<std::string> result;
    for (const auto& line : lines) {
      const std::string time = line.substr(1, 8);
      if (time >= from && time < to) result.push_back(line);
    }
    return result;
  }
  bool has(const std::string& text) const {
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& l) { return l.find(text) != std::string::npos; });
  }
};

bool any(const std::vector<std::string>& lines, const std::string& text) {
  return std::any_of(lines.begin(), lines.end(),
                     [&](const std::string& l) { return l.find(text) != std::string::npos; });
}

Day simulate(const std::string& name, Defaults& defaults) {
  Day day;
  const Calendar calendar(TimeZone::fixed(9 * 3600));
  Simulation simulation(
      *Scenario::builtIn(name), defaults, calendar,
      Simulation::dayToSimulate(defaults, calendar, Date::fromUnix(1'795'000'000)),
      [&](const std::string& line) { day.lines.push_back(line); }, {});
  day.summary = simulation.run();
  return day;
}

TEST(Simulation, AWorkdayAlertsOnTheSlideFollowsTheLidAndRestsWhileLocked) {
  MemoryDefaults defaults;
  const Day day = simulate("workday", defaults);

  // The slow slide into forward head crosses the line at 10:25.
  const auto slide = day.between("10:25:00", "10:30:00");
  EXPECT_TRUE(any(slide,
                  "알약 [fix(forwardHead)] 턱을 당겨 머리를 뒤로 — 머리가 어깨보다 5센티 "
                  "앞으로 나왔어요"));
  EXPECT_TRUE(any(slide, "빨간 테두리 켜짐"));
  EXPECT_TRUE(any(slide, "알림 뒤 자세를 바로잡았어요"));
  EXPECT_TRUE(any(slide, "알약 [symbol(checkmark)] 좋아요, 바른 자세예요"));
  EXPECT_TRUE(any(day.between("14:30:00", "14:40:00"), "알약 [fix(slouch)]"));

  // The screen tipped back at 11:40 is followed, not alerted.
  EXPECT_FALSE(any(day.between("11:40:00", "12:10:00"), "fix("));
  // Lunch behind a locked screen: no check at all.
  EXPECT_FALSE(any(day.between("12:10:01", "13:05:00"), "마지막 확인"));
  // The coffee break is seen as an empty chair.
  EXPECT_TRUE(any(day.between("11:00:00", "11:15:00"), "자리에 없어 건너뛰었어요"));

  EXPECT_TRUE(any(day.between("09:45:00", "09:46:00"), "50분째 앉아 있어요"));
  EXPECT_TRUE(any(day.between("18:30:00", "18:31:00"), "앉아 있었어요 — 바른 자세 "));

  EXPECT_EQ(day.summary.alertsByIssue.at("거북목"), 1);
  EXPECT_EQ(day.summary.alertsByIssue.at("구부정"), 1);
  EXPECT_EQ(day.summary.corrections, 2);
  EXPECT_GT(day.summary.checks, 200);
  EXPECT_LT(day.summary.cameraShare(), 0.04);
}

TEST(Simulation, ASecondDayRemembersThePostureAndSkipsTheGuide) {
  MemoryDefaults defaults;
  const Day first = simulate("first-run", defaults);
  EXPECT_TRUE(first.has("창: 바른 자세 배우기 안내"));
  EXPECT_TRUE(first.has("알약 [fix(slouch)]"));
  const auto entries =
      PostureLog(defaults, ManualClock(Date::fromUnix(1'795'000'000)), Calendar()).entries().size();

  const Day second = simulate("workday", defaults);
  EXPECT_FALSE(second.has("바른 자세 배우기 안내"));
  EXPECT_GT(
      PostureLog(defaults, ManualClock(Date::fromUnix(1'795'000'000)), Calendar()).entries().size(),
      entries);
}

TEST(Simulation, RunsOnTheSameRecordsFollowEachOtherLikeDays) {
  const Calendar calendar(TimeZone::fixed(9 * 3600));
  const Date today = Date::fromUnix(1'795'000'000);
  MemoryDefaults defaults;
  EXPECT_EQ(Simulation::dayToSimulate(defaults, calendar, today), calendar.startOfDay(today));
  simulate("first-run", defaults);
  const Date next = Simulation::dayToSimulate(defaults, calendar, today);
  EXPECT_EQ(next, *calendar.addingDays(calendar.startOfDay(today), 1));
  // No further than tomorrow, however many runs came before.
  Simulation(*Scenario::builtIn("workday"), defaults, calendar, next, [](const std::string&) {}, {})
      .run();
  EXPECT_EQ(Simulation::dayToSimulate(defaults, calendar, today), next);
  // A later real day starts on itself.
  const Date later = today + 5 * 86400;
  EXPECT_EQ(Simulation::dayToSimulate(defaults, calendar, later), calendar.startOfDay(later));
}

TEST(Simulation, AWeekBanksEachDayAndCelebratesEachLevelReached) {
  MemoryDefaults defaults;
  const Day week = simulate("week", defaults);
  const SimulationSummary& s = week.summary;
  ASSERT_EQ(s.days.size(), 7u);
  int total = 0;
  for (const auto& day : s.days)
    total += day.points;
  EXPECT_EQ(s.companion.total, total);
  EXPECT_EQ(s.companion.today, s.days.back().points);
  EXPECT_EQ(s.days[3].checks, 0);  // the day off
  EXPECT_EQ(s.days[3].points, 0);
  EXPECT_LT(s.days[2].points, s.days[0].points);  // the short day
  EXPECT_GE(s.companion.level, 3);

  // Each level is told, and the next good peek celebrates it.
  int levelsTold = 0, celebrations = 0;
  for (const auto& line : week.lines) {
    if (line.find("(도란이가 레벨 ") != std::string::npos) ++levelsTold;
    if (line.find("알약 [buddy(love)]") != std::string::npos) ++celebrations;
  }
  EXPECT_EQ(levelsTold, s.companion.level - 1);
  EXPECT_EQ(celebrations, levelsTold);
  EXPECT_TRUE(week.has("── 11월 19일 (목) ──"));
  EXPECT_FALSE(s.insights.empty());
  const auto lines = s.lines();
  EXPECT_TRUE(any(lines, format("도란이 오늘 %d점 · 모두 %d점 · 레벨 %d '", s.companion.today,
                                s.companion.total, s.companion.level)));
  EXPECT_TRUE(any(lines, "11월 21일 (토) 확인 0번 · 앉은 시간 0분 · 도란이 0점"));
}

TEST(Simulation, ARecordFromAWrongClockDecidesNoDayAndCostsNoRecord) {
  const Calendar calendar(TimeZone::fixed(9 * 3600));
  const Date today = Date::fromUnix(1'795'000'000);
  MemoryDefaults defaults;
  {
    // A record an hour for the week up to yesterday; then one from 2128.
    ManualClock clock(today - 8 * 86400);
    PostureLog log(defaults, clock, calendar);
    for (int hour = 0; hour < 7 * 24; ++hour) {
      clock.advance(3600);
      log.record(PostureEntry::Kind::good);
    }
  }
  auto stored = *defaults.jsonData("postureLog");
  stored.push_back({{"t", Date::fromUnix(5'000'000'000).sinceReference}, {"k", "good"}, {"i", {}}});
  defaults.setJsonData("postureLog", stored);
  EXPECT_EQ(Simulation::dayToSimulate(defaults, calendar, today), calendar.startOfDay(today));
  simulate("workday", defaults);
  const PostureLog log(defaults, ManualClock(today), calendar);
  const auto before = std::count_if(log.entries().begin(), log.entries().end(),
                                    [&](const PostureEntry& e) { return e.t <= today - 86400; });
  EXPECT_EQ(before, 7 * 24) << "every real record is kept";
}

TEST(Simulation, LiveModeWatchesAllTheTime) {
  MemoryDefaults defaults;
  simulate("first-run", defaults);
  const Day live = simulate("live", defaults);
  EXPECT_TRUE(any(live.between("10:15:00", "10:16:00"), "알약 [fix(forwardHead)]"));
  EXPECT_GT(live.summary.cameraShare(), 0.9);
}

TEST(Simulation, TheWorkdayTakesUpOneStretchNudgeAndTellsTheRoutine) {
  MemoryDefaults defaults;
  const Day day = simulate("workday", defaults);
  const auto nudge = day.between("13:55:00", "14:00:00");
  EXPECT_TRUE(any(nudge, "(앉은 사람이 알약을 눌러요)"));
  EXPECT_TRUE(any(nudge, "창: 스트레칭 페이지"));
  EXPECT_TRUE(any(nudge, "스트레칭 1/4 턱 당기기 · 시작, 목표 4회"));
  EXPECT_TRUE(any(nudge, "  \"턱을 수평으로 뒤로 밀어 두 겹 턱을 만들어요\""));
  EXPECT_TRUE(any(nudge, "  1/4회"));
  EXPECT_TRUE(any(nudge, "스트레칭 끝 · "));
  // Only the one nudge is taken, and the checks go on after the routine.
  EXPECT_FALSE(any(day.between("14:00:00", "18:45:00"), "(앉은 사람이 알약을 눌러요)"));
  EXPECT_TRUE(any(day.between("14:00:00", "14:05:00"), "마지막 확인"));
  const PostureLog log(defaults, ManualClock(Date::fromUnix(1'795'000'000)), Calendar());
  ASSERT_EQ(log.stretches().size(), 1u);
  EXPECT_EQ(log.stretches().back().ids.size(), 4u);
  EXPECT_GE(*log.stretches().back().accuracy, 0.6);
}

int count(const std::vector<std::string>& lines, const std::string& text) {
  return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const std::string& l) {
    return l.find(text) != std::string::npos;
  }));
}

TEST(Simulation, AStudyAfternoonIsWatchedAndEachHabitIsCaughtOnce) {
  MemoryDefaults defaults;
  const Day day = simulate("study", defaults);
  EXPECT_TRUE(any(day.between("13:03:00", "13:03:01"), "집중코치 안내: 얼굴·어깨·손이 다 보여요"));
  EXPECT_TRUE(any(day.between("13:03:10", "13:03:11"), "집중코치 지켜보기 시작"));

  // Two pickups: the first is reported, the glance 65 seconds later only shows.
  const auto phone = day.between("13:40:00", "13:42:00");
  EXPECT_EQ(count(phone, "집중코치: 휴대폰 보는 중"), 2);
  EXPECT_EQ(count(phone, "휴대폰은 잠깐 내려놓을까요? — 나의 집중코치 · 휴대폰 보기"), 1);
  EXPECT_TRUE(
      any(day.between("13:53:10", "13:53:11"), "50분 집중했어요! — 잠깐 일어나 몸을 풀고 와요"));
  const auto doze = day.between("14:05:00", "14:07:00");
  EXPECT_EQ(count(doze, "졸리면 일어나서 기지개 한 번 켜요"), 1);
  EXPECT_TRUE(any(doze, "집중코치: 꾸벅꾸벅 조는 중 · 고개를 푹 숙이고 있어요"));
  EXPECT_EQ(count(day.between("14:30:00", "14:32:00"), "턱을 괴고 있어요. 손을 내려놓아요"), 1);
  EXPECT_EQ(count(day.between("14:50:00", "14:52:00"), "손이 입에 가 있어요"), 1);

  // Four minutes away end the first session three minutes after leaving;
  // the return starts the second.
  EXPECT_TRUE(any(day.between("15:10:15", "15:10:30"), "집중코치: 자리 비움 · 자리를 비웠어요"));
  EXPECT_TRUE(
      any(day.between("15:13:20", "15:13:21"), "집중 기록: 오후 1:03 – 오후 3:13 · 나의 집중코치"));
  EXPECT_TRUE(any(day.between("15:14:00", "15:14:20"), "집중 시작: 나의 집중코치"));
  EXPECT_EQ(count(day.lines, "50분 집중했어요!"), 2) << "once in each session";

  ASSERT_TRUE(day.summary.focus);
  const auto& focus = *day.summary.focus;
  EXPECT_EQ(focus.habits, (std::vector<std::pair<std::string, int>>{{"휴대폰 보기", 1},
                                                                    {"꾸벅꾸벅 졸기", 1},
                                                                    {"턱 괴기", 1},
                                                                    {"손톱 물기·입에 손", 1},
                                                                    {"자리 자주 비우기", 2},
                                                                    {"고개 숙이기·거북목", 1}}));
  EXPECT_NEAR(focus.minutes, 3 + 127 + 86, 2);
  // Two samples a second, the mask on one in three, the classifier on every other.
  EXPECT_NEAR(focus.framesPerSecond, 2, 0.15);
  EXPECT_NEAR(focus.maskShare, 1.0 / 3, 0.03);
  EXPECT_NEAR(focus.sceneShare, 0.5, 0.05);
  EXPECT_TRUE(any(day.summary.lines(), "집중코치 카메라: 초당 1.9장 분석"));
}

}  // namespace
}  // namespace sodam
