#include "app/dorani_page.h"

#include <gtest/gtest.h>

#include "app/app_harness.h"

namespace sodam {
namespace {

using testing::AppHarness;
using Phase = Monitor::Phase;
using Kind = PostureEntry::Kind;

// Yesterday's records, worth exactly the 40 points of the second level.
void fortyPointsYesterday(AppHarness& h) {
  const Date now = h.clock.now();
  h.clock.set(now - 86400);
  for (int i = 0; i < 40; ++i) {
    h.app->log().record(i < 30 ? Kind::good : Kind::corrected);
    h.clock.advance(60);
  }
  h.clock.set(now);
}

TEST(DoraniApp, ALevelReachedIsCelebratedOnceAtTheNextGoodPeek) {
  AppHarness h;
  h.launch(true);
  EXPECT_EQ(h.app->store().doraniCelebrated(), 1);
  fortyPointsYesterday(h);
  ASSERT_TRUE(h.runUntil(Phase::sampling, 9));
  ASSERT_TRUE(h.runUntil(Phase::idle, 6));
  EXPECT_EQ(h.app->dorani().level(), 2);
  ASSERT_TRUE(h.app->pills().current());
  EXPECT_EQ(h.app->pills().current()->art.describe(), "buddy(love)");
  EXPECT_EQ(h.app->store().doraniCelebrated(), 2);
  h.app->pills().click();  // the celebration opens the companion's page
  EXPECT_EQ(h.shell.pages.back(), PanelPage::dorani);

  h.advance(2);
  h.app->monitor().checkNow();
  ASSERT_TRUE(h.runUntil(Phase::idle, 6));
  EXPECT_EQ(h.app->pills().current()->art.describe(), "buddy(happy)");
}

struct PageHarness {
  AppHarness h;
  DoraniPage page{{h.app->dorani(), h.app->monitor(), h.app->store(), h.clock, h.scheduler,
                   [](std::size_t) { return std::size_t{0}; }}};
};

TEST(DoraniApp, ThePageTurnsItsLinesAndATapRepliesForAWhile) {
  PageHarness p;
  p.h.launch(true);
  fortyPointsYesterday(p.h);
  p.h.app->dorani().refresh();
  EXPECT_TRUE(p.h.app->dorani().hasNews());
  p.page.appear();
  EXPECT_FALSE(p.h.app->dorani().hasNews());
  const auto lines = p.page.lines();
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(p.page.shown(), lines[0]);
  p.h.advance(DoraniPage::lineSeconds + 0.6);
  EXPECT_EQ(p.page.shown(), lines[1]);

  p.page.poke();
  EXPECT_EQ(p.page.shown().text, "헤헤, 간지러워요!");
  p.h.advance(DoraniPoke::replySeconds + 0.1);
  EXPECT_NE(p.page.shown().text, "헤헤, 간지러워요!");

  p.page.disappear();
  const auto before = p.page.shown();
  p.h.advance(3 * DoraniPage::lineSeconds);
  EXPECT_EQ(p.page.shown(), before);
}

TEST(DoraniApp, TheLookEditorShowsLockedOptionsWithTheirLevel) {
  PageHarness p;
  p.h.launch(true);
  const auto ears = p.page.choices<PillEars>();
  ASSERT_EQ(ears.size(), 13u);
  EXPECT_TRUE(ears[0].chosen);  // the cat, by default
  EXPECT_EQ(ears[6].title, "강아지");
  EXPECT_EQ(ears[6].level, 3);
  EXPECT_FALSE(ears[6].open);
  EXPECT_FALSE(p.page.choose(PillEars::dog));
  EXPECT_TRUE(p.page.choose(PillEars::bunny));
  EXPECT_EQ(p.page.look().ears, PillEars::bunny);
  EXPECT_TRUE(p.page.choices<PillEars>()[2].chosen);
  EXPECT_FALSE(p.page.choices<PillEars>()[0].chosen);
}

TEST(DoraniApp, WhileThePageFollowsTheCameraTurnsTheEyesToTheFace) {
  AppHarness h;
  h.launch(true);
  PanelModel& panel = h.app->panelModel();
  panel.follow(true);  // not in front yet: nothing
  EXPECT_FALSE(h.app->feed().running());
  panel.open(PanelPage::dorani);
  panel.follow(true);
  EXPECT_TRUE(h.app->monitor().holdReasons().count("dorani"));
  ASSERT_TRUE(h.app->feed().running());
  h.advance(1);
  const auto look = h.app->buddySight().current(h.clock.now());
  ASSERT_TRUE(look);
  EXPECT_LT(std::abs(look->x), 0.5);  // the sitter sits in the middle

  panel.go(PanelPage::home);
  EXPECT_FALSE(h.app->feed().running());
  EXPECT_FALSE(h.app->buddySight().current(h.clock.now()));
  EXPECT_FALSE(h.app->monitor().isHeld());
}

}  // namespace
}  // namespace sodam
