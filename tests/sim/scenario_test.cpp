#include "sim/scenario.h"

#include <gtest/gtest.h>

#include "focus/use_mode.h"
#include "focus/watch_habit.h"
#include "sim/sitter_study.h"

namespace sodam {
namespace {

using Field = ScenarioChange::Field;

TEST(Scenario, ReadsDirectivesEventsAndComments) {
  const auto parsed = Scenario::parse(R"(# comment
mode live
fresh
start 08:30
end 17:00:30
08:30 present=yes forward=2.5 power=battery   # trailing comment

12:00 lock
12:00:05 unlock idle=0
)");
  ASSERT_TRUE(parsed.scenario) << parsed.error;
  const Scenario& s = *parsed.scenario;
  EXPECT_EQ(s.live, true);
  EXPECT_TRUE(s.fresh);
  EXPECT_EQ(s.startSeconds, 8.5 * 3600);
  EXPECT_EQ(s.endSeconds, 17 * 3600 + 30);
  ASSERT_EQ(s.events.size(), 3u);
  EXPECT_EQ(
      s.events[0].changes,
      (std::vector<ScenarioChange>{{Field::present, 1}, {Field::forward, 2.5}, {Field::power, 1}}));
  EXPECT_EQ(s.events[1].changes, (std::vector<ScenarioChange>{{Field::lock, 0}}));
  EXPECT_EQ(s.events[2].atSeconds, 12 * 3600 + 5);
  EXPECT_EQ(s.events[2].line, 9);
}

TEST(Scenario, ABadLineIsNamedWithItsField) {
  struct Case {
    const char* text;
    const char* error;
  };
  const Case cases[] = {
      {"09:00 slouch=3", "line 1: unknown field \"slouch\""},
      {"\n09:00 forward=25", "line 2: field \"forward\" must be a number from -5 to 20"},
      {"09:00 forward=abc", "line 1: field \"forward\" must be a number from -5 to 20"},
      {"09:00 forward=nan", "line 1: field \"forward\" must be a number from -5 to 20"},
      {"09:00 forward=3cm", "line 1: field \"forward\" must be a number from -5 to 20"},
      {"09:00 forward=+3", "line 1: field \"forward\" must be a number from -5 to 20"},
      {"09:00 forward", "line 1: field \"forward\" needs a value"},
      {"09:00 present=maybe", "line 1: field \"present\" is yes or no"},
      {"09:00 power=solar", "line 1: field \"power\" is mains or battery"},
      {"09:00 hands=feet", "line 1: field \"hands\" is lap, desk, phone, chin or mouth"},
      {"09:00 focus=posture", "line 1: field \"focus\" is laptop or watch"},
      {"09:00 habit=posture", "line 1: field \"habit\" is phone, drowsy, chinRest, mouth or away"},
      {"09:00 lock=yes", "line 1: \"lock\" takes no value"},
      {"25:00 lock", "line 1: \"25:00\" is neither a time nor a setting"},
      {"9:60 lock", "line 1: \"9:60\" is neither a time nor a setting"},
      {"09:00:00:30 lock", "line 1: \"09:00:00:30\" is neither a time nor a setting"},
      {"\xEF\xBB\xBF"
       "09:00 lock\n09:00 \x1b[31mlock",
       "line 2: unknown field \"\\x1b[31mlock\""},
      {"\xEF\xBB\xBF\n  \n# only a comment\nstart 09:00",
       "nothing happens: a scenario needs at least one timed line, such as \"09:00 present=yes\""},
      {"10:00 lock\n09:00 unlock", "line 2: the time goes back"},
      {"09:00", "line 1: nothing happens at this time"},
      {"mode fast", "line 1: \"mode\" is live or interval"},
      {"start 9", "line 1: \"9\" is not a time, HH:MM"},
      {"start 10:00\nend 09:00", "the scenario must end after it starts"},
      {"end 10:00\n11:00 lock", "line 2: the event comes after the end"},
      {"day 2", "line 1: \"day\" takes nothing after it"},
      {"09:00 breathe=yes", "line 1: \"breathe\" takes no value"},
      {"09:00 camera", "line 1: field \"camera\" needs a value"},
      {"09:00 camera=", "line 1: field \"camera\" is a program's name or path, or off"},
  };
  for (const auto& c : cases) {
    const auto parsed = Scenario::parse(c.text);
    EXPECT_FALSE(parsed.scenario) << c.text;
    EXPECT_EQ(parsed.error, c.error) << c.text;
  }
}

TEST(Scenario, ADayLineMovesTheClockToTheNextDay) {
  const auto parsed = Scenario::parse(R"(start 18:00
end 08:00
18:00 breathe
day
day
07:00 present=yes
)");
  ASSERT_TRUE(parsed.scenario) << parsed.error;
  const Scenario& s = *parsed.scenario;
  EXPECT_EQ(s.days, 3);  // an end before the start is fine on a later day
  ASSERT_EQ(s.events.size(), 2u);
  EXPECT_EQ(s.events[0].changes, (std::vector<ScenarioChange>{{Field::breathe, 0}}));
  EXPECT_EQ(s.events[1].day, 2);
  EXPECT_EQ(s.events[1].atSeconds, 7 * 3600);
  EXPECT_EQ(Scenario::parse("end 10:00\n11:00 lock\nday\n09:00 unlock").error, "");
  EXPECT_EQ(Scenario::parse("day\nend 10:00\n11:00 lock").error,
            "line 3: the event comes after the end");
}

TEST(Scenario, StudyFieldsNameTheirChoices) {
  const auto parsed = Scenario::parse("13:00 focus=watch hands=chin doze=yes habit=mouth");
  ASSERT_TRUE(parsed.scenario) << parsed.error;
  EXPECT_EQ(parsed.scenario->events[0].changes,
            (std::vector<ScenarioChange>{{Field::focus, UseMode::watch},
                                         {Field::hands, static_cast<double>(SitterHands::chin)},
                                         {Field::doze, 1},
                                         {Field::habit, WatchHabit::mouth}}));
  // Each habit a preset may watch is named by its own raw value.
  for (WatchHabit habit : WatchHabit::pickable()) {
    const auto one = Scenario::parse("13:00 habit=" + std::string(habit.raw()));
    ASSERT_TRUE(one.scenario) << habit.raw();
    EXPECT_EQ(one.scenario->events[0].changes[0].value, habit);
  }
}

TEST(Scenario, AnotherProgramTakesTheCameraByNameOrPathUntilOff) {
  const auto parsed =
      Scenario::parse("09:00 camera=Meetly\n09:10 camera=/Users/me/Downloads/x\n09:20 camera=off");
  ASSERT_TRUE(parsed.scenario) << parsed.error;
  const auto& events = parsed.scenario->events;
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0].changes[0], (ScenarioChange{ScenarioChange::Field::camera, 0, "Meetly"}));
  EXPECT_EQ(events[1].changes[0].text, "/Users/me/Downloads/x");
  EXPECT_EQ(events[2].changes[0].text, "");
}

