#include "posture/monitor.h"

#include <gtest/gtest.h>

#include "posture/baseline_store.h"
#include "posture/monitor_harness.h"

namespace sodam {
namespace {

using testing::MonitorHarness;
using Phase = Monitor::Phase;
using Kind = PostureEntry::Kind;

TEST(Monitor, AGoodCheckLogsGoodSwitchesTheCameraOffAndSchedulesTheNextOne) {
  MonitorHarness h;
  h.monitor->start();
  EXPECT_EQ(h.monitor->nextCheck(), h.clock.now() + 8);
  ASSERT_TRUE(h.runUntil(Phase::sampling, 9));
  EXPECT_TRUE(h.camera.running());
  ASSERT_TRUE(h.runUntilIdle(6));

  EXPECT_EQ(h.events.back(), "phase idle 바른 자세예요");
  EXPECT_FALSE(h.camera.running());
  EXPECT_EQ(h.logged(Kind::good), 1);
  EXPECT_EQ(h.monitor->goodStreak(), 1);
  EXPECT_NEAR(*h.monitor->nextCheck() - h.clock.now(), 60, 0.06);
  // About two seconds of frames at the sampling pace.
  EXPECT_NEAR(h.camera.secondsOn(), 2.1, 0.3);
}

TEST(Monitor, FiveGoodChecksStretchTheIntervalByHalf) {
  MonitorHarness h;
  h.monitor->start();
  for (int check = 0; check < 5; ++check) {
    ASSERT_TRUE(h.runUntil(Phase::sampling, 200));
    ASSERT_TRUE(h.runUntilIdle(6));
  }
  EXPECT_EQ(h.monitor->goodStreak(), 5);
  EXPECT_NEAR(*h.monitor->nextCheck() - h.clock.now(), 90, 0.06);
}

TEST(Monitor, ASlouchIsRecheckedThenAlertedAndTheCorrectionEndsIt) {
  MonitorHarness h;
  h.sitter.posture.forwardHeadCm = 8;
  h.monitor->checkNow();
  ASSERT_TRUE(h.runUntil(Phase::rechecking, 6));
  ASSERT_TRUE(h.runUntil(Phase::alerting, 8));
  EXPECT_TRUE(h.saw("alert forwardHead"));
  EXPECT_EQ(h.logged(Kind::alert), 1);
  EXPECT_EQ(h.lastOutcome(), "자세 알림 · 거북목");
  ASSERT_FALSE(h.severities.empty());
  EXPECT_GT(h.severities.front(), 1.0);

  h.advance(2);
  h.sitter.posture.forwardHeadCm = 0;
  ASSERT_TRUE(h.runUntilIdle(3));
  EXPECT_TRUE(h.saw("alert end corrected"));
  EXPECT_EQ(h.events.back(), "phase idle 알림 뒤 자세를 바로잡았어요");
  EXPECT_EQ(h.logged(Kind::corrected), 1);
  EXPECT_EQ(h.monitor->goodStreak(), 0);
}

TEST(Monitor, AnAlertLastsAMinuteAtMost) {
  MonitorHarness h;
  h.sitter.posture.headDropCm = 7;
  h.monitor->checkNow();
  ASSERT_TRUE(h.runUntil(Phase::alerting, 14));
  const Date alertStart = h.clock.now();
  ASSERT_TRUE(h.runUntilIdle(65));
  EXPECT_NEAR(h.clock.now() - alertStart, 60, 0.3);
  EXPECT_EQ(h.events.back(), "phase idle 자세 알림 · 구부정");
  EXPECT_TRUE(h.saw("alert end"));
  // The alert was logged when it began; its timeout adds nothing.
  EXPECT_EQ(h.logged(Kind::alert), 1);
  EXPECT_EQ(h.log.entries().size(), 1u);
}

TEST(Monitor, ADifferentIssueMustStandForMoreThanASecondBeforeTheAlertFollows) {
  MonitorHarness h;
  h.sitter.posture.forwardHeadCm = 8;
  h.monitor->checkNow();
  ASSERT_TRUE(h.runUntil(Phase::alerting, 14));
  h.sitter.posture.forwardHeadCm = 0;
  h.sitter.posture.leanCm = 9;
  h.advance(1.0);
  EXPECT_EQ(h.monitor->shownIssue(), IssueKind::forwardHead);
  h.advance(1.0);
  EXPECT_EQ(h.monitor->shownIssue(), IssueKind::lean);
  EXPECT_EQ(h.events.back(), "alert lean");
}

TEST(Monitor, NobodyInTheChairEndsAsAbsentAndTellsTheWorkDay) {
  MonitorHarness h;
  h.sitter.present = false;
  h.monitor->checkNow();
  ASSERT_TRUE(h.runUntilIdle(6));
  EXPECT_EQ(h.lastOutcome(), "자리에 없어 건너뛰었어요");
  EXPECT_EQ(h.logged(Kind::absent), 1);
  EXPECT_EQ(h.workLife.sittingSince(), std::nullopt);
}

TEST(Monitor, ALookAwayIsCheckedAgainAfterThirtySecondsThenAtTheNormalInterval) {
  MonitorHarness h;
  h.sitter.posture.headYawDeg = 45;
  h.monitor->checkNow();
  ASSERT_TRUE(h.runUntilIdle(6));
  EXPECT_EQ(h.lastOutcome(), "다른 곳을 보고 있어 다음에 볼게요");
  EXPECT_NEAR(*h.monitor->nextCheck() - h.clock.now(), 30, 0.06);
  ASSERT_TRUE(h.runUntil(Phase::sampling, 31));
  ASSERT_TRUE(h.runUntilIdle(6));
  EXPECT_EQ(h.monitor->awayStreak(), 2);
  EXPECT_NEAR(*h.monitor->nextCheck() - h.clock.now(), 60, 0.06);
  EXPECT_EQ(h.logged(Kind::away), 2);
}

TEST(Monitor, SkipReasonsInTheirOrderAndWhatAManualCheckIgnores) {
  struct Case {
    const char* name;
    std::function<void(MonitorHarness&)> set;
    bool manual;
    const char* expected;  // nullptr: the check runs
  };
  const Case cases[] = {
      {"no camera", [](auto& h) { h.camera.access = false; }, true, "카메라 권한이 없어요"},
      {"revoked", [](auto& h) { h.camera.revokedCamera = true; }, true, "카메라 권한이 없어요"},
      {"battery pause",
       [](auto& h) {
         h.store.setPauseOnBattery(true);
         h.machine.battery = true;
       },
       false, "배터리라 쉬고 있어요"},
      {"battery pause, by hand",
       [](auto& h) {
         h.store.setPauseOnBattery(true);
         h.machine.battery = true;
       },
       true, nullptr},
      {"locked", [](auto& h) { h.power.setScreenLocked(true); }, true,
       "화면이 잠겨 있어 건너뛰었어요"},
      {"session locked", [](auto& h) { h.machine.locked = true; }, false,
       "화면이 잠겨 있어 건너뛰었어요"},
      {"asleep", [](auto& h) { h.power.setDisplaysAsleep(true); }, true,
       "화면이 꺼져 있어 건너뛰었어요"},
      {"idle on mains", [](auto& h) { h.machine.idle = 301; }, false,
       "5분 넘게 입력이 없어 건너뛰었어요"},
      {"idle on battery",
       [](auto& h) {
         h.machine.battery = true;
         h.machine.idle = 181;
       },
       false, "3분 넘게 입력이 없어 건너뛰었어요"},
      {"idle at the line", [](auto& h) { h.machine.idle = 300; }, false, nullptr},
      {"idle, by hand", [](auto& h) { h.machine.idle = 3000; }, true, nullptr},
      {"idle before a closed lid",
       [](auto& h) {
         h.machine.idle = 400;
         h.sitter.laptop.lidDeg = 10;
       },
       false, "5분 넘게 입력이 없어 건너뛰었어요"},
      {"closed lid, by hand",
       [](auto& h) {
         h.machine.idle = 400;
         h.sitter.laptop.lidDeg = 10;
       },
       true, "덮개가 닫혀 있어 건너뛰었어요"},
  };
  for (const auto& c : cases) {
    MonitorHarness h;
    c.set(h);
    if (c.manual) {
      h.monitor->checkNow();
    } else {
      h.monitor->start();
      h.advance(8);
    }
    if (c.expected) {
      EXPECT_EQ(h.monitor->phase(), Phase::idle) << c.name;
      EXPECT_EQ(h.lastOutcome(), c.expected) << c.name;
      EXPECT_FALSE(h.camera.running()) << c.name;
    } else {
      EXPECT_EQ(h.monitor->phase(), Phase::sampling) << c.name;
    }
  }
}

TEST(Monitor, AHoldDuringAnAlertEndsItWithoutAnOutcomeAndReleaseReschedules) {
  MonitorHarness h;
  std::vector<std::set<std::string>> holds;
  h.monitor->onHolds = [&](const std::set<std::string>& now) { holds.push_back(now); };
  h.sitter.posture.forwardHeadCm = 8;
  h.monitor->checkNow();
  ASSERT_TRUE(h.runUntil(Phase::alerting, 14));
  const auto entries = h.log.entries().size();

  h.monitor->hold("lock");
  EXPECT_EQ(h.events.back(), "phase idle");
  EXPECT_TRUE(h.saw("alert end"));
  EXPECT_FALSE(h.saw("alert end corrected"));
  EXPECT_FALSE(h.camera.running());
  EXPECT_EQ(h.monitor->nextCheck(), std::nullopt);
  EXPECT_EQ(h.log.entries().size(), entries);

  h.monitor->checkNow();
  EXPECT_EQ(h.monitor->phase(), Phase::idle);
  h.monitor->release("guide");  // never held: nothing happens
  EXPECT_EQ(h.monitor->nextCheck(), std::nullopt);
  h.monitor->release("lock");
  EXPECT_EQ(h.monitor->nextCheck(), h.clock.now() + 10);
  EXPECT_EQ(holds.size(), 2u);
}

TEST(Monitor, ACameraThatDeliversNothingEndsEveryWaitingPhaseAfterSixSeconds) {
  {
    MonitorHarness h;
    h.camera.frozen = true;
    h.monitor->checkNow();
    ASSERT_TRUE(h.runUntilIdle(7));
    EXPECT_NEAR(h.clock.now() - h.monitor->report()->time, 0, 0.06);
    EXPECT_EQ(h.lastOutcome(), "카메라 화면을 받지 못했어요");
    EXPECT_NEAR(*h.monitor->nextCheck() - h.clock.now(), 60, 0.06);
  }
  {
    MonitorHarness h;
    h.sitter.posture.forwardHeadCm = 8;
    h.monitor->checkNow();
    ASSERT_TRUE(h.runUntil(Phase::alerting, 14));
    h.camera.frozen = true;
    const Date frozenAt = h.clock.now();
    ASSERT_TRUE(h.runUntilIdle(8));
    EXPECT_NEAR(h.clock.now() - frozenAt, 6, 0.2);
    EXPECT_EQ(h.lastOutcome(), "카메라 화면을 받지 못했어요");
    EXPECT_TRUE(h.saw("alert end"));
  }
}

TEST(Monitor, DisablingHaltsAndEnablingSchedulesAfterThreeSeconds) {
  MonitorHarness h;
  h.monitor->checkNow();
  h.monitor->setEnabled(false);
  EXPECT_EQ(h.monitor->phase(), Phase::idle);
  EXPECT_FALSE(h.store.enabled());
  h.monitor->checkNow();
  EXPECT_EQ(h.monitor->phase(), Phase::idle);
  h.monitor->setEnabled(true);
  EXPECT_EQ(h.monitor->nextCheck(), h.clock.now() + 3);
}

TEST(Monitor, AScreenMovedTwelveDegreesIsFollowedQuietly) {
  MonitorHarness h;
  const Baseline before = *h.monitor->baseline();
  h.sitter.laptop.lidDeg = 98;
  h.monitor->checkNow();
  ASSERT_TRUE(h.runUntilIdle(8));
  EXPECT_EQ(h.lastOutcome(), "바른 자세예요");
  EXPECT_FALSE(h.saw("alert forwardHead"));
  ASSERT_TRUE(h.monitor->baseline()->lid);
  EXPECT_NEAR(*h.monitor->baseline()->lid, 98, 0.01);
  EXPECT_EQ(h.monitor->baseline()->learnedAt, before.learnedAt);
  EXPECT_EQ(BaselineStore::read(h.defaults), h.monitor->baseline());
}

TEST(Monitor, AnImplausibleBaselineRelearnsAtMostEveryTenMinutes) {
  MonitorHarness h;
  Baseline far = *BaselineStore::read(h.defaults);
  far.eyeDistance = 120;
  h.monitor->setBaseline(far);
  h.monitor->start();
  ASSERT_TRUE(h.runUntil(Phase::relearning, 12));
  ASSERT_TRUE(h.runUntilIdle(7));
  EXPECT_EQ(h.lastOutcome(), "바른 자세를 다시 잡았어요");
  EXPECT_TRUE(h.monitor->baseline()->plausible());

  h.monitor->setBaseline(far);
  ASSERT_TRUE(h.runUntil(Phase::sampling, 70));
  ASSERT_TRUE(h.runUntilIdle(6));
  EXPECT_EQ(h.events.back(), "phase idle 바른 자세를 다시 잡아야 해요");
}

TEST(Monitor, ARelearningTheApplicationRefusesLeavesTheBaseline) {
  MonitorHarness h;
  Baseline far = *BaselineStore::read(h.defaults);
  far.eyeDistance = 120;
  h.monitor->setBaseline(far);
  h.monitor->canRelearn = [] { return false; };
  h.monitor->checkNow();
  ASSERT_TRUE(h.runUntilIdle(6));
  EXPECT_EQ(h.lastOutcome(), "바른 자세를 다시 잡아야 해요");
  EXPECT_EQ(h.monitor->baseline()->eyeDistance, 120);
}

TEST(Monitor, LiveModeAlertsAfterFiveSecondsOfIssuesAndReturnsToWatching) {
  MonitorHarness h;
  h.store.setCheckMode(CheckMode::live);
  h.monitor->checkNow();
  EXPECT_EQ(h.monitor->phase(), Phase::watching);
  EXPECT_TRUE(h.camera.light());
  EXPECT_DOUBLE_EQ(h.camera.frameInterval(), 0.25);
  h.advance(10);
  EXPECT_EQ(h.monitor->phase(), Phase::watching);

  h.sitter.posture.headDropCm = 7;
  const Date slouched = h.clock.now();
  ASSERT_TRUE(h.runUntil(Phase::alerting, 8));
  EXPECT_NEAR(h.clock.now() - slouched, 5.3, 0.5);
  EXPECT_TRUE(h.saw("alert slouch"));

  h.sitter.posture.headDropCm = 0;
  ASSERT_TRUE(h.runUntil(Phase::watching, 3));
  EXPECT_EQ(h.lastOutcome(), "알림 뒤 자세를 바로잡았어요");
  EXPECT_FALSE(h.saw("phase idle 알림 뒤 자세를 바로잡았어요"));
  EXPECT_TRUE(h.camera.running());
  EXPECT_EQ(h.monitor->nextCheck(), std::nullopt);
}

TEST(Monitor, LiveModeLogsAGoodMinuteAndSlowsDownWhenNobodyIsThere) {
  MonitorHarness h;
  h.store.setCheckMode(CheckMode::live);
  h.monitor->checkNow();
  h.advance(61);
  EXPECT_EQ(h.logged(Kind::good), 1);
  EXPECT_EQ(h.lastOutcome(), "바른 자세예요");

  h.sitter.present = false;
  h.advance(15 * 0.27 + 0.5);
  EXPECT_DOUBLE_EQ(h.camera.frameInterval(), 1.0);
  h.sitter.present = true;
  h.advance(1.1);
  EXPECT_DOUBLE_EQ(h.camera.frameInterval(), 0.25);
}

TEST(Monitor, LiveModesMinuteEntryIsGoodEvenWithIssuesThatHaveNotYetStoodFiveSeconds) {
  MonitorHarness h;
  h.store.setCheckMode(CheckMode::live);
  h.monitor->checkNow();
  h.advance(57);
  h.sitter.posture.headDropCm = 7;
  h.advance(4);
  ASSERT_EQ(h.monitor->phase(), Phase::watching);
  ASSERT_EQ(h.logged(Kind::good), 1);
  EXPECT_EQ(h.logged(Kind::alert), 0);
  ASSERT_TRUE(h.monitor->reading());
  EXPECT_TRUE(h.monitor->reading()->bad());
  EXPECT_EQ(h.lastOutcome(), "바른 자세예요");
}

TEST(Monitor, SwitchingModeWhileWatchingStopsTheCamera) {
  MonitorHarness h;
  h.store.setCheckMode(CheckMode::live);
  h.monitor->checkNow();
  h.store.setCheckMode(CheckMode::interval);
  h.monitor->modeChanged();
  EXPECT_EQ(h.monitor->phase(), Phase::idle);
  EXPECT_FALSE(h.camera.running());
  EXPECT_EQ(h.monitor->nextCheck(), h.clock.now() + 2);
}

TEST(SeverityBlur, SmoothsAgainstTheAlertsOwnPeak) {
  struct Case {
    double first;
    double level;
  };
  for (auto c : {Case{1.3, 1.0}, Case{1.0, 0.438}, Case{0.85, 0.0}, Case{0.5, 0.0}}) {
    SeverityBlur blur;
    EXPECT_NEAR(blur.level(c.first), c.level, 0.001) << c.first;
  }
  SeverityBlur blur;
  blur.level(2.0);
  // smooth 2.0 + 0.4 * (1.0 - 2.0) = 1.6 against the peak 2.0:
  // ((1.6 - 0.85) / (2.0 - 0.85)) ^ 0.75 = 0.7257
  EXPECT_NEAR(blur.level(1.0), 0.7257, 0.0005);
  EXPECT_DOUBLE_EQ(blur.peak(), 2.0);
  blur.level(10);
  EXPECT_DOUBLE_EQ(blur.peak(), 2.5);
  blur.reset();
  EXPECT_DOUBLE_EQ(blur.peak(), 1.3);
}

}  // namespace
}  // namespace sodam
