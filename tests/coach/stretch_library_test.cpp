#include "coach/stretch_library.h"

#include <gtest/gtest.h>

#include <map>

namespace sodam {
namespace {

std::vector<std::string> ids(const std::vector<Stretch>& stretches) {
  std::vector<std::string> out;
  for (const auto& s : stretches)
    out.push_back(s.id);
  return out;
}

using Ids = std::vector<std::string>;

TEST(StretchLibrary, HoldsTheFourteenInOrderEachKeyStartingFromItsStagesRest) {
  EXPECT_EQ(ids(StretchLibrary::all()),
            (Ids{"chinTuck", "neckSide", "levator", "neckFlex", "neckExt", "chest", "squeeze",
                 "catCow", "sideBend", "twist", "shrug", "reach", "eyes", "wrist"}));
  const Stretch& chest = *StretchLibrary::find("chest");
  EXPECT_EQ(chest.motion.keys[0].pose, Pose::side());
  EXPECT_EQ(chest.name, "가슴 열기");
  EXPECT_EQ(areaName(chest.area), "가슴");
  EXPECT_TRUE(chest.turn);
  EXPECT_EQ(StretchLibrary::find("chinTuck")->motion.keys[1].pose.headForward, -1);
  EXPECT_EQ(StretchLibrary::find("neckside"), nullptr);
}

TEST(Stretch, TimesComeFromWholeLoops) {
  const Stretch& neckSide = *StretchLibrary::find("neckSide");
  EXPECT_DOUBLE_EQ(neckSide.motion.duration(), 12.8);
  EXPECT_EQ(neckSide.reps(), 2);
  EXPECT_DOUBLE_EQ(neckSide.duration(), 25.6);
  EXPECT_EQ(neckSide.shownSeconds(), 26);
  EXPECT_EQ(neckSide.totalSeconds(), 51);
  // Planned seconds shorter than half a loop still play one loop.
  Stretch brief = *StretchLibrary::find("eyes");
  brief.seconds = 5;
  EXPECT_EQ(brief.reps(), 1);
  EXPECT_GT(brief.duration(), brief.seconds);
  EXPECT_EQ(neckSide.focus(Side::left), (std::vector<Focus>{Focus::neckSide(1)}));
}

TEST(StretchLibrary, ARoutineWithoutARecordIsTheFavouritesInTheirOrder) {
  const auto routine = StretchLibrary::routine({});
  EXPECT_EQ(ids(routine), (Ids{"chinTuck", "chest", "neckSide", "catCow"}));
  EXPECT_EQ(StretchLibrary::totalSeconds(routine), 30 + 36 + 51 + 38);
  EXPECT_TRUE(StretchLibrary::routine({}, 0).empty());
}

TEST(StretchLibrary, ARoutineTakesTheIssuesHelpersAtMostTwoOfAnArea) {
  // Forward head lifts five neck stretches; only two may come.
  const auto forward = StretchLibrary::routine({{IssueKind::forwardHead, 1.0}});
  EXPECT_EQ(ids(forward), (Ids{"chinTuck", "chest", "neckSide", "squeeze"}));
  // Equal scores keep the library's order: levator, neckExt and reach tie, and
  // levator's place fills the neck before neckExt's turn comes.
  const auto down = StretchLibrary::routine({{IssueKind::lookingDown, 1.0}}, 6);
  EXPECT_EQ(ids(down), (Ids{"chinTuck", "catCow", "eyes", "levator", "reach", "chest"}));
  // More than the rule allows gives fewer: two of neck, back and waist, one of
  // each other area.
  EXPECT_EQ(StretchLibrary::routine({}, 20).size(), 10u);
}

TEST(StretchLibrary, TheWristAnswersNoIssueAndScoresItsBonusAlone) {
  std::map<IssueKind, double> all;
  for (IssueKind kind : IssueKind::all())
    all[kind] = 1;
  const auto routine = StretchLibrary::routine(all, 20);
  EXPECT_EQ(routine.back().id, "wrist");
}

TEST(StretchLibrary, ReasonsAreTheTwoHeaviestIssuesLines) {
  EXPECT_TRUE(StretchLibrary::reasons({}).empty());
  EXPECT_EQ(StretchLibrary::reasons(
                {{IssueKind::slouch, 0.4}, {IssueKind::tooClose, 1.0}, {IssueKind::lean, 0.7}}),
            (Ids{"화면에 자주 다가가 눈을 쉬게 해요", "몸이 자주 한쪽으로 쏠려 옆구리를 늘려요"}));
  // Two kinds with one line give it twice.
  EXPECT_EQ(StretchLibrary::reasons({{IssueKind::forwardHead, 1.0}, {IssueKind::leaning, 1.0}}),
            (Ids{"머리가 자주 앞으로 나와 목 앞뒤를 풀어요",
                 "머리가 자주 앞으로 나와 목 앞뒤를 풀어요"}));
}

}  // namespace
}  // namespace sodam
