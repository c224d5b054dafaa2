#include "app/stretch_page.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

TEST(StretchPage, ShowsTheRoutineItsReasonsAndTheLibraryByArea) {
  const StretchPage page = StretchPage::of({{IssueKind::tooClose, 1.0}});
  EXPECT_EQ(page.routine.front().id, "eyes");
  EXPECT_EQ(page.reasons, std::vector<std::string>{"화면에 자주 다가가 눈을 쉬게 해요"});
  ASSERT_EQ(page.areas.size(), 7u);
  EXPECT_EQ(page.areas[0].area, BodyArea::neck);
  EXPECT_EQ(page.areas[0].stretches.size(), 5u);
  // The back's stretches stay together although the waist's come between.
  EXPECT_EQ(page.areas[2].area, BodyArea::back);
  EXPECT_EQ(page.areas[2].stretches.back().id, "twist");
  EXPECT_EQ(StretchPage::of({}).routineSeconds(), 155);
}

TEST(StretchPage, SaysLengthsInMinutesAndSeconds) {
  EXPECT_EQ(StretchPage::length(155), "2분 35초");
  EXPECT_EQ(StretchPage::length(180), "3분");
  EXPECT_EQ(StretchPage::length(45), "45초");
}

}  // namespace
}  // namespace sodam
