#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "alerts/blur_alert.h"
#include "alerts/border_alert.h"
#include "support/manual_scheduler.h"
#include "support/text.h"

namespace sodam {
namespace {

// Two displays; records window life as text and the last drawn values.
struct FakeOverlays : OverlayPresenter {
  bool available = true;
  std::int32_t blurStatus = 0;
  std::vector<std::string> life;
  int radiusCalls = 0;
  std::int32_t lastRadius = -1;
  double lastBackground = -1;
  double lastAlpha = -1;
  Window next = 1;

  std::vector<Window> two() {
    std::vector<Window> made{next, next + 1};
    next += 2;
    return made;
  }
  std::vector<Window> makeBorderWindows() override {
    life.push_back("border");
    return two();
  }
  std::vector<Window> makeBlurWindows(bool effectView, double alpha) override {
    life.push_back(format("blur effect=%d alpha=%g", effectView, alpha));
    return two();
  }
  void orderOut(Window window) override { life.push_back(format("out %lld", (long long)window)); }
  bool blurCallAvailable() override { return available; }
  void setBackgroundAlpha(Window, double alpha) override { lastBackground = alpha; }
  std::int32_t setBlurRadius(Window, std::int32_t radius) override {
    ++radiusCalls;
    lastRadius = radius;
    return blurStatus;
  }
  void useEffectView(Window window, double alpha) override {
    life.push_back(format("effect %lld alpha=%.4f", (long long)window, alpha));
  }
  void setAlpha(Window, double alpha) override { lastAlpha = alpha; }
};

TEST(BorderAlertTest, ShowsOncePerAlertAndForgetsItsWindowsOnHide) {
  FakeOverlays overlays;
  BorderAlert border(overlays);
  border.show();
  border.show();
  EXPECT_TRUE(border.shown());
  border.hide();
  border.hide();
  EXPECT_FALSE(border.shown());
  border.show();
  EXPECT_EQ(overlays.life, (std::vector<std::string>{"border", "out 1", "out 2", "border"}));
}

struct BlurAlertTest : ::testing::Test {
  ManualClock clock{Date{500}};
  ManualScheduler scheduler{clock};
  FakeOverlays overlays;

  // Steps until the level rests, checking it moves one way; the seconds taken.
  double settle(BlurAlert& blur) {
    Date start = clock.now();
    double last = blur.level();
    bool rising = blur.target() > last;
    while (blur.moving() && clock.now() - start < 10) {
      scheduler.fireNext();
      EXPECT_EQ(blur.level() >= last, rising) << blur.level();
      EXPECT_EQ(blur.level() > blur.target(), !rising && blur.level() != blur.target());
      last = blur.level();
    }
    return clock.now() - start;
  }
};

TEST_F(BlurAlertTest, ComesOnGentlyLeavesQuicklyAndSnapsToTheTarget) {
  BlurAlert blur(overlays, scheduler, clock);
  blur.show(1.7);  // clamped
  EXPECT_EQ(blur.target(), 1);
  EXPECT_NEAR(settle(blur), 0.45 * std::log(1 / 0.004), 0.02);
  EXPECT_EQ(blur.level(), 1);
  EXPECT_EQ(overlays.lastRadius, 40);
  EXPECT_DOUBLE_EQ(overlays.lastBackground, 0.18);
  EXPECT_EQ(scheduler.activeTimers(), 0u);

  blur.hide();
  EXPECT_NEAR(settle(blur), 0.18 * std::log(1 / 0.004), 0.02);
  EXPECT_EQ(overlays.lastRadius, 0);
  EXPECT_DOUBLE_EQ(overlays.lastBackground, 0.02);
  EXPECT_TRUE(blur.windows().empty());
  EXPECT_EQ(overlays.life, (std::vector<std::string>{"blur effect=0 alpha=0", "out 1", "out 2"}));
}

TEST_F(BlurAlertTest, AtItsTargetAShowOrHideStepsOnceAndStops) {
  BlurAlert blur(overlays, scheduler, clock);
  blur.hide();  // at rest at 0: one step, no windows
  ASSERT_TRUE(blur.moving());
  scheduler.fireNext();
  EXPECT_FALSE(blur.moving());
  EXPECT_TRUE(overlays.life.empty());

  blur.show(0.5);
  settle(blur);
  int calls = overlays.radiusCalls;
  blur.show(0.5);
  ASSERT_TRUE(blur.moving());
  scheduler.fireNext();
  EXPECT_FALSE(blur.moving());
  EXPECT_EQ(overlays.radiusCalls, calls + 2);  // one per display
  EXPECT_EQ(overlays.lastRadius, 20);          // smooth step of 0.5 is 0.5

  // A level above 0 keeps the windows; more displays wait for the next alert.
  blur.show(0.8);
  settle(blur);
  EXPECT_EQ(overlays.life.size(), 1u);
}

TEST_F(BlurAlertTest, AStepAfterALongStallCountsAsATenthOfASecond) {
  BlurAlert blur(overlays, scheduler, clock);
  blur.show(1);
  clock.advance(5);
  scheduler.fireNext();
  EXPECT_NEAR(blur.level(), 1 - std::exp(-0.1 / 0.45), 1e-12);
}

TEST_F(BlurAlertTest, AFailingBlurCallSwitchesToTheEffectViewForGood) {
  BlurAlert blur(overlays, scheduler, clock);
  overlays.blurStatus = -1;
  blur.show(1);
  scheduler.fireNext();
  EXPECT_TRUE(blur.fallback());
  double level = blur.level();
  EXPECT_EQ(overlays.life,
            (std::vector<std::string>{"blur effect=0 alpha=0", format("effect 1 alpha=%.4f", level),
                                      format("effect 2 alpha=%.4f", level)}));
  EXPECT_DOUBLE_EQ(overlays.lastAlpha, BlurAlert::strength(level));

  int calls = overlays.radiusCalls;
  settle(blur);
  EXPECT_EQ(overlays.radiusCalls, calls);
  EXPECT_DOUBLE_EQ(overlays.lastAlpha, 1);
}

TEST_F(BlurAlertTest, WithoutTheBlurCallWindowsStartAsEffectViews) {
  overlays.available = false;
  BlurAlert blur(overlays, scheduler, clock);
  blur.show(0.3);
  settle(blur);
  EXPECT_EQ(overlays.radiusCalls, 0);
  EXPECT_EQ(overlays.life.front(), "blur effect=1 alpha=0");
  EXPECT_DOUBLE_EQ(overlays.lastAlpha, BlurAlert::strength(0.3));
}

TEST_F(BlurAlertTest, PreviewStepsDownAndEnds) {
  BlurAlert blur(overlays, scheduler, clock);
  const Date start = clock.now();
  blur.preview();
  const std::pair<double, double> targets[] = {{1.19, 1},   {1.2, 0.75},  {1.7, 0.5}, {2.2, 0.3},
                                               {2.7, 0.12}, {3.39, 0.12}, {3.4, 0}};
  for (auto [at, target] : targets) {
    scheduler.advanceTo(start + at);
    EXPECT_EQ(blur.target(), target) << at;
  }
  scheduler.advance(2);
  EXPECT_FALSE(blur.moving());
  EXPECT_TRUE(blur.windows().empty());
}

}  // namespace
}  // namespace sodam
