#include "alerts/pill_center.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/manual_scheduler.h"
#include "support/text.h"

namespace sodam {
namespace {

constexpr Date origin{1000};

constexpr const char* curveNames[] = {"instant", "spring", "easeOut", "easeIn"};

// Records every call as "seconds-since-origin what", rounded to milliseconds.
struct RecordingPresenter : PillPresenter {
  const Clock& clock;
  Size content{200, 44};
  Size bubble{120, 60};
  std::vector<std::string> log;
  std::vector<Rect> panels;
  std::vector<Rect> catchers;

  explicit RecordingPresenter(const Clock& c) : clock(c) {}
  void note(const std::string& what) {
    log.push_back(format("%.3f ", clock.now() - origin) + what);
  }
  Size contentSize(const Pill&) override { return content; }
  Size bubbleSize(const Pill&) override { return bubble; }
  void showPanel(Rect frame) override { panels.push_back(frame); }
  void hidePanel() override { note("panel out"); }
  void update(const PillModel& model, PillAnimation animation) override {
    std::string what = model.pill ? model.pill->title.value_or("?") : "-";
    note(format("%d %s ", model.phase, curveNames[static_cast<int>(animation.curve)]) + what);
  }
  void showCatcher(Rect frame) override {
    catchers.push_back(frame);
    note("catcher in");
  }
  void hideCatcher() override {}
};

struct FixedScreens : ScreenSource {
  explicit FixedScreens(std::vector<ScreenInfo> screens) : list(std::move(screens)) {}
  std::vector<ScreenInfo> list;
  std::vector<ScreenInfo> screens() const override { return list; }
};

// A 14-inch notched built-in display: menu bar 37 points, notch 32.
ScreenInfo notched() {
  return {{{0, 0}, {1512, 982}}, {{0, 0}, {1512, 945}}, 32, true, false};
}
ScreenInfo external(double x, bool isMain) {
  return {{{x, 0}, {1920, 1080}}, {{x, 0}, {1920, 1056}}, 0, false, isMain};
}

struct PillCenterTest : ::testing::Test {
  ManualClock clock{origin};
  ManualScheduler scheduler{clock};
  RecordingPresenter presenter{clock};
  FixedScreens screens{{notched()}};
  PillCenter pills{presenter, screens, scheduler};

