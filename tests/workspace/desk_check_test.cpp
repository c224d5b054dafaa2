#include "workspace/desk_check.h"

#include <gtest/gtest.h>

#include <cmath>

namespace sodam {
namespace {

using Rule = DeskCheck::Rule;
using Verdict = DeskCheck::Verdict;

std::string brokenKeys(const DeskSetup& setup) {
  std::string out;
  for (const auto& check : DeskCheck::broken(DeskGeometry(setup)))
    out += std::string(DeskCheck::ruleKey(check.rule)) + " ";
  return out;
}

DeskCheck checkOf(const DeskSetup& setup, Rule rule) {
  for (const auto& check : DeskCheck::judge(DeskGeometry(setup)))
    if (check.rule == rule) return check;
  ADD_FAILURE() << "no check " << DeskCheck::ruleKey(rule);
  return {};
}

// The table the desk page's documentation repeats: what the default setup
// of each kind, for a user 170 tall, gets wrong.
TEST(DeskCheck, TheDefaultSetupOfEachKindBreaksTheseRules) {
  const std::pair<DeskKind, std::string> table[] = {
      {DeskKind::laptop, "screenTop neck wrist "},
      {DeskKind::laptopStand, ""},
      {DeskKind::monitor, ""},
      {DeskKind::dualMonitor, ""},
      {DeskKind::laptopMonitor, ""},
      {DeskKind::standing, "screenTop "},
      {DeskKind::cafe, "screenTop neck wrist "},
      {DeskKind::sofa, "screenTop distance neck elbow "},
  };
  for (const auto& [kind, broken] : table)
    EXPECT_EQ(brokenKeys(DeskSetup().switched(kind)), broken) << kind.raw();
}

TEST(DeskCheck, TheLaptopAloneSaysWhatIsWrongInTheProductsWords) {
  const auto checks = DeskCheck::judge(DeskGeometry(DeskSetup()));
  ASSERT_EQ(checks.size(), 6u);
  EXPECT_EQ(checks[0].line, "화면 위끝이 눈보다 29센티 낮아요");
  EXPECT_EQ(checks[0].tip,
            "고개를 숙이게 돼요. 받침대나 책으로 화면을 올려 위끝이 눈높이와 같거나 조금 아래에 "
            "오게 해 주세요.");
  EXPECT_EQ(checks[1].line, "화면과 알맞게 떨어져 있어요");
  EXPECT_TRUE(checks[1].tip.empty());
  EXPECT_EQ(checks[2].line, "화면 가운데를 35도 내려다봐요");
  EXPECT_EQ(checks[4].line, "자판이 팔꿈치보다 7센티 높아요");
  EXPECT_EQ(DeskCheck::ruleName(checks[5].rule), "발 받침");
  // Standing has no seat to judge.
  EXPECT_EQ(DeskCheck::judge(DeskGeometry(DeskSetup().switched(DeskKind::standing))).size(), 5u);
}

TEST(DeskCheck, TheScreensTopMayFallFifteenBelowTheEyeAndNoMore) {
  DeskSetup s = DeskSetup().switched(DeskKind::monitor);
  const DeskGeometry g(s);
  // Lower the stand until the top is exactly 15 under the eye.
  s.stand -= 15 - g.eyeAboveScreenTop();
  EXPECT_NEAR(DeskGeometry(s).eyeAboveScreenTop(), 15, 1e-9);
  EXPECT_TRUE(checkOf(s, Rule::screenTop).good());
  s.stand -= 0.01;
  EXPECT_EQ(checkOf(s, Rule::screenTop).verdict, Verdict::high);
  // Far above the eye it is off the other way.
  s.stand += 30;
  const DeskCheck above = checkOf(s, Rule::screenTop);
  EXPECT_EQ(above.verdict, Verdict::low);
  EXPECT_EQ(above.line, "화면 위끝이 눈보다 15센티 높아요");
}

TEST(DeskCheck, DistanceAllowsABigScreenFurther) {
  DeskSetup s = DeskSetup().switched(DeskKind::monitor);
  s.depth = 85;  // about 104 from the eye: too far for 24 inches, not for 32
  EXPECT_EQ(checkOf(s, Rule::distance).verdict, Verdict::high);
  s.monitorSize = 32;
  EXPECT_TRUE(checkOf(s, Rule::distance).good());
  DeskSetup near;
  near.gap = 0;
  near.depth = 20;
  const DeskCheck close = checkOf(near, Rule::distance);
  EXPECT_EQ(close.verdict, Verdict::low);
  EXPECT_LT(close.value, DeskCheck::closestViewCm);
}

TEST(DeskCheck, AnArmThatCannotReachTheKeysIsTooFarWhateverItsAngle) {
  DeskSetup s = DeskSetup().switched(DeskKind::monitor);
  s.gap = 60;
  const DeskCheck far = checkOf(s, Rule::elbow);
  EXPECT_EQ(far.verdict, Verdict::high);
  EXPECT_EQ(far.line, "팔을 180도로 뻗어 자판을 쳐요");
}

TEST(DeskCheck, HangingFeetAndRaisedKneesAreTheSeatsTwoWaysWrong) {
  DeskSetup high;
  high.seat = 63;
  const DeskCheck dangling = checkOf(high, Rule::feet);
  EXPECT_EQ(dangling.verdict, Verdict::high);
  EXPECT_EQ(dangling.line, "발이 바닥에서 2센티 떠요");
  // A footrest under them settles it.
  high.footrest = 10;
  EXPECT_TRUE(checkOf(high, Rule::feet).good());

  DeskSetup low;
  low.seat = 30;
  const DeskCheck knees = checkOf(low, Rule::feet);
  EXPECT_EQ(knees.verdict, Verdict::low);
  EXPECT_NEAR(knees.value, 45.34 - 30 - 9, 1e-9);
  EXPECT_EQ(knees.line, "무릎이 엉덩이보다 6센티 높아요");
}

TEST(DeskCheck, KeysFarBelowTheElbowAreTooLow) {
  DeskSetup s = DeskSetup().switched(DeskKind::monitor);
  s.seat = 62;
  s.desk = 55;
  const DeskCheck wrist = checkOf(s, Rule::wrist);
  EXPECT_EQ(wrist.verdict, Verdict::low);
  EXPECT_EQ(wrist.line, "자판이 팔꿈치보다 29센티 낮아요");
}

}  // namespace
}  // namespace sodam
