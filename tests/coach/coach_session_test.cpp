#include "coach/coach_session.h"

#include <gtest/gtest.h>

#include "session_harness.h"

namespace sodam {
namespace {

using Kind = CoachSession::Phase::Kind;
using testing::SessionHarness;

TEST(CoachSession, WithoutTheCameraRunsBothSidesOnTimeAndLogsNoAccuracy) {
  SessionHarness h(false);
  CoachSession& s = h.start({"neckSide"});
  EXPECT_EQ(s.phase(), (CoachSession::Phase{Kind::ready, 3}));
  EXPECT_TRUE(h.app->monitor().isHeld());
  h.advance(1.05);
  EXPECT_EQ(s.phase().seconds, 2);
  ASSERT_TRUE(h.runUntil(Kind::active, 3));
  EXPECT_EQ(s.repTarget(), 0);
  EXPECT_EQ(*s.cue(), "어깨 힘을 빼고 바르게 앉아요");
  ASSERT_TRUE(h.runUntil(Kind::switching, 26));
  EXPECT_EQ(s.side(), Side::left);
  ASSERT_TRUE(h.runUntil(Kind::active, 3.1));
  EXPECT_EQ(*s.cue(), "어깨 힘을 빼고 바르게 앉아요");
  h.advance(2.1);
  EXPECT_EQ(*s.cue(), "왼손을 머리 위로 넘겨 오른쪽 귀 위에 얹어요");
  ASSERT_TRUE(h.runUntil(Kind::done, 26));

  EXPECT_NEAR(s.elapsed(), 51.2, 0.25);
  const auto& logged = h.app->log().stretches();
  ASSERT_EQ(logged.size(), 1u);
  EXPECT_EQ(logged.back().ids, std::vector<std::string>{"neckSide"});
  EXPECT_EQ(logged.back().seconds, 51);
  EXPECT_FALSE(logged.back().accuracy);
  // The monitor is free again and the rest counts for the work day.
  EXPECT_FALSE(h.app->monitor().isHeld());
  EXPECT_EQ(h.app->work().today().stands, 1);
}

TEST(CoachSession, StartsOnceTheCameraSeesTheUserForASecond) {
  SessionHarness h;
  h.machine.sitter.present = false;
  CoachSession& s = h.start({"chinTuck"});
  EXPECT_TRUE(s.phase().is(Kind::frame));
  EXPECT_TRUE(h.app->feed().running());
  h.advance(3);
  EXPECT_TRUE(s.phase().is(Kind::frame));
  EXPECT_EQ(*s.framingHint(), "얼굴이 보이게 화면 앞에 앉아요");
  // The tuck moves no arm, so only the arms' check passes an empty chair.
  EXPECT_NEAR(s.recognition(), 0.2, 0.011);

  h.machine.sitter.present = true;
  ASSERT_TRUE(h.runUntil([&] { return s.recognition() >= 0.8; }, 3));
  const Date framed = h.clock.now();
  ASSERT_TRUE(h.runUntil(Kind::ready, 3));
  EXPECT_NEAR(h.clock.now() - framed, 1, 0.25);
  EXPECT_TRUE(s.seen());
}

TEST(CoachSession, FramingThatSlipsInsideTheSecondWaitsAgain) {
  SessionHarness h;
  h.machine.sitter.present = false;
  CoachSession& s = h.start({"chinTuck"});
  h.advance(2);
  h.machine.sitter.present = true;
  ASSERT_TRUE(h.runUntil([&] { return s.recognition() >= 0.8; }, 3));
  const Date framed = h.clock.now();
  h.advance(0.5);
  h.machine.sitter.present = false;
  ASSERT_TRUE(h.runUntil([&] { return s.recognition() < 0.8; }, 2));
  h.machine.sitter.present = true;
  ASSERT_TRUE(h.runUntil(Kind::ready, 5));
  EXPECT_GT(h.clock.now() - framed, 1.5);
}

TEST(CoachSession, SeenHoldsThroughAShortGapAndFallsAfterALongOne) {
  SessionHarness h;
  CoachSession& s = h.start({"eyes"});
  ASSERT_TRUE(h.runUntil([&] { return s.seen(); }, 3));
  h.machine.sitter.present = false;
  ASSERT_TRUE(h.runUntil([&] { return s.recognition() < 0.55; }, 3));
  h.advance(1.3);
  EXPECT_TRUE(s.seen());
  h.advance(0.4);
  EXPECT_FALSE(s.seen());
  h.machine.sitter.present = true;
  ASSERT_TRUE(h.runUntil([&] { return s.seen(); }, 3));
  EXPECT_GE(s.recognition(), 0.75);
}

TEST(CoachSession, APauseStopsTheMotionClock) {
  SessionHarness h;
  CoachSession& s = h.start({"chinTuck"});
  ASSERT_TRUE(h.runUntil(Kind::active, 6));
  h.advance(4);
  s.togglePause();
  const double remaining = s.remaining();
  h.advance(7);
  EXPECT_TRUE(s.paused());
  EXPECT_DOUBLE_EQ(s.remaining(), remaining);
  s.togglePause();
  h.advance(0.1);
  EXPECT_NEAR(s.remaining(), remaining - 0.1, 0.11);
}

TEST(CoachSession, SkipCountsNoTargetAndPreviousGoesBackToTheRightSide) {
  SessionHarness h(false);
  CoachSession& s = h.start({"chinTuck", "neckSide", "eyes"});
  ASSERT_TRUE(h.runUntil(Kind::active, 4));
  s.skip();
  EXPECT_EQ(s.index(), 1);
  EXPECT_EQ(s.phase(), (CoachSession::Phase{Kind::rest, 5}));
  ASSERT_TRUE(h.runUntil(Kind::switching, 40));
  EXPECT_EQ(s.side(), Side::left);
  s.previous();
  EXPECT_EQ(s.index(), 0);
  EXPECT_EQ(s.side(), Side::right);
  EXPECT_EQ(s.phase(), (CoachSession::Phase{Kind::ready, 3}));
  ASSERT_EQ(s.results().size(), 2u);
  EXPECT_TRUE(s.results()[0].skipped);
  EXPECT_FALSE(s.results()[1].skipped);
  EXPECT_DOUBLE_EQ(s.progress(1), 1.0 / 3);
  EXPECT_EQ(s.next()->id, "neckSide");
  EXPECT_EQ(s.prior(), nullptr);
}

TEST(CoachSession, ClosingEarlyLogsNothingAndFreesTheCamera) {
  SessionHarness h;
  bool closed = false;
  CoachSession& s = h.start({"chinTuck"});
  s.onClose = [&] { closed = true; };
  ASSERT_TRUE(h.runUntil(Kind::active, 6));
  EXPECT_TRUE(h.app->feed().running());
  s.close();
  EXPECT_TRUE(closed);
  EXPECT_FALSE(h.app->feed().running());
  EXPECT_FALSE(h.app->monitor().isHeld());
  h.advance(30);
  EXPECT_TRUE(h.app->log().stretches().empty());
}

TEST(CoachSession, LookingFarForTwelveSecondsRestsTheEyes) {
  SessionHarness h;
  CoachSession& s = h.start({"eyes"});
  ASSERT_TRUE(h.runUntil(Kind::active, 6));
  EXPECT_EQ(s.repTarget(), 1);
  h.advance(2);
  EXPECT_FALSE(s.lookingFar());
  h.machine.sitter.posture.headYawDeg = 40;
  h.advance(6);
  EXPECT_TRUE(s.lookingFar());
  EXPECT_NEAR(s.reach(), 6.0 / 12, 0.1);
  h.advance(6.3);
  EXPECT_EQ(s.reps(), 1);
  EXPECT_EQ(h.app->work().today().eyeBreaks, 1);
  ASSERT_TRUE(h.runUntil(Kind::done, 10));
  EXPECT_DOUBLE_EQ(*h.app->log().stretches().back().accuracy, 1);
}

}  // namespace
}  // namespace sodam