TEST(Scenario, TheBuiltInScenariosReadAndUnknownNamesDoNot) {
  for (const auto& name : Scenario::builtInNames()) {
    const auto scenario = Scenario::builtIn(name);
    ASSERT_TRUE(scenario) << name;
    EXPECT_FALSE(scenario->events.empty()) << name;
  }
  EXPECT_EQ(Scenario::builtIn("live")->live, true);
  EXPECT_TRUE(Scenario::builtIn("first-run")->fresh);
  EXPECT_EQ(Scenario::builtIn("week")->days, 7);
  EXPECT_FALSE(Scenario::builtIn("weekend"));
}

TEST(Scenario, AStretchStartsARoutineAndANudgeIsTakenOrNot) {
  const auto parsed = Scenario::parse("10:00 stretch\n11:00 nudge=yes\n12:00 nudge=no\n");
  ASSERT_TRUE(parsed.scenario) << parsed.error;
  const auto& events = parsed.scenario->events;
  EXPECT_EQ(events[0].changes, (std::vector<ScenarioChange>{{Field::stretch, 0}}));
  EXPECT_EQ(events[1].changes, (std::vector<ScenarioChange>{{Field::nudge, 1}}));
  EXPECT_EQ(events[2].changes, (std::vector<ScenarioChange>{{Field::nudge, 0}}));
  EXPECT_EQ(Scenario::parse("10:00 stretch=yes\n").error, "line 1: \"stretch\" takes no value");
}

}  // namespace
}  // namespace sodam
