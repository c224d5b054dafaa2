#include "mac/pill_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace sodam {
namespace {

using Art = Pill::Art;

PillModel modelAt(int phase) {
  PillModel model;
  model.phase = phase;
  model.pill = Pill(Date{}, Art::say(PillEyes::Mood::happy), Theme::white, "안녕");
  model.size = {200, 50};
  model.bubble = {120, 40};
  model.cameraY = 14.4;
  model.topY = 45;
  return model;
}

TEST(PillGeometryTest, TheDotStartsInTheCameraAndThePillHangsFromItsTop) {
  // The model measures down from the panel's top; AppKit's y goes up.
  const Size stage{1512, 170};
  const StagePlaces dot = stagePlaces(modelAt(0), stage);
  EXPECT_EQ(dot.center, (Point{756, 170 - 14.4}));
  EXPECT_EQ(dot.capsule, (Size{12, 12}));
  EXPECT_EQ(dot.cornerRadius, 6);

  const StagePlaces dropped = stagePlaces(modelAt(1), stage);
  EXPECT_EQ(dropped.center, (Point{756, 170 - 45 - 6}));
  EXPECT_EQ(dropped.capsuleTop, (Point{756, 170 - 45}));

  const StagePlaces full = stagePlaces(modelAt(3), stage);
  EXPECT_EQ(full.capsule, (Size{200, 50}));
  EXPECT_EQ(full.cornerRadius, 25);
  EXPECT_EQ(full.center, (Point{756, 170 - 45 - 25}));
  // Ears stand on the top edge, which stays where the model put the top.
  EXPECT_EQ(full.capsuleTop, (Point{756, 170 - 45}));
  // The bubble stands right of the capsule, level with its middle.
  EXPECT_EQ(full.bubbleCenter, (Point{756 + 100 + 60 + 14, 170 - 45 - 25}));
}

TEST(PillGeometryTest, ANewPillsPositionsMoveTheStartAtOnce) {
  PillModel before = modelAt(3);
  PillModel lower = modelAt(3);
  lower.topY = 57;  // a hat came with the new pill
  EXPECT_EQ(instantShift(before, 1512, lower, 1512), (Point{0, -12}));

  PillModel resting = modelAt(0);
  PillModel noNotch = modelAt(0);
  noNotch.cameraY = -8;
  EXPECT_NEAR(instantShift(resting, 1512, noNotch, 1512).y, 22.4, 1e-9);
  // A wider screen moves the middle at once.
  EXPECT_EQ(instantShift(resting, 1512, resting, 1728), (Point{108, 0}));
  // A change of phase alone is animated, never shifted.
  EXPECT_EQ(instantShift(resting, 1512, modelAt(1), 1512), (Point{0, 0}));
  EXPECT_EQ(instantShift(modelAt(1), 1512, modelAt(3), 1512), (Point{0, 0}));
}

TEST(PillGeometryTest, ContentFitsArtAndTextInARow) {
  // Without text a round badge sits in a round capsule.
  const Size badge = contentSizeFor({36, 36}, {}, false);
  EXPECT_EQ(badge.width, badge.height);
  // The capsule grows with its text, and tall text sets its height.
  const Size short_ = contentSizeFor({36, 36}, {80, 16}, false);
  const Size longer = contentSizeFor({36, 36}, {200, 16}, false);
  EXPECT_EQ(longer.width - short_.width, 120);
  EXPECT_EQ(short_.height, badge.height);
  EXPECT_EQ(contentSizeFor({34, 34}, {80, 44}, false).height - 44, badge.height - 36);
  // The companion stands alone, whatever text the pill carries.
  EXPECT_EQ(contentSizeFor({70, 28}, {300, 40}, true), contentSizeFor({70, 28}, {}, true));
}

TEST(PillGeometryTest, BreathingTimeReadsAsMinutesAndSeconds) {
  for (auto [seconds, text] : {std::pair{0, "0:00"},
                               {5, "0:05"},
                               {59, "0:59"},
                               {60, "1:00"},
                               {605, "10:05"},
                               {-3, "0:00"}}) {
    EXPECT_EQ(minutesAndSeconds(seconds), text) << seconds;
  }
}

TEST(PillGeometryTest, SpringsKeepTheirResponseAndDampingRatio) {
  // Core Animation knows only mass, stiffness and damping: the conversion
  // must give back the swing time and the damping ratio the pill asked for.
  for (auto [response, ratio] : {std::pair{0.27, 0.8}, {0.33, 0.66}, {0.24, 0.55}, {0.23, 0.9}}) {
    const SpringParameters spring = springParameters(response, ratio);
    const double naturalFrequency = std::sqrt(spring.stiffness / spring.mass);
    EXPECT_NEAR(2 * std::numbers::pi / naturalFrequency, response, 1e-9) << response;
    EXPECT_NEAR(spring.damping / (2 * std::sqrt(spring.stiffness * spring.mass)), ratio, 1e-9)
        << response;
  }
}

TEST(PillGeometryTest, CountdownEmptiesOverItsSecondsAndStaysEmpty) {
  const Date start{1000};
  struct Case {
    double after;
    double left;
    int secondsLeft;
  };
  for (auto [after, left, secondsLeft] :
       {Case{-5, 1, 10},                                       // clock set back: still full
        Case{0, 1, 10}, Case{0.2, 0.98, 10},                   // the first second shows 10
        Case{1, 0.9, 9}, Case{5, 0.5, 5}, Case{9.5, 0.05, 1},  // the last second shows 1
        Case{10, 0, 0}, Case{60, 0, 0}}) {
    EXPECT_NEAR(countdownLeft(start, 10, start + after), left, 1e-9) << after;
    EXPECT_EQ(countdownSecondsLeft(start, 10, start + after), secondsLeft) << after;
  }
  // A countdown of no time is over at once rather than dividing by zero.
  EXPECT_EQ(countdownLeft(start, 0, start), 0);
  EXPECT_EQ(countdownSecondsLeft(start, 0, start), 0);
}

TEST(PillGeometryTest, BreathingGoesInForFourSecondsAndOutForSix) {
  const Date start{500};
  EXPECT_NEAR(breathFullness(start, 60, start), 0, 1e-9);
  EXPECT_NEAR(breathFullness(start, 60, start + 4), 1, 1e-9);
  EXPECT_NEAR(breathFullness(start, 60, start + 10), 0, 1e-9);
  EXPECT_NEAR(breathFullness(start, 60, start + 14), 1, 1e-9);   // the second breath
  EXPECT_NEAR(breathFullness(start, 60, start + 7), 0.5, 1e-9);  // halfway out

  double previous = -1;
  for (double t = 0; t <= 4; t += 0.25) {
    const double now = breathFullness(start, 60, start + t);
    EXPECT_GT(now, previous) << "breathing in at " << t;
    previous = now;
  }
  for (double t = 4.25; t <= 10; t += 0.25) {
    const double now = breathFullness(start, 60, start + t);
    EXPECT_LT(now, previous) << "breathing out at " << t;
    previous = now;
  }
  // Once the time is over the dot rests, even in the middle of a breath.
  EXPECT_EQ(breathFullness(start, 12, start + 13), 0);
  EXPECT_EQ(breathFullness(start, 60, start - 3), 0);
}

TEST(PillGeometryTest, EyesFollowTheGazeWithinTheirReach) {
  const Size reach{4, 3};
  EXPECT_EQ(eyeShift(std::nullopt, reach), (Point{0, 0}));
  EXPECT_EQ(eyeShift(Point{0.5, 1}, reach), (Point{2, 3}));
  // Looking down stays down: the drawing flips the sign itself.
  EXPECT_EQ(eyeShift(Point{-1, 0.5}, reach), (Point{-4, 1.5}));
  EXPECT_EQ(eyeShift(Point{3, -7}, reach), (Point{4, -3}));
}

TEST(PillGeometryTest, OnlyMovingArtsNeedTheTicker) {
  struct Case {
    Art art;
    bool moving;
  };
  for (const auto& [art, moving] :
       {Case{Art::countdown(13), true}, Case{Art::breathe(60), true},
        Case{Art::buddy(PillEyes::Mood::happy), true},
        Case{Art::say(PillEyes::Mood::curious), true}, Case{Art::symbol("checkmark"), false},
        Case{Art::fix(IssueKind::slouch), false}}) {
    EXPECT_EQ(hasMovingArt(Pill(Date{}, art, Theme::white)), moving) << art.describe();
  }
}

}  // namespace
}  // namespace sodam
