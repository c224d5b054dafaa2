#include "app/camera_page.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "app/app_harness.h"

namespace sodam::testing {
namespace {

TEST(CameraPageTest, RowsNewestFirstWithTheLiveUseAndItsWarning) {
  AppHarness h;
  h.launch(true);
  h.app->monitor().setEnabled(false);
  const Calendar calendar(TimeZone::fixed(9 * 3600));
  EXPECT_TRUE(CameraPage::of(h.app->watch(), calendar).rows.empty());

  h.machine.cameras.otherStarts("Meetly");
  h.advance(60);
  h.machine.cameras.otherStops();
  h.advance(60);
  h.machine.cameras.otherStarts("/Users/sitter/Downloads/x");
  h.advance(1);
  const auto page = CameraPage::of(h.app->watch(), calendar);
  EXPECT_EQ(page.statusLine, "지금 다른 앱이 카메라 사용 중 · x");
  EXPECT_EQ(page.note,
            "앱 이름은 운영체제 권한 기록에서 읽어요. 소담자리가 쓴 카메라 시간은 목록에서 뺐어요. "
            "줄에 마우스를 올리면 실행 파일 위치가 보여요.");
  ASSERT_GE(page.rows.size(), 2u);
  const auto& now = page.rows.front();
  EXPECT_EQ(now.app, "x");
  EXPECT_TRUE(now.live);
  EXPECT_TRUE(now.warning);
  EXPECT_EQ(now.summary, "카메라 켜짐 · 지금 사용 중 · 주의: 설치 폴더 밖 프로그램");
  EXPECT_EQ(now.path, "/Users/sitter/Downloads/x");
  const auto meetly = std::find_if(page.rows.begin(), page.rows.end(), [](const auto& row) {
    return row.summary == "카메라 켜짐 · 1분 0초 동안";
  });
  ASSERT_NE(meetly, page.rows.end());
  EXPECT_FALSE(meetly->live);
  EXPECT_EQ(meetly->time, "11월 18일 오후 8:06:40");
}

}  // namespace
}  // namespace sodam::testing
