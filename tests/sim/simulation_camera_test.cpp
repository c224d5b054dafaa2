// Other programs of the simulated laptop take the camera; the camera watch
// tells the sitter and keeps the record.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/defaults.h"
#include "sim/simulation.h"

namespace sodam {
namespace {

struct Run {
  std::vector<std::string> lines;
  SimulationSummary summary;

  std::vector<std::string> at(const std::string& time) const {
    std::vector<std::string> found;
    for (const auto& line : lines)
      if (line.rfind("[" + time, 0) == 0) found.push_back(line);
    return found;
  }
};

Run simulate(const std::string& text) {
  MemoryDefaults defaults;
  Run run;
  const Calendar calendar(TimeZone::fixed(9 * 3600));
  auto scenario = Scenario::parse(text);
  EXPECT_TRUE(scenario.scenario) << scenario.error;
  Simulation simulation(*scenario.scenario, defaults, calendar, Date::fromUnix(1'795'000'000),
                        [&](const std::string& line) { run.lines.push_back(line); }, {});
  run.summary = simulation.run();
  return run;
}

bool has(const std::vector<std::string>& lines, const std::string& text) {
  return std::any_of(lines.begin(), lines.end(),
                     [&](const std::string& l) { return l.find(text) != std::string::npos; });
}

TEST(SimulationCamera, AnotherProgramIsAnnouncedAndRecorded) {
  const auto run = simulate(
      "start 09:00\nend 10:00\n09:00 present=yes\n09:20 camera=Meetly\n09:35 camera=off\n");
  EXPECT_TRUE(has(run.at("09:20:00"), "다른 앱이 카메라를 켰어요 — Meetly"));
  EXPECT_TRUE(has(run.summary.cameraUses, "오전 9:20 Meetly · 카메라 켜짐 · 15분 0초 동안"));
  EXPECT_TRUE(has(run.summary.cameraUses, "오전 9:20 Meetly · 카메라 사용 요청 · 허용됨"));
  EXPECT_TRUE(has(run.summary.lines(), "다른 앱의 카메라 사용:"));
}

TEST(SimulationCamera, BesideTheProgramsOwnLiveCameraTheStreamFindsIt) {
  const auto run = simulate(
      "mode live\nstart 09:00\nend 10:00\n09:00 present=yes\n09:30 camera=Meetly\n"
      "09:40 camera=off\n");
  EXPECT_TRUE(has(run.at("09:30:0"), "다른 앱이 카메라를 켰어요 — Meetly"));
  EXPECT_TRUE(has(run.summary.cameraUses, "Meetly · 카메라 켜짐 · 10분 0초 동안"));
}

TEST(SimulationCamera, AUseWhileLockedWarnsAndIsToldAtUnlock) {
  const auto run = simulate(
      "start 09:00\nend 10:00\n09:00 present=yes\n09:10 lock present=no\n"
      "09:12 camera=/Users/sitter/Downloads/spycam\n09:14 camera=off\n09:30 unlock present=yes\n");
  EXPECT_FALSE(has(run.at("09:12:00"), "알약"));  // no pill on a locked screen
  EXPECT_TRUE(
      has(run.at("09:30:00"), "자리를 비운 사이 카메라가 켜졌어요 — 기록 1건 · 눌러서 확인"));
  EXPECT_TRUE(has(run.summary.cameraUses,
                  "spycam · 카메라 켜짐 · 2분 0초 동안 · 주의: 화면이 잠긴 사이 켜졌어요"));
  EXPECT_TRUE(has(run.summary.cameraUses, "주의: 설치 폴더 밖 프로그램"));
}

TEST(SimulationCamera, ADayWithoutOtherProgramsListsNone) {
  const auto run = simulate("start 09:00\nend 09:30\n09:00 present=yes\n");
  EXPECT_TRUE(run.summary.cameraUses.empty());
  EXPECT_FALSE(has(run.summary.lines(), "다른 앱의 카메라 사용"));
}

}  // namespace
}  // namespace sodam
