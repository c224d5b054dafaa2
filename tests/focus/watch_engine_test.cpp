#include "focus/watch_engine.h"

#include <gtest/gtest.h>

#include "focus/watch_harness.h"

namespace sodam {
namespace {

using testing::seated;
using testing::WatchHarness;
using testing::withChinOnHand;
using testing::withHandAtMouth;
using testing::withPhone;
using Habits = std::vector<WatchHabit>;

Measurement scored(Measurement m, float phone) {
  m.phone = phone;
  return m;
}

TEST(WatchEngineJudging, OnePhoneFrameInTheWindowMeansNothingTwoMeanAPhone) {
  WatchHarness h;
  h.run({WatchHabit::phone}, false, seated());
  h.see(scored(seated(), 0.6f));
  h.see(withPhone(seated()));  // nor does one frame of hands held like a phone
  h.see(seated(), 30);
  EXPECT_EQ(h.engine.state(), MateState::focus);
  EXPECT_TRUE(h.reported.empty());

  h.see(scored(seated(), 0.24f));  // below the score that counts
  h.see(scored(seated(), 0.25f));
  EXPECT_TRUE(h.reported.empty());
  h.see(scored(seated(), 0.3f));
  EXPECT_EQ(h.engine.state(), MateState::phone);
  EXPECT_EQ(h.reported, Habits{WatchHabit::phone});
}

TEST(WatchEngineJudging, HandsHeldLikeAPhoneInMostFramesMeanAPhone) {
  WatchHarness h;
  h.run({WatchHabit::phone}, false, seated());
  h.see(withPhone(seated()), 14);  // 14 of the 21 frames of ten seconds: 0.67
  EXPECT_EQ(h.engine.state(), MateState::focus);
  h.see(withPhone(seated()));
  EXPECT_EQ(h.engine.state(), MateState::phone);
  EXPECT_EQ(h.reported, Habits{WatchHabit::phone});

  // Without the gaze down the same hands are only hands.
  WatchHarness up;
  up.run({WatchHabit::phone}, false, seated());
  Measurement looking = withPhone(seated());
  looking.pupil = Point{0.5, 0.5};
  up.see(looking, 20);
  EXPECT_EQ(up.engine.state(), MateState::focus);
  looking.aperture = 0.17;  // the lids lowered to the hands: under 0.6 of the open 0.3
  up.see(looking, 20);
  EXPECT_EQ(up.engine.state(), MateState::phone);
}

TEST(WatchEngineJudging, TwoHabitsAtOnceAreEachReportedUnderTheirOwnLimit) {
  WatchHarness h;
  h.run({WatchHabit::phone, WatchHabit::chinRest, WatchHabit::mouth}, false, seated());
  const Measurement both = withHandAtMouth(withChinOnHand(seated()));
  h.see(both, 12);  // 12 of the 21 frames of ten seconds: 0.57
  EXPECT_TRUE(h.reported.empty());
  h.see(both);  // 13 of 21: 0.62
  EXPECT_EQ(h.reported, (Habits{WatchHabit::chinRest, WatchHabit::mouth}));
  EXPECT_EQ(h.engine.state(), MateState::focus) << "a hand at the face leaves the state";

  h.see(both, 20);               // ten seconds later: within the limit, nothing new
  h.see(scored(both, 0.5f), 2);  // a phone has a limit of its own
  EXPECT_EQ(h.reported.size(), 3u);
  EXPECT_EQ(h.reported.back(), WatchHabit::phone);

  h.see(both, 158);  // 90 seconds after the first report, exactly
  EXPECT_EQ(h.reported.size(), 3u);
  h.see(both);
  EXPECT_EQ(h.reported, (Habits{WatchHabit::chinRest, WatchHabit::mouth, WatchHabit::phone,
                                WatchHabit::chinRest, WatchHabit::mouth}));
}

TEST(WatchEngineJudging, AwayShowsAtFifteenSecondsAndIsReportedOnceAfterAMinute) {
  WatchHarness h;
  h.run({WatchHabit::away}, false, seated());
  h.see(std::nullopt, 12);  // six seconds: the last present frame is still in the window
  EXPECT_EQ(h.engine.state(), MateState::focus);
  h.see(std::nullopt, 1);  // absence noticed here
  h.see(std::nullopt, 29);
  EXPECT_EQ(h.engine.state(), MateState::focus);
  h.see(std::nullopt, 1);  // 15 seconds after it was noticed
  EXPECT_EQ(h.engine.state(), MateState::away);
  EXPECT_EQ(h.engine.note(), "자리를 비웠어요");
  h.see(std::nullopt, 90);  // 60 seconds after it was noticed
  EXPECT_TRUE(h.reported.empty());
  h.see(std::nullopt, 1);
  EXPECT_EQ(h.reported, Habits{WatchHabit::away});
  h.see(std::nullopt, 400);  // a long absence is one report
  EXPECT_EQ(h.reported.size(), 1u);

  h.see(seated(), 2);
  EXPECT_EQ(h.engine.state(), MateState::focus);
  EXPECT_EQ(h.engine.note(), std::nullopt);
  h.see(std::nullopt, 13 + 121);  // the next absence is reported again
  EXPECT_EQ(h.reported.size(), 2u);
}

TEST(WatchEngineJudging, AHabitNotWatchedShowsInTheStateButIsNotReported) {
  WatchHarness h;
  h.run({WatchHabit::drowsy}, false, seated());
  h.see(scored(withPhone(seated()), 0.7f), 20);
  EXPECT_EQ(h.engine.state(), MateState::phone);
  EXPECT_TRUE(h.reported.empty());
}

TEST(WatchEngineJudging, EyesClosedOrAHeadSunkOutOfSightIsDrowsy) {
  WatchHarness h;
  h.run({WatchHabit::drowsy}, false, seated());
  Measurement shut = seated();
  shut.aperture = 0.18;  // under 0.62 of the open 0.3
  h.see(shut, 6);        // 6 of the 9 frames of four seconds: 0.67
  EXPECT_EQ(h.engine.state(), MateState::focus);
  h.see(shut);
  EXPECT_EQ(h.engine.state(), MateState::drowsy);
  EXPECT_EQ(h.reported, Habits{WatchHabit::drowsy});

  WatchHarness sunk;
  sunk.run({WatchHabit::drowsy}, false, seated());
  Measurement body = seated(300);
  body.fromBody = true;  // the face is lost, the body still there
  sunk.see(body, 12);
  EXPECT_EQ(sunk.engine.state(), MateState::focus);
  EXPECT_EQ(sunk.engine.note(), "얼굴이 잘 안 보여요");
  sunk.see(body, 4);
  EXPECT_EQ(sunk.engine.state(), MateState::focus);  // 16 of 21 frames without a face
  sunk.see(body);
  EXPECT_EQ(sunk.engine.state(), MateState::drowsy);
  EXPECT_EQ(sunk.engine.note(), "고개를 푹 숙이고 있어요");
}

TEST(WatchEngineJudging, AFewerThanFourFrameWindowLeavesTheHandsAtTheFaceOff) {
  WatchHarness h;
  h.run({WatchHabit::chinRest}, false, seated());
  h.see(seated(), 20);
  h.see(withChinOnHand(seated()), 20, 3.5);  // a slow camera: three frames in ten seconds
  EXPECT_TRUE(h.reported.empty());
  h.see(withChinOnHand(seated()), 1, 2.5);  // four frames in ten seconds
  EXPECT_EQ(h.reported, Habits{WatchHabit::chinRest});
}

TEST(WatchEngineJudging, PostureAgainstTheCalibratedEyes) {
  // The reference: eyes at 450 of 720 (0.625), 60 pixels apart.
  struct Case {
    double eyeY, ipd;
    MateState state;
  };
  const Case cases[] = {
      {414, 69, MateState::turtle},    // dropped 0.05 and 15 % nearer
      {414, 60, MateState::focus},     // the same drop at the same distance
      {385.2, 60, MateState::slouch},  // dropped 0.09
  };
  for (const auto& c : cases) {
    WatchHarness h;
    h.run({}, true, seated());
    ASSERT_TRUE(h.engine.reference());
    EXPECT_DOUBLE_EQ(h.engine.reference()->eyeY, 0.625);
    h.see(seated(c.eyeY, c.ipd), 20);
    EXPECT_EQ(h.engine.state(), c.state) << c.eyeY << " " << c.ipd;
    EXPECT_EQ(h.reported.size(), c.state == MateState::focus ? 0u : 1u);
    if (!h.reported.empty()) {
      EXPECT_EQ(h.reported.front(), WatchHabit::posture);
    }
  }

  // Posture not watched: the state shows it, nothing is reported.
  WatchHarness off;
  off.run({}, false, seated());
  off.see(seated(385.2), 20);
  EXPECT_EQ(off.engine.state(), MateState::focus);
  EXPECT_TRUE(off.reported.empty());
}

TEST(WatchEngineLife, ACalibrationWithoutAFaceLeavesThePostureUnjudged) {
  WatchHarness h;
  h.engine.calibrate({}, true);
  EXPECT_EQ(h.engine.phase(), WatchEngine::Phase::calibrating);
  h.see(std::nullopt, 10);
  EXPECT_DOUBLE_EQ(h.engine.calibrationProgress(), 0.5);
  h.see(std::nullopt, 10);
  EXPECT_EQ(h.engine.phase(), WatchEngine::Phase::running);
  EXPECT_FALSE(h.engine.reference());
  h.see(seated(300), 30);
  EXPECT_EQ(h.engine.state(), MateState::focus);
}

TEST(WatchEngineLife, TheCameraComesOnLightWithTheHoldFirstAndGoesBackToRest) {
  // Outlives the harness, whose engine gives its hold back when destroyed.
  bool feedRunningAtHold = true;
  WatchHarness h;
  h.machine.power.battery = true;
  h.monitor.onHolds = [&](const std::set<std::string>&) { feedRunningAtHold = h.feed.running(); };
  h.engine.beginSetup();
  EXPECT_EQ(h.engine.phase(), WatchEngine::Phase::setup);
  EXPECT_FALSE(feedRunningAtHold);
  EXPECT_EQ(h.monitor.holdReasons(), std::set<std::string>{"watch"});
  EXPECT_TRUE(h.feed.running());
  EXPECT_TRUE(h.capture.light());
  EXPECT_TRUE(h.capture.trackArms());
  EXPECT_FALSE(h.capture.checkPhone());
  EXPECT_DOUBLE_EQ(h.capture.frameInterval(), 1.0);

  h.engine.calibrate({WatchHabit::phone}, true);
  EXPECT_TRUE(h.capture.checkPhone());
  h.see(seated(), 21);
  h.machine.power.battery = false;  // plugged in: the faster pace
  h.see(seated());
  EXPECT_DOUBLE_EQ(h.capture.frameInterval(), 0.5);

  h.engine.stop();
  EXPECT_EQ(h.engine.phase(), WatchEngine::Phase::off);
  EXPECT_TRUE(h.monitor.holdReasons().empty());
  EXPECT_FALSE(h.feed.running());
  EXPECT_FALSE(h.capture.light());
  EXPECT_FALSE(h.capture.checkPhone());
  EXPECT_FALSE(h.capture.trackArms());
  EXPECT_TRUE(h.engine.frames().empty());
  EXPECT_TRUE(h.engine.reference()) << "the reference stays for the run";

  // A second start needs no calibration.
  h.engine.start({}, true);
  EXPECT_EQ(h.engine.phase(), WatchEngine::Phase::running);
}

TEST(WatchEngineLife, TheFramingAsksForWhatIsMissingFirst) {
  WatchHarness h;
  h.engine.beginSetup();
  h.see(std::nullopt);
  EXPECT_EQ(h.engine.framing().hint, "얼굴이 보이게 화면을 조금 올리거나 화면 앞에 앉아 주세요");
  Measurement m = seated();
  m.shoulderL.reset();
  h.see(m);
  EXPECT_EQ(h.engine.framing().hint, "어깨까지 보이게 조금 뒤로 앉아 주세요");
  Measurement noHands = seated();
  noHands.arms->wristL.reset();
  h.see(noHands, 6);
  EXPECT_EQ(h.engine.framing().hint, "손과 책상이 보이게 화면을 조금 더 내려 주세요");
  h.see(seated(), 3);  // hands in half of the last six frames
  EXPECT_TRUE(h.engine.framing().ok());
  EXPECT_EQ(h.engine.framing().hint, std::nullopt);
}

TEST(WatchEngineLife, TheOpenEyeNeedsTwentyValuesAndIsTheEightiethPercentile) {
  WatchHarness h;
  h.engine.beginSetup();
  Measurement m = seated();
  for (int i = 0; i < 19; ++i) {
    m.aperture = 0.01 * (i + 1);
    h.see(m);
  }
  EXPECT_EQ(h.engine.openEye(), std::nullopt);
  m.aperture = 0.2;
  h.see(m);
  EXPECT_DOUBLE_EQ(*h.engine.openEye(), 0.17);  // at index 16 of 0.01 ... 0.2
}

}  // namespace
}  // namespace sodam
