#include "app/app_delegate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "app/app_harness.h"

namespace sodam {
namespace {

using testing::AppHarness;
using Phase = Monitor::Phase;

int count(const std::vector<std::string>& calls, const std::string& call) {
  return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

TEST(AppLaunch, WhatOpensDependsOnTheBaselineTheGuideAndTheLogin) {
  {
    AppHarness h;
    h.launch(true);  // a login item: checks start, no window
    EXPECT_TRUE(h.shell.pages.empty());
    EXPECT_EQ(h.app->monitor().nextCheck(), h.clock.now() + 8);
    EXPECT_EQ(h.shell.guidesShown, 0);
  }
  {
    AppHarness h;
    h.launch(false);
    EXPECT_EQ(h.shell.pages, std::vector<PanelPage>{PanelPage::home});
  }
  {
    AppHarness h(false);
    h.launch();
    ASSERT_TRUE(h.app->guide());
    EXPECT_EQ(h.app->guide()->step(), GuideModel::Step::welcome);
    EXPECT_TRUE(h.shell.pages.empty());
    EXPECT_EQ(h.app->monitor().holdReasons(), std::set<std::string>{"guide"});
  }
  {
    AppHarness h(false);
    h.app->store().setGuideDone(true);
    h.launch();
    ASSERT_TRUE(h.app->guide());
    EXPECT_EQ(h.app->guide()->step(), GuideModel::Step::learn);
  }
}

TEST(AppLaunch, AThreatRevokesTheCameraForTheRunAndClosesTheIconsEyes) {
  AppHarness h(false);
  h.process.tracer = true;
  h.launch(true);
  EXPECT_FALSE(h.app->guide()) << "no guide without a camera";
  EXPECT_EQ(h.shell.pages, std::vector<PanelPage>{PanelPage::home});
  EXPECT_EQ(h.app->monitor().nextCheck(), std::nullopt);
  EXPECT_EQ(h.shell.look.eyes, StatusIcon::Eyes::closed);
  EXPECT_TRUE(h.shell.look.appearsDisabled);

  AppHarness later;
  later.launch(true);
  EXPECT_EQ(later.shell.look.eyes, StatusIcon::Eyes::open);
  later.process.tracer = true;  // a debugger attached a while after the start
  later.advance(Lockdown::checkIntervalSeconds + 10);
  EXPECT_EQ(later.shell.look.eyes, StatusIcon::Eyes::closed);
  later.app->monitor().checkNow();
  later.advance(8);
  EXPECT_EQ(later.app->monitor().report()->outcome.text(), "카메라 권한이 없어요");
}

TEST(AppLaunch, ASessionAlreadyLockedHoldsTheMonitor) {
  AppHarness h;
  h.machine.power.locked = true;
  h.launch(true);
  EXPECT_TRUE(h.app->power().screenLocked());
  EXPECT_EQ(h.app->monitor().holdReasons(), std::set<std::string>{"lock"});
  EXPECT_EQ(h.app->monitor().nextCheck(), std::nullopt);
  h.machine.power.locked = false;
  h.app->screenUnlocked();
  EXPECT_EQ(h.app->monitor().nextCheck(), h.clock.now() + 10);
}

TEST(AppLaunch, TheFirstGuideLearnsThenOpensHome) {
  AppHarness h(false);
  h.launch();
  GuideModel& guide = *h.app->guide();
  guide.go(GuideModel::Step::learn);
  guide.startLearning();
  h.advance(6.1);
  ASSERT_TRUE(guide.learn().is(GuideModel::Learn::State::done)) << guide.learn().message;
  guide.next();  // done
  guide.next();  // finish
  h.scheduler.runPosted();
  EXPECT_FALSE(h.app->guide());
  EXPECT_TRUE(h.app->store().guideDone());
  EXPECT_TRUE(h.app->monitor().baseline());
  EXPECT_FALSE(h.app->monitor().isHeld());
  EXPECT_EQ(h.shell.pages, std::vector<PanelPage>{PanelPage::home});
}

TEST(AppAlert, AnAlertShowsTheFixAndTheBorderAndACorrectionTurnsGreen) {
  AppHarness h;
  h.launch(true);
  h.machine.sitter.posture.forwardHeadCm = 9;
  h.app->monitor().checkNow();
  ASSERT_TRUE(h.runUntil(Phase::alerting, 14));
  EXPECT_TRUE(h.app->alerting());
  EXPECT_EQ(h.pill().rfind("턱을 당겨 머리를 뒤로 | 머리가 어깨보다 ", 0), 0u) << h.pill();
  EXPECT_EQ(count(h.shell.calls, "border on"), 1);
  const Pill first = *h.app->pills().current();

  h.advance(1);  // the same kind again: the pill is not replaced
  EXPECT_EQ(*h.app->pills().current(), first);

  h.machine.sitter.posture.forwardHeadCm = 0;
  ASSERT_TRUE(h.runUntil(Phase::idle, 3));
  EXPECT_FALSE(h.app->alerting());
  EXPECT_EQ(h.pill(), "좋아요, 바른 자세예요 | ");
  EXPECT_FALSE(h.app->border().shown());
}

TEST(AppAlert, WithTheBlurStyleTheBorderNeverShowsAndTheBlurFollowsTheSeverity) {
  AppHarness h;
  h.app->store().setAlertStyle(AlertStyle::blur);
  h.launch(true);
  h.machine.sitter.posture.headDropCm = 8;
  h.app->monitor().checkNow();
  ASSERT_TRUE(h.runUntil(Phase::alerting, 14));
  h.advance(1);
  EXPECT_EQ(count(h.shell.calls, "border on"), 0);
  EXPECT_GT(h.app->blur().target(), 0.9);
  h.machine.sitter.posture.headDropCm = 0;
  ASSERT_TRUE(h.runUntil(Phase::idle, 3));
  EXPECT_EQ(h.app->blur().target(), 0);
}

TEST(AppPeek, TheCompanionPeeksAtMostOnceInFifteenMinutesUnlessAskedByHand) {
  AppHarness h;  // a new user: the first good check is no celebration
  h.launch(true);
  h.advance(8.05);
  ASSERT_EQ(h.app->monitor().phase(), Phase::sampling);
  ASSERT_TRUE(h.app->pills().current());
  EXPECT_TRUE(h.app->pills().current()->isBuddy());
  ASSERT_TRUE(h.runUntil(Phase::idle, 6));
  // The good check ends the peek with a happy face, which soon goes.
  ASSERT_TRUE(h.app->pills().current());
  EXPECT_EQ(h.app->pills().current()->art.describe(), "buddy(happy)");
  h.advance(2);
  EXPECT_FALSE(h.app->pills().current());

  ASSERT_TRUE(h.runUntil(Phase::sampling, 70));
  EXPECT_FALSE(h.app->pills().current());
  ASSERT_TRUE(h.runUntil(Phase::idle, 6));
  h.app->monitor().checkNow();
  EXPECT_TRUE(h.app->pills().current() && h.app->pills().current()->isBuddy());
}

TEST(AppNudge, NudgesAndSuggestionsWaitWhileAnAlertIsUp) {
  AppHarness h;
  h.launch(true);
  h.machine.sitter.posture.forwardHeadCm = 9;
  h.app->monitor().checkNow();
  ASSERT_TRUE(h.runUntil(Phase::alerting, 14));
  const auto alertPill = h.pill();
  EXPECT_FALSE(h.app->work().canNudge());
  h.app->work().onNudge(WorkLife::Nudge::stand(55));
  h.app->monitor().onSuggest(Monitor::Suggestion::closer());
  h.app->breatheNow();
  EXPECT_EQ(h.pill(), alertPill);
}

TEST(AppNudge, AStandNudgeInvitesToStretch) {
  AppHarness h;
  h.launch(true);
  h.app->work().onNudge(WorkLife::Nudge::stand(52));
  EXPECT_EQ(h.pill(), "52분째 앉아 있어요 | 같이 스트레칭할래요? 누르면 3분 루틴을 시작해요");
  h.app->pills().click();
  EXPECT_EQ(h.shell.pages.back(), PanelPage::stretch);
}

TEST(AppBreathe, ABreathHoldsTheChecksForAMinuteAndCountsAsRest) {
  AppHarness h;
  h.launch(true);
  h.app->breatheNow();
  EXPECT_TRUE(h.app->monitor().isHeld());
  h.advance(60);
  EXPECT_FALSE(h.app->monitor().isHeld());
  EXPECT_EQ(h.pill(), "잘했어요 | 숨이 고르면 목과 어깨 힘도 풀려요");
  EXPECT_EQ(h.app->work().today().breathes, 1);
}

TEST(AppSystem, LockSleepAndDarkScreensHoldTheChecksUntilTheyEnd) {
  AppHarness h;
  h.launch(true);
  h.app->screenLocked();
  h.app->willSleep();
  h.app->screensSlept();
  EXPECT_EQ(h.app->monitor().holdReasons(), (std::set<std::string>{"display", "lock", "sleep"}));
  h.advance(600);
  EXPECT_EQ(h.app->log().entries().size(), 0u);
  h.app->didWake();
  h.app->screensWoke();
  h.app->screenUnlocked();
  EXPECT_FALSE(h.app->monitor().isHeld());
  EXPECT_FALSE(h.app->power().screenLocked());
  EXPECT_FALSE(h.app->power().displaysAsleep());
}

TEST(AppStatus, TheStatusItemFollowsTheMonitor) {
  AppHarness h;
  h.launch(true);
  const int draws = h.shell.statusDraws;
  h.app->monitor().checkNow();
  EXPECT_GT(h.shell.statusDraws, draws);
  const auto menu = h.app->quickMenu();
  EXPECT_FALSE(menu.empty());
  h.app->perform(MenuAction::openPage, 10);
  EXPECT_EQ(h.shell.pages.back(), PanelPage::settings);
  h.app->perform(MenuAction::quit);
  EXPECT_EQ(h.shell.calls.back(), "terminate");
}

TEST(AppMenu, ToggleSwitchesTheChecksWithAPillOrTeachesThePostureFirst) {
  AppHarness h;
  h.launch(true);
  h.app->perform(MenuAction::toggle);
  EXPECT_FALSE(h.app->monitor().enabled());
  EXPECT_EQ(h.pill(), "자세 확인 꺼짐 | 다시 켜기 전까지 카메라를 쓰지 않아요");
  EXPECT_EQ(h.shell.look.eyes, StatusIcon::Eyes::closed);
  h.advance(1.7);
  EXPECT_FALSE(h.pill().empty());
  h.advance(0.2);
  EXPECT_TRUE(h.pill().empty());
  h.app->perform(MenuAction::toggle);
  EXPECT_TRUE(h.app->monitor().enabled());
  EXPECT_EQ(h.pill(), "자세 확인 켜짐 | 바른 자세를 지켜볼게요");

  AppHarness fresh(false);
  fresh.app->store().setGuideDone(true);
  fresh.launch();
  fresh.app->guide()->close();
  fresh.advance(0.1);
  ASSERT_FALSE(fresh.app->guide());
  fresh.app->perform(MenuAction::toggle);
  ASSERT_TRUE(fresh.app->guide());
  EXPECT_EQ(fresh.app->guide()->step(), GuideModel::Step::learn);
  EXPECT_TRUE(fresh.app->monitor().enabled());
}

TEST(AppMenu, SetupDeskOpensTheGuidesSetupStepAndReopenShowsThePageLastShown) {
  AppHarness h;
  h.launch(false);
  h.app->perform(MenuAction::setupDesk);
  ASSERT_TRUE(h.app->guide());
  EXPECT_EQ(h.app->guide()->step(), GuideModel::Step::setup);
  h.app->reopen();  // the guide is up: nothing opens
  EXPECT_EQ(h.shell.pages, std::vector<PanelPage>{PanelPage::home});

  AppHarness later;
  later.launch(false);
  later.app->perform(MenuAction::openPage, 7);
  later.app->reopen();
  EXPECT_EQ(later.shell.pages,
            (std::vector<PanelPage>{PanelPage::home, PanelPage::history, PanelPage::history}));
}

TEST(AppState, TheGroupsSeeThePostureOnlyWhenItHasAName) {
  AppHarness h;
  h.launch(true);
  EXPECT_EQ(h.app->currentState(), MateState::desk);

  h.machine.sitter.posture.forwardHeadCm = 9;
  h.app->monitor().checkNow();
  ASSERT_TRUE(h.runUntil(Phase::alerting, 14));
  EXPECT_EQ(h.app->currentState(), MateState::turtle);
  h.machine.sitter.posture.forwardHeadCm = 0;
  ASSERT_TRUE(h.runUntil(Phase::idle, 3));

  // A tilted head has no state of its own: the next test decides, and the
  // user at the desk is in a focus session by now.
  h.machine.sitter.posture.headRollDeg = 10;
  h.app->monitor().checkNow();
  ASSERT_TRUE(h.runUntil(Phase::alerting, 14));
  ASSERT_EQ(h.app->monitor().reading()->issues.front().kind, IssueKind::headTilt);
  ASSERT_TRUE(h.app->focus().session());
  EXPECT_EQ(h.app->currentState(), MateState::focus);

  h.app->screenLocked();
  EXPECT_EQ(h.app->currentState(), MateState::away);
  EXPECT_EQ(MateState::fromRaw("dancing"), MateState::offline);
  EXPECT_EQ(MateState(MateState::turtle).title(), "거북목 됐어요");
}

TEST(BuddySight, EasesTowardsTheTargetAndRestsAfterAClear) {
  BuddySight sight;
  const Date t0{100};
  EXPECT_EQ(sight.current(t0), std::nullopt);
  sight.set(0.5, -2, t0);  // clamped
  EXPECT_EQ(sight.current(t0), (Point{0.5, -1}));
  sight.set(-0.5, 0, t0 + 1);
  const auto midway = *sight.current(t0 + 1 + BuddySight::easeSeconds / 2);
  EXPECT_NEAR(midway.x, 0, 1e-9);
  EXPECT_EQ(sight.current(t0 + 2), (Point{-0.5, 0}));
  sight.clear();
  EXPECT_EQ(sight.current(t0 + 3), std::nullopt);

  Measurement m;
  m.size = {1280, 720};
  m.eyeL = {260, 540};
  m.eyeR = {380, 540};  // upper left of the picture
  EXPECT_EQ(BuddySight::face(m), (Point{0.5, -0.5}));
}

}  // namespace
}  // namespace sodam
