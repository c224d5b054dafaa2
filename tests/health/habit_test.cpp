#include "health/habit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace sodam {
namespace {

using Level = Habit::Level;

Snapshot tilted(float tilt) {
  Snapshot s;
  s.tilt = tilt;
  return s;
}

std::vector<Snapshot> repeated(const Snapshot& s, int n) {
  return std::vector<Snapshot>(n, s);
}

std::vector<std::string> ids(const HabitReport& report) {
  std::vector<std::string> out;
  for (const auto& h : report.habits)
    out.push_back(h.id);
  return out;
}

TEST(HabitReport, TenChecksAreNeededBeforeAnyHabit) {
  const HabitReport nine = HabitReport::of(repeated(tilted(20), 9));
  EXPECT_EQ(nine.samples, 9);
  EXPECT_TRUE(nine.habits.empty());
  EXPECT_EQ(nine.front, Pose::front());
  EXPECT_EQ(nine.side, Pose::side());
  EXPECT_EQ(nine.summaryForModel(), "최근 7일 확인 9회, 뚜렷한 자세 습관은 아직 없음.");

  const HabitReport ten = HabitReport::of(repeated(tilted(20), 10));
  ASSERT_EQ(ids(ten), std::vector<std::string>{"tilt"});
  EXPECT_EQ(ten.front.neckSide, 20);
}

TEST(HabitReport, AnOptionalFieldNeedsTenValuesOfItsOwn) {
  Snapshot s = tilted(3);
  s.close = 7;
  s.forward = 5;
  std::vector<Snapshot> samples = repeated(s, 10);
  samples[0].forward.reset();
  const HabitReport report = HabitReport::of(samples);
  EXPECT_EQ(ids(report), (std::vector<std::string>{"close", "tilt"}));
  EXPECT_EQ(report.side, Pose::side());
}

TEST(HabitReport, ATiltAtItsGateIsFoundMild) {
  // Mean exactly 2.0, six of ten at 1.5 or more the same way.
  std::vector<Snapshot> samples = repeated(tilted(2.5f), 6);
  for (int i = 0; i < 4; ++i)
    samples.push_back(tilted(1.25f));
  const HabitReport report = HabitReport::of(samples);
  ASSERT_EQ(report.habits.size(), 1u);
  const Habit& tilt = report.habits[0];
  EXPECT_EQ(tilt.level, Level::mild);
  EXPECT_EQ(tilt.title, "고개가 오른쪽으로 기우는 습관");
  EXPECT_EQ(tilt.measure, "평균 2.0도 · 확인의 60%가 같은 쪽");
  EXPECT_EQ(tilt.tight, (std::vector<std::string>{"오른쪽 목 옆(사각근·목빗근)",
                                                  "오른쪽 어깨 위(위 등세모근)"}));
  EXPECT_EQ(tilt.strained, std::vector<std::string>{"왼쪽 목 옆"});
  EXPECT_EQ(tilt.focus, std::vector<Focus>{Focus::neckSide(1)});
  EXPECT_EQ(tilt.stage, Stage::front);
  // A seventh value below 1.5 takes the share under the gate.
  samples[0] = tilted(1.4f);
  samples.push_back(tilted(3.6f));
  samples.push_back(tilted(1.0f));
  EXPECT_TRUE(HabitReport::of(samples).habits.empty());
}

TEST(HabitReport, AForwardHeadIsClearAtThreePointTwoAndATurtleFromFour) {
  Snapshot s;
  s.forward = 3.2f;
  const HabitReport report = HabitReport::of(repeated(s, 10));
  ASSERT_EQ(ids(report), std::vector<std::string>{"forward"});
  EXPECT_EQ(report.habits[0].level, Level::clear);
  EXPECT_EQ(report.habits[0].title, "머리가 앞으로 나오는 습관");
  EXPECT_EQ(report.habits[0].measure, "평균 3.2센티 · 확인의 100%");
  EXPECT_NEAR(report.side.headForward, 0.64, 1e-6);
  s.forward = 4;
  EXPECT_EQ(HabitReport::of(repeated(s, 10)).habits[0].title, "거북목 습관");
}

TEST(HabitReport, TheFigureTellsAHugeTiltOnlyAsFarAsItBends) {
  const HabitReport report = HabitReport::of(repeated(tilted(-40), 10));
  EXPECT_EQ(report.habits[0].measure, "평균 40.0도 · 확인의 100%가 같은 쪽");
  EXPECT_EQ(report.habits[0].title, "고개가 왼쪽으로 기우는 습관");
  EXPECT_EQ(report.front.neckSide, -30);
  EXPECT_EQ(report.habits[0].level, Level::clear);
}

// Every habit at once: the levels first, the tests' order within a level.
TEST(HabitReport, AllSevenHabitsSortByLevelAndBendBothFigures) {
  Snapshot s = tilted(-3);  // mild
  s.forward = 2;            // watch
  s.drop = 4;               // clear
  s.nod = 10;               // watch
  s.shoulder = 3;           // watch
  s.lean = -2.5f;           // watch
  s.close = 7;              // watch
  const HabitReport report = HabitReport::of(repeated(s, 12));
  EXPECT_EQ(ids(report), (std::vector<std::string>{"slouch", "forward", "nod", "shoulder", "lean",
                                                   "close", "tilt"}));
  const Habit& shoulder = *report.find("shoulder");
  EXPECT_EQ(shoulder.title, "왼쪽 어깨가 올라가는 습관");
  EXPECT_TRUE(shoulder.strained.empty());
  EXPECT_EQ(shoulder.focus, std::vector<Focus>{Focus::neckSide(-1)});
  EXPECT_EQ(report.find("lean")->title, "몸이 오른쪽으로 기우는 습관");
  EXPECT_EQ(report.find("lean")->focus, std::vector<Focus>{Focus::side(1)});
  EXPECT_EQ(report.find("nod")->measure, "평균 10도 숙여요 · 확인의 100%");
  EXPECT_EQ(report.find("close")->measure, "평균 7센티 가까워져요");
  EXPECT_EQ(report.find("slouch")->measure, "머리가 평균 4.0센티 내려와요 · 확인의 100%");

  EXPECT_EQ(report.front.neckSide, -3);
  EXPECT_EQ(report.front.spineSide, 5);
  const double shrug = std::tan(3 * std::numbers::pi / 180) * 0.236 / 0.04 * 0.5;
  EXPECT_NEAR(report.front.shrugL, shrug, 1e-9);
  EXPECT_NEAR(report.front.shrugR, -shrug, 1e-9);
  EXPECT_EQ(report.side.headForward, 0.4);
  EXPECT_EQ(report.side.spineFlex, 10);
  EXPECT_EQ(report.side.neckFlex, 10);
  // "close" bends nothing; nothing else moves.
  EXPECT_EQ(report.front.armL, Pose::front().armL);

  EXPECT_EQ(
      report.summaryForModel(),
      "최근 7일 확인 12회에서 찾은 습관: 등이 굽는 습관(머리가 평균 4.0센티 내려와요 · 확인의 "
      "100%, 뚜렷함); 머리가 앞으로 나오는 습관(평균 2.0센티 · 확인의 100%, 주의); 고개를 숙여 "
      "보는 습관(평균 10도 숙여요 · 확인의 100%, 주의); 왼쪽 어깨가 올라가는 습관(평균 3.0도 · "
      "확인의 100%가 같은 쪽, 주의); 몸이 오른쪽으로 기우는 습관(평균 2.5센티 · 확인의 100%가 "
      "같은 쪽, 주의); 화면에 다가가는 습관(평균 7센티 가까워져요, 주의); 고개가 왼쪽으로 기우는 "
      "습관(평균 3.0도 · 확인의 100%가 같은 쪽, 가벼움)");
  // The page's own routine: the strongest habit's stretches first, each once.
  EXPECT_EQ(report.stretchIds(5),
            (std::vector<std::string>{"catCow", "squeeze", "chest", "reach", "chinTuck"}));
}

TEST(HabitReport, OnlyJudgedChecksWithNumbersWithinTheDaysCount) {
  const Date now{800000000};
  std::deque<PostureEntry> entries;
  auto add = [&](double age, PostureEntry::Kind kind, bool numbers) {
    entries.push_back({now - age, kind, {}, numbers ? std::optional(tilted(9)) : std::nullopt});
  };
  for (int i = 0; i < 9; ++i)
    add(3600 * i, PostureEntry::Kind::good, true);
  add(7 * 86400, PostureEntry::Kind::good, true);  // exactly at the cutoff: out
  add(60, PostureEntry::Kind::absent, true);
  add(60, PostureEntry::Kind::away, true);
  add(60, PostureEntry::Kind::alert, false);
  EXPECT_EQ(HabitReport::make(entries, now).samples, 9);
  add(7 * 86400 - 1, PostureEntry::Kind::corrected, true);
  const HabitReport report = HabitReport::make(entries, now);
  EXPECT_EQ(report.samples, 10);
  EXPECT_EQ(report.habits.size(), 1u);
  EXPECT_EQ(HabitReport::make(entries, now, 1).samples, 9);
}

}  // namespace
}  // namespace sodam