  Pill pill(const char* title) { return Pill(clock.now(), "checkmark", Theme::green, title); }
  std::vector<std::string> takeLog() { return std::exchange(presenter.log, {}); }
  void at(double seconds) { scheduler.advanceTo(origin + seconds); }
};

TEST_F(PillCenterTest, GrowsFromTheDotAndShrinksBackAtEachStepsDelay) {
  pills.show(pill("A"));  // default: hides after 3 seconds
  at(0.129);
  at(0.13);
  at(0.259);
  at(0.26);
  EXPECT_EQ(takeLog(), (std::vector<std::string>{"0.000 0 instant A", "0.000 1 spring A",
                                                 "0.130 2 spring A", "0.260 3 easeOut A"}));
  at(2.999);
  ASSERT_TRUE(pills.current());
  at(3);
  EXPECT_FALSE(pills.current());
  at(3.5);
  EXPECT_EQ(takeLog(),
            (std::vector<std::string>{"3.000 2 easeIn A", "3.070 1 spring A", "3.220 0 easeIn A",
                                      "3.410 0 instant -", "3.410 panel out"}));
}

TEST_F(PillCenterTest, AnExplicitlyAbsentTimeKeepsThePillUntilReplaced) {
  pills.show(pill("A"), PillCenter::untilReplaced);
  at(3600);
  EXPECT_EQ(pills.model().phase, 3);
  ASSERT_TRUE(pills.current());

  // A newer pill's time is its own: the replaced pill's 3 seconds end nothing.
  pills.show(pill("B"));
  at(3601);
  pills.show(pill("C"), PillCenter::untilReplaced);
  at(3605);
  EXPECT_EQ(pills.current()->title, "C");
  pills.show(pill("D"));
  at(3607.5);
  EXPECT_EQ(pills.current()->title, "D");
  at(3608);
  EXPECT_FALSE(pills.current());
}

TEST_F(PillCenterTest, AShowDuringTheFallTakesOverFromThePhaseReached) {
  pills.show(pill("A"), PillCenter::untilReplaced);
  at(1);
  int before = pills.generation();
  pills.hide();
  EXPECT_GT(pills.generation(), before);
  at(1.1);  // fallen to the dot below the notch
  takeLog();
  pills.show(pill("B"), PillCenter::untilReplaced);
  at(2);
  // The fall's later steps (to rest, then gone) never come.
  EXPECT_EQ(takeLog(), (std::vector<std::string>{"1.100 1 instant B", "1.100 2 spring B",
                                                 "1.230 3 easeOut B"}));

  pills.hide();  // content fading: a show morphs straight back to full
  at(2.03);
  pills.show(pill("C"), PillCenter::untilReplaced);
  at(3);
  EXPECT_EQ(takeLog(), (std::vector<std::string>{"2.000 2 easeIn B", "2.030 3 spring C"}));
}

TEST_F(PillCenterTest, ASecondShowAtTheDotGoesOnFromThere) {
  pills.show(pill("A"), PillCenter::untilReplaced);
  at(0.05);
  ASSERT_EQ(pills.model().phase, 1);
  pills.show(pill("B"), PillCenter::untilReplaced);
  at(1);
  // Never back to 0, and the first pill's own steps are void.
  EXPECT_EQ(takeLog(),
            (std::vector<std::string>{"0.000 0 instant A", "0.000 1 spring A", "0.050 1 instant B",
                                      "0.050 2 spring B", "0.180 3 easeOut B"}));
}

TEST_F(PillCenterTest, HideBeforeTheDotAppearsClearsAtOnce) {
  pills.show(pill("A"));
  pills.hide();
  at(1);
  EXPECT_EQ(takeLog(), (std::vector<std::string>{"0.000 0 instant A", "0.000 0 instant -",
                                                 "0.000 panel out"}));
}

TEST_F(PillCenterTest, PlacesTheDotAndTheTopByTheScreen) {
  struct Case {
    std::vector<ScreenInfo> list;
    bool buddyWithHat;
    double cameraY, topY, panelX;
  };
  ScreenInfo hiddenBar = external(0, true);
  hiddenBar.visibleFrame = hiddenBar.frame;
  const Case cases[] = {
      {{external(-1920, true), notched()}, false, 14.4, 45, 0},  // built-in wins over main
      {{external(0, false), external(1920, true)}, false, -8, 32, 1920},
      {{external(0, false), external(1920, false)}, false, -8, 32, 0},
      {{hiddenBar}, false, -8, 32, 0},  // never less than a 24-point bar
      {{notched()}, true, 14.4, 57, 0},
      {{}, false, -8, 32, 0},  // no display: drawn nowhere, same course
  };
  for (const auto& c : cases) {
    screens.list = c.list;
    pills.look = [&c] {
      PillLook look;
      if (c.buddyWithHat) look.trim = PillTrim::crown;
      return look;
    };
    pills.show(Pill(clock.now(), Pill::Art::buddy(PillEyes::Mood::looking), Theme::white));
    EXPECT_DOUBLE_EQ(pills.model().cameraY, c.cameraY);
    EXPECT_DOUBLE_EQ(pills.model().topY, c.topY);
    EXPECT_EQ(presenter.panels.back().origin.x, c.panelX);
    EXPECT_EQ(presenter.panels.back().size.height, 170);
  }
  // A hat counts only on the companion's pills.
  screens.list = {notched()};
  pills.look = [] {
    PillLook look;
    look.trim = PillTrim::ribbon;
    look.body = PillBody::plum;
    return look;
  };
  pills.show(pill("A"));
  EXPECT_DOUBLE_EQ(pills.model().topY, 45);
  EXPECT_EQ(pills.model().look.body, PillBody::plum);  // the drawing gets the look all the same
}

TEST_F(PillCenterTest, APillWithoutActionCatchesNoClicks) {
  pills.show(pill("A"), PillCenter::untilReplaced);
  at(1);
  EXPECT_FALSE(pills.catcherFrame());
  EXPECT_TRUE(presenter.catchers.empty());
  pills.click();  // a stray click passes through and leaves the pill up
  EXPECT_TRUE(pills.current());
}

TEST_F(PillCenterTest, TheCatcherComesAfterItsDelayAndAClickHidesBeforeTheAction) {
  std::optional<Pill> seenByAction;
  pills.show(pill("A"), 8, [&] { seenByAction = pills.current(); });
  at(0.289);
  EXPECT_TRUE(presenter.catchers.empty());
  at(0.29);
  ASSERT_EQ(presenter.catchers.size(), 1u);
  // Centred on the pill 45 points under the top of a 982-point screen.
  EXPECT_EQ(presenter.catchers[0], (Rect{{656, 893}, {200, 44}}));
  pills.click();
  EXPECT_FALSE(seenByAction);
  EXPECT_FALSE(pills.current());

  // A speech bubble widens the catcher to the right and sets its height.
  pills.show(Pill(clock.now(), Pill::Art::say(PillEyes::Mood::happy), Theme::white, "S"), 8, [] {});
  EXPECT_EQ(*pills.catcherFrame(), (Rect{{656, 885}, {334, 60}}));

  // Replaced before its delay, the old pill's step can't bring the new
  // catcher in early.
  presenter.catchers.clear();
  at(10);
  pills.show(pill("B"), 8, [] {});
  at(10.1);
  pills.show(pill("C"), 8, [] {});
  presenter.log.clear();
  at(11);
  std::erase_if(presenter.log, [](auto& line) { return !line.ends_with("catcher in"); });
  EXPECT_EQ(presenter.log, (std::vector<std::string>{"10.390 catcher in"}));
}

}  // namespace
}  // namespace sodam
