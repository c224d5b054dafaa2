#include "sim/study_room.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "sim/simulation.h"

namespace sodam {
namespace {

struct GroupDay {
  std::vector<std::string> lines;
  SimulationSummary summary;

  // The first line that holds the text, or empty.
  std::string first(const std::string& text) const {
    const auto it = std::find_if(lines.begin(), lines.end(), [&](const std::string& l) {
      return l.find(text) != std::string::npos;
    });
    return it == lines.end() ? "" : *it;
  }
};

GroupDay simulateWithGroup() {
  GroupDay day;
  MemoryDefaults defaults;
  const Calendar calendar(TimeZone::fixed(9 * 3600));
  Simulation::Options options;
  options.group = true;
  Simulation simulation(
      *Scenario::builtIn("workday"), defaults, calendar, Date::fromUnix(1'795'000'000),
      [&](const std::string& line) { day.lines.push_back(line); }, options);
  day.summary = simulation.run();
  return day;
}

TEST(StudyRoom, TheFriendsStatesReachTheUserWithinARefreshAndTheSummaryRanksThem) {
  const GroupDay day = simulateWithGroup();
  // Each change shows within one refresh of the user's program (60 seconds).
  const std::string phone = day.first("모임: 민 · 휴대폰 보는 중");
  ASSERT_FALSE(phone.empty());
  EXPECT_GE(phone.substr(1, 8), "10:30:00");
  EXPECT_LE(phone.substr(1, 8), "10:31:10");
  EXPECT_FALSE(day.first("모임: 준 · 거북목 됐어요").empty());
  // Hiding reads as off at once; a program that ends, once 360 seconds pass.
  EXPECT_EQ(day.first("모임: 준 · 꺼져 있어요").substr(1, 5), "08:56") << "before the first beat";
  // A program that ends goes off once its last status is 360 seconds old, and
  // an unchanged status went out at most 180 seconds before the end.
  std::string minLast;
  for (const auto& line : day.lines) {
    if (line.find("모임: 민 · ") != std::string::npos) minLast = line;
  }
  EXPECT_NE(minLast.find("꺼져 있어요"), std::string::npos);
  EXPECT_GE(minLast.substr(1, 8), "18:03:00");
  EXPECT_LE(minLast.substr(1, 8), "18:07:00");
  // Nothing is told behind the locked screen of lunch.
  for (const auto& line : day.lines) {
    if (line.find("모임: ") == std::string::npos) continue;
    const std::string time = line.substr(1, 8);
    EXPECT_FALSE(time > "12:10:00" && time < "13:05:00") << line;
  }
  ASSERT_EQ(day.summary.group.size(), 2u);
  EXPECT_NE(day.summary.group[0].find("2. 민 7시간"), std::string::npos) << day.summary.group[0];
  EXPECT_NE(day.summary.group[1].find("민 90%"), std::string::npos);
  EXPECT_NE(day.summary.group[1].find("준 62%"), std::string::npos);
}

}  // namespace
}  // namespace sodam
