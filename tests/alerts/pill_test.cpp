#include "alerts/pill.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

using Art = Pill::Art;
using Mood = PillEyes::Mood;

TEST(PillTest, PillsMadeAMomentApartDiffer) {
  Pill first(Date{10}, "checkmark", Theme::green, "좋아요, 바른 자세예요");
  Pill again(Date{10}, Art::symbol("checkmark"), Theme::green, "좋아요, 바른 자세예요");
  Pill later(Date{10.5}, "checkmark", Theme::green, "좋아요, 바른 자세예요");
  EXPECT_EQ(first, again);
  EXPECT_NE(first, later);
  EXPECT_EQ(first.art, later.art);
}

TEST(PillTest, ArtsEqualOnlyInCaseAndPayload) {
  // Same payloads under different cases must differ: an alert compares arts.
  EXPECT_NE(Art::buddy(Mood::happy), Art::say(Mood::happy));
  EXPECT_NE(Art::countdown(13), Art::breathe(13));
  EXPECT_NE(Art::fix(IssueKind::slouch), Art::fix(IssueKind::forwardHead));
  EXPECT_EQ(Art::fix(IssueKind::slouch), Art::fix(IssueKind::slouch));
  EXPECT_NE(Art::symbol("checkmark"), Art::symbol("leaf.fill"));
}

TEST(PillTest, OnlyTheCompanionsArtsAreBuddies) {
  EXPECT_TRUE(Pill(Date{}, Art::buddy(Mood::sleepy), Theme::white).isBuddy());
  Pill say(Date{}, Art::say(Mood::curious), Theme::white, "50분째 앉아 있어요");
  EXPECT_TRUE(say.isBuddy() && say.isSay());
  EXPECT_FALSE(Art::buddy(Mood::focus).isSay());
  EXPECT_FALSE(Art::countdown(13).isBuddy() || Art::fix(IssueKind::lean).isBuddy());
  EXPECT_EQ(Art::say(Mood::love).describe(), "say(love)");
}

}  // namespace
}  // namespace sodam
