#include "app/status_item.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

using Phase = Monitor::Phase;
using Eyes = StatusIcon::Eyes;

StatusFacts facts(Phase phase, bool enabled = true, bool revoked = false, int unseen = 0) {
  StatusFacts made;
  made.phase = phase;
  made.enabled = enabled;
  made.hasBaseline = true;
  made.cameraRevoked = revoked;
  made.unseenCameraUses = unseen;
  return made;
}

TEST(StatusLookTest, EyesTintAndDimmingFollowTheMonitor) {
  struct Case {
    StatusFacts facts;
    Eyes eyes;
    StatusTint tint;
    bool disabled;
  };
  const Case cases[] = {
      {facts(Phase::idle), Eyes::open, StatusTint::none, false},
      {facts(Phase::sampling), Eyes::looking, StatusTint::accent, false},
      {facts(Phase::relearning), Eyes::looking, StatusTint::accent, false},
      {facts(Phase::alerting), Eyes::looking, StatusTint::red, false},
      {facts(Phase::idle, false), Eyes::closed, StatusTint::none, true},
      {facts(Phase::sampling, true, true), Eyes::closed, StatusTint::accent, true},
      {facts(Phase::idle, true, false, 1), Eyes::open, StatusTint::orange, false},
      {facts(Phase::alerting, true, false, 3), Eyes::looking, StatusTint::red, false},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(i);
    const auto look = statusLook(cases[i].facts);
    EXPECT_EQ(look.eyes, cases[i].eyes);
    EXPECT_EQ(look.tint, cases[i].tint);
    EXPECT_EQ(look.appearsDisabled, cases[i].disabled);
  }
}

TEST(StatusLookTest, StatusLineTestsInOrder) {
  struct Case {
    bool baseline, enabled, held;
    CheckMode mode;
    const char* line;
  };
  const Case cases[] = {
      {false, true, true, CheckMode::live, "바른 자세를 먼저 알려 주세요"},
      {true, true, true, CheckMode::live, "자세 확인 켜짐 · 잠시 쉬는 중"},
      {true, true, false, CheckMode::live, "자세 확인 켜짐 · 실시간"},
      {true, true, false, CheckMode::interval, "자세 확인 켜짐"},
      {true, false, true, CheckMode::live, "자세 확인 꺼짐"},
  };
  for (const auto& c : cases) {
    auto made = facts(Phase::idle, c.enabled);
    made.hasBaseline = c.baseline;
    made.held = c.held;
    made.checkMode = c.mode;
    EXPECT_EQ(statusLine(made), c.line);
  }
  EXPECT_EQ(statusLook(facts(Phase::idle)).tooltip, "소담자리 · 자세 확인 켜짐 · 눌러서 메뉴 열기");
}

TEST(StatusItemTest, ImageIsMadeAgainOnlyForNewEyesOrEars) {
  auto now = facts(Phase::idle);
  EXPECT_TRUE(StatusItem().refresh(now).redrawImage) << "nothing drawn yet";

  StatusItem item;
  item.drawn(Eyes::open, 0);  // the first icon at launch
  EXPECT_FALSE(item.refresh(now).redrawImage);
  now.unseenCameraUses = 2;  // tint only
  EXPECT_FALSE(item.refresh(now).redrawImage);
  now.phase = Phase::sampling;
  EXPECT_TRUE(item.refresh(now).redrawImage);
  EXPECT_EQ(item.iconEyes(), Eyes::looking);
  now.phase = Phase::alerting;  // still looking, only red now
  EXPECT_FALSE(item.refresh(now).redrawImage);
  now.ears = 4;
  EXPECT_TRUE(item.refresh(now).redrawImage);
  EXPECT_EQ(item.iconEars(), 4);
  EXPECT_FALSE(item.refresh(now).redrawImage);
}

}  // namespace
}  // namespace sodam
