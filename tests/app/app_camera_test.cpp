// How the application tells the user about other programs' camera use.
#include <gtest/gtest.h>

#include "app/app_harness.h"

namespace sodam::testing {
namespace {

TEST(AppCameraTest, AnotherProgramsCameraIsAnnouncedAndOpensTheCameraPage) {
  AppHarness h;
  h.launch(true);
  h.app->monitor().setEnabled(false);  // the program's own camera stays off
  h.machine.cameras.otherStarts("Meetly");
  h.advance(0.5);
  EXPECT_EQ(h.pill(), "다른 앱이 카메라를 켰어요 | Meetly");
  h.app->pills().click();
  EXPECT_EQ(h.shell.pages.back(), PanelPage::camera);
  h.machine.cameras.otherStops();

  // With the switch off, the record is kept but nothing is shown.
  h.app->watch().setNotify(false);
  h.advance(10);
  h.machine.cameras.otherStarts("/Users/sitter/Downloads/x");
  h.advance(0.5);
  EXPECT_EQ(h.pill(), "");
  EXPECT_EQ(h.app->watch().events().front().app, "x");
}

TEST(AppCameraTest, LockAndSleepPauseTheSweepsAndUnlockTellsWhatHappened) {
  AppHarness h;
  h.launch(true);
  h.app->screenLocked();
  EXPECT_TRUE(h.app->watch().paused());
  h.machine.cameras.otherStarts("Meetly");
  h.advance(1);
  EXPECT_EQ(h.pill(), "");  // nothing shows on a locked screen
  h.machine.cameras.otherStops();
  h.app->willSleep();
  h.app->didWake();
  EXPECT_TRUE(h.app->watch().paused()) << "still locked after the wake";
  EXPECT_EQ(h.app->statusFacts().unseenCameraUses, 1);
  h.app->screenUnlocked();
  EXPECT_FALSE(h.app->watch().paused());
  EXPECT_EQ(h.pill(), "자리를 비운 사이 카메라가 켜졌어요 | 기록 1건 · 눌러서 확인");
  h.app->pills().click();
  EXPECT_EQ(h.shell.pages.back(), PanelPage::camera);
}

}  // namespace
}  // namespace sodam::testing
