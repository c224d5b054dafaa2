#include "app/panel_model.h"

#include <gtest/gtest.h>

#include "app/app_harness.h"

namespace sodam {
namespace {

using testing::AppHarness;
using P = PanelPage;

TEST(PanelNavigation, TheSidebarsSectionsAndTheGroupFamily) {
  const auto& sections = panelSections();
  ASSERT_EQ(sections.size(), 4u);
  EXPECT_EQ(sections[0].title, std::nullopt);
  EXPECT_EQ(sections[0].pages, (std::vector<P>{P::home, P::focus, P::groups, P::dorani}));
  EXPECT_EQ(sections[1].title, "바로잡기");
  EXPECT_EQ(sections[1].pages, (std::vector<P>{P::stretch, P::desk}));
  EXPECT_EQ(sections[2].title, "살펴보기");
  EXPECT_EQ(sections[2].pages, (std::vector<P>{P::history, P::doctor}));
  EXPECT_TRUE(sections[3].footer);
  EXPECT_EQ(sections[3].pages, (std::vector<P>{P::camera, P::settings}));

  // Ranking and calendar live behind the group pages' own header.
  for (P page : {P::groups, P::ranking, P::calendar}) {
    EXPECT_EQ(sidebarPage(page), P::groups);
    EXPECT_EQ(pageFamily(page), (std::vector<P>{P::groups, P::ranking, P::calendar}));
  }
  for (P page : orderedPanelPages()) {
    if (page == P::groups) continue;
    EXPECT_EQ(pageFamily(page), std::vector<P>{page});
  }
  EXPECT_EQ(pageTitle(P::history), "리포트");
  EXPECT_EQ(pageCaption(P::settings), "확인 방식·알림·보안");
}

TEST(PanelNavigation, OpeningShowsTheWindowAndReopeningShowsThePageLastShown) {
  AppHarness h;
  h.launch(true);
  PanelModel& panel = h.app->panelModel();
  int changes = 0;
  panel.onChange.subscribe([&changes] { ++changes; });
  EXPECT_FALSE(panel.visible());
  EXPECT_EQ(panel.page(), P::home);

  h.app->perform(MenuAction::openSettings);
  EXPECT_TRUE(panel.visible());
  EXPECT_EQ(panel.page(), P::settings);
  EXPECT_GT(changes, 0);

  // Inside the window the page changes without asking the shell again.
  panel.go(P::ranking);
  EXPECT_EQ(h.shell.pages, std::vector<P>{P::settings});
  panel.setVisible(false);
  h.app->reopen();
  EXPECT_EQ(h.shell.pages, (std::vector<P>{P::settings, P::ranking}));
  EXPECT_TRUE(panel.visible());
}

TEST(PanelNavigation, TheHomeCardClosesWhenHomeIsLeftAndRemembersWhichItWas) {
  AppHarness h;
  h.launch(false);
  PanelModel& panel = h.app->panelModel();
  panel.openCard(HomeCard::worklife);
  panel.coverCard(true);
  EXPECT_TRUE(panel.homeCardOpen());
  EXPECT_TRUE(panel.homeCardCover());
  panel.go(P::history);
  EXPECT_FALSE(panel.homeCardOpen());
  EXPECT_FALSE(panel.homeCardCover());
  EXPECT_EQ(panel.homeCard(), HomeCard::worklife);
  panel.coverCard(true);  // no open card to cover
  EXPECT_FALSE(panel.homeCardCover());
}

TEST(PanelFollow, TheCompanionsHoldStandsOnlyWhileItsPageIsInFront) {
  AppHarness h;
  h.launch(false);
  PanelModel& panel = h.app->panelModel();
  Monitor& monitor = h.app->monitor();
  const auto held = [&monitor] { return monitor.holdReasons().count("dorani") == 1; };

  panel.follow(true);  // home is in front
  EXPECT_FALSE(panel.following());
  panel.go(P::dorani);
  panel.follow(true);
  EXPECT_TRUE(panel.following());
  EXPECT_TRUE(held());
  EXPECT_EQ(monitor.nextCheck(), std::nullopt);

  // The user went to another application.
  h.app->deactivated();
  EXPECT_FALSE(panel.following());
  EXPECT_FALSE(held());
  EXPECT_NE(monitor.nextCheck(), std::nullopt);

  // Each way of leaving the page ends it too.
  panel.follow(true);
  panel.go(P::settings);
  EXPECT_FALSE(held());
  panel.go(P::dorani);
  panel.follow(true);
  panel.setVisible(false);
  EXPECT_FALSE(held());
  panel.open(P::dorani);
  panel.follow(true);
  h.app->perform(MenuAction::relearn);
  EXPECT_FALSE(panel.following());
  EXPECT_EQ(monitor.holdReasons(), std::set<std::string>{"guide"});
}

TEST(PanelFollow, TheUsersSwitchKeepsTheEyesStill) {
  AppHarness h;
  h.launch(false);
  h.app->store().setFollowFace(false);
  PanelModel& panel = h.app->panelModel();
  panel.open(P::dorani);
  panel.follow(true);
  EXPECT_FALSE(panel.following());
  EXPECT_FALSE(h.app->monitor().isHeld());
}

TEST(PanelActions, ThePagesReachTheApplicationsActions) {
  AppHarness h;
  h.launch(true);
  PanelModel& panel = h.app->panelModel();
  panel.breathe();
  EXPECT_TRUE(h.app->monitor().holdReasons().count("breathe"));
  panel.previewAlert(AlertStyle::border);
  EXPECT_EQ(h.shell.calls.back(), "border on");
  panel.openGuide(GuideModel::Step::setup);
  ASSERT_TRUE(h.app->guide());
  EXPECT_EQ(h.app->guide()->step(), GuideModel::Step::setup);
  panel.quit();
  EXPECT_EQ(h.shell.calls.back(), "terminate");
}

}  // namespace
}  // namespace sodam
