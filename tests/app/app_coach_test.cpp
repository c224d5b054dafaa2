#include <gtest/gtest.h>

#include "app/app_harness.h"
#include "coach/stretch_library.h"

namespace sodam {
namespace {

using testing::AppHarness;
using Kind = CoachSession::Phase::Kind;

std::vector<std::string> ids(const std::vector<Stretch>& stretches) {
  std::vector<std::string> out;
  for (const auto& s : stretches)
    out.push_back(s.id);
  return out;
}

TEST(AppCoach, TheNudgeStartsTheDaysRoutineAndASecondCallOnlyShowsIt) {
  AppHarness h;
  h.launch(true);
  h.app->work().onNudge(WorkLife::Nudge::stand(52));
  h.app->pills().click();
  CoachSession* session = h.app->panelModel().session();
  ASSERT_TRUE(session);
  EXPECT_EQ(ids(session->items()),
            (std::vector<std::string>{"chinTuck", "chest", "neckSide", "catCow"}));
  EXPECT_EQ(h.app->monitor().holdReasons(), std::set<std::string>{"coach"});
  EXPECT_EQ(h.shell.pages.back(), PanelPage::stretch);
  EXPECT_EQ(h.app->currentState(), MateState::stretch);

  h.advance(5);
  h.app->perform(MenuAction::startRoutine);
  EXPECT_EQ(h.app->panelModel().session(), session);
  EXPECT_EQ(h.shell.pages.back(), PanelPage::stretch);
  // No nudge and no relearning while the session is up.
  EXPECT_FALSE(h.app->work().canNudge());
  EXPECT_FALSE(h.app->monitor().canRelearn());
}

TEST(AppCoach, TheRoutineFollowsTheWeeksAlerts) {
  AppHarness h;
  h.launch(true);
  for (int i = 0; i < 3; ++i)
    h.app->log().record(PostureEntry::Kind::alert, {IssueKind::tooClose});
  EXPECT_EQ(ids(h.app->panelModel().routine()).front(), "eyes");
}

TEST(AppCoach, TheGuideEndsTheSessionAndClosingLetsItGo) {
  AppHarness h;
  h.launch(true);
  h.app->startRoutine();
  ASSERT_TRUE(h.app->panelModel().session());
  h.app->openGuide(GuideModel::Step::learn);
  EXPECT_FALSE(h.app->panelModel().session());
  EXPECT_EQ(h.app->monitor().holdReasons(), std::set<std::string>{"guide"});
  // While the guide is up the routine does not start.
  h.app->startRoutine();
  EXPECT_FALSE(h.app->panelModel().session());

  AppHarness other;
  other.launch(true);
  other.app->panelModel().start({*StretchLibrary::find("eyes")});
  other.app->panelModel().session()->close();
  EXPECT_TRUE(other.app->panelModel().session());  // let go on the next turn
  other.advance(0.1);
  EXPECT_FALSE(other.app->panelModel().session());
  EXPECT_FALSE(other.app->monitor().isHeld());
}

TEST(AppCoach, AFinishedRoutineIsARestForTheWorkDay) {
  AppHarness h;
  h.launch(true);
  h.machine.access.granted = false;
  h.app->feed().requestAccess({});
  h.app->panelModel().start({*StretchLibrary::find("eyes")});
  h.advance(26);
  ASSERT_TRUE(h.app->panelModel().session()->phase().is(Kind::done));
  EXPECT_EQ(h.app->work().today().stands, 1);
  EXPECT_EQ(h.app->log().stretches().size(), 1u);
  EXPECT_FALSE(h.app->monitor().isHeld());
}

}  // namespace
}  // namespace sodam
