#include "sim/stretch_follower.h"

#include <gtest/gtest.h>

#include <map>

#include "coach/session_harness.h"

namespace sodam {
namespace {

using Kind = CoachSession::Phase::Kind;
using testing::SessionHarness;

std::vector<std::string> everyStretch() {
  std::vector<std::string> ids;
  for (const auto& s : StretchLibrary::all())
    ids.push_back(s.id);
  return ids;
}

// A routine followed by the sitter from start to end; the session stays
// until the harness goes.
struct Followed {
  SessionHarness h;
  StretchFollower follower;
  CoachSession& session;

  Followed(const std::vector<std::string>& ids, StretchFollower::Habits habits)
      : follower(
            h.machine.sitter, [this] { return h.app->panelModel().session(); }, h.scheduler,
            h.clock, habits, 5),
        session(h.start(ids)) {}

  bool finish() { return h.runUntil(Kind::done, 1500); }
};

TEST(StretchFollower, AGoodFollowerIsCountedForAtLeastFourFifthsOfEveryTarget) {
  Followed f(everyStretch(), StretchFollower::good());
  ASSERT_TRUE(f.finish());
  for (const auto& r : f.session.results()) {
    const Stretch& stretch = *StretchLibrary::find(r.id);
    // Only the wrist can't be followed sideways; everything else has a target.
    EXPECT_EQ(r.target > 0, r.id != "wrist") << r.id;
    if (r.target == 0) continue;
    EXPECT_GE(r.reps, 0.8 * r.target) << r.id;
    EXPECT_NEAR(r.seconds, stretch.duration(), 0.2) << r.id;
  }
  EXPECT_GE(*f.session.accuracy(), 0.8);
  EXPECT_EQ(f.h.app->log().stretches().size(), 1u);
}

TEST(StretchFollower, APoorFollowerIsCountedForAboutWhatItDid) {
  Followed good(everyStretch(), StretchFollower::good());
  Followed poor(everyStretch(), StretchFollower::poor());
  ASSERT_TRUE(good.finish());
  ASSERT_TRUE(poor.finish());
  for (const auto& r : poor.session.results()) {
    const Stretch& stretch = *StretchLibrary::find(r.id);
    // Never turned sideways, it gives the side stretches nothing to count.
    if (stretch.turn) {
      EXPECT_EQ(r.reps, 0) << r.id;
      continue;
    }
    // It stops after two loops of each side and sits at rest. Half the
    // movement lies at the counting level, where the camera's jitter can add
    // one. Where a loop starts away from rest (the shrug starts up), resting
    // itself lies between the two levels and is left out.
    const Motion motion = stretch.motionFor(r.side);
    if (motion.keys.front().pose == stretch.rest()) {
      EXPECT_LE(r.reps, 2 * RepGoal::of(motion, stretch.stage)->perCycle + 1) << r.id;
    }
  }
  EXPECT_LT(*poor.session.accuracy(), 0.5);
  EXPECT_LT(*poor.session.accuracy(), *good.session.accuracy() - 0.4);
  // It left the chair once for a while, and was seen missing for that long.
  double missing = 0;
  for (const auto& r : poor.session.results())
    missing += r.missingSeconds;
  EXPECT_NEAR(missing, StretchFollower::poor().awayForSeconds, 2);
}

TEST(StretchFollower, LeavingTheChairPausesNothingAndCountsAsAway) {
  StretchFollower::Habits leaves = StretchFollower::good();
  leaves.leavesAfterSeconds = 6;
  leaves.awayForSeconds = 10;
  Followed f({"chinTuck", "neckSide"}, leaves);
  Followed stays({"chinTuck", "neckSide"}, StretchFollower::good());
  ASSERT_TRUE(f.finish());
  ASSERT_TRUE(stays.finish());
  // The routine ends when it would have; only the count knows.
  EXPECT_NEAR(f.h.clock.now() - stays.h.clock.now(), 0, 0.15);
  EXPECT_NEAR(f.session.elapsed(), stays.session.elapsed(), 0.15);
  const auto& tuck = f.session.results().front();
  EXPECT_NEAR(tuck.missingSeconds, 10, 0.5);
  EXPECT_LT(tuck.reps, stays.session.results().front().reps);
  EXPECT_EQ(f.session.results()[1].missingSeconds, 0);
}

TEST(StretchFollower, ASidewaysSitterGivesTheCoachItsNeutral) {
  Followed f({"chinTuck", "catCow"}, StretchFollower::good());
  ASSERT_TRUE(f.h.runUntil(Kind::turn, 60));
  EXPECT_FALSE(f.session.sideNeutral());
  ASSERT_TRUE(f.h.runUntil(Kind::ready, 15));
  const auto& neutral = f.session.sideNeutral();
  ASSERT_TRUE(neutral);
  // Turned to the right, the sitter faces the image's left.
  EXPECT_EQ(neutral->facing, -1);
  EXPECT_TRUE(neutral->lean && neutral->forward && neutral->pitch);
  EXPECT_TRUE(f.session.sideSeen());
  EXPECT_FALSE(f.session.turnSlow());
  ASSERT_TRUE(f.finish());
  EXPECT_GE(f.session.results().back().reps, 4);
}

TEST(StretchFollower, ASitterWhoNeverTurnsIsLetThroughOnTime) {
  Followed f({"squeeze"}, StretchFollower::poor());
  ASSERT_TRUE(f.h.runUntil(Kind::turn, 30));
  ASSERT_TRUE(f.h.runUntil(Kind::active, 20));
  EXPECT_FALSE(f.session.sideNeutral());
  ASSERT_TRUE(f.finish());
  EXPECT_EQ(f.session.results().front().reps, 0);
}

}  // namespace
}  // namespace sodam
