#include "app/settings_page.h"

#include <gtest/gtest.h>

#include "app/app_harness.h"

namespace sodam {
namespace {

using testing::AppHarness;

struct SharingLog final : WindowSharing {
  std::vector<Type> types;
  void setSharingType(WindowId, Type type) override { types.push_back(type); }
};

struct Settings : ::testing::Test {
  MemoryDefaults defaults;
  ManualClock clock;
  Calendar calendar;
  Store store{defaults, clock, calendar};
  SettingsPage page{store, "보안 잠금을 걸지 못했어요"};
};

TEST_F(Settings, EveryRowShowsItsChoicesAndTheValueNow) {
  std::vector<std::string> shown;
  for (const auto& row : page.rows())
    shown.push_back(std::string(row.key) + "=" + row.valueName() + " (" + row.allowedText() + ")");
  EXPECT_EQ(shown, (std::vector<std::string>{
                       "enabled=on (off|on)",
                       "checkMode=interval (interval|live)",
                       "sensitivity=normal (strict|normal|relaxed)",
                       "pauseOnBattery=off (off|on)",
                       "alertStyle=border (border|blur)",
                       "sittingNudge=on (off|on)",
                       "wrapUp=on (off|on)",
                       "workEndMinutes=18:30 (00:00-23:59)",
                       "notifyCamera=on (off|on)",
                       "hideCameraFromCapture=on (off|on)",
                       "shareStatus=on (off|on)",
                       "sharePlace=on (off|on)",
                       "peekEyes=on (off|on)",
                       "buddyOften=off (off|on)",
                       "followFace=on (off|on)",
                   }));
  EXPECT_EQ(page.row("workEndMinutes")->valueTitle(), "오후 6:30");
  EXPECT_EQ(page.row("sensitivity")->valueTitle(), "보통");
  EXPECT_EQ(page.row("alertStyle")->valueTitle(), "빨간 테두리 깜빡임");

  // The companion's switches live on its own page.
  std::vector<std::string_view> headings;
  for (const auto& section : page.sections()) {
    headings.push_back(section.title);
    for (const auto& row : section.rows)
      EXPECT_EQ(row.page, PanelPage::settings) << row.key;
  }
  EXPECT_EQ(headings, (std::vector<std::string_view>{"확인", "알림", "보안", "모임"}));
  EXPECT_EQ(page.lockdownLine(), "보안 잠금을 걸지 못했어요");
}

TEST_F(Settings, ValuesOutsideARowAreRefusedAndNothingIsWritten) {
  const auto workEnd = page.row("workEndMinutes").value();
  for (const char* text : {"24:00", "18:60", "18:3", "1830", ":30", "ab:cd", "-1:00", ""})
    EXPECT_EQ(workEnd.parse(text), std::nullopt) << text;
  EXPECT_EQ(workEnd.parse("6:05"), 365);
  EXPECT_EQ(workEnd.parse("23:59"), 1439);
  EXPECT_EQ(page.row("checkMode")->parse("live"), 1);
  EXPECT_EQ(page.row("enabled")->parse("yes"), std::nullopt);

  const int writes = defaults.writes();
  EXPECT_FALSE(page.set("checkMode", 2));
  EXPECT_FALSE(page.set("sensitivity", -1));
  EXPECT_FALSE(page.set("enabled", 2));
  EXPECT_FALSE(page.set("workEndMinutes", 1440));
  EXPECT_FALSE(page.set("baseline", 0));
  EXPECT_FALSE(page.set("guideDone", 1));
  EXPECT_EQ(defaults.writes(), writes);

  EXPECT_TRUE(page.set("workEndMinutes", 0));
  EXPECT_EQ(store.workEndMinutes(), 0);
  EXPECT_TRUE(page.set("sensitivity", 2));
  EXPECT_EQ(store.sensitivity(), Sensitivity::relaxed);
}

TEST(SettingsFollowers, TheChecksAndTheShieldFollowAChangeAtOnce) {
  AppHarness h;
  h.launch(true);
  SharingLog sharing;
  CaptureShield shield(sharing, h.app->store());
  shield.attach(0x10);
  SettingsPage page = h.app->settingsPage(&shield);
  Monitor& monitor = h.app->monitor();

  ASSERT_TRUE(page.set("enabled", 0));
  EXPECT_FALSE(monitor.enabled());
  EXPECT_EQ(monitor.nextCheck(), std::nullopt);
  EXPECT_EQ(h.shell.look.eyes, StatusIcon::Eyes::closed);
  ASSERT_TRUE(page.set("enabled", 1));
  EXPECT_NE(monitor.nextCheck(), std::nullopt);

  // Live watching starts soon, and the status item says so at once.
  ASSERT_TRUE(page.set("checkMode", 1));
  EXPECT_NE(h.shell.look.tooltip.find("실시간"), std::string::npos) << h.shell.look.tooltip;
  EXPECT_TRUE(h.runUntil(Monitor::Phase::watching, 30));

  ASSERT_TRUE(page.set("hideCameraFromCapture", 0));
  EXPECT_EQ(sharing.types.back(), WindowSharing::Type::readOnly);
  ASSERT_TRUE(page.set("hideCameraFromCapture", 1));
  EXPECT_EQ(sharing.types.back(), WindowSharing::Type::none);
}

}  // namespace
}  // namespace sodam
