#include "platform/capture_shield.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace sodam {
namespace {

using Type = WindowSharing::Type;
using Calls = std::vector<std::pair<WindowId, Type>>;

class CaptureShieldTest : public ::testing::Test, public WindowSharing {
 protected:
  void setSharingType(WindowId window, Type type) override { calls.emplace_back(window, type); }
  Calls taken() { return std::exchange(calls, {}); }

  MemoryDefaults defaults;
  ManualClock clock;
  Calendar calendar;
  Store store{defaults, clock, calendar};
  CaptureShield shield{*this, store};
  Calls calls;
  static constexpr WindowId panel = 0x1000, guide = 0x2000;
};

TEST_F(CaptureShieldTest, LastPreviewToLeaveGivesTheWindowBack) {
  shield.attach(panel);
  shield.attach(panel);
  EXPECT_EQ(taken(), (Calls{{panel, Type::none}, {panel, Type::none}}));
  shield.detach(panel);
  EXPECT_EQ(taken(), Calls{}) << "one preview still shows";
  shield.detach(panel);
  EXPECT_EQ(taken(), (Calls{{panel, Type::readOnly}}));

  shield.detach(panel);  // one detach too many
  EXPECT_EQ(taken(), Calls{});
  shield.attach(panel);
  EXPECT_EQ(shield.count(panel), 1) << "the stray detach left no debt";
}

TEST_F(CaptureShieldTest, SettingOffCountsOnlyUntilApplied) {
  store.setHideCameraFromCapture(false);
  shield.attach(panel);
  shield.attach(guide);
  shield.detach(guide);
  EXPECT_EQ(taken(), (Calls{{guide, Type::readOnly}}));

  store.setHideCameraFromCapture(true);
  shield.apply();
  EXPECT_EQ(taken(), (Calls{{panel, Type::none}})) << "only windows that still show the camera";
  store.setHideCameraFromCapture(false);
  shield.apply();
  EXPECT_EQ(taken(), (Calls{{panel, Type::readOnly}}));
}

}  // namespace
}  // namespace sodam
